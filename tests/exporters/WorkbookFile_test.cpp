#include "exporters/WorkbookFile.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <clocale>
#include <cmath>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <nlohmann/json.hpp>
#include <random>
#include <sstream>

#include "exporters/Samples.h"

namespace poweranalysis {

namespace {

using testing::EndsWith;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::StartsWith;

template <class Number>
bool SameBits(Number a, Number b) {
  return std::memcmp(&a, &b, sizeof a) == 0;
}

const SummaryTable& TableOf(const WorkbookStudy& study) {
  return std::get<SummaryTable>(study.study.workbook.items.front());
}

const Chart& ChartOf(const WorkbookStudy& study) {
  return std::get<Chart>(study.study.workbook.items.back());
}

SummaryTable& TableOf(WorkbookStudy& study) {
  return std::get<SummaryTable>(study.study.workbook.items.front());
}

Chart& ChartOf(WorkbookStudy& study) { return std::get<Chart>(study.study.workbook.items.back()); }

// A study with a table, a report and a chart.
WorkbookStudy SampleWorkbookStudy() {
  WorkbookStudy study;
  study.id = "first";
  study.name = "Power of a test";
  study.date = "2024-05-17T09:30:00+02:00";
  study.inputs = {{"SampleSize", 25}, {"Sigma", 0.1 + 0.2}};
  study.study = SampleStudy();
  study.study.answers = {{"Power", 0.16050415233243398, {}, {}}};
  TableOf(study).columnFormats = {1, 255};
  TableOf(study).rowTitleWidth = 31;
  ChartOf(study).tickPositions = {0.2F, 0.5F, 0.8F};
  ChartOf(study).tickLabels = {"0.2", "0.5", "0.8"};
  ChartOf(study).decimals = 1;
  ChartOf(study).labelWidth = 3;
  study.labels = {{"Table", "2024-05-17T09:30:01Z"}, {"", ""}, {"Power vs. N", ""}};
  study.notes = {"Power at N - 1", "Power at N + 1"};
  return study;
}

std::string SampleText() { return WorkbookText({SampleWorkbookStudy()}); }

std::string Replaced(std::string text, const std::string& from, const std::string& to) {
  const std::size_t at = text.find(from);
  EXPECT_NE(std::string::npos, at) << from;
  return at == std::string::npos ? text : text.replace(at, from.size(), to);
}

std::string ErrorOf(const std::string& text) {
  const LoadedWorkbook loaded = ParseWorkbook(text);
  EXPECT_EQ(loaded.error.empty() ? 1U : 0U, loaded.studies.size());
  return loaded.error;
}

WorkbookStudy Reread(const WorkbookStudy& study) {
  const LoadedWorkbook loaded = ParseWorkbook(WorkbookText({study}));
  EXPECT_EQ("", loaded.error);
  return loaded.studies.empty() ? WorkbookStudy{} : loaded.studies.front();
}

TEST(WorkbookText, WritesTheWholeContract) {
  const std::string expected = R"json({
  "format": "PowerAnalysis workbook",
  "schema": 1,
  "minor": 1,
  "studies": [
    {
      "id": "first",
      "name": "Power of a test",
      "date": "2024-05-17T09:30:00+02:00",
      "family": "T1",
      "mode": "power",
      "code": 0,
      "inputs": {"SampleSize": 25, "Sigma": 0.30000000000000004},
      "answers": [
        {"name": "Power", "value": 0.16050415233243398, "counts": null, "of": null}
      ],
      "items": [
        {
          "label": "Table",
          "date": "2024-05-17T09:30:01Z",
          "type": "table",
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
          "layout": {
            "cellWidth": 8,
            "columnTitleWidth": 10,
            "columnTitleIndent": 0,
            "rowTitleWidth": 31,
            "rowDisplayWidth": 0,
            "columnDisplayWidth": 0,
            "headingWidth": 0,
            "options": 0,
            "columnFormats": [1, 255]
          }
        },
        {
          "label": "",
          "date": "",
          "type": "report",
          "report": [
            "Title -- here",
            "One goal of %g. goes on  at length.",
            "Second line",
            "of two"
          ]
        },
        {
          "label": "Power vs. N",
          "date": "",
          "type": "chart",
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
          "axes": {"xMin": 5, "xMax": 35, "xStep": 5, "yMin": 0.2, "yMax": 0.8, "yStep": 0.1},
          "tickPositions": [0.2, 0.5, 0.8],
          "tickLabels": [
            "0.2",
            "0.5",
            "0.8"
          ],
          "decimals": 1,
          "labelWidth": 3
        }
      ],
      "messages": [
        {"id": 12345, "text": "First.\r\nSecond <b>.", "count": 2}
      ],
      "notes": [
        "Power at N - 1",
        "Power at N + 1"
      ],
      "status": 0
    }
  ]
}
)json";
  EXPECT_EQ(expected, SampleText());
}

