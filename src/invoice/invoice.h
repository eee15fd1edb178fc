#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "base/dictionary.h"
#include "base/variant.h"
#include "data/apartment.h"
#include "data/recordset/recordset.h"
#include "invoice/invoice_state.h"
#include "invoice/line_columns.h"
#include "invoice/lines.h"

namespace ondrel {

class StoredLines;

// A ticket being written or edited: one table of lines and the operations of the counter on it.
//
// The rules are functions over an invoice and its Lines in the files of the folders; what stands here is what
// pages call by name. An operation leaves all lines visible to the page, on the first, unless it says otherwise.
class Invoice : public Object {
 public:
  Invoice();
  std::string_view className() const override { return "invoice"; }

  // ---------------------------------------------------------------- properties
  RecordsetRef lineItems;              // see line_columns.h
  RecordsetRef ticketLogItems;         // see line_columns.h
  std::int32_t currentLineNumber = 1;  // the next free line number
  std::string starchPref, finishPref;
  std::int32_t custSeqNumber = 0;
  std::int32_t priceListId = 0;
  Date InvDueDate;
  bool vipQualified = false;
  Date vipExpiryDate;
  double vipQualAmount = 0;
  bool referralQualified = false;
  std::int32_t ticketNo = 0;
  std::string invoiceNo;
  std::int32_t storeNumber = 0;
  std::string multiPickUpCustName, multiPickUpLoc;
  RecordsetRef taxCodes;        // the store's taxes as the last finishing had them
  RecordsetRef invoiceDeptIds;  // departments in ticket order
  bool isEdittable = false, isAdd = false;
  double amountPaid = 0, invoiceTotal = 0, netTotal = 0, transactionchangeDue = 0;
  DictionaryRef invoicesDictionary;  // child invoices after a split; nothing before
  bool splitTheInvoice = false;
  std::int32_t custVisitCount = 0;
  std::int32_t routeNumber = 0;
  bool tagsSameAsInvNos = false;
  DictionaryRef ticketTags;
  bool counterSaleOnly = false;  // no cleaning: no due date is computed
  std::string invoiceType;       // D for a normal drop-off, Q for a quick one
  std::int32_t signatureid = 0;
  Date lastModifiedDate, createdDate;
  std::int32_t createdByEmployeeId = 0, terminalID = 0;
  std::string ticketReadyTime;
  bool hasCleared = false;
  std::string addOrEdit;  // page mode: "add" or "edit"
  bool excludeTaxes = false, excludeSurcharges = false, invoiceOnDelivery = false;
  // Preference types of the store: the value in force, shared with the children of a split, and the name.
  DictionaryRef preferences = std::make_shared<Dictionary>();
  DictionaryRef preferenceNames = std::make_shared<Dictionary>();
  bool groupSimilarItems = false;  // the store's setting to merge like lines
  std::int32_t selectedLineNumber = 0;
  bool garmentSearch = false;

  const std::string& DBConnectionString() const { return apartment_->DBConnectionString; }
  void setDBConnectionString(const std::string& value) { apartment_->DBConnectionString = value; }

  // ---------------------------------------------------------------- for the files of the rules; no page sees it
  Lines& lines() { return lines_; }
  InvoiceState& state() { return state_; }
  // The apartment that the invoice was made in.
  const ApartmentRef& apartment() const { return apartment_; }
  // A setting of the store, Empty when it has none.
  Variant getMiscSetupValue(std::string_view column);

  // ---------------------------------------------------------------- the object (invoice.cpp)
  // Resets for a new ticket. After clearInvoice the log, createdDate, invoiceType, the remembered days and
  // the exclusions stay.
  void initInvoice();
  // Reads how the store sorts its items. Set storeNumber first.
  void LoadDefaults();
  // Logs every line visible under the filter as it stands as deleted, then empties the invoice.
  void clearInvoice();
  // Department of the first garment, department or charge line; 0 when there is none.
  Variant getFirstDeptId();
  // Joins the pieces that came from one line again. The sort stays set.
  void collectLineItems();
  // Whether this is a quick drop-off.
  bool isQuickInvoice() const;

