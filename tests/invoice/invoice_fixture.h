#pragma once

#include <fmt/format.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "invoice/invoice.h"
#include "support/error_of.h"
#include "support/store_fixture.h"

namespace ondrel {

// A new ticket of customer 1 at shop 1 of the sample store, on Tuesday 2026-11-24 at 10:30.
class InvoiceTest : public StoreTest {
 protected:
  InvoiceTest() {
    startTicket(invoice);
    statements();
  }

  static void startTicket(Invoice& ticket, int customer = 1, int priceList = 1, int store = 1) {
    ticket.isAdd = true;
    ticket.excludeTaxes = true;  // every click would make their lines anew and use up line numbers
    ticket.addOrEdit = "add";
    ticket.custSeqNumber = customer;
    ticket.storeNumber = store;
    ticket.priceListId = priceList;
    ticket.setStoreDays(store);
    ticket.LoadDefaults();
  }

  void garment(int item, int pieces = 1) { invoice.addItem(item, 0, pieces, 1.0, 0.01); }
  void upcharge(int parent, const char* name, const Variant& pieces = 1, bool merging = true) {
    invoice.addUpcharge(parent, name, pieces, merging, 1.0, 0.01);
  }
  void color(int parent, const char* name, int pieces = 1, bool merging = true) {
    invoice.addColor(parent, name, pieces, merging, 1.0, 0.01);
  }

  // The lines in order, as "1 IT Shirt on Hanger 5 x 2.5 = 12.5"; a child names its parent: "2<1 UP ...".
  std::vector<std::string> lines() const { return linesOf(invoice); }
  static std::vector<std::string> linesOf(const Invoice& ticket) {
    std::vector<std::string> result;
    const RecordsetRef each = ticket.lineItems->clone();
    for (; !each->eof(); each->moveNext()) {
      const int parent = each->integer(LineColumn::parentLineNumber);
      result.push_back(fmt::format(
          "{}{} {} {} {} x {} = {}", each->integer(LineColumn::lineNumber),
          parent > 0 ? "<" + std::to_string(parent) : "", each->text(LineColumn::itemType),
          each->text(LineColumn::itemName), each->value(LineColumn::quantity).joined(),
          each->value(LineColumn::unitPrice).joined(), each->value(LineColumn::lineItemTotal).joined()));
    }
    return result;
  }

  // The log since the last call, as "A 5 Shirts: Shirt on Hanger 12.5".
  std::vector<std::string> log() {
    std::vector<std::string> result;
    const RecordsetRef each = invoice.ticketLogItems->clone();
    for (int row = 0; !each->eof(); each->moveNext())
      if (row++ >= logRowsSeen_)
        result.push_back(fmt::format("{} {} {}: {} {}", each->text(LogColumn::itemLogType),
                                     each->integer(LogColumn::quantity), each->text(LogColumn::deptName),
                                     each->text(LogColumn::itemName),
                                     each->value(LogColumn::amount).toText()));
    logRowsSeen_ = each->recordCount();
    return result;
  }

  // A column of a line, without touching the table's own view.
  Variant cell(int line, LineColumn column) const {
    const RecordsetRef found = invoice.lineItems->clone();
    found->setFilter(fmt::format("lineNumber={}", line));
    return found->eof() ? Variant() : found->value(column);
  }
  std::string text(int line, LineColumn column) const { return cell(line, column).joined(); }

  bool filterIsClear() const { return isEqual(invoice.lineItems->filter(), 0); }

  Invoice invoice;

 private:
  int logRowsSeen_ = 0;
};

}  // namespace ondrel
