#include "invoice/invoice_fixture.h"

namespace ondrel {
namespace {

using ::testing::ElementsAre;

// Sample store: garments come on a hanger (preference 2); customer 1 likes them folded, but boxed on ticket 1007;
// customer 5 pays no tax.
class Preferences : public InvoiceTest {
 protected:
  std::string finishFor(Variant customer, Variant ticket) {
    invoice.loadCustomerPreferences(customer, ticket);
    return invoice.preferences->item(2).toText();
  }
};

TEST_F(Preferences, OfTheTicketBeatStandingOnesBeatDefaults) {
  EXPECT_EQ(finishFor(1, 1007), "Boxed");
  std::vector<std::string> sent = reads();
  sent.resize(4);
  EXPECT_THAT(
      sent, ElementsAre(" select surchargeExempt, taxExempt from customer where customersequencenumber = '1'",
                        " select *, isnull(options, '') as options from customerpreferencetype order by "
                        "displayorder ",
                        " select [value] from customerpreference where  customerpreferencetypeid = '1' and "
                        "customersequencenumber = '1' and ticketnumber is null ",
                        " select [value] from customerpreference where  customerpreferencetypeid = '1' and "
                        "customersequencenumber = '1' and ticketnumber = '1007'"));
  EXPECT_EQ(finishFor(1, ""), "Folded") << "without a ticket";
  EXPECT_EQ(finishFor("", 1007), "Hanger") << "without a customer";
  EXPECT_EQ(finishFor(5, ""), "Hanger");
  EXPECT_TRUE(invoice.excludeTaxes);
  EXPECT_FALSE(invoice.excludeSurcharges);
  EXPECT_EQ(invoice.preferenceNames->item(2).toText(), "Finish");
}

TEST_F(Preferences, AreSetByTypeOrName) {
  EXPECT_EQ(finishFor(7, ""), "Hanger");
  Variant type = 2, name = "Crease", unknown = "Fold", value = "Box";
  invoice.setCustomerPreference(type, value);
  invoice.setCustomerPreferenceByName(unknown, value);
  invoice.setCustomerPreferenceByName(name, value);
  EXPECT_EQ(invoice.preferences->item(2).toText() + invoice.preferences->item(3).toText(), "BoxBox");
  EXPECT_EQ(invoice.preferences->count(), 5);
}

}  // namespace
}  // namespace ondrel
