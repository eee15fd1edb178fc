#pragma once

#include <fmt/format.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <vector>

#include "base/text.h"
#include "data/values.h"
#include "invoice/invoice.h"
#include "support/store_fixture.h"

namespace ondrel {

// A line of so many garments of an item, with an upcharge of each piece.
struct Entry {
  int item, pieces = 1;
  const char* upcharge = nullptr;
};

// An invoice at the counter of the sample store, and what its lines come to.
class PricingTest : public StoreTest {
 protected:
  // A new invoice of the customer.
  Invoice& begin(int customer = 1, int priceList = 1, int shop = 1) {
    invoice_.emplace();
    invoice_->custSeqNumber = customer;
    invoice_->priceListId = priceList;
    invoice_->setStoreDays(shop);
    return *invoice_;
  }
  Invoice& invoice() { return *invoice_; }
  // The same with garments.
  void enter(const std::vector<Entry>& entries, int customer = 1, int priceList = 1, int shop = 1) {
    begin(customer, priceList, shop);
    for (const auto& [id, pieces, name] : entries) {
      const int line = item(id, pieces);
      if (name) upcharge(line, name);
    }
  }

  // One line of an item; its number.
  int item(int id, int pieces = 1) { return invoice().addItem(id, 0, pieces, 1.0, 0.01).toLong(); }
  // One for each piece of the line.
  void upcharge(int line, const char* name) { invoice().addUpcharge2(line, name, 1); }
  void color(int line, const char* name) { invoice().addColor(line, name, 1, true, 1.0, 0.01); }
  void charge(double amount, int department, int pieces = 1) {
    invoice().addChargeLineNew(invoice().storeNumber, invoice().priceListId, amount, "Extra", pieces,
                               department, 1);
  }
  // A coupon (CU) or loyalty offer (LY) as the clerk puts it on, before it is spread.
  void offer(const char* type, int id, const char* name, double amount) {
    using enum LineColumn;
    Invoice& invoice = *invoice_;
    invoice.lineItems->addNew({{lineNumber, invoice.currentLineNumber},
                               {parentLineNumber, -1},
                               {deptId, Variant::null()},
                               {itemType, type},
                               {lineItemId, id},
                               {itemName, name},
                               {quantity, 1},
                               {lineItemTotal, amount},
                               {originalLineNumber, invoice.currentLineNumber}});
    invoice.lineItems->clearFilter();
    ++invoice.currentLineNumber;
  }
  void finish() { invoice().invoiceDone2(); }
  void prepay(bool on) {
    Variant value = on;
    invoice().applyPrepay(value);
  }

  void setColumn(const std::string& filter, LineColumn column, const Variant& value) {
    const RecordsetRef lines = invoice().lineItems->clone();
    lines->setFilter(filter);
    for (; !lines->eof(); lines->moveNext()) lines->setValue(column, value);
  }

  // Goods: "Pants 16: taxable 16, tax 1.36, surcharge 0.32", each number to four places.
  std::vector<std::string> goods() {
    using enum LineColumn;
    std::vector<std::string> result;
    for (const RecordsetRef& line =
             each("itemType='IT' or itemType='UP' or itemType='CO' or itemType='PA' or "
                  "itemType='AC'");
         !line->eof(); line->moveNext())
      result.push_back(fmt::format("{} {}: taxable {}, tax {}, surcharge {}", line->text(itemName),
                                   shown(*line, lineItemTotal), shown(*line, taxableAmt),
                                   shown(*line, totalTax), shown(*line, totalSurcharge)));
    return result;
  }
  // Lines that the passes made: "SU 1 Dry Cleaning: 0.56".
  std::vector<std::string> made(const std::string& types = "VI CU LY PR SU TA") {
    using enum LineColumn;
    std::vector<std::string> result;
    for (const RecordsetRef& line = each("parentLineNumber=-1"); !line->eof(); line->moveNext())
      if (types.find(line->text(itemType)) != std::string::npos)
        result.push_back(fmt::format("{} {} {}: {}", line->text(itemType), line->value(lineItemId).joined(),
                                     line->text(deptName), shown(*line, lineItemTotal)));
    return result;
  }
  bool filterIsClear() { return isEqual(invoice().lineItems->filter(), 0); }

  RecordsetRef each(const std::string& filter) {
    const RecordsetRef lines = invoice().lineItems->clone();
    lines->setFilter(filter);
    return lines;
  }

 private:
  static std::string shown(const Recordset& line, LineColumn column) {
    return numberText(round2(line.number(column), 4));
  }

  std::optional<Invoice> invoice_;
};

}  // namespace ondrel
