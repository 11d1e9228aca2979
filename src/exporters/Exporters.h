#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "exporters/Study.h"

// Results for programs and papers. Numbers and bytes never depend on the locale: the same study
// gives the same bytes.
namespace poweranalysis {

enum class ExportFormat { Text, Json, Csv, Markdown, Html, Xlsx, Odt };

// A document of an office program, which the folder `office` writes.
inline constexpr bool IsDocument(ExportFormat format) {
  return format == ExportFormat::Xlsx || format == ExportFormat::Odt;
}

// By name in lower case ("json"); nothing when there is none.
std::optional<ExportFormat> FindExportFormat(std::string_view name);
// "text, json, csv, markdown, html, xlsx, odt"
std::string ExportFormatNames();

// How plain text is laid out.
struct TextStyle {
  int columns = 80;                 // the report wraps to it
  bool emphasis = false;            // headings in bold, for terminals
  std::vector<std::string> charts;  // names of the charts to draw in characters, in this order
};

// The table with its columns aligned at the decimal point, the report wrapped, then the charts.
std::string ExportText(const Study& study, const TextStyle& style = {});

// Version 1 of the contract in docs/json.md, with a line feed at its end.
std::string ExportJson(const Study& study);

// The table with all digits (RFC 4180 quoting, line feeds).
std::string ExportCsv(const Study& study);
// The same with the headings before it, and each chart as an additional table after an empty line.
std::string ExportFullCsv(const Study& study);

std::string ExportMarkdown(const Study& study);

// A complete document, with the charts drawn in it.
std::string ExportHtml(const Study& study);

// In a format that is text; documents are not made here.
std::string Export(const Study& study, ExportFormat format, const TextStyle& style = {});

// --- One item of a study, as it stands in the study's own document.

std::string TextOf(const SummaryTable& table, const TextStyle& style = {});
std::string TextOf(const Report& report, const TextStyle& style = {});
std::string TextOf(const Chart& chart, const TextStyle& style = {});

std::string MarkdownOf(const SummaryTable& table);
std::string MarkdownOf(const Report& report);
std::string MarkdownOf(const Chart& chart);

// For a page that has its own style.
std::string HtmlOf(const SummaryTable& table);
std::string HtmlOf(const Report& report);
std::string HtmlOf(const Chart& chart);
// All items and messages without the document around them.
std::string HtmlBodyOf(const Study& study);

std::string CsvOf(const SummaryTable& table);
std::string CsvOf(const Chart& chart);

// --- Cell means.

// Whether a table is one of cell means, as the grids show them.
bool IsCellMeans(const SummaryTable& table);
// Such a table as the sheet that the grids open, see host/Sheet; empty for any other.
std::string ZlvOf(const SummaryTable& table);

// --- The fields of a family, for `describe`.

struct FieldDescription {
  std::string field;
  std::string option;
  std::string type;      // "i16", "i32" or "f64"
  bool checked = false;  // has a range
  double lower = 0;
  double upper = 0;
  std::string range;    // in words
  double standard = 0;  // built-in value
  std::string label;
  std::string meaning;
  struct Choice {
    std::string name;
    int value;
  };
  std::vector<Choice> choices;
};

struct FamilyDescription {
  std::string family;
  std::string name;  // for commands: "two-means"
  std::string title;
  std::string help;
  std::vector<FieldDescription> fields;
};

std::string DescribeJson(const FamilyDescription& family);

// --- Shared by the exporters.

// The data of a chart are single precision. This is the double of the shortest decimal number that
// reads back as the single: 0.3 and not 0.30000001192092896, digits that the plot never knew.
double ShortestDouble(float value);

}  // namespace poweranalysis
