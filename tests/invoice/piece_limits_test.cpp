#include "base/array.h"
#include "invoice/invoice_fixture.h"

namespace ondrel {
namespace {

using enum LineColumn;

class PieceLimits : public InvoiceTest {
 protected:
  static int limitOf(Invoice& ticket, Variant department) {
    return ticket.getDepartmentMaxPieces(department).toLong();
  }
  int piecesOf(Variant department) { return invoice.getDepartmentPieceCount(department).toLong(); }
  // "pieces of department"
  std::string after(const std::string& line, int pieces, int pack, int department,
                    const char* action = "change") {
    const Variant answer = invoice.checkAllowableItemCountPerDept(line, pieces, pack, department, action);
    const auto array = std::dynamic_pointer_cast<Array>(answer.toObject());
    EXPECT_EQ(array->lowerBound, 1);
    EXPECT_TRUE(filterIsClear());
    return array->items[0].toText() + " of " + array->items[1].toText();
  }
};

TEST_F(PieceLimits, CountQuantityTimesPack) {
  garment(103, 3);  // of two pieces
  EXPECT_EQ(piecesOf(1), 6);
  invoice.addChargeLineNew(1, 1, 2.0, "Extra", 2, 1, 2);
  EXPECT_EQ(piecesOf(1), 10);
  invoice.lineItems->addNew({{deptId, 1}, {itemType, "IT"}, {quantity, Variant::null()}, {pkgQuantity, 3}});
  invoice.lineItems->addNew({{deptId, 1}, {itemType, "UP"}, {quantity, 9}, {pkgQuantity, 9}});
  EXPECT_EQ(piecesOf(1), 13) << "Null is one; what hangs on a garment is none";
  EXPECT_EQ(piecesOf(2), 0);
}

TEST_F(PieceLimits, OfADepartmentAndALotOfTags) {
  execute("update Department set maxItemsInReceipt = 3999999 where departmentID = 2");
  execute("update Department set maxItemsInReceipt = 4000000 where departmentID = 3");
  loadDepartments(*apartment, 1, 1);
  for (const auto& [department, limit] : {std::pair{1, 10}, {2, 3999999}, {3, -1}, {5, -1}, {99, -1}})
    EXPECT_EQ(limitOf(invoice, department), limit) << department;

  execute("update Ticket set lotid = 5 where ticketNumber = 1007");
  execute("delete TicketTag where ticketNumber = 1007");
  for (int tag = 1; tag <= 4; ++tag)
    execute(fmt::format("insert into TicketTag (ticketNumber, tagNumber) values (1007, '{}')", tag));
  Invoice tagged;
  tagged.getExistingDetails(1007);
  EXPECT_EQ(limitOf(tagged, 1), 4);
  EXPECT_EQ(limitOf(tagged, 6), 3) << "the smaller of both";
  EXPECT_EQ(limitOf(tagged, 3), -1) << "no limit is none with tags either";

  for (Variant department : {4, 1, 99})
    EXPECT_EQ(invoice.isManualMaxPiecesEnabled(department).toBoolean(), isEqual(department, 4));
  EXPECT_TRUE(isEqual(apartment->store.storeDepartments->filter(), 0));
}

TEST_F(PieceLimits, AreOverInADepartmentSplitByHandOnly) {
  const auto over = [&] { return invoice.isOverMaxDepartmentItems().toBoolean(); };
  garment(101, 50);
  garment(401, 5);
  EXPECT_FALSE(over()) << "cleaning splits by itself, household is exactly at its limit";
  garment(402);
  EXPECT_TRUE(over());
}

TEST_F(PieceLimits, AnswerWhatAChangeWouldCome) {
  EXPECT_EQ(after("1", 4, 3, 1), "12 of 1") << "on an empty invoice";
  const auto put = [&](int number, int department, Variant pieces, Variant pack, Variant sold) {
    invoice.lineItems->addNew({{lineNumber, number},
                               {deptId, department},
                               {itemType, "IT"},
                               {quantity, pieces},
                               {pkgQuantity, pack},
                               {saleOnly, sold}});
  };
  put(1, 1, 2, 2, false);
  put(2, 1, 6, 1, false);
  EXPECT_EQ(after("1", 5, 9, 9), "16 of 1") << "the line's own department and pack: 10 and three of two";
  EXPECT_EQ(after("1", 5, 9, 9, "getItemDetails"), "45 of 9");
  EXPECT_EQ(after("1", 5, 3, 1, "getItemDetails"), "25 of 1");
  put(3, 1, 3, 6, true);
  put(4, 1, 1, 6, Variant::null());
  put(5, 1, 2, Variant::null(), false);
  EXPECT_EQ(after("77", 0, 1, 1), "16 of 1")
      << "sold: a piece a unit; without a pack: that of the line before";
  EXPECT_EQ(errorOf([&] { after("77", 2000000000, 2, 1); }), 6);
}

}  // namespace
}  // namespace ondrel
