#include "services/marketing_letters.h"

#include <exception>

#include "data/query_database.h"
#include "platform/letters/mail_merge.h"

namespace ondrel {
namespace {

constexpr const char* kLetters = "c:\\program files\\ondrelcorp\\ovsserver\\web\\marketing letters\\";
constexpr const char* kStandardTemplates =
    "c:\\program files\\ondrelcorp\\ovsserver\\web\\MARKETING LETTERS\\";
constexpr const char* kStoreTemplates =
    "c:\\program files\\ondrelcorp\\ovsserver\\web\\MARKETING LETTERS\\STORE\\";
constexpr const char* kAddIn =
    "c:\\program files\\ondrelcorp\\ovsserver\\web\\marketing letters\\store\\marketingLetters.dot";

}  // namespace

bool MarketingLetters::FileExists(const std::string& strFile) const {
  return apartment_->files.read(strFile, 0).has_value();
}

void MarketingLetters::GetData() const {
  queryDatabase(*apartment_, "select * from marketingLettersCSN");
}

void MarketingLetters::openMLetter(const std::string& sTemplate, const std::string& sDataSource) {
  fullDataSourceName = kLetters + sDataSource;
  fullFileName = kStoreTemplates + sTemplate;
  const bool isStoreTemplate = FileExists(fullFileName);
  if (!isStoreTemplate) fullFileName = kStandardTemplates + sTemplate;
  MailMerge merge(apartment_->files, settings_);
  merge.addAddIn(kAddIn);
  merge.openTemplate(fullFileName,
                     isStoreTemplate ? MailMerge::Access::Editable : MailMerge::Access::ReadOnly);
  merge.openDataSource(fullDataSourceName);
  merge.show();
}

void MarketingLetters::mailMergeLetterToPrinter(const std::string& sTemplate,
                                                const std::string& sDataSource) {
  fullDataSourceName = kLetters + sDataSource;
  fullFileName = kLetters + sTemplate;
  try {
    MailMerge merge(apartment_->files, settings_);
    merge.openTemplate(fullFileName, MailMerge::Access::ReadOnly);
    merge.openDataSource(fullDataSourceName);
    merge.print();
  } catch (const std::exception&) {
  }
}

}  // namespace ondrel
