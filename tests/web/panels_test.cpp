#include <regex>

#include "data/store_loading.h"
#include "support/fake_database.h"
#include "web/line_readers.h"
#include "web/panel_fixture.h"

namespace ondrel {
namespace {

using enum LineColumn;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::Not;

std::vector<std::string> found(const std::string& text, const char* pattern) {
  std::vector<std::string> result;
  const std::regex each(pattern);
  for (std::sregex_iterator it(text.begin(), text.end(), each), end; it != end; ++it)
    result.push_back((*it)[1]);
  return result;
}

class Panels : public PanelTest {
 protected:
  void addLine(const char* type, Variant pieces, int line) {
    invoice.lineItems->addNew({{lineNumber, line},
                               {parentLineNumber, -1},
                               {deptId, 3},
                               {deptName, "Laundry"},
                               {itemType, type},
                               {itemName, "Wash"},
                               {quantity, pieces}});
  }
  void setDays(const char* days) {
    execute(std::string("update Department set daysToProcess = ") + days + " where departmentID = 3");
    loadDepartments(*apartment, 1, 1);
  }
};

// ---------------------------------------------------------------- the day picker

// From Tuesday the 24th, past Thanksgiving and the day after, Sundays, and no further than Christmas: day 11 is
// Wednesday 9 December, day 22 Tuesday the 22nd.
TEST_F(Panels, TheDayPickerTurnsElevenDaysAPage) {
  // clang-format off
  const struct { Variant page; const char* days; int shown; const char* button; const char* firstDay; int dueCell; } cases[] = {
      {"",  "25", 2, "prev", "2026-12-22", 3},   {0,   "25", 0, "stop", "2026-11-24", -1},
      {"0", "25", 0, "stop", "2026-11-24", -1},  {"",  "11", 0, "prev", "2026-11-24", 11},
      {1,   "11", 1, "prev", "2026-12-09", 0},   {"",  "12", 1, "prev", "2026-12-09", 1},
      {"",  "22", 1, "prev", "2026-12-09", 11},  {0,   "0",  0, "stop", "2026-11-24", 0},
  };
  // clang-format on
  for (const auto& each : cases) {
    setDays(each.days);
    Variant page = each.page;
    const std::string picker = htmlDeptDueDate(invoice, 3, page).toText();
    SCOPED_TRACE(picker);
    EXPECT_EQ(page.toLong(), each.shown);
    const auto dates = found(picker, "date=\"([^\"]*)\""), marks = found(picker, "dept-due( [^\"]*)?\"");
    ASSERT_EQ(dates.size(), 14U);
    EXPECT_EQ(dates.front() + dates.back(), std::string(each.button) + "next");
    EXPECT_EQ(dates[1], each.firstDay);
    for (int cell = 0; cell < 12; ++cell)
      EXPECT_EQ(marks[static_cast<size_t>(cell) + 1].find("due-date") != std::string::npos,
                cell == each.dueCell);
  }
}

TEST_F(Panels, ADayPickerForEachDepartmentAndForAll) {
  fillTicket();
  EXPECT_THAT(htmlInvoiceDueDate(invoice).toText(),
              testing::StartsWith("<div class=\"dept-details\"><h3>Invoice</h3><div page=\"0\">"));
  const std::string pickers = htmlDeptsDueDate(invoice).toText();
  EXPECT_THAT(found(pickers, "<div class=\"dept-details\"><h3>([^<]*)</h3><div page=\"0\">"),
              ElementsAre("Dry Cleaning", "Shirts", "Laundry"));
  EXPECT_THAT(found(pickers, "date=\"prev\" deptid=\"([0-9]+)\""), ElementsAre("1", "2", "3"));
  EXPECT_THAT(pickers, testing::EndsWith("<span class=\"note\">Next</span></div></div></div>"));
}

TEST_F(Panels, ADayPickerDayByDay) {
  setDays("0");
  Variant page = 1;
  EXPECT_EQ(found(htmlDeptDueDate(invoice, 3, page).toText(), "class=\"day\">([^<]+)"),
            (std::vector<std::string>{"Dec-9", "Dec-10", "Dec-11", "Dec-12", "Dec-14", "Dec-15", "Dec-16",
                                      "Dec-17", "Dec-18", "Dec-19", "Dec-21", "Dec-22"}));
  page = "";
  EXPECT_THAT(
      htmlDeptDueDate(invoice, 3, page).toText(),
      HasSubstr("<div class=\"button dept-due created-date due-date\" date=\"2026-11-24\" deptid=\"3\">"
                "<span class=\"day\">Nov-24</span><span class=\"dow-short\">Tue</span>"
                "<span class=\"note\">Created, Due</span></div>"));
  page = 2'000'000'000;
  EXPECT_EQ(errorOf([&] { htmlDeptDueDate(invoice, 3, page); }), 6) << "no page is that far";
  for (const char* never : {"-1", "null"}) {
    execute("update Store set defaultProcessingDays = null");
    setDays(never);
    page = "";
    EXPECT_EQ(errorOf([&] { htmlDeptDueDate(invoice, 3, page); }), 5) << "no page has such a day";
    page = 0;
    EXPECT_THAT(htmlDeptDueDate(invoice, 3, page).toText(), HasSubstr("date=\"stop\""));
  }
}

// ---------------------------------------------------------------- lines

TEST_F(Panels, LinesNewestFirstWithTheirOwnRules) {
  addLine("DE", 0, 1);
  addLine("DE", 4, 2);
  addLine("IT", 0, 3);
  addLine("TA", 1, 4);
  addLine("cu", 1, 5);
  addLine("VI", 1, 6);
  invoice.lineItems->addNew(
      {{lineNumber, 7}, {parentLineNumber, 3}, {itemType, "BR"}, {itemName, "Fen"}, {quantity, 2}});
  for (int repeated = 0; repeated < 2; ++repeated) {
    const std::string panel = htmlLineItems(invoice, " 3 ").toText();
    EXPECT_THAT(found(panel, "lineid=\"([0-9]+)\""), ElementsAre("5", "3", "2"));
    EXPECT_THAT(found(panel, "<li><span>([^<]*)<"), ElementsAre("Fen (2) ")) << "no pieces count as one";
    EXPECT_THAT(panel, HasSubstr("<div class=\"price\"></div><div class=\"name\">Quick Wash</div>"));
    EXPECT_THAT(found(panel, "class=\"(lineitem [^\"]*)\""),
                ElementsAre("lineitem it-cu", "lineitem selected it-it", "lineitem it-de"));
    EXPECT_EQ(invoice.lineItems->filter().toText(), "deptID = 3 and parentLineNumber < 0");
    EXPECT_EQ(invoice.lineItems->sort(), "lineNumber desc");
  }
}

TEST_F(Panels, ALineSaysWhatItLacks) {
  const auto classes = [&] { return found(htmlLineItems(invoice).toText(), "class=\"(lineitem [^\"]*)\""); };
  suit = invoice.addItem2(125, 2).toLong();
  const int skirt = invoice.addItem2(123, 1).toLong();
  statements();
  EXPECT_THAT(classes(), ElementsAre("lineitem missing-descriptor missing-upcharge it-it",
                                     "lineitem missing-descriptor missing-color missing-pattern it-it"));
  EXPECT_THAT(reads(),
              testing::Contains(" select forcecolor from pricelistitem where pricelistitemid = 125"));
  invoice.addDescriptor(suit, "Checked", "pa", 1);
  invoice.addColor(suit, "Navy", 1, true, 1.0, 0.01);
  invoice.addUpcharge2(skirt, "Pleats", 1);
  EXPECT_THAT(classes(), ElementsAre("lineitem it-it", "lineitem missing-descriptor missing-color it-it"))
      << "one color for two suits";
}

TEST_F(Panels, APreviewLeavesTheInvoiceAlone) {
  fillTicket();
  invoice.lineItems->setFilter("itemType = 'IT'");
  invoice.lineItems->moveNext();
  const auto told = [&] {
    return invoice.lineItems->filter().toText() + invoice.lineItems->sort() +
           invoice.lineItems->text(itemName) + invoice.addOrEdit + invoice.createdDate.text() +
           std::to_string(invoice.ticketNo) + std::to_string(invoice.currentLineNumber) +
           invoice.InvDueDate.text();
  };
  const std::string before = told();
  const std::string preview = htmlPreviewLineItems(invoice, 1007).toText();
  EXPECT_EQ(told(), before);
  EXPECT_THAT(found(preview, "lineid=\"([0-9]+)\""), ElementsAre("1", "4")) << "in the order of the ticket";
  EXPECT_THAT(preview, Not(HasSubstr("duedate_button")));
  EXPECT_EQ(htmlPreviewLineItems(invoice, 99).toText(), "");
}

// ---------------------------------------------------------------- pick lists

TEST_F(Panels, CouponsWhereOneDiscountIsAllowed) {
  invoice.addItem2(101, 5);
  const auto offered = [&] { return found(htmlCoupons(invoice).toText(), "<div (class=\"discount[^>]*>)"); };
  const size_t all = offered().size();
  EXPECT_GT(all, 3U);
  invoice.getQualifyingCoupons();
  invoice.addCoupon(1);
  EXPECT_EQ(offered().size(), all);
  execute("update miscsetup set oneDiscountPerInvoice = 1 where storeid = 1");
  EXPECT_THAT(offered(), ElementsAre("class=\"discount coupon selected sel_discount\" discountid=\"1\">"));
}

TEST_F(Panels, BrandsAreShortenedUnlessAsked) {
  const auto brands = [&](const char* filter) {
    return found(htmlDescriptor(invoice, "br", "", filter).toText(), "<span>([^<]*)</span>");
  };
  EXPECT_EQ(brands("").size(), 30U);
  EXPECT_THAT(brands("Ar"), ElementsAre("Arbelline", "Ardenvale", "Arkwright and Fen"));
  EXPECT_THAT(brands("o'm"), ElementsAre("O'Marren"));
  EXPECT_THAT(
      htmlDescriptor(invoice, "br", "", "Xy").toText(),
      HasSubstr(
          "<div id=\"br0\" class=\"button pli li-br\" itemname=\"Xy\" maxquantity=\"1\"><span>Xy</span></div>"));
  EXPECT_EQ(htmlDescriptorGroup(invoice, "pa").toText(), htmlDescriptor(invoice, "pa").toText());
  EXPECT_THAT(htmlDescriptor(invoice, "up").toText(), HasSubstr("<div class=\"upcharge-section\">"));
}

TEST_F(Panels, UpchargesOfAnOlderDatabaseAreReadWithoutTheirMost) {
  FakeDatabase older;
  const auto other = std::make_shared<Apartment>();
  older.attachTo(*other);
  older.answer("1 as maxQuantity", tableOf({"descriptorname", "itemdescriptorpriceid", "icon", "maxQuantity",
                                            "promptfordescriptors"},
                                           {{"Cuffs", 7, "cuffs.png", 1, false}}));
  const ApartmentScope scope(other);
  Invoice page;
  older.failStatement(1);
  EXPECT_THAT(
      htmlUpcharges(page, 101).toText(),
      HasSubstr(
          "<div id=\"up7\" maxquantity=\"1\"  class=\"button pli li-up fin\" style=\"background-image: "
          "url(/uploadedimages/cuffs.png)\" itemname=\"cuffs\" maxquantity=\"1\"><span>Cuffs</span></div>"));
  EXPECT_THAT(htmlUpcharges(page, "").toText(),
              HasSubstr("<span class=\"sel-up-name\"></span></div></div></div>"));
}

TEST_F(Panels, ButtonsOfTheIdBar) {
  fillTicket();
  invoice.addDescriptor(pants, "Arbelline", "br", 1);
  const std::string bar = htmlIdGroups(invoice, pants, "pattern").toText();
  EXPECT_THAT(bar, Not(HasSubstr("id-group-selected")));
  EXPECT_THAT(
      bar,
      HasSubstr("<div class=\"sel-br id-group-button\" group=\"brands\"><div class=\"icon\" style=\"\"></div>"
                "<div class=\"label\">Brand</div><div class=\"name\">Arbelline</div></div>"));
  EXPECT_THAT(htmlIdGroups(invoice, "", "co").toText(),
              HasSubstr("sel-it id-group-button id-group-selected"));
}

// Without pieces a button says no quantity. A group's type may come with blanks.
TEST_F(Panels, ButtonsOfGapsInTheTables) {
  addLine("IT", Variant::null(), 1);
  invoice.lineItems->setValue(lineItemId, 301);
  const std::string items = htmlItems(invoice, "", 1).toText();
  EXPECT_THAT(items, HasSubstr("li-it plisel"));
  EXPECT_THAT(items, Not(HasSubstr(" quantity=")));
  execute("update descriptorgroup set type = 'BR ' where type = 'BR'");
  const std::string brands = htmlDescriptors(invoice, "").toText();
  EXPECT_EQ(found(brands, "<div id=\"br([0-9]+)\" class=\"button pli li-br\"").size(), 30U);
}

TEST_F(Panels, TheFilterThatAPanelLeaves) {
  fillTicket();
  const std::string found = "itemType='DE'", line = std::to_string(pants);
  // clang-format off
  const struct { const char* name; std::function<Variant()> panel; std::string left; } cases[] = {
      {"upcharges",                  [&] { return htmlUpcharges(invoice, 101); },                   found},
      {"upcharges of a line",        [&] { return htmlUpcharges(invoice, 101, pants); },            "0"},
      {"an item without upcharges",  [&] { return htmlUpcharges(invoice, 999, pants); },            found},
      {"descriptors",                [&] { return htmlDescriptors(invoice, ""); },                  found},
      {"descriptors of a line",      [&] { return htmlDescriptors(invoice, "", pants); },           "0"},
      {"a brand that was typed",     [&] { return htmlDescriptor(invoice, "br", pants, "Xylon"); }, "lineNumber=" + line},
      {"price and notes",            [&] { return htmlLineFunctions(invoice, pants); },             "lineNumber=" + line},
      {"form",                       [&] { return htmlLineProperties(invoice, ""); },               found},
      {"form of a line",             [&] { return htmlLineProperties(invoice, "", pants); },        "parentLineNumber=" + line + " and itemType='UP'"},
      {"charge",                     [&] { return htmlAddChargeDetail(invoice); },                found},
      {"charge of a line",           [&] { return htmlAddChargeDetail(invoice, pants); },           "itemType='AC' and lineNumber=" + line},
      {"similar tickets",            [&] { return htmlSimilarInvoices(invoice); },                "itemType = 'IT'"},
  };
  // clang-format on
  for (const auto& [name, panel, left] : cases) {
    invoice.lineItems->setFilter(found);
    panel();
    EXPECT_EQ(invoice.lineItems->filter().toText(), left) << name;
  }
}

TEST_F(Panels, ReadersOfLines) {
  EXPECT_TRUE(getDepartmentID(invoice).isEmpty());
  fillTicket();
  EXPECT_EQ(getDepartmentID(invoice).toLong(), 1);
  EXPECT_EQ(getLineItemQuantity(invoice, pants).toLong(), 2);
  EXPECT_EQ(getLineItemQuantity(invoice, 99).toLong(), 0);
  EXPECT_TRUE(lineItemExists(invoice, "it", 101).toBoolean());
  EXPECT_FALSE(lineItemExists(invoice, "CU", 101).toBoolean());
}

// ---------------------------------------------------------------- similar tickets

TEST_F(Panels, ADoubleEntryIsRecognised) {
  EXPECT_EQ(htmlSimilarInvoices(invoice).toText(), "<div class=\"si_list\"></div>");
  pants = invoice.addItem2(101, 2).toLong();
  invoice.addUpcharge2(pants, "Stain Treatment", 1);
  invoice.addColor(pants, "Navy", 1, true, 1.0, 0.01);
  invoice.addItem2(103, 1);
  EXPECT_EQ(
      htmlSimilarInvoices(invoice).toText(),
      "<div class=\"si_list\"><div class=\"si_item\" ticketnumber=\"1007\"><div class=\"si_view\" ticketnumber=\"1007\">"
      "<span>View</span></div><div class=\"si_invoice\">5007</div><div class=\"si_customer\">Marta Fenwick</div>"
      "<div class=\"si_employee\">Dora Quill</div><div class=\"si_rack\"></div><div class=\"si_created\">11/24/2026 "
      "9:30:00 AM</div><div class=\"si_pickedup\">-</div></div></div>");
  invoice.addDescriptor(pants, "O'Marren", "br", 1);
  statements();
  EXPECT_EQ(htmlSimilarInvoices(invoice).toText(), "<div class=\"si_list\"></div>") << "a brand more";
  const std::string sent = reads().back();
  EXPECT_THAT(
      sent,
      HasSubstr(
          "in  (   select distinct pitem1.ticketnumber  from ticketlineitem pitem1  inner join TicketLineItem "
          "sitem1 on  sitem1.ticketNumber = pitem1.ticketNumber and  sitem1.parentLineNumber = "
          "pitem1.lineItemNumber and  sitem1.lineItemName = 'Stain Treatment' and sitem1.ticketLineType = 'UP' "));
  EXPECT_THAT(
      sent,
      HasSubstr(
          "sitem3.lineItemName = 'O''Marren' and sitem3.ticketLineType = 'br'  where pitem1.lineItemId = "
          "101 and pitem1.quantity >= 2 and datediff(day, pitem1.duedate, getdate()) <= 180  intersect  "
          "select distinct pitem2.ticketnumber"));
  invoice.removeDescriptor(pants, "O'Marren", "br");
  invoice.changeQuantity(1, pants);
  EXPECT_THAT(htmlSimilarInvoices(invoice).toText(), HasSubstr("1007")) << "fewer than the ticket's";
  invoice.changeQuantity(3, pants);
  EXPECT_THAT(htmlSimilarInvoices(invoice).toText(), Not(HasSubstr("1007"))) << "more";
}

}  // namespace
}  // namespace ondrel