TEST(WorkbookText, HasTheShapesOfTheJsonOutput) {
  const auto workbook = nlohmann::json::parse(SampleText())["studies"][0];
  const auto output = nlohmann::json::parse(ExportJson(SampleStudy()));
  for (const char* key : {"headings", "columns", "rows"}) {
    EXPECT_EQ(output[key], workbook["items"][0][key]) << key;
  }
  EXPECT_EQ(output["report"], workbook["items"][1]["report"]);
  for (const auto& member : output["charts"][0].items()) {
    EXPECT_EQ(member.value(), workbook["items"][2][member.key()]) << member.key();
  }
  for (const char* key : {"family", "mode", "code", "messages", "status"}) {
    EXPECT_EQ(output[key], workbook[key]) << key;
  }
}

TEST(WorkbookText, MakesUpIdsThatNoOtherStudyHas) {
  std::vector<WorkbookStudy> studies(4);
  studies[1].id = "s1";
  studies[3].id = "s1";
  const LoadedWorkbook loaded = ParseWorkbook(WorkbookText(studies));
  ASSERT_EQ(4U, loaded.studies.size()) << loaded.error;
  EXPECT_EQ("s2", loaded.studies[0].id);
  EXPECT_EQ("s1", loaded.studies[1].id);
  EXPECT_EQ("s3", loaded.studies[2].id);
  EXPECT_EQ("s4", loaded.studies[3].id);
}

TEST(WorkbookText, LeavesOutWhatIsNoDate) {
  WorkbookStudy study = SampleWorkbookStudy();
  study.date = "yesterday";
  study.labels = {{"", "2024-13-01T00:00:00"}};
  EXPECT_EQ("", Reread(study).date);
  EXPECT_EQ("", Reread(study).labels.front().date);
}

TEST(ParseWorkbook, GivesBackWhatWasWritten) {
  const WorkbookStudy before = SampleWorkbookStudy();
  const LoadedWorkbook loaded = ParseWorkbook(SampleText());
  ASSERT_EQ("", loaded.error);
  EXPECT_FALSE(loaded.newer);
  EXPECT_THAT(loaded.notes, IsEmpty());
  const WorkbookStudy& after = loaded.studies.front();
  EXPECT_EQ(before.name, after.name);
  EXPECT_EQ(before.notes, after.notes);
  ASSERT_EQ(2U, after.inputs.size());
  EXPECT_EQ("SampleSize", after.inputs[0].field);
  EXPECT_EQ(0.1 + 0.2, after.inputs[1].value);
  EXPECT_EQ("Power vs. N", after.labels[2].name);
  const SummaryTable& table = TableOf(after);
  ASSERT_EQ(TableOf(before).rows.size(), table.rows.size());
  for (std::size_t i = 0; i < table.rows.size(); ++i) {
    EXPECT_EQ(TableOf(before).rows[i].title, table.rows[i].title);
    EXPECT_EQ(TableOf(before).rows[i].indent, table.rows[i].indent);
    EXPECT_TRUE(SameBits(TableOf(before).rows[i].values[0], table.rows[i].values[0])) << i;
  }
  EXPECT_EQ(31, table.rowTitleWidth);
  EXPECT_EQ(TableOf(before).columnFormats, table.columnFormats);
  EXPECT_EQ(ParagraphsOf(before.study), ParagraphsOf(after.study));
  EXPECT_EQ(ChartOf(before).y, ChartOf(after).y);
  EXPECT_EQ(ChartOf(before).tickPositions, ChartOf(after).tickPositions);
  EXPECT_EQ(ChartOf(before).tickLabels, ChartOf(after).tickLabels);
  EXPECT_EQ(SampleText(), WorkbookText(loaded.studies));
}

