#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "invoice/invoice.h"
#include "invoice/pricing/generated_line.h"

namespace ondrel {

// Taxes and surcharges hang on the same things: on an item, on a descriptor of an item, on a department. A
// rate is a row that says so; what a pass makes of it stands with the pass.

struct Rate {
  Variant code;
  std::string description;
  double percent = 0;
  std::optional<double> fixedAmount;  // of a surcharge; the percentage then does not count
  bool perItem = false;               // the fixed amount is for each piece, otherwise once
};

// Names of the columns of a rate's row; a tax has no fixed amount.
struct RateColumns {
  std::string_view code, percent, fixedAmount, perItem;
};

std::vector<Rate> readRates(const RecordsetRef& rows, const RateColumns& columns);

enum class RatedLine { Garment, Descriptor };

// What the rates of a line are found by: the item of a garment; item, kind and name of an upcharge, colour
// or pattern.
std::string lineRateKey(const Recordset& line, RatedLine kind);

// Rates by the key of the lines that they are for.
class RateTable {
 public:
  // Rows of descriptors carry their kind and name beside the item.
  RateTable(const RecordsetRef& rows, const RateColumns& columns);
  bool empty() const { return rates_.empty(); }
  const std::vector<Rate>& of(const std::string& key) const;

 private:
  std::unordered_map<std::string, std::vector<Rate>> rates_;
};

// Where the rates of an invoice's lines are read from. {0} stands for the items, {1} for the descriptors.
struct LineRateSource {
  std::string_view itemRates;
  std::string_view descriptorRates;
  RateColumns columns;
};

// Books one rate of the line; `sum` is what the line's column takes when all of its rates are booked.
using BookLineRate =
    std::function<void(RatedLine kind, const Recordset& line, const Rate& rate, double& sum)>;
// Books the rates of the garments' items and of their upcharges, colours and patterns.
void applyLineRates(Invoice& invoice, const LineRateSource& source, LineColumn sumColumn,
                    const BookLineRate& book);

// The lines that a pass makes, one a code and department. It keeps where each stands, so that an amount is
// booked without a search through the invoice, on a view of its own, so that others keep their place.
class GatheredLines {
 public:
  explicit GatheredLines(Lines& lines) : lines_(lines), line_(lines.peek("")) {}
  // Makes the line of the code and department the current one; whether there is one.
  bool find(const Variant& code, const Variant& deptId);
  Recordset& line() { return *line_; }
  // A new line, which is the one of its lineItemId, a code, and department.
  void add(const GeneratedLine& line);
  // Deletes the line that was found.
  void remove();

 private:
  struct Place {
    Variant code, deptId, bookmark;
  };

  Lines& lines_;
  LineSet line_;
  std::vector<Place> places_;
  size_t found_ = 0;
};

// Columns of the lines of a kind to cents.
void roundGeneratedLines(Lines& lines, std::string_view itemType, std::initializer_list<LineColumn> columns);

}  // namespace ondrel
