#include "platform/letters/merge_source.h"

#include <algorithm>

#include "base/error.h"
#include "base/text.h"

namespace ondrel {
namespace {

constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";

[[noreturn]] void failSource(size_t line, const std::string& reason) {
  throw Error(ErrorNumber::InvalidFileFormat, "MailMerge",
              "Data source, line " + std::to_string(line) + ": " + reason);
}

char delimiterOf(std::string_view text) {
  const std::string_view line = text.substr(0, text.find_first_of("\r\n"));
  for (const char delimiter : {'\t', ',', ';'})
    if (line.find(delimiter) != std::string_view::npos) return delimiter;
  return ',';
}

class SourceReader {
 public:
  explicit SourceReader(std::string_view text) : rest_(text), delimiter_(delimiterOf(text)) {}

  MergeSource read() {
    MergeSource source;
    while (!rest_.empty()) {
      if (takeLineEnd()) continue;
      const size_t line = line_;
      std::vector<std::string> values = readLine();
      if (source.fields.empty())
        source.fields = std::move(values);
      else if (values.size() != source.fields.size())
        failSource(line, std::to_string(values.size()) + " values where there are " +
                             std::to_string(source.fields.size()) + " fields");
      else
        source.rows.push_back(std::move(values));
    }
    if (source.fields.empty()) failSource(1, "no names of fields");
    return source;
  }

 private:
  std::vector<std::string> readLine() {
    std::vector<std::string> values = {value()};
    while (rest_.starts_with(delimiter_)) {
      rest_.remove_prefix(1);
      values.push_back(value());
    }
    if (!takeLineEnd() && !rest_.empty()) failSource(line_, "text behind a closing quote");
    return values;
  }

  std::string value() {
    if (rest_.starts_with('"')) return quoted();
    const char ends[] = {delimiter_, '\r', '\n'};
    return take(std::min(rest_.find_first_of({ends, sizeof ends}), rest_.size()));
  }

  std::string quoted() {
    const size_t line = line_;
    std::string result;
    do {
      rest_.remove_prefix(1);
      const size_t end = rest_.find('"');
      if (end == std::string_view::npos) failSource(line, "a quote is not closed");
      if (isDoubled_) result += '"';
      result += take(end);
      rest_.remove_prefix(1);
      isDoubled_ = rest_.starts_with('"');
    } while (isDoubled_);
    return result;
  }

  std::string take(size_t length) {
    std::string result(rest_.substr(0, length));
    line_ += static_cast<size_t>(std::count(result.begin(), result.end(), '\n'));
    rest_.remove_prefix(length);
    return result;
  }

  bool takeLineEnd() {
    if (rest_.empty() || (rest_.front() != '\r' && rest_.front() != '\n')) return false;
    rest_.remove_prefix(rest_.starts_with("\r\n") ? 2 : 1);
    ++line_;
    return true;
  }

  std::string_view rest_;
  char delimiter_;
  size_t line_ = 1;
  bool isDoubled_ = false;
};

}  // namespace

size_t MergeSource::find(std::string_view field) const {
  for (size_t k = 0; k < fields.size(); ++k)
    if (equalsIgnoringCase(trim(fields[k]), trim(field))) return k;
  return std::string_view::npos;
}

MergeSource parseMergeSource(std::string_view text) {
  if (text.starts_with(kByteOrderMark)) text.remove_prefix(kByteOrderMark.size());
  return SourceReader(text).read();
}

}  // namespace ondrel
