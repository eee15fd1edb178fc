#pragma once

#include <fmt/format.h>
#include <gmock/gmock.h>

#include <memory>
#include <string>
#include <vector>

#include "quick/quick_invoice.h"
#include "support/error_of.h"
#include "support/store_fixture.h"

namespace ondrel {

// Bags left at shop 1 of the sample store on Tuesday 2026-11-24 at 10:30.
class DropOffTest : public StoreTest {
 protected:
  struct Bag {
    int department, pieces;
  };

  static std::shared_ptr<QuickInvoice> dropOff(std::vector<Bag> bags, int customer = 7) {
    const auto made = std::make_shared<QuickInvoice>();
    made->custSeqNumber = customer;
    made->priceListId = 1;
    made->setStoreDays(1);
    for (const Bag& bag : bags) made->addLineItem(bag.pieces, bag.department);
    return made;
  }
  static void save(QuickInvoice& quick, const char* action = "add") {
    quick.saveInvoice(action, 4, 3, "0", "Ann O'Hara", "Fernhill", true);
  }
  // The lines in order, as "1 Dry Cleaning 5: 3 days, 11/30/2026".
  static std::vector<std::string> linesOf(const QuickInvoice& quick) {
    using enum QuickColumn;
    std::vector<std::string> result;
    for (const RecordsetRef line = quick.lineItems->clone(); !line->eof(); line->moveNext())
      result.push_back(fmt::format("{} {} {}: {} days, {}", line->integer(lineNumber), line->text(deptName),
                                   line->value(quantity).joined(), line->value(daysToProcess).joined(),
                                   day(line->date(dueDate))));
    return result;
  }
  static std::string day(Date date) { return date.midnight().text(); }
};

}  // namespace ondrel
