#include <fmt/format.h>

#include <algorithm>
#include <cmath>

#include "exporters/Exporters.h"
#include "host/NumberText.h"
#include "host/SvgPainter.h"
#include "host/XmlText.h"

namespace poweranalysis {

namespace {

constexpr const char* kStyle =
    "body { font: 1rem/1.5 sans-serif; max-width: 50rem; margin: 2rem auto; padding: 0 1rem; }\n"
    "table { border-collapse: collapse; }\n"
    "caption { font-weight: bold; text-align: left; padding-bottom: .5rem; }\n"
    "th, td { padding: .15rem 1rem .15rem 0; border-bottom: 1px solid #ddd; }\n"
    "tbody th { font-weight: normal; text-align: left; }\n"
    "thead th, td { text-align: right; font-variant-numeric: tabular-nums; }\n"
    "tr.answer th, tr.answer td { font-weight: bold; }\n"
    "svg { max-width: 100%; height: auto; }\n";

// Texts end their lines as \r\n.
std::string Escaped(std::string text) {
  text.erase(std::remove(text.begin(), text.end(), '\r'), text.end());
  return MarksEscaped(text);
}

std::string Joined(const std::vector<std::string>& lines, const char* separator) {
  std::string text;
  for (const std::string& line : lines) {
    text += (text.empty() ? "" : separator) + Escaped(line);
  }
  return text;
}

// The cell shows six digits and carries all of them for programs.
std::string Cell(CellKind kind, double value) {
  if (IsMissing(value) || !std::isfinite(value)) {
    return "<td></td>";
  }
  return fmt::format("<td data-value=\"{}\">{}</td>", FormatShortest(value + 0.0),
                     Escaped(FormatCell(kind, value)));
}

}  // namespace

std::string HtmlOf(const SummaryTable& table) {
  std::string text = fmt::format("<table>\n<caption>{}</caption>\n<thead><tr><th></th>",
                                 Joined(table.headings, "<br>"));
  for (const std::string& column : table.columns) {
    text += fmt::format("<th scope=\"col\">{}</th>", Escaped(ColumnTitleLine(column)));
  }
  text += "</tr></thead>\n<tbody>\n";
  for (const TableRow& row : table.rows) {
    text += fmt::format("<tr{}><th scope=\"row\"", row.answer ? " class=\"answer\"" : "");
    if (row.indent > 0) {
      text += fmt::format(" style=\"padding-left: {}ch\"", row.indent);
    }
    text += fmt::format(">{}</th>", Escaped(ShownTitle(row)));
    for (const double value : row.values) {
      text += Cell(row.kind, value);
    }
    text += "</tr>\n";
  }
  return text + "</tbody>\n</table>\n";
}

std::string HtmlOf(const Report& report) {
  std::string text;
  for (const std::string& paragraph : ParagraphsOf(report)) {
    text += fmt::format("<p>{}</p>\n", Escaped(paragraph));
  }
  return text;
}

std::string HtmlOf(const Chart& chart) {
  return fmt::format("<figure>\n{}</figure>\n", PaintSvgElement(LayOutChart(chart)));
}

std::string HtmlBodyOf(const Study& study) {
  const SummaryTable* table = SummaryOf(study);
  std::string text = table == nullptr ? std::string() : HtmlOf(*table);
  for (const Report* report : ReportsOf(study)) {
    text += HtmlOf(*report);
  }
  for (const Chart* chart : ChartsOf(study)) {
    text += HtmlOf(*chart);
  }
  for (const Message& message : study.messages) {
    text += fmt::format("<p role=\"alert\">{}</p>\n", Escaped(ShownMessage(message)));
  }
  return text;
}

std::string ExportHtml(const Study& study) {
  const SummaryTable* table = SummaryOf(study);
  const std::string title = table != nullptr ? Joined(table->headings, ", ") : study.family;
  return "<!DOCTYPE html>\n<html lang=\"en\">\n<head>\n<meta charset=\"utf-8\">\n<title>" + title +
         "</title>\n<style>\n" + kStyle + "</style>\n</head>\n<body>\n" + HtmlBodyOf(study) +
         "</body>\n</html>\n";
}

}  // namespace poweranalysis
