#include <fmt/format.h>
#include <gmock/gmock.h>

#include "quick/garment_search.h"
#include "support/store_fixture.h"

namespace ondrel {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

class GarmentSearches : public StoreTest {
 protected:
  // The lines in order, as "2<1 CO 5 x 1 of 1, item 201".
  std::vector<std::string> lines() const {
    using enum SearchColumn;
    std::vector<std::string> result;
    for (const RecordsetRef line = search.lineItems->clone(); !line->eof(); line->moveNext())
      result.push_back(fmt::format(
          "{}<{} {} {} x {} of {}, item {}{}", line->integer(lineNumber), line->integer(parentLineNumber),
          line->text(itemType), line->value(lineItemId).joined(), line->value(quantity).joined(),
          line->value(deptId).joined(), line->value(parentId).joined(), line->text(itemName)));
    return result;
  }
  GarmentSearch search;
};

TEST_F(GarmentSearches, AreComposedLikeATicket) {
  EXPECT_EQ(search.addItem(201, "2").toLong(), 1);
  EXPECT_EQ(search.addItem(102, "some").toLong(), 2);
  EXPECT_EQ(search.addItem("201", 3).toLong(), 1) << "onto the line that there is";
  search.addItem(201, "");
  EXPECT_TRUE(search.addItem(999, 1).isEmpty());
  EXPECT_EQ(reads().front(),
            "Select priceListItemId, departmentId, itemName  From PriceListItem Where priceListItemId =201");
  search.addUpcharge(2, 31, 2);
  search.addColor(1, 32, "?");
  search.addPattern(9, 33, 1);
  search.addBrand(2, 34, "3");
  EXPECT_THAT(reads(), IsEmpty()) << "only an item's name is read";
  EXPECT_THAT(lines(),
              ElementsAre("1<-1 IT 201 x 6 of 2, item Shirt on Hanger", "2<-1 IT 102 x 1 of 1, item Jacket",
                          "3<2 UP 31 x 2 of 1, item 102", "4<1 CO 32 x 1 of 2, item 201",
                          "5<9 PA 33 x 1 of -1, item -1", "6<2 BR 34 x 3 of 1, item 102"));
  search.changeQuantity(4, 2);
  search.deleteItem(1);
  EXPECT_EQ(search.getTotalItemCount().toLong(), 4) << "colors do not count";
  EXPECT_EQ(search.getItemIdForLineNo(4).toLong(), 32) << "what hung on the shirt stays";
  EXPECT_TRUE(search.getItemIdForLineNo(1).isEmpty());
}

// Each of these fails inside; the list stays as it was and wholly in sight.
TEST_F(GarmentSearches, NeverRaiseAnError) {
  search.addItem(201, 1);
  search.addItem("shirt", 1);
  search.addItem(Variant::null(), 1);
  search.addColor("first", 5, 1);
  search.addColor(1, 5, "99999999999");
  search.changeQuantity("many", 1);
  search.deleteItem("1 or");
  EXPECT_TRUE(search.getItemIdForLineNo("x y").isEmpty());
  search.changeQuantity(2147483647, 1);
  EXPECT_EQ(search.addItem(201, 1).toLong(), 1) << "the line was found before it overflowed";
  EXPECT_THAT(lines(), ElementsAre("1<-1 IT 201 x 2147483647 of 2, item Shirt on Hanger"));
  EXPECT_TRUE(isEqual(search.lineItems->filter(), 0));
  search.lineItems->close();
  EXPECT_TRUE(search.getTotalItemCount().isEmpty());
}

}  // namespace
}  // namespace ondrel
