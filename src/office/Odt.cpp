#include "office/Odt.h"

#include <algorithm>
#include <cmath>

#include "host/ChartLayout.h"
#include "host/NumberText.h"
#include "host/SvgPainter.h"
#include "host/XmlText.h"
#include "office/Zip.h"

// Source: OASIS, Open Document Format for Office Applications (OpenDocument) Version 1.3, parts 2
// (packages) and 3 (schema).
namespace poweranalysis {

namespace {

constexpr const char* kMimeType = "application/vnd.oasis.opendocument.text";
constexpr const char* kXml = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n";

#define ODF "urn:oasis:names:tc:opendocument:xmlns:"
constexpr const char* kNamespaces =
    " xmlns:office=\"" ODF "office:1.0\" xmlns:style=\"" ODF "style:1.0\" xmlns:text=\"" ODF
    "text:1.0\" xmlns:table=\"" ODF "table:1.0\" xmlns:draw=\"" ODF "drawing:1.0\" xmlns:fo=\"" ODF
    "xsl-fo-compatible:1.0\" xmlns:svg=\"" ODF
    "svg-compatible:1.0\" xmlns:xlink=\"http://www.w3.org/1999/xlink\" "
    "xmlns:dc=\"http://purl.org/dc/elements/1.1/\" xmlns:meta=\"" ODF
    "meta:1.0\" office:version=\"1.3\">\n";
constexpr const char* kManifestNamespace = "xmlns:manifest=\"" ODF "manifest:1.0\"";
#undef ODF

// The indents that row titles have, in half ems; a deeper one is drawn as the last.
constexpr int kDeepestIndent = 20;

std::string Element(const char* name, const std::string& attributes, const std::string& content) {
  std::string text("<");
  text.append(name);
  if (!attributes.empty()) {
    text.append(" ").append(attributes);
  }
  return text.append(">").append(content).append("</").append(name).append(">");
}

std::string Attribute(const char* name, std::string_view value) {
  return std::string(name).append("=\"").append(XmlEscaped(value)).append("\"");
}

// Text as it stands: readers of OpenDocument take runs of white space as one blank.
std::string Words(std::string_view text) {
  std::string out;
  std::string plain;
  const auto flush = [&out, &plain] {
    out += XmlEscaped(plain);
    plain.clear();
  };
  char before = ' ';
  for (const char c : text) {
    if (c == '\n' || c == '\t' || (c == ' ' && before == ' ')) {
      flush();
      out += c == '\n' ? "<text:line-break/>" : c == '\t' ? "<text:tab/>" : "<text:s/>";
    } else if (c != '\r') {
      plain += c;
    }
    before = c == '\n' ? ' ' : c;
  }
  flush();
  return out;
}

std::string Paragraph(const char* style, std::string_view text) {
  return Element("text:p", Attribute("text:style-name", style), Words(text)) + "\n";
}

std::string Heading(int level, std::string_view text) {
  const std::string number = std::to_string(level);
  const std::string style = std::string("Heading_20_").append(number);
  return Element(
             "text:h",
             Attribute("text:style-name", style) + " " + Attribute("text:outline-level", number),
             Words(text)) +
         "\n";
}

std::string IndentStyle(int indent) {
  const int shown = indent < 0 ? 0 : indent > kDeepestIndent ? kDeepestIndent : indent;
  return std::string("Indent").append(std::to_string(shown));
}

// --- styles.xml

std::string ParagraphStyle(const char* name, const char* paragraph, const char* text) {
  std::string properties;
  if (*paragraph != '\0') {
    properties.append("<style:paragraph-properties ").append(paragraph).append("/>");
  }
  if (*text != '\0') {
    properties.append("<style:text-properties ").append(text).append("/>");
  }
  const bool heading = std::string_view(name).substr(0, 7) == "Heading";
  const std::string attributes =
      Attribute("style:name", name) + " style:family=\"paragraph\"" +
      (std::string_view(name) == "Standard" ? "" : " style:parent-style-name=\"Standard\"") +
      (heading ? " style:next-style-name=\"Standard\"" : "");
  return Element("style:style", attributes, properties) + "\n";
}

std::string StylesXml() {
  struct Row {
    const char* name;
    const char* paragraph;
    const char* text;
  };
  constexpr Row kRows[] = {
      {"Standard", "fo:margin-top=\"0.1cm\" fo:margin-bottom=\"0.1cm\"",
       "fo:font-family=\"sans-serif\" fo:font-size=\"10pt\" fo:language=\"en\" "
       "fo:country=\"US\""},
      {"Heading_20_1",
       "fo:margin-top=\"0.6cm\" fo:margin-bottom=\"0.2cm\" fo:keep-with-next=\"always\"",
       "fo:font-size=\"16pt\" fo:font-weight=\"bold\""},
      {"Heading_20_2",
       "fo:margin-top=\"0.4cm\" fo:margin-bottom=\"0.2cm\" fo:keep-with-next=\"always\"",
       "fo:font-size=\"12pt\" fo:font-weight=\"bold\""},
      {"Detail", "fo:keep-with-next=\"always\"", "fo:color=\"#555555\" fo:font-size=\"9pt\""},
      {"Caption", "fo:margin-top=\"0cm\" fo:margin-bottom=\"0.05cm\" fo:keep-with-next=\"always\"",
       "fo:font-weight=\"bold\""},
      {"ReportTitle", "fo:keep-with-next=\"always\"", "fo:font-weight=\"bold\""},
      {"Column", "fo:text-align=\"end\" fo:margin-top=\"0cm\" fo:margin-bottom=\"0cm\"",
       "fo:font-weight=\"bold\""},
      {"Answer", "fo:text-align=\"end\" fo:margin-top=\"0cm\" fo:margin-bottom=\"0cm\"",
       "fo:font-weight=\"bold\""},
      {"Value", "fo:text-align=\"end\" fo:margin-top=\"0cm\" fo:margin-bottom=\"0cm\"", ""},
  };
  std::string styles;
  for (const Row& row : kRows) {
    styles += ParagraphStyle(row.name, row.paragraph, row.text);
  }
  for (int indent = 0; indent <= kDeepestIndent; ++indent) {
    constexpr double kCentimetres = 0.18;
    const std::string margin = "fo:margin-top=\"0cm\" fo:margin-bottom=\"0cm\" fo:margin-left=\"" +
                               FormatDecimals(indent * kCentimetres, 2) + "cm\"";
    styles += ParagraphStyle(IndentStyle(indent).c_str(), margin.c_str(), "");
  }
  return std::string(kXml) + "<office:document-styles" + kNamespaces + "<office:styles>\n" +
         styles +
         "</office:styles>\n<office:automatic-styles>\n"
         "<style:page-layout style:name=\"Page\"><style:page-layout-properties "
         "fo:page-width=\"21cm\" fo:page-height=\"29.7cm\" fo:margin=\"2cm\"/>"
         "</style:page-layout>\n</office:automatic-styles>\n<office:master-styles>\n"
         "<style:master-page style:name=\"Standard\" style:page-layout-name=\"Page\"/>\n"
         "</office:master-styles>\n</office:document-styles>\n";
}

// --- content.xml

// The document as it grows, with the pictures that it shows.
struct Document {
  std::string content;
  std::vector<ZipEntry> pictures;
  int tables = 0;
};

std::string TextCell(const std::string& paragraph) {
  return Element("table:table-cell", "office:value-type=\"string\"", paragraph);
}

// The cell shows six digits and carries all of them.
std::string ValueCell(const TableRow& row, double value) {
  if (IsMissing(value) || !std::isfinite(value)) {
    return "<table:table-cell/>";
  }
  return Element(
      "table:table-cell",
      "office:value-type=\"float\" " + Attribute("office:value", FormatShortest(value + 0.0)),
      Paragraph(row.answer ? "Answer" : "Value", FormatCell(row.kind, value)));
}

// A row of fewer values than the table has columns is filled up.
std::string TableLine(const std::string& title, const std::string& cells, std::size_t missing) {
  std::string line = title + cells;
  for (std::size_t i = 0; i < missing; ++i) {
    line += "<table:table-cell/>";
  }
  return Element("table:table-row", "", line) + "\n";
}

std::size_t ColumnCount(const SummaryTable& table) {
  std::size_t count = table.columns.size();
  for (const TableRow& row : table.rows) {
    count = std::max(count, row.values.size());
  }
  return count;
}

void AddItem(const SummaryTable& table, Document& document) {
  for (const std::string& heading : table.headings) {
    document.content += Paragraph("Caption", heading);
  }
  const std::size_t columns = ColumnCount(table);
  std::string lines = "<table:table-column/>";
  if (columns > 0) {
    lines += "<table:table-column " +
             Attribute("table:number-columns-repeated", std::to_string(columns)) + "/>\n";
  }
  std::string titles;
  for (const std::string& column : table.columns) {
    titles += TextCell(Paragraph("Column", ColumnTitleLine(column)));
  }
  lines += Element("table:table-header-rows", "",
                   TableLine("<table:table-cell/>", titles, columns - table.columns.size()));
  for (const TableRow& row : table.rows) {
    std::string cells;
    for (const double value : row.values) {
      cells += ValueCell(row, value);
    }
    lines += TableLine(TextCell(Paragraph(IndentStyle(row.indent).c_str(), ShownTitle(row))), cells,
                       columns - row.values.size());
  }
  const std::string name = std::string("Table").append(std::to_string(++document.tables));
  document.content += Element("table:table", Attribute("table:name", name), lines) + "\n";
}

void AddItem(const Report& report, Document& document) {
  // A report begins with its title.
  const char* style = "ReportTitle";
  for (const std::string& paragraph : ParagraphsOf(report)) {
    document.content += Paragraph(style, paragraph);
    style = "Standard";
  }
}

void AddItem(const Chart& chart, Document& document) {
  const DisplayList list = LayOutChart(chart);
  const std::string number = std::to_string(document.pictures.size() + 1);
  const std::string path = "Pictures/chart" + number + ".svg";
  document.pictures.push_back({path, PaintSvg(list)});
  constexpr double kWidth = 16;  // centimetres
  const std::string size =
      Attribute("svg:width", FormatDecimals(kWidth, 2) + "cm") + " " +
      Attribute("svg:height", FormatDecimals(kWidth * list.height / list.width, 2) + "cm");
  const std::string image =
      "<draw:image " + Attribute("xlink:href", path) +
      " xlink:type=\"simple\" xlink:show=\"embed\" xlink:actuate=\"onLoad\"/>" +
      Element("svg:title", "", XmlEscaped(list.title)) +
      Element("svg:desc", "", XmlEscaped(list.description));
  const std::string name = std::string("Chart").append(number);
  const std::string frame = Element(
      "draw:frame", Attribute("draw:name", name) + " text:anchor-type=\"as-char\" " + size, image);
  document.content += Element("text:p", Attribute("text:style-name", "Standard"), frame) + "\n";
}

void AddInputs(const std::vector<WorkbookInput>& inputs, Document& document) {
  if (inputs.empty()) {
    return;
  }
  SummaryTable table;
  table.columns = {"Value"};
  for (const WorkbookInput& input : inputs) {
    table.rows.push_back({input.field, 0, {input.value}});
  }
  document.content += Heading(2, "Inputs");
  AddItem(table, document);
}

void AddStudy(const WorkbookStudy& study, Document& document) {
  document.content += Heading(1, study.name.empty() ? "Study" : study.name);
  if (!study.date.empty()) {
    document.content += Paragraph("Detail", study.date);
  }
  AddInputs(study.inputs, document);
  const std::vector<WorkbookItem>& items = study.study.workbook.items;
  for (std::size_t i = 0; i < items.size(); ++i) {
    if (i < study.labels.size() && !study.labels[i].name.empty()) {
      document.content += Heading(2, study.labels[i].name);
    }
    std::visit([&document](const auto& item) { AddItem(item, document); }, items[i]);
  }
  for (const Message& message : study.study.messages) {
    document.content += Paragraph("Standard", ShownMessage(message));
  }
  for (const std::string& note : study.notes) {
    document.content += Paragraph("Standard", note);
  }
}

std::string ContentXml(const Document& document) {
  return std::string(kXml) + "<office:document-content" + kNamespaces +
         "<office:body>\n<office:text>\n" + document.content +
         "</office:text>\n</office:body>\n</office:document-content>\n";
}

std::string ManifestXml(const std::vector<ZipEntry>& entries) {
  const auto row = [](const std::string& path, const char* type) {
    return "<manifest:file-entry " + Attribute("manifest:full-path", path) + " " +
           Attribute("manifest:media-type", type) + "/>\n";
  };
  std::string rows = row("/", kMimeType);
  for (const ZipEntry& entry : entries) {
    const bool picture = entry.name.find(".svg") != std::string::npos;
    rows += row(entry.name, picture ? "image/svg+xml" : "text/xml");
  }
  return std::string(kXml) + "<manifest:manifest " + kManifestNamespace +
         " manifest:version=\"1.3\">\n" + rows + "</manifest:manifest>\n";
}

}  // namespace

std::string ExportOdt(const std::vector<WorkbookStudy>& studies) {
  Document document;
  for (const WorkbookStudy& study : studies) {
    AddStudy(study, document);
  }
  std::vector<ZipEntry> parts = {{"content.xml", ContentXml(document)},
                                 {"styles.xml", StylesXml()}};
  parts.insert(parts.end(), document.pictures.begin(), document.pictures.end());
  // The type stands first and as it is, so that a look at the first bytes tells it.
  std::vector<ZipEntry> entries = {{"mimetype", kMimeType, true}};
  entries.push_back({"META-INF/manifest.xml", ManifestXml(parts)});
  entries.insert(entries.end(), parts.begin(), parts.end());
  return WriteZip(entries);
}

}  // namespace poweranalysis
