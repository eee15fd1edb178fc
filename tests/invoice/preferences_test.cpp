#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "invoice/invoice.h"
#include "support/fake_database.h"

namespace ondrel {
namespace {

using ::testing::ElementsAre;

class Preferences : public ::testing::Test {
 protected:
  Preferences() {
    database.attachTo(*apartment);
    database.answer("from customerpreferencetype order by",
                    tableOf({"customerpreferencetypeid", "name", "default", "options"},
                            {{3, "Fold", "Hanger", ""}, {1, "Bag", Variant::null(), "Yes,No"}}));
    database.answer("from customer where", tableOf({"surchargeExempt", "taxExempt"}, {{true, false}}));
  }

  // The values in force after a load, in the order of the types.
  std::vector<std::string> load(Variant customer, Variant ticket) {
    invoice.loadCustomerPreferences(customer, ticket);
    std::vector<std::string> values;
    for (const Variant& value : invoice.preferences->items()) values.push_back(value.joined());
    return values;
  }

  std::shared_ptr<Apartment> apartment = std::make_shared<Apartment>();
  ApartmentScope scope{apartment};
  FakeDatabase database;
  Invoice invoice;
};

TEST_F(Preferences, OfTheTicketBeatStandingOnesBeatDefaults) {
  EXPECT_THAT(load(7, 11), ElementsAre("Hanger", ""));
  database.answer("typeid = '3' and customersequencenumber = '7' and ticketnumber is null ",
                  tableOf({"value"}, {{"Box"}}));
  EXPECT_THAT(load(7, 11), ElementsAre("Box", ""));
  database.answer("typeid = '3' and customersequencenumber = '7' and ticketnumber = '11'",
                  tableOf({"value"}, {{"Bag"}}));
  EXPECT_THAT(load(7, 11), ElementsAre("Bag", ""));
  EXPECT_THAT(load(7, ""), ElementsAre("Box", "")) << "without a ticket";
  EXPECT_THAT(load("", 11), ElementsAre("Hanger", "")) << "without a customer";
  EXPECT_EQ(invoice.preferenceNames->item(3).toText(), "Fold");
  EXPECT_TRUE(invoice.excludeSurcharges);
  EXPECT_FALSE(invoice.excludeTaxes);
}

TEST_F(Preferences, AreReadByTheseStatements) {
  database.answer("from customerpreferencetype order by",
                  tableOf({"customerpreferencetypeid", "name", "default"}, {{3, "Fold", ""}}));
  apartment->trace.start();
  load(7, 11);
  EXPECT_THAT(
      apartment->trace.take(),
      ElementsAre(" select surchargeExempt, taxExempt from customer where customersequencenumber = '7'",
                  " select *, isnull(options, '') as options from customerpreferencetype order by "
                  "displayorder ",
                  " select [value] from customerpreference where  customerpreferencetypeid = '3' and "
                  "customersequencenumber = '7' and ticketnumber is null ",
                  " select [value] from customerpreference where  customerpreferencetypeid = '3' and "
                  "customersequencenumber = '7' and ticketnumber = '11'"));
}

TEST_F(Preferences, AreSetByTypeOrName) {
  load(7, "");
  Variant type = 3, name = "Fold", unknown = "Crease", value = "Box";
  invoice.setCustomerPreference(type, value);
  EXPECT_EQ(invoice.preferences->item(3).toText(), "Box");
  invoice.setCustomerPreferenceByName(unknown, value);
  EXPECT_EQ(invoice.preferences->count(), 2);
  database.answer("customerpreferencetype where name = 'Fold'", tableOf({"customerpreferencetypeid"}, {{1}}));
  invoice.setCustomerPreferenceByName(name, value);
  EXPECT_EQ(invoice.preferences->item(1).toText(), "Box");
}

}  // namespace
}  // namespace ondrel