TEST(ParseWorkbook, GivesEveryExportTheSameBytes) {
  const WorkbookStudy before = SampleWorkbookStudy();
  const WorkbookStudy after = Reread(before);
  for (const ExportFormat format : {ExportFormat::Text, ExportFormat::Json, ExportFormat::Csv,
                                    ExportFormat::Markdown, ExportFormat::Html}) {
    EXPECT_EQ(Export(before.study, format), Export(after.study, format));
  }
}

TEST(ParseWorkbook, TakesAnEmptyWorkbookAndAnEmptyStudy) {
  EXPECT_EQ("", ParseWorkbook(WorkbookText({})).error);
  const LoadedWorkbook loaded = ParseWorkbook(WorkbookText({WorkbookStudy{}}));
  EXPECT_EQ("", loaded.error);
  EXPECT_EQ(1U, loaded.studies.size());
}

TEST(ParseWorkbook, KeepsEveryBitOfAValue) {
  std::mt19937_64 random(7);
  WorkbookStudy study = SampleWorkbookStudy();
  std::vector<double> values = {0.0,
                                -0.0,
                                5e-324,
                                1.7976931348623157e308,
                                1e22,
                                1e15,
                                -1e20,
                                1e16,
                                9007199254740993.0,
                                std::numeric_limits<double>::infinity(),
                                -std::numeric_limits<double>::infinity(),
                                MissingValue()};
  while (values.size() < 3000) {
    const std::uint64_t bits = random();
    double value = 0;
    std::memcpy(&value, &bits, sizeof value);
    if (std::isfinite(value)) {
      values.push_back(value);
    }
  }
  TableOf(study).rows = {{"Row", 0, values}};
  const WorkbookStudy after = Reread(study);
  for (std::size_t i = 0; i < values.size(); ++i) {
    EXPECT_TRUE(SameBits(values[i], TableOf(after).rows[0].values[i])) << values[i];
  }
}

TEST(ParseWorkbook, KeepsEveryBitOfAPoint) {
  std::mt19937 random(8);
  WorkbookStudy study = SampleWorkbookStudy();
  std::vector<float> points = {0.0F,
                               -0.0F,
                               1e-45F,
                               -7.038531e-26F,
                               7.038531e-26F,
                               3.4028235e38F,
                               -9999.0F,
                               std::numeric_limits<float>::infinity(),
                               -std::numeric_limits<float>::infinity()};
  while (points.size() < 5000) {
    const auto bits = static_cast<std::uint32_t>(random());
    float point = 0;
    std::memcpy(&point, &bits, sizeof point);
    if (std::isfinite(point)) {
      points.push_back(point);
    }
  }
  ChartOf(study).x = points;
  ChartOf(study).y = points;
  const WorkbookStudy after = Reread(study);
  for (std::size_t i = 0; i < points.size(); ++i) {
    EXPECT_TRUE(SameBits(points[i], ChartOf(after).x[i])) << points[i];
    EXPECT_TRUE(SameBits(points[i], ChartOf(after).y[i])) << points[i];
  }
}

