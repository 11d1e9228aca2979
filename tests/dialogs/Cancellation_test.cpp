#include <utility>

#include "dialogs/FamilyRun.h"

// A break ends the command that it came in; the commands after it know nothing of it.
namespace poweranalysis {
namespace {

// What a results dialog gives: the values of its table, and the points of its first chart.
struct Given {
  std::vector<std::string> values;
  std::vector<float> points;

  bool operator==(const Given& other) const {
    return values == other.values && points == other.points;
  }
};

class Cancellation : public FamilyRun {
 protected:
  // One click on Cancel, seen by the next poll and by no later one.
  void CancelOnce() {
    host_.cancelled = [first = true]() mutable { return std::exchange(first, false); };
  }
  // A click on Cancel that comes when the work has ended already.
  void CancelTooLate() {
    CancelOnce();
    host_.lookbr();
    ASSERT_TRUE(host_.WasCanceled());
  }
  void CancelASearch() {
    OpenResults({ModeSampleSize, "T1"});
    CancelOnce();
    EXPECT_EQ(Press(ControlAccept), 0);
    EXPECT_EQ(MessageIds().back(), text::CancelledAtRequest);
  }
  void CancelAChart() {
    OpenResults({ModePower, "T1"});
    CancelOnce();
    EXPECT_EQ(Press("power-vs-n"), 0);
  }

  Given Calculated(const ResultsDialogTable& table) {
    host_.TakeWorkbook();
    OpenResults(DesignOf(table));
    EXPECT_EQ(Press(ControlAccept), 1);
    Given given{RowValues(), {}};
    EXPECT_EQ(Press(table.mode == ModePower ? ControlPowerCharts : ControlSizeCharts), 1);
    given.points = LastChart().y;
    return given;
  }

  template <class Cancel>
  void ExpectAnswersAsFreshAfter(Cancel cancel) {
    for (const ResultsDialogTable* table : AllResultsDialogs()) {
      SCOPED_TRACE(NameOf(DesignOf(*table)));
      const Given fresh = Calculated(*table);
      cancel();
      EXPECT_EQ(Calculated(*table), fresh);
    }
  }
};

TEST_F(Cancellation, EveryFamilyAnswersAsFreshAfterACancelledSearch) {
  ExpectAnswersAsFreshAfter([this] { CancelASearch(); });
}

TEST_F(Cancellation, EveryFamilyAnswersAsFreshAfterACancelledChart) {
  ExpectAnswersAsFreshAfter([this] { CancelAChart(); });
}

TEST_F(Cancellation, ABreakThatCameTooLateIsOverWithTheNextCommand) {
  for (const ResultsDialogTable* table : AllResultsDialogs()) {
    SCOPED_TRACE(NameOf(DesignOf(*table)));
    OpenResults(DesignOf(*table));
    host_.TakeWorkbook();
    ASSERT_EQ(Press(ControlAccept), 1);
    const std::vector<std::string> fresh = RowValues();
    CancelTooLate();
    host_.TakeWorkbook();
    ASSERT_EQ(Press(ControlAccept), 1);
    EXPECT_EQ(RowValues(), fresh);
  }
  EXPECT_THAT(host_.messages(), ::testing::IsEmpty());
}

TEST_F(Cancellation, OneClickStopsAllPlotsOfAButton) {
  OpenResults({ModePower, "AV2"});
  int polls = 0;
  host_.cancelled = [&polls] { return ++polls == 4; };
  EXPECT_EQ(Press("power-vs-n"), 0);
  EXPECT_EQ(polls, 4) << "no further plot was begun";
  EXPECT_THAT(Items<Chart>(), ::testing::IsEmpty());
  EXPECT_FALSE(host_.IsProgressBarOpen());
}

TEST_F(Cancellation, APlotThatWasDrawnBeforeTheClickStays) {
  OpenResults({ModePower, "AV2"});
  ASSERT_EQ(Press("power-vs-n"), 1);
  const std::size_t points = Items<Chart>().front().x.size();
  host_.TakeWorkbook();
  std::size_t polls = 0;
  host_.cancelled = [&] { return ++polls == points + 2; };
  EXPECT_EQ(Press("power-vs-n"), 1);
  EXPECT_THAT(Items<Chart>(), ::testing::SizeIs(1));
}

}  // namespace
}  // namespace poweranalysis
