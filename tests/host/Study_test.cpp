#include "host/Study.h"

#include <gtest/gtest.h>

namespace poweranalysis {
namespace {

TEST(Study, HasAnAnswerWhenOneOfItsAnswersIsThere) {
  Study study;
  EXPECT_FALSE(HasAnswer(study));
  study.answers = {{"N", MissingValue(), "per cell", "row"}, {"N", 35, "per cell", "column"}};
  EXPECT_TRUE(HasAnswer(study));
  study.answers[1].value = MissingValue();
  EXPECT_FALSE(HasAnswer(study));
}

TEST(Study, OfAnIntervalHasAnAnswerWhenAnyLimitIsThere) {
  Study study;
  study.mode = "interval";
  EXPECT_TRUE(IsInterval(study));
  study.limits = {{"P2", MissingValue(), MissingValue()}, {"P2Bound", 0.3, MissingValue()}};
  EXPECT_TRUE(HasAnswer(study));
  study.limits[1].lower = MissingValue();
  EXPECT_FALSE(HasAnswer(study));
}

TEST(Study, OneAnswerIsTheOnlyOne) {
  Study study;
  EXPECT_EQ(OnlyAnswer(study), nullptr);
  study.answers = {{"Power", 0.8, {}, {}}};
  EXPECT_EQ(OnlyAnswer(study), &study.answers.front());
  study.answers.push_back({"Power", 0.9, {}, {}});
  EXPECT_EQ(OnlyAnswer(study), nullptr);
}

}  // namespace
}  // namespace poweranalysis
