#include "automation/reference.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <fstream>
#include <iterator>

#include "support/error_of.h"
#include "support/folders.h"

namespace ondrel {
namespace {

using ::testing::HasSubstr;

TEST(Reference, IsCurrent) {
  std::ifstream file(sourcePath("docs/reference.md"), std::ios::binary);
  const std::string kept(std::istreambuf_iterator<char>(file), {});
  EXPECT_TRUE(kept == describeClasses())
      << "docs/reference.md is behind the class tables: run scripts/reference";
}

TEST(Reference, TellsHowMembersAreCalled) {
  EXPECT_THAT(describeClass("ONDRELCORPCOMPONENTS.dboption"),
              HasSubstr("class id `5E18FB3F-8393-406C-A254-DA4CBF2B28FF`, default interface `_DbOption`"));
  EXPECT_THAT(describeClass("creditCardProcessing"),
              HasSubstr("Function VerifyCreditCard(Number, ByRef CardName, ByRef ErrorMsg) As Boolean\n"));
  EXPECT_THAT(describeClass("DICTIONARY"), HasSubstr("Property Count As Long, read only\n"));
  EXPECT_EQ(errorOf([] { describeClass("nobody"); }), 429);
}

}  // namespace
}  // namespace ondrel
