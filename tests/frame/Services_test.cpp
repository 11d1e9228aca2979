#include "frame/Services.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <thread>

#include "support/TestAnalysis.h"

namespace poweranalysis {
namespace {

using testing::FrameTest;
using ::testing::Test;

// --- Numbers in controls.

constexpr int kControl = 500;

class SetDlgItemNumberTest : public Test {
 protected:
  SetDlgItemNumberTest() {
    ControlSpec control;
    control.number = kControl;
    control.kind = ControlKind::RealEdit;
    DialogSpec spec;
    spec.frame = {control};
    form.AddDlgTabs(spec);
  }

  std::string Shown(double value, int maxDecimals, int minDecimals = 0) {
    SetDlgItemNumber(form, kControl, value, maxDecimals, minDecimals, 0);
    return form.GetDlgItemText(kControl);
  }

  FormModel form;
};

struct LayoutCase {
  double value;
  int maxDecimals;
  int minDecimals;
  int decimals;
  int digits;
  int width;
  bool handedToHost;
};

// The count of digits is one short from 10 on, and stays so.
TEST(LayOutNumber, CountsDigitsOneShortFromTenOn) {
  constexpr LayoutCase kCases[] = {
      {1234.5, 5, 0, 1, 3, 5, false},   {10, 5, 0, 0, 1, 2, false},
      {12345.25, 5, 0, 2, 4, 7, false}, {123456.25, 5, 0, 2, 5, 8, true},
      {0, 5, 0, 0, 1, 2, false},        {0, 5, 3, 0, 1, 5, false},
      {-5, 5, 0, 0, 1, 3, false},       {0.05, 5, 0, 2, 1, 4, false},
      {0.0001, 5, 0, 4, 1, 6, false},   {-0.0001, 5, 0, 4, 1, 7, false},
      {1.0 / 3, 5, 0, 5, 1, 7, false},  {-1.0 / 3, 5, 0, 5, 1, 8, true},
      {99.5, 5, 0, 1, 1, 3, false},     {100.5, 5, 0, 1, 2, 4, false},
      {1e30, 5, 0, 0, 30, 31, true},    {150000, 5, 0, 0, 5, 6, false},
      {0.999999, 5, 0, 1, 1, 3, false}, {0.25, 1, 0, 1, 1, 3, false},
      {2.5, 0, 0, 0, 1, 2, false},      {2.5, 0, 2, 0, 1, 4, false},
  };
  for (const LayoutCase& c : kCases) {
    const NumberLayout layout = LayOutNumber(c.value, c.maxDecimals, c.minDecimals);
    EXPECT_EQ(layout.decimals, c.decimals) << c.value;
    EXPECT_EQ(layout.places, std::max(c.decimals, c.minDecimals)) << c.value;
    EXPECT_EQ(layout.digits, c.digits) << c.value;
    EXPECT_EQ(layout.width, c.width) << c.value;
    EXPECT_EQ(layout.handedToHost, c.handedToHost) << c.value;
  }
}

TEST_F(SetDlgItemNumberTest, ShowsAsManyDecimalsAsTheNumberNeeds) {
  EXPECT_EQ(Shown(1234.5, 5), "1234.5");
  EXPECT_EQ(Shown(10, 5), "10");
  EXPECT_EQ(Shown(12345.25, 5), "12345.25");
  EXPECT_EQ(Shown(0.05, 5), "0.05");
  EXPECT_EQ(Shown(1.0 / 3, 5), "0.33333");
  EXPECT_EQ(Shown(0.999999, 5), "1.0");
  EXPECT_EQ(Shown(2.5, 5, 3), "2.500");
}

// The format pads to its width on the right; a whole digit would end in a blank.
TEST_F(SetDlgItemNumberTest, CutsTheTrailingBlankOfOneDigit) {
  EXPECT_EQ(Shown(0, 5), "0");
  EXPECT_EQ(Shown(5, 5), "5");
  EXPECT_EQ(Shown(-5, 5), "-5");
}

TEST_F(SetDlgItemNumberTest, ShowsANegativeZeroAsZero) { EXPECT_EQ(Shown(-0.0, 5), "0"); }

TEST_F(SetDlgItemNumberTest, HandsWideNumbersToTheHostWithTheirFullValue) {
  EXPECT_EQ(Shown(123456.25, 5), "123456.25");
  EXPECT_EQ(Shown(123456.123456789, 5), "123456.12346");
  double value = 0;
  EXPECT_EQ(form.GetDlgItemDouble(kControl, value), 0);
  EXPECT_EQ(value, 123456.123456789);
}

TEST_F(SetDlgItemNumberTest, NumbersThatAreNoneDoNotCrash) {
  Shown(std::numeric_limits<double>::quiet_NaN(), 5);
  Shown(std::numeric_limits<double>::infinity(), 5);
  Shown(-9999, 5);
  EXPECT_EQ(form.GetDlgItemText(kControl), "-9999");
  Shown(5e-324, 5);
  Shown(std::numeric_limits<double>::max(), 5);
  double value = 0;
  EXPECT_EQ(form.GetDlgItemDouble(kControl, value), 0);
  EXPECT_EQ(value, std::numeric_limits<double>::max());
}

TEST_F(SetDlgItemNumberTest, AControlThatIsNotThereIsLeftAlone) {
  SetDlgItemNumber(form, kControl + 1, 1.5, 5, 0, 0);
  EXPECT_EQ(form.GetDlgItemText(kControl + 1), "");
}

// --- Messages.

using ServicesTest = FrameTest;

TEST_F(ServicesTest, AFinishedTextIsNoFormat) {
  Start();
  ShowMessage(MessagePlain, nullptr, 12856, "50%s and 100%");
  ASSERT_EQ(host.messages().size(), 1u);
  EXPECT_EQ(host.messages()[0].text, "50%s and 100%");
  EXPECT_EQ(host.messages()[0].id, 12856);
}

TEST_F(ServicesTest, AMessageOfTheTableIsFilledIn) {
  Start();
  ShowMessage(MessagePlain, nullptr, text::NullHypothesisNearlyTrue, {0.001});
  ASSERT_EQ(host.messages().size(), 1u);
  EXPECT_EQ(host.messages()[0].id, 12874);
  EXPECT_NE(host.messages()[0].text.find("within a tolerance of 0.001 of"), std::string::npos);
}

TEST_F(ServicesTest, WithoutALiveAnalysisTheServicesAreSilent) {
  EXPECT_EQ(ModuleHost(), nullptr);
  ShowMessage(MessagePlain, nullptr, text::Colon);
  ProgressStart("title", 10);
  ProgressStep(1);
  ProgressStop();
  EXPECT_FALSE(BreakRequested());
  EXPECT_FALSE(IsCancelled());
  EXPECT_TRUE(host.messages().empty());
  EXPECT_EQ(Module().ProgressOpen, 0);
}

// An analysis belongs to the thread that created it.
TEST_F(ServicesTest, EveryThreadHasItsOwnModule) {
  Start();
  Module().ProgressOpen = 1;
  std::thread([] {
    EXPECT_EQ(ModuleHost(), nullptr);
    EXPECT_EQ(Module().settings, nullptr);
    EXPECT_EQ(Module().ProgressOpen, 0);
    Module().ProgressOpen = 7;
  }).join();
  EXPECT_EQ(Module().ProgressOpen, 1);
  EXPECT_EQ(ModuleHost(), &host);
}

// --- Progress.

TEST_F(ServicesTest, ProgressStartTwiceShowsOneBarWithTheSecondTitle) {
  Start();
  ProgressStart("first", 20);
  ProgressStart("second", 10);
  EXPECT_EQ(host.calls.progress, (std::vector<std::string>{"d_pbar first", "dstart 20", "dstop",
                                                           "d_pbar second", "dstart 10"}));
  EXPECT_EQ(Module().ProgressOpen, 1);
  EXPECT_TRUE(host.IsProgressBarOpen());
}

TEST_F(ServicesTest, ABarOfSomeoneElseIsNotClosedByAStart) {
  Start();
  host.dstart(5);
  host.calls.progress.clear();
  ProgressStart("ours", 10);
  EXPECT_EQ(host.calls.progress, (std::vector<std::string>{"d_pbar ours", "dstart 10"}));
}

TEST_F(ServicesTest, AFlagWithoutABarClosesNothing) {
  Start();
  Module().ProgressOpen = 1;
  ProgressStart("ours", 10);
  EXPECT_EQ(host.calls.progress, (std::vector<std::string>{"d_pbar ours", "dstart 10"}));
}

TEST_F(ServicesTest, ProgressStopClearsTheFlagInAnyCase) {
  Start();
  Module().ProgressOpen = 1;
  ProgressStop();
  EXPECT_TRUE(host.calls.progress.empty());
  EXPECT_EQ(Module().ProgressOpen, 0);

  ProgressStart("ours", 10);
  ProgressStop();
  EXPECT_EQ(host.calls.progress.back(), "dstop");
  EXPECT_EQ(Module().ProgressOpen, 0);
  EXPECT_FALSE(host.IsProgressBarOpen());
}

TEST_F(ServicesTest, ProgressStepMovesAnOpenBarOnly) {
  Start();
  std::vector<int> positions;
  host.onProgress = [&](const ProgressState& state) { positions.push_back(state.position); };
  ProgressStep(3);
  EXPECT_TRUE(positions.empty());
  ProgressStart("ours", 10);
  positions.clear();
  ProgressStep(3);
  EXPECT_EQ(positions, std::vector<int>{3});
}

TEST_F(ServicesTest, ACancelIsSeenByThePollAndStaysUntilTheNextCommand) {
  Start();
  bool wanted = false;
  host.cancelled = [&] { return wanted; };
  ProgressStart("ours", 10);
  EXPECT_FALSE(BreakRequested());
  EXPECT_FALSE(IsCancelled());
  wanted = true;
  EXPECT_TRUE(BreakRequested());
  wanted = false;
  EXPECT_TRUE(IsCancelled());
  ProgressStop();
  ProgressStart("next", 10);
  EXPECT_TRUE(IsCancelled());
  ProgressStop();
  host.Press(0);
  EXPECT_FALSE(IsCancelled());
}

// --- Cancellation is asked for in a fixed order.

class AskedHost : public HeadlessHost {
 public:
  bool IsExternallyCancelled() const override { return Ask("external", external); }
  bool pcancel() const override { return Ask("pcancel", bar); }
  bool WasCanceled() const override { return Ask("display", display); }

