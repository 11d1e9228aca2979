#include <gmock/gmock.h>

#include <cmath>

#include "dialogs/DialogRun.h"
#include "support/TemporaryFolder.h"

namespace poweranalysis {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

using ParameterDialog = DialogRun;

TEST_F(ParameterDialog, OpensOnTheResourceOfTheCatalogue) {
  OpenParameters({ModePower, "T1"});
  EXPECT_EQ(OpenResource(), 6102);
  EXPECT_EQ(form().spec().className, "CT1PowParamsDialog");
  EXPECT_EQ(form().spec().title, "1-Sample t-test: Power Calc. Params.");
  ASSERT_EQ(form().spec().pages.size(), 2u);
  EXPECT_EQ(form().spec().pages[0].resource, 6103);
  EXPECT_EQ(form().spec().pages[0].caption, "Quick");
  EXPECT_EQ(form().spec().pages[1].resource, 6104);
  EXPECT_EQ(form().spec().pages[1].caption, "Settings I/O");
}

TEST_F(ParameterDialog, ShowsTheNumbersOfOneMeanUnderTheirControls) {
  OpenParameters({ModePower, "T1"});
  EXPECT_EQ(TextOf("SampleSize"), "25");
  EXPECT_EQ(TextOf("Mu0"), "0");
  EXPECT_EQ(TextOf("Mu"), "2");
  EXPECT_EQ(TextOf("Alpha"), "0.05");
  EXPECT_EQ(TextOf("Sigma"), "10");
  EXPECT_TRUE(IsChecked("H0Type=two-sided"));
  EXPECT_EQ(CaptionOf("H0Type=two-sided"), "2-tailed ( Mu = Mu0 )");
  EXPECT_EQ(CaptionOf("H0Type=upper"), "1-tailed ( Mu <= Mu0 )");
  EXPECT_EQ(CaptionOf("H0Type=lower"), "1-tailed ( Mu >= Mu0 )");
  EXPECT_EQ(Find("PowerGoal"), nullptr) << "a power task has no power goal";
}

TEST_F(ParameterDialog, OfSampleSizeHasThePowerGoalInPlaceOfTheSize) {
  OpenParameters({ModeSampleSize, "T1"});
  EXPECT_EQ(OpenResource(), parameters_);
  EXPECT_EQ(Find("SampleSize"), nullptr);
  EXPECT_EQ(TextOf("PowerGoal"), "0.9");
}

TEST_F(ParameterDialog, StoresEachEditAtOnceWithoutACheck) {
  OpenParameters({ModePower, "T1"});
  Type("Alpha", "0.9");
  EXPECT_EQ(block().T1.Working.Alpha, 0.9);
  EXPECT_EQ(block().T1.Committed.Alpha, 0.05);
  Type("SampleSize", "9.7");
  EXPECT_EQ(block().T1.Working.SampleSize, 9);
  EXPECT_THAT(host_.messages(), IsEmpty());
}

TEST_F(ParameterDialog, ALetterStoresZeroAndOkNamesTheField) {
  OpenParameters({ModePower, "T1"});
  Type("Alpha", "x");
  EXPECT_EQ(block().T1.Working.Alpha, 0);
  Press(ControlAccept);
  EXPECT_EQ(OpenResource(), parameters_);
  ASSERT_EQ(host_.messages().size(), 1u);
  EXPECT_EQ(host_.messages()[0].id, text::RangeReal);
  EXPECT_EQ(
      host_.messages()[0].text,
      "The current value for Alpha is outside the permissible range.\r\nThe appropriate range is "
      "0.0001 <= Alpha <= 0.25.\r\n Current value is 0.");
}

TEST_F(ParameterDialog, OkKeepsAllEditsWhenACheckFails) {
  OpenParameters({ModePower, "T1"});
  Type("Mu", "7");
  Type("SampleSize", "1");
  EXPECT_EQ(Press(ControlAccept), 0);
  EXPECT_EQ(block().T1.Working.Mu, 7);
  EXPECT_EQ(block().T1.Working.SampleSize, 1);
  EXPECT_EQ(block().T1.Committed.Mu, 2);
  EXPECT_THAT(MessageIds(), ElementsAre(text::RangeInt32));
}

TEST_F(ParameterDialog, OkCommitsAndGoesForwardToTheResults) {
  OpenParameters({ModePower, "T1"});
  Type("Mu", "7");
  host_.calls.exits.clear();
  EXPECT_EQ(Press(ControlAcceptToo), 0) << "120 is a second OK";
  ASSERT_EQ(host_.calls.exits.size(), 1u);
  EXPECT_EQ(host_.calls.exits[0].stage, 103);
  EXPECT_EQ(host_.calls.exits[0].kind, 2);
  EXPECT_EQ(host_.calls.exits[0].flag, 0);
  EXPECT_EQ(block().T1.Committed.Mu, 7);
  EXPECT_EQ(OpenResource(), 6105);
}

TEST_F(ParameterDialog, BackForgetsTheEdits) {
  for (const int back : {ControlBack, ControlBackToo}) {
    OpenParameters({ModePower, "T1"});
    Type("Mu", "7");
    host_.calls.exits.clear();
    Press(back);
    ASSERT_EQ(host_.calls.exits.size(), 1u);
    EXPECT_EQ(host_.calls.exits[0].stage, 101);
    EXPECT_EQ(host_.calls.exits[0].kind, 1);
    EXPECT_NE(Find(ControlTasks), nullptr) << "the startup dialog";
    EXPECT_EQ(block().T1.Working.Mu, 2);
  }
}

TEST_F(ParameterDialog, TheNumberTypedIsKeptWholeBehindTheShownDecimals) {
  OpenResults({ModePower, "T1", {{"Mu", "0.123456789012345678"}}});
  Press(ControlChangeParams);
  EXPECT_EQ(TextOf("Mu"), "0.12346");
  EXPECT_EQ(block().T1.Working.Mu, 0.123456789012345678);
}

TEST_F(ParameterDialog, RestoreDefaultsTakesDefaultsAndNotFactory) {
  OpenParameters({ModePower, "T1"});
  block().T1.Defaults.Mu = 33;
  for (const int restore : {ControlRestoreDefaults, ControlRestoreDefaultsToo}) {
    Type("Mu", "7");
    EXPECT_EQ(Press(restore), 1);
    EXPECT_EQ(block().T1.Working.Mu, 33);
    EXPECT_EQ(TextOf("Mu"), "33");
  }
}

TEST_F(ParameterDialog, RadioButtonsStoreTheForm) {
  OpenParameters({ModePower, "T1"});
  EXPECT_EQ(Press("H0Type=lower"), 1);
  EXPECT_EQ(block().T1.Working.H0Type, 2);
  EXPECT_TRUE(IsChecked("H0Type=lower"));
  EXPECT_FALSE(IsChecked("H0Type=two-sided"));
}

TEST_F(ParameterDialog, AFormWithoutAButtonLeavesTheGroupAsItWas) {
  OpenParameters({ModePower, "T1"});
  Press("H0Type=upper");
  block().T1.Working.H0Type = 7;
  Press(ControlRefresh);
  EXPECT_TRUE(IsChecked("H0Type=upper"));
}

TEST_F(ParameterDialog, RefreshLocksShowsAndRestores) {
  OpenParameters({ModePower, "T1"});
  block().T1.Working.Mu = 12;
  EXPECT_EQ(Press(ControlRefresh), 1);
  EXPECT_EQ(TextOf("Mu"), "12");
  EXPECT_EQ(host_.calls.lockResults, 1);
  EXPECT_EQ(host_.calls.unlockResults, 1);
  EXPECT_EQ(host_.calls.restoreResults, 1);
}

TEST_F(ParameterDialog, AnyOtherCommandDoesNothing) {
  OpenParameters({ModePower, "T1"});
  EXPECT_EQ(Press(4711), 0);
  EXPECT_EQ(OpenResource(), parameters_);
}

TEST_F(ParameterDialog, SetsTheEditLimitsFromTheBounds) {
  OpenParameters({ModePower, "T1"});
  EXPECT_EQ(Find("SampleSize")->lower, 2);
  EXPECT_EQ(Find("SampleSize")->upper, 150000);
  EXPECT_EQ(Find("Alpha")->lower, 0.0001);
  EXPECT_EQ(Find("Sigma")->lower, 1e-10);
}

// The true mean's box takes its lower limit from the hypothesized mean.
TEST_F(ParameterDialog, TheTrueMeanTakesTheLowerLimitOfTheHypothesizedMean) {
  block().T1.Lower.Mu0 = -77;
  block().T1.Lower.Mu = -55;
  block().T1.Upper.Mu = 99;
  OpenParameters({ModePower, "T1"});
  EXPECT_EQ(Find("Mu")->lower, -77);
  EXPECT_EQ(Find("Mu")->upper, 99);
}

TEST_F(ParameterDialog, TwoMeansOfferTheGroupToVary) {
  OpenParameters({ModeSampleSize, "T2"});
  EXPECT_EQ(OpenResource(), parameters_);
  EXPECT_TRUE(IsChecked("NToVary=equal"));
  Press("NToVary=n2");
  EXPECT_EQ(block().T2.Working.NToVary, 2);
  OpenParameters({ModePower, "T2"});
  Press(ControlBack);
  OpenParameters({ModePower, "T2"});
  EXPECT_EQ(Find("NToVary=equal"), nullptr) << "power needs no group to vary";
}

TEST_F(ParameterDialog, PairedMeansShowTheirTwoDeviationsAndCorrelation) {
  OpenParameters({ModePower, "T3"});
  EXPECT_EQ(OpenResource(), parameters_);
  EXPECT_EQ(TextOf("Sigma1"), "10");
  EXPECT_EQ(TextOf("Sigma2"), "10");
  EXPECT_EQ(TextOf("BetweenGroupR"), "0.1");
}

TEST_F(ParameterDialog, OpenOfASettingsFileIsCheckedOnlyAtOk) {
  const std::string path = ::testing::TempDir() + "/unchecked.ini";
  FILE* file = std::fopen(path.c_str(), "w");
  std::fputs("[POWER_ANALYSIS_ONE_SAMPLE_TTEST]\nAlpha=0.9\n", file);
  std::fclose(file);
  OpenParameters({ModePower, "T1"});
  host_.openAnswers.push_back(path);
  EXPECT_EQ(Press(ControlOpen), 1);
  EXPECT_EQ(block().T1.Working.Alpha, 0.9);
  EXPECT_EQ(TextOf("Alpha"), "0.9");
  Press(ControlAccept);
  EXPECT_THAT(MessageIds(), ElementsAre(text::RangeReal));
  std::remove(path.c_str());
}

TEST_F(ParameterDialog, CancelOfOpenShowsTheValuesAgain) {
  OpenParameters({ModePower, "T1"});
  block().T1.Working.Mu = 44;
  host_.openAnswers.push_back(std::nullopt);
  EXPECT_EQ(Press(ControlOpen), 1);
  EXPECT_EQ(TextOf("Mu"), "44");
}

TEST_F(ParameterDialog, SaveAsDefaultShowsWhatIsInForce) {
  const testing::TemporaryFolder folder;
  host_.configFolder = folder.path();
  OpenParameters({ModePower, "R2"});
  const int box = ControlOfField("PopulationR2");
  Type(box, "0.4");
  EXPECT_EQ(Press(ControlSaveAsDefault), 1);
  EXPECT_EQ(block().R2.Working.PopulationR2, 0.2);
  EXPECT_EQ(TextOf(box), "0.2");
  EXPECT_THAT(MessageIds(), ElementsAre(text::SettingNotHeldByDefaults));
}

TEST_F(ParameterDialog, DefaultsThatCannotBeWrittenLeaveTheInputs) {
  host_.configFolder.clear();
  OpenParameters({ModePower, "T1"});
  Type("Mu", "5");
  Press(ControlSaveAsDefault);
  EXPECT_THAT(MessageIds(), ElementsAre(text::SettingsNotSaved));
  EXPECT_EQ(block().T1.Working.Mu, 5);
  EXPECT_EQ(TextOf("Mu"), "5");
}

TEST_F(ParameterDialog, WithoutABlockOnlyBackWorks) {
  HeadlessHost host;
  host.failAllocation = 1;
  analysis_.reset();
  std::unique_ptr<CPowerAnalysis> analysis(Zlv6NewAnalysis());
  EXPECT_EQ(host.Start(*analysis), -1) << "the startup dialog opens without values";
  EXPECT_EQ(Block(), nullptr);
  EXPECT_EQ(host.Select(ControlModes, ModeSampleSize), 0);
  EXPECT_THAT(host.messages(), IsEmpty());
  host.Press(ControlBack);
  EXPECT_EQ(host.dialog(), nullptr);
}

// What is open goes where Back leads even when the values have gone.
TEST_F(ParameterDialog, EveryPageClosesWithoutABlock) {
  for (const bool results : {false, true}) {
    for (const int button : {ControlBack, ControlBackToo}) {
      SCOPED_TRACE((results ? "results " : "parameters ") + std::to_string(button));
      OpenParameters({ModePower, "T1"});
      if (results) {
        Press(ControlAccept);
      }
      const int open = OpenResource();
      host_.calls.exits.clear();
      PowerSettingsHead* settings = Module().settings;
      Module().settings = nullptr;
      for (const ControlName& other : std::initializer_list<ControlName>{
               ControlAccept, ControlChangeParams, ControlRefresh, ControlPowerCharts,
               ControlRestoreDefaults, "H0Type=upper"}) {
        EXPECT_EQ(Press(other), 0) << other;
        EXPECT_EQ(OpenResource(), open) << other;
      }
      EXPECT_THAT(host_.calls.exits, IsEmpty());
      EXPECT_EQ(Press(button), 1);
      Module().settings = settings;
      ASSERT_EQ(host_.calls.exits.size(), 1u);
      EXPECT_EQ(host_.calls.exits[0].stage, results ? StageCompute : StageStartup);
      EXPECT_EQ(host_.calls.exits[0].kind, ExitBack);
      EXPECT_THAT(host_.messages(), IsEmpty());
      while (host_.dialog() != nullptr) {
        Press(ControlBack);
      }
      host_.Start(*analysis_);
    }
  }
}

TEST_F(ParameterDialog, EveryControlHasANameAndAnEditATip) {
  for (const char* family : {"T1", "T2", "T3"}) {
    for (const int mode : {ModePower, ModeSampleSize}) {
      OpenParameters({mode, family});
      for (const PageSpec& page : form().spec().pages) {
        for (const ControlSpec& control : page.controls) {
          EXPECT_FALSE(control.name.empty()) << control.number;
          EXPECT_FALSE(control.caption.empty()) << control.name;
          EXPECT_NE(control.number, 0) << control.name;
          if (control.kind == ControlKind::RealEdit || control.kind == ControlKind::IntEdit) {
            EXPECT_THAT(control.help, HasSubstr("<")) << control.name;
          }
        }
      }
      Press(ControlBack);
    }
  }
}

TEST_F(ParameterDialog, ATaskWhoseDialogDoesNotComeUpShowsNothing) {
  host_.failDialog = true;
  OpenParameters({ModePower, "T1"});
  EXPECT_EQ(OpenResource(), 0);
  EXPECT_THAT(host_.messages(), IsEmpty());
}

}  // namespace
}  // namespace poweranalysis