TEST(ParseWorkbook, TellsANotANumberFromAMissingValue) {
  WorkbookStudy study = SampleWorkbookStudy();
  TableOf(study).rows = {{"Row", 0, {std::numeric_limits<double>::quiet_NaN(), MissingValue()}}};
  const WorkbookStudy after = Reread(study);
  const std::vector<double>& values = TableOf(after).rows[0].values;
  EXPECT_TRUE(std::isnan(values[0]));
  EXPECT_FALSE(IsMissing(values[0]));
  EXPECT_TRUE(IsMissing(values[1]));
}

TEST(ParseWorkbook, DoesNotAskTheLocale) {
  const std::string text = SampleText();
  if (std::setlocale(LC_ALL, "de_DE.UTF-8") == nullptr) {
    GTEST_SKIP() << "no German locale on this machine";
  }
  EXPECT_EQ(text, SampleText());
  const LoadedWorkbook loaded = ParseWorkbook(text);
  std::setlocale(LC_ALL, "C");
  ASSERT_EQ("", loaded.error);
  EXPECT_EQ(0.1 + 0.2, loaded.studies[0].inputs[1].value);
}

// --- What is refused, and where it says so.

TEST(ParseWorkbook, RefusesATextThatBreaksOffAnywhere) {
  const std::string text = SampleText();
  // Without its last line feed it is whole.
  for (std::size_t length = 0; length + 1 < text.size(); ++length) {
    const std::string error = ErrorOf(text.substr(0, length));
    EXPECT_THAT(error, StartsWith("line ")) << length;
    EXPECT_THAT(error, HasSubstr("the text breaks off")) << length;
  }
}

TEST(ParseWorkbook, NamesTheLineAndColumnOfWhatIsNoJson) {
  EXPECT_EQ("line 1, column 1: the text is no JSON", ErrorOf("Hello"));
  EXPECT_EQ("line 2, column 11: the text is no JSON",
            ErrorOf(Replaced(SampleText(), "\"format\": ", "\"format\"= ")));
  EXPECT_EQ("line 1, column 1: the text breaks off", ErrorOf(""));
  EXPECT_THAT(ErrorOf(SampleText() + "{}"), HasSubstr("the text is no JSON"));
  EXPECT_THAT(ErrorOf(std::string(1000, '\0')), HasSubstr("the text is no JSON"));
  EXPECT_THAT(ErrorOf(Replaced(SampleText(), "-2.5", "-2,5")), HasSubstr("the text is no JSON"));
  EXPECT_THAT(ErrorOf(Replaced(SampleText(), "-2.5", "NaN")), HasSubstr("the text is no JSON"));
}

TEST(ParseWorkbook, RefusesWhatIsNoUtf8) {
  EXPECT_EQ("line 8, column 16: the text is no UTF-8",
            ErrorOf(Replaced(SampleText(), "\"Power of", "\"\xFF\xFEPower of")));
  EXPECT_THAT(ErrorOf(Replaced(SampleText(), "Power of", "\xED\xA0\x80")), HasSubstr("UTF-8"));
  EXPECT_THAT(ErrorOf(Replaced(SampleText(), "Power of", "\\ud800")), StartsWith("line 8"));
}

TEST(ParseWorkbook, RefusesANumberBeyondADouble) {
  EXPECT_THAT(ErrorOf(Replaced(SampleText(), "-2.5", "1e999")),
              EndsWith("the number is too large"));
  EXPECT_EQ("studies[0].items[2].y[0]: the number is too large for single precision",
            ErrorOf(Replaced(SampleText(), "[0.3, null", "[1e300, null")));
}

TEST(ParseWorkbook, RefusesDeepNesting) {
  EXPECT_THAT(ErrorOf(std::string(1000000, '[')),
              EndsWith("more than 32 arrays and objects stand in each other"));
  const std::string deep = std::string(40, '[') + std::string(40, ']');
  EXPECT_THAT(ErrorOf(Replaced(SampleText(), "-2.5", deep)),
              StartsWith("studies[0].items[0].rows[0].value[0]"));
}

