#include "cli/Calc.h"

#include <fmt/format.h>

#include "automation/Errors.h"
#include "host/NumberText.h"

namespace poweranalysis {

void CheckUnknown(const CalculatorTable& calculator, const TaskRequest& request) {
  const CalculatorUnknown& unknown =
      calculator.unknowns[request.unknown.value_or(UnknownProbability)];
  if (IsGiven(unknown, request.values)) {
    throw UsageError(
        unknown.name,
        fmt::format("this is the unknown{}; choose another by --unknown ({})",
                    request.unknown ? "" : " when none is named", UnknownNames(calculator)));
  }
}

std::string CalculatorFooter(const CalculatorTable& calculator, const std::string& command) {
  std::string example = command + " --unknown p";
  for (const char* name : calculator.fields) {
    const Field& field = *TableOf(calculator.family).Find(name);
    const std::vector<std::string> shorter = ShorterOptions(calculator, field);
    if (name != std::string_view(ProbabilityField) && name != std::string_view(AlgorithmField)) {
      example += fmt::format(" --{} {}", shorter.empty() ? OptionName(name) : shorter.front(),
                             FormatShortest(field.factory));
    }
  }
  return fmt::format("Unknowns: {}\n\nExample:\n  {}", UnknownNames(calculator), example);
}

}  // namespace poweranalysis
