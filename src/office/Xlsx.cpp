#include "office/Xlsx.h"

#include <unistd.h>
#include <xlsxwriter.h>
#include <clocale>

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdio>
#include <ctime>
#include <filesystem>
#include <map>
#include <system_error>
#include <vector>

#include "exporters/Exporters.h"
#include "host/AtomicFile.h"
#include "host/ChartLayout.h"
#include "host/NumberText.h"
#include "host/Utf8.h"
#include "host/XmlText.h"
#include "office/Zip.h"

namespace poweranalysis {

namespace {

constexpr std::size_t kPackageLimit = std::size_t{1} << 30;

// The library writes numbers with printf, which asks the locale of the thread for the decimal
// point.
class PlainLocale {
 public:
  PlainLocale() : plain_(newlocale(LC_ALL_MASK, "C", nullptr)), before_(uselocale(plain_)) {}
  ~PlainLocale() {
    uselocale(before_);
    freelocale(plain_);
  }
  PlainLocale(const PlainLocale&) = delete;
  PlainLocale& operator=(const PlainLocale&) = delete;

 private:
  locale_t plain_;
  locale_t before_;
};

// A folder that nobody else sees: the library writes to files only.
class PrivateFolder {
 public:
  PrivateFolder() {
    std::error_code error;
    path_ = (std::filesystem::temp_directory_path(error) / "power-analysis-XXXXXX").string();
    if (error || mkdtemp(path_.data()) == nullptr) {
      path_.clear();
    }
  }
  ~PrivateFolder() {
    if (!path_.empty()) {
      std::error_code ignored;
      std::filesystem::remove_all(path_, ignored);
    }
  }
  PrivateFolder(const PrivateFolder&) = delete;
  PrivateFolder& operator=(const PrivateFolder&) = delete;

  const std::string& path() const { return path_; }

 private:
  std::string path_;
};

// --- Names of sheets: at most 31 characters, none of []:*?/\, no apostrophe at an end, none that
// another sheet has in any case, and not "History".

// The first `most` UTF-16 units of it, which is how the format counts.
std::string Shortened(const std::string& text, std::size_t most) {
  std::size_t units = 0;
  std::size_t end = 0;
  while (end < text.size()) {
    constexpr std::size_t kPairOfUnits = 4;  // bytes of a character that takes two
    const std::size_t length = FirstCharacter(std::string_view(text).substr(end)).size();
    units += length == kPairOfUnits ? 2 : 1;
    if (units > most) {
      break;
    }
    end += length;
  }
  return text.substr(0, end);
}

bool Holds(const std::vector<std::string>& names, std::string_view name) {
  return std::any_of(names.begin(), names.end(),
                     [name](const std::string& other) { return SameInAnyCase(name, other); });
}

std::string SheetName(const std::string& wish, std::vector<std::string>& taken) {
  std::string name = XmlCharacters(wish);
  for (char& c : name) {
    const bool forbidden = std::string_view("[]:*?/\\").find(c) != std::string_view::npos;
    c = forbidden || static_cast<unsigned char>(c) < ' ' ? ' ' : c;
  }
  constexpr const char* kTrimmed = " '";
  const std::size_t first = name.find_first_not_of(kTrimmed);
  name = first == std::string::npos ? "Study" : name.substr(first);
  constexpr std::size_t kMostUnits = 31;
  constexpr std::size_t kRoomForNumber = 8;
  std::string shown = Shortened(name, kMostUnits);
  for (int number = 2;; ++number) {
    shown.erase(shown.find_last_not_of(kTrimmed) + 1);
    if (!SameInAnyCase(shown, "history") && !Holds(taken, shown)) {
      taken.push_back(shown);
      return shown;
    }
    shown = Shortened(name, kMostUnits - kRoomForNumber);
    shown.append(" (").append(std::to_string(number)).append(")");
  }
}

// --- Dates

// The seconds of a date; its zone is left out, for the document's date is only its age.
std::time_t Seconds(const std::string& date) {
  std::tm time = {};
  if (!IsWorkbookDate(date) ||
      std::sscanf(date.c_str(), "%4d-%2d-%2dT%2d:%2d:%2d", &time.tm_year, &time.tm_mon,
                  &time.tm_mday, &time.tm_hour, &time.tm_min, &time.tm_sec) != 6) {
    return 0;
  }
  time.tm_year -= 1900;
  time.tm_mon -= 1;
  return timegm(&time);
}

// When the newest study was made, so that the same studies give the same bytes on any day.
std::time_t CreationTime(const std::vector<WorkbookStudy>& studies) {
  constexpr std::time_t kYear2000 = 946684800;
  std::time_t newest = 0;
  for (const WorkbookStudy& study : studies) {
    newest = std::max(newest, Seconds(study.date));
  }
  return newest > 0 ? newest : kYear2000;
}

// --- The book

// Values that the library's sixteen digits do not distinguish, by the sheet and the cell that hold
// them.
using ExactValues = std::map<std::string, double>;

struct Book {
  lxw_workbook* book = nullptr;
  lxw_format* title = nullptr;
  lxw_format* detail = nullptr;
  lxw_format* heading = nullptr;
  lxw_format* column = nullptr;
  lxw_format* paragraph = nullptr;
  std::map<std::pair<int, bool>, lxw_format*> indents;  // by step and boldness
  std::vector<ExactValues> exact;                       // by sheet
  std::vector<std::string> names;
  lxw_error error = LXW_NO_ERROR;