TEST(ParseWorkbook, RefusesMoreValuesThanAWorkbookCanHave) {
  std::string many = "[0";
  for (std::size_t i = 0; i < WorkbookValueLimit; ++i) {
    many += ",0";
  }
  EXPECT_EQ("studies[0].items[2].x: there are more than 2097152 values",
            ErrorOf(Replaced(SampleText(), "[10, 20, 30]", many + "]")));
}

TEST(ParseWorkbook, RefusesMoreMembersThanAnObjectCanHave) {
  std::string many = "{";
  for (int i = 0; i <= 1000; ++i) {
    many += "\"Field" + std::to_string(i) + "\": 0,";
  }
  EXPECT_EQ("studies[0].inputs: there are more than 1000 members",
            ErrorOf(Replaced(SampleText(), "\"inputs\": {", "\"inputs\": " + many)));
}

TEST(ParseWorkbook, RefusesANameThatStandsTwice) {
  EXPECT_EQ("studies[0].inputs: the member \"Sigma\" stands twice",
            ErrorOf(Replaced(SampleText(), "\"SampleSize\"", "\"Sigma\"")));
  EXPECT_EQ("the file: the member \"schema\" stands twice",
            ErrorOf(Replaced(SampleText(), "\"minor\"", "\"schema\"")));
}

TEST(ParseWorkbook, RefusesTwoStudiesOfOneId) {
  const std::string text = WorkbookText({SampleWorkbookStudy(), WorkbookStudy{}});
  const LoadedWorkbook loaded = ParseWorkbook(Replaced(text, "\"s1\"", "\"first\""));
  EXPECT_EQ("studies[1]: another study has the id \"first\"", loaded.error);
  EXPECT_THAT(loaded.studies, IsEmpty());
}

struct Damage {
  const char* from;
  const char* to;
  const char* error;
};

TEST(ParseWorkbook, NamesTheMemberOfTheWrongKind) {
  const std::array<Damage, 24> damages = {{
      {"\"PowerAnalysis workbook\"", "\"other\"", "it is no workbook of PowerAnalysis"},
      {"\"schema\": 1", "\"schema\": 2",
       "it has the schema 2, and this version of PowerAnalysis reads the schema 1"},
      {"\"schema\": 1", "\"schema\": \"1\"",
       "schema: a whole number from -2147483648 to 2147483647 is expected"},
      {"\"schema\": 1", "\"schema\": 1.0",
       "schema: a whole number from -2147483648 to 2147483647 is expected"},
      {"\"minor\": 1", "\"minor\": 18446744073709551615",
       "minor: a whole number from -2147483648 to 2147483647 is expected"},
      {"\"minor\": 1,", "", "the file: the member \"minor\" is missing"},
      {"\"name\": \"Power of a test\"", "\"name\": 5", "studies[0].name: a text is expected"},
      {"\"name\": \"Power of a test\",", "", "studies[0]: the member \"name\" is missing"},
      {"\"status\": 0", "\"status\": 0, \"more\": 1", "studies[0]: the member \"more\" is unknown"},
      {"2024-05-17T09:30:00", "2024-02-17 09:30:00",
       "studies[0].date: a date such as 2024-05-17T09:30:00 is expected"},
      {"\"SampleSize\": 25", "\"SampleSize\": \"many\"",
       "studies[0].inputs.SampleSize: a number or null is expected"},
      {"\"inputs\": {\"SampleSize\": 25, \"Sigma\": 0.30000000000000004}", "\"inputs\": []",
       "studies[0].inputs: an object is expected"},
      {"\"type\": \"table\"", "\"type\": \"picture\"",
       "studies[0].items[0]: the type \"picture\" is unknown"},
      {"\"value\": -2.5", "\"value\": true",
       "studies[0].items[0].rows[0].value: a number or null is expected"},
      {"\"value\": -2.5", "\"values\": {}",
       "studies[0].items[0].rows[0].values: an array is expected"},
      {"\"value\": -2.5", "\"value\": -2.5, \"values\": []",
       "studies[0].items[0].rows[0]: the member \"value\" is unknown"},
      {"\"indent\": 2", "\"indent\": 201",
       "studies[0].items[0].rows[3].indent: a whole number from 0 to 200 is expected"},
      {"\"indent\": 2", "\"indent\": -1",
       "studies[0].items[0].rows[3].indent: a whole number from 0 to 200 is expected"},
      {"[1, 255]", "[1, 256]",
       "studies[0].items[0].layout.columnFormats[1]: a whole number from 0 to 255 is expected"},
      {"\"Third & last\"", "\"Third & last\", \"Fourth\"",
       "studies[0].items[2].titles: three texts are expected"},
      {"[10, 20, 30]", "[10, 20]",
       "studies[0].items[2].y: as many numbers as in \"x\" are expected"},
      {"\"xMin\": 5, ", "", "studies[0].items[2].axes: the member \"xMin\" is missing"},
      {"\"count\": 2", "\"count\": 2.5",
       "studies[0].messages[0].count: a whole number from -2147483648 to 2147483647 is expected"},
      {"\"Power at N - 1\"", "null", "studies[0].notes[0]: a text is expected"},
  }};
  for (const Damage& damage : damages) {
    EXPECT_EQ(damage.error, ErrorOf(Replaced(SampleText(), damage.from, damage.to)));
  }
}

