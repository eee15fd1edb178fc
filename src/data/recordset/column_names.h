#pragma once

#include <bit>
#include <cstdint>
#include <cstring>
#include <string>
#include <string_view>
#include <vector>

namespace ondrel {

// Positions of columns by name, without regard to case. Of two columns with one name the first is found.
class ColumnNames {
 public:
  // The next column.
  void add(std::string_view name);
  // Position of the column with the name; -1 when there is none.
  int find(std::string_view name) const {
    if (slots_.empty()) return -1;
    const Word head = wordAt(name, 0), tail = wordAt(name, name.size() - kWord);
    for (size_t slot = slotOf(head, tail, name.size()); slots_[slot] >= 0;
         slot = (slot + 1) & (slots_.size() - 1)) {
      const Entry& entry = entries_[static_cast<size_t>(slots_[slot])];
      // Most names are asked for as they are written, and two words hold them whole.
      if (entry.head == head && entry.tail == tail && entry.name.size() == name.size() &&
          name.size() <= 2 * kWord)
        return slots_[slot];
      if (isSame(entry.name, name)) return slots_[slot];
    }
    return -1;
  }

 private:
  using Word = std::uint64_t;
  static constexpr size_t kWord = sizeof(Word);

  struct Entry {
    std::string name;
    Word head;
    Word tail;
  };

  // Eight letters of a name; all of a shorter one.
  static Word wordAt(std::string_view name, size_t position) {
    Word word = 0;
    if (name.size() >= kWord)
      std::memcpy(&word, name.data() + position, kWord);
    else
      for (const char c : name) word = word << 8 | static_cast<unsigned char>(c);
    return word;
  }

  // Small letters differ from capitals in one bit, which is left out; an accented letter has its case in
  // another one, so of such names only the length counts.
  size_t slotOf(Word head, Word tail, size_t length) const {
    constexpr Word kCase = 0x2020202020202020, kNotAscii = 0x8080808080808080;
    const Word mixed =
        ((head | tail) & kNotAscii) != 0 ? length : ((head | kCase) ^ (tail | kCase) * 3 ^ length);
    return (mixed * 0x9E3779B97F4A7C15) >> (64 - std::bit_width(slots_.size() - 1));
  }

  static bool isSame(std::string_view a, std::string_view b);

  std::vector<Entry> entries_;
  std::vector<std::int16_t> slots_;  // open addressing, a power of two of them, -1 where free
};

}  // namespace ondrel
