#include "data/dialect/statement_parser.h"

namespace ondrel::sql {

std::unique_ptr<SyntaxTree> parseStatement(std::string_view statement) {
  auto tree = std::make_unique<SyntaxTree>();
  TokenCursor cursor(statement);
  StatementParser(cursor, *tree).parse();
  return tree;
}

void StatementParser::parse() {
  if (cursor_.is(Key::Select)) {
    tree_.kind = StatementKind::Select;
    tree_.query = query();
  } else if (cursor_.take(Key::Insert)) {
    insert();
  } else if (cursor_.take(Key::Update)) {
    update();
  } else if (cursor_.take(Key::Delete)) {
    remove();
  } else if (cursor_.take(Key::Set)) {
    setting();
  } else {
    call();
  }
  cursor_.take(Key::Semicolon);
  if (!cursor_.isAtEnd()) cursor_.fail();
}

// ---- queries

Query* StatementParser::query() {
  const TokenCursor::Depth depth(cursor_);
  Query& result = tree_.queries.emplace_back();
  result.cores.push_back(core());
  while (true) {
    std::string_view combine;
    if (cursor_.take(Key::Union))
      combine = cursor_.take(Key::All) ? "union all" : "union";
    else if (cursor_.take(Key::Intersect))
      combine = "intersect";
    else if (cursor_.take(Key::Except))
      combine = "except";
    else
      break;
    SelectCore next = core();
    next.combine = combine;
    result.cores.push_back(std::move(next));
  }
  if (cursor_.take(Key::Order)) result.orderBy = orderList();
  return &result;
}

std::vector<OrderItem> StatementParser::orderList() {
  std::vector<OrderItem> result;
  cursor_.expect(Key::By);
  do {
    OrderItem item;
    item.value = expression();
    item.descending = cursor_.take(Key::Desc);
    if (!item.descending) cursor_.take(Key::Asc);
    result.push_back(item);
  } while (cursor_.take(Key::Comma));
  return result;
}

SelectCore StatementParser::core() {
  SelectCore result;
  cursor_.expect(Key::Select);
  result.distinct = cursor_.take(Key::Distinct);
  if (!result.distinct) cursor_.take(Key::All);
  if (cursor_.take(Key::Top)) result.top = topCount();
  do {
    result.items.push_back(selectItem());
  } while (cursor_.take(Key::Comma));
  if (cursor_.take(Key::From)) result.from = fromList();
  if (cursor_.take(Key::Where)) result.where = expression();
  if (cursor_.take(Key::Group)) {
    cursor_.expect(Key::By);
    do {
      result.groupBy.push_back(expression());
    } while (cursor_.take(Key::Comma));
  }
  if (cursor_.take(Key::Having)) result.having = expression();
  return result;
}

Expression* StatementParser::topCount() {
  const bool enclosed = cursor_.take(Key::Open);
  Expression* count = number();
  if (enclosed) cursor_.expect(Key::Close);
  return count;
}

SelectItem StatementParser::selectItem() {
  SelectItem item;
  const Token first = cursor_.peek();
  if (cursor_.take(Key::Times)) {
    item.value = star(first, {});
    return item;
  }
  if (cursor_.isName() && cursor_.is(Key::Point, 1) && cursor_.is(Key::Times, 2)) {
    for (int tokens = 0; tokens < 3; ++tokens) cursor_.advance();
    item.value = star(first, first.text);
    return item;
  }
  item.value = expression();
  const bool named = cursor_.take(Key::As);
  if (cursor_.peek().kind == TokenKind::Text) {
    item.alias = cursor_.peek().text;
    tree_.fixedLiterals.push_back(cursor_.takeLiteral());
  } else if (named && cursor_.peek().kind == TokenKind::Word) {
    item.alias = cursor_.advance().text;  // after "as" even a keyword is a name
  } else if (named || cursor_.isName()) {
    item.alias = cursor_.expectName().text;
  }
  return item;
}

std::vector<Source*> StatementParser::fromList() {
  std::vector<Source*> list;
  list.push_back(primary(JoinKind::First));
  joins(list);
  while (cursor_.take(Key::Comma)) {
    list.push_back(primary(JoinKind::Comma));
    joins(list);
  }
  return list;
}

void StatementParser::joins(std::vector<Source*>& list) {
  for (JoinKind kind; takeJoin(kind);) {
    Source* source = primary(kind);
    if (kind != JoinKind::Cross) {
      cursor_.expect(Key::On);
      source->on = expression();
    }
    list.push_back(source);
  }
}

bool StatementParser::takeJoin(JoinKind& kind) {
  struct Row {
    Key word;
    JoinKind kind;
  };
  static constexpr Row kRows[] = {{Key::Inner, JoinKind::Inner},
                                  {Key::Left, JoinKind::Left},
                                  {Key::Right, JoinKind::Right},
                                  {Key::Full, JoinKind::Full},
                                  {Key::Cross, JoinKind::Cross}};
  kind = JoinKind::Inner;
  for (const Row& row : kRows) {
    if (!cursor_.take(row.word)) continue;
    kind = row.kind;
    if (kind != JoinKind::Inner && kind != JoinKind::Cross) cursor_.take(Key::Outer);
    cursor_.expect(Key::Join);
    return true;
  }
  return cursor_.take(Key::Join);
}

Source* StatementParser::primary(JoinKind join) {
  const TokenCursor::Depth depth(cursor_);
  Source& source = tree_.sources.emplace_back();
  source.join = join;
  source.token = cursor_.peek();
  if (cursor_.take(Key::Open)) {
    if (cursor_.is(Key::Select)) {
      source.query = query();
      cursor_.expect(Key::Close);
      cursor_.take(Key::As);
      source.alias = cursor_.expectName().text;
    } else {
      source.group = fromList();
      cursor_.expect(Key::Close);
    }
    return &source;
  }
  source.token = cursor_.expectTable();
  source.table = source.token.text;
  source.alias = optionalAlias();
  hint(source);
  return &source;
}

std::string_view StatementParser::optionalAlias() {
  if (cursor_.take(Key::As) || cursor_.isName()) return cursor_.expectName().text;
  return {};
}

// with (updlock) holds the rows; any other hint on locking means nothing to the stores of our own.
void StatementParser::hint(Source& source) {
  const bool isHint =
      cursor_.is(Key::With) && cursor_.is(Key::Open, 1) && cursor_.isName(2) && cursor_.is(Key::Close, 3);
  if (!isHint) return;
  source.locks = cursor_.is(Key::UpdLock, 2);
  for (int tokens = 0; tokens < 4; ++tokens) cursor_.advance();
}

// ---- other statements

void StatementParser::insert() {
  tree_.kind = StatementKind::Insert;
  cursor_.take(Key::Into);
  tree_.target = cursor_.expectTable();
  if (cursor_.take(Key::Open)) {
    do {
      tree_.columns.push_back(cursor_.expectName());
    } while (cursor_.take(Key::Comma));
    cursor_.expect(Key::Close);
  }
  if (cursor_.take(Key::Default)) {
    cursor_.expect(Key::Values);
    tree_.defaultValues = true;
  } else if (cursor_.take(Key::Values)) {
    do {
      tree_.rows.push_back(insertRow());
    } while (cursor_.take(Key::Comma));
  } else {
    tree_.query = query();
  }
}

std::vector<Expression*> StatementParser::insertRow() {
  std::vector<Expression*> row;
  cursor_.expect(Key::Open);
  do {
    row.push_back(cursor_.take(Key::Default) ? nullptr : expression());
  } while (cursor_.take(Key::Comma));
  cursor_.expect(Key::Close);
  return row;
}

void StatementParser::update() {
  tree_.kind = StatementKind::Update;
  tree_.target = cursor_.expectTable();
  cursor_.expect(Key::Set);
  do {
    Assignment assignment;
    assignment.column = cursor_.expectTable();
    cursor_.expect(Key::Equal);
    assignment.value = expression();
    tree_.assignments.push_back(assignment);
  } while (cursor_.take(Key::Comma));
  if (cursor_.take(Key::From)) tree_.from = fromList();
  if (cursor_.take(Key::Where)) tree_.where = expression();
}

void StatementParser::remove() {
  tree_.kind = StatementKind::Delete;
  cursor_.take(Key::From);
  tree_.target = cursor_.expectTable();
  if (cursor_.take(Key::From)) tree_.from = fromList();
  if (cursor_.take(Key::Where)) tree_.where = expression();
}

void StatementParser::call() {
  tree_.kind = StatementKind::Call;
  if (!cursor_.take(Key::Exec)) cursor_.take(Key::Execute);
  tree_.target = cursor_.expectTable();
  if (cursor_.isAtEnd() || cursor_.is(Key::Semicolon)) return;
  do {
    CallArgument argument;
    argument.negative = cursor_.take(Key::Minus);
    const TokenKind kind = cursor_.peek().kind;
    if (kind == TokenKind::Number || (kind == TokenKind::Text && !argument.negative))
      argument.literal = cursor_.takeLiteral();
    else if (argument.negative || !cursor_.take(Key::Null))
      cursor_.fail();
    tree_.arguments.push_back(argument);
  } while (cursor_.take(Key::Comma));
}

// set nocount on, set identity_insert t off: settings of the server that mean nothing here.
void StatementParser::setting() {
  tree_.kind = StatementKind::Setting;
  if (cursor_.take(Key::IdentityInsert))
    cursor_.expectTable();
  else
    cursor_.expectName();
  if (!cursor_.take(Key::On) && !cursor_.take(Key::Off)) cursor_.fail();
}

}  // namespace ondrel::sql
