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

TEST(Study, TheLastRowIsTheAnswer) {
  Study study = SampleStudy();
  EXPECT_TRUE(HasAnswer(study));
  std::get<SummaryTable>(study.workbook.items.front()).rows.back().values = {MissingValue()};
  EXPECT_FALSE(HasAnswer(study));
  EXPECT_FALSE(HasAnswer(Study()));
  Study empty;
  empty.workbook.items.emplace_back(SummaryTable());
  EXPECT_FALSE(HasAnswer(empty));
}

TEST(Study, ASeparatorShowsNoTitle) {
  EXPECT_EQ("", ShownTitle({"\x01", 0, {}}));
  EXPECT_EQ("Power", ShownTitle({"Power", 0, {}}));
}

}  // namespace

}  // namespace poweranalysis
