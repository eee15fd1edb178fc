#include "invoice/lines.h"

#include "invoice/invoice_fixture.h"

namespace ondrel {
namespace {

using ::testing::ElementsAre;

// Two pants (line 1), their cuffs (2) and a shirt (3): what a page sees of them.
class LinesTest : public InvoiceTest {
 protected:
  LinesTest() {
    garment(101, 2);
    upcharge(1, "Cuffs");
    garment(201);
  }

  std::vector<int> numbers(std::string_view filter) {
    std::vector<int> found;
    lines.each(filter, [&](const Recordset& line) { found.push_back(line.integer(col::lineNumber)); });
    return found;
  }

  // "FILTER: current line of so many".
  std::string page() const {
    const Recordset& view = *invoice.lineItems;
    const std::string current = view.eof() ? "end" : view.value(col::lineNumber).joined();
    return fmt::format("{}: {} of {}", view.filter().joined(), current, view.recordCount());
  }

  Lines& lines = invoice.lines();
};

TEST_F(LinesTest, AreWalkedWhileOthersAreFoundAddedAndDeleted) {
  std::vector<std::string> walked;
  lines.each("itemType='IT'", [&](Recordset& garment) {
    const int number = garment.integer(col::lineNumber);
    walked.push_back(lines.find(number)->text(col::itemName));
    lines.begin(kind::tax, {{col::quantity, number}});
    lines.remove(fmt::format("parentLineNumber={}", number));
  });
  EXPECT_THAT(walked, ElementsAre("Pants", "Shirt on Hanger"));
  EXPECT_THAT(numbers(""), ElementsAre(1, 3, 4, 5));
  EXPECT_EQ(text(5, col::originalLineNumber) + text(5, col::parentLineNumber), "5-1");
}

TEST_F(LinesTest, LeaveThePageWhatTheTableSays) {
  struct Case {
    const char* what;
    std::function<void()> work;
    const char* page;
  };
  const Case cases[] = {
      {"a set", [&] { lines.any("itemType='UP'"); }, "0: 1 of 3"},
      {"a line that is not there", [&] { EXPECT_FALSE(lines.find(9)); }, "0: 1 of 3"},
      {"a look aside", [&] { lines.peek("itemType='IT'"); }, "lineNumber > 1: 3 of 2"},
      {"a filter that does not parse", [&] { lines.any("itemType"); }, "lineNumber > 1: 3 of 2"},
      {"an error of the outer set's",
       [&] {
         for (auto line = lines.where("itemType='IT'"); line; line.next()) {
           lines.any("itemType='UP'");
           if (line->integer(col::lineNumber) == 3) line->setValue(col::quantity, "x");
         }
       },
       "itemType='IT': 3 of 2"},
      {"an error of the inner set's",
       [&] { lines.each("itemType='IT'", [&](Recordset&) { lines.find(2)->setValue(col::quantity, "x"); }); },
       "lineNumber=2: 2 of 1"},
      {"told", [&] { lines.leaves("itemType='XX'"); }, "itemType='XX': end of 0"},
      {"told the end", [&] { lines.leavesAllAtEnd(); }, "0: end of 3"},
      {"a new line", [&] { lines.begin(kind::charge, {}); }, "lineNumber > 1: 4 of 3"},
  };
  for (const Case& each : cases) {
    invoice.lineItems->setFilter("lineNumber > 1");
    invoice.lineItems->moveLast();
    try {
      each.work();
    } catch (const Error&) {
    }
    EXPECT_EQ(page(), each.page) << each.what;
  }
}

TEST_F(LinesTest, ComeInTheOrderOfThePageButForALookAside) {
  invoice.lineItems->setSort("lineNumber desc");
  EXPECT_THAT(numbers(""), ElementsAre(3, 2, 1));
  EXPECT_EQ(lines.peek("")->integer(col::lineNumber), 1);
  invoice.initInvoice();
  EXPECT_THAT(numbers(""), ElementsAre()) << "the lines of the new table";
}

// What an operation leaves beside all lines, on the first.
TEST_F(LinesTest, OfThePricingRules) {
  Variant yes = true, department = 1, taxes = ObjectRef(RecordsetRef());
  const std::pair<const char*, std::function<void()>> cases[] = {
      {"0: 1 of 3", [&] { invoice.isFirstCoupon(); }},
      {"0: 1 of 3", [&] { invoice.validateCouponAdd(); }},
      {"0: 1 of 3", [&] { invoice.allowFurtherDiscounts(); }},
      {"0: 1 of 3", [&] { invoice.getQualifyingLoyalty(); }},
      {"itemType='IT': 3 of 2", [&] { invoice.addCoupon(99); }},
      {"itemType='IT': 3 of 2", [&] { invoice.getDisplayCouponRst(); }},
      {"itemType='IT': 3 of 2", [&] { invoice.isVIPQualified(); }},
      {"itemType='IT': 3 of 2", [&] { invoice.getLineItemTotalDiscountable(invoice.lineItems); }},
      {"itemType='CU' and linenumber=3: end of 0", [&] { invoice.removeCoupon(3); }},
      {"0: 1 of 3", [&] { invoice.adjustCoupon(); }},
      {"0: 1 of 3", [&] { invoice.getMinimumPrepay(); }},
      {"0: 1 of 3", [&] { invoice.getPrepayDiscount(); }},
      {"0: 1 of 3", [&] { invoice.getDepartmentPrepayDiscount(department); }},
      {"0: 1 of 3", [&] { invoice.getInvoiceAmountToPay(); }},
      {"0: 1 of 3", [&] { invoice.getTotalDiscount(); }},
      {"0: 1 of 3", [&] { invoice.liColTotal("quantity", "itemType='UP'"); }},
      {"0: 1 of 3", [&] { invoice.cancelDoneOperation(); }},
      {"0: end of 3", [&] { invoice.resetLineTaxableAmounts(); }},
      {"0: 1 of 5", [&] { invoice.calculateSurcharges(); }},
      {"0: 1 of 7", [&] { invoice.applyPrepay(yes); }},  // a charge for each of two departments
      {"0: 1 of 7", [&] { invoice.invoiceDone(false, taxes); }},
  };
  int number = 0;
  for (const auto& [expected, work] : cases) {
    ++number;
    invoice.lineItems->setFilter("itemType='IT'");
    invoice.lineItems->moveLast();
    work();
    EXPECT_EQ(page(), expected) << "case " << number;
  }
}

}  // namespace
}  // namespace ondrel
