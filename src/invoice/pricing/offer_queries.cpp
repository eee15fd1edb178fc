#include "invoice/pricing/offer_queries.h"

#include <fmt/format.h>

#include <string_view>

#include "base/text.h"

namespace ondrel {
namespace {

constexpr std::string_view kDiscountColumns =
    "SELECT D.discountID, D.discountSubType, D.discountName, D.effectiveDate,  D.expiryDate, "
    "D.minPieceCount, D.maxPieceCount, D.minQualAmount,  D.maxQualAmount, D.discountPercent, "
    "D.discountAmount, D.maxDiscountAmount,  D.dueDays, D.validWithOtherOffer, DD.departmentID,";

constexpr std::string_view kDepartmentColumns =
    "  DD.minPieceCount AS 'departmentMinPieceCount',  DD.minQualAmount AS 'departmentMinQualAmount' ,  "
    "CASE WHEN DD.priceListItemID <= 0 THEN NULL  Else DD.priceListItemId  END as 'priceListItemID'  "
    "FROM Discount D ";

constexpr std::string_view kJoin =
    "LEFT OUTER JOIN DiscountDepartment DD ON D.discountID = DD.discountID  WHERE ";

constexpr std::string_view kOrder = " Order By D.discountID, DD.departmentID, DD.priceListItemId ";

// From the inside of the first parenthesis on.
std::string qualifyingTests(const OfferQuestion& question) {
  return fmt::format(
      "datediff(day, D.effectiveDate, GetDate()) >= 0 OR D.effectiveDate IS NULL )  AND ( datediff(day, "
      "D.expiryDate, GetDate()) <= 0 OR D.expiryDate IS NULL )  AND ( D.minPieceCount <={0} OR "
      "D.minPieceCount IS NULL )  AND ( D.maxPieceCount >={0} OR D.maxPieceCount IS NULL )  AND ( "
      "D.minQualAmount <={1} OR D.minQualAmount IS NULL )  AND ( D.maxQualAmount >={1} OR D.maxQualAmount "
      "IS NULL )",
      numberText(question.count), numberText(question.total));
}

std::string couponQuery(const OfferQuestion& question, std::string_view namedAndOr) {
  std::string query = fmt::format(
      "{} D.appliesPerUnit,{}{}D.discountID IN({}) {} (D.active = 1 AND D.priceListID ={} AND D.discountType "
      "= 'CU'   AND ( {}) ",
      kDiscountColumns, kDepartmentColumns, kJoin, question.ids, namedAndOr, question.priceListId,
      qualifyingTests(question));
  if (!question.customer.empty())
    query += fmt::format(
        " AND ( D.noOfUses IS NULL OR dbo.getCustomerCouponUses({}, D.discountID) < D.noOfUses ) ",
        question.customer);
  return query += kOrder;
}

}  // namespace

std::string getCouponQuery(const OfferQuestion& question) {
  return couponQuery(question, "AND");
}

std::string getCouponPassQuery(const OfferQuestion& question) {
  return couponQuery(question, "OR");
}

std::string getLoyaltyQuery(const OfferQuestion& question) {
  return fmt::format(
      "{}{} {}D.priceListID ={} AND D.discountType = 'LY' AND  ({}  AND D.discountID IN({}) {}",
      kDiscountColumns, kDepartmentColumns, kJoin, question.priceListId, qualifyingTests(question),
      question.ids, kOrder);
}

}  // namespace ondrel