  // ---------------------------------------------------------------- garments (lines/garments.cpp, item_clicks.cpp)
  // Puts pieces of a price-list item on the invoice. Returns the line that took them, 0 for an unknown item.
  // `groupSimilarItems`: -1 or True makes a line a piece, any other true value merges into a line of the
  // same item and price, false makes one line. The unit price is the item's times `multiplier`, to a multiple
  // of `roundOff`. A quantity that is no number counts as 1 (error 13 where a line a piece is made).
  Variant addItem(const Variant& priceListItemId, const Variant& groupSimilarItems, const Variant& quantity,
                  const Variant& multiplier, const Variant& roundOff);
  // addItem by the groupSimilarItems property at list price.
  Variant addItem2(const Variant& itemId, const Variant& quantity);
  // As addItem2 at price 0, the line marked as a re-clean.
  Variant addRedoItem(const Variant& itemId, const Variant& quantity);
  // An item button: `id` is a two-letter kind and a number. Returns the line number for an item, otherwise
  // `id`.
  Variant addPriceListItem(const Variant& id, const Variant& name, const Variant& quantity,
                           const Variant& parentLineNumber, const Variant& redo);
  // The reverse of addPriceListItem, by `id` or by the line itself when `id` is 0. Returns 0 when a garment
  // or charge was deleted, otherwise `lineNumber`.
  Variant removePriceListItem(const Variant& lineNumber, const Variant& id);
  // Adds the garment that a heat seal is known for. Returns its line, -1 for an unknown seal.
  Variant addItemByHeatSeal(const Variant& hsnumber);

  // ---------------------------------------------------------------- upcharges and descriptors (lines/)
  // `upchargeId`, `colorId` and `patternId` are names. A child always hangs on the garment itself, whichever
  // of its lines is named; on a re-clean it is free. A negative upcharge quantity means: once only.
  void addUpcharge(const Variant& parentLineNumber, const Variant& upchargeId, const Variant& quantity,
                   const Variant& groupSimilarItems, const Variant& multiplier, const Variant& roundOff);
  // As addUpcharge, merged, with `quantity` for each piece of the line.
  void addUpcharge2(const Variant& parentLineNumber, const Variant& upchargeId, const Variant& quantity);
  // The same for every garment of a department; an empty quantity counts as 1.
  void addUpchargeToAllItems(const Variant& deptID, const Variant& upchargeId, const Variant& quantity,
                             const Variant& groupSimilarItems);
  void addColor(const Variant& parentLineNumber, const Variant& colorId, const Variant& quantity,
                const Variant& groupSimilarItems, const Variant& multiplier, const Variant& roundOff);
  void addPattern(const Variant& parentLineNumber, const Variant& patternId, const Variant& quantity,
                  const Variant& groupSimilarItems, const Variant& multiplier, const Variant& roundOff);
  // A descriptor of any group on the line as named. An upcharge through here takes the line's quantity twice.
  // An unknown line gets nothing, and the filter stays on it.
  void addDescriptor(const Variant& parentLineNumber, const Variant& name, const Variant& group,
                     const Variant& quantity);
  // Removes all children of the name and group; the parent's upchargeTotal gives up the first one's amount.
  void removeDescriptor(const Variant& parentLineNumber, const Variant& name, const Variant& group);

  // ---------------------------------------------------------------- required descriptors (lines/)
  // Whether the price list demands such a descriptor for the line's item; False for an unknown line.
  Variant isColorRequiredForLine(Variant& lineNo);
  Variant isPatternRequiredForLine(Variant& lineNo);
  Variant isUpchargeRequiredForLine(Variant& lineNo);
  // Whether the line has as many as it has pieces. An item without upcharges on offer has all that it needs.
  Variant isColorSetForItem(const Variant& lineNo);
  Variant isPatternSetForItem(const Variant& lineNo);
  Variant isBrandSetForItem(const Variant& lineNo);
  Variant isUpchargeSetForItem(const Variant& lineNo);

