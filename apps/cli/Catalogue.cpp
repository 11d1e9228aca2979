#include "cli/Catalogue.h"

#include <fmt/format.h>

#include "automation/CalculatorNames.h"
#include "cli/CommandLine.h"
#include "host/NumberText.h"
#include "module/PowerAnalysisModule.h"

namespace poweranalysis {

namespace {

std::string OneLine(std::string text) {
  for (char& c : text) {
    c = c == '\r' || c == '\n' ? ' ' : c;
  }
  return text;
}

const char* TypeName(FieldType type) {
  switch (type) {
    case FieldType::Int16:
      return "i16";
    case FieldType::Int32:
      return "i32";
    default:
      return "f64";
  }
}

FieldDescription Describe(const FamilyTable& family, const Field& field) {
  FieldDescription description;
  description.field = field.name;
  description.option = "--" + OptionName(field.name);
  description.type = TypeName(field.type);
  description.checked = field.keyed();
  description.lower = field.lower;
  description.upper = field.upper;
  description.range = field.keyed() ? RangeText(field) : "";
  description.standard = field.factory;
  description.label = LoadText(field.label);
  description.meaning = LoadText(field.meaning);
  for (const Choice& choice : ChoicesOf(family.family, field.name)) {
    description.choices.push_back({choice.word, choice.value});
  }
  return description;
}

// The selectors of a calculator, which have their own options.
void DescribeSelectors(const CalculatorTable& calculator, FamilyDescription& description) {
  FieldDescription unknown;
  unknown.field = "WhatToCompute";
  unknown.option = "--unknown";
  unknown.type = TypeName(FieldType::Int16);
  unknown.standard = UnknownProbability;
  unknown.meaning = LoadText(text::MeaningWhatToCompute);
  for (std::size_t i = 0; i < calculator.unknowns.size(); ++i) {
    unknown.choices.push_back({calculator.unknowns[i].name, static_cast<int>(i)});
  }
  description.fields.insert(description.fields.begin(), std::move(unknown));
  const FamilyTable& family = TableOf(calculator.family);
  description.fields.push_back(Describe(family, *family.Find("OneMinusP")));
}

FamilyDescription Describe(int mode, int row) {
  const TaskRow& task = Tasks(mode)[static_cast<std::size_t>(row)];
  const FamilyTable& family = FamilyOfTask(mode, row);
  const CalculatorTable* calculator =
      mode == ModeDistribution ? FindCalculator(task.family) : nullptr;
  FamilyDescription description;
  description.family = task.family;
  description.name = task.readableName;
  description.title = LoadText(task.name);
  description.help = OneLine(LoadText(task.help));
  for (const Field& field : family.fields) {
    if (calculator == nullptr || ShowsField(*calculator, field)) {
      description.fields.push_back(Describe(family, field));
      if (calculator != nullptr) {
        description.fields.back().meaning = MeaningOfBox(field);
      }
    }
  }
  if (calculator != nullptr) {
    DescribeSelectors(*calculator, description);
  }
  return description;
}

std::string FieldText(const FieldDescription& field) {
  std::string text = fmt::format("\n{} ({})\n    {}\n", field.option, field.field, field.meaning);
  text += fmt::format("    {}; default {}", field.checked ? field.range : "any value",
                      FormatShortest(field.standard));
  if (!field.label.empty()) {
    text += fmt::format("; label \"{}\"", field.label);
  }
  for (const auto& choice : field.choices) {
    text += fmt::format("{} {} = {}", &choice == &field.choices.front() ? "\n   " : ",",
                        choice.name, choice.value);
  }
  return text + "\n";
}

std::string ModeTitle(int mode) {
  const std::string command = SubCommandOf(mode);
  const std::string title = LoadText(Modes()[static_cast<std::size_t>(mode)].name);
  return command.empty() ? title + " (not on the command line yet)\n"
                         : fmt::format("{}: {} {}\n", title, command,
                                       mode == ModeDistribution ? "CALCULATOR" : "FAMILY");
}

bool SharesListWithNext(int mode) {
  return mode + 1 < ModeCount && Tasks(mode).data() == Tasks(mode + 1).data();
}

}  // namespace

std::string ListTasks() {
  std::string text;
  for (int mode = 0; mode < ModeCount; ++mode) {
    text += ModeTitle(mode);
    if (SharesListWithNext(mode)) {
      continue;
    }
    int row = 0;
    for (const TaskRow& task : Tasks(mode)) {
      const bool waits = !SubCommandOf(mode).empty() && !IsAvailable(mode, row++, NewAnalysis);
      text += fmt::format("  {:<9} {:<31} {}{}\n", task.family, task.readableName,
                          LoadText(task.name), waits ? " (not available yet)" : "");
    }
    text += mode + 1 < ModeCount ? "\n" : "";
  }
  return text;
}

std::string DescribeFamily(int mode, int row, ExportFormat format) {
  const FamilyDescription family = Describe(mode, row);
  if (format == ExportFormat::Json) {
    return DescribeJson(family);
  }
  std::string text =
      fmt::format("{} ({}): {}\n{}\n", family.family, family.name, family.title, family.help);
  for (const FieldDescription& field : family.fields) {
    text += FieldText(field);
  }
  return text;
}

}  // namespace poweranalysis
