#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "automation/script/script_engine.h"
#include "base/array.h"
#include "base/dictionary.h"

namespace ondrel {
namespace {

class ScriptTest : public testing::Test {
 protected:
  ~ScriptTest() override { dictionary->removeAll(); }  // one that holds itself would never go

  std::string printed(std::string_view source) {
    output.clear();
    outcome = engine.run(source, "counter.js");
    if (outcome.failure) output += "! " + outcome.failure->text();
    return output;
  }

  std::string output;
  ScriptOutcome outcome;
  DictionaryRef dictionary = std::make_shared<Dictionary>();
  ScriptEngine engine{std::make_shared<Apartment>(), [this](std::string_view text) { output += text; }};
};

TEST_F(ScriptTest, ValuesCrossBothWays) {
  engine.define("d", Variant(dictionary));
  engine.run(
      "d.add(0, undefined); d.add(1, null); d.add(2, true); d.add(3, -2147483648); d.add(4, 2147483648);"
      "d.add(5, 1.5); d.add(6, new Date(2026, 10, 24, 23, 59, 59)); d.add(7, 'Zo\\u00eb \\ud83d\\udc54');"
      "d.add(8, [1, ['x']]); d.add(9, d);",
      "fill.js");
  const std::vector<Variant> items = dictionary->items();
  ASSERT_EQ(items.size(), 10u);
  const Variant crossed[] = {Variant(),
                             Variant::null(),
                             true,
                             -2147483647 - 1,
                             2147483648.0,
                             1.5,
                             Date::of(2026, 11, 24, 23, 59, 59),
                             "Zo\u00eb \U0001F454"};
  for (size_t k = 0; k < std::size(crossed); ++k) EXPECT_TRUE(items[k].identicalTo(crossed[k])) << k;
  const auto outer = std::dynamic_pointer_cast<Array>(items[8].toObject());
  ASSERT_TRUE(outer);
  EXPECT_EQ(std::dynamic_pointer_cast<Array>(outer->items.at(1).toObject())->items.at(0).text(), "x");
  EXPECT_EQ(items[9].toObject(), dictionary);

  EXPECT_EQ(printed("for (var k = 0; k < 9; ++k) print(typeof d.item(k), d.item(k));"),
            "undefined undefined\nobject null\nboolean true\nnumber -2147483648\nnumber 2147483648\n"
            "number 1.5\nobject 11/24/2026 11:59:59 PM\nstring Zo\u00eb \U0001F454\nobject 1,x\n");
  EXPECT_EQ(
      printed("var t = d.item(6); print(t instanceof Date, t.getMonth(), t.getHours(), d.Item(7).length);"),
      "true 10 23 6\n");
  dictionary->setItem("nothing", Variant(ObjectRef()));
  EXPECT_EQ(printed("print(d.item('nothing'))"), "null\n");
  dictionary->removeAll();  // it holds itself
}

TEST_F(ScriptTest, ObjectsHaveMembersInAnyCase) {
  EXPECT_EQ(
      printed("var d = CreateObject('scripting.DICTIONARY');"
              "d.ADD('a', 1); d.item('b', 2); print(d.COUNT, d.Count, d.exists('a'), d('b'), d.Item('b'));"
              "print(d.keys().join(), d.ITEMS().length, 'cOuNt' in d, 'size' in d, '' + d);"),
      "2 2 true 2 2\na,b 2 true false [object Dictionary]\n");
  EXPECT_EQ(printed("print(Object.getOwnPropertyNames(d).slice(0, 3).join());"), "Item,Count,Add\n");
}

TEST_F(ScriptTest, LibraryErrorsAreCaughtWithTheirFields) {
  const std::string noMember = "438 Dictionary Object doesn't support this property or method: ";
  const std::pair<std::string, std::string> cases[] = {
      {"d.add('a', 1); d.add('a', 2)",
       "457 Dictionary This key is already associated with an element of this collection"},
      {"d.sise", noMember + "'Dictionary.sise'"},
      {"d.sise = 1", noMember + "'Dictionary.sise'"},
      {"d.count = 1", noMember + "'Dictionary.Count' cannot be assigned"},
      {"d.add()",
       "450 Dictionary Wrong number of arguments or invalid property assignment: 'Dictionary.Add'"},
      {"d.add({}, 1)", "13 Script Type mismatch: the library takes no script objects"},
      {"d.add(new Date(NaN), 1)", "13 Script Type mismatch: not a date"},
      {"d.add(new Date(10000, 0, 1), 1)", "13 Script Type mismatch: year out of range"},
      {"var loop = []; loop[0] = loop; d.add(1, loop)",
       "13 Script Type mismatch: array too deep or too long"},
      {"var f = d.add; f(1, 2)", "424 Script Object required: 'Add'"},
      {"d.add.call(5, 1, 2)", "424 Script Object required: 'Add'"},
      {"d.add.call(CreateObject('invoice'), 1, 2)", "424 Script Object required: 'Add'"},
      {"CreateObject('OndrelCorpComponents.invoyce')",
       "429 OndrelCorpComponents Component can't create object 'OndrelCorpComponents.invoyce': there is no "
       "such class"},
  };
  for (const auto& [code, error] : cases)
    EXPECT_EQ(printed("var d = CreateObject('Scripting.Dictionary'); try { " + code +
                      "; print('no error') } catch (e) { print(e.number, e.source, e.description);"
                      "if (!(e instanceof Error) || e.message !== e.description) print('not an Error') }"),
              error + "\n")
        << code;
}

TEST_F(ScriptTest, UncaughtErrorsTellWhereTheyArose) {
  EXPECT_EQ(
      printed("var d = CreateObject('Scripting.Dictionary');\n\nfunction f() {\n  d.remove('x');\n}\nf();"),
      "! error 32811: Element not found (counter.js:4)");
  EXPECT_EQ(outcome.exitCode, 1);
  EXPECT_EQ(outcome.failure->number, 32811);
  EXPECT_EQ(outcome.failure->source, "Dictionary");
  EXPECT_EQ(printed("print(1);\nnowhere();"),
            "1\n! ReferenceError: identifier 'nowhere' undefined (counter.js:2)");
  EXPECT_THAT(printed("\nvar = 5;"), testing::MatchesRegex("! SyntaxError: .*\\(counter.js:2\\)"));
  EXPECT_EQ(printed("throw 'tantrum';"), "! tantrum");
  EXPECT_EQ(printed("print('still usable')"), "still usable\n");
}

TEST_F(ScriptTest, QuitEndsTheScriptEvenWhenCaught) {
  EXPECT_EQ(printed("print('before'); quit(3); print('after');"), "before\n");
  EXPECT_EQ(outcome.exitCode, 3);
  EXPECT_TRUE(outcome.hasQuit);
  EXPECT_FALSE(outcome.failure);
  ScriptEngine other(std::make_shared<Apartment>(), [this](std::string_view text) { output += text; });
  output.clear();
  EXPECT_EQ(other.run("try { quit() } catch (e) {} print('after');", "q.js").exitCode, 0);
  EXPECT_EQ(output, "");
}

TEST_F(ScriptTest, RunawayScriptsAreErrorsLikeOthers) {
  const std::pair<const char*, const char*> cases[] = {
      {"function f() { return f() + 1 } f()", "RangeError.*"},
      {"var o = { toString: function () { return '' + this } }; print(o)", "RangeError.*"},
      {"var s = 'x'; while (true) s += s", "Error: alloc failed.*"},
      {"var a = []; while (true) a.push({})", "Error: alloc failed.*"},
      {"eval(new Array(20000).join('['))", "(Range|Syntax)Error.*"},
      {"function t() { throw CreateObject('Scripting.Dictionary') } t()", ".object Dictionary."},
      {"throw { get number() { throw 1 }, toString: function () { throw 2 } }", ".*"},
      {"var e = new Error('x'); e.number = 7; throw e", "error 7: x .runaway.js:1."},
      {"print(Symbol('x'))", "TypeError.*"},
      {"CreateObject('Scripting.Dictionary').add(Symbol('x'), 1)", "error 13: .*"},
  };
  for (const auto& [code, pattern] : cases) {
    ScriptEngine small(
        std::make_shared<Apartment>(), [](std::string_view) {}, size_t{8} << 20);
    const ScriptOutcome end = small.run(code, "runaway.js");
    ASSERT_TRUE(end.failure) << code;
    EXPECT_THAT(end.failure->text(), testing::MatchesRegex(pattern)) << code;
  }
  EXPECT_EQ(printed("print(typeof Duktape)"), "undefined\n");
}

TEST_F(ScriptTest, ObjectsLiveAsLongAsTheScriptHoldsThem) {
  engine.define("held", Variant(dictionary));
  const auto before = dictionary.use_count();
  engine.run(
      "for (var k = 0; k < 1000; ++k) { held.item('self', held); held.item('self').count } held.removeAll()",
      "held.js");
  EXPECT_EQ(dictionary.use_count(), before);
  engine.run("held = null", "held.js");
  EXPECT_EQ(dictionary.use_count(), 1);
}

}  // namespace
}  // namespace ondrel