  // ---------------------------------------------------------------- line edits (lines/)
  void deleteItem(const Variant& lineNo);
  void changeQuantity(const Variant& newQuantity, const Variant& lineNo);
  // A price that is no number changes nothing. Leaves the filter set for an unknown line or kind.
  void overRidePrice(const Variant& newPrice, const Variant& lineNo);
  // Makes a garment and its children a free re-clean.
  void setLineToRedo(const Variant& lineNo);
  void renameLineItem(const Variant& lineNo, const Variant& name);
  void attachNotes(const Variant& lineNo, const Variant& notes);
  void attachPromptReponse(const Variant& lineNo, const Variant& promptResponse);
  // The counter notes of a line, "" when it has none.
  Variant getItemNotes(const Variant& lineNo);
  // Pieces of a line, 0 for an unknown one. Leaves the table's own filter alone.
  Variant getLineQuantity(const Variant& lineNumber);

  // ---------------------------------------------------------------- charges (lines/charges.cpp)
  // Free-text charges; an Amount that is no number adds nothing. `chargeDeptId` -1 is the first department.
  void addChargeLine(const Variant& taxCode, const Variant& Amount, const Variant& chargeDesc,
                     const Variant& countAs, const Variant& chargeDeptId);
  Variant addChargeLineNew(const Variant& storeid, const Variant& custPriceList, const Variant& Amount,
                           const Variant& chargeDesc, const Variant& countAs, const Variant& chargeDeptId,
                           const Variant& unitQuantity);

  // ---------------------------------------------------------------- due dates (calendar/due_dates.cpp, department_dates.cpp)
  // Loads the store's calendar and departments; a new ticket gets a first promise.
  void setStoreDays(const Variant& storeid);
  // Sets InvDueDate by hand. Once that changed the day, finishing a new ticket takes the latest date of the
  // lines instead of the store's usual days.
  void setInvoiceDueDate(const Variant& NewValue);
  // InvDueDate becomes the latest date of the lines, createdDate at least. Leaves the lines unfiltered, at
  // the end.
  void calculateInvDueDate();
  // Largest daysToProcess of the department's garments, of all with an empty name; without any, the days that
  // InvDueDate stands for.
  Variant getDeptDaysToProcess(const Variant& deptName);
  // Days that the department's dates stand for; without garments its remembered days, then its own. The last
  // leaves the shared department table filtered.
  Variant getDeptIDDaysToProcess(const Variant& deptID);
  // Latest date of the department as month/day/year text.
  Variant getDeptDueDate(const Variant& deptName);
  void setAllDepartmentDueDates(const Variant& datedue);
  // Moves the whole department of a garment or charge. Error 3021 for an unknown line.
  void setLineDueDate(const Variant& lineNumber, const Variant& datedue);
  // A department without lines remembers the date's days for its first garment.
  void setDeptIdDueDate(const Variant& deptID, const Variant& datedue);
  // By name. A quote in it is the caller's to double, error 3001 otherwise.
  void setDeptDueDate(const Variant& dept, const Variant& datedue);
  // Extra days of a late drop-off by the hour of createdDate; 0 when they cannot be read.
  Variant getAdditionalDeptDays(Variant& departmentID);
  // Whether the loaded ticket had the department.
  Variant isDepartmentExisting(Variant& deptID);
  // Whether some line belongs to the department.
  Variant isDepartmentPresent(Variant& deptID);

