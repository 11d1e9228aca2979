// The table and the statement of a computation, as whoever keeps them gets them from the dialog.

#include "calculators/CalculatorResults.h"

#include <algorithm>
#include <map>
#include <set>

#include "calculators/CalculatorRun.h"
#include "host/NumberText.h"
#include "support/DataTable.h"
#include "support/TestData.h"

namespace poweranalysis {
namespace {

// A row of data/results.tsv.
struct Case {
  explicit Case(const testing::DataRow& row)
      : calculator(row[0]),
        unknown(row[1]),
        oneMinusP(row[2] == "1"),
        inputs(row[3]),
        exists(row[4] == "1"),
        headings(row[5]),
        rows(row[6]),
        statement(row[7]) {}

  std::string calculator;
  std::string unknown;
  bool oneMinusP;
  std::string inputs;
  bool exists;
  std::string headings;
  std::string rows;
  std::string statement;
};

std::vector<Case> Cases() {
  std::vector<Case> cases;
  for (const testing::DataRow& row : testing::ReadTable(TestDataDir() + "/results.tsv")) {
    cases.emplace_back(row);
  }
  return cases;
}

std::string RowsText(const SummaryTable& table) {
  std::string text;
  for (const TableRow& row : table.rows) {
    text += (text.empty() ? "" : "; ") + row.title + " = " + FormatGeneral(row.values.front());
  }
  return text;
}

std::string Joined(const std::vector<std::string>& texts) {
  std::string joined;
  for (const std::string& text : texts) {
    joined += (joined.empty() ? "" : " / ") + text;
  }
  return joined;
}

class CalculatorResults : public CalculatorRun {
 protected:
  void Choose(const std::string& unknown) {
    const auto found =
        std::find_if(rows_->unknowns.begin(), rows_->unknowns.end(),
                     [&unknown](const CalculatorUnknown& row) { return unknown == row.name; });
    ASSERT_NE(found, rows_->unknowns.end()) << unknown;
    CalculatorRun::Choose(static_cast<std::size_t>(found - rows_->unknowns.begin()));
  }
  std::optional<ResultsInPlace> Take() { return host_.dialog()->TakeResults(); }
  std::optional<ResultsInPlace> ResultsOf(const Case& row) {
    Open(row.calculator.c_str());
    if (row.oneMinusP) {
      Click("OneMinusP");
    }
    Choose(row.unknown);
    Fill(row.inputs);
    Compute();
    std::optional<ResultsInPlace> results = Take();
    host_.Press(ControlBack);
    return results;
  }
};

TEST_F(CalculatorResults, AreATableAndAStatementOfEveryUnknown) {
  for (const Case& row : Cases()) {
    const std::optional<ResultsInPlace> results = ResultsOf(row);
    ASSERT_TRUE(results) << row.statement;
    EXPECT_EQ(Joined(results->table.headings), row.headings);
    EXPECT_EQ(results->table.columns, std::vector<std::string>{"Value"});
    EXPECT_EQ(RowsText(results->table), row.rows);
    EXPECT_EQ(results->report.paragraphs, std::vector<std::string>{row.statement});
    EXPECT_EQ(results->nearest, !row.exists) << row.statement;
  }
}

TEST(CalculatorResultsData, HaveEveryUnknownOfEveryCalculator) {
  std::map<std::string, std::set<std::string>> unknowns;
  for (const Case& row : Cases()) {
    unknowns[row.calculator].insert(row.unknown);
  }
  EXPECT_EQ(unknowns.size(), Calculators().size());
  for (const CalculatorTable& calculator : Calculators()) {
    EXPECT_EQ(unknowns[calculator.calculator].size(), calculator.unknowns.size())
        << calculator.calculator;
  }
}

TEST_F(CalculatorResults, EndWithTheUnknownWhichAloneIsTheAnswer) {
  for (const Case& row : Cases()) {
    const std::optional<ResultsInPlace> results = ResultsOf(row);
    ASSERT_TRUE(results) << row.statement;
    const std::vector<TableRow>& rows = results->table.rows;
    EXPECT_TRUE(rows.back().answer) << row.statement;
    EXPECT_EQ(std::count_if(rows.begin(), rows.end(), [](const TableRow& r) { return r.answer; }),
              1);
    ASSERT_EQ(results->answers.size(), 1u);
    const Answer& answer = results->answers.front();
    EXPECT_EQ(answer.value, rows.back().values.front());
    EXPECT_NE(TableOf(rows_->family).Find(answer.name), nullptr) << answer.name;
    EXPECT_EQ(answer.counts + answer.of, "");
  }
}

TEST_F(CalculatorResults, ShowAProbabilityAsOneAndWhatWasGivenAsTyped) {
  const std::vector<CellKind> given = {CellKind::Input, CellKind::Input, CellKind::Input,
                                       CellKind::Probability};
  const auto kinds = [](const SummaryTable& table) {
    std::vector<CellKind> all;
    for (const TableRow& row : table.rows) {
      all.push_back(row.kind);
    }
    return all;
  };
  Open("T");
  Compute();
  EXPECT_EQ(kinds(Take()->table), given);
  Choose("t");
  Compute();
  EXPECT_EQ(kinds(Take()->table),
            (std::vector<CellKind>{CellKind::Input, CellKind::Input, CellKind::Probability,
                                   CellKind::Computed}));
}

TEST_F(CalculatorResults, HoldAllDigitsOfWhatTheBoxesRound) {
  Open("T");
  Fill("TObserved=2 DegreesOfFreedom=4 Delta=1");
  Compute();
  const std::optional<ResultsInPlace> results = Take();
  EXPECT_EQ(results->answers.front().value, Get("CumP"));
  EXPECT_NE(results->answers.front().value, std::stod(Box("CumP")));
}

// --- When there are any.

TEST_F(CalculatorResults, AreThereOnceAndOnlyAfterCompute) {
  Open("F");
  EXPECT_FALSE(Take());
  Compute();
  EXPECT_TRUE(Take());
  EXPECT_FALSE(Take());
  Click("OneMinusP");
  Choose("f");
  Type("Df1", "3");
  EXPECT_FALSE(Take());
}

TEST_F(CalculatorResults, OfARefusalOrAnErrorAreNone) {
  Open("X2");
  Compute();  // not taken: the next computation must not leave them behind
  Fill("DegreesOfFreedom=0");
  Compute();
  EXPECT_FALSE(Take());
  Choose("chi-square");
  Fill("DegreesOfFreedom=1 CumP=0.04");
  Compute();
  EXPECT_EQ(Box("ObservedChiSquare"), "--Error--");
  EXPECT_FALSE(Take());
}

TEST_F(CalculatorResults, AreNoneWhereAFirstTestRefuses) {
  Open("R2");
  Compute();
  Fill("SampleSize=3 TotalNumberOfVars=5");
  Compute();
  EXPECT_FALSE(Take());
}

// --- Read from a file, which holds numbers alone.

TEST_F(CalculatorResults, AreMarkedAgainByCalculatorAndUnknown) {
  for (const Case& row : Cases()) {
    const std::optional<ResultsInPlace> results = ResultsOf(row);
    ASSERT_TRUE(results) << row.statement;
    SummaryTable read = results->table;
    for (TableRow& cell : read.rows) {
      cell.kind = CellKind::Computed;
      cell.answer = false;
    }
    MarkCalculatorRows(read, row.calculator, results->answers.front().name);
    for (std::size_t i = 0; i < read.rows.size(); ++i) {
      EXPECT_EQ(read.rows[i].kind, results->table.rows[i].kind) << row.statement << " " << i;
      EXPECT_EQ(read.rows[i].answer, results->table.rows[i].answer) << row.statement << " " << i;
    }
  }
}

TEST_F(CalculatorResults, OfAnotherShapeAreNotMarked) {
  Open("T");
  Compute();
  SummaryTable table = Take()->table;
  table.rows.pop_back();
  MarkCalculatorRows(table, "T", "CumP");
  MarkCalculatorRows(table, "T", "Mu");
  MarkCalculatorRows(table, "no calculator", "CumP");
  EXPECT_TRUE(std::none_of(table.rows.begin(), table.rows.end(),
                           [](const TableRow& row) { return row.answer; }));
  EXPECT_EQ(table.rows.front().kind, CellKind::Input);
}

// --- What belongs to a calculator.

TEST(CalculatorFields, AreThoseOfItsPageAndWhatNamesItsUnknown) {
  const CalculatorTable& t = *FindCalculator("T");
  for (const char* field : {"TObserved", "DegreesOfFreedom", "Delta", "CumP", "OneMinusP",
                            "ComputeT", "ComputeP", "ComputeDelta"}) {
    EXPECT_TRUE(HasField(t, field)) << field;
  }
  EXPECT_FALSE(HasField(t, "Mu"));
  EXPECT_FALSE(HasField(t, "WhatToCompute"));
  EXPECT_TRUE(HasField(*FindCalculator("F"), "WhatToCompute"));
  EXPECT_FALSE(HasField(*FindCalculator("Binomial"), "ActualValue"));
}

}  // namespace
}  // namespace poweranalysis
