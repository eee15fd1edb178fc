#include "invoice/pricing/rates.h"

#include <fmt/format.h>

#include "base/text.h"
#include "data/query_database.h"
#include "data/values.h"

namespace ondrel {
namespace {

const std::string kRatedChildren = filterOf(&LineKind::isPricedChild);

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
  if (kind == RatedLine::Garment) return line.value(col::lineItemId).joined();
  return line.value(col::parentId).joined() + toUpper(line.text(col::itemType)) + line.text(col::itemName);
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

// ---------------------------------------------------------------- the invoice's lines

bool GatheredLines::find(const Variant& code, const Variant& deptId) {
  for (found_ = 0; found_ < places_.size(); ++found_) {
    const Place& place = places_[found_];
    if (!isEqual(place.code, code) || !place.deptId.identicalTo(deptId)) continue;
    line_->setBookmark(place.bookmark);
    return true;
  }
  return false;
}

void GatheredLines::add(const GeneratedLine& line) {
  places_.push_back({line.lineItemId, line.deptId, addGeneratedLine(lines_, line).bookmark()});
}

void GatheredLines::remove() {
  line_->deleteRow();
  places_.erase(places_.begin() + static_cast<std::ptrdiff_t>(found_));
}

namespace {

// The keys of the lines, quoted and joined by commas. A name goes in as it stands, quotes and all.
std::string keyList(const LineSet& lines, RatedLine kind) {
  std::string list;
  for (; lines; lines->moveNext()) appendQuoted(list, lineRateKey(*lines, kind));
  return list;
}

void bookLineRates(const LineSet& lines, const RateTable& rates, RatedLine kind, LineColumn sumColumn,
                   const BookLineRate& book) {
  for (; lines; lines->moveNext()) {
    double sum = 0;
    for (const Rate& rate : rates.of(lineRateKey(*lines, kind))) book(kind, *lines, rate, sum);
    lines->setValue(sumColumn, sum);
  }
}

}  // namespace

// | step | lines                         | rates of              | left out                                 |
// |------|-------------------------------|-----------------------|------------------------------------------|
// | 1    | garments                      | their items           | without garments: both steps             |
// | 2    | upcharges, colours, patterns  | the descriptor on it  | without any: this step                   |
//
// Where the store has no rate at all for a step its lines keep the sums that they had.
void applyLineRates(Invoice& invoice, const LineRateSource& source, LineColumn sumColumn,
                    const BookLineRate& book) {
  Lines& lines = invoice.lines();
  const std::string ids = keyList(lines.where(ofKind(kind::garment)), RatedLine::Garment);
  if (ids.empty()) return;
  const RateTable items(queryDatabase(*invoice.apartment(), fmt::format(fmt::runtime(source.itemRates), ids)),
                        source.columns);
  if (!items.empty())
    bookLineRates(lines.where(ofKind(kind::garment)), items, RatedLine::Garment, sumColumn, book);

  const LineSet descriptors = lines.where(kRatedChildren);
  const std::string keys = keyList(descriptors, RatedLine::Descriptor);
  if (keys.empty()) return;
  descriptors->moveFirst();
  const RateTable rates(
      queryDatabase(*invoice.apartment(), fmt::format(fmt::runtime(source.descriptorRates), ids, keys)),
      source.columns);
  if (!rates.empty()) bookLineRates(descriptors, rates, RatedLine::Descriptor, sumColumn, book);
}

void roundGeneratedLines(Lines& lines, std::string_view itemType, std::initializer_list<LineColumn> columns) {
  lines.each(ofKind(itemType), [&](Recordset& line) {
    for (const LineColumn column : columns) line.setValue(column, roundMoney("total", line.number(column)));
  });
}

}  // namespace ondrel
