#include "automation/Session.h"

#include <gmock/gmock.h>

#include "AutomationRun.h"
#include "automation/Errors.h"
#include "dialogs/Controls.h"
#include "settings/PowerSettings.h"

namespace poweranalysis {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::SizeIs;

class Sessions : public AutomationRun {
 protected:
  void OpenResults(int mode, const char* family) {
    ASSERT_TRUE(session_.OpenTask(mode, FindTask(mode, family)));
    session_.Press(ControlAccept);
    ASSERT_EQ(FindDialog(host_.dialog()->resource()).result, true);
  }
  Session::Outcome PutValue(std::string_view field, double value) {
    return session_.PutValue(session_.FindField(field), value);
  }
  T2Params& t2() { return Block()->T2.Working; }

  Session session_{driver_};
};

template <class Error, class Action>
std::string MessageOf(Action action) {
  try {
    action();
  } catch (const Error& error) {
    return error.what();
  }
  ADD_FAILURE() << "nothing was raised";
  return {};
}

// --- Opening.

TEST_F(Sessions, ATaskOpensAtItsFirstDialog) {
  ASSERT_TRUE(session_.OpenTask(ModeSampleSize, FindTask(ModeSampleSize, "T2")));
  EXPECT_EQ(session_.Spec().className,
            ComputeDialog(ModeSampleSize, FindTask(ModeSampleSize, "T2"))->className);
}

TEST_F(Sessions, AnotherTaskCanFollow) {
  ASSERT_TRUE(session_.OpenTask(ModePower, FindTask(ModePower, "T2")));
  ASSERT_TRUE(session_.OpenTask(ModeDistribution, FindTask(ModeDistribution, "T")));
  EXPECT_FALSE(session_.ControlsOf("DegreesOfFreedom").empty());
}

TEST_F(Sessions, ATaskWithoutADialogDoesNotOpen) {
  host_.failDialog = true;
  EXPECT_FALSE(session_.OpenTask(ModePower, 0));
  EXPECT_THAT(session_.Spec().pages, IsEmpty());
}

// --- Values.

TEST_F(Sessions, AValueGoesIntoAnEditARadioButtonOrACheckBox) {
  ASSERT_TRUE(session_.OpenTask(ModeSampleSize, FindTask(ModeSampleSize, "T2")));
  EXPECT_EQ(PutValue("Sigma", 2.5), Session::Outcome::Put);
  EXPECT_EQ(PutValue("H0Type", 1), Session::Outcome::Put);
  EXPECT_EQ(t2().Sigma, 2.5);
  EXPECT_EQ(t2().H0Type, 1);
}

TEST_F(Sessions, AValueThatNoButtonStandsForIsNotPut) {
  ASSERT_TRUE(session_.OpenTask(ModeSampleSize, FindTask(ModeSampleSize, "T2")));
  const auto before = t2().H0Type;
  EXPECT_EQ(PutValue("H0Type", 9), Session::Outcome::NoButton);
  EXPECT_EQ(t2().H0Type, before);
}

TEST_F(Sessions, ACheckBoxIsPressedOnlyToChange) {
  ASSERT_TRUE(session_.OpenTask(ModeDistribution, FindTask(ModeDistribution, "T")));
  EXPECT_EQ(PutValue("OneMinusP", 0), Session::Outcome::Shown);
  EXPECT_EQ(PutValue("OneMinusP", 1), Session::Outcome::Put);
  EXPECT_EQ(PutValue("OneMinusP", 1), Session::Outcome::Shown);
  EXPECT_EQ(Block()->T1.Working.OneMinusP, 1);
  EXPECT_EQ(PutValue("OneMinusP", 2), Session::Outcome::NoButton);
}

TEST_F(Sessions, ATextIsTypedAsItStands) {
  ASSERT_TRUE(session_.OpenTask(ModeSampleSize, FindTask(ModeSampleSize, "T2")));
  session_.Put(*session_.FindField("Sigma").front(), std::string(" +1e2"));
  EXPECT_EQ(t2().Sigma, 100);
}

TEST_F(Sessions, ATextForAButtonIsRefused) {
  ASSERT_TRUE(session_.OpenTask(ModeSampleSize, FindTask(ModeSampleSize, "T2")));
  const auto before = t2().H0Type;
  EXPECT_EQ(MessageOf<AutomationError>(
                [&] { session_.Put(*session_.FindField("H0Type").back(), std::string("upper")); }),
            "'H0Type' takes a number");
  EXPECT_EQ(t2().H0Type, before);
}

// --- Names.

TEST_F(Sessions, AnUnknownNameIsAnsweredWithTheNearest) {
  OpenResults(ModePower, "T2");
  EXPECT_THAT(MessageOf<UnknownMember>([&] { session_.FindField("StratRMSSE"); }),
              HasSubstr("shows no field 'StratRMSSE'; did you mean '"));
  EXPECT_EQ(MessageOf<UnknownMember>([&] { session_.Press("Sumary"); }),
            "The dialog has no button 'Sumary'; did you mean 'Summary'?");
  EXPECT_EQ(MessageOf<UnknownMember>([&] { session_.Draw("power-vs-n3"); }),
            "The dialog has no chart 'power-vs-n3'; did you mean 'power-vs-n'?");
}

TEST_F(Sessions, AButtonThatIsNoChartsIsNotDrawn) {
  OpenResults(ModePower, "T2");
  EXPECT_THROW(session_.Draw("Summary"), UnknownMember);
}

// --- What comes out.

TEST_F(Sessions, AChartIsDrawnByItsName) {
  OpenResults(ModePower, "T2");
  session_.Press(ControlAccept);
  const std::vector<Chart> charts = session_.Draw("power-vs-n1");
  ASSERT_THAT(charts, SizeIs(1));
  EXPECT_EQ(charts.front().name, "power-vs-n1");
  EXPECT_THAT(session_.NewItems<SummaryTable>(), IsEmpty()) << "the table came before";
}

TEST_F(Sessions, AllChartsOfADialogAreKnownByName) {
  OpenResults(ModeSampleSize, "P1");
  const std::vector<std::string> names = NamesOf(ChartControls(session_.Spec()));
  EXPECT_FALSE(names.empty());
  for (const std::string& name : names) {
    for (const Chart& chart : session_.Draw(name)) {
      EXPECT_EQ(chart.name, name);
    }
    EXPECT_FALSE(session_.NewItems<Chart>().empty()) << name;
  }
}

TEST_F(Sessions, ResultsAndMessagesAreThoseOfTheLastPress) {
  OpenResults(ModePower, "T2");
  session_.Press("Summary");
  EXPECT_THAT(session_.NewItems<SummaryTable>(), SizeIs(1));
  EXPECT_FALSE(session_.HasSpoken());
  session_.Press("Summary");
  EXPECT_THAT(session_.NewItems<SummaryTable>(), SizeIs(1));
  session_.Press("Cancel");
  EXPECT_THAT(session_.NewItems<SummaryTable>(), IsEmpty());
}

TEST_F(Sessions, ARefusalIsHeard) {
  ASSERT_TRUE(session_.OpenTask(ModePower, FindTask(ModePower, "T2")));
  EXPECT_EQ(PutValue("Sigma", -1), Session::Outcome::Put);
  session_.Press(ControlAccept);
  EXPECT_TRUE(session_.HasSpoken());
  EXPECT_FALSE(session_.ControlsOf("Sigma").empty()) << "the dialog stays open";
}

TEST_F(Sessions, OnceCancelledNoButtonIsPressed) {
  bool cancelled = false;
  Session session(driver_, [&cancelled] { return cancelled; });
  ASSERT_TRUE(session.OpenTask(ModePower, FindTask(ModePower, "T2")));
  const std::string before = session.Spec().className;
  cancelled = true;
  session.Press(ControlAccept);
  EXPECT_EQ(session.Spec().className, before);
}

}  // namespace
}  // namespace poweranalysis
