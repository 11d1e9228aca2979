#include "output/SummaryTables.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <limits>
#include <map>

#include "support/DataTable.h"
#include "support/TestData.h"
#include "support/TestSettings.h"

namespace poweranalysis {
namespace {

using testing::DataRow;
using testing::ReadTable;
using testing::SettingsTest;
using testing::SplitAt;

// What the list beside this test says of one table.
struct ExpectedTable {
  std::string parameter;             // of the third heading: "form", "model", "effect", or nothing
  std::vector<std::string> byValue;  // texts of the third heading, by number
  std::vector<std::string> headings;
  std::vector<DataRow> rows;  // indent, then the title or its alternatives
};

std::map<int, ExpectedTable> ExpectedTables() {
  std::map<int, ExpectedTable> tables;
  for (const auto& row : ReadTable(TestDataDir() + "/tables.tsv")) {
    ExpectedTable& table = tables[std::stoi(row[1])];
    if (row[0] == "table") {
      table.parameter = row[3];
      if (!row[4].empty()) {
        table.byValue = SplitAt(row[4], ',');
      }
    } else if (row[0] == "heading") {
      table.headings.push_back(row[2]);
    } else {
      table.rows.emplace_back(row.begin() + 2, row.end());
    }
  }
  return tables;
}

class SummaryTableTest : public SettingsTest {
 protected:
  // Shows a table of so many values and gives it back.
  const SummaryTable& Show(int code, std::vector<double>& values) {
    ShowSummaryTable(values, code, &sheet, block);
    return std::get<SummaryTable>(host.workbook().items.back());
  }
  const SummaryTable& Show(int code) {
    std::vector<double> values(FindTableDefinition(code)->rows.size(), 1.5);
    return Show(code, values);
  }
  void SetAll(Family family, const char* field, double value) {
    if (TableOf(family).Find(field) != nullptr) {
      SetCommitted(family, field, value);
    }
  }

