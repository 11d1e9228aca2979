#include <set>

#include "cli/Program.h"

namespace poweranalysis {

namespace {

using Describe = Program;

const std::vector<std::string> kFamilies = {"T1", "T2",   "T3",  "PC",  "AV1", "AV2",
                                            "V1", "V2",   "R",   "Z2R", "R2",  "P1",
                                            "P2", "QMAC", "SA1", "SA2", "SA3", "SEM"};

// Every field of all families with its option, written out by hand.
const std::map<std::string, std::string> kOptions = {
    {"Algorithm", "algorithm"},
    {"Alpha", "alpha"},
    {"AlphaEnd", "alpha-end"},
    {"AlphaStart", "alpha-start"},
    {"BetweenGroupR", "between-group-r"},
    {"Columns", "columns"},
    {"ComputeDelta", "compute-delta"},
    {"ComputeP", "compute-p"},
    {"ComputeT", "compute-t"},
    {"Confidence", "confidence"},
    {"Continuity", "continuity"},
    {"CumP", "cum-p"},
    {"D", "d"},
    {"DegreesOfFreedom", "degrees-of-freedom"},
    {"Delta", "delta"},
    {"DeltaEnd", "delta-end"},
    {"DeltaStart", "delta-start"},
    {"Df1", "df1"},
    {"Df2", "df2"},
    {"DfEnd", "df-end"},
    {"DfIntervals", "df-intervals"},
    {"DfStart", "df-start"},
    {"DfToVary", "df-to-vary"},
    {"EffectToTest", "effect-to-test"},
    {"EndRMSSE", "end-rmsse"},
    {"EqualN", "equal-n"},
    {"EsEnd", "es-end"},
    {"EsStart", "es-start"},
    {"Eta", "eta"},
    {"EtaEnd", "eta-end"},
    {"EtaStart", "eta-start"},
    {"FObserved", "f-observed"},
    {"Groups", "groups"},
    {"H0Type", "h0-type"},
    {"Lambda1", "lambda1"},
    {"Lambda2", "lambda2"},
    {"Lambda2End", "lambda2-end"},
    {"Lambda2Start", "lambda2-start"},
    {"ModelType", "model-type"},
    {"Mu", "mu"},
    {"Mu0", "mu0"},
    {"Mu1", "mu1"},
    {"Mu2", "mu2"},
    {"N", "n"},
    {"NEnd", "n-end"},
    {"NInterval", "n-interval"},
    {"NStart", "n-start"},
    {"NToVary", "n-to-vary"},
    {"NullHypothesizedVariance", "null-hypothesized-variance"},
    {"NumberOfGroups", "number-of-groups"},
    {"ObservedChiSquare", "observed-chi-square"},
    {"OneMinusP", "one-minus-p"},
    {"P", "p"},
    {"PObserved", "p-observed"},
    {"Pi", "pi"},
    {"Pi0", "pi0"},
    {"Pi1", "pi1"},
    {"Pi2", "pi2"},
    {"Pi2End", "pi2-end"},
    {"Pi2Start", "pi2-start"},
    {"PiEnd", "pi-end"},
    {"PiStart", "pi-start"},
    {"PopulationR2", "population-r2"},
    {"PopulationVariance", "population-variance"},
    {"PowerEnd", "power-end"},
    {"PowerGoal", "power-goal"},
    {"PowerStart", "power-start"},
    {"R", "r"},
    {"R0", "r0"},
    {"R2End", "r2-end"},
    {"R2Null", "r2-null"},
    {"R2Observed", "r2-observed"},
    {"R2Start", "r2-start"},
    {"REnd", "r-end"},
    {"RMSSE", "rmsse"},
    {"RMSSE_Col", "rmsse-col"},
    {"RMSSE_Int", "rmsse-int"},
    {"RMSSE_Row", "rmsse-row"},
    {"RObserved", "r-observed"},
    {"RStart", "r-start"},
    {"Ratio", "ratio"},
    {"RatioEnd", "ratio-end"},
    {"RatioStart", "ratio-start"},
    {"Rho", "rho"},
    {"Rho0", "rho0"},
    {"Rho1", "rho1"},
    {"Rho2", "rho2"},
    {"RhoEnd", "rho-end"},
    {"RhoStart", "rho-start"},
    {"Rows", "rows"},
    {"SampleSize", "sample-size"},
    {"SampleSizeN1", "sample-size-n1"},
    {"SampleSizeN2", "sample-size-n2"},
    {"Sigma", "sigma"},
    {"Sigma1", "sigma1"},
    {"Sigma2", "sigma2"},
    {"StandardizedEffect", "standardized-effect"},
    {"StartRMSSE", "start-rmsse"},
    {"SumOfSquaredWeights", "sum-of-squared-weights"},
    {"T", "t"},
    {"T0", "t0"},
    {"TObserved", "t-observed"},
    {"TotalNumberOfVars", "total-number-of-vars"},
    {"Var1", "var1"},
    {"Var2", "var2"},
    {"VarEnd", "var-end"},
    {"VarStart", "var-start"},
    {"WhatToCompute", "what-to-compute"},
    {"XObserved", "x-observed"},
};

TEST_F(Describe, MakesOneOptionOfEveryFieldOfEveryFamily) {
  std::set<std::string> seen;
  for (const std::string& family : kFamilies) {
    std::set<std::string> options;
    const auto json = RunJson({"describe", family});
    EXPECT_EQ(family, json["family"].get<std::string>());
    for (const auto& field : json["fields"]) {
      const std::string name = field["field"];
      const auto row = kOptions.find(name);
      ASSERT_NE(kOptions.end(), row) << family << " " << name;
      EXPECT_EQ("--" + row->second, field["option"].get<std::string>());
      EXPECT_TRUE(options.insert(field["option"]).second) << family << " " << field["option"];
      seen.insert(name);
    }
  }
  EXPECT_EQ(kOptions.size(), seen.size());
}

TEST_F(Describe, NoOptionOfAFieldIsOneOfTheGeneralOptions) {
  const std::set<std::string> general = {"set",    "settings", "save-settings", "save-defaults",
                                         "h0",     "format",   "output",        "chart",
                                         "config", "help"};
  for (const auto& [field, option] : kOptions) {
    EXPECT_EQ(0U, general.count(option)) << field;
  }
}

TEST_F(Describe, TellsRangeDefaultLabelMeaningAndChoices) {
  const auto json = RunJson({"describe", "two-means"});
  EXPECT_EQ("Two Means, t-Test, Ind. Samples", json["title"]);
  for (const auto& field : json["fields"]) {
    EXPECT_FALSE(field["meaning"].get<std::string>().empty()) << field["field"];
    if (field["field"] == "Sigma") {
      EXPECT_EQ(10, field["default"]);
      EXPECT_EQ(1e-10, field["range"]["lower"]);
      EXPECT_EQ(1e30, field["range"]["upper"]);
      EXPECT_EQ("1e-10 < PopulationSigma <= 1e+30", field["range"]["text"]);
      EXPECT_EQ("PopulationSigma", field["label"]);
      EXPECT_EQ("f64", field["type"]);
    }
    if (field["field"] == "NToVary") {
      EXPECT_EQ((nlohmann::json{{"equal", 0}, {"n1", 1}, {"n2", 2}}), field["choices"]);
    }
  }
}

TEST_F(Describe, OffersTheUnknownsOfACalculatorAndNoMore) {
  EXPECT_EQ((nlohmann::json{{"t", 0}, {"p", 1}, {"delta", 2}}),
            RunJson({"describe", "t"})["fields"][0]["choices"]);
  EXPECT_EQ((nlohmann::json{{"x", 0}, {"p", 1}, {"pi", 2}}),
            RunJson({"describe", "binomial"})["fields"][0]["choices"]);
}

TEST_F(Describe, QuotesTheLabelOfAFieldThatHasOne) {
  const std::string text = Run({"describe", "r2"}).out;
  EXPECT_TRUE(Has(text, "default 0.5; label \"Observed R-Square (R2)\"\n")) << text;
  EXPECT_TRUE(Has(text, "0 <= PopulationR2 < 1; default 0.2\n")) << text;
}

TEST_F(Describe, HasNoRangeForAWorkingValue) {
  const auto json = RunJson({"describe", "t1"});
  for (const auto& field : json["fields"]) {
    EXPECT_EQ(field["field"] == "Delta", field["range"].is_null()) << field["field"];
  }
  EXPECT_TRUE(Has(Run({"describe", "t1"}).out, "--delta (Delta)"));
}

TEST_F(Describe, ServesFamiliesThatHaveNoDialogsYet) {
  const Result result = Run({"describe", "model-fit"});
  EXPECT_EQ(0, result.status);
  EXPECT_TRUE(Has(result.out, "SEM (model-fit): Structural Equation Modeling"));
  EXPECT_TRUE(Has(result.out, "0 <= Null RMSEA (R0) <= 0.5"));
}

}  // namespace

}  // namespace poweranalysis
