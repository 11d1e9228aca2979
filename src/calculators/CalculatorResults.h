#pragma once

#include <functional>
#include <map>
#include <string>
#include <string_view>

#include "calculators/CalculatorDialog.h"

// What a computation of a calculator says, as values: its numbers in a table, and a statement such
// as "P(t <= 2) = 0.76456745; Df = 4, Delta = 1".
namespace poweranalysis {

// An equation that has been solved, with its numbers as the dialog shows them and all their digits:
// a probability is the upper tail with OneMinusP set.
struct SolvedEquation {
  const CalculatorTable& calculator;
  std::size_t unknown;
  bool oneMinusP;
  std::map<std::string, double, std::less<>> numbers;  // by field; the actual value where it exists
};

// The numbers in the order of the page, the unknown last.
SummaryTable TableOfEquation(const SolvedEquation& solved);
std::string StatementOf(const SolvedEquation& solved);
ResultsInPlace ResultsOf(const SolvedEquation& solved);

// What each row of a calculator's table shows and which is the answer, of a table that was read
// from a file. `unknown` is the name of the answer. Rows of another table stay as they are.
void MarkCalculatorRows(SummaryTable& table, std::string_view calculator, std::string_view unknown);

}  // namespace poweranalysis
