#include "data/recordset/column_names.h"

#include "base/text.h"

namespace ondrel {

void ColumnNames::add(std::string_view name) {
  entries_.push_back({std::string(name), headOf(name), tailOf(name)});
  slots_.assign(std::bit_ceil(entries_.size() * 4), -1);
  for (size_t index = 0; index < entries_.size(); ++index) {
    const Entry& entry = entries_[index];
    size_t slot = slotOf(entry.head, entry.tail, entry.name.size());
    while (slots_[slot] >= 0) slot = (slot + 1) & (slots_.size() - 1);
    slots_[slot] = static_cast<std::int16_t>(index);
  }
}

bool ColumnNames::isSame(std::string_view a, std::string_view b) {
  return equalsIgnoringCase(a, b);
}

}  // namespace ondrel
