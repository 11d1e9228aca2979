#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <set>

#include "frame/FormatText.h"
#include "output/Reports.h"
#include "output/SummaryTables.h"
#include "support/TestSettings.h"

// The tables of values, titles and paragraphs of all families held against each other, for every
// value of what selects among them.
namespace poweranalysis {
namespace {

using testing::SettingsTest;

struct CodeOfTask {
  int code;
  const char* family;
  ReportKind report;
};

constexpr CodeOfTask kCodes[] = {
    {0, "T1", ReportKind::Power},     {1, "T1", ReportKind::Size},
    {16, "T2", ReportKind::Power},    {17, "T2", ReportKind::Size},
    {32, "T3", ReportKind::Power},    {33, "T3", ReportKind::Size},
    {48, "PC", ReportKind::Power},    {49, "PC", ReportKind::Size},
    {80, "AV1", ReportKind::Power},   {81, "AV1", ReportKind::Size},
    {112, "V1", ReportKind::Power},   {113, "V1", ReportKind::Size},
    {128, "V2", ReportKind::Power},   {129, "V2", ReportKind::Size},
    {144, "R", ReportKind::Power},    {145, "R", ReportKind::Size},
    {160, "R2", ReportKind::Power},   {161, "R2", ReportKind::Size},
    {176, "Z2R", ReportKind::Power},  {177, "Z2R", ReportKind::Size},
    {193, "P1", ReportKind::Power},   {194, "P1", ReportKind::Size},
    {209, "P2", ReportKind::Power},   {210, "P2", ReportKind::Size},
    {225, "QMAC", ReportKind::Power}, {226, "QMAC", ReportKind::Size},
    {241, "SA1", ReportKind::Power},  {242, "SA1", ReportKind::Size},
    {257, "SA2", ReportKind::Power},  {258, "SA2", ReportKind::Size},
    {513, "SA3", ReportKind::Power},  {514, "SA3", ReportKind::Size},
    {769, "SEM", ReportKind::Power},  {770, "SEM", ReportKind::Size},
    {1025, "AV2", ReportKind::Power}, {1026, "AV2", ReportKind::Size},
};

// What chooses headings, titles and paragraphs, with its last value where it has no bounds.
struct Selection {
  const char* field;
  int last;
};
constexpr Selection kSelections[] = {{"H0Type", 3},     {"Algorithm", 2}, {"ModelType", 1},
                                     {"Continuity", 1}, {"NToVary", 3},   {"DfToVary", 2}};

class AllFamilies : public SettingsTest {
 protected:
  // Runs `check` for every combination of what selects in a family.
  template <class Check>
  void ForEachSelection(const FamilyTable& family, Check check, std::size_t from = 0) {
    while (from < std::size(kSelections) && family.Find(kSelections[from].field) == nullptr) {
      ++from;
    }
    if (from == std::size(kSelections)) {
      check();
      return;
    }
    const Field& field = *family.Find(kSelections[from].field);
    const int first = field.keyed() ? static_cast<int>(field.lower) : 0;
    const int last = field.keyed() ? static_cast<int>(field.upper) : kSelections[from].last;
    for (int value = first; value <= last; ++value) {
      SetCommitted(family.family, kSelections[from].field, value);
      SCOPED_TRACE(std::string(kSelections[from].field) + " " + std::to_string(value));
      ForEachSelection(family, check, from + 1);
    }
    SetCommitted(family.family, field.name, field.factory);
  }
  double Committed(const FamilyTable& family, const char* field) {
    return Get(family.family, Instance::Committed, field);
  }
  // A record whose fields are all different, so that a value tells its field.
  void FillWithMarks(const FamilyTable& family) {
    double mark = 101;
    for (const Field& field : family.fields) {
      SetCommitted(family.family, field.name, mark++);
    }
  }

