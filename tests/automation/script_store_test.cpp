#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>

#include "automation/script/script_console.h"
#include "support/folders.h"
#include "support/store_fixture.h"

namespace ondrel {
namespace {

using testing::AllOf;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

// What a script prints and complains of.
std::string outputOf(std::string_view source, const ConsoleOptions& options, int& exitCode,
                     std::string_view fileName = "counter.js") {
  std::string output;
  const auto append = [&output](std::string_view text) { output += text; };
  exitCode = runScript(source, fileName, options, append, append);
  return output;
}

// Scripts against a store of their own, on Tuesday 2026-11-24 at 10:30.
class StoreScriptTest : public StoreTest {
 protected:
  std::string printed(std::string_view source) {
    ConsoleOptions options;
    options.connectionString = store.connectionString();
    options.now = clock->now();
    options.arguments = {"one", "--two"};
    return outputOf(source, options, exitCode);
  }

  int exitCode = 0;
};

TEST_F(StoreScriptTest, TablesAreBuiltAndReadByName) {
  EXPECT_EQ(printed(R"(
    var rs = CreateObject("ADODB.Recordset");
    rs.fields.append("number", 3);
    rs.Fields.Append("name", 200, 10, 32);
    rs.Fields.Append("sent", 11);
    rs.CursorLocation = 3;
    rs.Open();
    rs.ActiveConnection = null;
    rs.AddNew(["number", "NAME"], [2, "shirt"]);
    rs.AddNew(["number"], [1]);
    rs.AddNew();
    rs.Fields("number").Value = 3;
    rs.Fields.Item(1).Value = "coat";
    rs.Sort = "number desc";
    for (; !rs.EOF; rs.MoveNext()) print(rs("number"), rs.Fields("name").Value, rs("sent").Value, rs("NUMBER") + 1);
    rs.filter = "name = 'SHIRT'";
    print(rs.RecordCount, rs.Filter, rs.fields.count, rs.Fields(1).Name, rs("name").DefinedSize, rs("name").Attributes);
    var other = rs.Clone(-1);
    rs.Delete(1);
    rs.Filter = 0;
    print(other.RecordCount, rs.RecordCount, rs.BOF, rs.State);
    var mark = rs.Bookmark;
    rs.MoveNext();
    rs.Bookmark = mark;
    print(rs("number"));
    rs.Update(["number", "name"], [9, "tie"]);
    print(rs("number"), rs("name"));
    rs.Filter = "number > 5";
    rs.Delete(2);
    rs.Filter = 0;
    print(rs.RecordCount);
    rs.Close();
    print(rs.State);)"),
            "3 coat false 4\n2 shirt false 3\n1 null false 2\n"
            "1 name = 'SHIRT' 3 name 10 32\n"
            "2 2 false 1\n3\n9 tie\n1\n0\n");
}

TEST_F(StoreScriptTest, APageCannotTakeAwayTheTablesOfAnInvoice) {
  EXPECT_EQ(printed(R"(
    var invoice = CreateObject("OndrelCorpComponents.invoice");
    function refused(name, value) { try { invoice[name] = value; print("taken"); } catch (e) { print(name, e.number); } }
    refused("lineItems", null);
    refused("ticketLogItems", null);
    refused("lineItems", invoice.ticketLogItems);
    refused("lineItems", CreateObject("OndrelCorpComponents.invoice").lineItems);
    try { invoice.getLineItemTotalDiscountable(null); } catch (e) { print(e.number); })"),
            "lineItems 91\nticketLogItems 91\nlineItems 3001\ntaken\n91\n");
}

TEST_F(StoreScriptTest, TableErrorsCarryTheirNumbers) {
  const std::string build =
      "var rs = CreateObject('adodb.recordset'); rs.Fields.Append('n', 3); rs.Open(); rs.AddNew(['n'], [1]);";
  const std::pair<std::string, int> cases[] = {
      {"rs('m')", 3265},
      {"rs(1)", 3265},
      {"rs.MoveNext(); rs('n').Value", 3021},
      {"rs.Filter = 'n'", 3001},
      {"rs.Delete(3)", 3001},
      {"rs.Open('select 1')", 3001},
      {"rs.Open()", 3705},
      {"rs.AddNew(['n'], [1, 2])", 3001},
  };
  for (const auto& [code, number] : cases)
    EXPECT_EQ(printed(build + "try { " + code + "; print('none') } catch (e) { print(e.number) }"),
              std::to_string(number) + "\n")
        << code;
}

TEST_F(StoreScriptTest, AGarmentOnAnInvoice) {
  EXPECT_EQ(printed(R"(
    var invoice = CreateObject("OndrelCorpComponents.invoice");
    print("[" + invoice.DBConnectionString + "]", invoice.createdDate, invoice.CURRENTLINENUMBER);
    invoice.DBConnectionString = Database.connectionString;
    invoice.storeNumber = "1";
    invoice.priceListId = 1;
    invoice.custSeqNumber = 1;
    invoice.setStoreDays(1);
    invoice.LoadDefaults();
    Database.trace();
    var line = invoice.addItem(201, 1, 5);
    print(Database.trace().slice(0, 2));
    print(line, invoice.lineItems("itemName"), invoice.lineItems.Fields("quantity").Value * 2);
    var count = ByRef(line);
    invoice.attachNotes(line, "blue");
    print(invoice.getItemNotes(count), count.value);
    try { invoice.addItem() } catch (e) { print(e.number, e.description) }
    try { invoice.storeNumber = "first" } catch (e) { print(e.number, e.description) })"),
            "[] 11/24/2026 10:30:00 AM 1\n"
            "<begin>,update pricelistitem set usecounter = usecounter + 1 Where priceListItemId =201\n"
            "1 Shirt on Hanger 10\n"
            "blue 1\n"
            "450 Wrong number of arguments or invalid property assignment: 'invoice.addItem'\n"
            "13 Type mismatch: 'invoice.storeNumber'\n");
}

TEST_F(StoreScriptTest, ByReferenceArgumentsComeBackInTheirBox) {
  // The second argument of roundTo is by reference: a step of 0 or less becomes a cent.
  EXPECT_EQ(printed("var invoice = CreateObject('invoice'), step = ByRef(0), plain = -5;"
                    "print(invoice.roundTo(1.239, step), step.value, invoice.roundTo(1.239, plain), plain);"),
            "1.24 0.01 1.24 -5\n");
}

TEST_F(StoreScriptTest, TheDatabaseIsAtHand) {
  EXPECT_EQ(printed(R"(
    Database.execute("update customer set firstName = 'O''Hara' where customerSequenceNumber = 1");
    var rs = Database.query("select firstName, getdate() as today from customer where customerSequenceNumber = 1");
    print(rs("firstName"), rs("today"), arguments.join() + CreateObject("invoice").DBConnectionString);
    print(Database.trace().length, Database.trace().length);)"),
            "O'Hara 11/24/2026 10:30:00 AM one,--two\n5 0\n");
}

TEST_F(StoreScriptTest, ExitStatus) {
  printed("print('ok')");
  EXPECT_EQ(exitCode, 0);
  printed("quit(7)");
  EXPECT_EQ(exitCode, 7);
  EXPECT_THAT(printed("\nDatabase.query('select * from nowhere')"),
              testing::MatchesRegex("error -?[0-9]+: .*nowhere.*\\(counter.js:2\\)\n"));
  EXPECT_EQ(exitCode, 1);
}

TEST(Console, PrivateStoresAreFreshAndMayBeEmpty) {
  for (const bool empty : {false, false, true}) {
    ConsoleOptions options;
    options.emptyStore = empty;
    int exitCode = 0;
    EXPECT_EQ(
        outputOf(
            "print(Database.query('select * from store').RecordCount > 0); Database.execute('delete store')",
            options, exitCode),
        empty ? "false\n" : "true\n");
  }
}

TEST(Console, OtherDriversAreRefusedWithoutTheirPassword) {
  ConsoleOptions options;
  options.connectionString = "Provider=Nothing;Data Source=shop;Password=secret";
  int exitCode = 0;
  EXPECT_THAT(outputOf("Database.query('select 1')", options, exitCode),
              AllOf(StartsWith("error 3706: "), Not(HasSubstr("secret"))));
  EXPECT_EQ(exitCode, 1);
  EXPECT_THROW(runScriptFile("/nowhere/at/all.js", options), Error);
}

TEST(Examples, RunToTheirEndInTheSampleStore) {
  ConsoleOptions options;
  options.now = Date::of(2026, 11, 24, 10, 30);
  int count = 0, exitCode = 0;
  for (const auto& entry : std::filesystem::directory_iterator(sourcePath("examples"))) {
    if (entry.path().extension() != ".js") continue;
    ++count;
    std::ifstream file(entry.path());
    const std::string source(std::istreambuf_iterator<char>(file), {});
    EXPECT_NE(outputOf(source, options, exitCode, entry.path().string()), "") << entry.path();
    EXPECT_EQ(exitCode, 0) << entry.path();
  }
  EXPECT_GT(count, 0);
}

}  // namespace
}  // namespace ondrel
