#include "host/journal.h"

#include <fcntl.h>
#include <fmt/format.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <span>
#include <utility>

#include "base/error.h"
#include "base/text.h"
#include "data/card_masking.h"

namespace ondrel {
namespace {

constexpr size_t kMostJournalBytes = size_t{8} << 20;
constexpr size_t kGrownBytes = size_t{256} << 10;
constexpr mode_t kJournalMode = 0600;

using Fields = std::vector<std::string>;

// Fields whose names begin with one of these are never written.
constexpr std::string_view kSecretNames[] = {"card", "cvv", "cvc", "track", "swipe", "pin", "password"};

bool isSecretName(std::string_view name) {
  const std::string lower = toLower(name);
  for (const std::string_view secret : kSecretNames)
    if (lower.starts_with(secret)) return true;
  return false;
}

bool holdsCardData(std::string_view text) {
  return maskCardData(text) != text;
}

bool hasSecretField(const NamedTexts& fields) {
  return std::ranges::any_of(
      fields, [](const auto& field) { return !field.second.empty() && isSecretName(field.first); });
}

bool hasSecrets(const NamedTexts& fields) {
  return hasSecretField(fields) || std::ranges::any_of(fields, [](const auto& field) {
           return holdsCardData(field.first) || holdsCardData(field.second);
         });
}

NamedTexts masked(NamedTexts fields) {
  for (auto& [name, value] : fields) {
    name = maskCardData(name);
    value = maskCardData(value);
  }
  return fields;
}

// In a JSON text a name stands in quotes with a colon behind it.
bool namesSecret(std::string_view json) {
  for (size_t quote = json.find('"'); quote != std::string_view::npos; quote = json.find('"', quote + 1)) {
    const size_t end = json.find('"', quote + 1);
    if (end == std::string_view::npos) return false;
    const std::string_view behind = trim(json.substr(end + 1, 2));
    if (behind.starts_with(':') && isSecretName(json.substr(quote + 1, end - quote - 1))) return true;
  }
  return false;
}

bool isFitToKeep(const PageAnswer& answer) {
  return !holdsCardData(answer.body) && !hasSecrets(answer.headers);
}

PageAnswer knownAnswer(const PageAnswer& answer) {
  if (isFitToKeep(answer)) return answer;
  return plainAnswer(409, "This was done. Its answer is no longer known: look before you repeat it.");
}

PageAnswer doubtfulAnswer() {
  return plainAnswer(409,
                     "The host ended while this was saved. Look whether it is there before you repeat it.");
}

std::string lineOf(const Fields& fields) {
  std::string line;
  for (const std::string& field : fields) {
    if (!line.empty()) line += '\t';
    for (const char c : field) {
      if (c == '%' || static_cast<unsigned char>(c) < ' ')
        fmt::format_to(std::back_inserter(line), "%{:02X}", static_cast<unsigned char>(c));
      else
        line += c;
    }
  }
  return line += '\n';
}

Fields fieldsOf(std::string_view line) {
  Fields fields;
  for (size_t from = 0, to = 0; to != std::string_view::npos; from = to + 1) {
    to = line.find('\t', from);
    fields.push_back(percentDecoded(line.substr(from, to - from)));
  }
  return fields;
}

Fields answerFields(std::string_view kind, const RememberedAnswer& known) {
  const PageAnswer& answer = known.answer;
  return {std::string(kind),  known.number,
          known.fingerprint,  std::to_string(answer.status),
          answer.contentType, formText(answer.headers),
          answer.body};
}

RememberedAnswer answerOf(std::span<const std::string> fields) {
  return {fields[1], fields[2], {std::atoi(fields[3].c_str()), fields[4], parseForm(fields[5]), fields[6]}};
}

// ---- reading

class JournalReader {
 public:
  explicit JournalReader(JournalContents& contents) : contents_(contents) {}

  void take(const Fields& fields);

  void finish() { leaveCall(); }

 private:
  struct Kind {
    std::string_view name;
    size_t fields;
    void (JournalReader::*take)(const Fields&);
  };
  static const std::array<Kind, 10> kKinds;

