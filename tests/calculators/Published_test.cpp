#include <cmath>

#include "calculators/CalculatorRun.h"
#include "support/DataTable.h"
#include "support/TestData.h"

namespace poweranalysis {
namespace {

using testing::DataRow;
using testing::ReadTable;

std::string DataFile(const char* name) { return TestDataDir() + "/" + name; }

// As the tables print a value: so many decimals.
double HalfLastDigit(const std::string& printed) {
  const std::size_t point = printed.find('.');
  const std::size_t decimals = point == std::string::npos ? 0 : printed.size() - point - 1;
  return 0.5 * std::pow(10.0, -static_cast<double>(decimals));
}

class Published : public CalculatorRun {
 protected:
  // The answer to a row: calculator, field of the unknown, 1 - p or not, inputs.
  double Answer(const std::string& calculator,
                const std::string& unknown,
                bool oneMinusP,
                const std::string& inputs) {
    Open(calculator.c_str());
    if (oneMinusP) {
      Click("OneMinusP");
    }
    Choose(unknown);
    Fill(inputs);
    Compute();
    EXPECT_TRUE(host_.messages().empty()) << LastMessage();
    return Number(unknown.c_str());
  }
};

TEST_F(Published, CasesComeOutAsPrinted) {
  const std::vector<DataRow> rows = ReadTable(DataFile("published_cases.tsv"));
  ASSERT_EQ(rows.size(), 11u);
  for (const DataRow& row : rows) {
    ASSERT_EQ(row.size(), 9u) << row[0];
    ASSERT_EQ(row[7], "same") << "another relation needs a test of its own";
    const double answer = Answer(row[1], row[2], row[3] == "1", row[4]);
    EXPECT_NEAR(answer, std::stod(row[5]), std::stod(row[6])) << row[0] << ", " << row[8];
    Press(ControlBack);
  }
}

TEST_F(Published, CasesOfTGiveTheirDeltaBack) {
  for (const DataRow& row : ReadTable(DataFile("published_cases.tsv"))) {
    if (row[1] == "T") {
      Answer(row[1], row[2], row[3] == "1", row[4]);
      const double delta = Get("Delta");
      Choose(UnknownParameter);
      Compute();
      EXPECT_NEAR(Number("Delta"), delta, 1e-7) << row[0];
      Press(ControlBack);
    }
  }
}

TEST_F(Published, CriticalValuesComeOutAsTextbooksPrintThem) {
  const std::vector<DataRow> rows = ReadTable(DataFile("critical_values.tsv"));
  EXPECT_GE(rows.size(), 30u);
  for (const DataRow& row : rows) {
    ASSERT_EQ(row.size(), 5u);
    const double answer = Answer(row[0], row[1], row[2] == "1", row[3]);
    // A tie may have been rounded either way.
    EXPECT_NEAR(answer, std::stod(row[4]), HalfLastDigit(row[4]) * (1 + 1e-9))
        << row[0] << " " << row[3];
    Press(ControlBack);
  }
}

TEST_F(Published, ACriticalValueOfR2IsThatOfItsVarianceRatio) {
  // R² = F df1 / (F df1 + df2), F the .95 point of 2 and 17 degrees of freedom, which is 3.59.
  const double r2 =
      Answer("R2", "R2Observed", false,
             "CumP=0.95 SampleSize=20 TotalNumberOfVars=3 PopulationR2=0 Algorithm=1");
  EXPECT_NEAR(r2 / (1 - r2) * 17 / 2, 3.59, 0.005);
}

}  // namespace
}  // namespace poweranalysis
