#include <map>
#include <random>

#include "base/text.h"
#include "data/store_loading.h"
#include "data/values.h"
#include "invoice/invoice_fixture.h"

namespace ondrel {
namespace {

using enum LineColumn;
using ::testing::ElementsAre;

// What a line of these stories says; all else is as on a new line.
struct Given {
  const char* type = "IT";
  int department = 1;
  const char* name = "Pants";
  int pieces = 1;
  double total = 8;
  Variant pack = 1;
  int hangsOn = -1;
};

// An order at shop 1, whose departments the sample store's notes describe. Surcharges are left out.
class Splitting : public InvoiceTest {
 protected:
  Splitting() { invoice.excludeSurcharges = true; }

  int put(const Given& line) {
    const int number = invoice.currentLineNumber++;
    invoice.lineItems->clearFilter();
    invoice.lineItems->addNew({{lineNumber, number},
                               {parentLineNumber, line.hangsOn},
                               {deptId, line.department > 0 ? Variant(line.department) : Variant::null()},
                               {deptName, departmentValue(*apartment, line.department, "name").joined()},
                               {itemType, line.type},
                               {itemName, line.name},
                               {quantity, line.pieces},
                               {lineItemTotal, line.total},
                               {taxableAmt, line.total},
                               {pkgQuantity, line.pack},
                               {originalLineNumber, number}});
    invoice.lineItems->clearFilter();
    return number;
  }
  void setDepartment(const std::string& change, int department = 1) {
    execute(fmt::format("update Department set {} where departmentID = {}", change, department));
    loadDepartments(*apartment, 1, 1);
  }
  void startAnew() {
    invoice.initInvoice();
    invoice.excludeTaxes = invoice.excludeSurcharges = true;
    invoice.invoicesDictionary = nullptr;
  }
  void mark(int line) {
    const RecordsetRef found = invoice.lineItems->clone();
    found->setFilter(fmt::format("lineNumber={}", line));
    found->setValue(LineColumn::split, true);
  }
  std::vector<std::shared_ptr<Invoice>> children() {
    std::vector<std::shared_ptr<Invoice>> result;
    if (!invoice.invoicesDictionary) return result;
    for (int key = 1; key <= invoice.invoicesDictionary->count(); ++key)
      result.push_back(std::dynamic_pointer_cast<Invoice>(invoice.invoicesDictionary->find(key)->toObject()));
    return result;
  }
  // A ticket in a line: "5 Pants 40, 1 Hem 6".
  static std::string told(const Invoice& ticket) {
    std::string text;
    for (const RecordsetRef each = ticket.lineItems->clone(); !each->eof(); each->moveNext())
      text += fmt::format("{}{} {} {}", text.empty() ? "" : ", ", each->value(quantity).joined(),
                          each->text(itemName), numberText(round2(each->number(lineItemTotal), 4)));
    return text;
  }
  std::vector<std::string> split() {
    invoice.splitInvoice("add");
    EXPECT_TRUE(filterIsClear());
    std::vector<std::string> result;
    for (const auto& child : children()) result.push_back(told(*child));
    return result;
  }
};

TEST_F(Splitting, ByThePiecesThatATicketTakes) {
  setDepartment("maxItemsInReceipt = 5");
  put({.pieces = 5, .total = 40});
  EXPECT_FALSE(invoice.isSplitInvoice()) << "exactly at the limit";
  EXPECT_FALSE(invoice.splitInvoice("add"));
  EXPECT_FALSE(invoice.splitTheInvoice);

  put({.name = "Jacket", .pieces = 7, .total = 63});
  invoice.amountPaid = 20;
  EXPECT_THAT(split(), ElementsAre("5 Pants 40", "5 Jacket 45", "2 Jacket 18"));
  EXPECT_TRUE(invoice.splitTheInvoice);
  EXPECT_EQ(children()[0]->amountPaid, 20);
  EXPECT_EQ(children()[1]->amountPaid, 0);
  EXPECT_TRUE(children()[2]->isAdd);

  invoice.cancelDoneOperation();
  EXPECT_EQ(told(invoice), "5 Pants 40, 5 Jacket 45, 2 Jacket 18");
  EXPECT_FALSE(invoice.invoicesDictionary);
}

// | limit | packs in order | tickets                                             |
TEST_F(Splitting, RefusesALineThatWasMistypedIntoMillions) {
  setDepartment("splitInvoice = 1, maxItemsInReceipt = 5");
  put({.pieces = 3});
  put({.pieces = 2'000'000'000});
  EXPECT_EQ(errorOf([&] { invoice.splitInvoice(0); }), 6);
  EXPECT_EQ(invoice.lineItems->recordCount(), 2) << "and the ticket is whole";
}

TEST_F(Splitting, FillsATicketWithTheNextLineThatFits) {
  const auto ticketsFor = [&](int limit, std::vector<Variant> packs) {
    setDepartment(fmt::format("maxItemsInReceipt = {}", limit));
    startAnew();
    const char* const kNames[] = {"A", "B", "C"};
    for (size_t k = 0; k < packs.size(); ++k) put({.name = kNames[k], .pack = packs[k]});
    std::string result;
    for (const std::string& ticket : split()) result += ticket + "; ";
    return result;
  };
  EXPECT_EQ(ticketsFor(5, {3, 3, 1}), "1 A 8, 1 C 8; 1 B 8; ");
  EXPECT_EQ(ticketsFor(2, {3, 1, 1}), "1 A 8; 1 B 8, 1 C 8; ") << "larger than its limit: alone";
  EXPECT_EQ(ticketsFor(2, {1, 9, 1}), "1 A 8, 1 C 8; 1 B 8; ");
  EXPECT_EQ(ticketsFor(1, {Variant::null(), Variant::null()}), "1 A 8; 1 B 8; ")
      << "no pack is a pack of one";
  EXPECT_EQ(ticketsFor(0, {1, 1}), "1 A 8; 1 B 8; ");
}

// | departments on the order        | split? |
TEST_F(Splitting, AsksForItByGroup) {
  const std::pair<std::vector<int>, bool> kCases[] = {{{1}, false},   {{1, 4}, false},    {{1, 5, 7}, false},
                                                      {{1, 2}, true}, {{2, 3, 5}, false}, {{4, 6}, true}};
  for (const auto& [departments, wanted] : kCases) {
    startAnew();
    for (const int id : departments) put({.department = id});
    EXPECT_EQ(invoice.isSplitInvoice(), wanted) << departments.front() << ", " << departments.size();
  }
  startAnew();
  EXPECT_FALSE(invoice.isSplitInvoice());
  put({.department = 4, .pieces = 6, .total = 60});
  EXPECT_TRUE(invoice.isSplitInvoice()) << "more than the limit asks for a split";
  EXPECT_THAT(split(), ElementsAre("6 Pants 60")) << "that does not cut a department left to the clerk";
  EXPECT_TRUE(invoice.oneDeptWithNoSplitExists());
  startAnew();
  invoice.invoiceType = "Q";
  EXPECT_TRUE(invoice.isSplitInvoice());
}

// What hangs on a garment follows it, whichever department is being split and however deep it hangs.
TEST_F(Splitting, KeepsAGroupTogetherAndTakesTheUngroupedAlong) {
  const int pants = put({});
  put({.department = 2, .name = "Shirt", .total = 2.5});
  const int hem = put({.department = 5, .name = "Hem", .total = 6});
  put({.department = 4, .name = "Rug", .total = 30});
  put({.type = "CU", .department = 0, .name = "Coupon", .total = 5});
  const int lining = put({.type = "UP", .department = 5, .name = "Lining", .total = 3, .hangsOn = hem});
  put({.type = "CO", .department = 5, .name = "Red", .total = 1, .hangsOn = lining});
  const int stain = put({.type = "ST", .name = "Wine", .total = 0, .hangsOn = pants});
  invoice.lineItems->setFilter(fmt::format("lineNumber={}", stain));
  invoice.lineItems->setValue(deptName, "Cleaning");  // the shop renamed it since
  put({.type = "AC", .name = "Delivery", .total = 4});
  invoice.splitInvoice("add");
  EXPECT_EQ(told(*children()[0]), "1 Shirt 2.5, 1 Hem 6, 1 Lining 3, 1 Red 1") << "the higher group first";
  EXPECT_EQ(told(*children()[1]), "1 Pants 8, 1 Rug 30, 1 Delivery 4, 1 Wine 0");
  EXPECT_EQ(invoice.invoicesDictionary->count(), 2) << "a department run again finds nothing";
  EXPECT_EQ(told(invoice), "1 Coupon 5") << "a line of no department stays";
  EXPECT_EQ(children()[0]->currentLineNumber, 8);
}

TEST_F(Splitting, PutsDepartmentsOfTheSavedTicketFirst) {
  invoice.getExistingDetails(1007);  // cleaning, group 1
  invoice.setStoreDays(1);
  put({.department = 6, .name = "Coat", .total = 60});
  const std::vector<std::string> tickets = split();
  ASSERT_EQ(tickets.size(), 2u);
  EXPECT_EQ(tickets[1], "1 Coat 60");
  invoice.saveInvoice("edit", 4, 3, "0", "Ann", "Fernhill", true);
  EXPECT_THAT(
      rows("select ticketNumber, quantity, lineItemName from TicketLineItem where ticketLineType = 'IT' "
           "and ticketNumber in (1007, 1100) order by ticketNumber, lineItemNumber"),
      ElementsAre("1007 | 2 | Pants", "1007 | 1 | Suit 2-Piece", "1100 | 1 | Coat"));
  EXPECT_EQ(children()[0]->storeNumber, 1);
}

TEST_F(Splitting, OfMarkedLinesAndBags) {
  setDepartment("maxItemsInReceipt = 2");
  invoice.invoiceType = "Q";
  invoice.amountPaid = 7;
  const int suit = put({.name = "Suit", .pieces = 2, .total = 32});
  put({.name = "Jacket", .total = 9});
  put({.type = "UP", .name = "Pleats", .total = 2, .hangsOn = suit});
  put({.type = "DE", .name = "Bag", .pieces = 5, .total = 0});
  put({.type = "PR", .name = "Promotion", .total = 3});
  mark(suit);
  EXPECT_THAT(split(),
              ElementsAre("1 Suit 16, 1 Suit 16, 1 Pleats 2", "5 Bag 0", "1 Jacket 9, 1 Promotion 3"));
  for (const auto& child : children()) EXPECT_EQ(child->amountPaid, 7);
  EXPECT_EQ(children()[0]->InvDueDate, Date()) << "no calendar";
  EXPECT_EQ(children()[0]->currentLineNumber, 3);
  const std::vector<std::string> marked = linesOf(*children()[0]);
  EXPECT_THAT(marked.back(), ::testing::StartsWith("3<1 UP")) << "on the piece that kept the number";
  EXPECT_THAT(marked[1], ::testing::StartsWith("1 IT"));

  startAnew();
  invoice.invoiceType = "Q";
  put({});
  EXPECT_THAT(split(), ElementsAre("", "1 Pants 8")) << "a child for bags, with or without";
}

// A line of the department is shared out by what each ticket holds of its garments.
// | garments (a ticket each) | upcharge on the second | line  | shares       |
TEST_F(Splitting, SharesTheOtherLinesOfADepartment) {
  setDepartment("maxItemsInReceipt = 1");
  const auto shares = [&](std::vector<double> garments, double upcharge, double amount) {
    startAnew();
    int line = 0;
    for (const double total : garments) line = put({.total = total});
    if (upcharge != 0) put({.type = "UP", .name = "Pleats", .total = upcharge, .hangsOn = line});
    put({.type = "CU", .name = "Coupon", .total = amount});
    split();
    std::string result;
    for (const auto& child : children())
      result += numberText(round2(child->liColTotal("lineItemTotal", "itemType='CU'").toDouble(), 6)) + " ";
    EXPECT_EQ(invoice.lineItems->recordCount(), 0);
    return result;
  };
  EXPECT_EQ(shares({30, 10}, 0, 10), "7.5 2.5 ");
  EXPECT_EQ(shares({30, 10}, 5, 10), "7.5 2.5 ") << "the last takes what is left, no more";
  EXPECT_EQ(shares({30, 10}, -5, -10), "-7.5 -2.5 ");
  EXPECT_EQ(shares({20, 20, 20}, 0, 6), "2 2 2 ");
  EXPECT_EQ(shares({0, 0}, 0, 10), "0 0 ") << "all priced later";
  EXPECT_EQ(shares({30, 0}, 0, 10), "10 0 ");
}

TEST_F(Splitting, WorksOutSurchargesTaxesAndPrepayOfEachTicket) {
  invoice.excludeSurcharges = invoice.excludeTaxes = false;
  setDepartment("maxItemsInReceipt = 2");
  invoice.addItem(101, false, 3, 1.0, 0.01);
  invoice.addItem(201, false, 2, 1.0, 0.01);
  invoice.invoiceDone2();
  invoice.splitInvoice("add");
  // 16.00: 2 % = 0.32, 6 % of 16.32 = 0.98, 2.5 % = 0.40; 8.00: 0.16, 0.49, 0.20. Two shirts 5.00: 0.20 and
  // 6 % = 0.30.
  const double kToPay[] = {5.50, 17.70, 8.85};
  ASSERT_EQ(children().size(), 3u);
  for (size_t k = 0; k < 3; ++k) EXPECT_DOUBLE_EQ(children()[k]->getInvoiceAmountToPay(), kToPay[k]) << k;
  invoice.saveInvoice("add", 4, 3, "0", "Ann", "Fernhill", true);
  EXPECT_THAT(rows("select ticketNumber, netTotal from Ticket where ticketNumber > 1099"),
              ElementsAre("1100 | 5.5", "1101 | 17.7", "1102 | 8.85"));
}

// The last piece takes up the others, and what hung on them.
TEST_F(Splitting, JoinsThePiecesOfALine) {
  for (const int group : {1, 1, 2, 3}) {
    put({.total = 2.5});
    invoice.lineItems->moveLast();
    invoice.lineItems->setValue(flattenedGroup, group);
    invoice.lineItems->setValue(totalTax, 0.15);
  }
  put({.type = "UP", .name = "Pleats", .total = 2, .hangsOn = 1});
  invoice.collectLineItems();
  EXPECT_THAT(lines(), ElementsAre("2 IT Pants 2 x 0 = 5", "3 IT Pants 1 x 0 = 2.5", "4 IT Pants 1 x 0 = 2.5",
                                   "5<2 UP Pleats 1 x 0 = 2"));
  EXPECT_EQ(text(2, totalTax) + " " + text(2, taxableAmt), "0.3 5");
  EXPECT_EQ(text(3, flattenedGroup), "0") << "a piece alone is no group";
}

// Taking a line apart and joining it again gives the very amounts back, and every mark.
TEST_F(Splitting, GivesLinesBackAsTheyWere) {
  setDepartment("maxItemsInReceipt = 1000");
  put({.department = 2});
  const double kAmounts[] = {10, 0.01, 7.95 * 7, 33.335, -4.13, 0};
  for (const double amount : kAmounts) {
    const int line = put({.pieces = 7, .total = amount});
    invoice.lineItems->setFilter(fmt::format("lineNumber={}", line));
    invoice.lineItems->setValue(upchargeTotal, amount / 3);
    invoice.lineItems->setValue(heatSeal, "AA1");
    put({.type = "CO", .name = "Navy", .total = 0, .hangsOn = line});
  }
  split();
  const RecordsetRef found = children()[1]->lineItems->clone();
  for (int k = 0; k < 6; ++k) {
    found->setFilter(fmt::format("lineNumber={}", 2 * k + 2));
    ASSERT_EQ(found->recordCount(), 1);
    EXPECT_EQ(found->integer(quantity), 7);
    EXPECT_EQ(found->number(lineItemTotal), kAmounts[k]);
    EXPECT_EQ(found->number(upchargeTotal), kAmounts[k] / 3);
    EXPECT_EQ(found->text(heatSeal), "AA1");
    found->setFilter(fmt::format("parentLineNumber={}", 2 * k + 2));
    EXPECT_EQ(found->recordCount(), 1) << "hangs on it still";
  }
  startAnew();
  setDepartment("maxItemsInReceipt = 1");
  put({.pieces = 3, .total = 10});
  EXPECT_THAT(split(), ElementsAre("1 Pants 3.33", "1 Pants 3.34", "1 Pants 3.33")) << "in whole cents";
}

// Pieces, amounts of garments, of what hangs on them and of what is shared: as much after a split as before.
TEST_F(Splitting, LosesNothingOfAnyOrder) {
  std::mt19937 random(20261124);
  const auto upTo = [&](int most) { return static_cast<int>(random() % static_cast<unsigned>(most)) + 1; };
  using Sums = std::map<std::string, double>;
  const auto addSums = [](const Invoice& ticket, Sums& sums) {
    for (const RecordsetRef each = ticket.lineItems->clone(); !each->eof(); each->moveNext()) {
      sums[each->text(itemType)] += each->number(lineItemTotal);
      if (each->text(itemType) == "IT")
        sums["pieces"] += each->integer(quantity) * each->integer(pkgQuantity);
    }
  };
  for (int round = 0; round < 200; ++round) {
    SCOPED_TRACE(round);
    startAnew();
    execute(fmt::format(
        "update Department set userMaxItem = 0, maxItemsInReceipt = 1 + departmentID * {} % 8", upTo(7)));
    loadDepartments(*apartment, 1, 1);
    for (int k = upTo(10); k > 0; --k) {
      const int department = upTo(6), pieces = upTo(4);
      const int line =
          put({.department = department, .pieces = pieces, .total = upTo(5000) / 100.0, .pack = upTo(3)});
      if (upTo(2) == 1)
        put({.type = "UP", .department = department, .total = upTo(900) / 100.0, .hangsOn = line});
      for (const char* type : {"AC", "CU"})
        if (upTo(3) == 1) put({.type = type, .department = department, .total = upTo(900) / 100.0});
    }
    Sums before, after;
    addSums(invoice, before);
    const bool wanted = invoice.isSplitInvoice();
    split();
    EXPECT_EQ(invoice.isInvoiceEmpty().toBoolean(), wanted);
    addSums(invoice, after);
    for (const auto& child : children()) {
      addSums(*child, after);
      const RecordsetRef lines = child->lineItems->clone();
      lines->setFilter("itemType='IT'");
      int pieces = 0;
      for (; !lines->eof(); lines->moveNext())
        pieces += lines->integer(pkgQuantity) * lines->integer(quantity);
      EXPECT_TRUE(pieces <= 8 || lines->recordCount() == 1) << pieces;
    }
    for (const auto& [what, sum] : before) EXPECT_NEAR(after[what], sum, 1e-6) << what;
  }
}

}  // namespace
}  // namespace ondrel
