#include "automation/class_factory.h"

#include <array>
#include <string>

#include "base/dictionary.h"
#include "base/text.h"
#include "cards/credit_card_processing.h"
#include "data/recordset/recordset.h"
#include "invoice/invoice.h"
#include "invoice/ticket_tag.h"
#include "pickup/pickup.h"
#include "quick/garment_search.h"
#include "quick/quick_invoice.h"
#include "services/db_tool.h"
#include "services/helper_functions.h"
#include "services/marketing_letters.h"

namespace ondrel {
namespace {

template <class Class>
ObjectRef make() {
  return std::make_shared<Class>();
}

// clang-format off
constexpr std::array<PublicClass, 13> kPublicClasses = {{
    {"TicketTag",            "FFCE1536-D0A4-4C89-A822-F354F688FC76", "EA7AFCD0-C1D1-4834-B99A-465670B0B1E3", make<TicketTag>},
    {"HelperFunctions",      "E7F83A2F-028A-4635-BA66-47D102516D77", "A32439C6-A525-4A55-8C42-8CF8330AD0BA", make<HelperFunctions>},
    {"garmentSearch",        "70CBB24E-5A32-47BB-AD18-5C5AF41B180F", "7CDAAA75-A3D0-4677-B55A-0B0D0AD2DA31", make<GarmentSearch>},
    {"pickupInvoice",        "E9E3BC6D-4382-4A3B-A45E-17062D1253D4", "91B5D5D5-5489-4C98-A91E-BBBB1A2E79E2", make<PickupInvoice>},
    {"quickInvoice",         "75391F75-F69D-474D-AF6A-535D1FB18EEA", "98DC44DD-4515-45D1-8834-5AA23CC02307", make<QuickInvoice>},
    {"pickup",               "B1E3994D-4D0C-4A3C-BBC9-997174367244", "A2BD898E-2E2E-470D-A166-E3AB28FC947E", make<Pickup>},
    {"invoice",              "1FDC7BD4-F46D-47B7-BD99-FE04480227D2", "F86AA050-6259-424F-98F8-901FF2C5805D", make<Invoice>},
    {"creditCardProcessing", "2430B43B-7FED-4FFA-9D69-F3B2A8964990", "80F7D53A-1087-460E-B4E5-D00081BC226B", make<CreditCardProcessing>},
    {"creditCardFields",     "ECA1A443-ACB5-42B2-9D86-48692BB1065F", "DC5C80E6-72E4-43F4-8DBC-C5233A6804D3", make<CreditCardFields>},
    {"MarketingLetters",     "7214C415-95EA-449F-B6A1-01B5FC3916D2", "A1B32D4F-B92E-4B25-BEC4-8DF9304DD261", make<MarketingLetters>},
    {"claimReceiptFields",   "E388951C-2501-4745-BCBF-59EC01C8C85F", "2A0684EF-5B39-43A3-B59B-890C34B8509F", make<ClaimReceiptFields>},
    {"DbTool",               "B31809D9-BA58-4DBB-8842-C8A14E8A5C95", "1A3B946F-02B5-444A-8D6F-444E34AA2F48", make<DbTool>},
    {"DbOption",             "5E18FB3F-8393-406C-A254-DA4CBF2B28FF", "1B80340B-B521-4782-A099-568D66F342CF", make<DbOption>},
}};
// clang-format on

// Classes of the platform that pages create beside the library's.
struct PlatformClass {
  std::string_view name;
  ObjectRef (*create)();
};

constexpr std::array<PlatformClass, 2> kPlatformClasses = {{
    {"Scripting.Dictionary", make<Dictionary>},
    {"ADODB.Recordset", [] { return ObjectRef(Recordset::create()); }},
}};

std::string_view withoutProjectName(std::string_view name) {
  const size_t point = name.find('.');
  if (point == std::string_view::npos || !equalsIgnoringCase(name.substr(0, point), kProjectName))
    return name;
  return name.substr(point + 1);
}

[[noreturn]] void failCreate(std::string_view name, std::string_view reason) {
  throw Error(ErrorNumber::CannotCreateObject, kProjectName,
              "Component can't create object '" + std::string(name) + "': " + std::string(reason));
}

}  // namespace

std::span<const PublicClass> publicClasses() {
  return kPublicClasses;
}

const PublicClass* findPublicClass(std::string_view name) {
  const std::string_view plain = withoutProjectName(name);
  for (const PublicClass& row : kPublicClasses)
    if (equalsIgnoringCase(row.name, plain)) return &row;
  return nullptr;
}

ObjectRef createObject(std::string_view name) {
  if (const PublicClass* row = findPublicClass(name)) return row->create();
  for (const PlatformClass& row : kPlatformClasses)
    if (equalsIgnoringCase(row.name, name)) return row.create();
  failCreate(name, "there is no such class");
}

}  // namespace ondrel
