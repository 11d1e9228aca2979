#include "host/Utf8.h"

#include <gtest/gtest.h>

namespace poweranalysis {
namespace {

TEST(Excerpt, KeepsWellFormedTextAndReplacesTheRest) {
  EXPECT_EQ(Excerpt("Mu = \xE2\x88\x92"
                    "3",
                    40),
            "Mu = \xE2\x88\x92"
            "3");
  EXPECT_EQ(Excerpt("a\x01\tb\x7F\xFF\xC3", 40), "a??b???");
  EXPECT_EQ(Excerpt("", 40), "");
}

TEST(Excerpt, CutsLongTextBetweenCharacters) {
  EXPECT_EQ(Excerpt("\xC3\xA4\xC3\xB6\xC3\xBC", 2), "\xC3\xA4\xC3\xB6...");
  EXPECT_EQ(Excerpt("abc", 3), "abc");
}

TEST(CountCharacters, CountsAByteThatIsNotUtf8AsOne) {
  EXPECT_EQ(CountCharacters(""), 0U);
  EXPECT_EQ(CountCharacters("P\u00B2 \u2265\U0001F600"), 5U);
  EXPECT_EQ(CountCharacters("\xE2\x82\xC3z"), 4U);
}

TEST(SameInAnyCase, LooksAtLettersOfAsciiAlone) {
  EXPECT_TRUE(SameInAnyCase("Av1_[", "aV1_["));
  EXPECT_TRUE(SameInAnyCase("", ""));
  EXPECT_FALSE(SameInAnyCase("av1", "av"));
  EXPECT_FALSE(SameInAnyCase("[", "{"));
  EXPECT_FALSE(SameInAnyCase("\u00C4", "\u00E4"));
}

}  // namespace
}  // namespace poweranalysis
