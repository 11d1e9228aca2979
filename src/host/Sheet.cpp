#include "host/Sheet.h"

#include <algorithm>
#include <charconv>
#include <optional>

#include "host/AtomicFile.h"
#include "host/KeywordFile.h"
#include "host/Utf8.h"
#include "host/Workbook.h"

namespace poweranalysis {

namespace {

constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";
constexpr std::string_view kOwnForm = "ZLV 1 ";
constexpr std::string_view kMinusSign = "\xE2\x88\x92";

using Row = std::vector<std::string>;

SheetResult Refusal(std::string error) { return {{}, std::move(error)}; }

bool IsPlainText(std::string_view text) {
  while (!text.empty()) {
    const std::size_t length = Utf8Length(text);
    if (length == 0 || text.front() == '\0') {
      return false;
    }
    text.remove_prefix(length);
  }
  return true;
}

// Takes the line end at the start of `text`, if there is one.
bool TakeLineEnd(std::string_view& text) {
  const bool pair = text.substr(0, 2) == "\r\n";
  const bool end = !text.empty() && (text.front() == '\n' || text.front() == '\r');
  text.remove_prefix(pair ? 2 : (end ? 1 : 0));
  return end;
}

// Takes a cell in quotation marks; a mark inside it is written twice.
std::string TakeQuoted(std::string_view& text) {
  std::string cell;
  text.remove_prefix(1);
  while (!text.empty()) {
    const char c = text.front();
    text.remove_prefix(1);
    if (c == '"') {
      if (text.empty() || text.front() != '"') {
        break;
      }
      text.remove_prefix(1);
    }
    cell += c;
  }
  return cell;
}

// Takes what stands before the next separator or the end of the line.
std::string TakeCell(std::string_view& text, char separator, bool quotes) {
  std::string cell;
  if (quotes && !text.empty() && text.front() == '"') {
    cell = TakeQuoted(text);
  }
  const char ends[] = {separator, '\n', '\r'};
  const std::size_t length = std::min(text.find_first_of({ends, 3}), text.size());
  cell += text.substr(0, length);
  text.remove_prefix(length);
  return cell;
}

// The lines of a text as cells; nothing where a limit is passed.
std::optional<std::vector<Row>> Rows(std::string_view text, char separator, bool quotes) {
  std::vector<Row> rows;
  while (!text.empty()) {
    Row row;
    do {
      row.push_back(TakeCell(text, separator, quotes));
      if (row.back().size() > SheetCellLimit || row.size() > SheetColumnLimit) {
        return std::nullopt;
      }
      const bool more = !text.empty() && text.front() == separator;
      if (!more) {
        break;
      }
      text.remove_prefix(1);
    } while (true);
    TakeLineEnd(text);
    rows.push_back(std::move(row));
    if (rows.size() > SheetRowLimit) {
      return std::nullopt;
    }
  }
  return rows;
}

double NumberOf(const std::string& cell) {
  return ParseReal(WithPlainMinus(cell)).value_or(MissingValue());
}

Sheet SheetOf(const std::vector<Row>& rows) {
  Sheet sheet;
  sheet.rows = rows.size();
  for (const Row& row : rows) {
    sheet.columns = std::max(sheet.columns, row.size());
  }
  sheet.cells.assign(sheet.rows * sheet.columns, MissingValue());
  for (std::size_t i = 0; i < rows.size(); ++i) {
    std::transform(rows[i].begin(), rows[i].end(),
                   sheet.cells.begin() + static_cast<std::ptrdiff_t>(i * sheet.columns), NumberOf);
  }
  return sheet;
}

// Takes a count, of at most `limit`, that ends with a blank or with the text.
std::optional<std::size_t> TakeCount(std::string_view& text, std::size_t limit) {
  std::size_t count = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), count);
  if (error != std::errc{} || count < 1 || count > limit) {
    return std::nullopt;
  }
  text.remove_prefix(static_cast<std::size_t>(end - text.data()));
  if (!text.empty() && text.front() != ' ') {
    return std::nullopt;
  }
  text.remove_prefix(text.empty() ? 0 : 1);
  return count;
}

