#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "invoice/invoice.h"
#include "invoice/line_kinds.h"
#include "invoice/pricing/offer_queries.h"
#include "invoice/pricing/qualifying_totals.h"

namespace ondrel {

// Coupons and loyalty offers: first candidates in the table of offers, then a line that the clerk chose, then
// lines spread over departments.

// Offers that could go on the invoice: one row a discount, or one a discount and department.
// clang-format off
#define ONDREL_OFFER_COLUMNS(column) \
  /*     name                 type     size  nullable */ \
  column(discountId,          Long,      0,  false) \
  column(discountName,        Text,     50,  true)  \
  column(discountSubType,     Text,     10,  false) \
  column(minPieceCount,       Long,      0,  true)  \
  column(maxPieceCount,       Long,      0,  true)  \
  column(minQualAmount,       Long,      0,  true)  \
  column(maxQualAmount,       Long,      0,  true)  \
  column(discountPercent,     Double,    0,  true)  /* Null for a fixed amount */ \
  column(discountAmount,      Double,    0,  true)  /* Null for a percentage */ \
  column(validWithOtherOffer, Boolean,   0,  false) \
  column(deptId,              Long,      0,  true)  /* Null for the whole invoice */ \
  column(deptMinPieceCount,   Long,      0,  true)  \
  column(deptMinQualAmount,   Double,    0,  true)  \
  column(couponAmount,        Double,    0,  true)  /* what the discount gives for this row */ \
  column(maxDiscountAmount,   Double,    0,  true)  \
  column(appliesPerUnit,      Boolean,   0,  false) /* the fixed amount counts once a piece */

// The offers to choose from, one row a discount.
#define ONDREL_OFFER_CHOICE_COLUMNS(column) \
  column(discountId,   Long,  0, false) \
  column(discountName, Text, 50, true)
// clang-format on

ONDREL_COLUMNS(OfferColumn, kOfferLayout, ONDREL_OFFER_COLUMNS)
ONDREL_COLUMNS(OfferChoiceColumn, kOfferChoiceLayout, ONDREL_OFFER_CHOICE_COLUMNS)

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

// ---- candidates (offer_candidates.cpp)

// Makes the table of offers anew from rows as the store answers them. `totals` are the whole invoice's.
void listOffers(Invoice& invoice, Recordset& rows, const QualifyingTotals& totals);
// What the offer of the row gives for a price and pieces.
double offeredAmount(const Recordset& rows, const QualifyingTotals& base);
// Whether a rule of the store keeps the offer off the invoice as it stands.
bool isOfferBlocked(Invoice& invoice, const Variant& discountId);
// Whether the offer of the row gives its amount for each piece; loyalty offers are read without it.
inline bool appliesPerUnit(const Recordset& rows) {
  return rows.hasColumn("appliesPerUnit") && rows.flag("appliesPerUnit");
}

// ---- on the invoice (offers_on_invoice.cpp)

// What the store is asked about the offers on the invoice.
OfferQuestion offerQuestion(const Invoice& invoice, const QualifyingTotals& totals,
                            const std::vector<std::int32_t>& ids);
// Puts the candidate on the invoice, as one line without a department. False when it is none; the page's view
// is then as it was, otherwise on the line.
bool addOffer(Invoice& invoice, const OfferKind& offer, const Variant& discountId);
// The invoice has changed: offers on it that still qualify are worked out again, the others fall off.
void adjustOffers(Invoice& invoice, const OfferKind& offer);

// ---- spread over departments (offer_spreading.cpp)

// The pass of finishing; `vipApplied` shuts out offers that stand beside no other. Whether one applied.
bool applyOffers(Invoice& invoice, const OfferKind& offer, bool vipApplied);

}  // namespace ondrel
