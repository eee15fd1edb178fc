#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace ondrel {

// The text of a statement that is sent over and over with other values: they are written behind its head, over
// those of the last time.
class StatementText {
 public:
  explicit StatementText(std::string_view head);

  // Back to the head.
  void restart() { end_ = head_; }
  // Until the next change.
  std::string_view text() const { return {buffer_.data(), end_}; }

  void add(std::string_view piece);
  void add(char piece) {
    *room(1) = piece;
    ++end_;
  }
  void addNumber(std::int32_t value);
  void addNumber(double value);
  void addFixed(double value, int digits);
  // Between quotes, its own doubled.
  void addQuoted(std::string_view text);

 private:
  // Where so many characters can be written.
  char* room(std::size_t size) {
    if (buffer_.size() - end_ < size) [[unlikely]]
      buffer_.resize(2 * buffer_.size() + size);
    return buffer_.data() + end_;
  }
  void endAt(const char* end) { end_ = static_cast<std::size_t>(end - buffer_.data()); }

  std::string buffer_;  // its end is unused
  std::size_t head_ = 0, end_ = 0;
};

}  // namespace ondrel
