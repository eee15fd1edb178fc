#include <gumbo.h>

#include "base/text.h"
#include "data/query_database.h"
#include "web/panel_fixture.h"

namespace ondrel {
namespace {

using enum LineColumn;

// A fragment as a browser reads it inside of a div.
struct Reading {
  unsigned errors = 0;
  std::string shape;  // the elements with their classes, in brackets
  std::string words;  // the text in order
};

void read(const GumboNode& node, Reading& reading) {
  if (node.type == GUMBO_NODE_TEXT || node.type == GUMBO_NODE_WHITESPACE) {
    reading.words += node.v.text.text;
    return;
  }
  if (node.type != GUMBO_NODE_ELEMENT) return;
  const GumboElement& element = node.v.element;
  const GumboAttribute* classes = gumbo_get_attribute(&element.attributes, "class");
  reading.shape += std::string(gumbo_normalized_tagname(element.tag)) + (classes ? "." : "") +
                   (classes ? classes->value : "") + "(";
  for (unsigned k = 0; k < element.children.length; ++k)
    read(*static_cast<const GumboNode*>(element.children.data[k]), reading);
  reading.shape += ")";
}

Reading readingOf(const std::string& fragment) {
  GumboOptions options = kGumboDefaultOptions;
  options.fragment_context = GUMBO_TAG_DIV;
  GumboOutput* output = gumbo_parse_with_options(&options, fragment.data(), fragment.size());
  Reading reading;
  reading.errors = output->errors.length;
  read(*output->root, reading);
  gumbo_destroy_output(&options, output);
  return reading;
}

class MarkUp : public PanelTest {
 protected:
  // Names of everything that a panel shows encoded.
  void rename(const std::string& name) {
    const std::string sql = escapeSqlValue(name);
    execute("update PriceListItem set itemName = '" + sql + "' where priceListItemId in (101, 401)");
    execute("update Department set name = '" + sql + "' where departmentID = 1");
    execute("update ItemDescriptorPrice set descriptorName = '" + sql + "' where itemDescriptorPriceID = 40");
    execute("update descriptor set name = '" + sql +
            "', displayorder = -1 where descriptorid in (3, 31, 102)");
    execute("update Discount set discountName = '" + sql + "' where discountID = 1");
    execute("update customerpreferencetype set options = 'None|" + sql + "' where name = 'Finish'");
    execute("update TicketCustomer set firstName = null, lastName = '" + sql + "'");
    execute("update employee set employeename = '" + sql + "'");
    execute("update Customer set customername = '" + sql + "' where customerSequenceNumber = 1");
    // Ticket 1007 is made the same as the invoice, its surcharge a brand.
    execute("update TicketLineItem set lineItemID = 125 where ticketNumber = 1007 and lineItemNumber = 4");
    execute(
        "update TicketLineItem set ticketLineType = 'BR', parentLineNumber = 1 where ticketNumber = 1007 and lineItemNumber = 5");
    execute("update TicketLineItem set lineItemName = '" + sql +
            "' where ticketNumber = 1007 and lineItemNumber in (2, 3, 5)");
    startTicket();
    pants = invoice.addItem2(101, 2).toLong();
    invoice.addUpcharge2(pants, name, 1);
    invoice.addDescriptor(pants, name, "CO", 2);
    invoice.addDescriptor(pants, name, "BR", 1);
    suit = invoice.addItem2(125, 1).toLong();
    invoice.attachNotes(suit, name);
    invoice.pushNewHeatSeal(name);
  }
};

TEST_F(MarkUp, IsReadWithoutAnError) {
  fillTicket();
  invoice.pushNewHeatSeal("AA00021");
  for (const auto& [name, panel] : panels()) {
    // The one oddity that pages know: an upcharge's button says twice how many there may be.
    const std::string once = replaceAll(panel, " maxquantity=\"1\"><span>", "><span>");
    EXPECT_EQ(readingOf(once).errors, 0U) << name << "\n" << panel;
  }
  EXPECT_GT(readingOf(htmlUpcharges(invoice, 101).toText()).errors, 0U) << "so errors are seen";
}

// A name of any content changes the words and nothing else.
TEST_F(MarkUp, HostileNamesStayWords) {
  rename("Plain");
  const auto plain = panels();
  const std::string hostile = "P</div><script>\"x\"='O'&amp;\\ Z\xC3\xBC\xE2\x82\xAC>";
  rename(hostile);
  const auto made = panels();
  for (size_t k = 0; k < made.size(); ++k) {
    const std::string& name = made[k].first;
    std::string panel = made[k].second, word = hostile;
    if (name == "htmlLineProperties pants") {  // its table takes the upcharges' names plain
      EXPECT_NE(panel.find("<td>" + hostile), std::string::npos);
      panel = replaceAll(panel, "<td>" + hostile, "<td>Plain");
      word = "Plain";
    }
    if (name == "htmlLineFunctions suit") word = leftCharacters(hostile, 10);  // what the button has of notes
    const Reading before = readingOf(plain[k].second), after = readingOf(panel);
    EXPECT_EQ(after.shape, before.shape) << name;
    EXPECT_EQ(after.words, replaceAll(before.words, "Plain", word)) << name;
    if (name == "htmlSimilarInvoices") {
      EXPECT_NE(after.words.find("5007" + hostile + hostile), std::string::npos) << "customer and employee";
    }
  }
}

TEST_F(MarkUp, FormsAndMoney) {
  // clang-format off
  const struct { std::string made, expected; } cases[] = {
      {htmlAddChargeDetail(invoice, 99).toText().substr(0, 117),
       "<div class=\"charge\"><label for=\"description\">Description</label><input name=\"description\" id=\"description\" value=\"\"/>"},
      {htmlLineFunctions(invoice, "").toText(),
       "<div class=\"button edit-line-price\"><span class=\"value\"></span><span class=\"label\">Unit Price</span></div>"
       "<div class=\"button edit-line-notes\"><span class=\"value\"></span><span class=\"label\">Notes</span></div>"},
      {htmlLineItems(invoice).toText(), ""},
      {htmlItems(invoice, 99).toText(), ""},
      {htmlSummary(invoice, 99).joined(), ""},
  };
  // clang-format on
  for (const auto& [made, expected] : cases) EXPECT_EQ(made, expected);

  invoice.addChargeLineNew(1, 1, 1234.5, "Rugs", 11, 3, 1);
  const std::string charge = htmlAddChargeDetail(invoice, 1).toText();
  EXPECT_EQ(charge.find("selected"), std::string::npos) << "eleven pieces are not on offer";
  EXPECT_NE(charge.find("value=\"Rugs\"/>"), std::string::npos);
  EXPECT_NE(htmlLineItems(invoice).toText().find("<div class=\"price\">$13,579.50</div>"), std::string::npos);
}

}  // namespace
}  // namespace ondrel
