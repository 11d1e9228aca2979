#include "automation/CalculatorNames.h"

#include <algorithm>

#include "automation/Errors.h"
#include "automation/Names.h"
#include "frame/TaskCatalogue.h"
#include "host/Utf8.h"

namespace poweranalysis {

const FamilyTable& FamilyOfTask(int mode, int row) {
  const TaskRow& task = Tasks(mode)[static_cast<std::size_t>(row)];
  return mode == ModeDistribution ? TableOf(FindCalculator(task.family)->family)
                                  : *FindFamily(task.family);
}

bool ShowsField(const CalculatorTable& calculator, const Field& field) {
  return std::any_of(calculator.fields.begin(), calculator.fields.end(),
                     [&field](const char* shown) { return field.name == std::string_view(shown); });
}

std::vector<std::string> ShorterOptions(const CalculatorTable& calculator, const Field& field) {
  std::vector<std::string> shorter;
  for (const CalculatorUnknown& unknown : calculator.unknowns) {
    if (field.name == std::string_view(unknown.field)) {
      shorter.emplace_back(unknown.name);
    }
  }
  constexpr struct {
    std::string_view field;
    const char* letter;
  } kLetters[] = {{"DegreesOfFreedom", "df"}, {"SampleSize", "n"}, {"TotalNumberOfVars", "k"}};
  for (const auto& row : kLetters) {
    if (row.field == field.name) {
      shorter.emplace_back(row.letter);
    }
  }
  return shorter;
}

std::string UnknownNames(const CalculatorTable& calculator) {
  std::string names;
  for (const CalculatorUnknown& unknown : calculator.unknowns) {
    names += (names.empty() ? "" : ", ") + std::string(unknown.name);
  }
  return names;
}

std::size_t FindUnknown(const CalculatorTable& calculator, const std::string& name) {
  for (std::size_t i = 0; i < calculator.unknowns.size(); ++i) {
    const CalculatorUnknown& unknown = calculator.unknowns[i];
    if (SameInAnyCase(name, unknown.name) || SameInAnyCase(name, unknown.field) ||
        SameInAnyCase(name, OptionName(unknown.field))) {
      return i;
    }
  }
  throw UsageError("unknown",
                   "there is no '" + name + "'; choose from " + UnknownNames(calculator));
}

bool IsGiven(const CalculatorUnknown& unknown, const std::vector<FieldValue>& values) {
  return std::any_of(values.begin(), values.end(), [&unknown](const FieldValue& value) {
    return value.field->name == std::string_view(unknown.field);
  });
}

}  // namespace poweranalysis
