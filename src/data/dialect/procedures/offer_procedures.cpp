#include "data/dialect/procedures/offer_procedures.h"

#include <fmt/format.h>

namespace ondrel::sql {
namespace {

struct Inquiry {
  std::string_view discountType;
  int priceList, count, total;    // positions of arguments
  std::string day = "getdate()";  // on which the offers must be in force
  std::string condition;          // one more that the discount must meet
};

RecordsetRef probableOffers(ProcedureCall& call, const Inquiry& inquiry) {
  return call.query(fmt::format(
      "select D.discountID, D.discountSubType, D.discountName, D.effectiveDate, D.expiryDate, D.minPieceCount, "
      "D.maxPieceCount, D.minQualAmount, D.maxQualAmount, D.discountPercent, D.discountAmount, "
      "D.maxDiscountAmount, D.dueDays, D.validWithOtherOffer, D.appliesPerUnit, DD.departmentID, "
      "P.name as departmentName, DD.minPieceCount as departmentMinPieceCount, "
      "DD.minQualAmount as departmentMinQualAmount, "
      "case when DD.priceListItemID <= 0 then null else DD.priceListItemID end as priceListItemID "
      "from Discount D left outer join DiscountDepartment DD on D.discountID = DD.discountID "
      "left outer join Department P on P.departmentID = DD.departmentID "
      "where D.active = 1 and D.discountType = '{type}' and D.priceListID = {priceList} "
      "and (D.effectiveDate is null or datediff(day, D.effectiveDate, {day}) >= 0) "
      "and (D.expiryDate is null or datediff(day, D.expiryDate, {day}) <= 0) "
      "and (D.minPieceCount is null or D.minPieceCount <= {count}) "
      "and (D.maxPieceCount is null or D.maxPieceCount >= {count}) "
      "and (D.minQualAmount is null or D.minQualAmount <= {total}) "
      "and (D.maxQualAmount is null or D.maxQualAmount >= {total}) and {condition} "
      "order by D.discountID, DD.departmentID, DD.priceListItemID",
      fmt::arg("type", inquiry.discountType), fmt::arg("priceList", call.integer(inquiry.priceList)),
      fmt::arg("day", inquiry.day), fmt::arg("count", call.integer(inquiry.count)),
      fmt::arg("total", Variant(call.number(inquiry.total)).toText()),
      fmt::arg("condition", inquiry.condition)));
}

std::string notUsedUpBy(std::int32_t customer) {
  return fmt::format("(D.noOfUses is null or dbo.getCustomerCouponUses({}, D.discountID) < D.noOfUses)",
                     customer);
}

}  // namespace

RecordsetRef getProbableCoupons(ProcedureCall& call) {
  return probableOffers(call, {"CU", 0, 1, 2, "getdate()", notUsedUpBy(call.integer(3))});
}

RecordsetRef getProbableLoyaltyDiscounts(ProcedureCall& call) {
  return probableOffers(
      call, {"LY", 1, 2, 3, "getdate()",
             fmt::format("D.discountID in (select O.discountId from loyaltyCustomerOffers O where "
                         "O.customerSequenceNumber = {} and O.noOfUses > 0)",
                         call.integer(0))});
}

RecordsetRef getProbablePromotions(ProcedureCall& call) {
  return probableOffers(call, {"PR", 0, 1, 2, call.argumentCount() > 4 ? call.sql(4) : "getdate()",
                               notUsedUpBy(call.integer(3))});
}

}  // namespace ondrel::sql
