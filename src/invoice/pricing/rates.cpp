#include "invoice/pricing/rates.h"

#include <fmt/format.h>

#include "base/text.h"
#include "data/query_database.h"
#include "data/values.h"
#include "invoice/invoice.h"

namespace ondrel {
namespace {

using enum LineColumn;

// The store compares text without regard to case and to blanks at the end.
std::string comparedKey(std::string_view key) {
  return toLower(key);
}

void appendQuoted(std::string& list, std::string_view entry) {
  if (!list.empty()) list += ',';
  list += '\'';
  list += entry;
  list += '\'';
}

// Reads one rate after the other; the columns are looked up once.
class RateReader {
 public:
  RateReader(const Recordset& rows, const RateColumns& names)
      : rows_(rows),
        code_(rows.column(names.code)),
        percent_(rows.column(names.percent)),
        description_(rows.column("description")) {
    if (names.fixedAmount.empty()) return;
    fixedAmount_ = rows.column(names.fixedAmount);
    perItem_ = rows.column(names.perItem);
  }

  Rate read() const {
    Rate rate;
    rate.code = rows_.value(code_);
    rate.description = rows_.text(description_);
    if (fixedAmount_ && !rows_.isNull(*fixedAmount_)) {
      rate.fixedAmount = rows_.number(*fixedAmount_);
      rate.perItem = rows_.flag(*perItem_);
    } else {
      rate.percent = rows_.number(percent_);
    }
    return rate;
  }

 private:
  const Recordset& rows_;
  Column code_, percent_, description_;
  std::optional<Column> fixedAmount_, perItem_;
};

}  // namespace

std::vector<Rate> readRates(const RecordsetRef& rows, const RateColumns& columns) {
  std::vector<Rate> rates;
  if (rows->eof()) return rates;
  const RateReader reader(*rows, columns);
  for (; !rows->eof(); rows->moveNext()) rates.push_back(reader.read());
  return rates;
}

std::string lineRateKey(const Recordset& line, RatedLine kind) {
  if (kind == RatedLine::Garment) return line.value(lineItemId).joined();
  return line.value(parentId).joined() + toUpper(line.text(itemType)) + line.text(itemName);
}

RateTable::RateTable(const RecordsetRef& rows, const RateColumns& columns) {
  if (rows->eof()) return;
  const RateReader reader(*rows, columns);
  const Column item = rows->column("priceListItemID");
  const bool ofDescriptors = rows->hasColumn("descriptorName");
  for (; !rows->eof(); rows->moveNext()) {
    std::string key = rows->value(item).joined();
    if (ofDescriptors) key += rows->text("descriptorType") + rows->text("descriptorName");
    rates_[comparedKey(key)].push_back(reader.read());
  }
}

const std::vector<Rate>& RateTable::of(const std::string& key) const {
  static const std::vector<Rate> none;
  const auto found = rates_.find(comparedKey(key));
  return found == rates_.end() ? none : found->second;
}

bool GatheredLines::find(const Variant& code, const Variant& department) {
  for (found_ = 0; found_ < places_.size(); ++found_) {
    const Place& place = places_[found_];
    if (!isEqual(place.code, code) || !place.deptId.identicalTo(department)) continue;
    lines_->setBookmark(place.bookmark);
    return true;
  }
  return false;
}

void GatheredLines::keep(const Variant& code, const Variant& department) {
  places_.push_back({code, department, lines_->bookmark()});
}

void GatheredLines::remove() {
  lines_->deleteRow();
  places_.erase(places_.begin() + static_cast<std::ptrdiff_t>(found_));
}

// ---------------------------------------------------------------- the invoice's lines

std::string Invoice::getLineItemIdList() {
  std::string list;
  lineItems->setFilter("itemType='IT'");
  for (; !lineItems->eof(); lineItems->moveNext())
    appendQuoted(list, lineRateKey(*lineItems, RatedLine::Garment));
  lineItems->clearFilter();
  return list;
}

// A name goes in as it stands, quotes and all.
std::string Invoice::getDescriptorKeyList() {
  std::string list;
  lineItems->setFilter("itemType='UP' OR itemType='CO' OR itemType='PA'");
  for (; !lineItems->eof(); lineItems->moveNext())
    appendQuoted(list, lineRateKey(*lineItems, RatedLine::Descriptor));
  if (list.empty())
    lineItems->clearFilter();
  else
    lineItems->moveFirst();
  return list;
}

// | step | lines                         | rates of              | left out                                 |
// |------|-------------------------------|-----------------------|------------------------------------------|
// | 1    | garments                      | their items           | without garments: both steps             |
// | 2    | upcharges, colours, patterns  | the descriptor on it  | without any: this step                   |
//
// Where the store has no rate at all for a step its lines keep the sums that they had.
void Invoice::applyLineRates(const LineRateSource& source, LineColumn sumColumn, const BookLineRate& book) {
  const std::string ids = getLineItemIdList();
  if (ids.empty()) return;
  const RateTable items(queryDatabase(*apartment_, fmt::format(fmt::runtime(source.itemRates), ids)),
                        source.columns);
  if (!items.empty()) {
    lineItems->setFilter("itemType='IT'");
    bookLineRates(items, RatedLine::Garment, sumColumn, book);
  }

  const std::string keys = getDescriptorKeyList();
  if (keys.empty()) return;
  const RateTable descriptors(
      queryDatabase(*apartment_, fmt::format(fmt::runtime(source.descriptorRates), ids, keys)),
      source.columns);
  if (!descriptors.empty()) bookLineRates(descriptors, RatedLine::Descriptor, sumColumn, book);
  lineItems->clearFilter();
}

void Invoice::bookLineRates(const RateTable& rates, RatedLine kind, LineColumn sumColumn,
                            const BookLineRate& book) {
  for (; !lineItems->eof(); lineItems->moveNext()) {
    double sum = 0;
    for (const Rate& rate : rates.of(lineRateKey(*lineItems, kind))) book(kind, rate, sum);
    lineItems->setValue(sumColumn, sum);
  }
  lineItems->clearFilter();
}

void Invoice::roundGeneratedLines(std::string_view filter, std::initializer_list<LineColumn> columns) {
  lineItems->setFilter(filter);
  for (; !lineItems->eof(); lineItems->moveNext())
    for (const LineColumn column : columns)
      lineItems->setValue(column, roundMoney("total", lineItems->number(column)));
  lineItems->clearFilter();
}

}  // namespace ondrel
