#include <gmock/gmock.h>

#include <cmath>

#include "dialogs/Controls.h"
#include "dialogs/DialogRun.h"
#include "support/TemporaryFolder.h"

namespace poweranalysis {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

using ParameterDialog = DialogRun;

TEST_F(ParameterDialog, OpensOnTheResourceOfTheCatalogue) {
  OpenParameters(ModePower, "T1");
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
  OpenParameters(ModePower, "T1");
  EXPECT_EQ(TextOf(104), "25");
  EXPECT_EQ(TextOf(108), "0");
  EXPECT_EQ(TextOf(112), "2");
  EXPECT_EQ(TextOf(111), "0.05");
  EXPECT_EQ(TextOf(119), "10");
  EXPECT_TRUE(form().IsDlgButtonChecked(1210));
  EXPECT_EQ(form().Find(1210)->spec.caption, "2-tailed ( Mu = Mu0 )");
  EXPECT_EQ(form().Find(1211)->spec.caption, "1-tailed ( Mu <= Mu0 )");
  EXPECT_EQ(form().Find(1212)->spec.caption, "1-tailed ( Mu >= Mu0 )");
  EXPECT_EQ(form().Find(114), nullptr) << "a power task has no power goal";
}

TEST_F(ParameterDialog, OfSampleSizeHasThePowerGoalInPlaceOfTheSize) {
  OpenParameters(ModeSampleSize, "T1");
  EXPECT_EQ(OpenResource(), 6107);
  EXPECT_EQ(form().Find(104), nullptr);
  EXPECT_EQ(TextOf(114), "0.9");
}

TEST_F(ParameterDialog, StoresEachEditAtOnceWithoutACheck) {
  OpenParameters(ModePower, "T1");
  host_.Type(111, "0.9");
  EXPECT_EQ(block().T1.Working.Alpha, 0.9);
  EXPECT_EQ(block().T1.Committed.Alpha, 0.05);
  host_.Type(104, "9.7");
  EXPECT_EQ(block().T1.Working.SampleSize, 9);
  EXPECT_THAT(host_.messages(), IsEmpty());
}

TEST_F(ParameterDialog, ALetterStoresZeroAndOkNamesTheField) {
  OpenParameters(ModePower, "T1");
  host_.Type(111, "x");
  EXPECT_EQ(block().T1.Working.Alpha, 0);
  host_.Press(1);
  EXPECT_EQ(OpenResource(), 6102);
  ASSERT_EQ(host_.messages().size(), 1u);
  EXPECT_EQ(host_.messages()[0].id, 12853);
  EXPECT_EQ(
      host_.messages()[0].text,
      "The current value for Alpha is outside the permissible range.\r\nThe appropriate range is "
      "0.0001 <= Alpha <= 0.25.\r\n Current value is 0.");
}

TEST_F(ParameterDialog, OkKeepsAllEditsWhenACheckFails) {
  OpenParameters(ModePower, "T1");
  host_.Type(112, "7");
  host_.Type(104, "1");
  EXPECT_EQ(host_.Press(1), 0);
  EXPECT_EQ(block().T1.Working.Mu, 7);
  EXPECT_EQ(block().T1.Working.SampleSize, 1);
  EXPECT_EQ(block().T1.Committed.Mu, 2);
  EXPECT_THAT(MessageIds(), ElementsAre(12852));
}

TEST_F(ParameterDialog, OkCommitsAndGoesForwardToTheResults) {
  OpenParameters(ModePower, "T1");
  host_.Type(112, "7");
  host_.calls.exits.clear();
  EXPECT_EQ(host_.Press(120), 0) << "120 is a second OK";
  ASSERT_EQ(host_.calls.exits.size(), 1u);
  EXPECT_EQ(host_.calls.exits[0].stage, 103);
  EXPECT_EQ(host_.calls.exits[0].kind, 2);
  EXPECT_EQ(host_.calls.exits[0].flag, 0);
  EXPECT_EQ(block().T1.Committed.Mu, 7);
  EXPECT_EQ(OpenResource(), 6105);
}

TEST_F(ParameterDialog, BackForgetsTheEdits) {
  for (const int back : {2, 123}) {
    OpenParameters(ModePower, "T1");
    host_.Type(112, "7");
    host_.calls.exits.clear();
    host_.Press(back);
    ASSERT_EQ(host_.calls.exits.size(), 1u);
    EXPECT_EQ(host_.calls.exits[0].stage, 101);
    EXPECT_EQ(host_.calls.exits[0].kind, 1);
    EXPECT_EQ(OpenResource(), 6100);
    EXPECT_EQ(block().T1.Working.Mu, 2);
  }
}

TEST_F(ParameterDialog, TheNumberTypedIsKeptWholeBehindTheShownDecimals) {
  OpenParameters(ModePower, "T1");
  host_.Type(112, "0.123456789012345678");
  host_.Press(1);
  host_.Press(208);
  EXPECT_EQ(TextOf(112), "0.12346");
  EXPECT_EQ(block().T1.Working.Mu, 0.123456789012345678);
}

TEST_F(ParameterDialog, RestoreDefaultsTakesDefaultsAndNotFactory) {
  OpenParameters(ModePower, "T1");
  block().T1.Defaults.Mu = 33;
  for (const int restore : {118, 12400}) {
    host_.Type(112, "7");
    EXPECT_EQ(host_.Press(restore), 1);
    EXPECT_EQ(block().T1.Working.Mu, 33);
    EXPECT_EQ(TextOf(112), "33");
  }
}

TEST_F(ParameterDialog, RadioButtonsStoreTheForm) {
  OpenParameters(ModePower, "T1");
  EXPECT_EQ(host_.Press(1212), 1);
  EXPECT_EQ(block().T1.Working.H0Type, 2);
  EXPECT_TRUE(form().IsDlgButtonChecked(1212));
  EXPECT_FALSE(form().IsDlgButtonChecked(1210));
}

TEST_F(ParameterDialog, AFormWithoutAButtonLeavesTheGroupAsItWas) {
  OpenParameters(ModePower, "T1");
  host_.Press(1211);
  block().T1.Working.H0Type = 7;
  host_.Press(133);
  EXPECT_TRUE(form().IsDlgButtonChecked(1211));
}

TEST_F(ParameterDialog, RefreshLocksShowsAndRestores) {
  OpenParameters(ModePower, "T1");
  block().T1.Working.Mu = 12;
  EXPECT_EQ(host_.Press(133), 1);
  EXPECT_EQ(TextOf(112), "12");
  EXPECT_EQ(host_.calls.lockResults, 1);
  EXPECT_EQ(host_.calls.unlockResults, 1);
  EXPECT_EQ(host_.calls.restoreResults, 1);
}

TEST_F(ParameterDialog, AnyOtherCommandDoesNothing) {
  OpenParameters(ModePower, "T1");
  EXPECT_EQ(host_.Press(4711), 0);
  EXPECT_EQ(OpenResource(), 6102);
}

TEST_F(ParameterDialog, SetsTheEditLimitsFromTheBounds) {
  OpenParameters(ModePower, "T1");
  EXPECT_EQ(form().Find(104)->lower, 2);
  EXPECT_EQ(form().Find(104)->upper, 150000);
  EXPECT_EQ(form().Find(111)->lower, 0.0001);
  EXPECT_EQ(form().Find(119)->lower, 1e-10);
}

// The true mean's box takes its lower limit from the hypothesized mean.
TEST_F(ParameterDialog, TheTrueMeanTakesTheLowerLimitOfTheHypothesizedMean) {
  block().T1.Lower.Mu0 = -77;
  block().T1.Lower.Mu = -55;
  block().T1.Upper.Mu = 99;
  OpenParameters(ModePower, "T1");
  EXPECT_EQ(form().Find(112)->lower, -77);
  EXPECT_EQ(form().Find(112)->upper, 99);
}

TEST_F(ParameterDialog, TwoMeansOfferTheGroupToVary) {
  OpenParameters(ModeSampleSize, "T2");
  EXPECT_EQ(OpenResource(), 6117);
  EXPECT_TRUE(form().IsDlgButtonChecked(22030));
  host_.Press(22032);
  EXPECT_EQ(block().T2.Working.NToVary, 2);
  OpenParameters(ModePower, "T2");
  host_.Press(2);
  OpenParameters(ModePower, "T2");
  EXPECT_EQ(form().Find(22030), nullptr) << "power needs no group to vary";
}

TEST_F(ParameterDialog, PairedMeansShowTheirTwoDeviationsAndCorrelation) {
  OpenParameters(ModePower, "T3");
  EXPECT_EQ(OpenResource(), 6127);
  EXPECT_EQ(TextOf(21066), "10");
  EXPECT_EQ(TextOf(21067), "10");
  EXPECT_EQ(TextOf(21001), "0.1");
}

TEST_F(ParameterDialog, OpenOfASettingsFileIsCheckedOnlyAtOk) {
  const std::string path = ::testing::TempDir() + "/unchecked.ini";
  FILE* file = std::fopen(path.c_str(), "w");
  std::fputs("[POWER_ANALYSIS_ONE_SAMPLE_TTEST]\nAlpha=0.9\n", file);
  std::fclose(file);
  OpenParameters(ModePower, "T1");
  host_.openAnswers.push_back(path);
  EXPECT_EQ(host_.Press(9018), 1);
  EXPECT_EQ(block().T1.Working.Alpha, 0.9);
  EXPECT_EQ(TextOf(111), "0.9");
  host_.Press(1);
  EXPECT_THAT(MessageIds(), ElementsAre(12853));
  std::remove(path.c_str());
}

TEST_F(ParameterDialog, CancelOfOpenShowsTheValuesAgain) {
  OpenParameters(ModePower, "T1");
  block().T1.Working.Mu = 44;
  host_.openAnswers.push_back(std::nullopt);
  EXPECT_EQ(host_.Press(9018), 1);
  EXPECT_EQ(TextOf(112), "44");
}

TEST_F(ParameterDialog, SaveAsDefaultShowsWhatIsInForce) {
  const testing::TemporaryFolder folder;
  host_.configFolder = folder.path();
  OpenParameters(ModePower, "R2");
  const int box = ControlOfField("PopulationR2");
  host_.Type(box, "0.4");
  EXPECT_EQ(host_.Press(13402), 1);
  EXPECT_EQ(block().R2.Working.PopulationR2, 0.2);
  EXPECT_EQ(TextOf(box), "0.2");
  EXPECT_THAT(MessageIds(), ElementsAre(text::SettingNotHeldByDefaults));
}

TEST_F(ParameterDialog, DefaultsThatCannotBeWrittenLeaveTheInputs) {
  host_.configFolder.clear();
  OpenParameters(ModePower, "T1");
  host_.Type(112, "5");
  host_.Press(13402);
  EXPECT_THAT(MessageIds(), ElementsAre(text::SettingsNotSaved));
  EXPECT_EQ(block().T1.Working.Mu, 5);
  EXPECT_EQ(TextOf(112), "5");
}

TEST_F(ParameterDialog, WithoutABlockOnlyBackWorks) {
  HeadlessHost host;
  host.failAllocation = 1;
  analysis_.reset();
  std::unique_ptr<CPowerAnalysis> analysis(Zlv6NewAnalysis());
  EXPECT_EQ(host.Start(*analysis), -1) << "the startup dialog opens without values";
  EXPECT_EQ(Block(), nullptr);
  EXPECT_EQ(host.Select(101, 1), 0);
  EXPECT_THAT(host.messages(), IsEmpty());
  host.Press(2);
  EXPECT_EQ(host.dialog(), nullptr);
}

// What is open goes where Back leads even when the values have gone.
TEST_F(ParameterDialog, EveryPageClosesWithoutABlock) {
  for (const bool results : {false, true}) {
    for (const int button : {ControlBack, ControlBackToo}) {
      SCOPED_TRACE((results ? "results " : "parameters ") + std::to_string(button));
      OpenParameters(ModePower, "T1");
      if (results) {
        host_.Press(ControlAccept);
      }
      const int open = OpenResource();
      host_.calls.exits.clear();
      PowerSettingsHead* settings = Module().settings;
      Module().settings = nullptr;
      for (const int other : {ControlAccept, ControlChangeParams, ControlRefresh,
                              ControlPowerCharts, ControlRestoreDefaults, 1211}) {
        EXPECT_EQ(host_.Press(other), 0) << other;
        EXPECT_EQ(OpenResource(), open) << other;
      }
      EXPECT_THAT(host_.calls.exits, IsEmpty());
      EXPECT_EQ(host_.Press(button), 1);
      Module().settings = settings;
      ASSERT_EQ(host_.calls.exits.size(), 1u);
      EXPECT_EQ(host_.calls.exits[0].stage, results ? StageCompute : StageStartup);
      EXPECT_EQ(host_.calls.exits[0].kind, ExitBack);
      EXPECT_THAT(host_.messages(), IsEmpty());
      while (host_.dialog() != nullptr) {
        host_.Press(ControlBack);
      }
      host_.Start(*analysis_);
    }
  }
}

TEST_F(ParameterDialog, EveryControlHasANameAndAnEditATip) {
  for (const char* family : {"T1", "T2", "T3"}) {
    for (const int mode : {ModePower, ModeSampleSize}) {
      OpenParameters(mode, family);
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
      host_.Press(2);
    }
  }
}

TEST_F(ParameterDialog, AnalysisOfATaskWithoutDialogsShowsNothing) {
  OpenParameters(ModeInterval, "T1");
  EXPECT_EQ(OpenResource(), 0);
  EXPECT_THAT(host_.messages(), IsEmpty());
}

TEST(Controls, NoNumberServesTwoFieldsOrAButton) {
  std::map<int, std::string> owner;
  for (const int button :
       {1,   120, 2,   123, 118, 12400, 10710, 133, 208, 201, 9015, 116, 9018, 13402,
        203, 204, 205, 206, 207, 603,   604,   605, 606, 101, 102,  103, 105}) {
    owner[button] = "button";
  }
  std::map<std::string, int> numbers;
  for (const FamilyTable& family : FamilyTables()) {
    for (const Field& field : family.fields) {
      if (const int number = ControlOfField(field.name); number != 0) {
        numbers[field.name] = number;
      }
    }
  }
  for (const auto& [field, number] : numbers) {
    EXPECT_TRUE(owner.emplace(number, field).second) << field << " and " << owner[number];
  }
  EXPECT_EQ(numbers.at("BetweenGroupR"), 21001);
  EXPECT_EQ(numbers.at("XObserved"), 21078);
  EXPECT_EQ(numbers.at("RMSSE_Row"), 21050 + 1);
}

TEST(Controls, APageStandsOneAboveItsFrameButForOne) {
  EXPECT_EQ(PageOfFrame(6102), 6103);
  EXPECT_EQ(PageOfFrame(6307), 6309) << "6308 is a frame of its own";
}

}  // namespace
}  // namespace poweranalysis
