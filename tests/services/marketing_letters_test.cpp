#include "services/marketing_letters.h"

#include <fstream>
#include <iterator>
#include <set>

#include "support/error_of.h"
#include "support/folders.h"
#include "support/store_fixture.h"
#include "support/temporary_folder.h"

namespace ondrel {
namespace {

namespace fs = std::filesystem;

constexpr const char* kAddressees =
    "customerSequenceNumber,customerName\n1,Marta Fenwick\n15,Zo\xEB O'Hanlon\n";

class MarketingLettersTest : public StoreTest {
 protected:
  MarketingLettersTest() {
    apartment->files = Files(folder.path);
    put("Standard.rtf", "{\\rtf1 standard {\\field{\\*\\fldinst MERGEFIELD customerName}{\\fldrslt x}}}");
    put("addressees.csv", kAddressees);
  }

  // Into the folder as a shop's disk spells it.
  void put(const std::string& name, const std::string& text) {
    const fs::path file =
        fs::path(folder.path) / "c/Program Files/OndrelCorp/OVSServer/Web/Marketing Letters" / name;
    fs::create_directories(file.parent_path());
    std::ofstream(file, std::ios::binary) << text;
  }
  MarketingLetters letters(const std::string& settings = "{}") {
    const std::string file = folder.path + "/settings.json";
    std::ofstream(file) << R"({"Software": {"Ondrel Corporation": {"OVS": {"Letters": )" << settings
                        << "}}}}";
    return MarketingLetters(Settings({file}));
  }
  static std::string contents(const fs::path& file) {
    std::ifstream stream(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
  }
  // Of a folder below "ovsserver", in order of names.
  std::vector<fs::path> documents(const std::string& name) {
    const fs::path place = fs::path(folder.path) / "c/Program Files/OndrelCorp/OVSServer" / name;
    if (!fs::exists(place)) return {};
    std::set<fs::path> sorted(fs::directory_iterator(place), fs::directory_iterator{});
    return {sorted.begin(), sorted.end()};
  }

  TemporaryFolder folder;
};

TEST_F(MarketingLettersTest, PrintsADocumentForEachAddressee) {
  MarketingLetters run = letters();
  run.mailMergeLetterToPrinter("standard.rtf", "addressees.csv");
  EXPECT_EQ(run.fullFileName, R"(c:\program files\ondrelcorp\ovsserver\web\marketing letters\standard.rtf)");
  const std::vector<fs::path> spool = documents("spool");
  ASSERT_EQ(spool.size(), 2u);
  EXPECT_EQ(spool[0].filename().string().substr(0, 9), "standard-");
  EXPECT_EQ(contents(spool[0]), "{\\rtf1 standard {{Marta Fenwick}}}");
  EXPECT_EQ(contents(spool[1]), "{\\rtf1 standard {{\\uc1 Zo\\u235\\'eb O'Hanlon}}}");
}

TEST_F(MarketingLettersTest, PrintsByTheCommandOfTheSettings) {
  std::ofstream(folder.path + "/print") << "cat \"$2\" >> \"$1\"\n";
  const std::string command = "sh " + folder.path + "/print '" + folder.path + "/the printer'";
  letters(R"({"Print Command": ")" + command + "\"}")
      .mailMergeLetterToPrinter("standard.rtf", "addressees.csv");
  EXPECT_EQ(contents(folder.path + "/the printer"),
            "{\\rtf1 standard {{Marta Fenwick}}}{\\rtf1 standard {{\\uc1 Zo\\u235\\'eb O'Hanlon}}}");
  EXPECT_TRUE(documents("spool").empty());
}

TEST_F(MarketingLettersTest, TheExampleIsALetter) {
  const fs::path example = sourcePath("examples/letters");
  put("thank_you.rtf", contents(example / "thank_you.rtf"));
  put("addressees.csv", contents(example / "addressees.csv"));
  letters().mailMergeLetterToPrinter("thank_you.rtf", "addressees.csv");
  const std::vector<fs::path> spool = documents("spool");
  ASSERT_EQ(spool.size(), 2u);
  const std::string letter = contents(spool[1]);
  EXPECT_NE(letter.find("{{55 Oak Street, Back Door}}\\line"), std::string::npos) << letter;
  EXPECT_NE(letter.find("Dear {{\\b {\\uc1 Zo\\u235\\'eb}}},\\par"), std::string::npos) << letter;
}

TEST_F(MarketingLettersTest, PrintingIsQuietAboutWhatFails) {
  put("other.rtf", "{\\rtf1 {\\field{\\*\\fldinst MERGEFIELD balance}}}");
  letters().mailMergeLetterToPrinter("nowhere.rtf", "addressees.csv");
  letters().mailMergeLetterToPrinter("standard.rtf", "nowhere.csv");
  letters().mailMergeLetterToPrinter("other.rtf", "addressees.csv");
  letters("1e999").mailMergeLetterToPrinter("standard.rtf", "addressees.csv");
  MarketingLetters(Settings({folder.path})).mailMergeLetterToPrinter("standard.rtf", "addressees.csv");
  put("nobody.csv", "customerName,city\n");
  letters().mailMergeLetterToPrinter("standard.rtf", "nobody.csv");
  EXPECT_TRUE(documents("spool").empty());
  letters(R"({"Print Command": "false"})").mailMergeLetterToPrinter("standard.rtf", "addressees.csv");
  EXPECT_EQ(documents("spool").size(), 1u);
}

TEST_F(MarketingLettersTest, LeavesTheStandardLetterReadOnlyForAPerson) {
  MarketingLetters run = letters();
  run.openMLetter("STANDARD.RTF", "addressees.csv");
  EXPECT_EQ(run.fullFileName, R"(c:\program files\ondrelcorp\ovsserver\web\MARKETING LETTERS\STANDARD.RTF)");
  EXPECT_EQ(run.fullDataSourceName,
            R"(c:\program files\ondrelcorp\ovsserver\web\marketing letters\addressees.csv)");
  const std::vector<fs::path> open = documents("letters");
  ASSERT_EQ(open.size(), 1u);
  EXPECT_EQ(contents(open[0]),
            "{\\rtf1 {\\*\\template c:\\\\program files\\\\ondrelcorp\\\\ovsserver\\\\web\\\\marketing "
            "letters\\\\store\\\\marketingLetters.dot}standard {{Marta Fenwick}}"
            "\\page\\pard\\plain standard {{\\uc1 Zo\\u235\\'eb O'Hanlon}}}");
  EXPECT_EQ(fs::status(open[0]).permissions() & fs::perms::owner_write, fs::perms::none);
}

TEST_F(MarketingLettersTest, AStoresOwnTemplateGoesFirstAndMayBeEdited) {
  put("store/standard.rtf", "{\\rtf1 ours {\\field{\\*\\fldinst MERGEFIELD CUSTOMERNAME}}}");
  MarketingLetters run = letters();
  run.openMLetter("standard.rtf", "addressees.csv");
  EXPECT_EQ(run.fullFileName,
            R"(c:\program files\ondrelcorp\ovsserver\web\MARKETING LETTERS\STORE\standard.rtf)");
  const std::vector<fs::path> open = documents("letters");
  ASSERT_EQ(open.size(), 1u);
  EXPECT_NE(contents(open[0]).find("ours {{Marta Fenwick}}"), std::string::npos);
  EXPECT_NE(fs::status(open[0]).permissions() & fs::perms::owner_write, fs::perms::none);
}

TEST_F(MarketingLettersTest, OpeningSaysWhatIsMissing) {
  put("other.rtf", "{\\rtf1 {\\field{\\*\\fldinst MERGEFIELD balance}}}");
  put("broken.rtf", "Dear customer");
  EXPECT_EQ(errorOf([&] { letters().openMLetter("nowhere.rtf", "addressees.csv"); }), 53);
  EXPECT_EQ(errorOf([&] { letters().openMLetter("standard.rtf", "nowhere.csv"); }), 53);
  EXPECT_EQ(errorOf([&] { letters().openMLetter("broken.rtf", "addressees.csv"); }), 321);
  put("nobody.csv", "customerName,city\n");
  EXPECT_EQ(errorOf([&] { letters().openMLetter("standard.rtf", "nobody.csv"); }), 321);
  EXPECT_TRUE(documents("letters").empty());
  try {
    letters().openMLetter("other.rtf", "addressees.csv");
    ADD_FAILURE();
  } catch (const Error& error) {
    EXPECT_EQ(error.number(), 3265);
    EXPECT_EQ(error.description(),
              "Field 'balance' of letter template other.rtf is not in data source addressees.csv");
  }
}

TEST_F(MarketingLettersTest, LooksForFilesAndForTheAddressees) {
  MarketingLetters run = letters();
  EXPECT_TRUE(
      run.FileExists("C:\\program files\\ondrelcorp\\ovsserver\\web\\marketing letters\\standard.rtf"));
  EXPECT_FALSE(run.FileExists("C:\\program files"));
  EXPECT_FALSE(run.FileExists(""));
  run.GetData();
  EXPECT_EQ(reads(), std::vector<std::string>{"select * from marketingLettersCSN"});
  execute("drop table marketingLettersCSN");
  EXPECT_NE(errorOf([&] { run.GetData(); }), 0);
}

}  // namespace
}  // namespace ondrel
