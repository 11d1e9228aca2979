#include "exporters/Study.h"

#include <gmock/gmock.h>

#include "exporters/Samples.h"

namespace poweranalysis {

namespace {

using ::testing::ElementsAre;

TEST(Study, ATextThatBeginsWithALineBreakOpensAParagraph) {
  EXPECT_THAT(
      ParagraphsOf(SampleStudy()),
      ElementsAre("Title -- here", "One goal of %g. goes on  at length.", "Second line", "of two"));
}

TEST(Study, HasNoParagraphsWithoutAReport) { EXPECT_TRUE(ParagraphsOf(Study()).empty()); }

TEST(Study, BlankTextsMakeNoParagraphs) {
  Study study;
  study.workbook.items.emplace_back(Report{{"\r\n  ", "\r\n", "", "\r\nText"}});
  EXPECT_THAT(ParagraphsOf(study), ElementsAre("Text"));
}

TEST(Study, SentencesOfOneParagraphDoNotTouch) {
  Study study;
  study.workbook.items.emplace_back(
      Report{{"\r\nOne is required.", "With one, power is .9. ", "Yes."}});
  EXPECT_THAT(ParagraphsOf(study), ElementsAre("One is required. With one, power is .9. Yes."));
}

TEST(Study, ADeepIndentOpensALineOfItsOwn) {
  Study study;
  study.workbook.items.emplace_back(Report{
      {"\r\nPower of:", "             (a) 10% for rows;", "             (b) 20% for columns."}});
  EXPECT_THAT(ParagraphsOf(study),
              ElementsAre("Power of:", "(a) 10% for rows;", "(b) 20% for columns."));
}

TEST(Study, FourBlanksOpenALineOfTheirOwnAndThreeDoNot) {
  Study study;
  study.workbook.items.emplace_back(Report{{"\r\nOne", "   two", "    three", "    "}});
  EXPECT_THAT(ParagraphsOf(study), ElementsAre("One   two", "three"));
}

TEST(Study, ALineBreakWithinATextEndsTheParagraph) {
  Study study;
  study.workbook.items.emplace_back(Report{{"One\ntwo", "\r\nthree\r\n", "four\n\nfive"}});
  EXPECT_THAT(ParagraphsOf(study), ElementsAre("One", "two", "three", "four", "five"));
}

TEST(Study, ABlankOnEitherSideOfAJointIsEnough) {
  for (const char* blank : {" ", "\t"}) {
    Study study;
    study.workbook.items.emplace_back(Report{{std::string("One.") + blank, "Two."}});
    study.workbook.items.emplace_back(Report{{"One.", blank + std::string("Two.")}});
    EXPECT_THAT(ParagraphsOf(study), ElementsAre(std::string("One.") + blank + "Two.",
                                                 std::string("One.") + blank + "Two."));
  }
}

TEST(Study, AnEmptyTextAddsNoBlank) {
  Study study;
  study.workbook.items.emplace_back(Report{{"", "One.", "", " Two."}});
  EXPECT_THAT(ParagraphsOf(study), ElementsAre("One. Two."));
}

TEST(Study, ASeparatorShowsNoTitle) {
  EXPECT_EQ("", ShownTitle({"\x01", 0, {}}));
  EXPECT_EQ("Power", ShownTitle({"Power", 0, {}}));
}

}  // namespace

}  // namespace poweranalysis