  void Check(lxw_error result) {
    if (error == LXW_NO_ERROR) {
      error = result;
    }
  }

  lxw_format* Indent(int indent, bool bold) {
    // A step is about as wide as two characters of a title.
    constexpr int kMostSteps = 15;
    const int steps = std::min(indent / 2, kMostSteps);
    if (steps <= 0) {
      return bold ? heading : nullptr;
    }
    lxw_format*& format = indents[{steps, bold}];
    if (format == nullptr) {
      format = workbook_add_format(book);
      if (bold) {
        format_set_bold(format);
      }
      format_set_indent(format, static_cast<std::uint8_t>(steps));
    }
    return format;
  }
};

void AddFormats(Book& book) {
  const auto add = [&book](bool bold) {
    lxw_format* format = workbook_add_format(book.book);
    if (bold) {
      format_set_bold(format);
    }
    return format;
  };
  constexpr double kTitlePoints = 14;
  book.title = add(true);
  format_set_font_size(book.title, kTitlePoints);
  book.detail = add(false);
  format_set_font_color(book.detail, 0x555555);
  book.heading = add(true);
  book.column = add(true);
  format_set_align(book.column, LXW_ALIGN_RIGHT);
  format_set_text_wrap(book.column);
  format_set_bottom(book.column, LXW_BORDER_THIN);
  book.paragraph = add(false);
  format_set_text_wrap(book.paragraph);
  format_set_align(book.paragraph, LXW_ALIGN_VERTICAL_TOP);
}

// --- The axes of charts

struct AxisSteps {
  double min = 0;
  double step = 0;     // 0: left to the reader's program
  std::string format;  // of the numbers at the ticks
};

std::size_t DecimalsOf(const std::vector<Tick>& ticks) {
  std::size_t most = 0;
  for (const Tick& tick : ticks) {
    const std::size_t point = tick.label.find('.');
    most = std::max(most, point == std::string::npos ? 0 : tick.label.size() - point - 1);
  }
  return most;
}

// Rounded to its decimals, so that a step of 0.1 has no digits that only its computing gave it.
double Rounded(double value, std::size_t decimals) {
  double read = value;
  const std::string text = FormatFixed(value, static_cast<int>(decimals));
  std::from_chars(text.data(), text.data() + text.size(), read);
  return read;
}

// The steps of the chart's own ticks. An axis that begins between two ticks begins at the first of
// them, or a step before it where data lie there.
AxisSteps StepsOf(const std::vector<Tick>& ticks,
                  const Axis& scale,
                  const std::vector<float>& data) {
  const bool plain = std::all_of(ticks.begin(), ticks.end(), [](const Tick& tick) {
    return tick.label.find('e') == std::string::npos;
  });
  if (ticks.size() < 2 || !plain) {
    return {ShortestDouble(scale.min), 0, {}};
  }
  const std::size_t decimals = DecimalsOf(ticks);
  AxisSteps steps;
  steps.step = Rounded(ticks[1].position - ticks[0].position, decimals);
  steps.min = Rounded(ticks[0].position, decimals);
  const bool below = std::any_of(data.begin(), data.end(), [&](float value) {
    return value != FailedPoint && ShortestDouble(value) < steps.min;
  });
  steps.min = below ? Rounded(steps.min - steps.step, decimals) : steps.min;
  steps.format = decimals == 0 ? "0" : "0." + std::string(decimals, '0');
  return steps;
}

// One sheet, written from the top to the bottom.
class Sheet {
 public:
  Sheet(Book& book, const std::string& name) : book_(book), name_(name) {
    sheet_ = workbook_add_worksheet(book.book, name.c_str());
    book.exact.emplace_back();
    if (sheet_ == nullptr) {
      book.Check(LXW_ERROR_SHEETNAME_ALREADY_USED);
      return;
    }
    book.Check(worksheet_set_column(sheet_, 0, 0, kTitleWidth, nullptr));
    book.Check(worksheet_set_column(sheet_, 1, kLastColumn, kValueWidth, nullptr));
    worksheet_fit_to_pages(sheet_, 1, 0);  // on paper as wide as a page
  }

