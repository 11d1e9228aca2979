#include <set>

#include "dialogs/FamilyDialogs.h"
#include "dialogs/FamilyRun.h"

// What every results dialog does where the null hypothesis is true, or nearly so.
namespace poweranalysis {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::SizeIs;

constexpr int kNullTrue = text::NullHypothesisTrue;
constexpr int kNullNearlyTrue = text::NullHypothesisNearlyTrue;

// A dialog whose built-in values, but for one field, are those of its null hypothesis.
struct NullCase {
  const char* family;
  int mode;
  const char* field;
  const char* atNull;
  // Too near to the null for a search, by what the message says; a power is computed there.
  const char* nearNull;
  const char* tolerance;
  // The chart that goes along the effect, whatever the effect of the record is.
  const char* along;
};

// In the one-way analysis of variance the effect's range leaves out 0; the effects of the two-way
// one are checked one by one. They have tests of their own below.
const NullCase kCases[] = {
    {"T1", ModePower, "Mu", "0", "0.009", "", "power-vs-es"},
    {"T1", ModeSampleSize, "Mu", "0", "0.009", "0.001", "n-vs-es"},
    {"T2", ModePower, "Mu1", "0", "0.009", "", "power-vs-es"},
    {"T2", ModeSampleSize, "Mu1", "0", "0.009", "0.001", "n-vs-es"},
    {"T3", ModePower, "Mu1", "0", "0.009", "", "power-vs-es"},
    {"T3", ModeSampleSize, "Mu1", "0", "0.009", "0.001", "n-vs-es"},
    {"PC", ModePower, "StandardizedEffect", "0", "0.009", "", "power-vs-es"},
    {"PC", ModeSampleSize, "StandardizedEffect", "0", "0.009", "0.01", "n-vs-es"},
    {"V1", ModePower, "PopulationVariance", "1", "1.019", "", "power-vs-variance"},
    {"V1", ModeSampleSize, "PopulationVariance", "1", "1.019", "0.02", "df-vs-variance"},
    {"V2", ModePower, "Var1", "1", "1.0009", "", "power-vs-ratio"},
    {"V2", ModeSampleSize, "Ratio", "1", "1.0009", "0.001", "df-vs-ratio"},
    {"R", ModePower, "Rho", "0", "0.0009", "", "power-vs-rho"},
    {"R", ModeSampleSize, "Rho", "0", "0.0009", "0.001", "n-vs-rho"},
    {"Z2R", ModePower, "Rho1", "0", "0.0009", "", "power-vs-rho"},
    {"Z2R", ModeSampleSize, "Rho1", "0", "0.0009", "0.001", "n-vs-rho"},
    {"R2", ModePower, "PopulationR2", "0", "0.049", "", "power-vs-p2"},
    {"R2", ModeSampleSize, "PopulationR2", "0", "0.049", "0.05", "n-vs-p2"},
    {"P1", ModePower, "Pi", "0.5", "0.50009", "", "power-vs-pi"},
    {"P1", ModeSampleSize, "Pi", "0.5", "0.50009", "0.0001", "n-vs-pi"},
    {"P2", ModePower, "Pi1", "0.5", "0.50009", "", "power-vs-pi1"},
    {"P2", ModeSampleSize, "Pi1", "0.5", "0.50009", "0.0001", "n-vs-pi1"},
    {"QMAC", ModePower, "Delta", "0", "0.00009", "", "power-vs-delta"},
    {"QMAC", ModeSampleSize, "Delta", "0", "0.00009", "0.0001", "n-vs-delta"},
    {"SA1", ModePower, "Pi2", "0.5", "0.5009", "", "power-vs-pi2"},
    {"SA1", ModeSampleSize, "Pi2", "0.5", "0.5009", "0.001", "n-vs-pi2"},
    {"SA2", ModePower, "Lambda2", "0.5", "0.5009", "", "power-vs-lambda2"},
    {"SA2", ModeSampleSize, "Lambda2", "0.5", "0.5009", "0.001", "n-vs-lambda2"},
    {"SA3", ModePower, "Lambda2", "0.5", "0.5009", "", "power-vs-lambda2"},
    {"SA3", ModeSampleSize, "Lambda2", "0.5", "0.5009", "0.001", "n-vs-lambda2"},
    {"SEM", ModePower, "R", "0.05", "0.0509", "", "power-vs-rmsea"},
    {"SEM", ModeSampleSize, "R", "0.05", "0.0509", "0.001", "n-vs-rmsea"},
};

class NullHypotheses : public FamilyRun {
 protected:
  // Opens the results of a design from the startup dialog, without messages and output.
  void OpenAt(const NullCase& c, const char* value) {
    OpenParameters({c.mode, c.family});
    Press(ControlRestoreDefaults);
    Type(c.field, value);
    parameters_ = OpenResource();
    Press(ControlAccept);
    results_ = OpenResource();
    ASSERT_NE(results_, parameters_);
    Forget();
  }
  void Forget() {
    host_.TakeWorkbook();
    host_.ClearMessages();
  }
  std::vector<ControlSpec> Charts() {
    const int first = ControlPowerCharts;
    std::vector<ControlSpec> charts;
    for (const ControlSpec& control : form().spec().pages[0].controls) {
      if (control.kind == ControlKind::Button && control.number >= first &&
          control.number != ControlChangeParams) {
        charts.push_back(control);
      }
    }
    return charts;
  }

