#include <gtest/gtest.h>

#include <cmath>
#include <nlohmann/json.hpp>
#include <random>

#include "exporters/Samples.h"

namespace poweranalysis {

namespace {

using Json = nlohmann::json;

Json Parsed(const Study& study) { return Json::parse(ExportJson(study)); }

bool Has(const std::string& text, const std::string& part) {
  return text.find(part) != std::string::npos;
}

TEST(ExportJson, WritesTheWholeContract) {
  const std::string expected = R"json({
  "schema": 1,
  "family": "T1",
  "mode": "power",
  "code": 0,
  "headings": [
    "Power Calculation",
    "A <Test>",
    "H0:  \"x\" = y"
  ],
  "columns": [
    "Value"
  ],
  "rows": [
    {"title": "Mean (Mu)", "indent": 0, "value": -2.5},
    {"title": "Count", "indent": 0, "value": 150000},
    {"title": "", "indent": 0, "value": null},
    {"title": "P²:", "indent": 2, "value": null},
    {"title": "Lower, Limit", "indent": 4, "value": 0.30000000000000004},
    {"title": "Tiny", "indent": 4, "value": 1.5e-07},
    {"title": "Power", "indent": 0, "value": 0.16050415233243398}
  ],
  "answers": [
    {"name": "N", "value": 35, "counts": "per cell", "of": "row"},
    {"name": "N", "value": null, "counts": "per cell", "of": "column"}
  ],
  "answer": null,
  "report": [
    "Title -- here",
    "One goal of %g. goes on  at length.",
    "Second line",
    "of two"
  ],
  "messages": [
    {"id": 12345, "text": "First.\r\nSecond <b>.", "count": 2}
  ],
  "charts": [
    {
      "name": "power-vs-n",
      "kind": 14,
      "titles": [
        "First: Calculation",
        "Second (H0:  A < B)",
        "Third & last"
      ],
      "xLabel": "Group Sample Size (N)",
      "yLabel": "Power",
      "x": [10, 20, 30],
      "y": [0.3, null, 0.7],
      "axes": {"xMin": 5, "xMax": 35, "xStep": 5, "yMin": 0.2, "yMax": 0.8, "yStep": 0.1}
    }
  ],
  "status": 0
}
)json";
  Study study = SampleStudy();
  study.answers = {{"N", 35, "per cell", "row"}, {"N", MissingValue(), "per cell", "column"}};
  EXPECT_EQ(expected, ExportJson(study));
}

TEST(ExportJson, GivesTheOnlyAnswerBesideTheArray) {
  Study study = SampleStudy();
  study.answers = {{"Power", 0.5, {}, {}}};
  const Json json = Parsed(study);
  EXPECT_EQ((Json{{"name", "Power"}, {"value", 0.5}, {"counts", nullptr}, {"of", nullptr}}),
            json["answer"]);
  EXPECT_EQ(Json::array({json["answer"]}), json["answers"]);
}

TEST(ExportJson, ANegativeZeroIsWrittenAsZero) {
  Study study = SampleStudy();
  std::get<SummaryTable>(study.workbook.items.front()).rows = {{"Row", 0, {-0.0}}};
  std::get<Chart>(study.workbook.items.back()).y.assign(3, -0.0F);
  for (const std::string& text : {ExportJson(study), ExportCsv(study), ExportHtml(study)}) {
    EXPECT_FALSE(Has(text, "-0,") || Has(text, "-0]") || Has(text, "-0}") || Has(text, "-0\n") ||
                 Has(text, "\"-0\"") || Has(text, ">-0<"))
        << text;
  }
}

TEST(ExportJson, AnEmptyStudyKeepsEveryKey) {
  Study study;
  study.family = "T2";
  study.mode = "size";
  study.code = 17;
  study.status = 1;
  const Json json = Parsed(study);
  EXPECT_EQ(13U, json.size());
  for (const char* key :
       {"headings", "columns", "rows", "answers", "report", "messages", "charts"}) {
    EXPECT_TRUE(json[key].is_array()) << key;
    EXPECT_TRUE(json[key].empty()) << key;
  }
  EXPECT_EQ(1, json["status"]);
}

TEST(ExportJson, NumbersReadBackExactly) {
  std::mt19937_64 random(1);
  for (int i = 0; i < 2000; ++i) {
    const double value =
        std::ldexp(static_cast<double>(random()), static_cast<int>(random() % 600) - 300);
    Study study = SampleStudy();
    std::get<SummaryTable>(study.workbook.items.front()).rows = {{"Row", 0, {value}}};
    EXPECT_EQ(value, Parsed(study)["rows"][0]["value"].get<double>());
  }
}

TEST(ExportJson, WhatIsNoNumberIsNull) {
  for (const double value :
       {MissingValue(), std::numeric_limits<double>::quiet_NaN(),
        std::numeric_limits<double>::infinity(), -std::numeric_limits<double>::infinity()}) {
    Study study = SampleStudy();
    std::get<SummaryTable>(study.workbook.items.front()).rows = {{"Row", 0, {value}}};
    EXPECT_TRUE(Parsed(study)["rows"][0]["value"].is_null()) << value;
  }
}

TEST(ExportJson, PointsReadBackAsTheirSinglePrecision) {
  std::mt19937 random(2);
  Study study = SampleStudy();
  Chart& chart = std::get<Chart>(study.workbook.items.back());
  chart.x.clear();
  chart.y.clear();
  for (int i = 0; i < 2000; ++i) {
    chart.x.push_back(
        std::ldexp(static_cast<float>(random()), static_cast<int>(random() % 200) - 130));
    chart.y.push_back(-static_cast<float>(random()) * 1e-9F);
  }
  const Json json = Parsed(study)["charts"][0];
  for (std::size_t i = 0; i < chart.x.size(); ++i) {
    EXPECT_EQ(chart.x[i], static_cast<float>(json["x"][i].get<double>()));
    EXPECT_EQ(chart.y[i], static_cast<float>(json["y"][i].get<double>()));
  }
}

TEST(ExportJson, TextsThatAreNoUtf8StayValidJson) {
  Study study = SampleStudy();
  study.messages = {{1, "a\xFF\x01\x1b\"\\", 1}};
  EXPECT_EQ("a\uFFFD\u0001\u001b\"\\", Parsed(study)["messages"][0]["text"]);
}

TEST(ExportJson, TablesOfSeveralColumnsHaveAListOfValues) {
  Study study = SampleStudy();
  auto& table = std::get<SummaryTable>(study.workbook.items.front());
  table.columns = {"A", "B"};
  table.rows = {{"Row", 0, {1, MissingValue()}}};
  const Json row = Parsed(study)["rows"][0];
  EXPECT_EQ(Json::parse("[1, null]"), row["values"]);
  EXPECT_FALSE(row.contains("value"));
}

TEST(DescribeJson, TellsAFieldWithItsRangeAndChoices) {
  FamilyDescription family;
  family.family = "T1";
  FieldDescription field;
  field.field = "H0Type";
  field.option = "--h0-type";
  field.type = "i16";
  field.checked = true;
  field.upper = 2;
  field.range = "0 <= H0 <= 2";
  field.choices = {{"two-sided", 0}, {"upper", 1}};
  family.fields = {field};
  const Json json = Json::parse(DescribeJson(family));
  EXPECT_EQ(2, json["fields"][0]["range"]["upper"]);
  EXPECT_EQ(1, json["fields"][0]["choices"]["upper"]);
  EXPECT_TRUE(Has(DescribeJson(family), "\"text\": \"0 <= H0 <= 2\""));
}

}  // namespace

}  // namespace poweranalysis
