#include <gtest/gtest.h>

#include "automation/script/script_console.h"
#include "platform/clock.h"

namespace ondrel {
namespace {

// Every argument that a page passes by reference to the card class comes back, and the others do not. Nobody
// answers: the folder is not there, and the fixed clock waits in no time.
constexpr const char* kScript = R"(
var cards = CreateObject("OndrelCorpComponents.creditCardProcessing");
cards.DBConnectionString = Database.connectionString;
cards.XChargeDirectory = "Q:/none";
function box() { return ByRef("as it was"); }
function show() { print(Array.prototype.slice.call(arguments).map(function (x) { return x.value; }).join(" | ")); }

var name = box(), message = box(), block = box(), key = box(), code = box(), id = box(), fields = box();
cards.VerifyCreditCard("4111 1111 1111 1111", name, message);      show(name, message);
cards.verifycreditcard("4111 1111 1111 1112", name, message);      show(name, message);
cards.DecipherDUKPT("0123456789ABCDEFFEDCBA9876543210", block, key); show(block, key);

var card = cards.FieldsFromSwipe("%B4111111111111111^SMITH/JOHN^2812?");
print(cards.ProcessSingleTransaction(2, card, 4, "R1", 10, code));   show(code);
print(card.guid.length);
code.value = "";
print(cards.ProcessSingleTransactionDebit(2, card, 4, "R1", 10, 5, block, key, code)); show(code, block);
card.guid = ""; code.value = "";
print(cards.ProcessFullTransaction(1, 2, 4, 11, "1008", card, 10, "", 1, code)); show(code);
code.value = "";
print(cards.ReadSingleAnswer(card.guid, code));                      show(code);
print(cards.CompleteTransaction("<a/>", id) === "");                 show(id);
print(cards.CardPurchase("4111", "2812", "", "1.00", "") === undefined);
)";

TEST(CardScripts, WriteBackWhatGoesByReference) {
  ConsoleOptions options;
  options.now = Date::of(2026, 11, 24, 10, 30);
  std::string output;
  const auto append = [&output](std::string_view text) { output += text; };
  EXPECT_EQ(runScript(kScript, "cards.js", options, append, append), 0) << output;
  const std::string timedOut = "false\nTIMED OUT WAITING FOR ANSWER";
  EXPECT_EQ(output,
            "Visa | as it was\nVisa | Invalid Credit Card Number.\nFEDCBA9876543210 | 0123456789ABCDEF\n" +
                timedOut + "\n38\n" + timedOut + " | FEDCBA9876543210\n" + timedOut + "\n" + timedOut +
                "\ntrue\n\ntrue\n");
}

}  // namespace
}  // namespace ondrel
