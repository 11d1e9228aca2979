#include "calculators/Equations.h"

#include <cmath>

#include "calculators/CalculatorRun.h"
#include "distributions/Binomial.h"
#include "distributions/MultipleR2.h"
#include "distributions/NoncentralChiSquare.h"
#include "distributions/NoncentralF.h"
#include "distributions/NoncentralT.h"

namespace poweranalysis {
namespace {

constexpr const char* kError = "--Error--";

// --- t.

using TCalculator = CalculatorRun;

constexpr const char* kLargeDelta =
    "Warning: Values for Delta greater than 5000 may yield inaccurate results.";

TEST_F(TCalculator, SolvesForEachOfItsNumbers) {
  Open("T");
  Fill("TObserved=1.5 DegreesOfFreedom=11 Delta=0.75");
  Compute();
  EXPECT_EQ(Get("CumP"), NoncentralTCdf(1.5, 11, 0.75));
  Choose(UnknownStatistic);
  Compute();
  EXPECT_NEAR(Get("TObserved"), 1.5, 1e-8);
  Choose(UnknownParameter);
  Compute();
  EXPECT_NEAR(Get("Delta"), 0.75, 1e-8);
}

TEST_F(TCalculator, WarnsOfALargeDeltaAndComputesAllTheSame) {
  Open("T");
  for (const char* delta : {"5001", "-5001", "5000.001"}) {
    host_.ClearMessages();
    Fill("TObserved=2 DegreesOfFreedom=4");
    Type("Delta", delta);
    Compute();
    EXPECT_EQ(LastMessage(), kLargeDelta) << delta;
    EXPECT_EQ(Get("Delta"), std::stod(delta));
    EXPECT_NE(Box("CumP"), "");
    EXPECT_NE(Box("CumP"), kError);
  }
  host_.ClearMessages();
  Type("Delta", "5000");
  Compute();
  EXPECT_TRUE(host_.messages().empty());
}

TEST_F(TCalculator, WarnsBeforeEveryComputation) {
  Open("T");
  Fill("TObserved=2 DegreesOfFreedom=4 Delta=6000");
  Compute();
  Compute();
  ASSERT_EQ(host_.messages().size(), 1u);
  EXPECT_EQ(host_.messages().front().count, 2);
}

TEST_F(TCalculator, WarnsOfTheOldDeltaWhenDeltaIsTheUnknown) {
  Open("T");
  Fill("TObserved=2 DegreesOfFreedom=4 CumP=0.5 Delta=6000");
  Choose(UnknownParameter);
  Compute();
  EXPECT_EQ(LastMessage(), kLargeDelta);
  EXPECT_LT(Get("Delta"), 5);
  host_.ClearMessages();
  Compute();
  EXPECT_TRUE(host_.messages().empty()) << "the answer of before is the old value now";
}

TEST_F(TCalculator, WarnsBeforeItChecksTheRanges) {
  Open("T");
  Fill("TObserved=2 DegreesOfFreedom=0 Delta=6000");
  Compute();
  EXPECT_EQ(MessageIds(), (std::vector<int>{text::CalculatorLargeDelta, text::RangeInt32}));
}

TEST_F(TCalculator, ADeltaThatIsNoFiniteNumberIsAnError) {
  Open("T");
  for (const char* delta : {"1e999", "-1e999", "nan"}) {
    for (const std::size_t unknown : {0u, 1u}) {
      Fill("TObserved=0 DegreesOfFreedom=5 CumP=0.5");
      Choose(unknown);
      Type("Delta", delta);
      Compute();
      const std::string box = Box(rows_->unknowns[unknown].field);
      EXPECT_FALSE(box.empty()) << delta;
      EXPECT_EQ(box.find("nan"), std::string::npos) << box;
      EXPECT_EQ(box.find("inf"), std::string::npos) << box;
    }
  }
}

// --- F.

using FCalculator = CalculatorRun;

TEST_F(FCalculator, SolvesForEachOfItsNumbers) {
  Open("F");
  Fill("FObserved=2.5 Df1=3 Df2=17 Delta=4");
  Compute();
  int failure = 0;
  EXPECT_EQ(Get("CumP"), NoncentralFCdf(2.5, 3, 17, 4, failure)) << "exact";
  Choose(UnknownStatistic);
  Compute();
  EXPECT_NEAR(Get("FObserved"), 2.5, 1e-6);
  Choose(UnknownParameter);
  Compute();
  EXPECT_NEAR(Get("Delta"), 4, 1e-6);
}

TEST_F(FCalculator, SaysWhenNoDeltaHasTheProbability) {
  Open("F");
  Fill("FObserved=1 Df1=1 Df2=10 Delta=3 CumP=0.95");
  Choose(UnknownParameter);
  Compute();
  EXPECT_EQ(MessageIds(), std::vector<int>{13184});
  EXPECT_EQ(LastMessage(),
            "There exists no non-negative Delta for which the observed F has a Cumulative p of "
            "0.95. The program will display the Cumulative p for a Delta of zero.");
  int failure = 0;
  const double central = NoncentralFCdf(1, 1, 10, 0, failure);
  EXPECT_EQ(Number("Delta"), 0);
  EXPECT_EQ(Get("Delta"), 0);
  EXPECT_EQ(Number("CumP"), central);
  EXPECT_EQ(Get("CumP"), central);
}

TEST_F(FCalculator, ShowsTheCentralProbabilityAsItsComplementWhereAsked) {
  Open("F");
  Click("OneMinusP");
  Fill("FObserved=1 Df1=1 Df2=10 CumP=0.05");
  Choose(UnknownParameter);
  Compute();
  int failure = 0;
  EXPECT_EQ(Number("CumP"), 1 - NoncentralFCdf(1, 1, 10, 0, failure));
  EXPECT_NE(LastMessage().find("Cumulative p of 0.95."), std::string::npos)
      << "the message tells the cumulative probability";
}

TEST_F(FCalculator, TheCentralProbabilityItselfHasItsDelta) {
  Open("F");
  Fill("FObserved=2 Df1=4 Df2=20 Delta=0");
  Compute();
  Choose(UnknownParameter);
  Compute();
  EXPECT_TRUE(host_.messages().empty());
  EXPECT_NEAR(Number("Delta"), 0, 1e-6);
}

TEST_F(FCalculator, AStartOfZeroIsAnError) {
  // The search starts from |df1 f (df2 - 2) / df2 - df1|, which is 0 here and stays there.
  Open("F");
  Fill("FObserved=1.25 Df1=1 Df2=10 CumP=0.5");
  Choose(UnknownParameter);
  Compute();
  EXPECT_EQ(Box("Delta"), kError);
  EXPECT_EQ(Get("Delta"), 0);
  EXPECT_EQ(Get("CumP"), 0.5);
  EXPECT_TRUE(host_.messages().empty());
}

TEST_F(FCalculator, SmallDegreesOfFreedomHaveTheirQuantiles) {
  Open("F");
  Choose(UnknownStatistic);
  Fill("Df1=2 Df2=2 CumP=0.05");
  Compute();
  EXPECT_NEAR(Get("FObserved"), 0.05 / 0.95, 1e-8);
}

// --- Chi-square.

using ChiSquareCalculator = CalculatorRun;

TEST_F(ChiSquareCalculator, SolvesForEachOfItsNumbers) {
  Open("X2");
  Fill("ObservedChiSquare=12 DegreesOfFreedom=6 Delta=5");
  Compute();
  double density = 0;
  int failure = 0;
  EXPECT_EQ(Get("CumP"), NoncentralChiSquareCdf(12, 6, 5, density, failure));
  Choose(UnknownStatistic);
  Compute();
  EXPECT_NEAR(Get("ObservedChiSquare"), 12, 1e-6);
  Choose(UnknownParameter);
  Compute();
  EXPECT_NEAR(Get("Delta"), 5, 1e-6);
}

TEST_F(ChiSquareCalculator, SaysWhenNoDeltaHasTheProbability) {
  Open("X2");
  Fill("ObservedChiSquare=2 DegreesOfFreedom=4 CumP=0.9 Delta=3");
  Choose(UnknownParameter);
  Compute();
  EXPECT_EQ(MessageIds(), std::vector<int>{13195});
  EXPECT_EQ(LastMessage(),
            "There exists no non-negative Delta for which the observed Chi-square has a Cumulative "
            "p of 0.9. The program will display the Cumulative p for a Delta of zero.");
  double density = 0;
  int failure = 0;
  const double central = NoncentralChiSquareCdf(2, 4, 0, density, failure);
  EXPECT_EQ(Number("Delta"), 0);
  EXPECT_EQ(Number("CumP"), central);
  EXPECT_EQ(Get("CumP"), central);
}

TEST_F(ChiSquareCalculator, TheCentralProbabilityItselfHasItsDelta) {
  Open("X2");
  Fill("ObservedChiSquare=5 DegreesOfFreedom=4 Delta=0");
  Compute();
  Choose(UnknownParameter);
  Compute();
  EXPECT_TRUE(host_.messages().empty());
  EXPECT_NEAR(Number("Delta"), 0, 1e-6);
}

TEST_F(ChiSquareCalculator, ALargeDeltaIsApproximatedAndNoError) {
  Open("X2");
  Fill("ObservedChiSquare=1000 DegreesOfFreedom=10 Delta=1000");
  Compute();
  EXPECT_NEAR(Number("CumP"), 0.444, 0.01);
}

// --- r².

using R2Calculator = CalculatorRun;

TEST_F(R2Calculator, SolvesForEachOfItsNumbersByEachAlgorithm) {
  Open("R2");
  for (const std::int16_t algorithm : {R2Lee, R2Exact}) {
    Fill("R2Observed=0.4 PopulationR2=0.25 SampleSize=60 TotalNumberOfVars=4");
    Fill("Algorithm=" + std::to_string(algorithm));
    Choose(UnknownProbability);
    Compute();
    int failure = 0;
    EXPECT_EQ(Get("CumP"), MultipleR2Cdf(0.25, 60, 4, 0.4, algorithm, failure));
    Choose(UnknownStatistic);
    Compute();
    EXPECT_NEAR(Get("R2Observed"), 0.4, 1e-6);
    Choose(UnknownParameter);
    Compute();
    EXPECT_NEAR(Get("PopulationR2"), 0.25, 1e-6);
  }
}

TEST_F(R2Calculator, TheExactRho2IsSearchedFromTheApproximateOne) {
  Open("R2");
  Fill("R2Observed=0.4 SampleSize=60 TotalNumberOfVars=4 CumP=0.8 Algorithm=0");
  Choose(UnknownParameter);
  Compute();
  const double approximate = Get("PopulationR2");
  Fill("Algorithm=1");
  Compute();
  int failure = 0;
  EXPECT_EQ(Get("PopulationR2"), MultipleR2RhoForP(approximate, 60, 4, 0.4, 0.8, failure, R2Exact));
  EXPECT_NE(Get("PopulationR2"), approximate);
}

TEST_F(R2Calculator, SaysWhenNoRho2HasTheProbability) {
  Open("R2");
  for (const std::int16_t algorithm : {R2Lee, R2Exact}) {
    host_.ClearMessages();
    Fill("R2Observed=0.05 SampleSize=100 TotalNumberOfVars=6 CumP=0.9 PopulationR2=0.3");
    Fill("Algorithm=" + std::to_string(algorithm));
    Choose(UnknownParameter);
    Compute();
    EXPECT_EQ(LastMessage(),
              "There exists no non-negative population squared multiple correlation for which the "
              "observed R2 has a Cumulative p of 0.9. The program will display the Cumulative p "
              "for a population multiple correlation of zero.");
    int failure = 0;
    const double central = MultipleR2Cdf(0, 100, 6, 0.05, algorithm, failure);
    EXPECT_EQ(Number("PopulationR2"), 0);
    EXPECT_EQ(Number("CumP"), central);
    EXPECT_EQ(Get("CumP"), central);
  }
}

TEST_F(R2Calculator, TheCentralProbabilityItselfHasNone) {
  Open("R2");
  Fill("R2Observed=0.1 SampleSize=50 TotalNumberOfVars=3 PopulationR2=0");
  Compute();
  const double central = Get("CumP");
  Choose(UnknownParameter);
  Compute();
  EXPECT_EQ(MessageIds(), std::vector<int>{text::NoP2ForR2});
  EXPECT_EQ(Get("PopulationR2"), 0);
  EXPECT_EQ(Get("CumP"), central);
}

TEST_F(R2Calculator, WantsAsManyObservationsAsVariablesForEveryUnknown) {
  Open("R2");
  Fill("SampleSize=4 TotalNumberOfVars=5");
  for (const std::size_t unknown : {0u, 1u, 2u}) {
    host_.ClearMessages();
    Choose(unknown);
    const std::string box = Box(rows_->unknowns[unknown].field);
    Compute();
    EXPECT_EQ(LastMessage(), "Sample Size (N) must be greater than the Number of Predictors (P).");
    EXPECT_EQ(Box(rows_->unknowns[unknown].field), box) << "it stops before all else";
  }
}

TEST_F(R2Calculator, EqualityPassesTheTestAlthoughItsMessageWantsMore) {
  Open("R2");
  Fill("SampleSize=3 TotalNumberOfVars=3");
  for (const std::size_t unknown : {0u, 1u, 2u}) {
    Choose(unknown);
    Fill("R2Observed=0.5 PopulationR2=0.2 CumP=0.5");
    Compute();
    EXPECT_TRUE(host_.messages().empty());
    EXPECT_EQ(Box(rows_->unknowns[unknown].field), kError);
  }
}

TEST_F(R2Calculator, ValuesOutsideZeroAndOneAreAnsweredWithoutACall) {
  Open("R2");
  // With these sizes a call would fail.
  Fill("SampleSize=3 TotalNumberOfVars=3 R2Observed=0");
  Compute();
  EXPECT_EQ(Number("CumP"), 0);
  for (const double r2 : {-0.5, 0.0}) {
    block().R2.Working.R2Observed = r2;
    EXPECT_TRUE(SolveForR2Probability(block(), 0.5).good);
    EXPECT_EQ(SolveForR2Probability(block(), 0.5).value, 0);
  }
  for (const double r2 : {1.0, 7.0}) {
    block().R2.Working.R2Observed = r2;
    EXPECT_TRUE(SolveForR2Probability(block(), 0.5).good);
    EXPECT_EQ(SolveForR2Probability(block(), 0.5).value, 1);
  }
}

TEST_F(R2Calculator, ALongSeriesOpensNoBarButCanBeCancelled) {
  Open("R2");
  Fill("R2Observed=0.999 PopulationR2=0.999 SampleSize=20000 TotalNumberOfVars=3 Algorithm=1");
  host_.cancelled = [] { return true; };
  Compute();
  EXPECT_EQ(Box("CumP"), kError);
  EXPECT_TRUE(host_.calls.progress.empty());
}

TEST_F(R2Calculator, ABreakFromBeforeDoesNotCancel) {
  Open("R2");
  Fill("R2Observed=0.99 PopulationR2=0.99 SampleSize=2000 TotalNumberOfVars=3 Algorithm=1");
  host_.cancelled = [] { return true; };
  host_.lookbr();
  host_.cancelled = nullptr;
  ASSERT_TRUE(host_.WasCanceled());
  Compute();
  EXPECT_NE(Box("CumP"), kError);
}

// --- r.

using RCalculator = CalculatorRun;

TEST_F(RCalculator, SolvesForEachOfItsNumbersByEachAlgorithm) {
  Open("R");
  for (const char* algorithm : {"0", "1", "2"}) {
    Fill("RObserved=0.5 Rho=0.3 SampleSize=30");
    Fill(std::string("Algorithm=") + algorithm);
    Choose(UnknownProbability);
    Compute();
    EXPECT_NEAR(Number("CumP"), 0.888, 0.01) << algorithm;
    Choose(UnknownStatistic);
    Compute();
    EXPECT_NEAR(Get("RObserved"), 0.5, 1e-6) << algorithm;
    Choose(UnknownParameter);
    Compute();
    EXPECT_NEAR(Get("Rho"), 0.3, 1e-5) << algorithm;
  }
}

TEST_F(RCalculator, ValuesOutsideMinusOneAndOneAreAnsweredWithoutACall) {
  Open("R");
  for (const double r : {-1.0, -3.0}) {
    block().R.Working.RObserved = r;
    EXPECT_TRUE(SolveForRProbability(block(), 0.5).good);
    EXPECT_EQ(SolveForRProbability(block(), 0.5).value, 0);
  }
  for (const double r : {1.0, 3.0}) {
    block().R.Working.RObserved = r;
    EXPECT_TRUE(SolveForRProbability(block(), 0.5).good);
    EXPECT_EQ(SolveForRProbability(block(), 0.5).value, 1);
  }
}

TEST_F(RCalculator, TheRangeCheckRefusesThemBefore) {
  Open("R");
  Type("RObserved", "1");
  Compute();
  EXPECT_EQ(MessageIds(), std::vector<int>{text::RangeReal});
}

TEST_F(RCalculator, TheSearchForRhoShowsABarAndHoldsTheResults) {
  Open("R");
  Fill("RObserved=0.5 SampleSize=30 CumP=0.8 Algorithm=0");
  Choose(UnknownParameter);
  int changes = 0;
  bool held = true;
  host_.onProgress = [&](const ProgressState& state) {
    ++changes;
    held = held && state.title == "Computing..." &&
           host_.calls.lockResults == host_.calls.unlockResults + 1;
  };
  Compute();
  EXPECT_GT(changes, 3);
  EXPECT_TRUE(held);
  ASSERT_GE(host_.calls.progress.size(), 3u);
  EXPECT_EQ(host_.calls.progress[0], "d_pbar Computing...");
  EXPECT_EQ(host_.calls.progress[1], "dstart 10");
  EXPECT_EQ(host_.calls.progress[2], "dstop");
  EXPECT_EQ(host_.calls.lockResults, 1);
  EXPECT_EQ(host_.calls.unlockResults, 1);
  EXPECT_FALSE(host_.IsProgressBarOpen());
  EXPECT_NE(Box("Rho"), kError);
}

TEST_F(RCalculator, NoOtherComputationOpensABar) {
  Open("R");
  Fill("RObserved=0.5 SampleSize=30 CumP=0.8 Algorithm=0");
  for (const std::size_t unknown : {0u, 1u}) {
    Choose(unknown);
    Compute();
  }
  EXPECT_TRUE(host_.calls.progress.empty());
  EXPECT_EQ(host_.calls.lockResults, 0);
}

TEST_F(RCalculator, ACancelledSearchIsAnError) {
  Open("R");
  Fill("RObserved=0.5 SampleSize=30 CumP=0.8 Algorithm=0");
  Choose(UnknownParameter);
  host_.cancelled = [] { return true; };
  Compute();
  EXPECT_EQ(Box("Rho"), kError);
  EXPECT_EQ(Get("Rho"), 0.2);
  EXPECT_FALSE(host_.IsProgressBarOpen());
  EXPECT_EQ(host_.calls.unlockResults, 1);
}

// --- Binomial.

using BinomialCalculator = CalculatorRun;

TEST_F(BinomialCalculator, SolvesForEachOfItsNumbers) {
  Open("Binomial");
  Fill("XObserved=16 SampleSize=20 Pi=0.65");
  Compute();
  int failure = 0;
  EXPECT_EQ(Get("CumP"), BinomialCdf(20, 0.65, 16, failure));
  Choose(UnknownParameter);
  Compute();
  EXPECT_NEAR(Get("Pi"), 0.65, 1e-8);
  Choose(UnknownStatistic);
  Fill("CumP=0.95");
  Compute();
  EXPECT_EQ(Get("XObserved"), 16);
  EXPECT_EQ(Box("XObserved"), "16");
}

TEST_F(BinomialCalculator, ShowsTheActualValueBesideTheRequestedOneForXAlone) {
  Open("Binomial");
  EXPECT_FALSE(Visible(ControlActualValue));
  EXPECT_FALSE(Visible(ControlActualValueLabel));
  Choose(UnknownStatistic);
  Fill("SampleSize=20 Pi=0.65 CumP=0.95");
  Compute();
  EXPECT_TRUE(Visible(ControlActualValue));
  EXPECT_TRUE(Visible(ControlActualValueLabel));
  EXPECT_EQ(TextOf(ControlProbabilityLabel), "Requested Value:");
  EXPECT_EQ(TextOf(ControlActualValueLabel), "Actual Value:");
  EXPECT_EQ(Box("CumP"), "0.95");
  EXPECT_EQ(TextOf(ControlActualValue), "0.9556244");
  for (const std::size_t unknown : {1u, 2u}) {
    Choose(unknown);
    EXPECT_FALSE(Visible(ControlActualValue));
    EXPECT_FALSE(Visible(ControlActualValueLabel));
    EXPECT_EQ(TextOf(ControlProbabilityLabel), "Cum. p:");
  }
}

TEST_F(BinomialCalculator, TheActualValueIsComplementedWhereAsked) {
  Open("Binomial");
  Click("OneMinusP");
  Choose(UnknownStatistic);
  Fill("SampleSize=20 Pi=0.65 CumP=0.05");
  Compute();
  EXPECT_EQ(Get("XObserved"), 16);
  EXPECT_EQ(TextOf(ControlActualValue), "0.0443756");
  Click("OneMinusP");
  EXPECT_EQ(TextOf(ControlActualValue), "0.9556244");
  EXPECT_EQ(Box("CumP"), "0.95");
  EXPECT_EQ(TextOf(ControlProbabilityLabel), "Requested Value:");
}

TEST_F(BinomialCalculator, AProportionSoSmallThatTheFirstTermReachesPNeedsNoSearch) {
  Open("Binomial");
  Choose(UnknownStatistic);
  Fill("SampleSize=10 Pi=0.001 CumP=0.95");
  Compute();
  EXPECT_EQ(Box("XObserved"), "0");
  EXPECT_EQ(Get("ActualValue"), std::pow(1 - 0.001, 10.0)) << "and not the sum of a search";
  EXPECT_EQ(TextOf(ControlActualValue), "0.99004488");
  Fill("Pi=0");
  Compute();
  EXPECT_EQ(Box("XObserved"), "0");
  EXPECT_EQ(TextOf(ControlActualValue), "1");
}

TEST_F(BinomialCalculator, ACertainSuccessGivesAllTrials) {
  Open("Binomial");
  Choose(UnknownStatistic);
  Fill("SampleSize=10 Pi=1 CumP=0.95");
  Compute();
  EXPECT_EQ(Box("XObserved"), "10");
  EXPECT_EQ(TextOf(ControlActualValue), "1");
}

TEST_F(BinomialCalculator, AnErrorLeavesNoStaleActualValue) {
  Open("Binomial");
  Choose(UnknownStatistic);
  Fill("SampleSize=20 Pi=0.65 CumP=0.95");
  Compute();
  ASSERT_EQ(TextOf(ControlActualValue), "0.9556244");
  Fill("SampleSize=0");
  Compute();
  EXPECT_EQ(TextOf(ControlActualValue), "");
  EXPECT_EQ(Get("ActualValue"), NumericFailure);
}

TEST_F(BinomialCalculator, AnEntryAboveFiftyIsRefusedThoughAnAnswerIsTakenBack) {
  Open("Binomial");
  Choose(UnknownStatistic);
  Fill("SampleSize=100 Pi=0.7 CumP=0.5");
  Compute();
  EXPECT_EQ(Get("XObserved"), 70);
  Choose(UnknownProbability);
  Compute();
  EXPECT_EQ(LastMessage(), "");
  Type("XObserved", "70");
  Compute();
  EXPECT_EQ(LastMessage(),
            "The current value for Observed X is outside the permissible range.\r\nThe appropriate "
            "range is 0 <= Observed X <= 50.\r\n Current value is 70.");
}

TEST_F(BinomialCalculator, MoreSuccessesThanTrialsAreCertain) {
  Open("Binomial");
  Fill("XObserved=30 SampleSize=20 Pi=0.65");
  Compute();
  EXPECT_EQ(Number("CumP"), 1);
}

TEST_F(BinomialCalculator, NoSuccessWithEvenOddsIsAnErrorForPi) {
  // The search starts from 0 and stays there.
  Open("Binomial");
  Choose(UnknownParameter);
  Fill("XObserved=0 SampleSize=20 CumP=0.5");
  Compute();
  EXPECT_EQ(Box("Pi"), kError);
}

TEST_F(BinomialCalculator, WhatIsTypedAsActualValueHasNoEffect) {
  Open("Binomial");
  Type(ControlActualValue, "0.3");
  EXPECT_EQ(TextOf(ControlActualValue), "0.3");
  EXPECT_EQ(Get("ActualValue"), NumericFailure);
}

}  // namespace
}  // namespace poweranalysis
