#pragma once

#include <array>

#include "data/recordset/column.h"

namespace ondrel {

// The tables of a pickup session: the names of the columns, and the layout below in the same order.
// clang-format off
enum class DisplayColumn : int {
  lineNumber, parentLineNumber, itemName, itemType, quantity, lineItemTotal, ticketNumber, lineItemId,
  pkgQuantity, saleOnly, notes, peNotes, deptName, daysToProcess, dueDate, promptResponse, invoiceNumber,
  pickedUp, deptId, heatSeal,
};

// The lines of all tickets of the session.
inline constexpr std::array<ColumnSpec, 20> kDisplayLayout = {{
  // name              type              size   nullable
  {"lineNumber",       FieldType::Long,     0,  false},  // display line number, see Pickup
  {"parentLineNumber", FieldType::Long,     0,  false},
  {"itemName",         FieldType::Text,    64,  true},
  {"itemType",         FieldType::Text,    20,  false},
  {"quantity",         FieldType::Long,     0,  false},
  {"lineItemTotal",    FieldType::Double,   0,  false},
  {"ticketNumber",     FieldType::Long,     0,  false},
  {"lineItemId",       FieldType::Long,     0,  true},
  {"pkgQuantity",      FieldType::Long,     0,  true},
  {"saleOnly",         FieldType::Boolean,  0,  true},
  {"notes",            FieldType::Text,   255,  true},   // counter notes
  {"peNotes",          FieldType::Text,   255,  true},   // of the price list, where it prints them
  {"deptName",         FieldType::Text,   255,  true},   // from here on not filled for a modifier
  {"daysToProcess",    FieldType::Long,     0,  true},
  {"dueDate",          FieldType::Date,     0,  true},
  {"promptResponse",   FieldType::Text,   255,  true},
  {"invoiceNumber",    FieldType::Text,    20,  true},
  {"pickedUp",         FieldType::Boolean,  0,  false},
  {"deptId",           FieldType::Long,     0,  true},
  {"heatSeal",         FieldType::Text,    20,  false},
}};

enum class PaymentColumn : int {
  paymentNumber, amountPaid, paymentType, checkCardNo, creditCardExpDate, creditCardType, approvalCode,
  transactionNo, totalCashPayment, signatureID,
};

// What was tendered in the session.
inline constexpr std::array<ColumnSpec, 10> kPaymentLayout = {{
  {"paymentNumber",     FieldType::Long,    0,  false},
  {"amountPaid",        FieldType::Double,  0,  false},
  {"paymentType",       FieldType::Text,   20,  false},
  {"checkCardNo",       FieldType::Text,   50,  true},   // of a gift card its id
  {"creditCardExpDate", FieldType::Text,   10,  true},
  {"creditCardType",    FieldType::Text,   20,  true},
  {"approvalCode",      FieldType::Text,   32,  true},
  {"transactionNo",     FieldType::Text,   50,  true},
  {"totalCashPayment",  FieldType::Double,  0,  true},   // the last two are for a page to fill
  {"signatureID",       FieldType::Long,    0,  true},
}};

enum class CouponColumn : int { discountId, discountName };

inline constexpr std::array<ColumnSpec, 2> kCouponLayout = {{
  {"discountId",   FieldType::Long,  0, false},
  {"discountName", FieldType::Text, 50, true},
}};
// clang-format on

}  // namespace ondrel
