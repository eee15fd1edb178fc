#include "data/dialect/keywords.h"

#include <array>
#include <iterator>

namespace ondrel::sql {
namespace {

constexpr bool kReserved = true;

// clang-format off
constexpr KeyRow kKeys[] = {
    {Key::None,             ""},
    {Key::Or,               "or",       Binding::Or,         kReserved},
    {Key::And,              "and",      Binding::And,        kReserved},
    {Key::Not,              "not",      Binding::Comparison, kReserved},  // not in, not like, not between
    {Key::Equal,            "=",        Binding::Comparison},
    {Key::Less,             "<",        Binding::Comparison},
    {Key::Greater,          ">",        Binding::Comparison},
    {Key::LessEqual,        "<=",       Binding::Comparison},
    {Key::GreaterEqual,     ">=",       Binding::Comparison},
    {Key::Unequal,          "<>",       Binding::Comparison},
    {Key::UnequalToo,       "!=",       Binding::Comparison},
    {Key::Is,               "is",       Binding::Comparison, kReserved},
    {Key::In,               "in",       Binding::Comparison, kReserved},
    {Key::Like,             "like",     Binding::Comparison, kReserved},
    {Key::Between,          "between",  Binding::Comparison, kReserved},
    {Key::Plus,             "+",        Binding::Sum},
    {Key::Minus,            "-",        Binding::Sum},
    {Key::BitAnd,           "&",        Binding::Sum},
    {Key::BitOr,            "|",        Binding::Sum},
    {Key::Times,            "*",        Binding::Product},
    {Key::Divided,          "/",        Binding::Product},
    {Key::Modulo,           "%",        Binding::Product},
    {Key::Complement,       "~"},
    {Key::Open,             "("},
    {Key::Close,            ")"},
    {Key::Comma,            ","},
    {Key::Point,            "."},
    {Key::Semicolon,        ";"},
    {Key::All,              "all",       Binding::None, kReserved},
    {Key::Alter,            "alter",     Binding::None, kReserved},
    {Key::As,               "as",        Binding::None, kReserved},
    {Key::Asc,              "asc",       Binding::None, kReserved},
    {Key::By,               "by",        Binding::None, kReserved},
    {Key::Case,             "case",      Binding::None, kReserved},
    {Key::Create,           "create",    Binding::None, kReserved},
    {Key::Cross,            "cross",     Binding::None, kReserved},
    {Key::Delete,           "delete",    Binding::None, kReserved},
    {Key::Desc,             "desc",      Binding::None, kReserved},
    {Key::Distinct,         "distinct",  Binding::None, kReserved},
    {Key::Drop,             "drop",      Binding::None, kReserved},
    {Key::Else,             "else",      Binding::None, kReserved},
    {Key::End,              "end",       Binding::None, kReserved},
    {Key::Except,           "except",    Binding::None, kReserved},
    {Key::Exec,             "exec",      Binding::None, kReserved},
    {Key::Execute,          "execute",   Binding::None, kReserved},
    {Key::Exists,           "exists",    Binding::None, kReserved},
    {Key::From,             "from",      Binding::None, kReserved},
    {Key::Full,             "full",      Binding::None, kReserved},
    {Key::Group,            "group",     Binding::None, kReserved},
    {Key::Having,           "having",    Binding::None, kReserved},
    {Key::Inner,            "inner",     Binding::None, kReserved},
    {Key::Insert,           "insert",    Binding::None, kReserved},
    {Key::Intersect,        "intersect", Binding::None, kReserved},
    {Key::Into,             "into",      Binding::None, kReserved},
    {Key::Join,             "join",      Binding::None, kReserved},
    {Key::Left,             "left",      Binding::None, kReserved},
    {Key::Null,             "null",      Binding::None, kReserved},
    {Key::On,               "on",        Binding::None, kReserved},
    {Key::Order,            "order",     Binding::None, kReserved},
    {Key::Outer,            "outer",     Binding::None, kReserved},
    {Key::Right,            "right",     Binding::None, kReserved},
    {Key::Select,           "select",    Binding::None, kReserved},
    {Key::Set,              "set",       Binding::None, kReserved},
    {Key::Then,             "then",      Binding::None, kReserved},
    {Key::Top,              "top",       Binding::None, kReserved},
    {Key::Union,            "union",     Binding::None, kReserved},
    {Key::Update,           "update",    Binding::None, kReserved},
    {Key::Values,           "values",    Binding::None, kReserved},
    {Key::When,             "when",      Binding::None, kReserved},
    {Key::Where,            "where",     Binding::None, kReserved},
    {Key::With,             "with",      Binding::None, kReserved},
    {Key::Cast,             "cast"},
    {Key::Clustered,        "clustered"},
    {Key::Constraint,       "constraint"},
    {Key::Convert,          "convert"},
    {Key::CurrentTimestamp, "current_timestamp"},
    {Key::Dbo,              "dbo"},
    {Key::Default,          "default"},
    {Key::GetDate,          "getdate"},
    {Key::Go,               "go"},
    {Key::Identity,         "identity"},
    {Key::IdentityInsert,   "identity_insert"},
    {Key::Index,            "index"},
    {Key::KeyWord,          "key"},
    {Key::Max,              "max"},
    {Key::NonClustered,     "nonclustered"},
    {Key::Off,              "off"},
    {Key::Primary,          "primary"},
    {Key::Table,            "table"},
    {Key::Unique,           "unique"},
    {Key::UpdLock,          "updlock"},
};
// clang-format on

constexpr bool inOrder() {
  for (std::size_t k = 0; k < std::size(kKeys); ++k)
    if (kKeys[k].key != static_cast<Key>(k)) return false;
  return kKeys[std::size(kKeys) - 1].key == Key::UpdLock;
}
static_assert(inOrder());

constexpr std::size_t kLongest = 17;

// The rows by the length of their word, and where each length begins: a name is compared with few.
struct ByLength {
  std::array<std::uint8_t, std::size(kKeys)> rows{};
  std::array<std::uint8_t, kLongest + 2> begins{};
};
constexpr ByLength kByLength = [] {
  ByLength result;
  std::uint8_t at = 0;
  for (std::size_t length = 0; length <= kLongest; ++length) {
    result.begins[length] = at;
    for (std::size_t k = 0; k < std::size(kKeys); ++k)
      if (kKeys[k].text.size() == length) result.rows[at++] = static_cast<std::uint8_t>(k);
  }
  result.begins[kLongest + 1] = at;
  return result;
}();

}  // namespace

const KeyRow& keyRowOf(const Token& token) {
  const bool canBe = token.kind == TokenKind::Word || token.kind == TokenKind::Symbol;
  if (!canBe || token.text.size() > kLongest) return kKeys[0];
  const std::size_t length = token.text.size();
  for (std::size_t at = kByLength.begins[length]; at < kByLength.begins[length + 1]; ++at)
    if (const KeyRow& row = kKeys[kByLength.rows[at]]; sameWord(row.text, token.text)) return row;
  return kKeys[0];
}

}  // namespace ondrel::sql