  // ---------------------------------------------------------------- route, workload, rush (calendar/)
  // Moves lines of less than 5 days to the next day on which the customer's route delivers.
  void adjustDueDatesForRoute(Variant& CustomerSeq);
  // Moves departments that are booked full on their date to the next day with room.
  void adjustDueDatesForWorkload();
  Variant isRush();
  Variant applyRushUpcharge(Variant& groupSimiliarItems);

  // ---------------------------------------------------------------- coupons, loyalty, promotions (pricing/)
  // Works out which coupons the invoice qualifies for, and what each would give. addCoupon picks from them.
  void getQualifyingCoupons();
  // The offers worked out last, to choose from: a new table of discountId and discountName.
  RecordsetRef getDisplayCouponRst();
  // Puts a coupon on the invoice, as one line without a department. False when it was not offered. Its amount
  // is positive; totals subtract it.
  Variant addCoupon(const Variant& couponID);
  // Leaves the filter on the coupon line of that number, which is gone.
  Variant removeCoupon(const Variant& lineNumber);
  // Works out coupons and loyalty offers again after the invoice changed; what no longer qualifies falls off.
  void adjustCoupon();
  // Whether no coupon and no loyalty offer is on the invoice.
  Variant isFirstCoupon();
  // Whether the first coupon or loyalty offer on the invoice suffers others beside it.
  bool validateCouponAdd();
  // Whether the store's rule and the offers on the invoice leave room for another; true when it cannot be
  // read.
  Variant allowFurtherDiscounts();
  // Amount of the line at the table's position, with its upcharges, colors and patterns when a flag that
  // `discountFilter` asks for is set on it (1 couponable, 2 discountable, 4 VIP).
  Variant getLineItemTotalDiscountable(const RecordsetRef& rs, const Variant& discountFilter = 7);
  // Works out what the customer's loyalty offers would give. addLoyalty picks from them.
  void getQualifyingLoyalty();
  // Puts a loyalty offer on the invoice; does nothing when it was not offered.
  void addLoyalty(const Variant& couponID);

  // ---------------------------------------------------------------- VIP, prepay (pricing/)
  // Whether the customer is marked as VIP and has spent enough lately; sets vipExpiryDate. Reads the rules of the
  // price list.
  Variant isVIPQualified();
  // Whether the VIP discount stands beside others; False before the rules are read.
  Variant isVipValidWithOtherOffer();
  // The least that the garments ask to be paid at drop-off.
  Variant getMinimumPrepay();
  // What paying at drop-off would give back for garments and upcharges, re-cleans left out; 0 where the invoice
  // has no room for another discount.
  Variant getPrepayDiscount();
  // The same for a department, by the store's one-discount setting alone. Error 3001 for a text that is no number.
  Variant getDepartmentPrepayDiscount(Variant& departmentID);
  // Makes the "Prepay Discount" charges anew, one a department, and then the taxes.
  void recalculatePrepay();
  // Whether the customer pays at drop-off; recalculatePrepay follows.
  void applyPrepay(Variant& val);
  Variant isPrepayEnabled();

  // ---------------------------------------------------------------- surcharges and finishing (pricing/)
  // Makes the surcharge lines anew, and the garments' sums of them; nothing for an exempt customer.
  void calculateSurcharges();
  // Prices the invoice by the store's settings, rush included. A second call changes nothing but line numbers,
  // see docs/architecture.md.
  void invoiceDone2();
  // As the last invoiceDone was asked, without a rush.
  void invoiceDoneAgain();
  // The passes of finishing.cpp; nothing on an empty invoice. With `oneDiscount` a VIP discount stands alone;
  // `taxesRst`, the store's taxes or Nothing, becomes taxCodes. A new ticket's InvDueDate is set.
  void invoiceDone(const Variant& oneDiscount, Variant& taxesRst);
  // Makes every line taxable with its amount. Leaves all lines visible, at the end.
  Variant resetLineTaxableAmounts();
  // With taxes and surcharges, and without both; to cents, never below 0. Loyalty offers do not count.
  double getInvoiceAmountToPay();
  double getInvoiceAmountToPayBeforeTaxSurcharge();

