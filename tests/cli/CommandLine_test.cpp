#include "cli/Program.h"

namespace poweranalysis {

namespace {

class CommandLine : public Program {
 protected:
  void ExpectWrongUse(const Arguments& arguments, const std::vector<std::string>& words) {
    const Result result = Run(arguments);
    EXPECT_EQ(2, result.status);
    EXPECT_EQ("", result.out);
    for (const std::string& word : words) {
      EXPECT_TRUE(Has(result.err, word)) << "wanted " << word << " in " << result.err;
    }
  }

  void ExpectRefused(const Arguments& arguments, const std::string& message) {
    const Result result = Run(arguments);
    EXPECT_EQ(1, result.status);
    EXPECT_EQ("", result.out);
    EXPECT_TRUE(Has(result.err, message)) << result.err;
  }
};

const std::vector<std::string> kWorkedExample = {
    "size", "t2", "--mu1", "5", "--mu2", "0", "--sigma", "10", "--power-goal", "0.8"};

TEST_F(CommandLine, PrintsTableAndReportOfTheWorkedExample) {
  const Result result = Run(kWorkedExample);
  EXPECT_EQ(0, result.status);
  EXPECT_EQ("", result.err);
  EXPECT_TRUE(Has(result.out,
                  "Sample Size Calculation\n"
                  "Two Means, t-Test, Ind. Samples\n"
                  "H0:  Mu1 = Mu2\n"
                  "\n"
                  "                                Value\n"
                  "Population Mean Mu1           5\n"
                  "Population Mean Mu2           0\n"
                  "Population S.D. (Sigma)      10\n"
                  "Standardized Effect (Es)      0.5\n"))
      << result.out;
  EXPECT_TRUE(Has(result.out, "Required N (per group)       64\n")) << result.out;
  EXPECT_TRUE(
      Has(result.out,
          "required in both groups. With N = 64 in each group, the actual power is 80.15%.\n"))
      << result.out;
}

TEST_F(CommandLine, RequiredSizeOfTheWorkedExampleIsTheSmallestAboveTheGoal) {
  const auto size = RunJson(kWorkedExample);
  EXPECT_EQ(64, Value(size, "Required N (per group)"));
  const auto powerOf = [this](const std::string& n) {
    return Value(RunJson({"power", "t2", "--mu1", "5", "--mu2", "0", "--sigma", "10",
                          "--sample-size-n1", n, "--sample-size-n2", n}),
                 "Power");
  };
  EXPECT_EQ(powerOf("64"), Value(size, "Actual Power for Required N"));
  EXPECT_GT(powerOf("64"), 0.8);
  EXPECT_LE(powerOf("63"), 0.8);
}

TEST_F(CommandLine, TakesAFamilyByCodeInAnyCaseAndByName) {
  const std::string expected = Run({"power", "t3"}).out;
  EXPECT_FALSE(expected.empty());
  EXPECT_EQ(expected, Run({"power", "T3"}).out);
  EXPECT_EQ(expected, Run({"power", "paired-means"}).out);
  EXPECT_EQ(expected, Run({"power", "Paired-Means"}).out);
  EXPECT_EQ(Run({"power", "t1"}).out, Run({"power", "one-mean"}).out);
  EXPECT_EQ(Run({"power", "t2"}).out, Run({"power", "two-means"}).out);
}

TEST_F(CommandLine, TakesTheFamilyBehindOptionsToo) {
  EXPECT_EQ(Run({"power", "t1", "--mu", "3"}).out, Run({"power", "--mu", "3", "t1"}).out);
  EXPECT_EQ(Run({"power", "t1"}).out, Run({"power", "--format", "text", "t1"}).out);
}

TEST_F(CommandLine, ReadsValuesInEveryUsualForm) {
  const std::string expected = Run({"power", "t1", "--mu", "-0.5"}).out;
  for (const char* text : {"-.5", "-5e-1", " -0.5 ", "-0.50"}) {
    EXPECT_EQ(expected, Run({"power", "t1", "--mu", text}).out) << text;
  }
  EXPECT_EQ(expected, Run({"power", "t1", "--mu=-0.5"}).out);
  EXPECT_EQ(Run({"power", "t1", "--mu", "3"}).out, Run({"power", "t1", "--mu", "+3"}).out);
  EXPECT_EQ(Run({"power", "t1", "--sample-size", "100"}).out,
            Run({"power", "t1", "--sample-size", "1e2"}).out);
}

TEST_F(CommandLine, SetsFieldsByTheirOwnNamesInAnyCase) {
  const std::string expected = Run({"power", "t2", "--mu1", "5", "--sample-size-n1", "40"}).out;
  EXPECT_EQ(expected, Run({"power", "t2", "--set", "Mu1=5", "--set", "SampleSizeN1=40"}).out);
  EXPECT_EQ(expected, Run({"power", "t2", "--set", "MU1=5", "--sample-size-n1", "40"}).out);
  EXPECT_EQ(expected, Run({"power", "t2", "--set=mu1=5", "--set", "samplesizen1=40"}).out);
}

TEST_F(CommandLine, TakesTheHypothesisByNumberAndByName) {
  const std::vector<std::pair<std::string, std::string>> names = {
      {"0", "two-sided"}, {"1", "upper"}, {"2", "lower"}};
  for (const auto& [number, name] : names) {
    const Result expected = Run({"power", "t1", "--mu", "3", "--h0-type", number});
    EXPECT_EQ(expected.out, Run({"power", "t1", "--mu", "3", "--h0", name}).out);
    EXPECT_EQ(expected.out, Run({"power", "t1", "--mu", "3", "--h0", number}).out);
    EXPECT_EQ(expected.out, Run({"power", "t1", "--mu", "3", "--set", "H0Type=" + name}).out);
  }
  EXPECT_TRUE(Has(Run({"power", "t1", "--mu", "3", "--h0", "upper"}).out, "H0:  Mu <= Mu0"));
}

TEST_F(CommandLine, VariesOneGroupWithTheOtherFixed) {
  const Arguments common = {
      "size", "t2", "--mu1", "5", "--sample-size-n1", "200", "--sample-size-n2", "50"};
  const auto with = [&common](const std::string& choice) {
    Arguments arguments = common;
    arguments.insert(arguments.end(), {"--n-to-vary", choice});
    return arguments;
  };
  EXPECT_EQ(Run(with("1")).out, Run(with("n1")).out);
  EXPECT_EQ(Run(with("2")).out, Run(with("N2")).out);
  EXPECT_TRUE(Has(Run(with("n1")).out, "with N2 fixed at 50"));
  EXPECT_TRUE(Has(Run(with("n2")).out, "with N1 fixed at 200"));
}

TEST_F(CommandLine, NumbersThatAreNoneAreWrongUse) {
  const Arguments texts = {"abc",   "",      "nan",  "NaN", "inf", "-inf", "infinity",
                           "1e999", "5,0,0", "0x10", "1 2", "--5", "+-5",  "5%"};
  for (const std::string& text : texts) {
    std::string quoted = "'";
    quoted += text;
    quoted += "'";
    ExpectWrongUse({"power", "t1", "--mu", text},
                   {"--mu", quoted, "not a number", "-1e+30 <= Mu <= 1e+30"});
    std::string assignment = "Mu=";
    assignment += text;
    ExpectWrongUse({"power", "t1", "--set", assignment}, {"--set Mu", quoted, "not a number"});
  }
  ExpectWrongUse({"power", "t1", "--mu="}, {"--mu", "''", "not a number"});
  ExpectWrongUse({"power", "t1", "--mu=", "--sigma", "5"}, {"--mu", "''", "not a number"});
}

TEST_F(CommandLine, ALoneCommaInANumberAsksForThePoint) {
  ExpectWrongUse({"power", "t1", "--mu", "0,5"},
                 {"--mu: '0,5' is not a number; did you mean 0.5?\n"});
  ExpectWrongUse({"power", "t1", "--set", "Mu=-1,25e2"},
                 {"--set Mu: '-1,25e2' is not a number; did you mean -1.25e2?\n"});
  for (const char* text : {"a,b", "1,2,3", "1.5,2", ","}) {
    EXPECT_FALSE(Has(Run({"power", "t1", "--mu", text}).err, "did you mean")) << text;
  }
}

TEST_F(CommandLine, ACommaInAWholeNumberIsNoPoint) {
  ExpectWrongUse({"power", "t1", "--sample-size", "1,000"},
                 {"'1,000' is not a number (2 <= Sample Size (N) <= 150000)\n"});
}

TEST_F(CommandLine, FractionsOfWholeFieldsAreWrongUse) {
  ExpectWrongUse(
      {"power", "t1", "--sample-size", "10.5"},
      {"--sample-size", "'10.5'", "not a whole number", "2 <= Sample Size (N) <= 150000"});
  ExpectWrongUse({"power", "t1", "--h0", "0.5"}, {"--h0-type", "'0.5'", "two-sided = 0"});
}

TEST_F(CommandLine, AnUnknownChoiceNamesTheChoices) {
  ExpectWrongUse({"power", "t1", "--h0", "sideways"},
                 {"--h0-type: 'sideways' is not one of: two-sided, upper, lower (or a number, 0 <= "
                  "Type of Hypothesis <= 2)\n"});
}

// The bounds of a field may be wider than what its family has.
TEST_F(CommandLine, AChoiceThatTheFamilyLacksIsTakenAsANumberAlone) {
  ExpectWrongUse({"power", "v1", "--h0", "zero"},
                 {"'zero' is not one of: two-sided, upper, lower (or"});
  ExpectWrongUse({"size", "t2", "--n-to-vary", "ratio"},
                 {"'ratio' is not one of: equal, n1, n2 (or"});
  ExpectWrongUse({"power", "z2r", "--algorithm", "exact"},
                 {"'exact' is not one of: refined, crude (or a number"});
  for (const char* family : {"sa1", "sa2", "sa3"}) {
    ExpectWrongUse({"power", family, "--h0", "lower"},
                   {"'lower' is not one of: two-sided, upper (or a number"});
  }
  const std::vector<Arguments> numbers = {{"power", "v1", "--h0", "3"},
                                          {"power", "sa1", "--h0", "2"},
                                          {"size", "t2", "--n-to-vary", "3"},
                                          {"power", "z2r", "--algorithm", "0"}};
  for (const Arguments& arguments : numbers) {
    EXPECT_EQ(Run(arguments).status, 1) << arguments[1] << ": no answer, yet no wrong use";
  }
}

TEST_F(CommandLine, ValuesOutOfRangeGetTheMessageOfTheSystem) {
  ExpectRefused({"power", "t1", "--alpha", "0.3"},
                "The current value for Alpha is outside the permissible range.\n"
                "The appropriate range is 0.0001 <= Alpha <= 0.25.\n"
                " Current value is 0.3.\n");
  ExpectRefused({"power", "t1", "--sample-size", "1"},
                "The appropriate range is 2 <= Sample Size (N) <= 150000.");
  ExpectRefused({"power", "t1", "--sample-size", "99999999999"}, "Current value is 2147483647.");
  // Fields that the dialogs of the task do not show.
  ExpectRefused({"power", "t1", "--degrees-of-freedom", "99999999999"},
                "Current value is 2147483647.");
  ExpectRefused({"power", "t1", "--confidence", "99999999999"}, "Current value is 1e+11.");
  ExpectRefused({"power", "t1", "--h0", "3"}, "Current value is 3.");
  ExpectRefused({"power", "t1", "--h0", "70000"}, "Current value is 32767.");
  ExpectRefused({"power", "t1", "--n-start", "1"}, "The current value for Start N is outside");
  ExpectRefused({"power", "t1", "--confidence", "0.1"},
                "The current value for Conf. Level is outside");
  ExpectRefused({"power", "t1", "--sigma", "-1"}, "Current value is -1.");
  ExpectRefused({"power", "t1", "--sigma", "0"}, "1e-10 < PopulationSigma <= 1e+30");
}

// Calculate and each chart refuse it with the same message, which says all there is to say.
TEST_F(CommandLine, ARangeRefusedOnEveryButtonIsToldOnceAndCounted) {
  const Result result = Run({"power", "t1", "--n-interval", "200", "--chart", "all"});
  EXPECT_EQ(1, result.status);
  EXPECT_TRUE(Has(result.err, "4 <= No. Of Steps <= 100")) << result.err;
  EXPECT_TRUE(Has(result.err, "(4 times)")) << result.err;
  EXPECT_FALSE(Has(result.err, "could not be drawn")) << result.err;
}

TEST_F(CommandLine, ATrueNullHypothesisIsRefused) {
  const std::string message = "The null hypothesis is TRUE";
  ExpectRefused({"power", "t1", "--mu", "0"}, message);
  ExpectRefused({"size", "t2", "--mu1", "1", "--mu2", "1"}, message);
}

TEST_F(CommandLine, ASizeTooLargeIsRefused) {
  ExpectRefused({"size", "t1", "--mu", "0.02"},
                "An extremely large N (greater than 150000) has occurred");
}

TEST_F(CommandLine, ASelectorThatNothingServesGivesNoResult) {
  // Bounds let 3 pass, and no search knows it.
  const Result result = Run({"size", "t2", "--mu1", "5", "--n-to-vary", "3"});
  EXPECT_EQ(1, result.status);
  EXPECT_EQ("", result.out);
  EXPECT_FALSE(result.err.empty());
}

TEST_F(CommandLine, UnknownOptionsNameTheNearest) {
  ExpectWrongUse({"power", "t1", "--sampel-size", "5"}, {"'--sampel-size'", "'--sample-size'"});
  ExpectWrongUse({"power", "t1", "--mu1", "5"}, {"'--mu1'", "'--mu"});
  ExpectWrongUse({"power", "t1", "--fromat=json"}, {"'--fromat'", "'--format'"});
  ExpectWrongUse({"power", "t1", "-x"}, {"'-x'"});
  ExpectWrongUse({"power", "t1", "stray"}, {"'stray'"});
  ExpectWrongUse({"power", "t1", "--", "stray"}, {"'stray'"});
  ExpectWrongUse({"power", "t1", "--", "--alpha", "0.1"}, {"'--alpha' was not expected"});
  ExpectWrongUse({"list", "--al"}, {"'--al'", "'--help'"});
  ExpectWrongUse({"describe", "t1", "--fromat"}, {"'--fromat'", "'--format'"});
}

TEST_F(CommandLine, UnknownNamesOfOtherKindsNameTheNearest) {
  ExpectWrongUse({"power", "t9"}, {"'t9'", "'t1'", "poweranalysis list"});
  ExpectWrongUse({"power", "two-mean"}, {"'two-mean'", "'two-means'"});
  ExpectWrongUse({"describe", "one-men"}, {"'one-men'", "'one-mean'"});
  ExpectWrongUse({"pwer", "t1"}, {"'pwer'", "'power'"});
  ExpectWrongUse({"--versoin"}, {"'--versoin'", "'--version'"});
  ExpectWrongUse({"power", "t1", "--set", "Smaple=5"}, {"'Smaple'", "SampleSize"});
  ExpectWrongUse({"power", "t1", "--chart", "power-vs-m"}, {"'power-vs-m'", "'power-vs-n'"});
  ExpectWrongUse({"power", "t1", "--format", "jsn"}, {"'jsn'", "json"});
}

TEST_F(CommandLine, MissingPiecesAreWrongUse) {
  ExpectWrongUse({}, {"command is missing", "--help"});
  ExpectWrongUse({"power"}, {"family is missing", "poweranalysis list"});
  ExpectWrongUse({"power", "--mu", "5"}, {"family is missing"});
  ExpectWrongUse({"power", "t1", "--mu"}, {"--mu: a value is missing"});
  ExpectWrongUse({"power", "t1", "-o"}, {"--output: a value is missing"});
  for (const char* path : {"--output", "--settings", "--save-settings", "--config"}) {
    ExpectWrongUse({"power", "t1", path, ""}, {std::string(path) + ": a value is missing"});
  }
  ExpectWrongUse({"power", "t1", "--set", "Mu"}, {"FIELD=VALUE"});
  ExpectWrongUse({"power", "t1", "--chart", "power-vs-n="}, {"file is missing"});
}

TEST_F(CommandLine, WhatIsGivenTwiceIsWrongUse) {
  ExpectWrongUse({"power", "t1", "--mu", "5", "--mu", "6"}, {"--mu", "twice"});
  ExpectWrongUse({"power", "t1", "-o", "a", "-o", "b"}, {"--output was given twice"});
  ExpectWrongUse({"power", "t1", "--mu", "5", "--set", "Mu=6"}, {"Mu", "twice"});
  ExpectWrongUse({"power", "t1", "--h0", "1", "--h0-type", "2"}, {"h0"});
}

TEST_F(CommandLine, TellsItsVersion) {
  const Result result = Run({"--version"});
  EXPECT_EQ(0, result.status);
  EXPECT_EQ(0U, result.out.find("poweranalysis 0."));
}

TEST_F(CommandLine, EveryCommandHasHelpWithAnExample) {
  const std::vector<Arguments> commands = {{"--help"},
                                           {"-h"},
                                           {"power", "--help"},
                                           {"size", "--help"},
                                           {"size", "t2", "--help"},
                                           {"power", "--help", "t1"},
                                           {"power", "sem", "--help"},
                                           {"list", "--help"},
                                           {"describe", "--help"},
                                           {"describe", "t1", "--help"}};
  for (const Arguments& arguments : commands) {
    const Result result = Run(arguments);
    EXPECT_EQ(0, result.status) << arguments.front();
    EXPECT_EQ("", result.err);
    EXPECT_TRUE(Has(result.out, "Example:\n  poweranalysis ")) << result.out;
  }
}

TEST_F(CommandLine, HelpOfACommandWithoutFamiliesNamesNone) {
  const Result result = Run({"list", "--help"});
  EXPECT_TRUE(Has(result.out, "Usage: poweranalysis list\n")) << result.out;
  EXPECT_FALSE(Has(result.out, "FAMILY")) << result.out;
  EXPECT_FALSE(Has(result.out, "[OPTIONS]")) << result.out;
}

TEST_F(CommandLine, HelpOfAFamilyTellsMeaningRangeDefaultAndCharts) {
  const Result result = Run({"size", "t2", "--help"});
  EXPECT_TRUE(Has(result.out, "--mu1 NUMBER")) << result.out;
  EXPECT_TRUE(Has(result.out, "(0.0001 <= Alpha <= 0.25; default 0.05)"));
  EXPECT_TRUE(Has(result.out, "Charts: n-vs-es, n-vs-alpha, n-vs-power"));
}

TEST_F(CommandLine, ListsModesAndTasks) {
  const Result result = Run({"list"});
  EXPECT_EQ(0, result.status);
  for (const char* text :
       {"Power Calculation: poweranalysis power FAMILY", "Sample Size Calculation",
        "Interval Estimation", "Probability Distributions", "Two Means, t-Test, Ind. Samples",
        "exponential-survival-dropouts", "Noncentral Chi-square Distribution"}) {
    EXPECT_TRUE(Has(result.out, text)) << text;
  }
}

TEST_F(CommandLine, GivesTheSameBytesTwice) {
  for (const char* format : {"text", "json", "csv", "markdown", "html"}) {
    const Arguments arguments = {"size", "t2", "--mu1", "5", "--chart", "all", "--format", format};
    const Result result = Run(arguments);
    EXPECT_EQ(0, result.status) << result.err;
    EXPECT_EQ(result.out, Run(arguments).out);
  }
}

TEST_F(CommandLine, GivesTheSameBytesUnderAnotherLocale) {
  const Arguments arguments = {"size", "t2", "--mu1", "5.5", "--chart", "all", "--format", "html"};
  const Result expected = Run(arguments);
  const Result refused = Run({"size", "t2", "--alpha", "0.5"});
  environment_["LC_ALL"] = "de_DE.UTF-8";
  environment_["LANG"] = "de_DE.UTF-8";
  EXPECT_EQ(expected.out, Run(arguments).out);
  EXPECT_EQ(0, Run(arguments).status);
  EXPECT_EQ(refused.err, Run({"size", "t2", "--alpha", "0.5"}).err);
}

}  // namespace

}  // namespace poweranalysis
