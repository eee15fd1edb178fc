#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "platform/files.h"
#include "platform/letters/letter_template.h"
#include "platform/letters/merge_source.h"
#include "platform/settings.h"

namespace ondrel {

// Letters of a template to the addressees of a data source: what a page knows as the word processor.
// Paths are those of the shop. Settings below "Software\Ondrel Corporation\OVS\Letters":
//
// | value           | meaning                                                  | when it is not set      |
// |-----------------|----------------------------------------------------------|-------------------------|
// | "Print Command" | prints the file whose path is added as its last word     | files stay in the spool |
// | "Spool Folder"  | where letters wait for the printer, "NAME-NUMBER.rtf"    | kSpoolFolder            |
// | "Letter Folder" | where letters wait for a person                          | kLetterFolder           |
class MailMerge {
 public:
  static constexpr std::string_view kSpoolFolder = "c:\\program files\\ondrelcorp\\ovsserver\\spool\\";
  static constexpr std::string_view kLetterFolder = "c:\\program files\\ondrelcorp\\ovsserver\\letters\\";
  enum class Access { Editable, ReadOnly };

  explicit MailMerge(Files files, Settings settings = Settings())
      : files_(std::move(files)), settings_(std::move(settings)) {}

  // The template of macros that a document for a person names; it need not be on this machine.
  void addAddIn(std::string_view path) { addIn_ = path; }
  // Error 53 when there is no such file, 321 when it is no RTF template.
  void openTemplate(std::string_view path, Access access);
  // Error 53 when there is no such file, 321 when it is no list, 3265 when it lacks a field of the template.
  void openDataSource(std::string_view path);

  // Prints a document for each addressee and waits for the printer. Error 482 when the print command fails;
  // the documents before are printed, the one that failed stays in the spool.
  void print() const;
  // Leaves one document of all letters for a person, which nobody can write to when the template was opened
  // read-only. Gives its path on this host.
  std::string show() const;

 private:
  std::string newDocument(std::string_view setting, std::string_view fallback, std::string_view text,
                          const std::string& number) const;

  Files files_;
  Settings settings_;
  std::string addIn_, templateName_;
  Access access_ = Access::Editable;
  std::unique_ptr<LetterTemplate> template_;
  std::vector<std::vector<std::string>> letters_;  // the values of the template's fields, one row a letter
};

}  // namespace ondrel