  // ---------------------------------------------------------------- sums and groups (pricing/totals.cpp, tickets/)
  // What the counter shows: goods less coupons and loyalty offers, to cents, never below 0.
  Variant getTotalPriceForDisplay();
  // Goods alone, to cents.
  Variant getInvoiceSubTotal();
  // Promotions, the VIP discount and the referral credit, as the lines have them and not rounded.
  Variant getTotalDiscount();
  // The property amountPaid.
  Variant getAmountPaid();
  // Garments and charges: pieces, by the pack of what is cleaned, and lines. Error 6 beyond 32 bits.
  Variant getTotalItemCount();
  Variant getLineCount();
  // A row a garment or charge with its descriptors in words, see tickets/receipt_groups.h.
  RecordsetRef getLineItemsGroupDetails();
  // Numbers of the invoice and of what was split off it, joined by commas. A number of nothing or 0 and an
  // empty invoice are left out; of tickets also a quick drop-off.
  Variant getInvoiceNos();
  Variant getTicketNosForPrinting();
  // New tickets that a split makes: one for each department row that asks for a split, one for all others. On
  // a stored ticket one less. For after splitInvoice; error 91 before.
  Variant getNoOfInvoices();
  // Sum of a column over the lines that pass a filter, Nulls left out.
  Variant liColTotal(const Variant& column, const Variant& filter);

  // ---------------------------------------------------------------- splitting (splitting/)
  // Divides the lines into tickets: marked lines, then the bags of a quick drop-off, then department by
  // department. The children stand in invoicesDictionary, which is returned, under keys from 1; this invoice
  // keeps what none of them took. Nothing when no split is needed. `userAction` has no effect. Error 3021
  // for a line of a department that the store does not have.
  DictionaryRef splitInvoice(const Variant& userAction);
  // Moves the lines that the clerk marked, with what hangs on them, to a child of their own and returns it. By
  // itself it leaves splitTheInvoice alone: a save writes the child when the page has set that.
  Variant splitMarkedLineItems();
  // Whether lines are marked, departments of different split groups or too many pieces of one are present, or
  // this is a quick drop-off.
  bool isSplitInvoice();
  // Whether some department of the invoice does not ask for a split. For after splitInvoice.
  bool oneDeptWithNoSplitExists();

  // ---------------------------------------------------------------- piece limits (splitting/piece_limits.cpp)
  // Pieces of a department: quantity times pack of its garments and charges.
  Variant getDepartmentPieceCount(Variant& departmentID);
  // Whether a department whose splitting is left to the clerk holds more pieces than one ticket takes.
  Variant isOverMaxDepartmentItems();
  // The department's pieces after a change that the clerk is about to make, and the department: an array from
  // 1. `selItemID` is the line that takes `selItemQty`; with `userAction` "getItemDetails" it is a new item,
  // described by the other arguments. Error 6 beyond 32 bits.
  Variant checkAllowableItemCountPerDept(const std::string& selItemID, std::int32_t selItemQty,
                                         std::int32_t selItemPkgQty, std::int32_t selItemDeptId,
                                         const std::string& userAction);
  // Most pieces of the department on one ticket, no more than the tags of the ticket's lot; -1 for no limit.
  Variant getDepartmentMaxPieces(Variant& departmentID);
  // Whether splitting the department is left to the clerk.
  Variant isManualMaxPiecesEnabled(Variant& departmentID);