  void clerk(const Fields& fields) { contents_.clerk = {fields[1], fields[2]}; }
  void kept(const Fields& fields) { contents_.kept = fields[1]; }
  void ended(const Fields& fields) {
    contents_.calls.clear();
    contents_.kept = fields[1];
    contents_.isDoubtful = false;
  }
  void certain(const Fields&) { contents_.isDoubtful = false; }
  void answer(const Fields& fields) { contents_.answers.push_back(answerOf(fields)); }

  void call(const Fields& fields) {
    leaveCall();
    open_.emplace();
    open_->moment = Date(std::strtod(fields[1].c_str(), nullptr));
    PageRequest& request = open_->request;
    request.method = "POST";
    request.page = fields[2];
    request.path = fields[3];
    request.number = fields[4];
    request.query = parseForm(fields[5]);
    request.form = parseForm(fields[6]);
    request.contentType = fields[7];
    request.body = fields[8];
  }

  void omitted(const Fields& fields) {
    leaveCall();
    omittedNumber_ = fields[1];
    isOmitted_ = true;
  }

  void record(const Fields& fields) {
    if (open_) open_->records.push_back(fields[1]);
  }

  void committing(const Fields&) { isCommitting_ = true; }

  void done(const Fields& fields) {
    if (!fields[1].empty()) contents_.answers.push_back(answerOf(fields));
    if (open_) {
      open_->status = std::atoi(fields[3].c_str());
      contents_.calls.push_back(std::move(*open_));
    }
    open_.reset();
    isOmitted_ = isCommitting_ = false;
  }

  // Of a call that was not answered only its number is of interest, and only if it may have had an effect.
  void leaveCall() {
    if (isCommitting_ && (open_ || isOmitted_)) {
      const std::string number = open_ ? open_->request.number : omittedNumber_;
      const std::string print = open_ ? RequestNumbers::fingerprintOf(open_->request) : "";
      if (!number.empty()) {
        contents_.answers.push_back({number, print, doubtfulAnswer()});
        contents_.isDoubtful = true;
      }
    }
    open_.reset();
    isOmitted_ = isCommitting_ = false;
  }

