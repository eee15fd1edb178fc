#pragma once

#include <string>
#include <utility>

#include "data/apartment.h"
#include "platform/settings.h"

namespace ondrel {

// Letters to customers, from templates in the folders of the store's web site. A store's own template goes
// before the standard one of the same name.
class MarketingLetters : public Object {
 public:
  explicit MarketingLetters(Settings settings = Settings())
      : apartment_(Apartment::current()), settings_(std::move(settings)) {}
  std::string_view className() const override { return "MarketingLetters"; }

  // The template and the data source of the latest letter.
  std::string fullFileName, fullDataSourceName;

  // False as well for a file that cannot be read.
  bool FileExists(const std::string& strFile) const;
  // Raises the store's error when the database has no addressees' view.
  void GetData() const;
  // Leaves the letters to all addressees of `sDataSource` for a person to finish; see MailMerge. Raises its
  // errors for what is missing or malformed.
  void openMLetter(const std::string& sTemplate, const std::string& sDataSource);
  // Prints the standard template, a document for each addressee, and waits for the printer. What fails ends
  // the operation quietly.
  void mailMergeLetterToPrinter(const std::string& sTemplate, const std::string& sDataSource);

 private:
  ApartmentRef apartment_;
  Settings settings_;
};

}  // namespace ondrel