  bool external = false;
  bool bar = false;
  bool display = false;
  mutable std::vector<std::string> asked;

 private:
  bool Ask(const char* who, bool answer) const {
    asked.emplace_back(who);
    return answer;
  }
};

TEST(IsCancelled, AsksTheThreeQuestionsInOrderAndStopsAtTheFirstYes) {
  Module() = {};
  AskedHost asked;
  CPowerAnalysis analysis(nullptr, testing::TestParts());
  analysis.AttachHost(&asked);
  Module().analysis = &analysis;
  EXPECT_FALSE(IsCancelled());
  EXPECT_EQ(asked.asked, (std::vector<std::string>{"external", "pcancel", "display"}));
  asked.asked.clear();
  asked.bar = true;
  EXPECT_TRUE(IsCancelled());
  EXPECT_EQ(asked.asked, (std::vector<std::string>{"external", "pcancel"}));
  asked.bar = false;
  asked.display = true;
  EXPECT_TRUE(IsCancelled());
  asked.external = true;
  asked.asked.clear();
  EXPECT_TRUE(IsCancelled());
  EXPECT_EQ(asked.asked, (std::vector<std::string>{"external"}));
}

// --- Output and resources.

TEST_F(ServicesTest, TableOptionsGoBeforeTheTable) {
  Start();
  SummaryTable table;
  table.code = 16;
  EXPECT_EQ(SetTableOptions(host, table), 1);
  EXPECT_EQ(host.calls.nextScrSetOptions, 1);
  ASSERT_EQ(host.workbook().items.size(), 1u);
  EXPECT_EQ(std::get<SummaryTable>(host.workbook().items[0]).code, 16);
}

TEST(ResourceScope, HoldsUntilItsReleaseAndReleasesOnce) {
  EXPECT_EQ(ResourceScope::depth(), 0);
  {
    ResourceScope outer;
    EXPECT_EQ(ResourceScope::depth(), 1);
    {
      ResourceScope inner;
      EXPECT_EQ(ResourceScope::depth(), 2);
    }
    EXPECT_EQ(ResourceScope::depth(), 1);
    outer.Release();
    EXPECT_EQ(ResourceScope::depth(), 0);
    outer.Release();
    EXPECT_EQ(ResourceScope::depth(), 0);
  }
  EXPECT_EQ(ResourceScope::depth(), 0);
}

}  // namespace
}  // namespace poweranalysis