  JournalContents& contents_;
  std::optional<JournalledCall> open_;
  std::string omittedNumber_;
  bool isOmitted_ = false;
  bool isCommitting_ = false;
};

// clang-format off
const std::array<JournalReader::Kind, 10> JournalReader::kKinds = {{
    {"clerk",      3, &JournalReader::clerk},
    {"kept",       2, &JournalReader::kept},
    {"ended",      2, &JournalReader::ended},
    {"answer",     7, &JournalReader::answer},
    {"call",       9, &JournalReader::call},
    {"omitted",    2, &JournalReader::omitted},
    {"record",     2, &JournalReader::record},
    {"committing", 1, &JournalReader::committing},
    {"certain",    1, &JournalReader::certain},
    {"done",       7, &JournalReader::done},
}};
// clang-format on

void JournalReader::take(const Fields& fields) {
  for (const Kind& kind : kKinds)
    if (fields.front() == kind.name && fields.size() == kind.fields) return (this->*kind.take)(fields);
}

}  // namespace

std::optional<JournalContents> Journal::read(const std::filesystem::path& path) {
  std::ifstream stream(path, std::ios::binary);
  if (!stream) return std::nullopt;
  const std::string text(std::istreambuf_iterator<char>(stream), {});
  JournalContents contents;
  JournalReader reader(contents);
  std::string_view rest = text;
  for (size_t end = rest.find('\n'); end != std::string_view::npos; end = rest.find('\n')) {
    reader.take(fieldsOf(rest.substr(0, end)));
    rest.remove_prefix(end + 1);
  }
  reader.finish();
  return contents;
}

Journal::Journal(std::filesystem::path path) : path_(std::move(path)) {
  open(O_APPEND);
  if (file_ >= 0) dropTornLine();
}

Journal::~Journal() {
  close();
}

void Journal::open(int flags) {
  if (path_.empty()) return;
  file_ = ::open(path_.c_str(), O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW | flags, kJournalMode);
  hasFailed_ = file_ < 0;
}

void Journal::close() {
  if (file_ >= 0) ::close(file_);
  file_ = -1;
}

// What a sudden end left half written goes: the next line would make it whole.
void Journal::dropTornLine() {
  bytes_ = static_cast<size_t>(std::max<off_t>(::lseek(file_, 0, SEEK_END), 0));
  const size_t found = bytes_;
  char last = '\n';
  while (bytes_ > 0 && ::pread(file_, &last, 1, static_cast<off_t>(bytes_ - 1)) == 1 && last != '\n')
    --bytes_;
  if (bytes_ < found && ::ftruncate(file_, static_cast<off_t>(bytes_)) != 0) hasFailed_ = true;
}

void Journal::write(const Fields& fields, bool toDisk) {
  if (file_ < 0 || isGivenUp_ || hasFailed_) return;
  const std::string line = lineOf(fields);
  bytes_ += line.size();
  const bool isWritten = bytes_ <= kMostJournalBytes &&
                         ::write(file_, line.data(), line.size()) == static_cast<ssize_t>(line.size()) &&
                         (!toDisk || ::fdatasync(file_) == 0);
  hasFailed_ = !isWritten;
  if (hasFailed_) ::unlink(path_.c_str());
}

void Journal::clerk(const Clerk& clerk) {
  write({"clerk", clerk.id, clerk.name});
}

void Journal::call(const PageRequest& request, Date moment) {
  isMarked_ = false;
  if (hasSecretField(request.query) || hasSecretField(request.form) || namesSecret(request.body))
    return write({"omitted", request.number});
  write({"call", fmt::format("{:.9f}", moment.serial()), request.page, request.path, request.number,
         formText(masked(request.query)), formText(masked(request.form)), request.contentType,
         maskCardData(request.body)});
}

void Journal::certain() {
  write({"certain"}, true);
}

void Journal::record(const std::string& result) {
  write({"record", result}, true);
}

void Journal::committing(bool toDisk) {
  if (std::exchange(isMarked_, true)) return;
  write({"committing"}, toDisk);
}

void Journal::done(const PageRequest& request, const PageAnswer& answer) {
  if (request.number.empty())
    write({"done", "", "", std::to_string(answer.status), "", "", ""});
  else
    write(answerFields("done", {request.number, takes(request) ? RequestNumbers::fingerprintOf(request) : "",
                                knownAnswer(answer)}));
}

bool Journal::takes(const PageRequest& request) {
  return !hasSecrets(request.query) && !hasSecrets(request.form) && !holdsCardData(request.body) &&
         !namesSecret(request.body);
}

void Journal::ended(const JournalContents& contents) {
  if (bytes_ < kGrownBytes && !hasFailed_)
    write({"ended", contents.kept});
  else
    restart(contents);
}

// The new text stands beside the old until it is whole.
void Journal::restart(const JournalContents& contents) {
  if (path_.empty() || isGivenUp_) return;
  const std::filesystem::path final = path_;
  close();
  path_ += ".new";
  bytes_ = 0;
  open(O_TRUNC);
  write({"clerk", contents.clerk.id, contents.clerk.name});
  write({"kept", contents.kept});
  for (const RememberedAnswer& known : contents.answers)
    write(answerFields("answer", {known.number, known.fingerprint, knownAnswer(known.answer)}));
  if (file_ >= 0 && ::fdatasync(file_) != 0) hasFailed_ = true;
  if (!hasFailed_ && std::rename(path_.c_str(), final.c_str()) != 0) hasFailed_ = true;
  path_ = final;
  // What it began anew from is no longer true.
  if (hasFailed_) ::unlink(path_.c_str());
}

void Journal::rename(std::filesystem::path path) {
  if (path_.empty()) return;
  if (std::rename(path_.c_str(), path.c_str()) == 0)
    path_ = std::move(path);
  else
    hasFailed_ = true;
}

void Journal::remove() {
  close();
  if (!path_.empty() && !isGivenUp_) ::unlink(path_.c_str());
}

}  // namespace ondrel
