#include "calculators/CalculatorResults.h"

#include <algorithm>
#include <cmath>
#include <iterator>
#include <utility>

#include "host/NumberText.h"

namespace poweranalysis {

namespace {

bool IsProbability(std::string_view field) {
  return field == ProbabilityField || field == ActualField;
}

bool IsNumber(const CalculatorTable& calculator, std::string_view field) {
  return RadiosOf(field, calculator.family) == nullptr;
}

// The fields of the rows: what was given, then what was found.
std::vector<const char*> RowFields(const CalculatorTable& calculator, std::size_t unknown) {
  const char* found = calculator.unknowns[unknown].field;
  std::vector<const char*> rows;
  std::copy_if(
      calculator.fields.begin(), calculator.fields.end(), std::back_inserter(rows),
      [&](std::string_view field) { return field != found && IsNumber(calculator, field); });
  if (ShowsRequested(calculator, unknown)) {
    rows.push_back(ActualField);
  }
  rows.push_back(found);
  return rows;
}

void Mark(TableRow& row, std::string_view field, std::string_view unknown) {
  row.answer = field == unknown;
  row.kind = IsProbability(field) ? CellKind::Probability
             : row.answer         ? CellKind::Computed
                                  : CellKind::Input;
}

std::string WithoutColon(std::string caption) {
  if (!caption.empty() && caption.back() == ':') {
    caption.pop_back();
  }
  return caption;
}

std::string PlainText(TextId caption) { return WithoutColon(WithoutMnemonic(LoadText(caption))); }

std::string TitleOf(const SolvedEquation& solved, std::string_view field) {
  if (field == ActualField) {
    return PlainText(text::CaptionActualValueBox);
  }
  if (field == ProbabilityField) {
    return PlainText(
        ProbabilityLabel(ShowsRequested(solved.calculator, solved.unknown), solved.oneMinusP));
  }
  const Field& shown = *TableOf(solved.calculator.family).Find(field);
  return WithoutColon(WithoutMnemonic(CaptionOfBox(solved.calculator, shown)));
}

double NumberOf(const SolvedEquation& solved, std::string_view field) {
  return solved.numbers.find(field)->second;
}

// "Computing Algorithm: More Accurate"; empty where there is no choice.
std::string AlgorithmHeading(const SolvedEquation& solved) {
  const auto number = solved.numbers.find(AlgorithmField);
  const RadioGroup* radios = RadiosOf(AlgorithmField, solved.calculator.family);
  if (radios == nullptr || number == solved.numbers.end()) {
    return {};
  }
  const Choice* chosen = FindChoice(radios->choices, number->second);
  return chosen == nullptr ? std::string()
                           : PlainText(radios->caption) + ": " + PlainText(chosen->caption);
}

std::vector<std::string> HeadingsOf(const SolvedEquation& solved) {
  const int task = FindTask(ModeDistribution, solved.calculator.calculator);
  std::vector<std::string> headings = {
      LoadText(Tasks(ModeDistribution)[static_cast<std::size_t>(task)].name)};
  const std::string algorithm = AlgorithmHeading(solved);
  if (!algorithm.empty()) {
    headings.push_back(algorithm);
  }
  return headings;
}

// With the decimals of the dialog, but never so few that nothing is left of a small number.
std::string StatementNumber(double value) {
  constexpr double kSmall = 1e-4;
  return value != 0 && std::fabs(value) < kSmall ? FormatGeneral(value)
                                                 : FormatDecimals(value, BoxDecimals);
}

// "; Df = 4, Delta = 1": the numbers that are neither the statistic nor its probability.
std::string Conditions(const SolvedEquation& solved) {
  const CalculatorTable& calculator = solved.calculator;
  const std::string_view statistic = calculator.unknowns[UnknownStatistic].field;
  std::string conditions;
  for (const std::string_view field : calculator.fields) {
    if (field != statistic && field != ProbabilityField && IsNumber(calculator, field)) {
      conditions += (conditions.empty() ? "; " : ", ") + TitleOf(solved, field) + " = " +
                    StatementNumber(NumberOf(solved, field));
    }
  }
  return conditions;
}

}  // namespace

SummaryTable TableOfEquation(const SolvedEquation& solved) {
  SummaryTable table;
  table.headings = HeadingsOf(solved);
  table.columns = {LoadText(text::Value)};
  const std::string_view unknown = solved.calculator.unknowns[solved.unknown].field;
  for (const char* field : RowFields(solved.calculator, solved.unknown)) {
    TableRow row;
    row.title = TitleOf(solved, field);
    row.values = {NumberOf(solved, field)};
    Mark(row, field, unknown);
    table.rows.push_back(std::move(row));
  }
  return table;
}

std::string StatementOf(const SolvedEquation& solved) {
  const CalculatorUnknown& statistic = solved.calculator.unknowns[UnknownStatistic];
  const bool discrete = ShowsRequested(solved.calculator, solved.unknown);
  return "P(" + PlainText(statistic.caption) + (solved.oneMinusP ? " > " : " <= ") +
         StatementNumber(NumberOf(solved, statistic.field)) +
         ") = " + StatementNumber(NumberOf(solved, discrete ? ActualField : ProbabilityField)) +
         Conditions(solved);
}

ResultsInPlace ResultsOf(const SolvedEquation& solved) {
  const char* unknown = solved.calculator.unknowns[solved.unknown].field;
  return {TableOfEquation(solved),
          {{StatementOf(solved)}},
          {{unknown, NumberOf(solved, unknown), {}, {}}},
          false};
}

void MarkCalculatorRows(SummaryTable& table,
                        std::string_view calculator,
                        std::string_view unknown) {
  const CalculatorTable* rows = FindCalculator(calculator);
  if (rows == nullptr) {
    return;
  }
  for (std::size_t i = 0; i < rows->unknowns.size(); ++i) {
    const std::vector<const char*> fields = RowFields(*rows, i);
    if (unknown == rows->unknowns[i].field && fields.size() == table.rows.size()) {
      for (std::size_t row = 0; row < fields.size(); ++row) {
        Mark(table.rows[row], fields[row], unknown);
      }
    }
  }
}

}  // namespace poweranalysis