TEST(ParseWorkbook, RefusesWhatIsNoObject) {
  for (const char* text : {"null", "[]", "{}", "1", "\"PowerAnalysis workbook\""}) {
    EXPECT_EQ("it is no workbook of PowerAnalysis", ErrorOf(text));
  }
}

TEST(ParseWorkbook, SurvivesAnyByteThatIsReplaced) {
  std::mt19937 random(9);
  const std::string text = SampleText();
  for (int i = 0; i < 20000; ++i) {
    std::string damaged = text;
    damaged[random() % text.size()] = static_cast<char>(random());
    const LoadedWorkbook loaded = ParseWorkbook(damaged);
    EXPECT_EQ(loaded.error.empty(), loaded.studies.size() == 1U);
    if (loaded.error.empty()) {
      EXPECT_EQ("", ParseWorkbook(WorkbookText(loaded.studies)).error) << damaged;
    }
  }
}

// --- Older and newer minor versions.

TEST(ParseWorkbook, TakesAFirstVersionWithoutAnswers) {
  std::string text = Replaced(SampleText(), "\"minor\": 1", "\"minor\": 0");
  const std::size_t begin = text.find("      \"answers\"");
  text.erase(begin, text.find("      \"items\"") - begin);
  const LoadedWorkbook loaded = ParseWorkbook(text);
  ASSERT_EQ("", loaded.error);
  EXPECT_THAT(loaded.studies[0].study.answers, IsEmpty());
}

TEST(ParseWorkbook, GivesAnswersBack) {
  WorkbookStudy study = SampleWorkbookStudy();
  study.study.answers = {{"N", 12, "per cell", "row"}, {"N", MissingValue(), "per cell", "column"}};
  const std::vector<Answer> answers = Reread(study).study.answers;
  ASSERT_EQ(2U, answers.size());
  EXPECT_EQ("N", answers[0].name);
  EXPECT_EQ(12, answers[0].value);
  EXPECT_EQ("per cell", answers[0].counts);
  EXPECT_EQ("row", answers[0].of);
  EXPECT_TRUE(IsMissing(answers[1].value));
}

