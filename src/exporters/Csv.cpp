#include <fmt/format.h>

#include <cmath>

#include "exporters/Exporters.h"
#include "host/ChartLayout.h"
#include "host/NumberText.h"

namespace poweranalysis {

namespace {

std::string Quoted(const std::string& text) {
  if (text.find_first_of(",\"\r\n") == std::string::npos) {
    return text;
  }
  std::string quoted = "\"";
  for (const char c : text) {
    quoted += c == '"' ? std::string("\"\"") : std::string(1, c);
  }
  return quoted + "\"";
}

std::string Number(double value) {
  return IsMissing(value) || !std::isfinite(value) ? std::string() : FormatShortest(value + 0.0);
}

std::string Single(float value) {
  return value == FailedPoint ? std::string() : Number(ShortestDouble(value));
}

std::string Line(const std::string& first, const std::string& second) {
  return fmt::format("{},{}\n", Quoted(first), Quoted(second));
}

}  // namespace

std::string CsvOf(const SummaryTable& table) {
  std::string text = "Title";
  for (const std::string& column : table.columns) {
    text += fmt::format(",{}", Quoted(ColumnTitleLine(column)));
  }
  text += "\n";
  for (const TableRow& row : table.rows) {
    text += Quoted(std::string(static_cast<std::size_t>(row.indent), ' ') + ShownTitle(row));
    for (const double value : row.values) {
      text += fmt::format(",{}", Number(value));
    }
    text += "\n";
  }
  return text;
}

std::string CsvOf(const Chart& chart) {
  std::string text = Line(chart.xLabel, chart.yLabel);
  for (std::size_t i = 0; i < chart.x.size() && i < chart.y.size(); ++i) {
    text += fmt::format("{},{}\n", Single(chart.x[i]), Single(chart.y[i]));
  }
  return text;
}

std::string ExportCsv(const Study& study) {
  const SummaryTable* table = SummaryOf(study);
  return table == nullptr ? std::string() : CsvOf(*table);
}

std::string ExportFullCsv(const Study& study) {
  std::string text;
  if (const SummaryTable* table = SummaryOf(study)) {
    for (const std::string& heading : table->headings) {
      text += Line("Heading", heading);
    }
    text += CsvOf(*table);
  }
  for (const Chart* chart : ChartsOf(study)) {
    text += (text.empty() ? "" : "\n") + Line("Chart", chart->name) + CsvOf(*chart);
  }
  return text;
}

}  // namespace poweranalysis
