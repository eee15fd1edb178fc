#include "data/card_columns.h"

#include <algorithm>
#include <optional>
#include <span>
#include <vector>

#include "base/text.h"
#include "data/card_numbers.h"

namespace ondrel {
namespace {

constexpr size_t kFewestDigits = 12;
constexpr std::string_view kPassedOver = " \t\r\n[]\"";  // names may stand in brackets
constexpr std::string_view kMasked = "[masked]";

enum class CardSecret {
  Number,  // its last four digits may be shown
  Whole,
};

struct CardColumn {
  std::string_view name;
  CardSecret secret;
};

struct CardArgument {
  std::string_view procedure;
  size_t count;
  size_t position;  // of the card number
};

// clang-format off
constexpr CardColumn kColumns[] = {
    {"AccountNumber",     CardSecret::Number},
    {"cardNumber",        CardSecret::Number},
    {"checkOrCardNumber", CardSecret::Number},
    {"creditCardNumber",  CardSecret::Number},
    {"xcaccountid",       CardSecret::Number},
    {"swipedata",         CardSecret::Whole},
    {"track",             CardSecret::Whole},
    {"cvv2",              CardSecret::Whole},
    {"debitblock",        CardSecret::Whole},
    {"debitkey",          CardSecret::Whole},
};
constexpr CardArgument kArguments[] = {
    {"InsertPayment", 12, 6},
};
// clang-format on

enum class TokenKind { Word, Literal, Mark };

struct Token {
  TokenKind kind;
  size_t start;
  std::string_view text;

