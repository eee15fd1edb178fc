#include <gtest/gtest.h>

#include <random>

#include "platform/letters/command.h"
#include "platform/letters/letter_template.h"
#include "platform/letters/merge_source.h"
#include "support/error_of.h"

namespace ondrel {
namespace {

TEST(LetterTemplate, PutsAllLettersIntoOneDocumentWithOneHead) {
  const std::string head = R"({\rtf1\ansi{\fonttbl{\f0 Arial;}}{\*\generator x}{\info{\title t}})"
                           "\r\n";
  const std::string date = R"({\field{\*\fldinst DATE}{\fldrslt 1/1/2026}})";
  const LetterTemplate letter(
      head +
      R"({\b Dear} {\field{\*\fldinst { MERGEFIELD  firstName  \\* MERGEFORMAT }}{\fldrslt {\b\'abfirst}{\b Name\'bb}}},)" +
      date + R"({\field{\fldinst MERGEFIELD "last name"}}\par})");
  EXPECT_EQ(letter.fields(), (std::vector<std::string>{"firstName", "last name"}));
  EXPECT_EQ(letter.fillAll({{"Marta", "O'Hanlon"}, {"A", "B"}}, "c:\\a.dot"),
            head + R"({\*\template c:\\a.dot}{\b Dear} {{\b{Marta}}{\b }},)" + date +
                R"({{O'Hanlon}}\par\page\pard\plain {\b Dear} {{\b{A}}{\b }},)" + date + R"({{B}}\par})");
}

TEST(LetterTemplate, EscapesWhatItPutsIn) {
  EXPECT_EQ(rtfText("a{b}\\c\td\r\ne\rf\r\r\ng\r"), R"(a\{b\}\\c\tab d\line e\line f\line \line g\line )");
  EXPECT_EQ(rtfText("Zoë €5 字😀"), R"(\uc1 Zo\u235\'eb \u8364\'805 \u23383\'3f\u-10179\'3f\u-8704\'3f)");
}

TEST(MergeSource, TakesRowsByAnyDelimiter) {
  const MergeSource commas = parseMergeSource(
      "\xEF\xBB\xBF"
      "name,note\r\n\r\n\"O\"\"Hanlon, Zoë\",\"two\nlines\"\r\nx,\r\n\"\",\"\"\"\"");
  EXPECT_EQ(commas.fields, (std::vector<std::string>{"name", "note"}));
  using Rows = std::vector<std::vector<std::string>>;
  EXPECT_EQ(commas.rows, (Rows{{"O\"Hanlon, Zoë", "two\nlines"}, {"x", ""}, {"", "\""}}));
  EXPECT_EQ(commas.find("NOTE"), 1u);
  EXPECT_EQ(commas.find("x"), std::string_view::npos);
  EXPECT_EQ(parseMergeSource("a,b\tc\n1,5\t2;3\n").rows, (Rows{{"1,5", "2;3"}}));
  EXPECT_EQ(parseMergeSource("a;b\r1;2").rows, (Rows{{"1", "2"}}));
}

TEST(Letters, SayWhereTheyAreMalformed) {
  const std::pair<const char*, const char*> letters[] = {
      {"Dear customer", "position 1: no RTF document"},
      {"{\\rtf1 {a}", "position 11: a brace is not closed"},
      {"{\\rtf1 \\'zz}", "position 8: two hex digits were expected"},
      {"{\\rtf1 \\bin9 }", "position 8: binary data is cut off"},
      {"{\\rtf1 \\", "position 8: the text ends in a control word"},
      {"{\\rtf1 \\fs99999999999}", "position 8: a number is too large"},
      {"{\\rtf1{\\field{\\*\\fldinst MERGEFIELD }}}", "position 17: a merge field has no name"},
      {"{\\rtf1{\\field{\\*\\fldinst MERGEFIELD a \\\\b x}}}",
       "position 17: merge field 'a' has a switch that is not known: \\b"},
      {"{\\rtf1 \\bin3 }}{}", nullptr},
  };
  for (const auto& [text, reason] : letters)
    EXPECT_EQ(descriptionOf([&] { LetterTemplate{text}; }),
              reason ? std::string("Letter template, ") + reason : "");
  const std::pair<const char*, const char*> sources[] = {
      {"\n\n", "line 1: no names of fields"},
      {"a,b\n\n\"1\n2\",3\n1\n", "line 5: 1 values where there are 2 fields"},
      {"a,b\n1,\"2\n", "line 2: a quote is not closed"},
      {"a,b\n\"1\"x,2\n", "line 2: text behind a closing quote"},
  };
  for (const auto& [text, reason] : sources)
    EXPECT_EQ(descriptionOf([&] { parseMergeSource(text); }), std::string("Data source, ") + reason);
}

// Whatever a template or a source looks like, it is read or raises an error.
TEST(Letters, BrokenFilesRaiseErrorsAtMost) {
  const std::string whole =
      R"({\rtf1{\fonttbl{\f0 A;}}\pard a {\field{\*\fldinst MERGEFIELD "n n" \\* MERGEFORMAT}{\fldrslt {\b\'ab}}}\u8364?\bin2 }}\par})"
      "\na,\"b\"\"b\"\r\n1,2\n\"x\ny\",\"\"\n";
  std::mt19937 random(7);
  for (int round = 0; round < 4000; ++round) {
    std::string text = round % 2 ? whole : whole.substr(whole.find('\n') + 1);
    for (int change = 0; change < 3; ++change) text[random() % text.size()] = text[random() % text.size()];
    text.resize(text.size() - random() % 3 * (text.size() / 4));
    descriptionOf([&] { parseMergeSource(text); });
    descriptionOf([&] {
      const LetterTemplate read(text);
      read.fill(std::vector<std::string>(read.fields().size(), "x"));
    });
  }
}

TEST(Commands, RunWithoutAShell) {
  EXPECT_EQ(commandWords(" lp -d  'front desk' \"a'b\" '"),
            (std::vector<std::string>{"lp", "-d", "front desk", "a'b", ""}));
  EXPECT_EQ(runCommand({"test", "a b", "=", "a b"}), 0);
  EXPECT_EQ(runCommand({"sh", "-c", "exit 7"}), 7);
  EXPECT_EQ(runCommand({"/no/such/program"}), 127);
}

}  // namespace
}  // namespace ondrel