  // ---------------------------------------------------------------- heat seals (seals/heat_seals.cpp)
  void pushNewHeatSeal(const Variant& heatSeal);
  void removeNewHeatSeal(const Variant& heatSeal);
  Variant getNewHeatSealCount();
  // The first seal that is still waiting for a garment, Empty when none is.
  Variant getSelectedHeatSeal();
  // Whether the seal may go on a garment of this invoice. `message` takes what is wrong.
  Variant isHeatSealValid(Variant& heatSeal, Variant& message);
  // Gives the line a seal. Errors are swallowed; the filter stays on the line.
  Variant setLineHeatSeal(const Variant& lineNumber, Variant& heatSeal);
  // As setLineHeatSeal with a waiting seal, which waits no longer. Errors pass, the filter is cleared.
  void addHeatSeal(const Variant& lineNumber, Variant& heatSeal);
  // Takes the seal off the first sealed line alone; the filter stays on the sealed lines.
  void clearHeatSeals();
  Variant getHeatSealCount();
  // Whether a line that requires a seal has none.
  Variant isMissingHeatSeals();
  // Colours, patterns, brands and upcharges of a garment in words.
  Variant getDescriptorText(Variant& lineNumber);
  // Draws tag numbers for the ticket and for each that was split off it, unless the page brought its own.
  // `printTagsForHeatSeals` has no effect. An error leaves the transaction open.
  void insertTagsForTicket(const Variant& printTagsForHeatSeals);

  // ---------------------------------------------------------------- preferences (tickets/preferences.cpp)
  // Reads the customer's exemptions and the value of every preference type: of this ticket, else the
  // standing one, else the default. An empty ticket or customer counts as none.
  Variant loadCustomerPreferences(Variant& CustomerSeq, Variant& ticketNumber);
  // For this ticket; written by the next save.
  Variant setCustomerPreference(Variant& preferenceTypeID, Variant& value);
  // An unknown name is ignored.
  Variant setCustomerPreferenceByName(Variant& preferenceName, Variant& value);

  // ---------------------------------------------------------------- saving (tickets/saving.cpp)
  // Whether there is no garment, charge or department line.
  Variant isInvoiceEmpty();
  // Writes the invoice and what was split off it: `userAction` "edit" over the ticket that ticketNo names,
  // anything else as a new ticket, whose numbers ticketNo and invoiceNo take. `onHold` is "1" or "0";
  // `startTrans` has no effect. After an error a new ticket is not there at all; an edit leaves its
  // transaction open on the apartment's shared connection.
  void saveInvoice(const Variant& userAction, const Variant& employeeid, const Variant& terminal,
                   const Variant& onHold, const Variant& empName, const Variant& storeName,
                   const Variant& startTrans);
  // Takes a finished invoice back to an entry: children come home, generated lines go.
  void cancelDoneOperation();

  // ---------------------------------------------------------------- loading (tickets/loading.cpp)
  // Loads a ticket into a fresh invoice, for edit or for printing. An unknown ticket gives no lines; a number
  // that is none raises error 13.
  void getExistingDetails(const Variant& ticketNumber);
  void getInvoiceDetailsForPrinting(const Variant& ticketNumber);
  // Kind and department of a line; Empty when there is none.
  Variant getLineItemType(Variant& lineNumber);
  Variant getLineDeptID(Variant& lineNumber);

  // ---------------------------------------------------------------- what the panels show (src/web)
  struct DescriptorDisplay {
    Variant color, icon, price;  // Empty for an unknown descriptor
  };
  DescriptorDisplay getDescriptorDisplay(std::string_view name, std::string_view group);
  // Whether the price list forces the kind of descriptor on the item; whether it has upcharges to offer.
  bool itemForces(const Variant& item, std::string_view column);
  bool offersUpcharges(const Variant& item);
  // Heat seals that were scanned and are on no garment yet, in the order of scanning.
  std::vector<Variant> waitingHeatSeals() const { return state_.newHeatSeals->keys(); }

  // ---------------------------------------------------------------- quick items (lines/quick_items.cpp)
  // The department lines with pieces as text, one "department,pieces,date" a line; Empty without any.
  Variant exportQuickItems();
  // Takes all department lines away. The filter stays on them.
  Variant removeAllQuickItems();
  // Department lines as exportQuickItems gives them, in place of those there are. Error 9 for a record of fewer
  // than three fields, 3021 for a department that the store does not have; the lines before it stay.
  Variant importQuickItems(Variant& desc);

