// What each calculator promises its user, step by step and for all six: the order of a computation,
// the arguments of its routines, what a failure leaves behind, and what the other commands do.

#include <cmath>
#include <map>
#include <vector>

#include "calculators/CalculatorRun.h"
#include "distributions/Binomial.h"
#include "distributions/Correlation.h"
#include "distributions/MultipleR2.h"
#include "distributions/NoncentralChiSquare.h"
#include "distributions/NoncentralF.h"
#include "distributions/NoncentralT.h"
#include "distributions/Normal.h"
#include "distributions/SolveParameter.h"
#include "support/TemporaryFolder.h"

namespace poweranalysis {
namespace {

using CalculatorConformance = CalculatorRun;

constexpr const char* kError = "--Error--";

// A calculator with inputs that have an answer for each of its unknowns, and one that is out of
// range.
struct Case {
  const char* code;
  const char* inputs;
  const char* outOfRange;
};
constexpr Case kCases[] = {
    {"T", "TObserved=2 DegreesOfFreedom=9 Delta=0.5 CumP=0.75", "DegreesOfFreedom=0"},
    {"F", "FObserved=3 Df1=2 Df2=20 Delta=4 CumP=0.625", "Df1=0"},
    {"X2", "ObservedChiSquare=9 DegreesOfFreedom=4 Delta=3 CumP=0.5", "DegreesOfFreedom=10002"},
    {"R2", "R2Observed=0.375 PopulationR2=0.25 SampleSize=50 TotalNumberOfVars=4 CumP=0.75",
     "TotalNumberOfVars=1"},
    {"R", "RObserved=0.25 Rho=0.125 SampleSize=40 CumP=0.75", "SampleSize=2"},
    {"Binomial", "XObserved=12 SampleSize=20 Pi=0.5 CumP=0.75", "SampleSize=0"}};

std::string BoxOf(const char* code, std::size_t unknown) {
  return FindCalculator(code)->unknowns[unknown].field;
}

// --- The records and the controls.

TEST_F(CalculatorConformance, EveryNumberHasItsControlWithTheBoundsOfItsField) {
  struct Box {
    const char* control;
    double lower;
    double upper;
  };
  const std::map<std::string, std::vector<Box>> kBoxes = {
      {"T",
       {{"TObserved", -5000, 5000}, {"DegreesOfFreedom", 1, 149999}, {"CumP", 0.0001, 0.9999}}},
      {"F",
       {{"FObserved", 0, 1e30},
        {"Df1", 1, 10001},
        {"Df2", 1, 10001},
        {"Delta", 0, 10000},
        {"CumP", 0.0001, 0.9999}}},
      {"X2",
       {{"ObservedChiSquare", 0, 1e30},
        {"DegreesOfFreedom", 1, 10001},
        {"Delta", 0, 10000},
        {"CumP", 0.0001, 0.9999}}},
      {"R2",
       {{"R2Observed", 0, 0.9999},
        {"PopulationR2", 0, 1},
        {"SampleSize", 2, 150000},
        {"TotalNumberOfVars", 2, 200},
        {"CumP", 0.0001, 0.9999}}},
      {"R",
       {{"RObserved", -0.9999, 0.9999},
        {"Rho", -0.9999, 0.9999},
        {"SampleSize", 3, 150000},
        {"CumP", 0.0001, 0.9999}}},
      {"Binomial",
       {{"XObserved", 0, 50}, {"SampleSize", 1, 100000}, {"Pi", 0, 1}, {"CumP", 1e-05, 0.99999}}}};
  for (const Case& row : kCases) {
    Open(row.code);
    for (const Box& box : kBoxes.at(row.code)) {
      ASSERT_NE(Find(box.control), nullptr) << row.code << " " << box.control;
      EXPECT_EQ(Find(box.control)->lower, box.lower) << row.code << " " << box.control;
      EXPECT_EQ(Find(box.control)->upper, box.upper) << row.code << " " << box.control;
    }
    Press(ControlBack);
  }
}

TEST_F(CalculatorConformance, OpensWithTheBuiltInNumbers) {
  const std::map<std::string, std::map<std::string, double>> kDefaults = {
      {"T",
       {{"TObserved", 1}, {"DegreesOfFreedom", 24}, {"Delta", 0}, {"CumP", 0.95}, {"ComputeP", 1}}},
      {"F",
       {{"FObserved", 1},
        {"Df1", 1},
        {"Df2", 10},
        {"Delta", 0},
        {"CumP", 0.95},
        {"WhatToCompute", 1}}},
      {"X2",
       {{"ObservedChiSquare", 1},
        {"DegreesOfFreedom", 10},
        {"Delta", 0},
        {"CumP", 0.95},
        {"WhatToCompute", 1}}},
      {"R2",
       {{"R2Observed", 0.5},
        {"PopulationR2", 0.2},
        {"SampleSize", 100},
        {"TotalNumberOfVars", 3},
        {"CumP", 0.95},
        {"Algorithm", 0},
        {"WhatToCompute", 1}}},
      {"R",
       {{"RObserved", 0},
        {"Rho", 0.2},
        {"SampleSize", 100},
        {"CumP", 0.95},
        {"Algorithm", 1},
        {"WhatToCompute", 1}}},
      {"Binomial",
       {{"XObserved", 50},
        {"SampleSize", 100},
        {"Pi", 0.7},
        {"CumP", 0.95},
        {"WhatToCompute", 1}}}};
  for (const Case& row : kCases) {
    Open(row.code);
    for (const auto& [field, value] : kDefaults.at(row.code)) {
      EXPECT_EQ(Get(field.c_str()), value) << row.code << " " << field;
      EXPECT_EQ(Get(field.c_str(), Instance::Defaults), value) << row.code << " " << field;
    }
    EXPECT_EQ(Get("OneMinusP"), 0) << row.code;
    Press(ControlBack);
  }
}

TEST_F(CalculatorConformance, OpensAsItsComplementWhereTheRecordSaysSo) {
  for (const Case& row : kCases) {
    Open(row.code);
    Set("OneMinusP", 1, Instance::Committed);
    Set("CumP", 0.875, Instance::Committed);
    Press(ControlBack);
    Open(row.code);
    EXPECT_TRUE(IsChecked("OneMinusP")) << row.code;
    EXPECT_EQ(Number("CumP"), 0.125) << row.code;
    EXPECT_EQ(TextOf(ControlProbabilityLabel), "1 - Cum. p:") << row.code;
    EXPECT_EQ(TextOf("WhatToCompute=1"), "1 - &p") << row.code;
    EXPECT_EQ(Get("CumP"), 0.875) << row.code;
    Press(ControlBack);
  }
}

TEST_F(CalculatorConformance, ChecksTheFieldsInTheOrderOfTheirKeys) {
  // Each prefix of a list is put right in turn; what is left is reported by its first field.
  const struct {
    const char* code;
    std::vector<std::pair<const char*, const char*>> badAndGood;
    std::vector<const char*> labels;
  } kOrders[] = {
      {"F",
       {{"FObserved=-1", "FObserved=1"},
        {"Df1=0", "Df1=1"},
        {"Df2=0", "Df2=9"},
        {"Delta=-1", "Delta=0"}},
       {"FObserved", "Df1", "Df2", "Delta"}},
      {"X2",
       {{"ObservedChiSquare=-1", "ObservedChiSquare=1"},
        {"DegreesOfFreedom=0", "DegreesOfFreedom=3"},
        {"Delta=-1", "Delta=0"}},
       {"ObservedChiSquare", "DegreesOfFreedom", "Delta"}},
      {"Binomial",
       {{"XObserved=51", "XObserved=1"}, {"SampleSize=0", "SampleSize=5"}, {"Pi=1.5", "Pi=0.5"}},
       {"XObserved", "SampleSize", "Pi"}}};
  for (const auto& order : kOrders) {
    Open(order.code);
    for (const auto& [bad, good] : order.badAndGood) {
      Fill(bad);
    }
    for (std::size_t i = 0; i < order.labels.size(); ++i) {
      const RecordView view = ViewOf(block(), rows_->family, Instance::Working);
      const std::string label = LoadText(view.table().Find(order.labels[i])->label);
      host_.ClearMessages();
      Compute();
      EXPECT_NE(LastMessage().find(" for " + label + " is outside"), std::string::npos)
          << order.code << " " << LastMessage();
      Fill(order.badAndGood[i].second);
    }
    host_.ClearMessages();
    Compute();
    EXPECT_TRUE(host_.messages().empty()) << order.code;
    Press(ControlBack);
  }
}

// --- The order of a computation.

TEST_F(CalculatorConformance, TheWarningOfALargeDeltaComesBeforeTheBoxIsEmptied) {
  Open("T");
  Fill("TObserved=2 DegreesOfFreedom=4 Delta=-5000.5 CumP=0.25");
  bool seen = false;
  host_.onMessage = [&](const Message&) {
    seen = true;
    EXPECT_EQ(Number("CumP"), 0.25);
    EXPECT_EQ(Get("CumP"), 0.25);
  };
  Compute();
  EXPECT_TRUE(seen);
  EXPECT_EQ(Get("Delta"), -5000.5);
  EXPECT_EQ(Get("CumP"), NoncentralTCdf(2, 4, -5000.5));
}

TEST_F(CalculatorConformance, TheRangesAreCheckedWithAnEmptyBoxAndTheDefaultBehindIt) {
  for (const Case& row : kCases) {
    for (const std::size_t unknown : {0u, 1u, 2u}) {
      Open(row.code);
      const std::string field = BoxOf(row.code, unknown);
      const double standard = unknown == UnknownProbability ? 0.375 : 0.0;
      Set(field.c_str(), standard, Instance::Defaults);
      Fill(row.inputs);
      Fill(row.outOfRange);
      Choose(unknown);
      std::vector<std::string> others;
      for (const std::size_t other : {0u, 1u, 2u}) {
        others.push_back(Box(BoxOf(row.code, other).c_str()));
      }
      int messages = 0;
      host_.onMessage = [&](const Message&) {
        ++messages;
        EXPECT_EQ(Box(field.c_str()), "") << row.code << " " << field;
        EXPECT_EQ(Get(field.c_str()), standard) << row.code << " " << field;
      };
      Compute();
      EXPECT_EQ(messages, 1) << row.code;
      EXPECT_EQ(Get(field.c_str()), standard) << row.code << " " << field;
      for (const std::size_t other : {0u, 1u, 2u}) {
        if (other != unknown) {
          EXPECT_EQ(Box(BoxOf(row.code, other).c_str()), others[other]) << row.code;
        }
      }
      host_.onMessage = nullptr;
      host_.ClearMessages();
      Press(ControlBack);
    }
  }
}

TEST_F(CalculatorConformance, TheRangeOfTheProbabilityIsThatOfTheCumulativeOne) {
  for (const char* code : {"T", "F", "X2", "R2", "R"}) {
    Open(code);
    Choose(UnknownStatistic);
    Click("OneMinusP");
    // 1 - 0.99995, where the range of the cumulative probability ends at .9999.
    Type("CumP", "0.00005");
    Compute();
    EXPECT_NE(LastMessage().find("Current value is 0.99995."), std::string::npos) << code;
    host_.ClearMessages();
    Press(ControlBack);
  }
}

TEST_F(CalculatorConformance, TheLowerEndOfTheProbabilityOfTIsOutsideItsRange) {
  Open("T");
  Choose(UnknownStatistic);
  Type("CumP", "0.0001");
  Compute();
  EXPECT_EQ(MessageIds(), std::vector<int>{text::RangeReal});
  host_.ClearMessages();
  Type("CumP", "0.9999");
  Compute();
  EXPECT_TRUE(host_.messages().empty());
}

TEST_F(CalculatorConformance, EnterComputesWhatTheButtonComputes) {
  for (const Case& row : kCases) {
    for (const std::size_t unknown : {0u, 1u, 2u}) {
      std::string texts[2];
      double numbers[2] = {};
      for (const int command : {1, 815}) {
        Open(row.code);
        Fill(row.inputs);
        Choose(unknown);
        Press(command);
        texts[command != 1] = Box(BoxOf(row.code, unknown).c_str());
        numbers[command != 1] = Get(BoxOf(row.code, unknown).c_str());
        Press(ControlBack);
      }
      EXPECT_EQ(texts[0], texts[1]) << row.code;
      EXPECT_EQ(numbers[0], numbers[1]) << row.code;
      EXPECT_NE(texts[0], "") << row.code;
      EXPECT_NE(texts[0], kError) << row.code << unknown;
    }
  }
}

// --- The routines and their arguments.

TEST_F(CalculatorConformance, TAsksItsRoutines) {
  Open("T");
  const auto start = [&] { Fill("TObserved=2.5 DegreesOfFreedom=7 Delta=1.25 CumP=0.625"); };
  int status = 0;
  int failure = 0;
  start();
  Choose(UnknownStatistic);
  Compute();
  EXPECT_EQ(Get("TObserved"), NoncentralTQuantile(1.25, 7, 0.625, status, failure));
  start();
  Choose(UnknownParameter);
  Compute();
  EXPECT_EQ(Get("Delta"), SolveParameter(2.5, 7, 0.625, NoncentralTDeltaStart(2.5, 7, 0.625),
                                         status, failure, SearchTDelta, 0));
}

TEST_F(CalculatorConformance, FAsksForTheExactAlgorithm) {
  Open("F");
  const auto start = [&] { Fill("FObserved=2.5 Df1=3 Df2=17 Delta=1.25 CumP=0.625"); };
  int failure = 0;
  start();
  Choose(UnknownStatistic);
  Compute();
  EXPECT_EQ(Get("FObserved"), NoncentralFQuantile(1.25, 3, 17, 0.625, failure, FExact));
  start();
  Choose(UnknownProbability);
  Compute();
  EXPECT_EQ(Get("CumP"), NoncentralFCdfInt(2.5, 3, 17, 1.25, failure, FExact));
  EXPECT_NE(Get("CumP"), NoncentralFCdfInt(2.5, 3, 17, 1.25, failure, FTiku));
  start();
  Choose(UnknownParameter);
  Compute();
  EXPECT_EQ(Get("Delta"), NoncentralFDelta(2.5, 3, 17, 0.625, failure, FExact));
}

TEST_F(CalculatorConformance, ChiSquareAsksItsRoutines) {
  Open("X2");
  const auto start = [&] { Fill("ObservedChiSquare=9 DegreesOfFreedom=5 Delta=1.25 CumP=0.625"); };
  int status = 0;
  start();
  Choose(UnknownStatistic);
  Compute();
  EXPECT_EQ(Get("ObservedChiSquare"), NoncentralChiSquareQuantile(1.25, 5, 0.625, status));
  start();
  Choose(UnknownParameter);
  Compute();
  EXPECT_EQ(Get("Delta"), NoncentralChiSquareDelta(9, 5, 0.625, status));
}

TEST_F(CalculatorConformance, RAsksItsRoutinesByTheAlgorithmChosen) {
  Open("R");
  for (const std::int16_t algorithm :
       {CorrelationExact, CorrelationFisherZRefined, CorrelationFisherZCrude}) {
    const auto start = [&] {
      Fill("RObserved=0.375 Rho=0.25 SampleSize=25 CumP=0.625");
      Fill("Algorithm=" + std::to_string(algorithm));
    };
    start();
    Choose(UnknownStatistic);
    Compute();
    EXPECT_EQ(Get("RObserved"), CorrelationQuantile(0.25, 25, 0.625, algorithm));
    start();
    Choose(UnknownProbability);
    Compute();
    EXPECT_EQ(Get("CumP"), CorrelationCdf(0.25, 25, 0.375, algorithm));
    start();
    Choose(UnknownParameter);
    Compute();
    int failure = 0;
    EXPECT_EQ(Get("Rho"), CorrelationRhoForP(25, 0.375, 0.625, failure, algorithm));
  }
}

TEST_F(CalculatorConformance, R2AsksItsQuantileByTheAlgorithmChosen) {
  Open("R2");
  for (const std::int16_t algorithm : {R2Lee, R2Exact}) {
    Fill("PopulationR2=0.25 SampleSize=25 TotalNumberOfVars=4 CumP=0.625");
    Fill("Algorithm=" + std::to_string(algorithm));
    Choose(UnknownStatistic);
    Compute();
    int failure = 0;
    EXPECT_EQ(Get("R2Observed"), MultipleR2Quantile(0.25, 25, 4, 0.625, failure, algorithm));
  }
}

TEST_F(CalculatorConformance, Rho2IsSearchedFromItsNormalLimit) {
  Open("R2");
  const struct {
    const char* inputs;
    double r2, p;
    int n, k;
    bool atTheFloor;
  } kSearches[] = {
      {"R2Observed=0.375 SampleSize=50 TotalNumberOfVars=4 CumP=0.75", 0.375, 0.75, 50, 4, false},
      {"R2Observed=0.1 SampleSize=60 TotalNumberOfVars=3 CumP=0.9375", 0.1, 0.9375, 60, 3, true},
      {"R2Observed=0.5 SampleSize=60000 TotalNumberOfVars=4 CumP=0.25", 0.5, 0.25, 60000, 4,
       false}};
  for (const auto& search : kSearches) {
    const double n = search.n;
    const double k = search.k;
    const double r2 = search.r2;
    const double mean = r2 - (k - 3) * (1 - r2) / (n - k);
    const double variance =
        4 * r2 * std::pow(1 - r2, 2) * std::pow(n - k, 2) / ((n * n - 1) * (n + 3));
    const double normal = mean - NormalQuantile(search.p) * std::sqrt(variance);
    EXPECT_EQ(normal < 0.0001, search.atTheFloor);
    int failure = 0;
    const double rho2 = MultipleR2RhoForP(std::max(0.0001, normal), search.n, search.k, r2,
                                          search.p, failure, R2Lee);
    ASSERT_EQ(failure, 0);
    Fill(std::string(search.inputs) + " Algorithm=0");
    Choose(UnknownParameter);
    Compute();
    EXPECT_TRUE(host_.messages().empty()) << LastMessage();
    // The rounding of the start moves the answer by less than 1e-13, another start by 1e-11 and
    // more.
    EXPECT_NEAR(Get("PopulationR2"), rho2, 1e-12) << search.inputs;
  }
}

// --- Answers.

TEST_F(CalculatorConformance, AnAnswerIsShownWithTwoToEightDecimalsAndKeptInFull) {
  for (const Case& row : kCases) {
    for (const std::size_t unknown : {0u, 1u, 2u}) {
      Open(row.code);
      Fill(row.inputs);
      Choose(unknown);
      Compute();
      const std::string field = BoxOf(row.code, unknown);
      if (field != "XObserved") {
        const std::string text = Box(field.c_str());
        const std::size_t decimals = text.size() - text.find('.') - 1;
        EXPECT_GE(decimals, 2u) << row.code << " " << text;
        EXPECT_LE(decimals, 8u) << row.code << " " << text;
        EXPECT_NEAR(std::stod(text), Get(field.c_str()), 0.6e-8 * std::max(1.0, std::stod(text)));
      }
      EXPECT_EQ(Number(field.c_str()), Get(field.c_str())) << row.code << " " << field;
      Press(ControlBack);
    }
  }
}

TEST_F(CalculatorConformance, AnAnswerLeavesTheOtherNumbersAsTheyAre) {
  for (const Case& row : kCases) {
    for (const bool complement : {false, true}) {
      for (const std::size_t unknown : {0u, 1u, 2u}) {
        Open(row.code);
        Fill(row.inputs);
        if (complement) {
          Click("OneMinusP");
        }
        Choose(unknown);
        std::map<std::string, double> before;
        for (const Field& field : TableOf(rows_->family).fields) {
          before[field.name] = Get(field.name);
        }
        Compute();
        for (const auto& [field, value] : before) {
          if (field != BoxOf(row.code, unknown) && field != "ActualValue") {
            EXPECT_EQ(Get(field.c_str()), value) << row.code << " " << field;
          }
        }
        Press(ControlBack);
      }
    }
  }
}

TEST_F(CalculatorConformance, TheAnswersOfOneUnknownSolveForTheOthers) {
  for (const char* code : {"T", "F", "X2", "R2", "R"}) {
    Open(code);
    for (const Case& row : kCases) {
      if (std::string(row.code) == code) {
        Fill(row.inputs);
      }
    }
    Click("OneMinusP");
    Choose(UnknownProbability);
    Compute();
    const double statistic = Get(BoxOf(code, UnknownStatistic).c_str());
    const double parameter = Get(BoxOf(code, UnknownParameter).c_str());
    const double p = Get("CumP");
    Choose(UnknownParameter);
    Compute();
    EXPECT_NEAR(Get(BoxOf(code, UnknownParameter).c_str()), parameter, 1e-5) << code;
    Choose(UnknownStatistic);
    Compute();
    EXPECT_NEAR(Get(BoxOf(code, UnknownStatistic).c_str()), statistic, 1e-5) << code;
    Choose(UnknownProbability);
    Compute();
    EXPECT_NEAR(Get("CumP"), p, 1e-6) << code;
    EXPECT_TRUE(host_.messages().empty()) << code;
    Press(ControlBack);
  }
}

// --- Where there is no answer.

TEST_F(CalculatorConformance, TheMessageTellsTheCumulativeProbabilityToSixDigits) {
  const struct {
    const char* code;
    const char* inputs;
    double central;
  } kRows[] = {
      {"F", "FObserved=1 Df1=1 Df2=10 Delta=3",
       [] {
         int failure = 0;
         return NoncentralFCdf(1, 1, 10, 0, failure);
       }()},
      {"X2", "ObservedChiSquare=2 DegreesOfFreedom=4 Delta=3",
       [] {
         double density = 0;
         int failure = 0;
         return NoncentralChiSquareCdf(2, 4, 0, density, failure);
       }()},
      {"R2", "R2Observed=0.05 SampleSize=100 TotalNumberOfVars=6 PopulationR2=0.3 Algorithm=0", [] {
         int failure = 0;
         return MultipleR2Cdf(0, 100, 6, 0.05, R2Lee, failure);
       }()}};
  for (const auto& row : kRows) {
    for (const bool complement : {false, true}) {
      Open(row.code);
      Fill(row.inputs);
      if (complement) {
        Click("OneMinusP");
      }
      Type("CumP", complement ? "0.0123456789" : "0.9876543211");
      Choose(UnknownParameter);
      Compute();
      EXPECT_NE(LastMessage().find(" has a Cumulative p of 0.987654. The program"),
                std::string::npos)
          << row.code << " " << LastMessage();
      EXPECT_EQ(Number("CumP"), complement ? 1 - row.central : row.central) << row.code;
      EXPECT_EQ(Get("CumP"), row.central) << row.code;
      EXPECT_EQ(Box(BoxOf(row.code, UnknownParameter).c_str()), "0.00") << row.code;
      EXPECT_EQ(Get(BoxOf(row.code, UnknownParameter).c_str()), 0) << row.code;
      host_.ClearMessages();
      Press(ControlBack);
    }
  }
}

// --- Failures.

TEST_F(CalculatorConformance, AFailedRoutineShowsInTheBoxOfTheUnknownAlone) {
  const struct {
    const char* code;
    const char* inputs;
    std::size_t unknown;
  } kFailures[] = {
      // The quantile, started from z + delta or the series, does not settle.
      {"T", "TObserved=2 DegreesOfFreedom=5 Delta=77.52752276779836 CumP=0.9999", UnknownStatistic},
      // At one degree of freedom the distribution is flat in delta.
      {"T", "TObserved=2127.192548373937 DegreesOfFreedom=1 CumP=0.9999", UnknownParameter},
      // 500 terms do not reach the end of the series, although their sum is returned.
      {"X2", "ObservedChiSquare=900 DegreesOfFreedom=1 Delta=900", UnknownProbability},
      // So every evaluation of this search fails.
      {"X2", "ObservedChiSquare=7 DegreesOfFreedom=1 Delta=900 CumP=0.5", UnknownStatistic},
      {"R2", "R2Observed=0.5 PopulationR2=0.99 SampleSize=3 TotalNumberOfVars=2 CumP=0.9999",
       UnknownStatistic},
      // Up to n successes every proportion has probability 1.
      {"Binomial", "XObserved=20 SampleSize=20 CumP=0.25", UnknownParameter}};
  for (const auto& failure : kFailures) {
    Open(failure.code);
    Fill(failure.inputs);
    Choose(failure.unknown);
    const std::string field = BoxOf(failure.code, failure.unknown);
    std::map<std::string, double> before;
    for (const Field& other : TableOf(rows_->family).fields) {
      before[other.name] = Get(other.name);
    }
    before[field] = Get(field.c_str(), Instance::Defaults);
    Compute();
    EXPECT_EQ(Box(field.c_str()), kError) << failure.code << " " << field;
    EXPECT_TRUE(host_.messages().empty()) << failure.code;
    for (const auto& [name, value] : before) {
      EXPECT_EQ(Get(name.c_str()), value) << failure.code << " " << name;
    }
    Press(ControlBack);
  }
}

TEST_F(CalculatorConformance, ASearchThatIsStoppedCloseToItsEndIsAnErrorToo) {
  // The start is within 0.0001 of the probability, so that a stop keeps the value, with a failure
  // word.
  Open("R");
  Fill("RObserved=0.1 SampleSize=100000 CumP=0.2 Algorithm=1");
  Choose(UnknownParameter);
  host_.cancelled = [] { return true; };
  Compute();
  EXPECT_EQ(Box("Rho"), kError);
  EXPECT_EQ(Get("Rho"), 0.2);
  EXPECT_TRUE(host_.messages().empty());
  EXPECT_EQ(host_.calls.lockResults, 1);
  EXPECT_EQ(host_.calls.unlockResults, 1);
  host_.cancelled = nullptr;
  Compute();
  EXPECT_NE(Box("Rho"), kError) << "the next computation starts afresh";
}

// --- The check box.

TEST_F(CalculatorConformance, TheCheckBoxTwiceReturnsATextAsTheBoxShowsIt) {
  for (const Case& row : kCases) {
    Open(row.code);
    for (const char* typed : {"0.95", "0.10", "0.30", "0.025", "0.0625", "0.333", "0.9999",
                              "0.12345678", "0.00000001"}) {
      Type("CumP", typed);
      const double stored = Get("CumP");
      Click("OneMinusP");
      EXPECT_EQ(Get("CumP"), stored);
      EXPECT_NEAR(std::stod(Box("CumP")), 1 - std::stod(typed), 1e-9) << row.code << " " << typed;
      Click("OneMinusP");
      EXPECT_EQ(Box("CumP"), typed) << row.code;
      EXPECT_EQ(Get("CumP"), stored);
    }
    Press(ControlBack);
  }
}

TEST_F(CalculatorConformance, TheCheckBoxLeavesAnErrorInTheBox) {
  Open("X2");
  Fill("ObservedChiSquare=900 DegreesOfFreedom=1 Delta=900");
  Compute();
  ASSERT_EQ(Box("CumP"), kError);
  Click("OneMinusP");
  EXPECT_EQ(Box("CumP"), kError);
  EXPECT_EQ(TextOf(ControlProbabilityLabel), "1 - Cum. p:");
  EXPECT_EQ(TextOf("WhatToCompute=1"), "1 - &p");
  Click("OneMinusP");
  EXPECT_EQ(Box("CumP"), kError);
  EXPECT_EQ(TextOf(ControlProbabilityLabel), "Cum. p:");
  EXPECT_EQ(Get("CumP"), 0.95);
}

TEST_F(CalculatorConformance, TheCheckBoxTouchesNoOtherBoxAndComputesNothing) {
  for (const Case& row : kCases) {
    Open(row.code);
    Fill(row.inputs);
    std::vector<std::pair<std::string, std::string>> boxes;
    for (const char* field : rows_->fields) {
      if (std::string(field) != "CumP" && ControlOfField(field) != 0 &&
          std::string(field) != "OneMinusP") {
        boxes.emplace_back(field, Box(field));
      }
    }
    EXPECT_GE(boxes.size(), 3u);
    Click("OneMinusP");
    for (const auto& [field, text] : boxes) {
      EXPECT_EQ(Box(field.c_str()), text) << row.code << " " << field;
    }
    EXPECT_TRUE(host_.messages().empty());
    Press(ControlBack);
  }
}

// --- Binomial.

TEST_F(CalculatorConformance, AFirstTermThatJustReachesPNeedsNoSearch) {
  Open("Binomial");
  Choose(UnknownStatistic);
  // log(1 / 2) on both sides.
  Fill("SampleSize=1 Pi=0.5 CumP=0.5");
  Compute();
  EXPECT_EQ(Box("XObserved"), "0");
  EXPECT_EQ(Get("XObserved"), 0);
  EXPECT_EQ(TextOf(ControlActualValue), "0.5");
}

TEST_F(CalculatorConformance, TheActualValueOfNoSearchIsComplementedToo) {
  Open("Binomial");
  Choose(UnknownStatistic);
  Click("OneMinusP");
  Fill("SampleSize=10 Pi=0.001 CumP=0.05");
  Compute();
  EXPECT_EQ(Box("XObserved"), "0");
  EXPECT_EQ(TextOf(ControlActualValue), "0.00995512");
  EXPECT_NEAR(Get("CumP"), 0.95, 1e-15) << "the requested value stays the requested one";
}

TEST_F(CalculatorConformance, TheLabelsOfTheBinomialFollowTheUnknownAndTheCheckBox) {
  Open("Binomial");
  Click("OneMinusP");
  EXPECT_EQ(TextOf(ControlProbabilityLabel), "1 - Cum. p:");
  Choose(UnknownStatistic);
  Fill("SampleSize=20 Pi=0.5 CumP=0.25");
  Compute();
  EXPECT_EQ(TextOf(ControlProbabilityLabel), "Requested Value:");
  EXPECT_TRUE(Visible(ControlActualValue));
  for (const std::size_t unknown : {1u, 2u}) {
    Choose(unknown);
    Fill("XObserved=9 CumP=0.25");
    Compute();
    EXPECT_EQ(TextOf(ControlProbabilityLabel), "1 - Cum. p:");
    EXPECT_FALSE(Visible(ControlActualValue));
    EXPECT_FALSE(Visible(ControlActualValueLabel));
  }
  for (const char* code : {"T", "F", "X2", "R2", "R"}) {
    Press(ControlBack);
    Open(code);
    EXPECT_EQ(Find(ControlActualValue), nullptr) << code;
    EXPECT_EQ(Find(ControlActualValueLabel), nullptr) << code;
  }
}

// --- The other commands.

TEST_F(CalculatorConformance, BackCopiesTheCommittedRecordAndLeaves) {
  for (const Case& row : kCases) {
    for (const int back : {2, 123}) {
      Open(row.code);
      Fill(row.inputs);
      Click("OneMinusP");
      Choose(UnknownParameter);
      Compute();
      host_.calls.exits.clear();
      Press(back);
      ASSERT_EQ(host_.calls.exits.size(), 1u) << row.code;
      EXPECT_EQ(host_.calls.exits.back().stage, 101);
      EXPECT_EQ(host_.calls.exits.back().kind, 1);
      EXPECT_EQ(host_.calls.exits.back().flag, 0);
      for (const Field& field : TableOf(rows_->family).fields) {
        EXPECT_EQ(Get(field.name), Get(field.name, Instance::Committed))
            << row.code << " " << field.name;
      }
    }
  }
}

TEST_F(CalculatorConformance, RestoreDefaultsTakesBackTheUnknownTheCheckBoxAndTheAlgorithm) {
  for (const Case& row : kCases) {
    for (const int restore : {ControlRestoreDefaults, ControlRestoreDefaultsToo}) {
      Open(row.code);
      Fill(row.inputs);
      if (RadiosOf("Algorithm", rows_->family) != nullptr &&
          TableOf(rows_->family).Find("Algorithm") != nullptr && Find("Algorithm=0") != nullptr) {
        Fill("Algorithm=1");
        Press("Algorithm=0");
      }
      Click("OneMinusP");
      Choose(UnknownParameter);
      EXPECT_EQ(Press(restore), 1) << row.code;
      for (const Field& field : TableOf(rows_->family).fields) {
        EXPECT_EQ(Get(field.name), Get(field.name, Instance::Defaults))
            << row.code << " " << field.name;
      }
      EXPECT_TRUE(IsChecked("WhatToCompute=1")) << row.code;
      EXPECT_FALSE(IsChecked("OneMinusP")) << row.code;
      EXPECT_EQ(TextOf(ControlProbabilityLabel), "Cum. p:") << row.code;
      EXPECT_EQ(TextOf("WhatToCompute=1"), "&p") << row.code;
      EXPECT_EQ(Number("CumP"), 0.95) << row.code;
      if (Find("Algorithm=0") != nullptr) {
        EXPECT_TRUE(IsChecked(RadioOf("Algorithm", static_cast<int>(Get("Algorithm")))))
            << row.code;
      }
      Press(ControlBack);
    }
  }
}

TEST_F(CalculatorConformance, OpensWithWhatTheSettingsFileKeepsForItsFamily) {
  const testing::TemporaryFolder folder;
  std::ofstream(folder.File("POWER.INI")) << "[POWER_ANALYSIS_ONE_SAMPLE_TTEST]\n"
                                             "TObserved=2.5\nDegreesOfFreedom=7\nOneMinusP=1\n"
                                             "ComputeP=0\nComputeDelta=1\nCumP=0.75\n";
  host_.configFolder = folder.path();
  analysis_.reset(Zlv6NewAnalysis());
  host_.Start(*analysis_);
  Open("T");
  EXPECT_EQ(Number("TObserved"), 2.5);
  EXPECT_EQ(Number("DegreesOfFreedom"), 7);
  EXPECT_TRUE(IsChecked("WhatToCompute=2")) << "Delta is the unknown";
  EXPECT_TRUE(IsChecked("OneMinusP"));
  EXPECT_EQ(Number("CumP"), 0.25);
  EXPECT_EQ(Get("Delta"), 0) << "no file keeps it";
  Compute();
  int status = 0;
  int failure = 0;
  EXPECT_EQ(Get("Delta"), SolveParameter(2.5, 7, 0.75, NoncentralTDeltaStart(2.5, 7, 0.75), status,
                                         failure, SearchTDelta, 0));
  EXPECT_EQ(host_.calls.keywordsWritten, 0);
}

}  // namespace
}  // namespace poweranalysis
