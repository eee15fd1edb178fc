#include <cstdlib>
#include <fstream>
#include <map>
#include <set>

#include "base/text.h"
#include "support/folders.h"
#include "web/panel_fixture.h"

namespace ondrel {
namespace {

const std::string kGolden = sourcePath("tests/web/golden/ticket.html");

// The panels of a file, each under the call that makes it, with a block a line. A fragment has no line ends.
std::map<std::string, std::string> keptPanels() {
  std::ifstream file(kGolden);
  std::map<std::string, std::string> kept;
  std::string name;
  for (std::string line; std::getline(file, line);)
    if (line.starts_with("<!-- "))
      name = line.substr(5, line.size() - 9);
    else
      kept[name] += line;
  return kept;
}

std::string inBlocks(std::string panel) {
  for (const std::string block : {"<div", "<h3", "<li", "<option", "<input"})
    panel = replaceAll(panel, ">" + block, ">\n" + block);
  return panel;
}

// Day pickers once more: the kept one has their days, the test what is around them.
const std::set<std::string> kNotKept = {"htmlDeptsDueDate", "htmlInvoiceDueDate"};

class GoldenPanels : public PanelTest {};

// The whole mark-up of a ticket's panels is the page's contract. With ONDREL_WRITE_GOLDEN set the file is written
// anew, to be read before it is kept.
TEST_F(GoldenPanels, OfATicket) {
  execute("update descriptor set icon = 'navy.png' where name = 'Navy'");
  fillTicket();
  invoice.pushNewHeatSeal("AA00021");
  invoice.pushNewHeatSeal("AA00022");
  invoice.excludeTaxes = false;
  invoice.invoiceDone2();
  auto made = panels();
  std::erase_if(made, [](const auto& each) { return kNotKept.contains(each.first); });
  if (std::getenv("ONDREL_WRITE_GOLDEN")) {
    std::ofstream file(kGolden);
    for (const auto& [name, panel] : made) file << "<!-- " << name << " -->\n" << inBlocks(panel) << "\n";
  }
  const auto kept = keptPanels();
  EXPECT_EQ(kept.size(), made.size());
  for (const auto& [name, panel] : made) {
    const auto found = kept.find(name);
    if (found == kept.end()) {
      ADD_FAILURE() << name;
      continue;
    }
    EXPECT_EQ(panel, found->second) << name;
  }
}

}  // namespace
}  // namespace ondrel
