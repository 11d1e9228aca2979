#include <algorithm>
#include <sstream>

#include "exporters/Exporters.h"
#include "host/NumberText.h"
#include "host/TerminalPainter.h"
#include "host/Utf8.h"

namespace poweranalysis {

namespace {

constexpr const char* kBold = "\x1b[1m";
constexpr const char* kPlain = "\x1b[0m";

// A number's text in two parts, so that a column lines up at the decimal point.
struct AlignedNumber {
  std::string whole;
  std::string rest;
};

AlignedNumber SplitAtPoint(const std::string& text) {
  const std::size_t point = std::min(text.find_first_of(".e"), text.size());
  return {text.substr(0, point), text.substr(point)};
}

// The lines of a column's title.
std::vector<std::string> LinesOf(const std::string& title) {
  std::vector<std::string> lines;
  std::istringstream rest(title);
  for (std::string line; std::getline(rest, line);) {
    lines.push_back(line);
  }
  return lines;
}

struct Column {
  std::vector<std::string> titles;
  std::vector<AlignedNumber> cells;
  std::size_t whole = 0;
  std::size_t rest = 0;

  std::size_t width() const { return whole + rest; }
};

Column MakeColumn(const SummaryTable& table, std::size_t index) {
  Column column;
  for (const TableRow& row : table.rows) {
    const std::string text =
        index < row.values.size() ? FormatCell(row.kind, row.values[index]) : "";
    column.cells.push_back(SplitAtPoint(text));
    column.whole = std::max(column.whole, column.cells.back().whole.size());
    column.rest = std::max(column.rest, column.cells.back().rest.size());
  }
  column.titles = LinesOf(table.columns[index]);
  for (const std::string& line : column.titles) {
    const std::size_t title = CountCharacters(line);
    column.whole += title > column.width() ? title - column.width() : 0;
  }
  return column;
}

std::string Blanks(std::size_t count) { return std::string(count, ' '); }

void EndLine(std::string& text, std::string line) {
  line.erase(line.find_last_not_of(' ') + 1);
  text += line + "\n";
}

void WriteHeadings(const SummaryTable& table, bool emphasis, std::string& text) {
  for (const std::string& heading : table.headings) {
    text += emphasis ? kBold + heading + kPlain + "\n" : heading + "\n";
  }
  text += "\n";
}

void WriteRows(const SummaryTable& table, std::string& text) {
  constexpr std::size_t kGap = 2;
  std::size_t titles = 0;
  for (const TableRow& row : table.rows) {
    titles =
        std::max(titles, CountCharacters(ShownTitle(row)) + static_cast<std::size_t>(row.indent));
  }
  std::vector<Column> columns;
  std::size_t titleLines = 1;
  for (std::size_t i = 0; i < table.columns.size(); ++i) {
    columns.push_back(MakeColumn(table, i));
    titleLines = std::max(titleLines, columns[i].titles.size());
  }
  std::string line;
  for (std::size_t l = 0; l < titleLines; ++l) {
    line = Blanks(titles);
    for (const Column& column : columns) {
      const std::string title = l < column.titles.size() ? column.titles[l] : "";
      line += Blanks(kGap + column.width() - CountCharacters(title)) + title;
    }
    EndLine(text, line);
  }
  for (std::size_t r = 0; r < table.rows.size(); ++r) {
    const TableRow& row = table.rows[r];
    line = Blanks(static_cast<std::size_t>(row.indent)) + ShownTitle(row);
    line += Blanks(titles - CountCharacters(line));
    for (const Column& column : columns) {
      const AlignedNumber& cell = column.cells[r];
      line += Blanks(kGap + column.whole - cell.whole.size()) + cell.whole + cell.rest +
              Blanks(column.rest - cell.rest.size());
    }
    EndLine(text, line);
  }
}

// Breaks a paragraph at its blanks; a word longer than a line stands alone.
void WriteWrapped(const std::string& paragraph, std::size_t columns, std::string& text) {
  std::string line;
  std::size_t position = 0;
  while (position < paragraph.size()) {
    const std::size_t end = std::min(paragraph.find(' ', position), paragraph.size());
    const std::string word = paragraph.substr(position, end - position);
    position = end + 1;
    if (word.empty()) {
      continue;
    }
    if (!line.empty() && CountCharacters(line) + 1 + CountCharacters(word) > columns) {
      text += line + "\n";
      line.clear();
    }
    line += (line.empty() ? "" : " ") + word;
  }
  text += line + "\n";
}

std::size_t ColumnsOf(const TextStyle& style) {
  constexpr int kNarrowest = 20;
  return static_cast<std::size_t>(std::max(style.columns, kNarrowest));
}

// An empty line parts the items.
void AddItem(const std::string& item, std::string& text) {
  if (!item.empty()) {
    text += (text.empty() ? "" : "\n") + item;
  }
}

}  // namespace

std::string TextOf(const SummaryTable& table, const TextStyle& style) {
  std::string text;
  WriteHeadings(table, style.emphasis, text);
  WriteRows(table, text);
  return text;
}

std::string TextOf(const Report& report, const TextStyle& style) {
  std::string text;
  for (const std::string& paragraph : ParagraphsOf(report)) {
    text += text.empty() ? "" : "\n";
    WriteWrapped(paragraph, ColumnsOf(style), text);
  }
  return text;
}

std::string TextOf(const Chart& chart, const TextStyle& style) {
  return PaintTerminal(chart, {static_cast<int>(ColumnsOf(style)), TerminalSize{}.rows});
}

std::string ExportText(const Study& study, const TextStyle& style) {
  std::string text;
  if (const SummaryTable* table = SummaryOf(study)) {
    text = TextOf(*table, style);
  }
  for (const Report* report : ReportsOf(study)) {
    AddItem(TextOf(*report, style), text);
  }
  for (const std::string& name : style.charts) {
    for (const Chart* chart : ChartsOf(study)) {
      if (chart->name == name) {
        AddItem(TextOf(*chart, style), text);
      }
    }
  }
  return text;
}

}  // namespace poweranalysis
