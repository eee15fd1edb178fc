#include "data/dialect/parser.h"

#include <fmt/format.h>

#include "data/dialect/parser_impl.h"
#include "data/dialect/server_errors.h"

namespace ondrel {
namespace {

// Words that end a clause, and so are no alias.
constexpr std::string_view kReserved[] = {
    "all",      "and",   "as",     "asc",    "between", "by",        "case",    "cross",  "delete", "desc",
    "distinct", "else",  "end",    "exec",   "except",  "exists",    "execute", "from",   "full",   "group",
    "having",   "in",    "inner",  "insert", "into",    "intersect", "is",      "join",   "left",   "like",
    "not",      "null",  "on",     "or",     "order",   "outer",     "right",   "select", "set",    "then",
    "top",      "union", "update", "values", "when",    "where",     "with",    "create", "drop",   "alter"};

bool isReserved(std::string_view word) {
  for (const std::string_view reserved : kReserved)
    if (sameWord(reserved, word)) return true;
  return false;
}

}  // namespace

void failAt(std::string_view statement, const Token& token) {
  const std::string word = token.kind == TokenKind::End ? "the end" : fmt::format("'{}'", token.text);
  throw serverError(
      ServerError::IncorrectSyntax,
      fmt::format("Incorrect syntax near {} at position {} of: {}", word, token.position + 1, statement));
}

std::unique_ptr<SyntaxTree> parseStatement(std::string_view statement) {
  auto tree = std::make_unique<SyntaxTree>();
  Parser(statement, *tree).parse();
  return tree;
}

Parser::Parser(std::string_view statement, SyntaxTree& tree) : statement_(statement), tree_(tree) {
  Lexer lexer(statement);
  int literals = 0;
  do {
    tokens_.push_back(lexer.next());
    const TokenKind kind = tokens_.back().kind;
    literals_.push_back(kind == TokenKind::Number || kind == TokenKind::Text ? literals++ : -1);
  } while (tokens_.back().kind != TokenKind::End);
}

void Parser::parse() {
  if (isWord("select")) {
    tree_.kind = StatementKind::Select;
    tree_.query = query();
  } else if (takeWord("insert")) {
    insert();
  } else if (takeWord("update")) {
    update();
  } else if (takeWord("delete")) {
    remove();
  } else if (takeWord("set")) {
    setting();
  } else {
    call();
  }
  takeSymbol(";");
  if (peek().kind != TokenKind::End) fail();
}

Token Parser::advance() {
  const Token token = peek();
  if (token.kind != TokenKind::End) ++at_;
  return token;
}

bool Parser::isWord(std::string_view word, size_t ahead) const {
  return peek(ahead).kind == TokenKind::Word && sameWord(peek(ahead).text, word);
}

bool Parser::isSymbol(std::string_view symbol, size_t ahead) const {
  return peek(ahead).kind == TokenKind::Symbol && peek(ahead).text == symbol;
}

bool Parser::takeWord(std::string_view word) {
  if (!isWord(word)) return false;
  advance();
  return true;
}

bool Parser::takeSymbol(std::string_view symbol) {
  if (!isSymbol(symbol)) return false;
  advance();
  return true;
}

void Parser::expectWord(std::string_view word) {
  if (!takeWord(word)) fail();
}

void Parser::expectSymbol(std::string_view symbol) {
  if (!takeSymbol(symbol)) fail();
}

bool Parser::isName(size_t ahead) const {
  const Token& token = peek(ahead);
  return token.kind == TokenKind::Quoted || (token.kind == TokenKind::Word && !isReserved(token.text));
}

Token Parser::expectName() {
  if (!isName()) fail();
  return advance();
}

// [database . [dbo] .] dbo . name: what stands before the last point falls away.
Token Parser::expectTable() {
  Token name = expectName();
  while (takeSymbol(".")) name = expectName();
  return name;
}

int Parser::takeLiteral() {
  return literals_[at_++];
}

Query* Parser::query() {
  if (++depth_ > kDeepest) fail();
  Query* result = queryParts();
  --depth_;
  return result;
}

Query* Parser::queryParts() {
  Query& result = tree_.queries.emplace_back();
  result.cores.push_back(core());
  while (true) {
    std::string_view combine;
    if (takeWord("union"))
      combine = takeWord("all") ? "union all" : "union";
    else if (takeWord("intersect"))
      combine = "intersect";
    else if (takeWord("except"))
      combine = "except";
    else
      break;
    SelectCore next = core();
    next.combine = combine;
    result.cores.push_back(std::move(next));
  }
  if (takeWord("order")) {
    expectWord("by");
    do {
      OrderItem item;
      item.value = expression();
      item.descending = takeWord("desc");
      if (!item.descending) takeWord("asc");
      result.orderBy.push_back(item);
    } while (takeSymbol(","));
  }
  return &result;
}

SelectCore Parser::core() {
  SelectCore result;
  expectWord("select");
  result.distinct = takeWord("distinct");
  if (!result.distinct) takeWord("all");
  if (takeWord("top")) result.top = topCount();
  do {
    result.items.push_back(selectItem());
  } while (takeSymbol(","));
  if (takeWord("from")) result.from = fromList();
  if (takeWord("where")) result.where = expression();
  if (takeWord("group")) {
    expectWord("by");
    do {
      result.groupBy.push_back(expression());
    } while (takeSymbol(","));
  }
  if (takeWord("having")) result.having = expression();
  return result;
}

Expression* Parser::topCount() {
  const bool enclosed = takeSymbol("(");
  if (peek().kind != TokenKind::Number) fail();
  Expression* count = prefix();
  if (enclosed) expectSymbol(")");
  return count;
}

SelectItem Parser::selectItem() {
  SelectItem item;
  const bool star = isSymbol("*") || (isName() && isSymbol(".", 1) && isSymbol("*", 2));
  if (star) {
    const Token first = peek();
    item.value = make(ExpressionKind::Star, first);
    if (!takeSymbol("*")) {
      item.value->qualifier = first.text;
      at_ += 3;
    }
    return item;
  }
  item.value = expression();
  const bool named = takeWord("as");
  if (peek().kind == TokenKind::Text) {
    item.alias = peek().text;
    tree_.fixedLiterals.push_back(takeLiteral());
  } else if (named && peek().kind == TokenKind::Word) {
    item.alias = advance().text;  // after "as" even a keyword is a name
  } else if (named || isName()) {
    item.alias = expectName().text;
  }
  return item;
}

std::vector<Source*> Parser::fromList() {
  std::vector<Source*> list;
  list.push_back(primary(JoinKind::First));
  joins(list);
  while (takeSymbol(",")) {
    list.push_back(primary(JoinKind::Comma));
    joins(list);
  }
  return list;
}

void Parser::joins(std::vector<Source*>& list) {
  for (JoinKind kind; takeJoin(kind);) {
    Source* source = primary(kind);
    if (kind != JoinKind::Cross) {
      expectWord("on");
      source->on = expression();
    }
    list.push_back(source);
  }
}

bool Parser::takeJoin(JoinKind& kind) {
  struct Row {
    std::string_view word;
    JoinKind kind;
  };
  static constexpr Row kRows[] = {{"inner", JoinKind::Inner},
                                  {"left", JoinKind::Left},
                                  {"right", JoinKind::Right},
                                  {"full", JoinKind::Full},
                                  {"cross", JoinKind::Cross}};
  kind = JoinKind::Inner;
  for (const Row& row : kRows) {
    if (!takeWord(row.word)) continue;
    kind = row.kind;
    if (kind != JoinKind::Inner && kind != JoinKind::Cross) takeWord("outer");
    expectWord("join");
    return true;
  }
  return takeWord("join");
}

Source* Parser::primary(JoinKind join) {
  Source& source = tree_.sources.emplace_back();
  source.join = join;
  source.token = peek();
  if (takeSymbol("(")) {
    if (isWord("select")) {
      source.query = query();
      expectSymbol(")");
      takeWord("as");
      source.alias = expectName().text;
    } else {
      source.group = fromList();
      expectSymbol(")");
    }
    return &source;
  }
  source.token = expectTable();
  source.table = source.token.text;
  source.alias = optionalAlias();
  skipHint();
  return &source;
}

std::string_view Parser::optionalAlias() {
  if (takeWord("as") || isName()) return expectName().text;
  return {};
}

// with (nolock): a hint on locking means nothing here.
void Parser::skipHint() {
  if (isWord("with") && isSymbol("(", 1) && isName(2) && isSymbol(")", 3)) at_ += 4;
}

void Parser::insert() {
  tree_.kind = StatementKind::Insert;
  takeWord("into");
  tree_.target = expectTable();
  if (takeSymbol("(")) {
    do {
      tree_.columns.push_back(expectName());
    } while (takeSymbol(","));
    expectSymbol(")");
  }
  if (takeWord("default")) {
    expectWord("values");
    tree_.defaultValues = true;
  } else if (takeWord("values")) {
    do {
      expectSymbol("(");
      std::vector<Expression*> row;
      do {
        row.push_back(takeWord("default") ? nullptr : expression());
      } while (takeSymbol(","));
      expectSymbol(")");
      tree_.rows.push_back(std::move(row));
    } while (takeSymbol(","));
  } else {
    tree_.query = query();
  }
}

void Parser::update() {
  tree_.kind = StatementKind::Update;
  tree_.target = expectTable();
  expectWord("set");
  do {
    Assignment assignment;
    assignment.column = expectTable();
    expectSymbol("=");
    assignment.value = expression();
    tree_.assignments.push_back(assignment);
  } while (takeSymbol(","));
  if (takeWord("from")) tree_.from = fromList();
  if (takeWord("where")) tree_.where = expression();
}

void Parser::remove() {
  tree_.kind = StatementKind::Delete;
  takeWord("from");
  tree_.target = expectTable();
  if (takeWord("from")) tree_.from = fromList();
  if (takeWord("where")) tree_.where = expression();
}

void Parser::call() {
  tree_.kind = StatementKind::Call;
  if (!takeWord("exec")) takeWord("execute");
  tree_.target = expectTable();
  if (peek().kind == TokenKind::End || isSymbol(";")) return;
  do {
    CallArgument argument;
    argument.negative = takeSymbol("-");
    const TokenKind kind = peek().kind;
    if (kind == TokenKind::Number || (kind == TokenKind::Text && !argument.negative))
      argument.literal = takeLiteral();
    else if (argument.negative || !takeWord("null"))
      fail();
    tree_.arguments.push_back(argument);
  } while (takeSymbol(","));
}

// set nocount on, set identity_insert t off: settings of the server that mean nothing here.
void Parser::setting() {
  tree_.kind = StatementKind::Setting;
  const Token name = expectName();
  if (sameWord(name.text, "identity_insert")) expectTable();
  if (!takeWord("on") && !takeWord("off")) fail();
}

}  // namespace ondrel
