#include "host/XmlText.h"

#include <gtest/gtest.h>

namespace poweranalysis {

namespace {

TEST(XmlCharacters, ReplacesWhatXmlCannotHold) {
  const std::string mark = "\uFFFD";
  EXPECT_EQ("a" + mark + "b\t\n" + mark, XmlCharacters("a\x01"
                                                       "b\t\n\x1b"));
  EXPECT_EQ("\u00e9\u20ac\U0001F600", XmlCharacters("\u00e9\u20ac\U0001F600"));
  EXPECT_EQ(mark + mark, XmlCharacters("\xC0\xAF"));
  EXPECT_EQ(mark + mark + mark, XmlCharacters("\xED\xA0\x80"));
  EXPECT_EQ(mark, XmlCharacters("\uFFFE"));
  EXPECT_EQ(mark + mark, XmlCharacters("\xE2\x82"));
  EXPECT_EQ(mark + mark + mark + mark, XmlCharacters("\xF4\x90\x80\x80"));
}

TEST(XmlEscaped, WritesTheMarksOfXmlAsReferences) {
  EXPECT_EQ("&amp;&lt;&gt;&quot;'", XmlEscaped("&<>\"'"));
  EXPECT_EQ("&amp;\uFFFD", XmlEscaped("&\xFF"));
}

}  // namespace

}  // namespace poweranalysis
