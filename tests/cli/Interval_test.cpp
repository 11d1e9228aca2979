// Confidence intervals from the command line.
#include <algorithm>

#include "cli/Program.h"

namespace poweranalysis {
namespace {

using Json = nlohmann::json;

class Interval : public Program {
 protected:
  // The limits of a JSON output by their names.
  Json LimitsOf(const Arguments& arguments) {
    Json named = Json::object();
    const Json json = RunJson(arguments);
    for (const Json& limits : json["limits"]) {
      named[limits["name"].get<std::string>()] = {limits["lower"], limits["upper"]};
    }
    return named;
  }
  Json NamesOf(const Arguments& arguments) {
    Json names = Json::array();
    const Json json = RunJson(arguments);
    for (const Json& limits : json["limits"]) {
      names.push_back(limits["name"]);
    }
    return names;
  }
};

TEST_F(Interval, PutsTheLimitsOfEveryFamilyInTheOrderOfItsTable) {
  EXPECT_EQ(NamesOf({"interval", "t1"}), (Json{"Delta", "Es"}));
  EXPECT_EQ(NamesOf({"interval", "t2"}), (Json{"Delta", "Es"}));
  EXPECT_EQ(NamesOf({"interval", "t3"}), (Json{"Delta", "Es"}));
  EXPECT_EQ(NamesOf({"interval", "pc"}), Json::array({"Es"}));
  EXPECT_EQ(NamesOf({"interval", "av1"}), (Json{"Delta", "RMSSE", "Power", "N"}));
  EXPECT_EQ(NamesOf({"interval", "av2"}), (Json{"Delta", "RMSSE", "Power", "N"}));
  EXPECT_EQ(NamesOf({"interval", "r"}), Json::array({"Rho"}));
  EXPECT_EQ(NamesOf({"interval", "r2"}), (Json{"P2", "P2Bound", "Power", "N"}));
  EXPECT_EQ(NamesOf({"interval", "p1"}), (Json{"PiExact", "PiApproximate", "PiCrude"}));
  EXPECT_EQ(NamesOf({"interval", "sem"}), (Json{"RMSEA", "Gamma1", "Gamma2"}));
}

TEST_F(Interval, HasNoAnswerBesideItsLimits) {
  const Json json = RunJson({"interval", "t2", "--t-observed", "2.4"});
  EXPECT_EQ(json["mode"], "interval");
  EXPECT_EQ(json["answers"], Json::array());
  EXPECT_TRUE(json["answer"].is_null());
  EXPECT_EQ(json["status"], 0);
}

TEST_F(Interval, TakesTheLimitsFromTheTable) {
  const Arguments arguments = {"interval", "t1", "--t-observed", "2.4", "--sample-size", "30"};
  const Json rows = RunJson(arguments)["rows"];
  const Json limits = LimitsOf(arguments);
  EXPECT_EQ(limits["Delta"][0], rows[6]["value"]);
  EXPECT_EQ(limits["Delta"][1], rows[7]["value"]);
  EXPECT_EQ(limits["Es"][0], rows[10]["value"]);
  EXPECT_EQ(limits["Es"][1], rows[11]["value"]);
}

TEST_F(Interval, LeavesWhatIsBlankNull) {
  const Json limits = LimitsOf({"interval", "r2"});
  EXPECT_TRUE(limits["P2Bound"][0].is_number());
  EXPECT_TRUE(limits["P2Bound"][1].is_null());
  EXPECT_TRUE(limits["Power"][0].is_null()) << "of the two-tailed form";
  EXPECT_TRUE(LimitsOf({"interval", "av1"})["N"][1].is_null());
}

TEST_F(Interval, HasAPValueWhereTheTableHasOne) {
  EXPECT_TRUE(RunJson({"interval", "r"})["pValue"].is_number());
  EXPECT_TRUE(RunJson({"interval", "r2"})["pValue"].is_number());
  EXPECT_TRUE(RunJson({"interval", "t1"})["pValue"].is_null());
}

TEST_F(Interval, AddsNothingToTheOtherModes) {
  EXPECT_FALSE(RunJson({"power", "t1"}).contains("limits"));
  EXPECT_FALSE(RunJson({"size", "t1"}).contains("pValue"));
}

TEST_F(Interval, ThatIsRefusedHasNoLimits) {
  const Json json = RunJson({"interval", "t1", "--confidence", "2"}, 1);
  EXPECT_EQ(json["limits"], Json::array());
  EXPECT_TRUE(json["pValue"].is_null());
  EXPECT_EQ(json["messages"].size(), 1U);
}

TEST_F(Interval, AnObservedFBeyondItsLimitEndsTheRun) {
  const Result result =
      Run({"interval", "av1", "--f-observed", "1000.5", "--save-settings", At("s")});
  EXPECT_EQ(result.status, 1);
  EXPECT_EQ(result.out, "");
  EXPECT_TRUE(Has(result.err, "An invalid value entered.")) << result.err;
  EXPECT_FALSE(Exists("s"));
}

TEST_F(Interval, RefusesCharts) {
  const Result result = Run({"interval", "t1", "--chart", "all"});
  EXPECT_EQ(result.status, 2);
  EXPECT_EQ(result.err, "poweranalysis: --chart: an interval has no charts\n");
  EXPECT_FALSE(Has(Run({"interval", "t1", "--help"}).out, "--chart"));
}

TEST_F(Interval, TakesANumberOfSuccessesForTheProportion) {
  EXPECT_EQ(LimitsOf({"interval", "p1", "--x-observed", "3", "--sample-size", "40"}),
            LimitsOf({"interval", "p1", "--p-observed", "0.075", "--sample-size", "40"}));
  EXPECT_EQ(LimitsOf({"interval", "p1", "--x-observed", "30"}),
            LimitsOf({"interval", "p1", "--p-observed", "0.3"}))
      << "of the 100 that are built in";
}

TEST_F(Interval, RefusesSuccessesThatAreNotTheProportionOrDoNotFit) {
  const Result unequal = Run({"interval", "p1", "--x-observed", "3", "--p-observed", "0.5"});
  EXPECT_EQ(unequal.status, 2);
  EXPECT_TRUE(Has(unequal.err, "--x-observed: 3 successes in 100 are not the proportion 0.5"));
  EXPECT_EQ(Run({"interval", "p1", "--x-observed", "50", "--p-observed", "0.5"}).status, 0);
  const Result many = Run({"interval", "p1", "--x-observed", "41", "--sample-size", "40"});
  EXPECT_EQ(many.status, 2);
  EXPECT_TRUE(Has(many.err, "41 successes do not fit into a sample of 40")) << many.err;
}

TEST_F(Interval, KeepsItsSettingsForAnotherRun) {
  EXPECT_EQ(Run({"interval", "t2", "--t-observed", "2.4", "--save-settings", At("s")}).status, 0);
  EXPECT_EQ(LimitsOf({"interval", "t2", "--settings", At("s")}),
            LimitsOf({"interval", "t2", "--t-observed", "2.4"}));
}

TEST_F(Interval, ComesInEveryFormat) {
  for (const char* format : {"text", "json", "csv", "markdown", "html", "xlsx", "odt"}) {
    const Result result = Run({"interval", "av2", "--format", format, "-o", At("out")});
    EXPECT_EQ(result.status, 0) << format << result.err;
    EXPECT_FALSE(Read("out").empty()) << format;
  }
}

TEST_F(Interval, IsListedAndHasItsHelp) {
  EXPECT_TRUE(Has(Run({"list"}).out, "Interval Estimation: poweranalysis interval FAMILY"));
  const std::string help = Run({"interval", "--help"}).out;
  EXPECT_TRUE(Has(help, "one-proportion")) << help;
  EXPECT_FALSE(Has(help, "two-proportions")) << help;
  EXPECT_TRUE(
      Has(Run({"interval", "av1", "--help"}).out, "poweranalysis interval av1 --confidence"));
  EXPECT_EQ(Run({"interval", "z2r"}).status, 2);
}

}  // namespace
}  // namespace poweranalysis
