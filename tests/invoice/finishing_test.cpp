#include "invoice/pricing_story.h"

namespace ondrel {
namespace {

using ::testing::ElementsAre;
using enum LineColumn;

class FinishingTest : public PricingTest {
 protected:
  void finishWith() {
    Variant taxes = ObjectRef(each("itemType='none'"));
    invoice().invoiceDone(false, taxes);
  }
  std::vector<std::string> everything() {
    std::vector<std::string> all = goods();
    for (std::string& line : made()) all.push_back(std::move(line));
    return all;
  }
};

// One garment, one upcharge and a charge of a VIP at a shop of two departments, finished with nothing to promote.
TEST_F(FinishingTest, StatementsOfAWholePass) {
  execute("delete from Discount where discountType = 'PR'");
  execute("update Department set disabled = 1 where departmentID not in (1, 5)");
  enter({{101, 1, "Cuffs"}}, 2);
  charge(10, 5);
  reads();
  finish();
  const std::string itemTaxes =
      "SELECT IT.priceListItemID as 'priceListItemID',  IT.taxCode as 'taxCode', T.taxPercent as 'taxPercent',  T.[description] as 'description' FROM ItemTax IT, Tax T  WHERE IT.priceListItemID IN ('101') AND IT.storeID = T.storeID  AND IT.taxCode = T.taxCode";
  const std::string descriptorTaxes =
      "SELECT IT.priceListItemID as 'priceListItemID', IT.descriptorName as 'descriptorName',  IT.descriptorType as 'descriptorType', IT.taxCode as 'taxCode',  T.taxPercent as 'taxPercent', T.[description] as 'description'  FROM ItemDescriptorTax IT, Tax T WHERE IT.priceListItemID IN ('101') AND  convert(varchar, IT.priceListItemID) +  IT.descriptorType  + IT.descriptorName IN ('101UPCuffs') AND IT.storeID = T.storeID  AND IT.taxCode = T.taxCode ";
  const auto surchargeTaxes = [](int code) {
    return fmt::format(
        "select tax.taxcode, tax.taxpercent, tax.description from surcharge inner join surchargetax on surcharge.surchargecode = surchargetax.surchargecode and surcharge.priceListID = surchargeTax.priceListId inner join tax on surchargetax.taxcode = tax.taxcode where surcharge.surchargecode = '{}' and surchargetax.pricelistid = '1'",
        code);
  };
  const std::string chargeTaxes =
      " SELECT tax.* FROM departmenttax INNER JOIN tax ON  departmenttax.taxcode = tax.taxcode  WHERE departmenttax.storeId = '1' AND departmenttax.departmentID = '5'";
  EXPECT_THAT(
      reads(),
      ElementsAre(
          "select oneDiscountPerInvoice from miscsetup where storeid = '1'",
          "select groupSimilarItems from miscsetup where storeid = '1'",
          "Select taxCode, description, taxPercent FROM Tax Where storeID = '1'",
          " select * from rushupcharge where storeid = '1'",
          " select * from rushupcharge where storeid = '1'  and daystoprocess >= 3  order by daystoprocess asc ",
          " select * from rushupcharge where storeid = '1'  and daystoprocess >= 4  order by daystoprocess asc ",
          "Select VIPMinQualAmount, VIPValidWithOtherOffers, VIPStraight,  VIPStraightPercent, VIPSmartAmount, VIPSmartForEveryAmount, VIPValidNbrOfMonths,  referralDiscountAmount, referralValidNbrOfDays,  referralIncrement, referralLimit  FROM PriceList where PriceListId='1'",
          "select isnull(vipEligible, 0) as vipEligible, isnull(vipExpiryDate, getdate()) as vipExpiryDate, defaultPriceListId from customer where customersequencenumber = '2'",
          "select sum(invoiceTotal) as total from Ticket where ticketStatus='FI'  and customerSequenceNumber = 2 and datediff(mm, createdDate, getdate()) < 6",
          "GetProbablePromotions  '1','1',9.25,'2','11/24/2026 10:30:00 AM'",
          "SELECT ISC.priceListItemID as 'priceListItemID',  ISC.surchargeCode as 'surchargeCode',  SC.fixedAmount as 'fixedAmount' , SC.surchargePercent as 'surchargePercent',  SC.[name] as 'description', SC.applyPerItem FROM ItemSurcharge ISC, Surcharge SC  WHERE ISC.priceListItemID IN ('101')  AND ISC.priceListId = SC.priceListId  AND ISC.surchargeCode = SC.surchargeCode",
          "SELECT ISC.priceListItemID as 'priceListItemID', ISC.descriptorName as 'descriptorName',  ISC.descriptorType as 'descriptorType', ISC.surchargeCode as 'surchargeCode',  SC.fixedAmount as 'fixedAmount', SC.surchargePercent as 'surchargePercent',  SC.[name] as 'description', SC.applyPerItem  FROM ItemDescriptorSurcharge ISC, Surcharge SC  WHERE ISC.priceListItemID IN ('101')  AND convert(varchar, ISC.priceListItemID) + ISC.descriptorType + ISC.descriptorName  IN ('101UPCuffs')  AND ISC.priceListId = SC.priceListId  AND ISC.surchargeCode = SC.surchargeCode",
          "SELECT ds.surchargeCode as surchargeCode, sc.fixedAmount as fixedAmount, sc.surchargePercent as surchargePercent, sc.[name] as description, SC.applyPerItem  from departmentsurcharge ds, surcharge sc where ds.departmentid = '5' and ds.surchargeCode = sc.surchargecode  and sc.pricelistId = '1'",
          itemTaxes, descriptorTaxes, surchargeTaxes(1), surchargeTaxes(6), chargeTaxes,  //
          itemTaxes, descriptorTaxes, surchargeTaxes(1), surchargeTaxes(6), chargeTaxes));
}

// A filter that an earlier operation left does not make an invoice empty, nor does it hide lines from the reset.
TEST_F(FinishingTest, ALeftFilterHidesNothing) {
  begin();
  reads();
  finishWith();
  EXPECT_THAT(reads(), ::testing::IsEmpty()) << "of an invoice without lines";
  item(201);
  setColumn("itemType='IT'", taxableAmt, 99);
  invoice().lineItems->setFilter("itemType='CU'");
  finishWith();
  EXPECT_THAT(goods(), ElementsAre("Shirt on Hanger 2.5: taxable 2.5, tax 0.15, surcharge 0.1"));
}

TEST_F(FinishingTest, PricingAgainReadsNoOptionAndChargesNoRush) {
  enter({{101}});
  finish();
  EXPECT_TRUE(invoice().groupSimilarItems);
  const RecordsetRef taxes = invoice().taxCodes;
  EXPECT_EQ(taxes->recordCount(), 2);
  const auto before = everything();
  execute("update miscsetup set oneDiscountPerInvoice = 1, groupSimilarItems = 0");
  invoice().setDeptIdDueDate(1, Date::of(2026, 11, 25));
  invoice().invoiceDoneAgain();
  EXPECT_EQ(everything(), before);
  EXPECT_EQ(invoice().taxCodes, taxes);
  finish();
  EXPECT_FALSE(invoice().groupSimilarItems);
  EXPECT_THAT(goods(), ::testing::Contains("Next Day Rush 4: taxable 4, tax 0.34, surcharge 0"));
}

// | invoice                   | its date after the entry                                              |
// |---------------------------|-----------------------------------------------------------------------|
// | a garment alone           | three days on from where the calendar was left, 30 November           |
// | with a charge             | the charge's, four days                                               |
// | with an upcharge          | the day of writing, for an upcharge has no date of its own            |
// | chosen by hand            | the latest of the lines                                               |
// | an edit, a counter sale   | stays                                                                 |
TEST_F(FinishingTest, TheDateAtTheEndOfAnEntry) {
  const Date kept = Date::of(2026, 11, 29);
  for (const auto& [what, due] : std::vector<std::pair<std::string, const char*>>{{"garment", "12/3/2026"},
                                                                                  {"charge", "12/1/2026"},
                                                                                  {"upcharge", "11/24/2026"},
                                                                                  {"by hand", "11/30/2026"},
                                                                                  {"edit", "11/29/2026"},
                                                                                  {"sale", "11/29/2026"}}) {
    begin();
    const int pants = item(101);
    if (what == "charge" || what == "edit" || what == "sale") charge(10, 5);
    if (what == "upcharge" || what == "by hand") upcharge(pants, "Cuffs");
    if (what == "by hand") invoice().setInvoiceDueDate(kept);
    invoice().InvDueDate = kept;
    invoice().addOrEdit = what == "edit" ? "edit" : "add";
    invoice().counterSaleOnly = what == "sale";
    apartment->store.lastCounted = Date::of(2026, 11, 30);
    finishWith();
    EXPECT_EQ(invoice().InvDueDate.midnight().text(), due) << what;
  }
}

// | lines                     | display                  | to pay before tax        | to pay                           |
// |---------------------------|--------------------------|--------------------------|----------------------------------|
// | IT 20.004, UP 1.004, SU 2, TA 1 | 21.008 - 3 - 4 = 14.01 | 21.00 - 3 - 1 - 2 - 5 = 10.00 | 3.00 more                    |
TEST_F(FinishingTest, WhatTheSumsCount) {
  begin();
  invoice().excludeTaxes = true;
  const int bag = item(301);
  invoice().overRidePrice(20.004, bag);
  for (const auto& [type, amount] : std::vector<std::pair<const char*, double>>{
           {"UP", 1.004}, {"SU", 2}, {"TA", 1}, {"CU", 3}, {"LY", 4}, {"PR", 1}, {"VI", 2}, {"RE", 5}})
    offer(type, 1, type, amount);
  setColumn("itemType='IT'", lineItemTotal, 20.004);
  EXPECT_DOUBLE_EQ(invoice().getTotalPriceForDisplay().toDouble(), 14.01);
  EXPECT_DOUBLE_EQ(invoice().getInvoiceAmountToPayBeforeTaxSurcharge(), 10);
  EXPECT_DOUBLE_EQ(invoice().getInvoiceAmountToPay(), 13);
  offer("CU", 2, "CU", 50);
  EXPECT_EQ(invoice().getTotalPriceForDisplay().toDouble(), 0);
  EXPECT_EQ(invoice().getInvoiceAmountToPayBeforeTaxSurcharge(), 0);
  EXPECT_EQ(invoice().getInvoiceAmountToPay(), 0);
  EXPECT_TRUE(filterIsClear());
}

}  // namespace
}  // namespace ondrel
