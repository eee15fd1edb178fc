#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <set>

#include "automation/class_factory.h"
#include "automation/classes/class_tables.h"
#include "automation/dispatch/call.h"
#include "base/dictionary.h"
#include "base/text.h"

namespace ondrel {
namespace {

// A class with a member of every shape.
class Basket : public Object {
 public:
  std::string_view className() const override { return "Basket"; }

  std::string owner = "nobody";
  int pieces = 0;
  Date due;
  DictionaryRef notes = std::make_shared<Dictionary>();

  Variant add(const Variant& item, int quantity, double price) {
    pieces += quantity;
    return item + Variant(quantity * price);
  }
  bool check(const Variant& seal, Variant& message) const {
    message = "seal " + seal.toText();
    return pieces > 0;
  }
  void raise(int& level, Variant text) {
    ++level;
    text = "changed";
  }
  void fail(int& level) {
    ++level;
    throw Error(ErrorNumber::DivisionByZero, "Basket", "Division by zero");
  }
  void attach(std::shared_ptr<Basket> other) { attached_ = other ? other->owner : "none"; }
  std::string attached() const { return attached_; }
  double limit() const { return limit_; }
  void setLimit(double value) { limit_ = value; }

 private:
  std::string attached_;
  double limit_ = 0.5;
};

const ClassTable& basketClass() {
  // clang-format off
  static const ClassTable table("Basket", {
      property("owner", &Basket::owner),
      property("pieces", &Basket::pieces),
      property("due", &Basket::due),
      property("notes", &Basket::notes),
      readOnly("fixedNotes", &Basket::notes),
      property("limit", &Basket::limit, &Basket::setLimit),
      property("attached", &Basket::attached),
      method("add", &Basket::add, {{"item"}, {"quantity", 1}, {"price", 2.5}}),
      method("check", &Basket::check, {{"seal"}, {"message"}}),
      method("raise", &Basket::raise, {{"level"}, {"text"}}),
      method("fail", &Basket::fail, {{"level"}}),
      method("attach", &Basket::attach, {{"other"}}),
  });
  // clang-format on
  return table;
}

class DispatchTest : public testing::Test {
 protected:
  Variant call(std::string_view name, std::vector<Variant> arguments = {}) {
    return callMember(basketClass(), basket, basketClass().member(name), arguments);
  }
  void put(std::string_view name, const Variant& value, std::vector<Variant> arguments = {}) {
    putMember(basketClass(), basket, basketClass().member(name), value, arguments);
  }

