#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "invoice/invoice.h"
#include "support/error_of.h"
#include "support/store_fixture.h"
#include "web/panels.h"

namespace ondrel {

// A ticket of customer 1 at shop 1, on Tuesday 2026-11-24 at 10:30, as a page keeps it while it is written:
// two pants with a stain and more colors than pieces, a linen suit that lacks its color and pattern,
// four shirts and a courier.
class PanelTest : public StoreTest {
 protected:
  PanelTest() { startTicket(); }

  void startTicket() {
    invoice.initInvoice();
    invoice.isAdd = true;
    invoice.addOrEdit = "add";
    invoice.custSeqNumber = 1;
    invoice.storeNumber = 1;
    invoice.priceListId = 1;
    invoice.excludeTaxes = true;  // until it is finished: tax lines would take line numbers
    Variant customer = 1, noTicket = "";
    invoice.loadCustomerPreferences(customer, noTicket);
    invoice.setStoreDays(1);
    invoice.LoadDefaults();
    invoice.excludeTaxes = true;
  }
  void fillTicket() {
    pants = invoice.addItem2(101, 2).toLong();
    invoice.addUpcharge2(pants, "Stain Treatment", 1);
    invoice.addColor(pants, "Navy", 3, true, 1.0, 0.01);
    suit = invoice.addItem2(125, 1).toLong();
    invoice.addItem2(201, 4);
    invoice.addChargeLineNew(1, 1, 3, "Courier", 1, 3, 1);
    invoice.attachNotes(suit, "Button \"loose\" & <torn>");
    Variant seal = "AA00009";
    invoice.setLineHeatSeal(suit, seal);
    invoice.lineItems->clearFilter();
    invoice.selectedLineNumber = suit;
  }

  // Every panel of the ticket, with the call that makes it.
  std::vector<std::pair<std::string, std::string>> panels();

  Invoice invoice;
  int pants = 0, suit = 0;
};

inline std::vector<std::pair<std::string, std::string>> PanelTest::panels() {
  Variant dueDayPage = "";
  std::vector<std::pair<std::string, std::string>> result;
  const auto add = [&](const char* name, const Variant& panel) { result.emplace_back(name, panel.joined()); };
  add("htmlDepartments 2", htmlDepartments(invoice, " 2"));
  add("htmlIdGroups pants", htmlIdGroups(invoice, pants, "it"));
  add("htmlItems pants", htmlItems(invoice, "", pants));
  add("htmlItems", htmlItems(invoice, ""));
  add("htmlUpcharges pants", htmlUpcharges(invoice, 101, pants));
  add("htmlDescriptors pants", htmlDescriptors(invoice, "", pants));
  add("htmlDescriptor pa", htmlDescriptor(invoice, "pa", pants));
  add("htmlDescriptor br Ar", htmlDescriptor(invoice, "br", "", "Ar"));
  add("htmlDescriptor br Xylon", htmlDescriptor(invoice, "br", pants, "Xylon"));
  add("htmlPreferenceList", htmlPreferenceList(invoice));
  add("htmlCoupons", htmlCoupons(invoice));
  add("htmlLineItems suit", htmlLineItems(invoice, suit));
  add("htmlPreviewLineItems 1007", htmlPreviewLineItems(invoice, 1007));
  add("htmlInvoiceTotals", htmlInvoiceTotals(invoice));
  add("htmlInvoicePreferences", htmlInvoicePreferences(invoice));
  add("htmlDueDates", htmlDueDates(invoice));
  add("htmlDeptsDueDate", htmlDeptsDueDate(invoice));
  add("htmlInvoiceDueDate", htmlInvoiceDueDate(invoice));
  add("htmlDeptDueDate 1", htmlDeptDueDate(invoice, 1, dueDayPage));
  add("htmlNewHeatSeals", htmlNewHeatSeals(invoice));
  add("htmlLineFunctions suit", htmlLineFunctions(invoice, suit));
  add("htmlLineProperties pants", htmlLineProperties(invoice, "", pants));
  add("htmlLineProperties", htmlLineProperties(invoice, ""));
  add("htmlAddChargeDetail", htmlAddChargeDetail(invoice));
  add("htmlSummary 1007", htmlSummary(invoice, 1007));
  add("htmlSimilarInvoices", htmlSimilarInvoices(invoice));
  return result;
}

}  // namespace ondrel
