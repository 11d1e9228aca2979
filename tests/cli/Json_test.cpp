#include "cli/Program.h"

namespace poweranalysis {

namespace {

class JsonOutput : public Program {
 protected:
  // The whole contract, version 1.
  static void ExpectSchema(const nlohmann::json& json) {
    const std::vector<std::string> keys = {"schema",   "family", "mode",    "code",   "headings",
                                           "columns",  "rows",   "answers", "answer", "report",
                                           "messages", "charts", "status"};
    for (const std::string& key : keys) {
      EXPECT_TRUE(json.contains(key)) << key;
    }
    EXPECT_EQ(keys.size(), json.size());
    EXPECT_EQ(1, json["schema"]);
    for (const auto& row : json["rows"]) {
      EXPECT_EQ(3U, row.size());
      EXPECT_TRUE(row["title"].is_string());
      EXPECT_TRUE(row["indent"].is_number_integer());
      EXPECT_TRUE(row["value"].is_number() || row["value"].is_null());
    }
    for (const auto& paragraph : json["report"]) {
      EXPECT_TRUE(paragraph.is_string());
    }
    for (const auto& message : json["messages"]) {
      EXPECT_EQ(3U, message.size());
      EXPECT_TRUE(message["id"].is_number_integer());
      EXPECT_TRUE(message["text"].is_string());
      EXPECT_GE(message["count"].get<int>(), 1);
    }
  }
};

TEST_F(JsonOutput, KeepsTheContract) {
  const auto json = RunJson({"size", "t2", "--mu1", "5", "--power-goal", "0.8"});
  ExpectSchema(json);
  EXPECT_EQ("T2", json["family"]);
  EXPECT_EQ("size", json["mode"]);
  EXPECT_EQ(17, json["code"]);
  EXPECT_EQ((nlohmann::json{"Value"}), json["columns"]);
  EXPECT_EQ((nlohmann::json{"Sample Size Calculation", "Two Means, t-Test, Ind. Samples",
                            "H0:  Mu1 = Mu2"}),
            json["headings"]);
  EXPECT_EQ(9U, json["rows"].size());
  EXPECT_EQ(6U, json["report"].size());
  EXPECT_EQ("Sample Size Analysis -- The 2 Sample Independent Sample t-Test", json["report"][0]);
  EXPECT_TRUE(json["messages"].empty());
  EXPECT_TRUE(json["charts"].empty());
  EXPECT_EQ(0, json["status"]);
}

nlohmann::json AnswerOf(const char* name,
                        const nlohmann::json& value,
                        const nlohmann::json& counts,
                        const nlohmann::json& of = nullptr) {
  return {{"name", name}, {"value", value}, {"counts", counts}, {"of", of}};
}

TEST_F(JsonOutput, GivesTheAnswerOfEveryFamilyWithWhatItCounts) {
  struct Row {
    const char* family;
    const char* field;
    const char* counts;
  };
  for (const Row& row : {Row{"t1", "SampleSize", "total"},
                         {"t2", "SampleSizeN1", "per group"},
                         {"t3", "SampleSize", "pairs"},
                         {"pc", "SampleSize", "per group"},
                         {"av1", "N", "per group"},
                         {"v1", "DegreesOfFreedom", "df"},
                         {"v2", "Df1", "df"},
                         {"r", "SampleSize", "total"},
                         {"z2r", "SampleSizeN1", "per group"},
                         {"r2", "SampleSize", "total"},
                         {"p1", "SampleSize", "total"},
                         {"p2", "SampleSizeN1", "per group"},
                         {"qmac", "SampleSize", "pairs"},
                         {"sa1", "SampleSize", "per group"},
                         {"sa2", "SampleSize", "per group"},
                         {"sa3", "SampleSize", "per group"},
                         {"sem", "SampleSize", "total"}}) {
    const auto size = RunJson({"size", row.family});
    EXPECT_EQ(AnswerOf(row.field, size["rows"].back()["value"], row.counts), size["answer"]);
    EXPECT_EQ(nlohmann::json::array({size["answer"]}), size["answers"]);
    const auto power = RunJson({"power", row.family});
    EXPECT_EQ(AnswerOf("Power", power["rows"].back()["value"], nullptr), power["answer"]);
    EXPECT_EQ(nlohmann::json::array({power["answer"]}), power["answers"]);
  }
}

TEST_F(JsonOutput, AnswersForTheGroupThatIsSought) {
  // Effects that are large enough for the size of the fixed group.
  const std::vector<std::vector<std::string>> tasks = {{"size", "t2", "--mu1", "12"},
                                                       {"size", "z2r", "--rho1", "0.6"},
                                                       {"size", "p2", "--pi1", "0.8"}};
  for (const std::vector<std::string>& task : tasks) {
    const auto varied = [&](const char* group) {
      std::vector<std::string> words = task;
      words.insert(words.end(), {"--n-to-vary", group});
      return RunJson(words);
    };
    const auto first = varied("1");
    EXPECT_EQ("SampleSizeN1", first["answer"]["name"]);
    EXPECT_EQ("group 1", first["answer"]["counts"]);
    const auto second = varied("2");
    EXPECT_EQ("SampleSizeN2", second["answer"]["name"]);
    EXPECT_EQ("group 2", second["answer"]["counts"]);
    EXPECT_EQ(second["rows"].back()["value"], second["answer"]["value"]) << task[1];
  }
  const auto fixed = RunJson({"size", "p2", "--pi1", "0.8", "--n-to-vary", "1"});
  EXPECT_EQ(100, fixed["rows"].back()["value"]) << "the fixed group is no answer";
  EXPECT_NE(100, fixed["answer"]["value"]);
  const auto ratio = RunJson({"size", "p2", "--n-to-vary", "3", "--ratio", "2"});
  EXPECT_TRUE(ratio["answer"].is_null());
  ASSERT_EQ(2U, ratio["answers"].size());
  const auto& rows = ratio["rows"];
  EXPECT_EQ(AnswerOf("SampleSizeN1", rows[rows.size() - 2]["value"], "group 1", "group 1"),
            ratio["answers"][0]);
  EXPECT_EQ(AnswerOf("SampleSizeN2", rows.back()["value"], "group 2", "group 2"),
            ratio["answers"][1]);
}

TEST_F(JsonOutput, AnswersForEachEffectThatHasOne) {
  const auto size = RunJson({"size", "av2", "--rmsse-int", "0"});
  EXPECT_EQ(0, size["status"]);
  EXPECT_TRUE(size["answer"].is_null()) << "there are several";
  EXPECT_EQ(nlohmann::json::array({AnswerOf("N", 35, "per cell", "row"),
                                   AnswerOf("N", 35, "per cell", "column"),
                                   AnswerOf("N", nullptr, "per cell", "interaction")}),
            size["answers"]);
  const auto power = RunJson({"power", "av2", "--rmsse-row", "0"});
  EXPECT_EQ(0, power["status"]);
  EXPECT_EQ(AnswerOf("Power", nullptr, nullptr, "row"), power["answers"][0]);
  EXPECT_EQ("interaction", power["answers"][2]["of"]);
  const auto none =
      RunJson({"size", "av2", "--rmsse-row", "0", "--rmsse-col", "0", "--rmsse-int", "0"}, 1);
  EXPECT_EQ(3U, none["answers"].size());
  const auto refused = RunJson({"size", "t2", "--mu1", "1", "--mu2", "1"}, 1);
  EXPECT_EQ(nlohmann::json::array(), refused["answers"]);
  EXPECT_TRUE(refused["answer"].is_null());
}

TEST_F(JsonOutput, WritesANegativeZeroAsZero) {
  const std::vector<std::string> task = {"power", "t1", "--mu0=-0", "--mu", "5"};
  for (const char* format : {"json", "csv", "text", "markdown", "html"}) {
    std::vector<std::string> words = task;
    words.insert(words.end(), {"--format", format});
    const Result result = Run(words);
    EXPECT_EQ(0, result.status);
    EXPECT_FALSE(Has(result.out, "-0\n")) << result.out;
    EXPECT_FALSE(Has(result.out, "-0}")) << result.out;
    EXPECT_FALSE(Has(result.out, "-0 ")) << result.out;
    EXPECT_FALSE(Has(result.out, "-0.")) << result.out;
    EXPECT_FALSE(Has(result.out, "-0<")) << result.out;
    EXPECT_FALSE(Has(result.out, "\"-0\"")) << result.out;
  }
}

TEST_F(JsonOutput, NamesCodeAndModeOfEveryTask) {
  const std::vector<std::tuple<std::string, std::string, int>> tasks = {
      {"power", "T1", 0}, {"size", "T1", 1},   {"power", "T2", 16},
      {"size", "T2", 17}, {"power", "T3", 32}, {"size", "T3", 33}};
  for (const auto& [mode, family, code] : tasks) {
    const auto json = RunJson({mode, family});
    ExpectSchema(json);
    EXPECT_EQ(mode, json["mode"].get<std::string>());
    EXPECT_EQ(family, json["family"].get<std::string>());
    EXPECT_EQ(code, json["code"]);
  }
}

TEST_F(JsonOutput, StaysValidOnARefusal) {
  const auto json = RunJson({"size", "t2", "--mu1", "1", "--mu2", "1"}, 1);
  ExpectSchema(json);
  EXPECT_EQ(1, json["status"]);
  EXPECT_EQ(17, json["code"]);
  EXPECT_TRUE(json["rows"].empty());
  EXPECT_TRUE(json["report"].empty());
  ASSERT_EQ(1U, json["messages"].size());
  EXPECT_EQ(12873, json["messages"][0]["id"]);
  EXPECT_EQ(
      "The null hypothesis is TRUE, given the parameter values you have chosen! Terminating "
      "calculation. Please recheck parameter values.",
      json["messages"][0]["text"]);
}

TEST_F(JsonOutput, StaysValidOutOfRangeAndWithoutAnAnswer) {
  const auto range = RunJson({"power", "t1", "--alpha", "0.5"}, 1);
  ExpectSchema(range);
  EXPECT_EQ(12853, range["messages"][0]["id"]);
  const auto none = RunJson({"power", "sem", "--r", "0.05"}, 1);
  ExpectSchema(none);
  EXPECT_EQ("SEM", none["family"]);
  EXPECT_EQ(12873, none["messages"][0]["id"]);
}

TEST_F(JsonOutput, CarriesAllDigitsInTheirShortestForm) {
  const Result result = Run({"power", "t1", "--mu", "3", "--alpha", "0.1", "--format", "json"});
  EXPECT_TRUE(Has(result.out, "\"Type I Error Rate (Alpha)\", \"indent\": 0, \"value\": 0.1}"))
      << result.out;
  EXPECT_TRUE(Has(result.out, "\"Group Sample Size (N)\", \"indent\": 0, \"value\": 25}"));
  const auto json = nlohmann::json::parse(result.out);
  const double power = Value(json, "Power");
  EXPECT_NE(power, std::stod(std::to_string(power)));  // more than six decimals
}

TEST_F(JsonOutput, HoldsTheChartsThatWereAskedFor) {
  const auto json = RunJson({"power", "t1", "--mu", "5", "--n-start", "10", "--n-end", "50",
                             "--n-interval", "4", "--chart", "power-vs-n"});
  ExpectSchema(json);
  ASSERT_EQ(1U, json["charts"].size());
  const auto& chart = json["charts"][0];
  EXPECT_EQ("power-vs-n", chart["name"]);
  EXPECT_EQ(14, chart["kind"]);
  EXPECT_EQ(3U, chart["titles"].size());
  EXPECT_EQ("Power", chart["yLabel"]);
  EXPECT_EQ((nlohmann::json{10, 20, 30, 40, 50}), chart["x"]);
  EXPECT_EQ(5U, chart["y"].size());
  for (const char* key : {"xMin", "xMax", "xStep", "yMin", "yMax", "yStep"}) {
    EXPECT_TRUE(chart["axes"][key].is_number()) << key;
  }
  // The points of a chart are single precision values of the powers that the table would show.
  const auto power = RunJson({"power", "t1", "--mu", "5", "--sample-size", "30"});
  EXPECT_EQ(static_cast<float>(Value(power, "Power")),
            static_cast<float>(chart["y"][2].get<double>()));
}

TEST_F(JsonOutput, DrawsEveryChartForAll) {
  const auto json = RunJson({"size", "t3", "--chart", "all"});
  ASSERT_EQ(3U, json["charts"].size());
  EXPECT_EQ("n-vs-es", json["charts"][0]["name"]);
  EXPECT_EQ("n-vs-alpha", json["charts"][1]["name"]);
  EXPECT_EQ("n-vs-power", json["charts"][2]["name"]);
}

}  // namespace

}  // namespace poweranalysis
