#include "base/variant.h"

#include <gtest/gtest.h>

#include <limits>
#include <vector>

#include "support/error_of.h"

namespace ondrel {
namespace {

class Thing : public Object {
 public:
  std::string_view className() const override { return "Thing"; }
};

// Expected value of an operation: `is` or, when that is not 0, the error.
struct Outcome {
  template <std::convertible_to<Variant> Value>
  Outcome(Value value) : is(std::move(value)) {}
  Outcome(ErrorNumber number) : error(static_cast<int>(number)) {}
  Variant is;
  int error = 0;
};

template <class Action>
void expectOutcome(const Outcome& expected, const std::string& name, Action action) {
  Variant found;
  EXPECT_EQ(errorOf([&] { found = action(); }), expected.error) << name;
  if (expected.error != 0) return;
  EXPECT_TRUE(found.identicalTo(expected.is))
      << name << " gives " << found.joined() << " of kind " << static_cast<int>(found.kind());
}

constexpr auto Mismatch = ErrorNumber::TypeMismatch;
constexpr auto Overflow = ErrorNumber::Overflow;
constexpr auto NullUse = ErrorNumber::InvalidUseOfNull;
constexpr auto NoMember = ErrorNumber::NoSuchMember;
constexpr auto ByZero = ErrorNumber::DivisionByZero;

TEST(VariantTest, ConvertsEveryKindToEveryOther) {
  const Date noon = Date::of(2026, 11, 24, 12);
  const double noonSerial = noon.serial();
  const Variant object(std::make_shared<Thing>());
  const int lowest = std::numeric_limits<int>::min();
  const struct {
    const char* name;
    Variant value;
    Outcome asBoolean, asLong, asDouble, asText;
    bool isNumeric;
  } cases[] = {
      // clang-format off
      {"Empty",     Variant(),       false,    0,        0.0,        "",         true},
      {"Null",      Variant::null(), NullUse,  NullUse,  NullUse,    NullUse,    false},
      {"True",      true,            true,     -1,       -1.0,       "True",     true},
      {"False",     false,           false,    0,        0.0,        "False",    true},
      {"Long",      7,               true,     7,        7.0,        "7",        true},
      {"lowest",    lowest,          true,     lowest,   -2147483648.0, "-2147483648", true},
      {"Double",    2.5,             true,     2,        2.5,        "2.5",      true},
      {"tiny",      0.25,            true,     0,        0.25,       "0.25",     true},
      {"wide",      3e9,             true,     Overflow, 3e9,        "3000000000", true},
      {"Date",      noon,            true,     46350,    noonSerial, "11/24/2026 12:00:00 PM", false},
      {"amount",    " $1,250.50 ",   true,     1250,     1250.5,     " $1,250.50 ", true},
      {"true text", "TRUE",          true,     Mismatch, Mismatch,   "TRUE",     false},
      {"false text", "false",        false,    Mismatch, Mismatch,   "false",    false},
      {"zero text", "0",             false,    0,        0.0,        "0",        true},
      {"no text",   "",              Mismatch, Mismatch, Mismatch,   "",         false},
      {"words",     "12 pcs",        Mismatch, Mismatch, Mismatch,   "12 pcs",   false},
      {"object",    object,          NoMember, NoMember, NoMember,   NoMember,   false},
      // clang-format on
  };
  for (const auto& each : cases) {
    const std::string name = each.name;
    expectOutcome(each.asBoolean, name + " as Boolean", [&] { return Variant(each.value.toBoolean()); });
    expectOutcome(each.asLong, name + " as Long", [&] { return Variant(each.value.toLong()); });
    expectOutcome(each.asDouble, name + " as Double", [&] { return Variant(each.value.toDouble()); });
    expectOutcome(each.asText, name + " as text", [&] { return Variant(each.value.toText()); });
    EXPECT_EQ(each.value.isNumeric(), each.isNumeric) << name;
  }
}

TEST(VariantTest, LongsRoundHalfToEven) {
  const std::pair<double, Outcome> cases[] = {
      // clang-format off
      {0.5, 0}, {1.5, 2}, {2.5, 2}, {-0.5, 0}, {-1.5, -2}, {2.5000001, 3}, {2.4999999, 2},
      {2147483647.4, 2147483647}, {2147483647.5, Overflow}, {-2147483648.5, std::numeric_limits<int>::min()},
      {-2147483648.6, Overflow}, {1e300, Overflow}, {std::numeric_limits<double>::quiet_NaN(), Overflow},
      // clang-format on
  };
  for (const auto& [value, rounded] : cases)
    expectOutcome(rounded, std::to_string(value), [&] { return Variant(toLong(value)); });
}

TEST(VariantTest, IntegersWiderThanALongBecomeDoubles) {
  EXPECT_TRUE(Variant(2147483647LL).identicalTo(2147483647));
  EXPECT_FALSE(Variant(2147483647LL).identicalTo(2147483647.0));
  EXPECT_TRUE(Variant(2147483648LL).identicalTo(2147483648.0));
  EXPECT_TRUE(Variant(4000000000U).identicalTo(4e9));
}

TEST(VariantTest, DatesComeFromDatesTextsAndNumbers) {
  const Date day = Date::of(2026, 11, 24);
  const std::pair<Variant, Outcome> cases[] = {
      // clang-format off
      {day, day}, {"11/24/2026", day}, {46350, day}, {46350.0, day}, {Variant(), Date(0)},
      {"17:30", Date::of(1899, 12, 30, 17, 30)}, {"soon", Mismatch}, {"", Mismatch}, {Variant::null(), NullUse},
      {2958466, Overflow}, {-657435, Overflow}, {1e300, Overflow},
      // clang-format on
  };
  for (const auto& [value, date] : cases)
    expectOutcome(date, value.joined(), [&] { return Variant(value.toDate()); });
}

TEST(VariantTest, ObjectsAreGivenOutAndNothingElseIs) {
  const auto thing = std::make_shared<Thing>();
  EXPECT_EQ(Variant(thing).toObject(), thing);
  EXPECT_EQ(Variant().toObject(), nullptr);
  EXPECT_EQ(errorOf([] { Variant("x").toObject(); }), 424);
}

TEST(VariantTest, ArithmeticKeepsTheNarrowestKindAndNullSpreads) {
  const Variant null = Variant::null(), empty;
  const Date day = Date::of(2026, 11, 24);
  const int highest = std::numeric_limits<int>::max();
  const struct {
    Variant a;
    char operation;
    Variant b;
    Outcome result;
  } cases[] = {
      // clang-format off
      {2, '+', 3, 5},             {2, '-', 3, -1},            {2, '*', 3, 6},           {6, '/', 3, 2.0},
      {1, '/', 4, 0.25},          {2, '+', 0.5, 2.5},         {true, '+', true, -2},
      {true, '*', 5, -5},         {empty, '+', empty, 0},   {empty, '-', 2.5, -2.5},
      {highest, '+', 1, Overflow}, {-2, '-', highest, Overflow}, {65536, '*', 65536, Overflow}, {1e308, '*', 10, Overflow},
      {1, '/', 0, ByZero},        {1, '/', empty, ByZero},    {1.5, '/', "0", ByZero},
      {null, '+', 1, null},       {"a", '+', null, null},     {null, '*', 2, null},  {null, '/', 0, null},
      {1, '-', null, null},
      {"1", '+', "2", "12"},      {"a", '+', "", "a"},        {"a", '+', empty, "a"},   {empty, '+', "a", "a"},
      {"1", '+', 2, 3.0},         {"4", '-', "1", 3.0},       {"2", '*', "3", 6.0},     {"9", '/', "3", 3.0},
      {"a", '+', 1, Mismatch},    {1, '*', "", Mismatch},     {"x", '-', "y", Mismatch},
      {day, '+', 1, Date::of(2026, 11, 25)},  {1, '+', day, Date::of(2026, 11, 25)},
      {day, '-', 0.5, Date::of(2026, 11, 23, 12)}, {day, '-', Date::of(2026, 11, 20), 4.0}, {day, '*', 1, day.serial()},
      {day, '+', 1e7, Overflow},  {day, '-', 1000000, Overflow},
      // clang-format on
  };
  for (const auto& each : cases) {
    const auto& [a, operation, b, result] = each;
    expectOutcome(result, a.joined() + operation + b.joined(), [&] {
      return operation == '+' ? a + b : operation == '-' ? a - b : operation == '*' ? a * b : a / b;
    });
  }
  EXPECT_TRUE((-null).isNull());
  EXPECT_EQ(errorOf([] { -Variant(std::numeric_limits<int>::min()); }), 6);
  EXPECT_EQ(errorOf([] { Variant(std::make_shared<Thing>()) + Variant(1); }), 438);
}

TEST(VariantTest, ComparesNumbersTextsAndDates) {
  const Variant null = Variant::null(), empty;
  const Date day = Date::of(2026, 11, 24);
  const auto less = std::partial_ordering::less, equal = std::partial_ordering::equivalent,
             greater = std::partial_ordering::greater, unordered = std::partial_ordering::unordered;
  const struct {
    Variant a, b;
    std::partial_ordering order;
  } cases[] = {
      // clang-format off
      {1, 2, less},             {2, 2.0, equal},          {3, 2.5, greater},        {true, -1, equal},
      {true, false, less},      {empty, 0, equal},        {empty, "", equal},       {empty, "a", less},
      {empty, false, equal},    {empty, empty, equal},    {empty, -1, greater},
      {"a", "b", less},         {"a", "A", greater},      {"10", "9", less},        {"", "a", less},
      {"10", 9, greater},       {9, "10", less},          {"2.50", 2.5, equal},     {"$5", 5, equal},
      {5, "five", less},        {"five", 5, greater},     {true, "True", equal},    {"-1", true, equal},
      {day, day.addDays(1), less}, {day, "11/24/2026", equal}, {"11/25/2026", day, greater}, {day, 46350, equal},
      {null, null, unordered},  {null, 1, unordered},     {"a", null, unordered},   {empty, null, unordered},
      // clang-format on
  };
  for (const auto& each : cases) {
    const std::string name = each.a.joined() + " with " + each.b.joined();
    EXPECT_EQ(compare(each.a, each.b), each.order) << name;
    EXPECT_EQ(isEqual(each.a, each.b), each.order == equal) << name;
    EXPECT_EQ(isLess(each.a, each.b), each.order == less) << name;
    EXPECT_EQ(isGreater(each.b, each.a), each.order == less) << name;
  }
}

TEST(VariantTest, JoiningTakesNullAsNoText) {
  EXPECT_EQ(Variant::null().joined() + Variant().joined() + Variant(1.50).joined(), "1.5");
  EXPECT_EQ(errorOf([] { Variant(std::make_shared<Thing>()).joined(); }), 438);
}

}  // namespace
}  // namespace ondrel
