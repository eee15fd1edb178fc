#include "invoice/invoice_fixture.h"

namespace ondrel {
namespace {

using enum LineColumn;
using ::testing::ElementsAre;

class QuickItems : public UntaxedInvoiceTest {
 protected:
  int import(const std::string& text) {
    return errorOf([&] {
      Variant desc = text;
      invoice.importQuickItems(desc);
    });
  }
};

TEST_F(QuickItems, TravelAsText) {
  invoice.addItem2(306, 1);
  const std::string bags = "1,5,11/30/2026\r\n2,8,11/26/2026 5:00:00 PM";
  for (int time = 1; time <= 2; ++time) {
    EXPECT_EQ(import(bags), 0);
    EXPECT_EQ(invoice.exportQuickItems().toText(), bags);
    EXPECT_TRUE(filterIsClear());
  }
  EXPECT_THAT(lines(), ElementsAre("1 IT Tablecloth 1 x 9 = 9", "4 DE  5 x 0 = 0", "5 DE  8 x 0 = 0"));
  EXPECT_EQ(text(4, deptName) + text(5, deptName), "Dry CleaningShirts");
  EXPECT_EQ(text(4, daysToProcess) + text(5, daysToProcess), "32")
      << "Thanksgiving is reached with Saturday's";
  EXPECT_EQ(text(5, originalLineNumber) + text(5, lineItemId), "51");

  invoice.lineItems->setFilter("lineNumber=4");
  invoice.lineItems->setValue(quantity, 0);
  EXPECT_EQ(invoice.exportQuickItems().toText(), "2,8,11/26/2026 5:00:00 PM");
  invoice.removeAllQuickItems();
  EXPECT_EQ(invoice.lineItems->filter().toText(), "itemType='DE'") << "left for the next operation to clear";
  EXPECT_TRUE(invoice.exportQuickItems().isEmpty());
  EXPECT_EQ(import(bags + "\r\n"), 9) << "a line break at the end begins a record";
}

TEST_F(QuickItems, KeepWhatCameBeforeAFault) {
  const std::pair<const char*, int> kFaults[] = {{"2,3", 9},
                                                 {"2", 9},
                                                 {"2,3,", 13},
                                                 {"2,3,soon", 13},
                                                 {"2,three,11/30/2026", 13},
                                                 {"8,3,11/30/2026", 3021}};
  for (const auto& [record, error] : kFaults) {
    EXPECT_EQ(import(std::string("1,5,11/30/2026\r\n") + record + "\r\n3,1,11/30/2026"), error) << record;
    EXPECT_EQ(invoice.exportQuickItems().toText(), "1,5,11/30/2026") << record;
  }
  EXPECT_EQ(import(""), 0);
  EXPECT_EQ(invoice.lineItems->recordCount(), 0);
}

}  // namespace
}  // namespace ondrel