  void Write(const WorkbookStudy& study) {
    if (sheet_ == nullptr) {
      return;
    }
    Line(study.name.empty() ? "Study" : study.name, book_.title);
    if (!study.date.empty()) {
      Line(study.date, book_.detail);
    }
    ++row_;
    WriteInputs(study.inputs);
    const std::vector<WorkbookItem>& items = study.study.workbook.items;
    for (std::size_t i = 0; i < items.size(); ++i) {
      if (i < study.labels.size() && !study.labels[i].name.empty()) {
        Line(study.labels[i].name, book_.heading);
      }
      std::visit([this](const auto& item) { WriteItem(item); }, items[i]);
      ++row_;
    }
    for (const Message& message : study.study.messages) {
      Paragraph(ShownMessage(message));
    }
    for (const std::string& note : study.notes) {
      Paragraph(note);
    }
  }

 private:
  static constexpr lxw_col_t kLastColumn = 7;
  static constexpr double kTitleWidth = 44;
  static constexpr double kValueWidth = 14;
  static constexpr double kLineHeight = 15;

  void Text(lxw_col_t column, const std::string& text, lxw_format* format) {
    constexpr std::size_t kMostUnits = 32767;
    std::string shown = Shortened(XmlCharacters(text), kMostUnits);
    shown.erase(std::remove(shown.begin(), shown.end(), '\r'), shown.end());
    book_.Check(worksheet_write_string(sheet_, row_, column, shown.c_str(), format));
  }

  void Line(const std::string& text, lxw_format* format) {
    Text(0, text, format);
    ++row_;
  }

  // Over all columns that text is read across, in a row as high as it takes: a merged row does not
  // find its height itself.
  void Paragraph(const std::string& text) {
    constexpr std::size_t kCharacters = 130;
    constexpr double kMostHeight = 409;
    const auto breaks = static_cast<std::size_t>(std::count(text.begin(), text.end(), '\n'));
    const std::size_t lines = 1 + breaks + CountCharacters(text) / kCharacters;
    book_.Check(worksheet_merge_range(sheet_, row_, 0, row_, kLastColumn, "", book_.paragraph));
    book_.Check(worksheet_set_row(
        sheet_, row_, std::min(kLineHeight * static_cast<double>(lines), kMostHeight), nullptr));
    Line(text, book_.paragraph);
  }

  void Number(lxw_col_t column, double value, lxw_format* format = nullptr) {
    if (IsMissing(value) || !std::isfinite(value)) {
      return;
    }
    book_.Check(worksheet_write_number(sheet_, row_, column, value, format));
    char cell[LXW_MAX_CELL_NAME_LENGTH];
    lxw_rowcol_to_cell(cell, row_, column);
    book_.exact.back()[cell] = value;
  }

  void WriteInputs(const std::vector<WorkbookInput>& inputs) {
    if (inputs.empty()) {
      return;
    }
    Line("Inputs", book_.heading);
    for (const WorkbookInput& input : inputs) {
      Text(0, input.field, nullptr);
      Number(1, input.value);
      ++row_;
    }
    ++row_;
  }

  void WriteItem(const SummaryTable& table) {
    for (const std::string& heading : table.headings) {
      Line(heading, book_.heading);
    }
    ColumnTitles(table.columns, 1);
    for (const TableRow& row : table.rows) {
      Text(0, ShownTitle(row), book_.Indent(row.indent, row.answer));
      for (std::size_t i = 0; i < row.values.size(); ++i) {
        Number(Column(i + 1), row.values[i], row.answer ? book_.heading : nullptr);
      }
      ++row_;
    }
  }