  std::vector<std::string> Paragraphs(const FamilyTable& family, ReportKind kind) {
    host.TakeWorkbook();
    Computed numbers;
    numbers.power = {0.61, 0.62, 0.63};
    numbers.size = {7001, 7002, 7003};
    EmitReport(family.family, kind, numbers, block);
    if (host.workbook().items.empty()) {
      return {};
    }
    return std::get<Report>(host.workbook().items.back()).paragraphs;
  }
};

TEST_F(AllFamilies, EveryTaskHasATableWithValues) {
  std::set<std::string> families;
  for (const CodeOfTask& task : kCodes) {
    const TableDefinition* table = FindTableDefinition(task.code);
    ASSERT_NE(table, nullptr) << task.code;
    EXPECT_EQ(table->family, FindFamily(task.family)->family) << task.code;
    EXPECT_FALSE(table->rows.empty()) << task.code;
    EXPECT_EQ(table, FindTable(table->family,
                               task.report == ReportKind::Power ? ModePower : ModeSampleSize));
    families.insert(task.family);
  }
  EXPECT_EQ(families.size(), 18u);
}

TEST_F(AllFamilies, ATableHasAValueForEachTitle) {
  for (const CodeOfTask& task : kCodes) {
    const FamilyTable& family = *FindFamily(task.family);
    const TableDefinition& table = *FindTableDefinition(task.code);
    ForEachSelection(family, [&] {
      const std::vector<ShownRow> rows = ShownRows(table, block);
      EXPECT_EQ(TableValues(rows, View(family.family, Instance::Committed), {}).size(),
                rows.size());
      const bool shortened = task.code == 129 && Committed(family, "DfToVary") == 2;
      EXPECT_EQ(rows.size() + (shortened ? 2 : 0), table.rows.size()) << task.code;
    });
  }
}

TEST_F(AllFamilies, ATableShowsAsManyRowsAsItHasTitles) {
  for (const CodeOfTask& task : kCodes) {
    const FamilyTable& family = *FindFamily(task.family);
    const TableDefinition& table = *FindTableDefinition(task.code);
    ForEachSelection(family, [&] {
      std::vector<double> values =
          TableValues(ShownRows(table, block), View(family.family, Instance::Committed), {});
      host.TakeWorkbook();
      int sheet = 0;
      ShowSummaryTable(values, task.code, &sheet, block);
      const auto& shown = std::get<SummaryTable>(host.workbook().items.back());
      ASSERT_EQ(shown.rows.size(), ShownRows(table, block).size()) << task.code;
      for (const TableRow& row : shown.rows) {
        EXPECT_EQ(row.values.size(), 1u);
      }
      EXPECT_GE(shown.headings.size(), 2u);
      EXPECT_LE(shown.headings.size(), 3u);
    });
  }
}

TEST_F(AllFamilies, RowsOfATableNameFieldsOfTheirFamily) {
  for (const TableDefinition& table : TableDefinitions()) {
    const FamilyTable& family = TableOf(table.family);
    for (const TableRowDefinition& row : table.rows) {
      EXPECT_EQ(row.quantity.kind == QuantityKind::Field ||
                    row.quantity.kind == QuantityKind::FieldLessOne,
                row.quantity.field != nullptr)
          << table.code;
      for (const char* field : {row.quantity.field, row.title.field, row.when.field}) {
        EXPECT_TRUE(field == nullptr || family.Find(field) != nullptr) << table.code << field;
      }
    }
    for (const ChosenText& heading : table.headings) {
      EXPECT_TRUE(heading.field == nullptr || family.Find(heading.field) != nullptr) << table.code;
    }
  }
}

// Titles that name one field in all families.
TEST_F(AllFamilies, AValueStandsBesideTheTitleOfItsField) {
  using Fields = std::set<std::string>;
  const std::map<std::string, Fields> fieldsOf = {
      {"Null Hypothesized Mean (Mu0)", {"Mu0"}},
      {"True Population Mean (Mu)", {"Mu"}},
      {"Population S.D. (Sigma)", {"Sigma"}},
      {"Group Sample Size (N)", {"SampleSize", "N"}},
      {"Type I Error Rate (Alpha)", {"Alpha"}},
      {"Alpha (Nominal)", {"Alpha"}},
      {"Power Goal", {"PowerGoal"}},
      {"Population Mean Mu1", {"Mu1"}},
      {"Population Mean Mu2", {"Mu2"}},
      {"Group 1 S.D. (Sigma1)", {"Sigma1"}},
      {"Group 2 S.D. (Sigma2)", {"Sigma2"}},
      {"Between-group Correlation", {"BetweenGroupR"}},
      {"Number of Groups", {"NumberOfGroups"}},
      {"SS Weights", {"SumOfSquaredWeights"}},
      {"Degrees of Freedom (Df)", {"DegreesOfFreedom"}},
      {"Population Variance (Var)", {"PopulationVariance"}},
      {"Variance under H0 (Var0)", {"NullHypothesizedVariance"}},
      {"Group 1 Df (Df1)", {"Df1"}},
      {"Group 2 Df (Df2)", {"Df2"}},
      {"Group 1 Variance (Var1)", {"Var1"}},
      {"Group 2 Variance (Var2)", {"Var2"}},
      {"Variance Ratio (Var1/Var2)", {"Ratio"}},
      {"Null Hypothesized Correlation (Rho0)", {"Rho0"}},
      {"Population Correlation (Rho)", {"Rho"}},
      {"Independent Vars. (k)", {"TotalNumberOfVars"}},
      {"C² (Null P²)", {"R2Null"}},
      {"P²", {"PopulationR2"}},
      {"Population Correlation Rho1", {"Rho1"}},
      {"Population Correlation Rho2", {"Rho2"}},
      {"Null Proportion (Pi0)", {"Pi0"}},
      {"Population Proportion (Pi)", {"Pi"}},
      {"Population Proportion Pi1", {"Pi1"}},
      {"Population Proportion Pi2", {"Pi2"}},
      {"Delta", {"Delta"}},
      {"Eta", {"Eta"}},
      {"Group 1 Survival Rate (Pi1)", {"Pi1"}},
      {"Group 2 Survival Rate (Pi2)", {"Pi2"}},
      {"Lambda1", {"Lambda1"}},
      {"Lambda2", {"Lambda2"}},
      {"Accrual Period (T0)", {"T0"}},
      {"Max. Follow-Up Time (T)", {"T"}},
      {"Dropout Rate (D)", {"D"}},
      {"Population RMSEA (R)", {"R"}},
      {"Null Hypothesized RMSEA (R0)", {"R0"}},
      {"Number of Rows", {"Rows"}},
      {"Number of Columns", {"Columns"}},
      {"RMSSE", {"RMSSE", "RMSSE_Row", "RMSSE_Col", "RMSSE_Int"}},
  };
  for (const CodeOfTask& task : kCodes) {
    const FamilyTable& family = *FindFamily(task.family);
    SetCommitted(family.family, family.Find("H0Type") != nullptr ? "H0Type" : "Alpha", 0);
    const std::vector<ShownRow> rows = ShownRows(*FindTableDefinition(task.code), block);
    for (std::size_t i = 0; i < rows.size(); ++i) {
      const std::string title = LoadText(rows[i].title);
      const auto fields = fieldsOf.find(title);
      if (fields != fieldsOf.end()) {
        ASSERT_EQ(rows[i].quantity.kind, QuantityKind::Field) << task.code << ' ' << title;
        EXPECT_TRUE(fields->second.count(rows[i].quantity.field)) << task.code << ' ' << title;
      }
    }
  }
}

// Titles of computed values.
TEST_F(AllFamilies, AComputedValueStandsBesideItsTitle) {
  const std::map<std::string, QuantityKind> kindOf = {
      {"Noncentrality Parameter (Delta)", QuantityKind::Noncentrality},
      {"Effect Df", QuantityKind::EffectDf},
      {"Error Df", QuantityKind::ErrorDf},
      {"Critical Value of F", QuantityKind::Critical},
      {"Critical Value of t", QuantityKind::Critical},
      {"Power", QuantityKind::Power},
      {"Actual Power for Required N", QuantityKind::Power},
      {"Actual Power for Required Df", QuantityKind::Power},
      {"Power (Uncorrected)", QuantityKind::Power},
      {"Power (Exact)", QuantityKind::Power},
      {"Actual Power (Exact)", QuantityKind::Power},
      {"Power (Normal Approximation)", QuantityKind::NormalPower},
      {"Actual Power (Normal Approx.)", QuantityKind::NormalPower},
      {"Actual Alpha (Exact)", QuantityKind::ActualAlpha},
      {"Total Observed Events", QuantityKind::Events},
      {"Required Sample Size (N)", QuantityKind::Size},
      {"Required N (per group)", QuantityKind::Size},
      {"Required Degrees of Freedom (Df)", QuantityKind::Size},
      {"Required Df1 (Varied)", QuantityKind::Size},
      {"Stand. Error of Mean Diff.", QuantityKind::Spread},
  };
  for (const CodeOfTask& task : kCodes) {
    const std::vector<ShownRow> rows = ShownRows(*FindTableDefinition(task.code), block);
    for (std::size_t i = 0; i < rows.size(); ++i) {
      const auto kind = kindOf.find(LoadText(rows[i].title));
      if (kind != kindOf.end()) {
        EXPECT_EQ(rows[i].quantity.kind, kind->second) << task.code << ' ' << kind->first;
      }
      const bool isBlank = rows[i].title == 12880 || rows[i].title == 12820 ||
                           rows[i].title == 12821 || rows[i].title == 12822;
      EXPECT_EQ(rows[i].quantity.kind == QuantityKind::None, isBlank) << task.code << " row " << i;
    }
  }
}

TEST_F(AllFamilies, TablesOfEffectsTakeEachFromItsPlace) {
  for (const int code : {1025, 1026}) {
    int effect = -1;
    const std::vector<ShownRow> rows = ShownRows(*FindTableDefinition(code), block);
    const char* const fields[] = {"RMSSE_Row", "RMSSE_Col", "RMSSE_Int"};
    for (std::size_t i = 0; i < rows.size(); ++i) {
      effect += rows[i].title >= 12820 && rows[i].title <= 12822 ? 1 : 0;
      if (rows[i].quantity.kind == QuantityKind::Field && effect >= 0) {
        EXPECT_STREQ(rows[i].quantity.field, fields[effect]);
      } else if (rows[i].quantity.kind != QuantityKind::Field &&
                 rows[i].quantity.kind != QuantityKind::ErrorDf &&
                 rows[i].quantity.kind != QuantityKind::None) {
        EXPECT_EQ(rows[i].quantity.index, effect) << code << " row " << i;
      }
    }
    EXPECT_EQ(effect, 2);
  }
}

TEST_F(AllFamilies, ATitleIsNeverLongerThanTheColumnOfTitles) {
  for (const CodeOfTask& task : kCodes) {
    ForEachSelection(*FindFamily(task.family), [&] {
      const std::vector<ShownRow> rows = ShownRows(*FindTableDefinition(task.code), block);
      for (const ShownRow& row : rows) {
        EXPECT_NE(row.title, text::None) << task.code;
        EXPECT_LE(MeasureTitles({&row, 1}), MeasureTitles(rows));
      }
    });
  }
}

// --- Reports.

// Does what fills a slot show as the conversion wants it?
bool Fits(const Slot& slot, char conversion, const FamilyTable& family) {
  const Quantity& quantity = slot.quantity;
  switch (quantity.kind) {
    case QuantityKind::Field:
      return conversion == (family.Find(quantity.field)->type == FieldType::Real ? 'g' : 'd');
    case QuantityKind::Difference:
    case QuantityKind::EffectVariance:
      return conversion == 'g';
    case QuantityKind::Percent:
      return conversion == 'f';
    case QuantityKind::Power:
      return conversion == 's';
    case QuantityKind::Size:
      return conversion == 's' || conversion == 'd';
    case QuantityKind::None:
      return conversion == 's' && slot.word.field != nullptr;
    default:
      return false;
  }
}

TEST_F(AllFamilies, SlotsOfAParagraphFitItsConversions) {
  for (const CodeOfTask& task : kCodes) {
    const FamilyTable& family = *FindFamily(task.family);
    ASSERT_FALSE(ReportRows(family.family).empty()) << task.family;
    for (const ReportRow& row : ReportRows(family.family)) {
      const std::string conversions(FormatSlots(RawText(row.text.texts[0])));
      ASSERT_EQ(static_cast<std::size_t>(row.slotCount), conversions.size())
          << task.family << ' ' << row.text.texts[0];
      for (std::size_t i = 0; i < conversions.size(); ++i) {
        EXPECT_TRUE(Fits(row.slots[i], conversions[i], family))
            << task.family << ' ' << row.text.texts[0] << " slot " << i;
      }
    }
  }
}

TEST_F(AllFamilies, SlotsOfAParagraphNameFieldsOfTheirFamily) {
  for (const CodeOfTask& task : kCodes) {
    const FamilyTable& family = *FindFamily(task.family);
    for (const ReportRow& row : ReportRows(family.family)) {
      for (const char* name : {row.when.field, row.text.field}) {
        EXPECT_TRUE(name == nullptr || family.Find(name) != nullptr) << task.family << ' ' << name;
      }
      for (const Slot& slot : row.slots) {
        for (const char* name : {slot.quantity.field, slot.quantity.other, slot.word.field}) {
          EXPECT_TRUE(name == nullptr || family.Find(name) != nullptr)
              << task.family << ' ' << row.text.texts[0] << ' ' << name;
        }
      }
    }
  }
}

// A report that names a value that it was not given would print one of another family's place.
TEST_F(AllFamilies, EveryReportCanBeWrittenForEverySelection) {
  for (const CodeOfTask& task : kCodes) {
    const FamilyTable& family = *FindFamily(task.family);
    FillWithMarks(family);
    ForEachSelection(family, [&] {
      const std::vector<std::string> paragraphs = Paragraphs(family, task.report);
      // Title, goal, test and at least one assumption and one statement.
      EXPECT_GE(paragraphs.size(), 4u) << task.family;
      EXPECT_NE(paragraphs.front().find(task.report == ReportKind::Power
                                            ? "\r\nPower Analysis -- "
                                            : "\r\nSample Size Analysis -- "),
                std::string::npos)
          << task.family;
      for (const std::string& paragraph : paragraphs) {
        EXPECT_FALSE(paragraph.empty()) << task.family;
        EXPECT_EQ(paragraph.find("%l"), std::string::npos) << paragraph;
        EXPECT_EQ(paragraph.find("%g"), std::string::npos) << paragraph;
        EXPECT_EQ(paragraph.find("%s"), std::string::npos) << paragraph;
        EXPECT_EQ(paragraph.find("DontTranslate"), std::string::npos) << paragraph;
      }
    });
  }
}

TEST_F(AllFamilies, TheTailSentenceFollowsTheTestWhereThereIsAForm) {
  for (const CodeOfTask& task : kCodes) {
    const FamilyTable& family = *FindFamily(task.family);
    const bool hasForm = family.Find("H0Type") != nullptr;
    const std::string name = task.family;
    EXPECT_EQ(hasForm, name != "PC" && name != "AV1" && name != "AV2") << name;
    for (int form = 0; form <= 3 && hasForm; ++form) {
      SetCommitted(family.family, "H0Type", form);
      const std::vector<std::string> paragraphs = Paragraphs(family, task.report);
      const std::string tails = LoadText(TailSentence.At(form));
      EXPECT_EQ(std::count(paragraphs.begin(), paragraphs.end(), tails), form < 3 ? 1 : 0) << name;
      if (form < 3) {
        EXPECT_EQ(paragraphs[3], tails) << name;
      }
    }
  }
}

// Each value of a selector that has a size statement of its own gives one, and one only.
TEST_F(AllFamilies, TheSizeStatementFollowsWhatIsVaried) {
  struct Statement {
    const char* family;
    const char* field;
    int value;
    std::vector<int> ids;
  };
  const Statement statements[] = {
      {"T2", "NToVary", 0, {12620, 12624}},  {"T2", "NToVary", 1, {12621}},
      {"T2", "NToVary", 2, {12622}},         {"Z2R", "NToVary", 0, {12685, 12689}},
      {"Z2R", "NToVary", 1, {12686}},        {"Z2R", "NToVary", 2, {12687}},
      {"P2", "NToVary", 0, {12717, 12721}},  {"P2", "NToVary", 1, {12718}},
      {"P2", "NToVary", 2, {12719}},         {"P2", "NToVary", 3, {12722}},
      {"V2", "DfToVary", 0, {12663, 12666}}, {"V2", "DfToVary", 1, {12664}},
      {"V2", "DfToVary", 2, {12665}},
  };
  for (const Statement& statement : statements) {
    std::vector<int> ids;
    for (const ReportRow& row : ReportRows(FindFamily(statement.family)->family)) {
      if (row.when.field != nullptr && std::string(row.when.field) == statement.field &&
          row.when.HoldsAt(statement.value)) {
        ids.push_back(row.text.texts[0]);
      }
    }
    EXPECT_EQ(ids, statement.ids) << statement.family << ' ' << statement.value;
  }
}

}  // namespace
}  // namespace poweranalysis