  bool isMark(char mark) const { return kind == TokenKind::Mark && text.front() == mark; }
  bool isValue() const { return kind == TokenKind::Literal || (kind == TokenKind::Word && isDigit(text[0])); }
};

using Tokens = std::span<const Token>;

struct BoundValue {
  const Token* token;
  CardSecret secret;
};

bool isWordCharacter(char c) {
  return isDigit(c) || isLetter(c) || c == '_';
}

// A quote that nobody closes goes on to the end of the text.
size_t literalLength(std::string_view text) {
  const size_t end = text.find('\'', 1);
  return end == std::string_view::npos ? text.size() : end + 1;
}

std::vector<Token> tokensOf(std::string_view text) {
  std::vector<Token> tokens;
  for (size_t at = 0; at < text.size();) {
    const char c = text[at];
    if (kPassedOver.find(c) != std::string_view::npos) {
      ++at;
      continue;
    }
    Token token{TokenKind::Mark, at, text.substr(at, 1)};
    if (c == '\'') {
      token = {TokenKind::Literal, at, text.substr(at, literalLength(text.substr(at)))};
    } else if (isWordCharacter(c)) {
      size_t end = at;
      while (end < text.size() && isWordCharacter(text[end])) ++end;
      token = {TokenKind::Word, at, text.substr(at, end - at)};
    }
    at += token.text.size();
    tokens.push_back(token);
  }
  return tokens;
}

std::optional<CardSecret> secretOf(const Token& token) {
  if (token.kind != TokenKind::Word) return std::nullopt;
  const auto row = std::find_if(std::begin(kColumns), std::end(kColumns), [&](const CardColumn& column) {
    return equalsIgnoringCase(column.name, token.text);
  });
  return row == std::end(kColumns) ? std::nullopt : std::optional(row->secret);
}

// The parts between commas, up to a bracket that was not opened in `tokens`.
std::vector<Tokens> partsOf(Tokens tokens) {
  std::vector<Tokens> parts;
  size_t start = 0;
  int depth = 0;
  for (size_t k = 0; k <= tokens.size(); ++k) {
    const bool isEnd = k == tokens.size() || (depth == 0 && tokens[k].isMark(')'));
    if (isEnd || (depth == 0 && tokens[k].isMark(','))) {
      parts.push_back(tokens.subspan(start, k - start));
      start = k + 1;
    }
    if (isEnd) break;
    if (tokens[k].isMark('(')) ++depth;
    if (tokens[k].isMark(')')) --depth;
  }
  return parts;
}

void bind(Tokens part, CardSecret secret, std::vector<BoundValue>& values) {
  for (const Token& token : part)
    if (token.isValue()) values.push_back({&token, secret});
}

bool hasLetters(const Token& token) {
  return std::any_of(token.text.begin(), token.text.end(), isLetter);
}

using Secrets = std::vector<std::optional<CardSecret>>;

// Where the parts do not fit the columns, a statement that went wrong, every long number counts as bound.
void bindParts(const std::vector<Tokens>& parts, const Secrets& secrets, std::vector<BoundValue>& values) {
  if (parts.size() == secrets.size()) {
    for (size_t k = 0; k < parts.size(); ++k)
      if (secrets[k]) bind(parts[k], *secrets[k], values);
    return;
  }
  for (const Tokens part : parts)
    for (const Token& token : part)
      if (token.isValue() && !hasLetters(token)) values.push_back({&token, CardSecret::Number});
}

// How many of `tokens` the parts take, which begin with the first.
size_t lengthOf(const std::vector<Tokens>& parts, Tokens tokens) {
  return static_cast<size_t>(parts.back().data() + parts.back().size() - tokens.data());
}

// Rows (1, 2), (3, 4) behind the word `values`. Gives the place behind them.
size_t bindRows(Tokens tokens, size_t row, const Secrets& secrets, std::vector<BoundValue>& values) {
  while (row < tokens.size() && tokens[row].isMark('(')) {
    const Tokens rest = tokens.subspan(row + 1);
    const std::vector<Tokens> parts = partsOf(rest);
    bindParts(parts, secrets, values);
    row += lengthOf(parts, rest) + 2;
    if (row < tokens.size() && tokens[row].isMark(',')) ++row;
  }
  return row;
}

// What the columns between the brackets hold; empty where none of them is secret.
Secrets secretsOf(Tokens columns) {
  Secrets secrets;
  for (const Tokens column : partsOf(columns))
    secrets.push_back(column.empty() ? std::nullopt : secretOf(column.back()));
  const auto isSecret = [](const std::optional<CardSecret>& secret) { return secret.has_value(); };
  return std::any_of(secrets.begin(), secrets.end(), isSecret) ? secrets : Secrets();
}

// One walk: what is bound by a list is passed over, so that long text costs no more than its length.
//
// | met                          | bound                                   |
// |------------------------------|-----------------------------------------|
// | column = value               | the value                               |
// | (columns) values (..), (..)  | the values below columns of card data   |
// | a procedure of kArguments    | its argument that is a card number      |
std::vector<BoundValue> boundValues(Tokens tokens) {
  std::vector<BoundValue> values;
  std::optional<size_t> opening;  // the latest bracket that is open
  Tokens columns;                 // between the latest pair of brackets
  for (size_t k = 0; k < tokens.size(); ++k) {
    if (tokens[k].isMark('(')) opening = k;
    if (tokens[k].isMark(')')) {
      columns = opening ? tokens.subspan(*opening + 1, k - *opening - 1) : Tokens();
      opening.reset();
    }
    if (tokens[k].kind != TokenKind::Word) continue;
    const auto secret = secretOf(tokens[k]);
    if (secret && k + 2 < tokens.size() && tokens[k + 1].isMark('='))
      bind(tokens.subspan(k + 2, 1), *secret, values);
    if (equalsIgnoringCase(tokens[k].text, "values") && k > 0 && tokens[k - 1].isMark(')')) {
      const Secrets secrets = secretsOf(columns);
      if (!secrets.empty()) k = bindRows(tokens, k + 1, secrets, values) - 1;
      continue;
    }
    for (const auto& [procedure, count, position] : kArguments) {
      if (!equalsIgnoringCase(tokens[k].text, procedure)) continue;
      Secrets secrets(count);
      secrets[position] = CardSecret::Number;
      const Tokens rest = tokens.subspan(k + 1);
      const std::vector<Tokens> parts = partsOf(rest);
      bindParts(parts, secrets, values);
      k += lengthOf(parts, rest);
      break;
    }
  }
  return values;
}

std::string maskedValue(const BoundValue& value) {
  const std::string_view text = value.token->text;
  const bool isQuoted = value.token->kind == TokenKind::Literal;
  const std::string digits = keepDigits(text);
  std::string masked;
  if (value.secret == CardSecret::Whole)
    masked = text == "''" ? "" : kMasked;
  else if (digits.size() >= kFewestDigits)
    masked = maskedCardNumber(digits);
  else
    return std::string(text);
  return isQuoted ? "'" + masked + "'" : masked;
}

}  // namespace

std::string maskCardColumns(std::string_view statement) {
  const std::vector<Token> tokens = tokensOf(statement);
  std::string result;
  size_t copied = 0;
  for (const BoundValue& value : boundValues(tokens)) {
    const size_t start = value.token->start;
    if (start < copied) continue;
    result += statement.substr(copied, start - copied);
    result += maskedValue(value);
    copied = start + value.token->text.size();
  }
  result += statement.substr(copied);
  return result;
}

}  // namespace ondrel