  // ---------------------------------------------------------------- rounding (see data/values.h)
  Variant RoundingDP(const Variant& dblNumber, const Variant& numDP);
  Variant roundTo(const Variant& x, Variant& d);
  Variant round2(Variant& x, const Variant& digits);
  Variant roundDB(const Variant& x, const Variant& digits);

  // Rows of the table by which one sequence of steps serves several kinds of line.
  struct PricedDescriptor;  // upcharges, colours and patterns

 private:
  // ---------------------------------------------------------------- the object
  RecordsetRef createLineItemsTable() const;
  // Deletes every line that passes the filter, then clears it.
  void deleteFilteredLines(std::string_view filter);
  // Adds up `amountOf(lines)` over the lines that pass the filter, then clears it.
  template <class Amount>
  double sumLines(std::string_view filter, Amount amountOf) {
    double sum = 0;
    lineItems->setFilter(filter);
    for (; !lineItems->eof(); lineItems->moveNext()) sum += amountOf(*lineItems);
    lineItems->clearFilter();
    return sum;
  }
  // The lines that the number names pass the filter afterwards; whether there is one.
  bool findLine(const Variant& lineNumber);

  // ---------------------------------------------------------------- garments
  RecordsetRef readPriceListItem(std::int32_t id, std::string_view daysColumn);
  bool countsUse() const;  // whether the store sorts items by use
  bool findSimilarLine(Recordset& row, double unitPrice);
  std::int32_t addLinePerPiece(Recordset& row, const Variant& quantity, const Variant& multiplier,
                               const Variant& roundOff);
  std::int32_t addToLines(Recordset& row, const Variant& groupSimilarItems, const Variant& quantity,
                          const Variant& multiplier, const Variant& roundOff);
  std::int32_t mergeIntoLine(const Variant& quantity);
  // The one place where a garment's line is born.
  void addPriceRowLine(Recordset& row, const Variant& quantityText, const Variant& multiplier,
                       const Variant& roundOff);
  Variant getUpchargeNameById(const Variant& id);
  Variant getDescriptorNameById(const Variant& id);

  // ---------------------------------------------------------------- upcharges and descriptors
  // The garment that a line hangs on, at whatever depth.
  struct RootLine {
    Variant itemId = -1, deptId = -1;
    std::int32_t lineNumber = 0;
    bool redo = false;
  };
  RootLine getRootLineInfo(std::int32_t lineNumber);
  // Leaves the filter on the child found.
  bool findChildLine(std::int32_t parentLineNumber, std::string_view itemName, std::string_view itemType);
  void addPricedDescriptor(const PricedDescriptor& kind, const Variant& parentLineNumber, const Variant& name,
                           const Variant& quantity, const Variant& groupSimilarItems,
                           const Variant& multiplier, const Variant& roundOff);
  bool mergeIntoChild(const RootLine& root, const std::string& name, std::string_view lineKind,
                      std::int32_t pieces, double amount);
  void addChildLine(const PricedDescriptor& kind, const Recordset& row, const RootLine& root,
                    const Variant& deptName, std::int32_t pieces, double price, double amount);
  void addDescriptorLine(const Variant& parent, const Variant& name, const Variant& group,
                         const Variant& pieces);
  bool isDescriptorRequired(const Variant& lineNo, std::string_view column);
  bool coversPieces(const Variant& lineNo, std::string_view lineKind);