  std::shared_ptr<Basket> basket = std::make_shared<Basket>();
};

template <class Action>
Error raised(Action action) {
  try {
    action();
  } catch (const Error& error) {
    return error;
  }
  ADD_FAILURE() << "no error";
  return Error(ErrorNumber::InvalidCall, "", "");
}

TEST_F(DispatchTest, ArgumentsConvertAndOptionalOnesTakeTheirDefault) {
  EXPECT_EQ(call("add", {1}).toDouble(), 3.5);
  EXPECT_EQ(call("ADD", {"10", "2"}).toDouble(), 15);
  EXPECT_EQ(call("Add", {Variant(), 2.5, "0.25"}).toDouble(), 0.5);  // 2.5 rounds to even
  EXPECT_EQ(basket->pieces, 1 + 2 + 2);
  EXPECT_TRUE(call("add", {Variant::null(), true}).isNull());
}

TEST_F(DispatchTest, ByReferenceArgumentsAreWrittenBack) {
  std::vector<Variant> arguments = {17, Variant()};
  const Variant result = callMember(basketClass(), basket, basketClass().member("check"), arguments);
  EXPECT_TRUE(result.identicalTo(false));
  EXPECT_EQ(arguments[1].toText(), "seal 17");

  arguments = {"4", "as it was"};
  callMember(basketClass(), basket, basketClass().member("raise"), arguments);
  EXPECT_TRUE(arguments[0].identicalTo(5));
  EXPECT_EQ(arguments[1].toText(), "as it was");
}

TEST_F(DispatchTest, PropertiesKeepTheirType) {
  put("OWNER", 12);
  put("pieces", "7");
  put("due", "11/24/2026");
  put("limit", true);
  EXPECT_EQ(basket->owner, "12");
  EXPECT_EQ(basket->pieces, 7);
  EXPECT_TRUE(call("due").identicalTo(Date::of(2026, 11, 24)));
  EXPECT_TRUE(call("limit").identicalTo(-1.0));
  put("notes", Variant::null());
  EXPECT_EQ(call("notes").toObject(), nullptr);
}

TEST_F(DispatchTest, ObjectsMustBeOfTheClass) {
  auto other = std::make_shared<Basket>();
  other->owner = "Ann";
  call("attach", {Variant(other)});
  EXPECT_EQ(basket->attached(), "Ann");
  call("attach", {Variant()});
  EXPECT_EQ(basket->attached(), "none");
  EXPECT_EQ(raised([&] { call("attach", {Variant(basket->notes)}); }).number(), 13);
  EXPECT_EQ(raised([&] { call("attach", {5}); }).number(), 424);
}

TEST_F(DispatchTest, ArgumentsReachTheDefaultMemberOfAPropertysValue) {
  put("notes", "pressed", {"Ann"});
  put("fixedNotes", "folded", {"Bob"});
  EXPECT_EQ(call("notes", {"Ann"}).toText(), "pressed");
  EXPECT_EQ(basket->notes->item("Bob").toText(), "folded");
}

TEST_F(DispatchTest, ErrorsNameClassMemberAndArgument) {
  const std::string wrongCount = "Wrong number of arguments or invalid property assignment: ";
  const std::string noMember = "Object doesn't support this property or method: ";
  const struct {
    std::function<void()> action;
    int number;
    std::string description;
  } cases[] = {
      // clang-format off
      {[&] { call("addd"); },              438, noMember + "'Basket.addd'"},
      {[&] { call("add"); },               450, wrongCount + "'Basket.add'"},
      {[&] { call("add", {1, 2, 3, 4}); }, 450, wrongCount + "'Basket.add'"},
      {[&] { call("owner", {1}); },        450, wrongCount + "'Basket.owner'"},
      {[&] { put("owner", 1, {1}); },      450, wrongCount + "'Basket.owner'"},
      {[&] { put("add", 1); },             438, noMember + "'Basket.add' cannot be assigned"},
      {[&] { put("attached", "x"); },      438, noMember + "'Basket.attached' cannot be assigned"},
      {[&] { call("add", {1, "two"}); },   13, "Type mismatch: argument 'quantity' of 'Basket.add'"},
      {[&] { call("add", {1, 3e9}); },     6, "Overflow: argument 'quantity' of 'Basket.add'"},
      {[&] { call("add", {1, 1, Variant::null()}); }, 94, "Invalid use of Null: argument 'price' of 'Basket.add'"},
      {[&] { put("pieces", "many"); },     13, "Type mismatch: 'Basket.pieces'"},
      {[&] { put("limit", "much"); },      13, "Type mismatch: 'Basket.limit'"},
      {[&] { call("fail", {1}); },         11, "Division by zero"},
      // clang-format on
  };
  for (const auto& [action, number, description] : cases) {
    const Error error = raised(action);
    EXPECT_EQ(error.number(), number) << description;
    EXPECT_EQ(error.description(), description);
    EXPECT_EQ(error.source(), "Basket");
  }
  EXPECT_EQ(raised([] { callMember(nullptr, "add"); }).number(), 424);
  EXPECT_EQ(raised([&] { callMember(basket, "add"); }).number(), 438) << "a class without a registered table";
}

TEST(ClassTables, MalformedRowsAreRefused) {
  const auto row = method("add", &Basket::add, {{"a"}, {"b"}, {"c"}});
  EXPECT_THROW(ClassTable("Basket", {row, row}), std::logic_error);
  EXPECT_THROW(ClassTable("Basket", {method("add", &Basket::add, {{"a", 1}, {"b"}, {"c"}})}),
               std::logic_error);
  EXPECT_THROW(ClassTable("Basket", {row}, "item"), std::logic_error);
  EXPECT_THROW(method("add", &Basket::add, {{"a"}}), std::logic_error);
}

TEST(ClassTables, AllMembersAreFoundInAnyCase) {
  for (const ClassTable* table : classTables())
    for (const Member& member : table->members()) {
      EXPECT_EQ(table->find(toUpper(member.name)), &member) << table->className() << '.' << member.name;
      EXPECT_EQ(table->find(member.id), &member);
    }
}

// Programs keep these numbers: they follow from the names and never change.
TEST(ClassTables, MembersKeepTheirNumbers) {
  EXPECT_EQ(invoiceClass().member("addItem").id, 1312366187);
  EXPECT_EQ(dbToolClass().member("getdboption").id, 1015637440);
}

TEST(ClassFactory, ThirteenClassesWithDistinctIds) {
  std::set<std::string_view> texts;
  for (const PublicClass& row : publicClasses()) {
    for (const std::string_view text : {row.name, row.classId, row.interfaceId})
      EXPECT_TRUE(texts.insert(text).second) << text;
    for (const std::string_view id : {row.classId, row.interfaceId})
      EXPECT_THAT(std::string(id), testing::MatchesRegex("[0-9A-F]{8}(-[0-9A-F]{4}){3}-[0-9A-F]{12}"));
    EXPECT_EQ(row.create()->className(), row.name);
  }
  EXPECT_EQ(texts.size(), 39u);
}

TEST(ClassFactory, NamesMatchWithAndWithoutTheProject) {
  const PublicClass* invoice = findPublicClass("Invoice");
  ASSERT_NE(invoice, nullptr);
  EXPECT_EQ(findPublicClass("ONDRELcorpCOMPONENTS.INVOICE"), invoice);
  EXPECT_EQ(findPublicClass("Other.invoice"), nullptr);
  EXPECT_EQ(createObject("scripting.dictionary")->className(), "Dictionary");
}

TEST(DictionaryByName, ItemIsTheDefaultAndListsAreArrays) {
  const ObjectRef dictionary = createObject("Scripting.Dictionary");
  std::vector<Variant> entry = {"collar", 3}, key = {"cuff"}, place = {1}, behind = {2};
  callMember(dictionary, "add", entry);
  putMember(dictionary, "item", 4, key);
  const Variant items = callMember(dictionary, "items");
  EXPECT_THAT(listOf(items).size(), 2u);
  EXPECT_EQ(callMember(items.toObject(), "item", place).toLong(), 4);
  EXPECT_EQ(raised([&] { callMember(items.toObject(), "item", behind); }).number(), 9);
}

}  // namespace
}  // namespace ondrel
