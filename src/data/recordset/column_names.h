#pragma once

#include <algorithm>
#include <bit>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "data/recordset/words.h"

namespace ondrel {

// Positions of columns by name, without regard to case. Of two columns with one name the first is found.
class ColumnNames {
 public:
  // The next column.
  void add(std::string_view name);
  // Position of the column with the name; -1 when there is none.
  int find(std::string_view name) const {
    if (slots_.empty()) return -1;
    const TextWord head = headOf(name), tail = tailOf(name);
    for (size_t slot = slotOf(head, tail, name.size()); slots_[slot] >= 0;
         slot = (slot + 1) & (slots_.size() - 1)) {
      const Entry& entry = entries_[static_cast<size_t>(slots_[slot])];
      if (isWritten(entry, name, head, tail)) return slots_[slot];
      if (isSame(entry.name, name)) return slots_[slot];
    }
    return -1;
  }
  // The same for a name that is likely to be that of the column `guess`.
  int find(std::string_view name, int guess) const {
    const auto index = static_cast<size_t>(guess);
    return index < entries_.size() && isWritten(entries_[index], name, headOf(name), tailOf(name))
               ? guess
               : find(name);
  }

 private:
  struct Entry {
    std::string name;
    TextWord head;
    TextWord tail;
  };

  // The first and the last eight letters of a name; all of a shorter one.
  static TextWord headOf(std::string_view name) {
    return loadWord(name.data(), std::min(name.size(), kWordBytes));
  }
  static TextWord tailOf(std::string_view name) {
    return name.size() < kWordBytes ? headOf(name)
                                    : loadWord(name.data() + name.size() - kWordBytes, kWordBytes);
  }
  // Most names are asked for as they are written, and two words hold them whole.
  static bool isWritten(const Entry& entry, std::string_view name, TextWord head, TextWord tail) {
    return entry.head == head && entry.tail == tail && entry.name.size() == name.size() &&
           name.size() <= 2 * kWordBytes;
  }

  // Small letters differ from capitals in one bit, which is left out; an accented letter has its case in
  // another one, so of such names only the length counts.
  size_t slotOf(TextWord head, TextWord tail, size_t length) const {
    constexpr TextWord kCase = 0x2020202020202020, kNotAscii = 0x8080808080808080;
    const TextWord mixed =
        ((head | tail) & kNotAscii) != 0 ? length : ((head | kCase) ^ (tail | kCase) * 3 ^ length);
    return (mixed * 0x9E3779B97F4A7C15) >> (64 - std::bit_width(slots_.size() - 1));
  }

  static bool isSame(std::string_view a, std::string_view b);

  std::vector<Entry> entries_;
  std::vector<std::int16_t> slots_;  // open addressing, a power of two of them, -1 where free
};

}  // namespace ondrel
