#include "platform/letters/mail_merge.h"

#include <cassert>

#include "base/error.h"
#include "platform/delimited_text.h"
#include "platform/guid.h"
#include "platform/letters/command.h"

namespace ondrel {
namespace {

constexpr const char* kLettersKey = "Software\\Ondrel Corporation\\OVS\\Letters";
constexpr size_t kLargestFile = size_t{64} << 20;

[[noreturn]] void failMerge(ErrorNumber number, const std::string& description) {
  throw Error(number, "MailMerge", description);
}

std::string_view nameOf(std::string_view path) {
  return path.substr(path.find_last_of("\\/:") + 1);
}

std::string readWhole(const Files& files, std::string_view path, const std::string& kind) {
  std::optional<std::string> text = files.read(path, kLargestFile + 1);
  if (!text) failMerge(ErrorNumber::FileNotFound, kind + " not found: " + std::string(nameOf(path)));
  if (text->size() > kLargestFile)
    failMerge(ErrorNumber::InvalidFileFormat, kind + " is too large: " + std::string(nameOf(path)));
  return std::move(*text);
}

// With the file's name in front of what is wrong with its text.
template <class Parse>
auto parsed(std::string_view path, Parse parse) {
  try {
    return parse();
  } catch (const Error& error) {
    failMerge(error.code(), std::string(nameOf(path)) + ": " + error.description());
  }
}

}  // namespace

void MailMerge::openTemplate(std::string_view path, Access access) {
  const std::string text = readWhole(files_, path, "Letter template");
  template_ = parsed(path, [&] { return std::make_unique<LetterTemplate>(text); });
  templateName_ = nameOf(path);
  access_ = access;
  letters_.clear();
}

void MailMerge::openDataSource(std::string_view path) {
  assert(template_);
  const std::string text = textOfBytes(readWhole(files_, path, "Data source"));
  const MergeSource source = parsed(path, [&] { return parseMergeSource(text); });
  if (source.rows.empty())
    failMerge(ErrorNumber::InvalidFileFormat,
              "Data source " + std::string(nameOf(path)) + " has no addressees");
  std::vector<size_t> places;
  for (const std::string& field : template_->fields()) {
    places.push_back(source.find(field));
    if (places.back() == std::string_view::npos)
      failMerge(ErrorNumber::ItemNotFound, "Field '" + field + "' of letter template " + templateName_ +
                                               " is not in data source " + std::string(nameOf(path)));
  }
  letters_.clear();
  for (const std::vector<std::string>& row : source.rows) {
    std::vector<std::string>& values = letters_.emplace_back();
    for (const size_t place : places) values.push_back(row[place]);
  }
}

// Seen by others whole or not at all.
std::string MailMerge::newDocument(std::string_view setting, std::string_view fallback, std::string_view text,
                                   const std::string& number) const {
  std::string folder = settings_.value(kLettersKey, setting);
  if (folder.empty()) folder = fallback;
  if (folder.back() != '\\' && folder.back() != '/') folder += '\\';
  files_.makeFolder(folder);
  const std::string path = folder + templateName_.substr(0, templateName_.rfind('.')) + "-" + number;
  files_.write(path + ".new", text);
  files_.rename(path + ".new", path + ".rtf");
  return path + ".rtf";
}

void MailMerge::print() const {
  assert(template_);
  const std::vector<std::string> command = commandWords(settings_.value(kLettersKey, "Print Command"));
  const std::string job = newGuid().substr(1, 8);
  int number = 0;
  for (const std::vector<std::string>& values : letters_) {
    const std::string document = newDocument("Spool Folder", kSpoolFolder, template_->fill(values),
                                             job + "-" + std::to_string(++number));
    if (command.empty()) continue;
    std::vector<std::string> words = command;
    words.push_back(files_.hostPath(document));
    if (const int status = runCommand(words); status != 0)
      failMerge(ErrorNumber::PrinterError, "Printer error: the print command ended with status " +
                                               std::to_string(status) + " at letter " +
                                               std::to_string(number));
    files_.remove(document);
  }
}

std::string MailMerge::show() const {
  assert(template_);
  const std::string document = newDocument("Letter Folder", kLetterFolder,
                                           template_->fillAll(letters_, addIn_), newGuid().substr(1, 8));
  if (access_ == Access::ReadOnly) files_.makeReadOnly(document);
  return files_.hostPath(document);
}

}  // namespace ondrel
