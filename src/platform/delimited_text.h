#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace ondrel {

// Values of a comma-delimited file, as the platform's input statement reads them:
//
//   value    = blanks ( quoted | unquoted )
//   quoted   = '"' anything but '"' '"'        a comma or line end behind it is taken with it
//   unquoted = anything up to a comma or a line end; quotes in it are part of the value
class DelimitedText {
 public:
  explicit DelimitedText(std::string_view text) : rest_(text) {}

  bool atEnd() const { return rest_.empty(); }
  // The next value; empty at the end.
  std::string next();
  // True when the value read last was ended by its closing quote, a comma or a line end, and not by the
  // end of the text, behind which more of it may come.
  bool wasEnded() const { return wasEnded_; }

 private:
  bool takeSeparator();

  std::string_view rest_;
  bool wasEnded_ = false;
};

// Bytes of a file as text: what is not UTF-8 counts as Windows-1252.
std::string textOfBytes(std::string_view bytes);

}  // namespace ondrel