  void ExpectBackAtTheParameters(int message) {
    EXPECT_EQ(Press(ControlAccept), 0);
    EXPECT_EQ(OpenResource(), parameters_);
    EXPECT_THAT(MessageIds(), ElementsAre(message));
    EXPECT_THAT(host_.workbook().items, IsEmpty());
  }
  // Of the open dialog's charts that one alone is drawn which has no effect of its own.
  void ExpectOneChartDrawn(const char* along, int message) {
    int drawn = 0;
    for (const ControlSpec& chart : Charts()) {
      SCOPED_TRACE(chart.name);
      Forget();
      if (chart.name == along) {
        ++drawn;
        EXPECT_EQ(Press(chart.number), 1);
        EXPECT_THAT(Items<Chart>(), SizeIs(1));
        EXPECT_THAT(MessageIds(), IsEmpty());
      } else {
        EXPECT_EQ(Press(chart.number), 0);
        EXPECT_THAT(Items<Chart>(), IsEmpty());
        EXPECT_THAT(MessageIds(), ElementsAre(message));
      }
      EXPECT_EQ(OpenResource(), results_) << "a chart stays";
    }
    EXPECT_EQ(drawn, 1);
  }

  int parameters_ = 0;
  int results_ = 0;
};

std::string NameOf(const NullCase& c) {
  return std::string(c.family) + (c.mode == ModePower ? " power" : " size");
}

TEST_F(NullHypotheses, AreHeldAgainstTheDialogsOfAllFamilies) {
  std::set<std::string> names = {"AV1 power", "AV1 size", "AV2 power", "AV2 size"};
  for (const NullCase& c : kCases) {
    EXPECT_TRUE(names.insert(NameOf(c)).second) << NameOf(c);
  }
  EXPECT_EQ(names.size(), 36u);
}

TEST_F(NullHypotheses, LeadFromACalculationBackToTheParameters) {
  for (const NullCase& c : kCases) {
    SCOPED_TRACE(NameOf(c));
    OpenAt(c, c.atNull);
    ExpectBackAtTheParameters(kNullTrue);
  }
}

TEST_F(NullHypotheses, RefuseThePlotsThatFixTheEffect) {
  for (const NullCase& c : kCases) {
    SCOPED_TRACE(NameOf(c));
    OpenAt(c, c.atNull);
    ExpectOneChartDrawn(c.along, kNullTrue);
  }
}

TEST_F(NullHypotheses, NearlyTrueLeadFromASearchBackToTheParameters) {
  for (const NullCase& c : kCases) {
    if (c.mode == ModeSampleSize) {
      SCOPED_TRACE(NameOf(c));
      OpenAt(c, c.nearNull);
      ExpectBackAtTheParameters(kNullNearlyTrue);
      ASSERT_THAT(host_.messages(), SizeIs(1));
      EXPECT_THAT(host_.messages()[0].text, HasSubstr(std::string("within a tolerance of ") +
                                                      c.tolerance + " of being true"));
    }
  }
}

TEST_F(NullHypotheses, NearlyTrueRefuseThePlotsOfSizesThatFixTheEffect) {
  for (const NullCase& c : kCases) {
    if (c.mode == ModeSampleSize) {
      SCOPED_TRACE(NameOf(c));
      OpenAt(c, c.nearNull);
      ExpectOneChartDrawn(c.along, kNullNearlyTrue);
    }
  }
}

TEST_F(NullHypotheses, NearlyTrueStillHaveAPower) {
  for (const NullCase& c : kCases) {
    if (c.mode == ModePower) {
      SCOPED_TRACE(NameOf(c));
      OpenAt(c, c.nearNull);
      EXPECT_EQ(Press(ControlAccept), 1);
      EXPECT_EQ(OpenResource(), results_);
      EXPECT_THAT(MessageIds(), IsEmpty());
      EXPECT_FALSE(IsMissing(LastTable().rows.back().values.front()));
    }
  }
}

TEST_F(NullHypotheses, OfOneWayTestsAreRefusedInASearchAlone) {
  const NullCase power = {"AV1", ModePower, "RMSSE", "", "0.009", "", ""};
  OpenAt(power, power.nearNull);
  EXPECT_EQ(Press(ControlAccept), 1);
  for (const ControlSpec& chart : Charts()) {
    EXPECT_EQ(Press(chart.number), 1) << chart.name;
  }
  EXPECT_THAT(MessageIds(), IsEmpty());
  const NullCase size = {"AV1", ModeSampleSize, "RMSSE", "", "0.009", "0.01", "n-vs-rmsse"};
  OpenAt(size, size.nearNull);
  ExpectOneChartDrawn(size.along, kNullNearlyTrue);
  Forget();
  ExpectBackAtTheParameters(kNullNearlyTrue);
}

TEST_F(NullHypotheses, OfTwoWayTestsLeaveTheOtherEffectsTheirAnswersAndPlots) {
  for (const char* effect : {"RMSSE_Row", "RMSSE_Col", "RMSSE_Int"}) {
    for (const auto& [mode, value, message] :
         {std::tuple(ModePower, "0", kNullTrue), std::tuple(ModeSampleSize, "0", kNullTrue),
          std::tuple(ModeSampleSize, "0.009", kNullNearlyTrue)}) {
      const NullCase c = {"AV2", mode, effect, "", "", "", ""};
      SCOPED_TRACE(NameOf(c) + " at " + value + " for " + effect);
      OpenAt(c, value);
      EXPECT_EQ(Press(ControlAccept), 1);
      EXPECT_EQ(OpenResource(), results_);
      EXPECT_THAT(MessageIds(), ElementsAre(message));
      for (const ControlSpec& chart : Charts()) {
        SCOPED_TRACE(chart.name);
        Forget();
        const bool along = chart.name.find("rmsse") != std::string::npos;
        EXPECT_EQ(Press(chart.number), 1);
        EXPECT_THAT(Items<Chart>(), SizeIs(along ? 3 : 2));
        EXPECT_THAT(MessageIds(), along ? std::vector<int>{} : std::vector<int>{message});
      }
    }
  }
}

}  // namespace
}  // namespace poweranalysis
