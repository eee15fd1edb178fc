#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "base/dictionary.h"
#include "base/variant.h"
#include "data/apartment.h"
#include "data/recordset/recordset.h"
#include "invoice/calendar/ticket_calendar.h"
#include "quick/quick_columns.h"

namespace ondrel {

// A quick drop-off: how many pieces of each department came in. It has no prices; those come when the ticket
// is itemised as an invoice.
//
// Operations clear the filter of the lines. `deptID` and `lineNo` are numbers; error 13 for other text, 94 for
// Null.
class QuickInvoice : public Object {
 public:
  QuickInvoice();
  std::string_view className() const override { return "quickInvoice"; }

  // ---------------------------------------------------------------- properties, as those of an invoice
  RecordsetRef lineItems;              // see quick_columns.h
  std::int32_t currentLineNumber = 1;  // the next free line number
  std::string starchPref, finishPref;
  std::int32_t custSeqNumber = 0;
  std::int32_t priceListId = 0;
  Date InvDueDate;
  std::string invoiceNo;
  std::int32_t ticketNo = 0;
  std::int32_t storeNumber = 0;
  DictionaryRef invoicesDictionary;  // child quick invoices after a split; nothing before
  std::int32_t createdByEmployeeId = 0;
  Date createdDate;
  std::string ticketReadyTime;
  std::int32_t routeNumber = 0;
  DictionaryRef preferences = std::make_shared<Dictionary>();  // shared with the children of a split
  RecordsetRef invoiceDeptIds;                                 // departments of the last split

  const std::string& DBConnectionString() const { return apartment_->DBConnectionString; }
  void setDBConnectionString(const std::string& value) { apartment_->DBConnectionString = value; }

  // ---------------------------------------------------------------- the object and its lines (quick_invoice.cpp)
  // Starts a new drop-off, written now.
  void initInvoice();
  // Takes the lines away. The moment of writing stays, and so do the ticket's numbers and the children of a
  // split.
  void clearInvoice();
  // Pieces of a department: onto its line, or a new one with the department's days. A department that is not
  // there adds nothing.
  void addLineItem(const Variant& pieces, const Variant& deptID);
  void deleteLineItem(const Variant& lineNo);
  // Both set the counter notes of a line.
  void attachNotes(const Variant& lineNo, const Variant& text);
  void updateNotes(const Variant& lineNo, const Variant& text);
  Variant getItemNotes(const Variant& lineNo);
  // Pieces of all lines; of a department; whether it has a line.
  Variant getTotalItemCount();
  Variant getDepartmentPieceCount(const Variant& departmentID);
  Variant isDepartmentPresent(const Variant& deptID);

  // ---------------------------------------------------------------- due dates (quick_due_dates.cpp)
  // Loads the store's calendar and departments; a new drop-off is promised after the store's usual days.
  void setStoreDays(const Variant& storeid);
  // The promise is the latest date of the lines, createdDate at least.
  void calculateInvDueDate();
  void recalculateInvDueDate();
  // The next three promise the first working day that is not before `datedue`, to all lines or to those of a
  // department by name (its quotes doubled), and work out InvDueDate again.
  void setInvoiceDueDate(const Variant& datedue);
  void setAllDepartmentDueDates(const Variant& datedue);
  void setDeptDueDate(const Variant& dept, const Variant& datedue);
  // Moves lines of less than 5 days to the next day on which the customer's route delivers.
  void adjustDueDatesForRoute(const Variant& CustomerSeq);

  // ---------------------------------------------------------------- splitting (quick_splitting.cpp)
  // Whether departments of different split groups or too many pieces of one are present.
  bool isSplitInvoice();
  // Divides the departments into a child for each split group, higher groups before lower, under keys from 1 of
  // invoicesDictionary, which is returned. Without need of a split it is returned as it stands. Error 3021
  // for a line of a department that the store does not have.
  DictionaryRef splitInvoice();
  // Tickets that this drop-off makes. For a loaded ticket: those beside its own. Errors as splitInvoice.
  Variant getNoOfInvoices();
  // The ticket numbers of this and of its children, joined by commas.
  Variant getTicketNosForPrinting();
  // Whether some department of the table does not ask for a split.
  bool oneDeptWithNoSplitExists(const RecordsetRef& cloneRst);

  // ---------------------------------------------------------------- preferences, saving, loading (quick_tickets.cpp)
  // An empty ticket or customer counts as none.
  Variant loadCustomerPreferences(const Variant& CustomerSeq, const Variant& ticketNumber);
  // For this ticket; written by the next save.
  Variant setCustomerPreference(const Variant& preferenceTypeID, const Variant& value);
  // With `userAction` "add" writes the children of a split, then this one unless it has no pieces; anything
  // else does nothing. `startTrans` has no effect. starchPref and finishPref hold SQL text afterwards. An
  // error leaves the transaction open on the apartment's shared connection.
  void saveInvoice(const Variant& userAction, const Variant& employeeid, const Variant& terminalID,
                   const Variant& onHold, const Variant& empName, const Variant& storeName,
                   const Variant& startTrans);
  // Loads a saved quick ticket, by its ticket number, into a fresh object.
  void getExistingDetails(const Variant& InvoiceNumber);

 private:
  struct SaveRequest;

  void startLines();
  TicketCalendar calendar() const;
  bool findDeptLine(std::int32_t department);
  // The date that the day walk reaches, on the lines that pass the filter.
  Date promise(std::string_view filter, const Variant& datedue);

  void initDeptTable();
  void fillDeptTable();
  void splitQuickDepartment(const Variant& department);
  std::shared_ptr<QuickInvoice> createChild() const;
  std::shared_ptr<QuickInvoice> moveFilteredLines();
  std::vector<std::shared_ptr<QuickInvoice>> children() const;

  bool isQuickInvoiceEmpty();
  void insertQuickTicket(const SaveRequest& request);
  std::string insertQuickTicketText(const SaveRequest& request) const;
  void insertQuickLines(std::int32_t employee);
  Variant getMiscSetupField(std::string_view column);
  void loadHeader(const Recordset& ticket);
  void loadLine(const Recordset& line);

  ApartmentRef apartment_;
  bool isQuickSplit_ = false;
  bool dueDateOverridden_ = false;
  bool isNewQuickInvoice_ = true;
};

}  // namespace ondrel