  // ---------------------------------------------------------------- line edits
  void changeChildQuantities(const Variant& newQuantity, const Variant& lineNo);
  void setLineText(const Variant& lineNo, Column column, const Variant& text);
  // A log row from the current line.
  void logCurrent(std::string_view logType, const Variant& pieces, const Variant& amount);
  void deleteGarment(std::int32_t line);
  void deleteChild(LineColumn parentSum, bool alwaysLogged);
  void recomputeInvDueDate();
  void deletePlainLine();
  void writeQuantity(const Variant& pieces);
  void writeUnitPrice(double price, bool rounded);
  void logOverride(double oldTotal);
  void overrideCharge(double price);
  void overrideCoupon(double price);
  void changeGarmentQuantity(const Variant& newQuantity, const Variant& lineNo);
  void changeChildQuantity(LineColumn parentSum, bool isUpcharge, const Variant& newQuantity);
  void changePlainQuantity(bool isCharge, const Variant& newQuantity);
  void overrideGarment(double price);
  void overrideChild(LineColumn parentSum, bool isUpcharge, double price);

  // ---------------------------------------------------------------- numbers
  // What `numberOf(invoice)` says, of the invoice and of its children.
  template <class NumberOf>
  std::string joinNumbers(NumberOf numberOf);

  // ---------------------------------------------------------------- preferences
  void saveCustomerPreferences(const Variant& customerSeq, const Variant& ticketNumber);

  // ---------------------------------------------------------------- saving
  struct SaveRequest;  // what the counter tells with a save, see tickets/saving.h
  void insertTicket(const SaveRequest& request);
  void updateTicket(const SaveRequest& request);
  // The calls that write the header; dates, preferences and department lines are settled on the way.
  std::string insertTicketText(const SaveRequest& request);
  std::string updateTicketText(const SaveRequest& request);
  std::string customerAndMoney(const SaveRequest& request);
  std::string sumsAndNames(const SaveRequest& request);
  double vipQualifyingAmount();
  void quotePreferences();
  std::string routeText() const;
  void extendInvDueDateFromLines();
  void dropEmptyDepartmentLines();
  void insertTicketLineItems(std::int32_t employeeId);
  void deleteTaggedItemLinks(const Variant& ticketNumber);
  void addRedoCustomer();
  void insertTicketLogItems(const std::string& ticketNumber, const Variant& logDate);
  void finishSave(std::string_view userAction, const Variant& onHold);
  void addDeliveryWillCall();
  void updateVisitsAndOffers();
  void mergeDepartmentCoupon(const Variant& lineItemId, const Variant& itemName, double amount);

  // ---------------------------------------------------------------- quick items
  void addQuickLine(Recordset& table, std::string_view itemType, const Variant& deptId, double amount,
                    const Variant& quantity, const Variant& dueDate);

  // ---------------------------------------------------------------- loading
  struct LineLoader;
  struct LoadStep;
  // Sets every property whose column the view has and whose value is not Null.
  void takeHeader(const Recordset& header);
  void loadPreferencesOfTicket();
  void startLines();
  void loadTicketLines();
  void loadPrintLines();
  void loadLines(const std::string& statement, std::span<const LineLoader> loaders);
  void addStoredLine(const StoredLines& lines, const LoadStep& step);
  void addGarmentLine(const StoredLines& lines, const LoadStep& step);
  void loadGarmentLine(const StoredLines& lines, const LoadStep& step);
  void loadPrintGarmentLine(const StoredLines& lines, const LoadStep& step);
  void loadDepartmentLine(const StoredLines& lines, const LoadStep& step);
  void loadMergedLine(const StoredLines& lines, const LoadStep& step);
  void loadDescriptiveLine(const StoredLines& lines, const LoadStep& step);
  void loadPrintDescriptorLine(const StoredLines& lines, const LoadStep& step);
  bool isDepartmentLoaded(std::int32_t deptId) const;
  std::int32_t countTicketTags(const Variant& ticketNumber);
  Variant getLineValue(const Variant& lineNumber, Column column);

  // ---------------------------------------------------------------- members told by role
  ApartmentRef apartment_;
  InvoiceState state_;
  Lines lines_{lineItems, ticketLogItems, currentLineNumber};
};

}  // namespace ondrel