  int sheet = 0;
};

const char* ParameterField(const std::string& parameter) {
  return parameter == "form" ? "H0Type" : parameter == "model" ? "ModelType" : "EffectToTest";
}

// --- The rows.

TEST_F(SummaryTableTest, HasTheFortySixCodes) {
  const auto expected = ExpectedTables();
  EXPECT_EQ(expected.size(), 46u);
  std::map<int, int> seen;
  for (const TableDefinition& table : TableDefinitions()) {
    EXPECT_EQ(expected.count(table.code), 1u) << table.code;
    EXPECT_EQ(++seen[table.code], 1) << table.code;
  }
  EXPECT_EQ(seen.size(), 46u);
}

TEST_F(SummaryTableTest, CountsTheRowsOfEachCode) {
  const std::map<int, std::size_t> counts = {
      {0, 8},    {1, 8},   {2, 12},   {16, 9},    {17, 9},    {18, 13},  {32, 11}, {33, 12},
      {34, 12},  {48, 6},  {49, 7},   {50, 10},   {80, 9},    {81, 7},   {82, 25}, {112, 5},
      {113, 6},  {128, 6}, {129, 6},  {144, 5},   {145, 5},   {146, 10}, {160, 6}, {161, 7},
      {162, 20}, {176, 6}, {177, 7},  {193, 7},   {194, 8},   {195, 16}, {209, 6}, {210, 7},
      {225, 5},  {226, 6}, {241, 5},  {242, 7},   {257, 7},   {258, 8},  {513, 8}, {514, 9},
      {769, 6},  {770, 7}, {771, 19}, {1025, 25}, {1026, 19}, {1027, 27}};
  ASSERT_EQ(counts.size(), 46u);
  for (const auto& [code, count] : counts) {
    const TableDefinition* table = FindTableDefinition(code);
    ASSERT_NE(table, nullptr) << code;
    EXPECT_EQ(table->rows.size(), count) << code;
  }
}

TEST_F(SummaryTableTest, ShowsTheTitlesAndIndentsOfEveryCode) {
  for (const auto& [code, expected] : ExpectedTables()) {
    const SummaryTable& table = Show(code);
    ASSERT_EQ(table.rows.size(), expected.rows.size()) << code;
    for (std::size_t i = 0; i < expected.rows.size(); ++i) {
      EXPECT_EQ(table.rows[i].indent, std::stoi(expected.rows[i][0])) << code << " row " << i;
      if (expected.rows[i].size() == 2) {
        EXPECT_EQ(table.rows[i].title, expected.rows[i][1]) << code << " row " << i;
      }
    }
  }
}

TEST_F(SummaryTableTest, ShowsTheHeadingsOfEveryCodeByItsParameter) {
  for (const auto& [code, expected] : ExpectedTables()) {
    const Family family = FindTableDefinition(code)->family;
    const char* field = ParameterField(expected.parameter);
    const int values = std::max<int>(1, static_cast<int>(expected.byValue.size()));
    for (int value = 0; value < values; ++value) {
      std::vector<std::string> headings = expected.headings;
      if (!expected.byValue.empty()) {
        SetCommitted(family, field, value);
        headings.push_back(LoadText(std::stoi(expected.byValue[static_cast<std::size_t>(value)])));
        EXPECT_NE(headings.back(), "") << code;
      }
      EXPECT_EQ(Show(code).headings, headings) << code << " " << value;
    }
    if (!expected.byValue.empty()) {
      for (const int outside : {values, -1, 99}) {
        SetCommitted(family, field, outside);
        EXPECT_EQ(Show(code).headings, expected.headings) << code << " " << outside;
      }
      SetCommitted(family, field, 0);
    }
    EXPECT_LE(expected.headings.size(), 3u);
  }
}

// The alternatives stand in the order of the algorithm, the correction, the form or the effect.
TEST_F(SummaryTableTest, ChoosesTitlesByTheFamilysSetting) {
  const std::map<int, const char*> selectors = {
      {144, "Algorithm"},  {145, "Algorithm"},  {160, "Algorithm"},
      {161, "Algorithm"},  {176, "Algorithm"},  {177, "Algorithm"},
      {209, "Continuity"}, {210, "Continuity"}, {1027, "EffectToTest"}};
  int alternatives = 0;
  for (const auto& [code, expected] : ExpectedTables()) {
    for (std::size_t i = 0; i < expected.rows.size(); ++i) {
      if (expected.rows[i].size() == 2) {
        continue;
      }
      ++alternatives;
      const char* field = code == 146 ? (i == 2 ? "H0Type" : "Algorithm") : selectors.at(code);
      for (std::size_t value = 0; value + 1 < expected.rows[i].size(); ++value) {
        SetCommitted(FindTableDefinition(code)->family, field, static_cast<double>(value));
        EXPECT_EQ(Show(code).rows[i].title, expected.rows[i][value + 1]) << code << " " << value;
      }
    }
  }
  EXPECT_EQ(alternatives, 12);
}

TEST_F(SummaryTableTest, ReadsTheCommittedRecordAlone) {
  SetWorking(Family::T1, "H0Type", 2);
  EXPECT_EQ(Show(0).headings[2], "H0:  Mu = Mu0");
  SetCommitted(Family::T1, "H0Type", 1);
  EXPECT_EQ(Show(0).headings[2], "H0:  Mu <= Mu0");
}

TEST_F(SummaryTableTest, EveryTextOfEveryTableIsThere) {
  for (const TableDefinition& table : TableDefinitions()) {
    for (const TableRowDefinition& row : table.rows) {
      EXPECT_NE(LoadText(row.title.texts[0]), "") << table.code;
    }
    for (const TextId id : TableHeadings(table, block)) {
      EXPECT_NE(LoadText(id), "") << table.code;
    }
  }
}

TEST_F(SummaryTableTest, AFamilyHasOneTableAMode) {
  for (const TableDefinition& table : TableDefinitions()) {
    EXPECT_EQ(FindTable(table.family, table.mode), &table) << table.code;
  }
  EXPECT_EQ(FindTable(Family::V1, ModeInterval), nullptr);
  EXPECT_EQ(FindTable(Family::FCalc, ModePower), nullptr);
}

TEST_F(SummaryTableTest, EachLimitOfAnIntervalStandsOnce) {
  for (const TableDefinition& table : TableDefinitions()) {
    std::map<std::pair<QuantityKind, int>, int> seen;
    for (const TableRowDefinition& row : table.rows) {
      const bool limit = row.quantity.kind == QuantityKind::LowerLimit ||
                         row.quantity.kind == QuantityKind::UpperLimit;
      if (limit) {
        const int times = ++seen[{row.quantity.kind, row.quantity.index}];
        EXPECT_EQ(times, 1) << table.code << ' ' << row.quantity.index;
      }
      EXPECT_EQ(limit, row.indent == 4) << table.code;
    }
    EXPECT_EQ(seen.empty(), table.mode != ModeInterval) << table.code;
  }
}

// --- Deliberate oddities.

TEST_F(SummaryTableTest, TheHeadingsOfTheModelFitStandInTheOrderOfTheForm) {
  const char* const kExpected[] = {"H0:  R = 0", "H0:  R <= R0", "H0:  R >= R0"};
  for (int form = 0; form < 3; ++form) {
    SetCommitted(Family::SEM, "H0Type", form);
    EXPECT_EQ(Show(769).headings[2], kExpected[form]);
    EXPECT_EQ(Show(770).headings[2], kExpected[form]);
  }
  SetCommitted(Family::SEM, "H0Type", 3);
  EXPECT_EQ(Show(769).headings.size(), 2u);
}

TEST_F(SummaryTableTest, SurvivalTestsHaveTwoFormsInTheirHeadings) {
  for (const auto& [family, code] :
       {std::pair{Family::SA1, 241}, std::pair{Family::SA2, 257}, std::pair{Family::SA3, 513}}) {
    SetCommitted(family, "H0Type", 2);
    EXPECT_EQ(Show(code).headings.size(), 2u) << code;
    EXPECT_EQ(Show(code + 1).headings.size(), 2u) << code;
  }
}

TEST_F(SummaryTableTest, FourFormsServeTheSquaredMultipleCorrelation) {
  SetCommitted(Family::R2, "H0Type", 0);
  EXPECT_EQ(Show(160).headings[2], "H0:  P² =  C²");
  SetCommitted(Family::R2, "H0Type", 3);
  EXPECT_EQ(Show(160).headings[2], "H0:  P² =  0");
}

TEST_F(SummaryTableTest, TheDegreesOfFreedomThatVaryNameTheLastRow) {
  const auto lastTwo = [&](int dfToVary) {
    SetCommitted(Family::V2, "DfToVary", dfToVary);
    std::vector<double> values(6, 1.5);
    const SummaryTable& table = Show(129, values);
    return std::pair{table.rows[table.rows.size() - 2].title, table.rows.back().title};
  };
  EXPECT_EQ(lastTwo(0), (std::pair<std::string, std::string>{"Required Df1 (Varied)",
                                                             "Required Df2 (Varied)"}));
  EXPECT_EQ(lastTwo(1), (std::pair<std::string, std::string>{"Required Df1 (Varied)",
                                                             "Fixed Df2 (Specified by User)"}));
  for (const int other : {2, 3, -1}) {
    EXPECT_EQ(lastTwo(other),
              (std::pair<std::string, std::string>{"Power Goal", "Actual Power for Required Df"}));
    EXPECT_EQ(Show(129).rows.size(), 4u);
  }
}

TEST_F(SummaryTableTest, AShortenedTableShowsItsFirstValues) {
  SetCommitted(Family::V2, "DfToVary", 2);
  std::vector<double> values = {1, 2, 3, 4, -9999, -9999};
  const SummaryTable& table = Show(129, values);
  ASSERT_EQ(table.rows.size(), 4u);
  EXPECT_EQ(table.rows[3].values, std::vector<double>{4});
  EXPECT_EQ(values[4], -9999);  // not of the table, so not replaced
}

TEST_F(SummaryTableTest, TheIndependentTestNamesItsSizePerGroupWhicheverGroupVaries) {
  for (int vary = 0; vary < 4; ++vary) {
    SetCommitted(Family::T2, "NToVary", vary);
    EXPECT_EQ(Show(17).rows.back().title, "Required N (per group)");
  }
}

TEST_F(SummaryTableTest, TheTwoTablesOfOneVarianceDifferInOrder) {
  EXPECT_EQ(Show(112).rows[1].title, "Population Variance (Var)");
  EXPECT_EQ(Show(113).rows[0].title, "Variance under H0 (Var0)");
}

TEST_F(SummaryTableTest, NoBlankStandsBetweenDeltaAndRmsseOfTheTwoWayInterval) {
  const SummaryTable& table = Show(1027);
  EXPECT_EQ(table.rows[15].title, "Upper Limit");
  EXPECT_EQ(table.rows[16].title, "RMSSE:");
}

// --- Values.

TEST_F(SummaryTableTest, OnlyTheFailureValueBecomesMissing) {
  std::vector<double> values = {
      -9999.0, -9998.9, -9999.1, 0, -1, 1e30, std::numeric_limits<double>::quiet_NaN(), -9999.0};
  const SummaryTable& table = Show(0, values);
  const std::vector<bool> missing = {true, false, false, false, false, false, false, true};
  for (std::size_t i = 0; i < values.size(); ++i) {
    EXPECT_EQ(IsMissing(table.rows[i].values[0]), missing[i]) << i;
    EXPECT_EQ(IsMissing(values[i]), missing[i]) << i << ": the array is changed in place";
  }
  std::uint64_t bits = 0;
  std::memcpy(&bits, &table.rows[0].values[0], sizeof bits);
  EXPECT_EQ(bits, 0xFFFFFFFDFFFFFFFFu);
  EXPECT_EQ(table.rows[1].values[0], -9998.9);
}

std::vector<std::string> AnswersOf(const SummaryTable& table) {
  std::vector<std::string> answers;
  for (const TableRow& row : table.rows) {
    if (row.answer) {
      answers.push_back(row.title);
    }
  }
  return answers;
}

TEST_F(SummaryTableTest, MarksEveryAnswer) {
  const std::vector<std::string> sizes(3, "Required Sample Size (N)");
  EXPECT_EQ(AnswersOf(Show(1026)), sizes) << "of the two-way analysis of variance, one an effect";
  EXPECT_EQ(AnswersOf(Show(16)), std::vector<std::string>{"Power"});
  EXPECT_EQ(AnswersOf(Show(17)), std::vector<std::string>{"Required N (per group)"});
  EXPECT_EQ(AnswersOf(Show(193)).size(), 1u) << "the exact power, not the normal one beside it";
  SetCommitted(Family::V2, "DfToVary", 1);
  EXPECT_EQ(AnswersOf(Show(129)).size(), 1u) << "the other is the user's own";
  SetCommitted(Family::V2, "DfToVary", 0);
  EXPECT_EQ(AnswersOf(Show(129)).size(), 2u);
}

TEST_F(SummaryTableTest, SaysWhichRowsAreInputsAndWhichProbabilities) {
  const SummaryTable& table = Show(17);
  EXPECT_EQ(table.rows[0].kind, CellKind::Input);
  EXPECT_EQ(table.rows[3].kind, CellKind::Computed) << "the effect follows from the means";
  EXPECT_EQ(table.rows[6].kind, CellKind::Input) << "the goal is as it was typed";
  EXPECT_EQ(table.rows[7].kind, CellKind::Probability);
  EXPECT_EQ(Show(48).rows[2].kind, CellKind::Input) << "the effect of a contrast is typed";
}

TEST_F(SummaryTableTest, HoldsOneColumnInRowOrder) {
  std::vector<double> values = {1, 2, 3, 4, 5, 6, 7, 8};
  const SummaryTable& table = Show(1, values);
  for (std::size_t i = 0; i < values.size(); ++i) {
    EXPECT_EQ(table.rows[i].values, std::vector<double>{static_cast<double>(i + 1)});
  }
  EXPECT_EQ(table.columns, std::vector<std::string>{"Value"});
  EXPECT_EQ(table.columnFormats, std::vector<std::uint8_t>{4});
  EXPECT_EQ(table.code, 1);
}

TEST_F(SummaryTableTest, BlankRowsShowNothing) {
  const SummaryTable& table = Show(2);
  EXPECT_EQ(table.rows[3].title, "");
  EXPECT_EQ(table.rows[3].indent, 0);
}

// --- Layout.

TEST_F(SummaryTableTest, ValueIsIndentedInSixTablesAlone) {
  for (const TableDefinition& table : TableDefinitions()) {
    const bool indented = table.code == 0 || table.code == 1 || table.code == 16 ||
                          table.code == 17 || table.code == 32 || table.code == 80;
    EXPECT_EQ(Show(table.code).columnTitleIndent, indented ? 2 : 0) << table.code;
  }
}

TEST_F(SummaryTableTest, WidthsFollowTheTitles) {
  for (const TableDefinition& definition : TableDefinitions()) {
    const SummaryTable& table = Show(definition.code);
    EXPECT_EQ(table.cellWidth, 8);
    EXPECT_EQ(table.columnDisplayWidth, 10);
    EXPECT_EQ(table.columnTitleWidth, definition.code == 48 || definition.code == 49 ? 12 : 10);
    EXPECT_EQ(table.rowDisplayWidth, table.rowTitleWidth + 2);
    EXPECT_EQ(table.options, 9216) << definition.code;
  }
  EXPECT_EQ(Show(0).rowTitleWidth, 28);  // "Null Hypothesized Mean (Mu0)"
  EXPECT_EQ(Show(0).headingWidth, 17);   // "Power Calculation"
  EXPECT_EQ(Show(2).rowTitleWidth, 22);  // 2 + "Standardized Effect:"
  EXPECT_EQ(Show(17).headingWidth, 31);  // "Two Means, t-Test, Ind. Samples"
}

TEST_F(SummaryTableTest, TheWidthOfTheTitlesCanDifferBetweenAlgorithms) {
  SetCommitted(Family::R, "Algorithm", 0);
  const int exact = Show(145).rowTitleWidth;
  SetCommitted(Family::R, "Algorithm", 1);
  EXPECT_EQ(exact, 28);                    // "Population Correlation (Rho)"
  EXPECT_EQ(Show(145).rowTitleWidth, 29);  // "Required N (Refined Fisher Z)"
}

// Characters count, not bytes.
TEST_F(SummaryTableTest, MeasuresLettersAndNotBytes) {
  const ShownRow squared[] = {{text::H0P2Equal, 0}};
  EXPECT_EQ(MeasureTitles(squared), 13);
  const ShownRow indented[] = {{text::Value, 4}, {text::Value, 0}};
  EXPECT_EQ(MeasureTitles(indented), 9);
  EXPECT_EQ(MeasureTitles({}), 0);
  const ShownRow blank[] = {{text::BlankRow, 0}};
  EXPECT_LE(MeasureTitles(blank), 1);
}

TEST_F(SummaryTableTest, TheSlotReceivesTheHandleOfTheSheet) {
  Show(0);
  EXPECT_EQ(sheet, 1);
  Show(16);
  EXPECT_EQ(sheet, 2);
  std::vector<double> values(8, 1);
  ShowSummaryTable(values, 0, nullptr, block);
  EXPECT_EQ(host.workbook().items.size(), 3u);
  EXPECT_EQ(host.calls.nextScrSetOptions, 3);
}

// --- Failures are silent.

TEST_F(SummaryTableTest, WithoutMemoryThereIsNoTableAndNoMessage) {
  host.failAllocation = 1;
  std::vector<double> values(8, 1);
  ShowSummaryTable(values, 0, &sheet, block);
  EXPECT_TRUE(host.workbook().items.empty());
  EXPECT_TRUE(host.messages().empty());
  EXPECT_EQ(sheet, 0);
}

TEST_F(SummaryTableTest, FreesWhatItTook) {
  Show(0);
  EXPECT_EQ(host.calls.allocMem, host.calls.freeMem);
}

TEST_F(SummaryTableTest, AnUnknownCodeDrawsNothing) {
  for (const int code : {3, 15, -1, 192, 9999, 16384}) {
    EXPECT_EQ(FindTableDefinition(code), nullptr);
    std::vector<double> values(8, 1);
    ShowSummaryTable(values, code, &sheet, block);
  }
  EXPECT_TRUE(host.workbook().items.empty());
  EXPECT_TRUE(host.messages().empty());
}

TEST_F(SummaryTableTest, TooFewValuesShowAShorterTable) {
  std::vector<double> values = {1, 2};
  EXPECT_EQ(Show(0, values).rows.size(), 2u);
  std::vector<double> none;
  EXPECT_TRUE(Show(0, none).rows.empty());
}

TEST_F(SummaryTableTest, WithoutAHostNothingHappens) {
  Module().analysis = nullptr;
  std::vector<double> values(8, -9999);
  ShowSummaryTable(values, 0, &sheet, block);
  EXPECT_TRUE(host.workbook().items.empty());
}

}  // namespace
}  // namespace poweranalysis
