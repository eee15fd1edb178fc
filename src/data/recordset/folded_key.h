#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

namespace ondrel {

// A number that is the same for two texts that are equal but for case. Up to seven bytes it holds the
// whole text, so that equal keys mean equal texts; a longer text has a digest there, and equal keys
// then need a look at the texts.
using FoldedKey = std::uint64_t;

FoldedKey foldedKey(std::string_view text);

inline constexpr FoldedKey kKeyOfNoText = 0;

constexpr bool holdsWholeText(FoldedKey key) {
  return key >> 56 < 8;
}

// A list of keys in two halves, as the wide instructions of every machine compare 32 bits at a time.
class FoldedKeyList {
 public:
  size_t size() const { return low_.size(); }
  bool isEmpty() const { return low_.empty(); }
  // New entries are kKeyOfNoText.
  void resize(size_t size) {
    low_.resize(size);
    high_.resize(size);
  }
  void set(size_t index, FoldedKey key) {
    low_[index] = lowHalf(key);
    high_[index] = highHalf(key);
  }
  void move(size_t from, size_t to) {
    low_[to] = low_[from];
    high_[to] = high_[from];
  }
  const std::uint32_t* low() const { return low_.data(); }
  const std::uint32_t* high() const { return high_.data(); }

  static std::uint32_t lowHalf(FoldedKey key) { return static_cast<std::uint32_t>(key); }
  static std::uint32_t highHalf(FoldedKey key) { return static_cast<std::uint32_t>(key >> 32); }

 private:
  std::vector<std::uint32_t> low_;
  std::vector<std::uint32_t> high_;
};

}  // namespace ondrel
