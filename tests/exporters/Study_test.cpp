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

TEST(Study, HasAnAnswerWhenABlockOfItsTableHasOne) {
  const auto row = [](const char* title, int indent, double value) {
    return TableRow{title, indent, {value}};
  };
  SummaryTable table;
  table.rows = {
      row("Alpha", 0, .05), row("\x01", 0, MissingValue()), row("Row Effect", 0, MissingValue()),
      row("Power", 2, .8),  row("\x01", 0, MissingValue()), row("Power", 2, MissingValue())};
  Study study;
  study.workbook.items.emplace_back(table);
  EXPECT_TRUE(HasAnswer(study));
  table.rows[3].values[0] = MissingValue();
  study.workbook.items = {table};
  EXPECT_FALSE(HasAnswer(study)) << "inputs are no answer";
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
