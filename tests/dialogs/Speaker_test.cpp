#include "dialogs/Speaker.h"

#include <gmock/gmock.h>

#include "dialogs/DialogRun.h"

namespace poweranalysis {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class Speaker : public DialogRun {
 protected:
  std::vector<std::string> Texts() {
    std::vector<std::string> texts;
    for (const Message& message : host_.messages()) {
      texts.push_back(message.text);
    }
    return texts;
  }
};

TEST_F(Speaker, FillsTheSlotsOfARefusal) {
  Speak(nullptr, {Said::NullHypothesisNearlyTrue, {.001}});
  Speak(nullptr, {Said::SearchTooLarge, {std::int64_t{150000}}});
  Speak(nullptr, {Said::CancelledAtRequest});
  EXPECT_THAT(MessageIds(), ElementsAre(text::NullHypothesisNearlyTrue, text::SearchTooLarge,
                                        text::CancelledAtRequest));
  EXPECT_THAT(Texts()[0], testing::HasSubstr("within a tolerance of 0.001 of being true"));
  EXPECT_EQ(
      Texts()[1],
      "An extremely large N (greater than 150000) has occurred during this sample size "
      "calculation. Calculation will be terminated to avoid problems with machine precision.");
  EXPECT_EQ(Texts()[2], "Calculation cancelled at user request.");
}

TEST_F(Speaker, HasNothingToSayOfAnEmptyRefusal) {
  Speak(nullptr, {});
  EXPECT_THAT(MessageIds(), IsEmpty());
}

TEST_F(Speaker, OpensABarForASearchOnlyWhenAsked) {
  HostObserver without(nullptr, HostObserver::Bar::None);
  EXPECT_FALSE(without.Open(Said::SearchingForN, 10));
  EXPECT_FALSE(host_.IsProgressBarOpen());
  HostObserver with(nullptr, HostObserver::Bar::OfSearches);
  EXPECT_TRUE(with.Open(Said::SearchingForN, 10));
  EXPECT_TRUE(host_.IsProgressBarOpen());
  EXPECT_FALSE(with.Advance(1));
  with.Stop();
  EXPECT_FALSE(host_.IsProgressBarOpen());
  EXPECT_THAT(host_.calls.progress,
              ElementsAre("d_pbar Searching for required N", "dstart 10", "dstop"));
}

TEST_F(Speaker, HandsABreakOnWithAndWithoutABar) {
  HostObserver observer(nullptr, HostObserver::Bar::OfSearches);
  EXPECT_FALSE(observer.StopRequested());
  host_.cancelled = [] { return true; };
  EXPECT_TRUE(observer.StopRequested());
  observer.Open(Said::SearchingForN, 10);
  EXPECT_TRUE(observer.Advance(1));
  observer.Stop();
}

TEST_F(Speaker, RunsWithoutAnAnalysis) {
  CAnalysisSupport* const analysis = Module().analysis;
  Module().analysis = nullptr;
  HostObserver observer(nullptr, HostObserver::Bar::OfSearches);
  EXPECT_TRUE(observer.Open(Said::SearchingForN, 10));
  EXPECT_FALSE(observer.Advance(1));
  observer.Notice(Said::SwitchingToRefined, {});
  observer.Stop();
  EXPECT_THAT(MessageIds(), IsEmpty());
  Module().analysis = analysis;
}

}  // namespace
}  // namespace poweranalysis