TEST(ParseWorkbook, SaysWhatANewerMinorVersionToldBeyondItsKnowledge) {
  std::string text = Replaced(SampleText(), "\"minor\": 1", "\"minor\": 2, \"author\": {}");
  text = Replaced(text, "\"type\": \"report\"", "\"type\": \"film\"");
  text = Replaced(text, "\"value\": -2.5", "\"value\": -2.5, \"unit\": \"cm\"");
  const LoadedWorkbook loaded = ParseWorkbook(text);
  ASSERT_EQ("", loaded.error);
  EXPECT_TRUE(loaded.newer);
  EXPECT_THAT(
      loaded.notes,
      testing::ElementsAre(
          "studies[0].items[0].rows[0]: the member \"unit\" is unknown to this version and is left "
          "out",
          "studies[0].items[1]: the type \"film\" is unknown to this version and is left out",
          "the file: the member \"author\" is unknown to this version and is left out"));
  ASSERT_EQ(2U, loaded.studies[0].study.workbook.items.size());
  EXPECT_EQ(2U, loaded.studies[0].labels.size());
}

TEST(ParseWorkbook, ANewerMinorVersionWithoutMoreIsNoReasonToWarn) {
  const LoadedWorkbook loaded =
      ParseWorkbook(Replaced(SampleText(), "\"minor\": 1", "\"minor\": 7"));
  EXPECT_EQ("", loaded.error);
  EXPECT_FALSE(loaded.newer);
}

TEST(ParseWorkbook, NotesTheFirstTwentyUnknownMembersAndCountsTheRest) {
  std::string more = "\"minor\": 2";
  for (int i = 0; i < 25; ++i) {
    more += ", \"more" + std::to_string(i) + "\": 0";
  }
  const LoadedWorkbook loaded = ParseWorkbook(Replaced(SampleText(), "\"minor\": 1", more));
  ASSERT_EQ(21U, loaded.notes.size());
  EXPECT_EQ("and 5 more", loaded.notes.back());
}

// --- Dates.

TEST(IsWorkbookDate, TakesLocalTimesUniversalTimesAndOffsets) {
  for (const char* date : {"2024-05-17T09:30:00", "2024-05-17T09:30:00Z", "2024-12-31T23:59:59.5",
                           "2024-05-17T09:30:00.123456789-05:30", "0000-01-01T00:00:00+00:00"}) {
    EXPECT_TRUE(IsWorkbookDate(date)) << date;
  }
}

TEST(IsWorkbookDate, RefusesEverythingElse) {
  for (const char* date :
       {"", "2024", "2024-05-17", "2024-05-17 09:30:00", "2024-00-17T09:30:00",
        "2024-05-32T09:30:00", "2024-05-17T24:30:00", "2024-05-17T09:60:00", "2024-05-17T09:30:60",
        "2024-05-17T09:30:00.", "2024-05-17T09:30:00z", "2024-05-17T09:30:00+24:00",
        "2024-05-17T09:30:00+2:00", "2024-05-17T09:30:00.1234567890", "17.05.2024T09:30:00"}) {
    EXPECT_FALSE(IsWorkbookDate(date)) << date;
  }
}

// --- Files.

class WorkbookFiles : public testing::Test {
 protected:
  void SetUp() override {
    std::string name = testing::TempDir() + "workbook-XXXXXX";
    ASSERT_NE(nullptr, mkdtemp(name.data()));
    folder_ = name;
  }
  void TearDown() override { std::filesystem::remove_all(folder_); }

  std::string Path(const std::string& name) const { return (folder_ / name).string(); }
  static void Write(const std::string& path, const std::string& text) {
    std::ofstream(path, std::ios::binary) << text;
  }
  static std::string Read(const std::string& path) {
    std::ostringstream text;
    text << std::ifstream(path, std::ios::binary).rdbuf();
    return text.str();
  }
  std::size_t FilesThere() const {
    return static_cast<std::size_t>(
        std::distance(std::filesystem::directory_iterator(folder_), {}));
  }

 private:
  std::filesystem::path folder_;
};

