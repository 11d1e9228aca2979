#include <chrono>
#include <cmath>
#include <iterator>
#include <sstream>

#include "cli/Program.h"

namespace poweranalysis {

namespace {

class Calc : public Program {
 protected:
  static Arguments Words(const std::string& line) {
    std::istringstream in("calc " + line);
    return {std::istream_iterator<std::string>(in), {}};
  }
  Result RunCalc(const std::string& line) { return Run(Words(line)); }
  nlohmann::json CalcJson(const std::string& line, int status = 0) {
    return RunJson(Words(line), status);
  }
  // The unknown, which is the last row.
  double Answer(const std::string& line) {
    const nlohmann::json json = CalcJson(line);
    return json["rows"].empty() ? std::nan("") : json["rows"].back()["value"].get<double>();
  }
  void ExpectRefused(const std::string& line, const std::string& reason) {
    const Result result = RunCalc(line);
    EXPECT_EQ(1, result.status) << line;
    EXPECT_EQ("", result.out) << line;
    EXPECT_TRUE(Has(result.err, reason)) << line << ": " << result.err;
  }
  void ExpectWrongUse(const std::string& line, const std::vector<std::string>& parts) {
    const Result result = RunCalc(line);
    EXPECT_EQ(2, result.status) << line;
    EXPECT_EQ("", result.out) << line;
    for (const std::string& part : parts) {
      EXPECT_TRUE(Has(result.err, part)) << line << ": " << result.err;
    }
  }
};

TEST_F(Calc, SolvesForEachNumberOfEachDistribution) {
  const std::vector<std::pair<std::string, double>> cases = {
      {"t --unknown t --p 0.975 --df 10 --delta 0", 2.228139},
      {"t --unknown p --t 2 --df 4 --delta 1", 0.764567},
      {"t --unknown delta --t 2 --df 4 --p 0.76456745", 1},
      {"f --unknown f --p 0.95 --df1 3 --df2 20 --delta 0", 3.098391},
      {"f --unknown p --f 2 --df1 4 --df2 5 --delta 1", 0.692767},
      {"f --unknown delta --f 4.1028210151304005 --df1 2 --df2 10 --p 0.1", 17.438757},
      {"chi-square --unknown chi-square --p 0.95 --df 10 --delta 0", 18.307038},
      {"chi-square --unknown p --chi-square 2 --df 4 --delta 1", 0.186110},
      {"chi-square --unknown delta --chi-square 2 --df 4 --p 0.09109162", 3},
      {"r-square --unknown r-square --p 0.95 --rho-square 0 --n 20 --k 3 --algorithm accuracy",
       0.297029},
      {"r-square --unknown p --r-square 0.5 --rho-square 0.3 --n 100 --k 6 --algorithm accuracy",
       0.987229},
      {"r-square --unknown rho-square --r-square 0.5 --n 100 --k 6 --p 0.9872287 --algorithm "
       "accuracy",
       0.3},
      {"correlation --unknown r --rho 0 --n 153 --p 0.95 --algorithm exact", 0.133477},
      {"correlation --unknown p --r 0.576 --rho 0 --n 12 --algorithm exact", 0.975004},
      {"correlation --unknown rho --r 0.5 --n 30 --p 0.5 --algorithm crude", 0.5},
      {"binomial --unknown x --n 20 --pi 0.65 --p 0.95", 16},
      {"binomial --unknown p --x 16 --n 20 --pi 0.65", 0.955624},
      {"binomial --unknown pi --x 16 --n 20 --p 0.9556244", 0.65},
  };
  for (const auto& [line, expected] : cases) {
    EXPECT_NEAR(Answer(line), expected, 2e-6) << line;
  }
}

TEST_F(Calc, PrintsTheNumbersWithTheUnknownLastAndWhatTheySay) {
  const Result result = RunCalc("t --t 2 --df 4 --delta 1");
  EXPECT_EQ(0, result.status);
  EXPECT_EQ("", result.err);
  EXPECT_EQ(
      "Noncentral t Distribution\n\n"
      "               Value\n"
      "Observed T  2\n"
      "Df          4\n"
      "Delta       1\n"
      "Cum. p      0.764567\n\n"
      "P(t <= 2) = 0.76456745; Df = 4, Delta = 1\n",
      result.out);
}

TEST_F(Calc, TheProbabilityIsTheUnknownUnlessAnotherIsNamed) {
  EXPECT_EQ(RunCalc("t --t 2 --df 4 --delta 1").out,
            RunCalc("t --unknown p --t 2 --df 4 --delta 1").out);
}

TEST_F(Calc, OneMinusPTurnsTheProbabilityRoundInAndOut) {
  EXPECT_NEAR(Answer("binomial --x 16 --n 20 --pi 0.65 --one-minus-p"), 0.0443756, 1e-7);
  EXPECT_EQ(Answer("t --unknown t --p 0.025 --one-minus-p --df 10"),
            Answer("t --unknown t --p 0.975 --df 10"));
  const Result result = RunCalc("f --f 3.1 --df1 3 --df2 20 --one-minus-p");
  EXPECT_TRUE(Has(result.out, "1 - Cum. p")) << result.out;
  EXPECT_TRUE(Has(result.out, "P(F > 3.1) = 0.04992453")) << result.out;
}

TEST_F(Calc, GivesTheUnknownAsItsAnswer) {
  const nlohmann::json t = CalcJson("t --unknown t --p 0.975 --df 10");
  EXPECT_EQ(t["answer"]["name"], "TObserved");
  EXPECT_EQ(t["answer"]["value"], t["rows"].back()["value"]);
  EXPECT_TRUE(t["answer"]["counts"].is_null());
  EXPECT_TRUE(t["answer"]["of"].is_null());
  EXPECT_EQ(t["answers"], nlohmann::json::array({t["answer"]}));
  EXPECT_EQ(CalcJson("f --f 2 --df1 3 --df2 20")["answer"]["name"], "CumP");
}

TEST_F(Calc, AnUpperTailIsComputedFromItsOwnSide) {
  const std::vector<std::pair<std::string, double>> cases = {
      {"t --t 10 --df 20 --one-minus-p", 1.5818906740e-9},
      {"f --f 40 --df1 4 --df2 20 --one-minus-p", 2.8361056353e-9},
      {"f --f 100 --df1 4 --df2 50 --delta 5 --one-minus-p", 4.6267581798e-19},
      {"chi-square --chi-square 60 --df 4 --one-minus-p", 2.9008631203e-12},
      {"chi-square --chi-square 60 --df 4 --delta 1 --one-minus-p", 1.6004612029e-10},
      {"r-square --r-square 0.8 --rho-square 0.2 --n 100 --k 5 --algorithm accuracy --one-minus-p",
       5.0598462679e-18},
      {"binomial --x 40 --n 50 --pi 0.2 --one-minus-p", 7.8100649580e-21},
  };
  for (const auto& [line, expected] : cases) {
    EXPECT_NEAR(Answer(line), expected, 1e-6 * expected) << line;
  }
}

TEST_F(Calc, AnUpperTailIsNeverNegative) {
  for (const char* line :
       {"t --t 5000 --df 3 --delta -3", "t --t 60 --df 149999", "t --t 300 --df 40 --delta 2",
        "f --f 1e30 --df1 3 --df2 100", "f --f 1000 --df1 10001 --df2 10001 --delta 50",
        "chi-square --chi-square 1e30 --df 5", "chi-square --chi-square 3000 --df 9 --delta 800",
        "r-square --r-square 0.9998 --n 1000", "correlation --r 0.9999 --n 5000 --rho -0.9",
        "correlation --r 0.999 --n 90 --algorithm exact", "binomial --x 50 --n 40"}) {
    const double upper = Answer(std::string(line) + " --one-minus-p");
    EXPECT_GE(upper, 0) << line;
    EXPECT_FALSE(std::signbit(upper)) << line;
    EXPECT_LE(Answer(line), 1) << line;
  }
}

TEST_F(Calc, TheStatementShowsASmallProbability) {
  const Result small = RunCalc("chi-square --chi-square 60 --df 4 --delta 1 --one-minus-p");
  EXPECT_TRUE(Has(small.out, "P(Chi-square > 60) = 1.60046e-10;")) << small.out;
  const Result none = RunCalc("f --f 0 --df1 3 --df2 20");
  EXPECT_TRUE(Has(none.out, "P(F <= 0) = 0;")) << none.out;
}

TEST_F(Calc, AFieldHasItsOwnOptionAndShorterOnes) {
  const std::string expected = RunCalc("r-square --r-square 0.5 --rho-square 0.3 --n 50 --k 4").out;
  EXPECT_EQ(expected, RunCalc("r-square --r2-observed 0.5 --population-r2 0.3 --sample-size 50 "
                              "--total-number-of-vars 4")
                          .out);
  EXPECT_EQ(expected, RunCalc("r-square --set R2Observed=0.5 --set populationr2=0.3 --n 50 "
                              "--set TotalNumberOfVars=4")
                          .out);
  EXPECT_EQ(RunCalc("chi-square --unknown chi-square").out,
            RunCalc("X2 --unknown ObservedChiSquare").out);
}

TEST_F(Calc, NamesItsAlgorithm) {
  EXPECT_TRUE(Has(RunCalc("correlation --r 0.5").out, "Computational Algorithm: Fisher Z Refined"));
  EXPECT_TRUE(
      Has(RunCalc("r-square --algorithm accuracy").out, "Computing Algorithm: More Accurate"));
  EXPECT_FALSE(Has(RunCalc("f").out, "Algorithm"));
}

TEST_F(Calc, TellsRequestedAndActualProbabilityOfADiscreteAnswer) {
  const nlohmann::json json = CalcJson("binomial --unknown x --n 20 --pi 0.65 --p 0.95");
  EXPECT_EQ(Value(json, "Requested Value"), 0.95);
  EXPECT_NEAR(Value(json, "Actual Value"), 0.9556244, 1e-7);
  EXPECT_EQ(Value(json, "Observed X"), 16);
}

TEST_F(Calc, JsonTellsCalculatorAndRows) {
  const nlohmann::json json = CalcJson("chi-square --chi-square 2 --df 4 --delta 1");
  EXPECT_EQ(json["family"], "X2");
  EXPECT_EQ(json["mode"], "calc");
  EXPECT_EQ(json["status"], 0);
  EXPECT_EQ(json["rows"].size(), 4u);
  EXPECT_EQ(json["rows"][3]["title"], "Cum. p");
  EXPECT_TRUE(json["messages"].empty());
}

TEST_F(Calc, CsvHoldsAllDigits) {
  const Result result = RunCalc("t --t 2 --df 4 --delta 1 --format csv");
  const std::size_t last = result.out.rfind(',');
  EXPECT_EQ(result.out.substr(0, last), "Title,Value\nObserved T,2\nDf,4\nDelta,1\nCum. p");
  EXPECT_GT(result.out.size() - last, 15u) << result.out;
  EXPECT_NEAR(std::stod(result.out.substr(last + 1)), 0.7645674538, 1e-9);
}

TEST_F(Calc, WritesToAFile) {
  const Result result = RunCalc("t --t 2 -o answer.txt");
  EXPECT_EQ(0, result.status);
  EXPECT_EQ("", result.out);
  EXPECT_EQ(RunCalc("t --t 2").out, Read("answer.txt"));
}

TEST_F(Calc, DefaultsComeFromTheSettingsOfTheFamily) {
  ::mkdir(At("config").c_str(), 0700);
  ::mkdir(At("config/poweranalysis").c_str(), 0700);
  Write("config/poweranalysis/POWER.INI", "[T1]\nTObserved=3\nDegreesOfFreedom=7\n");
  const nlohmann::json json = CalcJson("t");
  EXPECT_EQ(Value(json, "Df"), Value(CalcJson("t --config config/poweranalysis"), "Df"));
}

TEST_F(Calc, SaysWhenNothingHasTheProbability) {
  for (const auto& [line, number] : std::vector<std::pair<std::string, int>>{
           {"f --unknown delta --f 1 --p 0.95", 13184},
           {"chi-square --unknown delta --p 0.95", 13195},
           {"r-square --unknown rho-square --r-square 0.01", 34001}}) {
    const nlohmann::json json = CalcJson(line, 1);
    EXPECT_EQ(json["messages"][0]["id"], number) << line;
    EXPECT_EQ(json["rows"].back()["value"], 0) << "what the dialog shows is told all the same";
    EXPECT_EQ(json["status"], 1);
  }
}

TEST_F(Calc, AWarningIsToldAndNoRefusal) {
  const Result result = RunCalc("t --t 2 --df 4 --delta 6000");
  EXPECT_EQ(0, result.status);
  EXPECT_TRUE(Has(result.err, "Values for Delta greater than 5000 may yield inaccurate results."));
  EXPECT_TRUE(Has(result.out, "Cum. p"));
}

TEST_F(Calc, AnErrorOfTheCalculatorIsNoAnswer) {
  ExpectRefused("chi-square --unknown chi-square --p 0.04 --df 1",
                "--Error-- no value of chi-square could be computed");
  ExpectRefused("f --unknown delta --f 1.25 --df1 1 --df2 10 --p 0.5",
                "--Error-- no value of delta could be computed");
  const nlohmann::json json = CalcJson("f --unknown delta --f 1.25 --df1 1 --df2 10 --p 0.5", 1);
  EXPECT_TRUE(json["rows"].empty());
}

TEST_F(Calc, ValuesOutOfRangeAreRefusedByNameRangeAndValue) {
  for (const char* calculator :
       {"t --unknown t", "f --unknown f", "chi-square --unknown delta",
        "r-square --unknown r-square", "correlation --unknown rho", "binomial --unknown x"}) {
    for (const char* p : {"0", "1", "-0.1", "1.5", "1e308", "1e-308"}) {
      ExpectRefused(std::string(calculator) + " --p " + p,
                    "The current value for Cumulative P is outside the permissible range.");
    }
  }
  ExpectRefused("t --df 0", "1 <= Df <= 149999.\n Current value is 0.");
  ExpectRefused("t --df 99999999999999", "Current value is 2147483647.");
  ExpectRefused("t --t 5001", "-5000 <= Observed T <= 5000.\n Current value is 5001.");
  ExpectRefused("f --df1 0", "1 <= Df1 <= 10001.");
  ExpectRefused("f --df2 -3", "1 <= Df2 <= 10001.\n Current value is -3.");
  ExpectRefused("f --delta -1", "0 <= Delta <= 10000.\n Current value is -1.");
  ExpectRefused("f --f -1", "Observed F");
  ExpectRefused("chi-square --df 0", "Df");
  ExpectRefused("chi-square --delta -0.5", "Delta");
  ExpectRefused("chi-square --delta 1e300", "Current value is 1e+300.");
  ExpectRefused("correlation --r 1", "-0.9999 <= Observed R <= 0.9999.\n Current value is 1.");
  ExpectRefused("correlation --r -1", "Current value is -1.");
  ExpectRefused("correlation --rho 1", "Rho");
  ExpectRefused("correlation --rho -1", "Rho");
  ExpectRefused("correlation --n 2", "3 <= Sample Size (N) <= 150000.");
  ExpectRefused("correlation --algorithm 3", "0 <= Algorithm <= 2.");
  ExpectRefused("r-square --r-square 1", "Observed R-Square (R2)");
  ExpectRefused("r-square --rho-square -0.1", "Current value is -0.1.");
  ExpectRefused("r-square --algorithm 2", "Algorithm");
  ExpectRefused("binomial --x -1", "0 <= Observed X <= 50.");
  ExpectRefused("binomial --pi 1.1", "Pi");
  ExpectRefused("binomial --n 0", "Sample Size (N)");
}

TEST_F(Calc, NoMoreObservationsThanVariablesIsRefused) {
  ExpectRefused("r-square --n 3 --k 5",
                "Sample Size (N) must be greater than the Number of Predictors (P).");
  ExpectRefused("r-square --n 5 --k 5", "--Error--");
}

TEST_F(Calc, WhatIsNoNumberIsWrongUse) {
  for (const char* value : {"nan", "NaN", "inf", "-inf", "two", "1,5", "0x10", "1e999", "--"}) {
    ExpectWrongUse(std::string("t --t ") + value, {"--t"});
    ExpectWrongUse(std::string("t --delta ") + value, {"--delta"});
  }
  ExpectWrongUse("t --df 1.5", {"'1.5' is not a whole number", "1 <= Df <= 149999"});
  ExpectWrongUse("f --df1 two", {"'two' is not a number", "1 <= Df1 <= 10001"});
}

TEST_F(Calc, WrongUseIsToldInWords) {
  ExpectWrongUse("", {"a calculator is missing", "poweranalysis calc t"});
  ExpectWrongUse("--unknown t --p 0.9", {"a calculator is missing"});
  ExpectWrongUse("z", {"there is no calculator 'z'", "nearest"});
  ExpectWrongUse("t2", {"there is no calculator 't2'"});
  ExpectWrongUse("t --unknown q", {"--unknown: there is no 'q'; choose from t, p, delta"});
  ExpectWrongUse("t --unknown", {"--unknown: a value is missing"});
  ExpectWrongUse("t --unknown t --unknown p", {"--unknown was given twice"});
  ExpectWrongUse("t --alpha 0.05", {"there is no option '--alpha'"});
  ExpectWrongUse("t --chart power-vs-n", {"there is no option '--chart'"});
  ExpectWrongUse("t --settings x", {"there is no option '--settings'"});
  ExpectWrongUse("t --set Alpha=0.05", {"--set: the calculator has no field Alpha"});
  ExpectWrongUse("t --t 1 --t-observed 2", {"twice"});
  ExpectWrongUse("t --t 1 --set TObserved=2", {"TObserved was given twice"});
  ExpectWrongUse("correlation --algorithm best",
                 {"'best' is not one of: exact, refined, crude (or a number"});
}

TEST_F(Calc, AValueForTheUnknownIsWrongUse) {
  ExpectWrongUse("t --unknown t --t 2 --p 0.9", {"--t: this is the unknown", "t, p, delta"});
  ExpectWrongUse("t --p 0.9", {"--p: this is the unknown when none is named"});
  ExpectWrongUse("binomial --unknown x --set XObserved=3", {"--x: this is the unknown"});
}

TEST_F(Calc, ExtremesOfEveryRangeComeToAnEndSoon) {
  using Clock = std::chrono::steady_clock;
  for (const char* line :
       {"t --unknown t --df 149999 --delta 1e300 --p 0.5",
        "t --unknown delta --df 149999 --t 5000 --p 0.0002",
        "f --unknown f --df1 10001 --df2 10001 --delta 10000 --p 0.9999",
        "f --unknown delta --f 1e30 --df1 1 --df2 1 --p 0.0001",
        "chi-square --unknown chi-square --df 10001 --delta 10000 --p 0.9999",
        "chi-square --unknown delta --chi-square 1e30 --df 10001 --p 0.5",
        "r-square --unknown r-square --rho-square 0.999999 --n 150000 --k 200 --p 0.0001 "
        "--algorithm accuracy",
        "r-square --unknown rho-square --r-square 0.9998 --n 150000 --k 3 --p 0.9 --algorithm "
        "accuracy",
        "correlation --unknown r --rho 0.9998 --n 3 --p 0.9999 --algorithm exact",
        "correlation --unknown rho --r 0.9999 --n 150000 --p 0.9999 --algorithm exact",
        "correlation --unknown rho --r 0.5 --n 3 --p 0.5 --algorithm exact",
        "binomial --unknown x --n 100000 --pi 0.5 --p 0.99999",
        "binomial --unknown x --n 4 --pi 0.1 --p 0.99995",
        "binomial --unknown pi --n 100000 --x 50 --p 0.00001"}) {
    const Clock::time_point start = Clock::now();
    const Result result = RunCalc(line);
    EXPECT_LT(Clock::now() - start, std::chrono::seconds(10)) << line;
    EXPECT_TRUE(result.status == 0 || result.status == 1) << line << " " << result.status;
    EXPECT_FALSE(Has(result.out, "nan")) << result.out;
    EXPECT_FALSE(Has(result.out, "-9999")) << result.out;
  }
}

TEST_F(Calc, HelpTellsOptionsUnknownsAndAnExampleThatRuns) {
  for (const char* calculator : {"t", "f", "chi-square", "r-square", "correlation", "binomial"}) {
    const Result help = RunCalc(std::string(calculator) + " --help");
    EXPECT_EQ(0, help.status);
    for (const char* part :
         {"--cum-p,--p NUMBER", "--unknown NAME", "--one-minus-p", "Unknowns: "}) {
      EXPECT_TRUE(Has(help.out, part)) << part << "\n" << help.out;
    }
    EXPECT_FALSE(Has(help.out, "--chart"));
    EXPECT_FALSE(Has(help.out, "--alpha"));
    const std::size_t example = help.out.find("  poweranalysis calc ");
    ASSERT_NE(example, std::string::npos) << help.out;
    const std::size_t words = example + std::string("  poweranalysis calc ").size();
    EXPECT_EQ(0, RunCalc(help.out.substr(words)).status) << help.out.substr(words);
  }
  const Result all = RunCalc("--help");
  EXPECT_TRUE(Has(all.out, "r-square"));
  EXPECT_TRUE(Has(Run({"--help"}).out, "calc"));
}

TEST_F(Calc, CalculatorsAreListedAndDescribed) {
  EXPECT_TRUE(Has(Run({"list"}).out, "Probability Distributions: poweranalysis calc CALCULATOR"));
  const Result text = Run({"describe", "chi-square"});
  EXPECT_EQ(0, text.status) << text.err;
  EXPECT_TRUE(Has(text.out, "--unknown (WhatToCompute)"));
  EXPECT_TRUE(Has(text.out, "chi-square = 0, p = 1, delta = 2"));
  EXPECT_TRUE(Has(text.out, "--observed-chi-square (ObservedChiSquare)"));
  const nlohmann::json json = RunJson({"describe", "t"});
  EXPECT_EQ(json["family"], "T");
  EXPECT_EQ(json["fields"].size(), 6u);
  EXPECT_EQ(json["fields"][0]["option"], "--unknown");
  EXPECT_EQ(json["fields"][0]["choices"]["delta"], 2);
  // A code of both kinds is that of the test.
  EXPECT_EQ(RunJson({"describe", "r2"})["name"], "multiple-correlation");
  EXPECT_EQ(RunJson({"describe", "r-square"})["name"], "r-square");
}

TEST_F(Calc, AStatementWritesDecimalsDownToATenThousandth) {
  EXPECT_TRUE(Has(Run({"calc", "t", "--t-observed", "-4.2"}).out, "P(t <= -4.2) = 0.00015875;"));
  EXPECT_TRUE(Has(Run({"calc", "t", "--t-observed", "-6"}).out, "P(t <= -6) = 1.70365e-06;"));
}

}  // namespace

}  // namespace poweranalysis
