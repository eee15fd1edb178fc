#include <gtest/gtest.h>

#include <fstream>
#include <iterator>
#include <regex>
#include <set>

#include "automation/classes/class_tables.h"
#include "base/text.h"
#include "support/folders.h"

namespace ondrel {
namespace {

struct DeclaredClass {
  std::string header;
  std::string name;  // in C++
  const ClassTable& (*table)();
  std::set<std::string> notForPages;
  std::vector<std::string> functionsIn = {};  // headers of members that are functions over the object
};

// What stands between `public:` and `private:` of the class, without comments.
std::string publicPart(const DeclaredClass& row) {
  std::ifstream file(sourcePath("src/" + row.header));
  const std::string text(std::istreambuf_iterator<char>(file), {});
  const size_t start = text.find("public:", text.find("class " + row.name + " "));
  EXPECT_NE(start, std::string::npos) << row.header;
  const std::string part = text.substr(start + 7, text.find("\n private:", start) - start - 7);
  return std::regex_replace(part, std::regex("//[^\n]*"), "");
}

// Names of the members that a declaration makes: one method, or a list of data members.
std::vector<std::string> namesIn(const std::string& declaration) {
  std::smatch match;
  if (std::regex_search(declaration, match, std::regex("^[^(=]*?(\\w+)\\("))) return {match[1]};
  std::vector<std::string> names;
  const std::regex member("(\\w+)\\s*(=[^,]*)?(,|$)");
  for (std::sregex_iterator it(declaration.begin(), declaration.end(), member), end; it != end; ++it)
    names.push_back((*it)[1]);
  return names;
}

std::set<std::string> declaredNames(const DeclaredClass& row) {
  static const std::regex skipped("^\\s*(struct|enum|using|static|friend|explicit|~|template)\\b.*");
  std::set<std::string> names;
  std::string declaration;
  int depth = 0;
  for (const char c : publicPart(row)) {
    if (c == '{') ++depth;
    const bool isEnd = depth == 0 ? c == ';' : c == '}' && --depth == 0;
    if (depth == 0 && !isEnd) declaration += c == '\n' ? ' ' : c;
    if (!isEnd) continue;
    declaration.erase(0, declaration.find_first_not_of(' '));
    if (!declaration.empty() && !std::regex_match(declaration, skipped))
      for (const std::string& name : namesIn(declaration)) names.insert(name);
    declaration.clear();
  }
  names.erase(row.name);
  names.erase("className");
  for (const std::string& name : row.notForPages) names.erase(name);
  return names;
}

// Members that are functions over the object.
std::set<std::string> functionNames(const std::string& header, const std::string& className) {
  std::ifstream file(sourcePath("src/" + header));
  const std::string text(std::istreambuf_iterator<char>(file), {});
  const std::regex declared("\\nVariant (\\w+)\\(" + className + "& |\\nvoid (\\w+)\\(" + className + "& ");
  std::set<std::string> names;
  for (std::sregex_iterator it(text.begin(), text.end(), declared), end; it != end; ++it)
    names.insert((*it)[1].matched ? (*it)[1] : (*it)[2]);
  return names;
}

TEST(PublicMembers, AllHaveARowInTheirClassTable) {
  const std::vector<DeclaredClass> classes = {
      {"invoice/invoice.h",
       "Invoice",
       invoiceClass,
       {"setDBConnectionString", "apartment", "lines", "state", "getMiscSetupValue", "getDescriptorDisplay",
        "itemForces", "offersUpcharges", "waitingHeatSeals"},
       {"web/panels.h", "web/invoice_json.h", "web/line_readers.h"}},
      {"quick/quick_invoice.h", "QuickInvoice", quickInvoiceClass, {"setDBConnectionString"}},
      {"quick/garment_search.h", "GarmentSearch", garmentSearchClass, {"setDBConnectionString"}},
      {"invoice/ticket_tag.h", "TicketTag", ticketTagClass, {}},
      {"cards/credit_card_fields.h", "CreditCardFields", creditCardFieldsClass, {}},
      {"pickup/pickup.h", "Pickup", pickupClass, {"setDBConnectionString"}},
      {"pickup/pickup_invoice.h", "PickupInvoice", pickupInvoiceClass, {"setDBConnectionString"}},
      {"pickup/claim_receipt_fields.h", "ClaimReceiptFields", claimReceiptFieldsClass, {}},
      {"cards/credit_card_processing.h",
       "CreditCardProcessing",
       creditCardProcessingClass,
       {"setDBConnectionString", "setXChargeDirectory", "setXChargeDirectoryKeyed", "setXChargeTimeout"}},
      {"services/marketing_letters.h", "MarketingLetters", marketingLettersClass, {}},
      {"services/db_tool.h", "DbTool", dbToolClass, {}},
      {"services/db_option.h", "DbOption", dbOptionClass, {}},
      {"services/helper_functions.h", "HelperFunctions", helperFunctionsClass, {}},
  };
  for (const DeclaredClass& row : classes) {
    std::set<std::string> listed;
    for (const Member& member : row.table().members()) listed.emplace(member.name);
    std::set<std::string> declared = declaredNames(row);
    for (const std::string& header : row.functionsIn) declared.merge(functionNames(header, row.name));
    EXPECT_EQ(declared, listed) << row.header;
  }
}

}  // namespace
}  // namespace ondrel
