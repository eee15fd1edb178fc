#include "invoice/pricing_story.h"

namespace ondrel {
namespace {

using ::testing::ElementsAre;
using ::testing::UnorderedElementsAre;
using enum LineColumn;

class RouteRushTest : public PricingTest {
 protected:
  void route(int customer) {
    Variant who = customer;
    invoice().adjustDueDatesForRoute(who);
  }
  // "Pants 11/26/2026 2" for each garment and charge.
  std::vector<std::string> promises() {
    std::vector<std::string> result;
    for (const RecordsetRef& line = each("itemType='IT' or itemType='AC'"); !line->eof(); line->moveNext())
      result.push_back(fmt::format("{} {} {}", line->text(itemName), line->date(dueDate).midnight().text(),
                                   line->integer(daysToProcess)));
    return result;
  }
  void rush() {
    Variant merge = true;
    invoice().applyRushUpcharge(merge);
  }
  // "Next Day Rush 8" for each upcharge.
  std::vector<std::string> upcharges() {
    std::vector<std::string> result;
    for (const RecordsetRef& line = each("itemType='UP'"); !line->eof(); line->moveNext())
      result.push_back(line->text(itemName) + " " + line->value(lineItemTotal).joined());
    return result;
  }
};

// ---------------------------------------------------------------- route

// Written Tuesday 24 November. Thursday is a holiday of the shop, which a route does not mind.
TEST_F(RouteRushTest, TheNextDayOnWhichTheRoutePasses) {
  struct {
    const char* what;
    int customer, priceList, shop, written;
    const char* due;
  } const cases[] = {
      {"Tuesday and Thursday, Monday only collects", 7, 1, 1, 24, "11/26/2026"},
      {"from Thursday on to Tuesday", 7, 1, 1, 26, "12/1/2026"},
      {"the day of writing is none", 8, 3, 2, 24, "12/1/2026"},
      {"from Saturday over Sunday", 8, 3, 2, 28, "12/1/2026"},
      {"from Monday the next day", 8, 3, 2, 30, "12/1/2026"},
  };
  for (const auto& [what, customer, priceList, shop, written, due] : cases) {
    clock->set(Date::of(2026, 11, written, 10, 30));
    enter({{shop == 1 ? 201 : 3201}}, customer, priceList, shop);
    route(customer);
    EXPECT_EQ(each("itemType='IT'")->date(dueDate).midnight().text(), due) << what;
    EXPECT_EQ(invoice().InvDueDate.midnight().text(), due) << what;
  }
}

TEST_F(RouteRushTest, LongWorkKeepsItsDateAndARouteThatRestsMovesNothing) {
  enter({{201}, {401}}, 7);
  reads();
  route(7);
  EXPECT_THAT(
      reads(),
      ElementsAre(" select routeVersion from miscsetup where routeVersion = 2 and storeid = '1'",
                  " select id from customerdelivery where customersequencenumber = '7' and deliverWed "
                  "in (1, 3)  and active = 1 ",
                  " select id from customerdelivery where customersequencenumber = '7' and deliverThu "
                  "in (1, 3)  and active = 1 "));
  EXPECT_THAT(promises(), ElementsAre("Shirt on Hanger 11/26/2026 2", "Comforter 12/2/2026 5"));
  EXPECT_EQ(invoice().InvDueDate.midnight(), Date::of(2026, 12, 2));

  enter({{201}}, 6);
  route(6);
  EXPECT_THAT(promises(), ElementsAre("Shirt on Hanger 11/28/2026 2"));

  clock->set(Date::of(2026, 11, 30, 9, 0));
  begin(8, 3, 2);
  reads();
  route(8);
  EXPECT_EQ(reads()[1],
            " select 1 from customer  inner join route on customer.routenumber = route.routenumber  where "
            "customer.customersequencenumber = '8' and route.deliveryTue = 1");
}

// ---------------------------------------------------------------- workload

// Dry cleaning of the 30th is over its 120 pieces, 1 December stands at it; shirts stand at their limit of 240;
// household is over on the 2nd and 3rd, and the 4th has no count. A department without quota has no limit.
TEST_F(RouteRushTest, AFullDayRollsOverToOneWithRoom) {
  enter({{101}, {201}, {401}, {501}});
  execute(
      "insert into dailystatistics (Date, DepartmentName, PiecesDue) values ('2026-12-02', 'Alterations', 9999)");
  invoice().setDeptIdDueDate(5, Date::of(2026, 12, 2));
  reads();
  invoice().adjustDueDatesForWorkload();
  EXPECT_THAT(promises(), ElementsAre("Pants 12/1/2026 4", "Shirt on Hanger 11/28/2026 2",
                                      "Comforter 12/4/2026 7", "Hem Pants 12/2/2026 5"));
  EXPECT_EQ(invoice().InvDueDate.midnight(), Date::of(2026, 12, 4));
  EXPECT_THAT(reads(),
              ::testing::IsSupersetOf(
                  {"select (ms.RollOverDueDateAbove * dq.PiecesDue) / 100 as threshold from miscsetup ms, "
                   "departmentquota dq where ms.storeid = '1' and dq.DepartmentName = 'Dry Cleaning'",
                   "select isnull(PiecesDue, 0) as PiecesDue from dailystatistics where Date = "
                   "convert(varchar, '11/30/2026', 110) and DepartmentName = 'Dry Cleaning'",
                   "select isnull(PiecesDue, 0) as PiecesDue from dailystatistics where Date = "
                   "convert(varchar, '12/1/2026', 110) and DepartmentName = 'Dry Cleaning'"}));
}

// ---------------------------------------------------------------- rush

TEST_F(RouteRushTest, IsRushWithinTheLongestTier) {
  enter({{201}});
  EXPECT_TRUE(invoice().isRush().toBoolean());
  item(101);
  EXPECT_FALSE(invoice().isRush().toBoolean());
  execute("delete from rushupcharge");
  enter({{201}});
  EXPECT_FALSE(invoice().isRush().toBoolean());
}

// | department | promised    | days | tier | upcharge a piece                          |
// |------------|-------------|------|------|-------------------------------------------|
// | cleaning   | Wednesday   | 1    | 1    | Next Day Rush 4.00                        |
// | shirts     | Tuesday     | 0    | 0    | Same Day Rush 2.00                        |
// | laundry    | as usual    | 2    | 2    | Two Day Rush, which its items do not have |
// | household  | as usual    | 5    | none |                                           |
TEST_F(RouteRushTest, TheTightestTierOfEachDepartment) {
  enter({{101, 2}, {201, 3}, {301}, {401}});
  invoice().setDeptIdDueDate(1, Date::of(2026, 11, 25));
  invoice().setDeptIdDueDate(2, Date::of(2026, 11, 24));
  rush();
  EXPECT_THAT(upcharges(), UnorderedElementsAre("Next Day Rush 8", "Same Day Rush 6"));

  // Again, with cleaning moved to another tier: what the first run added is taken back, the sums too.
  upcharge(1, "Stain Treatment");
  invoice().setDeptIdDueDate(1, Date::of(2026, 11, 28));
  rush();
  rush();
  EXPECT_THAT(upcharges(), UnorderedElementsAre("Stain Treatment 6", "Two Day Rush 4", "Same Day Rush 6"));
  EXPECT_DOUBLE_EQ(each("itemType='IT'")->number(upchargeTotal), 10);
  invoice().setDeptIdDueDate(1, Date::of(2026, 12, 4));
  rush();
  EXPECT_THAT(upcharges(), UnorderedElementsAre("Stain Treatment 6", "Same Day Rush 6"));
}

}  // namespace
}  // namespace ondrel