  void WriteItem(const Report& report) {
    for (const std::string& paragraph : ParagraphsOf(report)) {
      Paragraph(paragraph);
    }
  }

  // A point that could not be computed is an empty cell, where the line breaks.
  void Point(lxw_col_t column, float value) {
    Number(column,
           value == FailedPoint || !std::isfinite(value) ? MissingValue() : ShortestDouble(value));
  }

  void WriteItem(const Chart& chart) {
    for (const std::string& title : chart.titles) {
      if (!title.empty()) {
        Line(title, book_.heading);
      }
    }
    const lxw_row_t top = row_;
    ColumnTitles({chart.xLabel, chart.yLabel}, 0);
    const std::size_t count = std::min(chart.x.size(), chart.y.size());
    for (std::size_t i = 0; i < count; ++i, ++row_) {
      Point(0, chart.x[i]);
      Point(1, chart.y[i]);
    }
    if (count > 0) {
      InsertChart(chart, top, row_ - 1);
    }
  }

  void InsertChart(const Chart& chart, lxw_row_t top, lxw_row_t last) {
    lxw_chart* drawn = workbook_add_chart(book_.book, LXW_CHART_SCATTER_STRAIGHT_WITH_MARKERS);
    lxw_chart_series* series = chart_add_series(drawn, nullptr, nullptr);
    chart_series_set_categories(series, name_.c_str(), top + 1, 0, last, 0);
    chart_series_set_values(series, name_.c_str(), top + 1, 1, last, 1);
    std::string title;
    for (const std::string& line : chart.titles) {
      title += (title.empty() ? "" : "\n") + line;
    }
    SetName(title, [drawn](const char* text) { chart_title_set_name(drawn, text); });
    lxw_chart_font font = {};
    constexpr double kTitlePoints = 11;
    font.size = kTitlePoints;
    font.bold = LXW_TRUE;
    chart_title_set_name_font(drawn, &font);
    chart_legend_set_position(drawn, LXW_CHART_LEGEND_NONE);
    chart_show_blanks_as(drawn, LXW_CHART_BLANKS_AS_GAP);
    SetAxis(drawn->x_axis, chart.xLabel, chart.xAxis, AxisTicks(chart.xAxis, kMostTicks), chart.x);
    SetAxis(drawn->y_axis, chart.yLabel, chart.yAxis, YAxisTicks(chart, kMostTicks), chart.y);
    constexpr double kScale = 1.3;
    lxw_chart_options options = {};
    options.x_scale = kScale;
    options.y_scale = kScale;
    book_.Check(worksheet_insert_chart_opt(sheet_, top, 2, drawn, &options));
    // What follows begins below the picture.
    constexpr lxw_row_t kPictureRows = 20;
    row_ = std::max(row_, top + kPictureRows);
  }

  // A name that begins with an equals sign would be read as a formula.
  template <class Set>
  static void SetName(const std::string& text, Set set) {
    constexpr std::size_t kMostUnits = 255;
    std::string name = Shortened(XmlCharacters(text), kMostUnits);
    if (!name.empty() && name.front() == '=') {
      name.insert(name.begin(), ' ');
    }
    set(name.c_str());
  }

  static constexpr int kMostTicks = 10;

  // The ticks of the format stand at the minimum and every step from there.
  static void SetAxis(lxw_chart_axis* axis,
                      const std::string& label,
                      const Axis& scale,
                      const std::vector<Tick>& ticks,
                      const std::vector<float>& data) {
    SetName(label, [axis](const char* text) { chart_axis_set_name(axis, text); });
    if (!std::isfinite(scale.min) || !std::isfinite(scale.max) || scale.min >= scale.max) {
      return;
    }
    const AxisSteps steps = StepsOf(ticks, scale, data);
    chart_axis_set_min(axis, steps.min);
    chart_axis_set_max(axis, ShortestDouble(scale.max));
    chart_axis_set_crossing_min(axis);
    if (steps.step > 0) {
      chart_axis_set_major_unit(axis, steps.step);
      chart_axis_set_num_format(axis, steps.format.c_str());
    }
  }