TEST_F(WorkbookFiles, AreSavedAndLoadedAgain) {
  const std::string path = Path("study.json");
  EXPECT_EQ("", SaveWorkbook({SampleWorkbookStudy()}, path));
  EXPECT_EQ(SampleText(), Read(path));
  const LoadedWorkbook loaded = LoadWorkbook(path);
  EXPECT_EQ("", loaded.error);
  EXPECT_EQ(SampleText(), WorkbookText(loaded.studies));
  EXPECT_EQ(1U, FilesThere());
}

TEST_F(WorkbookFiles, ThatCannotBeSavedLeaveTheOldOneWhole) {
  const std::string path = Path("study.json");
  Write(path, "old");
  WorkbookStudy huge = SampleWorkbookStudy();
  huge.notes = {std::string(WorkbookFileLimit, 'x')};
  EXPECT_EQ("Cannot save the workbook \"" + path + "\": a workbook cannot be larger than 32 MiB.",
            SaveWorkbook({huge}, path));
  EXPECT_EQ("old", Read(path));
  EXPECT_EQ(1U, FilesThere());
}

TEST_F(WorkbookFiles, ThatTheReaderWouldRefuseAreNotWritten) {
  const std::string path = Path("study.json");
  Write(path, "old");
  WorkbookStudy odd = SampleWorkbookStudy();
  ChartOf(odd).y.pop_back();
  EXPECT_THAT(SaveWorkbook({odd}, path), HasSubstr("studies[0].items[2].y"));
  EXPECT_EQ("old", Read(path));
}

TEST_F(WorkbookFiles, ThatAreMissingAreNamed) {
  const std::string path = Path("none.json");
  EXPECT_EQ("Cannot open the workbook \"" + path + "\": there is no such file or folder.",
            LoadWorkbook(path).error);
  EXPECT_EQ("Cannot save the workbook \"" + path + "/x\": there is no such file or folder.",
            SaveWorkbook({}, path + "/x"));
}

TEST_F(WorkbookFiles, ThatAreDamagedNameTheFileAndThePlace) {
  const std::string path = Path("study.json");
  Write(path, SampleText().substr(0, 100));
  EXPECT_EQ("Cannot open the workbook \"" + path + "\": line 7, column 11: the text breaks off.",
            LoadWorkbook(path).error);
}

TEST_F(WorkbookFiles, OfAHundredMegabytesAreRefused) {
  const std::string path = Path("study.json");
  Write(path, "");
  ASSERT_EQ(0, truncate(path.c_str(), 100'000'000));
  EXPECT_EQ("Cannot open the workbook \"" + path + "\": a workbook cannot be larger than 32 MiB.",
            LoadWorkbook(path).error);
}

TEST_F(WorkbookFiles, ThatAreNoRegularFilesAreNeitherReadNorReplaced) {
  const std::string pipe = Path("pipe");
  ASSERT_EQ(0, mkfifo(pipe.c_str(), 0600));
  EXPECT_THAT(LoadWorkbook(pipe).error, HasSubstr("it is not a regular file"));
  EXPECT_THAT(SaveWorkbook({}, pipe), HasSubstr("it is not a regular file"));
  EXPECT_THAT(LoadWorkbook(Path("")).error, HasSubstr("it is a folder"));
  EXPECT_THAT(SaveWorkbook({}, Path("")), HasSubstr("it is a folder"));
  EXPECT_TRUE(std::filesystem::is_fifo(pipe));
}

TEST_F(WorkbookFiles, KeepTheirLinkAndPermissions) {
  const std::string path = Path("study.json");
  Write(path, "old");
  ASSERT_EQ(0, chmod(path.c_str(), 0640));
  std::filesystem::create_symlink("study.json", Path("link.json"));
  EXPECT_EQ("", SaveWorkbook({}, Path("link.json")));
  EXPECT_TRUE(std::filesystem::is_symlink(Path("link.json")));
  EXPECT_EQ(WorkbookText({}), Read(path));
  struct stat status = {};
  ASSERT_EQ(0, stat(path.c_str(), &status));
  EXPECT_EQ(0640U, status.st_mode & 07777U);
}

}  // namespace

}  // namespace poweranalysis
