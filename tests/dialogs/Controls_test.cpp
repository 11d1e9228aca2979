#include "dialogs/Controls.h"

#include <gtest/gtest.h>

#include <map>
#include <sstream>
#include <string>
#include <vector>

#include "dialogs/FamilyRun.h"

// The numbers that files, macros and screens know the controls by. The other tests name them.
namespace poweranalysis {
namespace {

const std::map<std::string, int>& NumbersOfFields() {
  static const std::map<std::string, int> numbers = [] {
    std::istringstream text(R"(
Alpha 111 AlphaEnd 139 AlphaStart 138 BetweenGroupR 21001 Columns 21002 Confidence 705
Continuity 22050 CumP 21003 D 21004 DegreesOfFreedom 21005 Delta 21006 DeltaEnd 21007
DeltaStart 21008 Df1 21009 Df2 21010 DfEnd 21011 DfIntervals 21012 DfStart 21013
EndRMSSE 21014 EqualN 22051 EsEnd 137 EsStart 136 Eta 21015 EtaEnd 21016 EtaStart 21017
FObserved 21079 Groups 21018 Lambda1 21019 Lambda2 21020 Lambda2End 21021
Lambda2Start 21022 Mu 112 Mu0 108 Mu1 21023 Mu2 21024 N 21025 NEnd 130 NInterval 140
NStart 129 NullHypothesizedVariance 21026 NumberOfGroups 21027 ObservedChiSquare 21028
OneMinusP 22070 P 21029 PObserved 21030 Pi 21031 Pi0 21032 Pi1 21033 Pi2 21034
Pi2End 21035 Pi2Start 21036 PiEnd 21037 PiStart 21038 PopulationR2 21039
PopulationVariance 21040 PowerEnd 406 PowerGoal 114 PowerStart 403 R 21041 R0 21042
R2End 21043 R2Null 21044 R2Observed 21045 R2Start 21046 REnd 21047 RMSSE 21048
RMSSE_Col 21049 RMSSE_Int 21050 RMSSE_Row 21051 RObserved 21052 RStart 21053 Ratio 21054
RatioEnd 21055 RatioStart 21056 Rho 21057 Rho0 21058 Rho1 21059 Rho2 21060 RhoEnd 21061
RhoStart 21062 Rows 21063 SampleSize 104 SampleSizeN1 21064 SampleSizeN2 21065 Sigma 119
Sigma1 21066 Sigma2 21067 StandardizedEffect 21068 StartRMSSE 21069
SumOfSquaredWeights 21070 T 21071 T0 21072 TObserved 701 TotalNumberOfVars 21073 Var1 21074
Var2 21075 VarEnd 21076 VarStart 21077 XObserved 21078 ComputeT 21101 ComputeP 21102
ComputeDelta 21103 ActualValue 21104
)");
    std::map<std::string, int> read;
    int number = 0;
    for (std::string field; text >> field >> number;) {
      read[field] = number;
    }
    return read;
  }();
  return numbers;
}

// Of the button of value 0; the others count on.
const std::map<std::string, int> kNumbersOfRadios = {
    {"Algorithm", 22020}, {"DfToVary", 22040}, {"EffectToTest", 22010}, {"H0Type", 1210},
    {"ModelType", 22000}, {"NToVary", 22030},  {"WhatToCompute", 22060}};

TEST(Controls, AFieldKeepsItsNumber) {
  std::map<std::string, int> fields;
  std::map<std::string, int> radios;
  for (const FamilyTable& family : FamilyTables()) {
    for (const Field& field : family.fields) {
      const int base = RadioBaseOf(field.name);
      (base != 0 ? radios : fields)[field.name] = base != 0 ? base : ControlOfField(field.name);
    }
  }
  EXPECT_EQ(fields, NumbersOfFields());
  EXPECT_EQ(radios, kNumbersOfRadios);
}

TEST(Controls, AButtonKeepsItsNumber) {
  const std::vector<int> numbers = {ControlAccept,
                                    ControlAcceptToo,
                                    ControlBack,
                                    ControlBackToo,
                                    ControlRestoreDefaults,
                                    ControlRestoreDefaultsToo,
                                    ControlOutputOptions,
                                    ControlRefresh,
                                    ControlChangeParams,
                                    ControlSummary,
                                    ControlSave,
                                    ControlSaveAs,
                                    ControlOpen,
                                    ControlSaveAsDefault,
                                    ControlPowerCharts,
                                    ControlSizeCharts,
                                    ControlCompute,
                                    ControlUnknown,
                                    ControlActualValue,
                                    ControlProbabilityLabel,
                                    ControlActualValueLabel};
  EXPECT_THAT(numbers,
              ::testing::ElementsAre(1, 120, 2, 123, 118, 12400, 10710, 133, 208, 201, 9015, 116,
                                     9018, 13402, 203, 603, 815, 22060, 22080, 22081, 22082));
  EXPECT_EQ(ControlOk, ControlAccept);
  EXPECT_EQ(ControlCancel, ControlBack);
  EXPECT_EQ(ControlOptions, ControlOutputOptions);
  EXPECT_EQ(ControlModes, 101);
  EXPECT_EQ(ControlTasks, 102);
  EXPECT_EQ(ControlTaskHelp, 103);
  EXPECT_EQ(ControlModeHelp, 105);
}

TEST(Controls, NoNumberServesTwoFieldsOrAButton) {
  std::map<int, std::string> owner;
  for (const int button :
       {1,   120, 2,   123, 118, 12400, 10710, 133, 208, 201, 9015, 116, 9018, 13402,
        203, 204, 205, 206, 207, 603,   604,   605, 606, 101, 102,  103, 105}) {
    owner[button] = "button";
  }
  for (const auto& [field, number] : NumbersOfFields()) {
    EXPECT_TRUE(owner.emplace(number, field).second) << field << " and " << owner[number];
  }
}

TEST(Controls, APageStandsOneAboveItsFrameButForOne) {
  EXPECT_EQ(PageOfFrame(6102), 6103);
  EXPECT_EQ(PageOfFrame(6307), 6309) << "6308 is a frame of its own";
}

TEST(Controls, ChartsKeepTheirOrder) {
  std::string charts;
  for (const ResultsDialogTable* dialog : AllResultsDialogs()) {
    charts += "\n" + NameOf(DesignOf(*dialog)) + ":";
    for (const ChartButton& button : ChartButtons(*dialog)) {
      charts += std::string(" ") + button.chart.name;
    }
  }
  EXPECT_EQ(charts, R"(
T1 power: power-vs-n power-vs-es power-vs-alpha
T1 size: n-vs-es n-vs-alpha n-vs-power
T2 power: power-vs-n power-vs-n1 power-vs-n2 power-vs-es power-vs-alpha
T2 size: n-vs-es n-vs-alpha n-vs-power
T3 power: power-vs-n power-vs-es power-vs-alpha
T3 size: n-vs-es n-vs-alpha n-vs-power
PC power: power-vs-n power-vs-es power-vs-alpha
PC size: n-vs-power n-vs-es n-vs-alpha
AV1 power: power-vs-n power-vs-rmsse power-vs-alpha
AV1 size: n-vs-rmsse n-vs-alpha n-vs-power
AV2 power: power-vs-n power-vs-rmsse power-vs-alpha
AV2 size: n-vs-power n-vs-rmsse n-vs-alpha
V1 power: power-vs-df power-vs-variance power-vs-alpha
V1 size: df-vs-variance df-vs-alpha df-vs-power
V2 power: power-vs-alpha power-vs-df power-vs-df1 power-vs-df2 power-vs-ratio
V2 size: df-vs-alpha df-vs-power df-vs-ratio
R power: power-vs-n power-vs-rho power-vs-alpha
R size: n-vs-power n-vs-rho n-vs-alpha
Z2R power: power-vs-n power-vs-n1 power-vs-n2 power-vs-rho power-vs-alpha
Z2R size: n-vs-power n-vs-rho n-vs-alpha
R2 power: power-vs-n power-vs-p2 power-vs-alpha
R2 size: n-vs-p2 n-vs-alpha n-vs-power
P1 power: power-vs-n power-vs-alpha power-vs-pi
P1 size: n-vs-power n-vs-alpha n-vs-pi
P2 power: power-vs-n power-vs-n1 power-vs-n2 power-vs-pi1 power-vs-alpha
P2 size: n-vs-power n-vs-pi1 n-vs-alpha
QMAC power: power-vs-n power-vs-delta power-vs-eta power-vs-alpha
QMAC size: n-vs-power n-vs-delta n-vs-eta n-vs-alpha
SA1 power: power-vs-n power-vs-alpha power-vs-pi2
SA1 size: n-vs-power n-vs-alpha n-vs-pi2
SA2 power: power-vs-n power-vs-lambda2 power-vs-alpha
SA2 size: n-vs-power n-vs-lambda2 n-vs-alpha
SA3 power: power-vs-n power-vs-lambda2 power-vs-alpha
SA3 size: n-vs-power n-vs-lambda2 n-vs-alpha
SEM power: power-vs-n power-vs-alpha power-vs-rmsea power-vs-df
SEM size: n-vs-power n-vs-alpha n-vs-rmsea n-vs-df)");
}

TEST(Controls, AChartsButtonHasItsCaption) {
  std::map<std::string, std::string> captions;
  for (const ResultsDialogTable* dialog : AllResultsDialogs()) {
    for (const ChartButton& button : ChartButtons(*dialog)) {
      captions[button.chart.name] = LoadText(button.chart.caption);
    }
  }
  std::string all;
  for (const auto& [name, caption] : captions) {
    all += "\n" + name + ": " + caption;
  }
  EXPECT_EQ(all, R"(
df-vs-alpha: Df vs. Alpha
df-vs-power: Df vs. Power
df-vs-ratio: Df vs. Ratio
df-vs-variance: Df vs. Variance
n-vs-alpha: N vs. Alpha
n-vs-delta: N vs. Delta
n-vs-df: N vs. Df
n-vs-es: N vs. Es
n-vs-eta: N vs. Eta
n-vs-lambda2: N vs. Lambda2
n-vs-p2: N vs. P²
n-vs-pi: N vs. Pi
n-vs-pi1: N vs. Pi1
n-vs-pi2: N vs. Pi2
n-vs-power: N vs. Power
n-vs-rho: N vs. Rho
n-vs-rmsea: N vs. RMSEA
n-vs-rmsse: N vs. RMSSE
power-vs-alpha: Power vs. Alpha
power-vs-delta: Power vs. Delta
power-vs-df: Power vs. Df
power-vs-df1: Power vs. Df1
power-vs-df2: Power vs. Df2
power-vs-es: Power vs. Es
power-vs-eta: Power vs. Eta
power-vs-lambda2: Power vs. Lambda2
power-vs-n: Power vs. N
power-vs-n1: Power vs. N1
power-vs-n2: Power vs. N2
power-vs-p2: Power vs. P²
power-vs-pi: Power vs. Pi
power-vs-pi1: Power vs. Pi1
power-vs-pi2: Power vs. Pi2
power-vs-ratio: Power vs. Ratio
power-vs-rho: Power vs. Rho
power-vs-rmsea: Power vs. RMSEA
power-vs-rmsse: Power vs. RMSSE
power-vs-variance: Power vs. Variance)");
}

}  // namespace
}  // namespace poweranalysis
