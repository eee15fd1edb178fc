#pragma once

#include <array>
#include <string>
#include <string_view>

#include "data/recordset/column.h"
#include "data/recordset/recordset.h"
#include "invoice/line_kinds.h"
#include "invoice/pricing/offer_queries.h"

namespace ondrel {

// Offers that could go on the invoice: one row a discount, or one a discount and department.
// clang-format off
enum class OfferColumn : int {
  discountId, discountName, discountSubType, minPieceCount, maxPieceCount, minQualAmount, maxQualAmount,
  discountPercent, discountAmount, validWithOtherOffer, deptId, deptMinPieceCount, deptMinQualAmount,
  couponAmount, maxDiscountAmount, appliesPerUnit,
};

inline constexpr std::array<ColumnSpec, 16> kOfferLayout = {{
  // name                 type               size  nullable
  {"discountId",          FieldType::Long,     0,  false},
  {"discountName",        FieldType::Text,    50,  true},
  {"discountSubType",     FieldType::Text,    10,  false},
  {"minPieceCount",       FieldType::Long,     0,  true},
  {"maxPieceCount",       FieldType::Long,     0,  true},
  {"minQualAmount",       FieldType::Long,     0,  true},
  {"maxQualAmount",       FieldType::Long,     0,  true},
  {"discountPercent",     FieldType::Double,   0,  true},   // Null for a fixed amount
  {"discountAmount",      FieldType::Double,   0,  true},   // Null for a percentage
  {"validWithOtherOffer", FieldType::Boolean,  0,  false},
  {"deptId",              FieldType::Long,     0,  true},   // Null for the whole invoice
  {"deptMinPieceCount",   FieldType::Long,     0,  true},
  {"deptMinQualAmount",   FieldType::Double,   0,  true},
  {"couponAmount",        FieldType::Double,   0,  true},   // what the discount gives for this row
  {"maxDiscountAmount",   FieldType::Double,   0,  true},
  {"appliesPerUnit",      FieldType::Boolean,  0,  false},  // the fixed amount counts once a piece
}};

// The offers to choose from, one row a discount.
enum class OfferChoiceColumn : int { discountId, discountName };

inline constexpr std::array<ColumnSpec, 2> kOfferChoiceLayout = {{
  {"discountId",   FieldType::Long,  0, false},
  {"discountName", FieldType::Text, 50, true},
}};

// The garments that a discount is spread over, and their sums under a Null lineNumber.
enum class DiscountLineColumn : int { lineNumber, totalPrice, totalQuantity };

inline constexpr std::array<ColumnSpec, 3> kDiscountLineLayout = {{
  {"lineNumber",    FieldType::Long,   0, true},
  {"totalPrice",    FieldType::Double, 0, false},
  {"totalQuantity", FieldType::Long,   0, false},
}};
// clang-format on

// Bits of a line's flags: which of them let its children count for a discount.
inline constexpr int kCouponable = 1;
inline constexpr int kDiscountable = 2;
inline constexpr int kVipDiscountable = 4;
inline constexpr int kAnyDiscount = kCouponable | kDiscountable | kVipDiscountable;

// Coupons and loyalty offers go one way; the rows below hold what differs.
struct OfferKind {
  std::string_view kind;     // of the line
  std::string_view logName;  // in the log's department
  double logSign;            // of the amount in the log
  bool capped;               // by the offer's maximum, its face value and what is left to pay
  bool perUnit;              // spread by pieces where the offer is a fixed amount a piece
  bool rounded;              // shares go through cents
  bool collectsAll;          // spreading starts from all lines of the last time, otherwise from the first
  bool skipsRow;             // the first row of the offer that follows a spread one is passed over
  std::string (*adjustQuery)(const OfferQuestion&);  // while the invoice changes
  std::string (*passQuery)(const OfferQuestion&);    // at finishing
};

// clang-format off
//                  log         sign cap    per unit rounded all    skips  queries
inline constexpr OfferKind kCouponOffer =
  {kind::coupon,    "Coupon",  -1,  true,  true,    false,  true,  false, getCouponQuery,  getCouponPassQuery};
inline constexpr OfferKind kLoyaltyOffer =
  {kind::loyalty,   "Loyalty",  1,  false, false,   true,   false, true,  getLoyaltyQuery, getLoyaltyQuery};
// clang-format on

// Whether the offer at the cursor gives its amount for each piece; loyalty offers are read without it.
inline bool appliesPerUnit(const Recordset& rows) {
  return rows.hasColumn("appliesPerUnit") && rows.flag("appliesPerUnit");
}

}  // namespace ondrel