bool IsNumberOrEmpty(const std::string& cell) { return cell.empty() || ParseReal(cell); }

// The program's own form, behind its first word.
SheetResult ParseOwnForm(std::string_view text) {
  const std::size_t end = std::min(text.find_first_of("\r\n"), text.size());
  std::string_view head = text.substr(0, end);
  text.remove_prefix(end);
  TakeLineEnd(text);
  const std::optional<std::size_t> rowCount = TakeCount(head, SheetRowLimit);
  const std::optional<std::size_t> columnCount =
      rowCount ? TakeCount(head, SheetColumnLimit) : std::nullopt;
  if (!columnCount || !head.empty()) {
    return Refusal("its first line does not give its rows and columns");
  }
  const std::optional<std::vector<Row>> rows = Rows(text, '\t', false);
  if (!rows) {
    return Refusal("it is too large for a sheet of cell means");
  }
  const auto wellFormed = [&](const Row& row) {
    return row.size() == *columnCount && std::all_of(row.begin(), row.end(), IsNumberOrEmpty);
  };
  if (rows->size() != *rowCount || !std::all_of(rows->begin(), rows->end(), wellFormed)) {
    return Refusal("it does not hold the rows and columns of numbers that its first line says");
  }
  return {SheetOf(*rows), {}};
}

}  // namespace

SheetResult ParseSheet(std::string_view text, SheetFormat format) {
  if (text.substr(0, kByteOrderMark.size()) == kByteOrderMark) {
    text.remove_prefix(kByteOrderMark.size());
  }
  if (text.size() > SheetFileLimit) {
    return Refusal("it is too large for a sheet of cell means");
  }
  if (text.empty() || !IsPlainText(text)) {
    return Refusal(text.empty() ? "it is empty" : "it is not a text");
  }
  if (text.substr(0, kOwnForm.size()) == kOwnForm) {
    return ParseOwnForm(text.substr(kOwnForm.size()));
  }
  const bool commas = format == SheetFormat::Commas;
  const char comma = text.find(';') == std::string_view::npos ? ',' : ';';
  const std::optional<std::vector<Row>> rows = Rows(text, commas ? comma : '\t', commas);
  if (!rows) {
    return Refusal("it is too large for a sheet of cell means");
  }
  return {SheetOf(*rows), {}};
}

SheetResult ReadSheet(const std::string& path) {
  const FileBytes file = ReadFile(path, SheetFileLimit);
  if (file.tooLarge) {
    return Refusal("it is too large for a sheet of cell means");
  }
  if (!file.exists || !file.problem.empty()) {
    return Refusal(file.problem.empty() ? "there is no such file" : file.problem);
  }
  std::string extension = path.size() < 4 ? std::string() : path.substr(path.size() - 4);
  std::transform(extension.begin(), extension.end(), extension.begin(), [](char c) {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
  });
  return ParseSheet(file.text, extension == ".csv" ? SheetFormat::Commas : SheetFormat::Tabs);
}

std::string FormatSheet(const Sheet& sheet) {
  std::string text = std::string(kOwnForm) + std::to_string(sheet.rows) + ' ' +
                     std::to_string(sheet.columns) + '\n';
  for (std::size_t row = 0; row < sheet.rows; ++row) {
    for (std::size_t column = 0; column < sheet.columns; ++column) {
      const double cell = sheet.At(row, column);
      text += column > 0 ? "\t" : "";
      text += IsMissing(cell) ? std::string() : FormatReal(cell);
    }
    text += '\n';
  }
  return text;
}

std::string WithPlainMinus(std::string_view text) {
  std::string plain;
  for (std::size_t at = text.find(kMinusSign); at != std::string_view::npos;
       at = text.find(kMinusSign)) {
    plain += text.substr(0, at);
    plain += '-';
    text.remove_prefix(at + kMinusSign.size());
  }
  return plain += text;
}

}  // namespace poweranalysis