  // Columns beyond the format's last give an error there.
  static lxw_col_t Column(std::size_t index) {
    return static_cast<lxw_col_t>(std::min<std::size_t>(index, LXW_COL_MAX));
  }

  // The titles of columns, in a row as high as the longest takes.
  void ColumnTitles(const std::vector<std::string>& titles, std::size_t first) {
    std::size_t lines = 1;
    for (std::size_t i = 0; i < titles.size(); ++i) {
      const double width = first + i == 0 ? kTitleWidth : kValueWidth;
      lines = std::max(lines, LinesOf(titles[i], static_cast<std::size_t>(width)));
      Text(Column(first + i), ColumnTitleLine(titles[i]), book_.column);
    }
    book_.Check(worksheet_set_row(sheet_, row_, kLineHeight * static_cast<double>(lines), nullptr));
    ++row_;
  }

  static std::size_t LinesOf(const std::string& text, std::size_t characters) {
    const auto fits = [characters](const std::string& line) {
      return CountCharacters(line) <= characters;
    };
    return std::max<std::size_t>(1, WrapText(text, fits).size());
  }

  Book& book_;
  std::string name_;
  lxw_worksheet* sheet_ = nullptr;
  lxw_row_t row_ = 0;
};

// --- All digits. The library writes sixteen significant digits, of which some doubles need
// seventeen; their cells are written anew in the finished package.

std::string WithExactNumbers(const std::string& xml, const ExactValues& values) {
  std::string out;
  std::size_t taken = 0;
  constexpr std::string_view kCell = "<c r=\"";
  constexpr std::string_view kValue = "<v>";
  for (std::size_t at = xml.find(kCell); at != std::string::npos; at = xml.find(kCell, at + 1)) {
    const std::size_t name = at + kCell.size();
    const auto value = values.find(xml.substr(name, xml.find('"', name) - name));
    if (value == values.end()) {
      continue;
    }
    const std::size_t begin = xml.find(kValue, at) + kValue.size();
    const std::size_t end = xml.find("</v>", begin);
    if (begin < at || end == std::string::npos) {
      continue;
    }
    out.append(xml, taken, begin - taken).append(FormatShortest(value->second + 0.0));
    taken = end;
  }
  return out.append(xml, taken, std::string::npos);
}

std::string WithExactNumbers(const std::string& package, const std::vector<ExactValues>& exact) {
  std::vector<ZipEntry> entries = ReadZip(package, kPackageLimit);
  for (ZipEntry& entry : entries) {
    for (std::size_t i = 0; i < exact.size(); ++i) {
      if (entry.name == "xl/worksheets/sheet" + std::to_string(i + 1) + ".xml") {
        entry.bytes = WithExactNumbers(entry.bytes, exact[i]);
      }
    }
  }
  return entries.empty() ? std::string() : WriteZip(entries);
}

void WriteSheets(Book& book, const std::vector<WorkbookStudy>& studies) {
  for (const WorkbookStudy& study : studies) {
    Sheet(book, SheetName(study.name, book.names)).Write(study);
  }
  if (studies.empty()) {
    workbook_add_worksheet(book.book, "Study");
  }
}

}  // namespace

std::string ExportXlsx(const std::vector<WorkbookStudy>& studies, std::string& error) {
  error.clear();
  const PlainLocale locale;
  PrivateFolder folder;
  const std::string path = folder.path() + "/study.xlsx";
  std::string tmpdir = folder.path();
  lxw_workbook_options options = {};
  options.tmpdir = tmpdir.data();
  Book book;
  book.book = folder.path().empty() ? nullptr : workbook_new_opt(path.c_str(), &options);
  if (book.book == nullptr) {
    error = "there is no folder for temporary files";
    return {};
  }
  lxw_doc_properties properties = {};
  properties.created = CreationTime(studies);
  book.Check(workbook_set_properties(book.book, &properties));
  AddFormats(book);
  WriteSheets(book, studies);
  book.Check(workbook_close(book.book));
  if (book.error != LXW_NO_ERROR) {
    error = lxw_strerror(book.error);
    return {};
  }
  const FileBytes package = ReadFile(path, kPackageLimit);
  std::string bytes = WithExactNumbers(package.text, book.exact);
  if (bytes.empty()) {
    error = package.problem.empty() ? "the document could not be put together" : package.problem;
  }
  return bytes;
}

}  // namespace poweranalysis
