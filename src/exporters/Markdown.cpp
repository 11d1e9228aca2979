#include <fmt/format.h>

#include "exporters/Exporters.h"
#include "host/ChartLayout.h"
#include "host/NumberText.h"

namespace poweranalysis {

namespace {

// The characters that Markdown would take as marks, behind a backslash; a line break becomes a
// blank.
std::string Escaped(const std::string& text) {
  constexpr std::string_view kMarks = "\\`*_{}[]<>#|~";
  std::string escaped;
  for (const char c : text) {
    if (kMarks.find(c) != std::string_view::npos) {
      escaped += '\\';
    }
    escaped += c == '\n' || c == '\r' ? ' ' : c;
  }
  return escaped;
}

// Of what charts plot, powers alone lie between 0 and 1.
std::string PlottedCell(float value) {
  const double shown = ShortestDouble(value);
  return FormatCell(shown > 0 ? CellKind::Probability : CellKind::Computed, shown);
}

}  // namespace

std::string MarkdownOf(const SummaryTable& table) {
  std::string text;
  const char* format = "## {}\n\n";
  for (const std::string& heading : table.headings) {
    text += fmt::format(fmt::runtime(format), Escaped(heading));
    format = "{}  \n";
  }
  text += "\n|   |";
  for (const std::string& column : table.columns) {
    text += fmt::format(" {} |", Escaped(ColumnTitleLine(column)));
  }
  text += "\n|:--|";
  for (std::size_t i = 0; i < table.columns.size(); ++i) {
    text += "--:|";
  }
  text += "\n";
  for (const TableRow& row : table.rows) {
    text += "| ";
    for (int i = 0; i < row.indent; ++i) {
      text += "&nbsp;";
    }
    text += Escaped(ShownTitle(row)) + " |";
    for (const double value : row.values) {
      text += fmt::format(" {} |", FormatCell(row.kind, value));
    }
    text += "\n";
  }
  return text;
}

std::string MarkdownOf(const Report& report) {
  std::string text;
  for (const std::string& paragraph : ParagraphsOf(report)) {
    text += fmt::format("{}{}\n", text.empty() ? "" : "\n", Escaped(paragraph));
  }
  return text;
}

std::string MarkdownOf(const Chart& chart) {
  std::string text = fmt::format("### {}\n\n| {} | {} |\n|--:|--:|\n", Escaped(chart.titles.back()),
                                 Escaped(chart.xLabel), Escaped(chart.yLabel));
  for (std::size_t i = 0; i < chart.x.size() && i < chart.y.size(); ++i) {
    text += fmt::format("| {} | {} |\n", FormatCell(ShortestDouble(chart.x[i])),
                        chart.y[i] == FailedPoint ? "" : PlottedCell(chart.y[i]));
  }
  return text;
}

std::string ExportMarkdown(const Study& study) {
  std::string text;
  const auto add = [&text](const std::string& item) {
    // An empty line parts the items.
    text += (text.empty() || item.empty() ? "" : "\n") + item;
  };
  if (const SummaryTable* table = SummaryOf(study)) {
    add(MarkdownOf(*table));
  }
  for (const Report* report : ReportsOf(study)) {
    add(MarkdownOf(*report));
  }
  for (const Chart* chart : ChartsOf(study)) {
    add(MarkdownOf(*chart));
  }
  for (const Message& message : study.messages) {
    add(fmt::format("> {}\n", Escaped(ShownMessage(message))));
  }
  return text;
}

}  // namespace poweranalysis
