#include "automation/classes/class_tables.h"
#include "automation/classes/working_table.h"
#include "invoice/invoice.h"
#include "web/invoice_json.h"
#include "web/line_readers.h"
#include "web/panels.h"

namespace ondrel {
const ClassTable& invoiceClass() {
  // clang-format off
  static const ClassTable table("invoice", {
      // ---- properties
      workingTable<&Invoice::lineItems, kLineLayout>("lineItems"),
      workingTable<&Invoice::ticketLogItems, kLogLayout>("ticketLogItems"),
      property("currentLineNumber", &Invoice::currentLineNumber),
      property("starchPref", &Invoice::starchPref),
      property("finishPref", &Invoice::finishPref),
      property("custSeqNumber", &Invoice::custSeqNumber),
      property("priceListId", &Invoice::priceListId),
      property("InvDueDate", &Invoice::InvDueDate),
      property("vipQualified", &Invoice::vipQualified),
      property("vipExpiryDate", &Invoice::vipExpiryDate),
      property("vipQualAmount", &Invoice::vipQualAmount),
      property("referralQualified", &Invoice::referralQualified),
      property("ticketNo", &Invoice::ticketNo),
      property("invoiceNo", &Invoice::invoiceNo),
      property("storeNumber", &Invoice::storeNumber),
      property("multiPickUpCustName", &Invoice::multiPickUpCustName),
      property("multiPickUpLoc", &Invoice::multiPickUpLoc),
      property("taxCodes", &Invoice::taxCodes),
      property("invoiceDeptIds", &Invoice::invoiceDeptIds),
      property("isEdittable", &Invoice::isEdittable),
      property("isAdd", &Invoice::isAdd),
      property("amountPaid", &Invoice::amountPaid),
      property("invoiceTotal", &Invoice::invoiceTotal),
      property("netTotal", &Invoice::netTotal),
      property("transactionchangeDue", &Invoice::transactionchangeDue),
      property("invoicesDictionary", &Invoice::invoicesDictionary),
      property("splitTheInvoice", &Invoice::splitTheInvoice),
      property("custVisitCount", &Invoice::custVisitCount),
      property("routeNumber", &Invoice::routeNumber),
      property("tagsSameAsInvNos", &Invoice::tagsSameAsInvNos),
      property("ticketTags", &Invoice::ticketTags),
      property("counterSaleOnly", &Invoice::counterSaleOnly),
      property("invoiceType", &Invoice::invoiceType),
      property("signatureid", &Invoice::signatureid),
      property("lastModifiedDate", &Invoice::lastModifiedDate),
      property("createdDate", &Invoice::createdDate),
      property("createdByEmployeeId", &Invoice::createdByEmployeeId),
      property("terminalID", &Invoice::terminalID),
      property("ticketReadyTime", &Invoice::ticketReadyTime),
      property("hasCleared", &Invoice::hasCleared),
      property("addOrEdit", &Invoice::addOrEdit),
      property("excludeTaxes", &Invoice::excludeTaxes),
      property("excludeSurcharges", &Invoice::excludeSurcharges),
      property("invoiceOnDelivery", &Invoice::invoiceOnDelivery),
      property("preferences", &Invoice::preferences),
      property("preferenceNames", &Invoice::preferenceNames),
      property("groupSimilarItems", &Invoice::groupSimilarItems),
      property("selectedLineNumber", &Invoice::selectedLineNumber),
      property("garmentSearch", &Invoice::garmentSearch),
      property("DBConnectionString", &Invoice::DBConnectionString, &Invoice::setDBConnectionString),

      // ---- the object
      method("initInvoice", &Invoice::initInvoice),
      method("LoadDefaults", &Invoice::LoadDefaults),
      method("clearInvoice", &Invoice::clearInvoice),
      method("getFirstDeptId", &Invoice::getFirstDeptId),
      method("collectLineItems", &Invoice::collectLineItems),
      method("isQuickInvoice", &Invoice::isQuickInvoice),

      // ---- garments
      method("addItem", &Invoice::addItem, {{"priceListItemId"}, {"groupSimilarItems"}, {"quantity"}, {"multiplier", 1.0}, {"roundOff", 0.01}}),
      method("addItem2", &Invoice::addItem2, {{"itemId"}, {"quantity"}}),
      method("addRedoItem", &Invoice::addRedoItem, {{"itemId"}, {"quantity"}}),
      method("addPriceListItem", &Invoice::addPriceListItem, {{"id"}, {"name"}, {"quantity"}, {"parentLineNumber", -1}, {"redo", false}}),
      method("removePriceListItem", &Invoice::removePriceListItem, {{"lineNumber"}, {"id", 0}}),
      method("addItemByHeatSeal", &Invoice::addItemByHeatSeal, {{"hsnumber"}}),

      // ---- upcharges and descriptors
      method("addUpcharge", &Invoice::addUpcharge, {{"parentLineNumber"}, {"upchargeId"}, {"quantity"}, {"groupSimilarItems"}, {"multiplier", 1.0}, {"roundOff", 0.01}}),
      method("addUpcharge2", &Invoice::addUpcharge2, {{"parentLineNumber"}, {"upchargeId"}, {"quantity"}}),
      method("addUpchargeToAllItems", &Invoice::addUpchargeToAllItems, {{"deptID"}, {"upchargeId"}, {"quantity"}, {"groupSimilarItems"}}),
      method("addColor", &Invoice::addColor, {{"parentLineNumber"}, {"colorId"}, {"quantity"}, {"groupSimilarItems"}, {"multiplier", 1.0}, {"roundOff", 0.01}}),
      method("addPattern", &Invoice::addPattern, {{"parentLineNumber"}, {"patternId"}, {"quantity"}, {"groupSimilarItems"}, {"multiplier", 1.0}, {"roundOff", 0.01}}),
      method("addDescriptor", &Invoice::addDescriptor, {{"parentLineNumber"}, {"name"}, {"group"}, {"quantity"}}),
      method("removeDescriptor", &Invoice::removeDescriptor, {{"parentLineNumber"}, {"name"}, {"group"}}),

      // ---- required descriptors
      method("isColorRequiredForLine", &Invoice::isColorRequiredForLine, {{"lineNo"}}),
      method("isPatternRequiredForLine", &Invoice::isPatternRequiredForLine, {{"lineNo"}}),
      method("isUpchargeRequiredForLine", &Invoice::isUpchargeRequiredForLine, {{"lineNo"}}),
      method("isColorSetForItem", &Invoice::isColorSetForItem, {{"lineNo"}}),
      method("isPatternSetForItem", &Invoice::isPatternSetForItem, {{"lineNo"}}),
      method("isBrandSetForItem", &Invoice::isBrandSetForItem, {{"lineNo"}}),
      method("isUpchargeSetForItem", &Invoice::isUpchargeSetForItem, {{"lineNo"}}),

      // ---- line edits
      method("deleteItem", &Invoice::deleteItem, {{"lineNo"}}),
      method("changeQuantity", &Invoice::changeQuantity, {{"newQuantity"}, {"lineNo"}}),
      method("overRidePrice", &Invoice::overRidePrice, {{"newPrice"}, {"lineNo"}}),
      method("setLineToRedo", &Invoice::setLineToRedo, {{"lineNo"}}),
      method("renameLineItem", &Invoice::renameLineItem, {{"lineNo"}, {"name"}}),
      method("attachNotes", &Invoice::attachNotes, {{"lineNo"}, {"notes"}}),
      method("attachPromptReponse", &Invoice::attachPromptReponse, {{"lineNo"}, {"promptResponse"}}),
      method("getItemNotes", &Invoice::getItemNotes, {{"lineNo"}}),
      method("getLineQuantity", &Invoice::getLineQuantity, {{"lineNumber"}}),

      // ---- charges
      method("addChargeLine", &Invoice::addChargeLine, {{"taxCode"}, {"Amount"}, {"chargeDesc"}, {"countAs"}, {"chargeDeptId"}}),
      method("addChargeLineNew", &Invoice::addChargeLineNew, {{"storeid"}, {"custPriceList"}, {"Amount"}, {"chargeDesc"}, {"countAs"}, {"chargeDeptId"}, {"unitQuantity", 1}}),

      // ---- due dates
      method("setStoreDays", &Invoice::setStoreDays, {{"storeid"}}),
      method("setInvoiceDueDate", &Invoice::setInvoiceDueDate, {{"NewValue"}}),
      method("calculateInvDueDate", &Invoice::calculateInvDueDate),
      method("getDeptDaysToProcess", &Invoice::getDeptDaysToProcess, {{"deptName"}}),
      method("getDeptIDDaysToProcess", &Invoice::getDeptIDDaysToProcess, {{"deptID"}}),
      method("getDeptDueDate", &Invoice::getDeptDueDate, {{"deptName"}}),
      method("setAllDepartmentDueDates", &Invoice::setAllDepartmentDueDates, {{"datedue"}}),
      method("setLineDueDate", &Invoice::setLineDueDate, {{"lineNumber"}, {"datedue"}}),
      method("setDeptIdDueDate", &Invoice::setDeptIdDueDate, {{"deptID"}, {"datedue"}}),
      method("setDeptDueDate", &Invoice::setDeptDueDate, {{"dept"}, {"datedue"}}),
      method("getAdditionalDeptDays", &Invoice::getAdditionalDeptDays, {{"departmentID"}}),
      method("isDepartmentExisting", &Invoice::isDepartmentExisting, {{"deptID"}}),
      method("isDepartmentPresent", &Invoice::isDepartmentPresent, {{"deptID"}}),

      // ---- route, workload, rush
      method("adjustDueDatesForRoute", &Invoice::adjustDueDatesForRoute, {{"CustomerSeq"}}),
      method("adjustDueDatesForWorkload", &Invoice::adjustDueDatesForWorkload),
      method("isRush", &Invoice::isRush),
      method("applyRushUpcharge", &Invoice::applyRushUpcharge, {{"groupSimiliarItems"}}),

      // ---- coupons, loyalty, promotions
      method("getQualifyingCoupons", &Invoice::getQualifyingCoupons),
      method("getDisplayCouponRst", &Invoice::getDisplayCouponRst),
      method("addCoupon", &Invoice::addCoupon, {{"couponID"}}),
      method("removeCoupon", &Invoice::removeCoupon, {{"lineNumber"}}),
      method("adjustCoupon", &Invoice::adjustCoupon),
      method("isFirstCoupon", &Invoice::isFirstCoupon),
      method("validateCouponAdd", &Invoice::validateCouponAdd),
      method("allowFurtherDiscounts", &Invoice::allowFurtherDiscounts),
      method("getLineItemTotalDiscountable", &Invoice::getLineItemTotalDiscountable, {{"rs"}, {"discountFilter", 7}}),
      method("getQualifyingLoyalty", &Invoice::getQualifyingLoyalty),
      method("addLoyalty", &Invoice::addLoyalty, {{"couponID"}}),

      // ---- VIP, prepay
      method("isVIPQualified", &Invoice::isVIPQualified),
      method("isVipValidWithOtherOffer", &Invoice::isVipValidWithOtherOffer),
      method("getMinimumPrepay", &Invoice::getMinimumPrepay),
      method("getPrepayDiscount", &Invoice::getPrepayDiscount),
      method("getDepartmentPrepayDiscount", &Invoice::getDepartmentPrepayDiscount, {{"departmentID"}}),
      method("recalculatePrepay", &Invoice::recalculatePrepay),
      method("applyPrepay", &Invoice::applyPrepay, {{"val"}}),
      method("isPrepayEnabled", &Invoice::isPrepayEnabled),

      // ---- surcharges and finishing
      method("calculateSurcharges", &Invoice::calculateSurcharges),
      method("invoiceDone2", &Invoice::invoiceDone2),
      method("invoiceDoneAgain", &Invoice::invoiceDoneAgain),
      method("invoiceDone", &Invoice::invoiceDone, {{"oneDiscount"}, {"taxesRst"}}),
      method("resetLineTaxableAmounts", &Invoice::resetLineTaxableAmounts),
      method("getInvoiceAmountToPay", &Invoice::getInvoiceAmountToPay),
      method("getInvoiceAmountToPayBeforeTaxSurcharge", &Invoice::getInvoiceAmountToPayBeforeTaxSurcharge),

      // ---- sums and groups
      method("getTotalPriceForDisplay", &Invoice::getTotalPriceForDisplay),
      method("getInvoiceSubTotal", &Invoice::getInvoiceSubTotal),
      method("getTotalDiscount", &Invoice::getTotalDiscount),
      method("getAmountPaid", &Invoice::getAmountPaid),
      method("getTotalItemCount", &Invoice::getTotalItemCount),
      method("getLineCount", &Invoice::getLineCount),
      method("getLineItemsGroupDetails", &Invoice::getLineItemsGroupDetails),
      method("getInvoiceNos", &Invoice::getInvoiceNos),
      method("getTicketNosForPrinting", &Invoice::getTicketNosForPrinting),
      method("getNoOfInvoices", &Invoice::getNoOfInvoices),
      method("liColTotal", &Invoice::liColTotal, {{"col"}, {"filter"}}),

      // ---- splitting
      method("splitInvoice", &Invoice::splitInvoice, {{"userAction"}}),
      method("splitMarkedLineItems", &Invoice::splitMarkedLineItems),
      method("isSplitInvoice", &Invoice::isSplitInvoice),
      method("oneDeptWithNoSplitExists", &Invoice::oneDeptWithNoSplitExists),

      // ---- piece limits
      method("getDepartmentPieceCount", &Invoice::getDepartmentPieceCount, {{"departmentID"}}),
      method("isOverMaxDepartmentItems", &Invoice::isOverMaxDepartmentItems),
      method("checkAllowableItemCountPerDept", &Invoice::checkAllowableItemCountPerDept, {{"selItemID"}, {"selItemQty"}, {"selItemPkgQty"}, {"selItemDeptId"}, {"userAction"}}),
      method("getDepartmentMaxPieces", &Invoice::getDepartmentMaxPieces, {{"departmentID"}}),
      method("isManualMaxPiecesEnabled", &Invoice::isManualMaxPiecesEnabled, {{"departmentID"}}),

      // ---- heat seals
      method("pushNewHeatSeal", &Invoice::pushNewHeatSeal, {{"heatSeal"}}),
      method("removeNewHeatSeal", &Invoice::removeNewHeatSeal, {{"heatSeal"}}),
      method("getNewHeatSealCount", &Invoice::getNewHeatSealCount),
      method("getSelectedHeatSeal", &Invoice::getSelectedHeatSeal),
      method("isHeatSealValid", &Invoice::isHeatSealValid, {{"heatSeal"}, {"message"}}),
      method("setLineHeatSeal", &Invoice::setLineHeatSeal, {{"lineNumber"}, {"heatSeal"}}),
      method("addHeatSeal", &Invoice::addHeatSeal, {{"lineNumber"}, {"heatSeal"}}),
      method("clearHeatSeals", &Invoice::clearHeatSeals),
      method("getHeatSealCount", &Invoice::getHeatSealCount),
      method("isMissingHeatSeals", &Invoice::isMissingHeatSeals),
      method("getDescriptorText", &Invoice::getDescriptorText, {{"lineNumber"}}),
      method("insertTagsForTicket", &Invoice::insertTagsForTicket, {{"printTagsForHeatSeals"}}),

      // ---- preferences
      method("loadCustomerPreferences", &Invoice::loadCustomerPreferences, {{"CustomerSeq"}, {"ticketNumber"}}),
      method("setCustomerPreference", &Invoice::setCustomerPreference, {{"preferenceTypeID"}, {"value"}}),
      method("setCustomerPreferenceByName", &Invoice::setCustomerPreferenceByName, {{"preferenceName"}, {"value"}}),

      // ---- saving
      method("isInvoiceEmpty", &Invoice::isInvoiceEmpty),
      method("saveInvoice", &Invoice::saveInvoice, {{"userAction"}, {"employeeid"}, {"terminalID"}, {"onHold"}, {"empName"}, {"storeName"}, {"startTrans"}}),
      method("cancelDoneOperation", &Invoice::cancelDoneOperation),

      // ---- loading
      method("getExistingDetails", &Invoice::getExistingDetails, {{"ticketNumber"}}),
      method("getInvoiceDetailsForPrinting", &Invoice::getInvoiceDetailsForPrinting, {{"ticketNumber"}}),
      method("getLineItemType", &Invoice::getLineItemType, {{"lineNumber"}}),
      method("getLineDeptID", &Invoice::getLineDeptID, {{"lineNumber"}}),

      // ---- panels of the entry screen
      method("htmlDepartments", &htmlDepartments, {{"departmentID"}}),
      method("htmlCoupons", &htmlCoupons),
      method("htmlIdGroups", &htmlIdGroups, {{"lineNumber"}, {"currentIdGroup"}}),
      method("htmlItems", &htmlItems, {{"departmentID"}, {"lineNumber", ""}}),
      method("htmlDescriptors", &htmlDescriptors, {{"departmentID"}, {"lineNumber", ""}}),
      method("htmlDescriptor", &htmlDescriptor, {{"group"}, {"lineNumber", ""}, {"filter", ""}}),
      method("htmlDescriptorGroup", &htmlDescriptorGroup, {{"descriptorGroupID"}, {"lineNumber", ""}}),
      method("htmlUpcharges", &htmlUpcharges, {{"priceListItemId"}, {"lineNumber", ""}}),
      method("htmlPreferenceList", &htmlPreferenceList),
      method("lineItemExists", &lineItemExists, {{"itemType"}, {"lineItemID"}}),
      method("getLineItemQuantity", &getLineItemQuantity, {{"lineNumber"}}),
      method("getDepartmentID", &getDepartmentID),

      // ---- lines, totals and due dates
      method("htmlLineItems", &htmlLineItems, {{"lineNumber", ""}}),
      method("htmlPreviewLineItems", &htmlPreviewLineItems, {{"ticketNumber"}}),
      method("htmlInvoiceTotals", &htmlInvoiceTotals),
      method("htmlInvoicePreferences", &htmlInvoicePreferences),
      method("htmlDueDates", &htmlDueDates),
      method("htmlDeptsDueDate", &htmlDeptsDueDate),
      method("htmlInvoiceDueDate", &htmlInvoiceDueDate),
      method("htmlDeptDueDate", &htmlDeptDueDate, {{"departmentID"}, {"page"}}),
      method("htmlNewHeatSeals", &htmlNewHeatSeals),
      method("htmlLineFunctions", &htmlLineFunctions, {{"lineNumber"}}),
      method("htmlLineProperties", &htmlLineProperties, {{"departmentID"}, {"lineNumber", ""}}),
      method("htmlAddChargeDetail", &htmlAddChargeDetail, {{"lineNumber", ""}}),

      // ---- the invoice as a whole
      method("toJSON", &toJSON),
      method("jsonItem", &jsonItem, {{"lineNumber"}}),
      method("htmlSummary", &htmlSummary, {{"ticketNumber"}}),
      method("htmlSimilarInvoices", &htmlSimilarInvoices),
      method("debugLineItems", &debugLineItems),

      // ---- quick items
      method("exportQuickItems", &Invoice::exportQuickItems),
      method("removeAllQuickItems", &Invoice::removeAllQuickItems),
      method("importQuickItems", &Invoice::importQuickItems, {{"desc"}}),

      // ---- rounding
      method("RoundingDP", &Invoice::RoundingDP, {{"dblNumber"}, {"numDP"}}),
      method("roundTo", &Invoice::roundTo, {{"x"}, {"d"}}),
      method("round2", &Invoice::round2, {{"x"}, {"digits"}}),
      method("roundDB", &Invoice::roundDB, {{"x"}, {"digits"}}),
  });
  // clang-format on
  return table;
}

}  // namespace ondrel
