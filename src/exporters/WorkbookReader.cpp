#include <cmath>
#include <limits>
#include <nlohmann/json.hpp>
#include <unordered_set>

#include "exporters/Exporters.h"
#include "exporters/JsonTree.h"
#include "exporters/WorkbookFile.h"
#include "exporters/WorkbookMembers.h"
#include "host/ChartLayout.h"

namespace poweranalysis {

namespace {

using Json = nlohmann::ordered_json;

constexpr JsonLimits kLimits = {WorkbookValueLimit, 1000, 32};
// Rows and cells are indented by at most this many blanks; more are a mistake that would fill the
// memory.
constexpr int kMostIndent = 200;

// A value of the tree and the way to it, which is worded only when something is wrong.
struct Place {
  const Json& json;
  const Place* parent = nullptr;
  std::string_view name{};  // of a member; empty for an element
  std::size_t index = 0;    // of an element

  std::string Text() const {
    if (parent == nullptr) {
      return "the file";
    }
    const std::string before = parent->parent == nullptr ? std::string() : parent->Text();
    if (parent->json.is_array()) {
      return before + "[" + std::to_string(index) + "]";
    }
    return before + (before.empty() ? "" : ".") + std::string(name);
  }
};

// Where the first fault and all that was not understood are noted. Reading goes on after a fault
// with harmless values, which are never shown.
class Findings {
 public:
  void Fail(const Place& place, const std::string& reason) {
    if (error_.empty()) {
      error_ = place.Text() + ": " + reason;
    }
  }

  // What this version does not know is an error in a file that it wrote itself.
  void Unknown(const Place& place, const std::string& what) {
    if (!newer_) {
      Fail(place, what + " is unknown");
    } else if (++unknown_ <= kMostNotes) {
      notes_.push_back(place.Text() + ": " + what + " is unknown to this version and is left out");
    }
  }

  void SetNewer() { newer_ = true; }
  bool failed() const { return !error_.empty(); }

  LoadedWorkbook Result(std::vector<WorkbookStudy> studies) {
    LoadedWorkbook loaded;
    loaded.error = error_;
    if (error_.empty()) {
      if (unknown_ > kMostNotes) {
        notes_.push_back("and " + std::to_string(unknown_ - kMostNotes) + " more");
      }
      loaded.studies = std::move(studies);
      loaded.newer = unknown_ > 0;
      loaded.notes = notes_;
    }
    return loaded;
  }

 private:
  static constexpr std::size_t kMostNotes = 20;
  std::string error_;
  bool newer_ = false;
  std::size_t unknown_ = 0;
  std::vector<std::string> notes_;
};

// --- Single values.

std::string TextAt(const Place& place, Findings& findings) {
  if (!place.json.is_string()) {
    findings.Fail(place, "a text is expected");
    return {};
  }
  return place.json.get<std::string>();
}

std::string DateAt(const Place& place, Findings& findings) {
  std::string date = TextAt(place, findings);
  if (!date.empty() && !IsWorkbookDate(date)) {
    findings.Fail(place, "a date such as 2024-05-17T09:30:00 is expected");
  }
  return date;
}

std::int64_t WholeAt(const Place& place,
                     std::int64_t least,
                     std::int64_t most,
                     Findings& findings) {
  const bool whole = place.json.is_number_integer();
  const bool huge = place.json.is_number_unsigned() &&
                    place.json.get<std::uint64_t>() > static_cast<std::uint64_t>(most);
  const std::int64_t value = whole && !huge ? place.json.get<std::int64_t>() : most;
  if (!whole || huge || value < least || value > most) {
    findings.Fail(place, "a whole number from " + std::to_string(least) + " to " +
                             std::to_string(most) + " is expected");
    return 0;
  }
  return value;
}

int IntAt(const Place& place, Findings& findings) {
  return static_cast<int>(WholeAt(place, std::numeric_limits<std::int32_t>::min(),
                                  std::numeric_limits<std::int32_t>::max(), findings));
}

// A number, or the name of what JSON has no number for; `missing` for null.
double NumberAt(const Place& place, double missing, Findings& findings) {
  if (place.json.is_null()) {
    return missing;
  }
  if (place.json.is_number()) {
    return place.json.get<double>();
  }
  if (place.json.is_string()) {
    constexpr double kInfinity = std::numeric_limits<double>::infinity();
    const auto& name = place.json.get_ref<const std::string&>();
    if (name == NotANumberName) {
      return std::numeric_limits<double>::quiet_NaN();
    }
    if (name == InfinityName || name == MinusInfinityName) {
      return name == InfinityName ? kInfinity : -kInfinity;
    }
  }
  findings.Fail(place, "a number or null is expected");
  return missing;
}

// The single precision number that is written as this one. Rounding twice, to double and to single,
// is wrong for one of them: 7.038531e-26 lies so near the middle of two that the double is the
// middle itself.
float SingleWrittenAs(double value) {
  const auto rounded = static_cast<float>(value);
  constexpr float kInfinity = std::numeric_limits<float>::infinity();
  for (const float single :
       {rounded, std::nextafter(rounded, kInfinity), std::nextafter(rounded, -kInfinity)}) {
    if (std::isfinite(single) && ShortestDouble(single) == value) {
      return single;
    }
  }
  return rounded;
}

float SingleAt(const Place& place, Findings& findings) {
  const double value = NumberAt(place, static_cast<double>(FailedPoint), findings);
  const float single = SingleWrittenAs(value);
  if (std::isfinite(value) && !std::isfinite(single)) {
    findings.Fail(place, "the number is too large for single precision");
  }
  return single;
}

// --- Arrays.

template <class Take>
void EachAt(const Place& place, Findings& findings, Take take) {
  if (!place.json.is_array()) {
    findings.Fail(place, "an array is expected");
    return;
  }
  for (std::size_t i = 0; i < place.json.size() && !findings.failed(); ++i) {
    take(Place{place.json[i], &place, {}, i});
  }
}

template <class Read>
auto ListAt(const Place& place, Findings& findings, Read read) {
  std::vector<decltype(read(place, findings))> list;
  EachAt(place, findings, [&](const Place& element) { list.push_back(read(element, findings)); });
  return list;
}

// --- Objects. Which members there may be follows from what is asked for.

class Object {
 public:
  Object(const Place& place, Findings& findings) : place_(place), findings_(findings) {
    if (place.json.is_object()) {
      asked_.resize(place.json.size());
    } else {
      findings.Fail(place, "an object is expected");
    }
  }

  bool Has(std::string_view name) const {
    return place_.json.is_object() && place_.json.find(std::string(name)) != place_.json.end();
  }

  // Reads a member with one of the functions above; a default value of that type when there is
  // none.
  template <class Read>
  auto Member(const char* name, Read read)
      -> decltype(read(std::declval<Place>(), std::declval<Findings&>())) {
    std::size_t index = 0;
    if (place_.json.is_object()) {
      for (auto member = place_.json.begin(); member != place_.json.end(); ++member, ++index) {
        if (member.key() == name) {
          asked_[index] = true;
          return read(Place{*member, &place_, member.key()}, findings_);
        }
      }
    }
    findings_.Fail(place_, "the member \"" + std::string(name) + "\" is missing");
    return {};
  }

  template <class Read>
  auto Members(const char* name, Read read) {
    return Member(name, [read](const Place& place, Findings& findings) {
      return ListAt(place, findings, read);
    });
  }

  // Once all that is known has been asked for.
  void Finish() {
    std::size_t index = 0;
    for (auto member = place_.json.begin(); member != place_.json.end(); ++member, ++index) {
      if (place_.json.is_object() && !asked_[index]) {
        findings_.Unknown(place_, "the member \"" + member.key() + "\"");
      }
    }
  }

 private:
  const Place& place_;
  Findings& findings_;
  std::vector<bool> asked_;
};

// --- The shapes.

double ValueAt(const Place& place, Findings& findings) {
  return NumberAt(place, MissingValue(), findings);
}

TableRow RowAt(const Place& place, Findings& findings) {
  Object object(place, findings);
  TableRow row;
  row.title = object.Member("title", TextAt);
  row.indent = object.Member("indent", [](const Place& indent, Findings& found) {
    return static_cast<int>(WholeAt(indent, 0, kMostIndent, found));
  });
  if (object.Has("values")) {
    row.values = object.Members("values", ValueAt);
  } else {
    row.values = {object.Member("value", ValueAt)};
  }
  object.Finish();
  if (row.title.empty() && row.values.size() == 1 && IsMissing(row.values.front())) {
    row.title = SeparatorTitle;
  }
  return row;
}

std::uint8_t FormatAt(const Place& place, Findings& findings) {
  return static_cast<std::uint8_t>(
      WholeAt(place, 0, std::numeric_limits<std::uint8_t>::max(), findings));
}

SummaryTable ReadTable(Object& object) {
  SummaryTable table;
  table.code = object.Member("code", IntAt);
  table.headings = object.Members("headings", TextAt);
  table.columns = object.Members("columns", TextAt);
  table.rows = object.Members("rows", RowAt);
  object.Member("layout", [&table](const Place& place, Findings& findings) {
    Object layout(place, findings);
    for (const LayoutHint& hint : LayoutHints) {
      table.*hint.member = layout.Member(hint.name, IntAt);
    }
    table.columnFormats = layout.Members("columnFormats", FormatAt);
    layout.Finish();
    return true;
  });
  return table;
}

// Each paragraph opens with a line break, as those of the system do.
Report ReadReport(Object& object) {
  Report report;
  for (const std::string& paragraph : object.Members("report", TextAt)) {
    report.paragraphs.push_back("\r\n" + paragraph);
  }
  return report;
}

std::array<std::string, 3> TitlesAt(const Place& place, Findings& findings) {
  std::array<std::string, 3> titles;
  const std::vector<std::string> texts = ListAt(place, findings, TextAt);
  if (texts.size() == titles.size()) {
    std::copy(texts.begin(), texts.end(), titles.begin());
  } else {
    findings.Fail(place, "three texts are expected");
  }
  return titles;
}

void ReadAxes(const Place& place, Findings& findings, Chart& chart) {
  Object axes(place, findings);
  struct Row {
    const char* name;
    float& value;
  };
  const Row rows[] = {{"xMin", chart.xAxis.min},   {"xMax", chart.xAxis.max},
                      {"xStep", chart.xAxis.step}, {"yMin", chart.yAxis.min},
                      {"yMax", chart.yAxis.max},   {"yStep", chart.yAxis.step}};
  for (const Row& row : rows) {
    row.value = axes.Member(row.name, SingleAt);
  }
  axes.Finish();
}

Chart ReadChart(Object& object) {
  Chart chart;
  chart.name = object.Member("name", TextAt);
  chart.kind = object.Member("kind", IntAt);
  chart.titles = object.Member("titles", TitlesAt);
  chart.xLabel = object.Member("xLabel", TextAt);
  chart.yLabel = object.Member("yLabel", TextAt);
  chart.x = object.Members("x", SingleAt);
  // A point is an X and a Y; whoever draws counts on that.
  chart.y = object.Member("y", [&chart](const Place& place, Findings& findings) {
    std::vector<float> y = ListAt(place, findings, SingleAt);
    if (y.size() != chart.x.size()) {
      findings.Fail(place, "as many numbers as in \"x\" are expected");
    }
    return y;
  });
  object.Member("axes", [&chart](const Place& place, Findings& findings) {
    ReadAxes(place, findings, chart);
    return true;
  });
  chart.tickPositions = object.Members("tickPositions", SingleAt);
  chart.tickLabels = object.Members("tickLabels", TextAt);
  chart.decimals = object.Member("decimals", IntAt);
  chart.labelWidth = object.Member("labelWidth", IntAt);
  return chart;
}

void ItemAt(const Place& place, Findings& findings, WorkbookStudy& study) {
  Object object(place, findings);
  const std::string type = object.Member("type", TextAt);
  const ItemLabel label = {object.Member("label", TextAt), object.Member("date", DateAt)};
  std::vector<WorkbookItem>& items = study.study.workbook.items;
  if (type == TableType) {
    items.emplace_back(ReadTable(object));
  } else if (type == ReportType) {
    items.emplace_back(ReadReport(object));
  } else if (type == ChartType) {
    items.emplace_back(ReadChart(object));
  } else {
    findings.Unknown(place, "the type \"" + type + "\"");
    return;
  }
  study.labels.push_back(label);
  object.Finish();
}

Message MessageAt(const Place& place, Findings& findings) {
  Object object(place, findings);
  Message message;
  message.id = object.Member("id", IntAt);
  message.text = object.Member("text", TextAt);
  message.count = object.Member("count", IntAt);
  object.Finish();
  return message;
}

std::vector<WorkbookInput> InputsAt(const Place& place, Findings& findings) {
  std::vector<WorkbookInput> inputs;
  if (!place.json.is_object()) {
    findings.Fail(place, "an object is expected");
    return inputs;
  }
  for (auto member = place.json.begin(); member != place.json.end(); ++member) {
    inputs.push_back({member.key(), ValueAt(Place{*member, &place, member.key()}, findings)});
  }
  return inputs;
}

std::string TextOrNothingAt(const Place& place, Findings& findings) {
  return place.json.is_null() ? std::string() : TextAt(place, findings);
}

Answer AnswerAt(const Place& place, Findings& findings) {
  Object object(place, findings);
  Answer answer;
  answer.name = object.Member("name", TextAt);
  answer.value = object.Member("value", ValueAt);
  answer.counts = object.Member("counts", TextOrNothingAt);
  answer.of = object.Member("of", TextOrNothingAt);
  object.Finish();
  return answer;
}

WorkbookStudy StudyAt(const Place& place, Findings& findings) {
  Object object(place, findings);
  WorkbookStudy study;
  study.id = object.Member("id", TextAt);
  study.name = object.Member("name", TextAt);
  study.date = object.Member("date", DateAt);
  study.study.family = object.Member("family", TextAt);
  study.study.mode = object.Member("mode", TextAt);
  study.study.code = object.Member("code", IntAt);
  study.inputs = object.Member("inputs", InputsAt);
  // The first workbooks did not keep them.
  if (object.Has("answers")) {
    study.study.answers = object.Members("answers", AnswerAt);
  }
  object.Member("items", [&study](const Place& items, Findings& found) {
    EachAt(items, found, [&](const Place& item) { ItemAt(item, found, study); });
    return true;
  });
  study.study.messages = object.Members("messages", MessageAt);
  study.notes = object.Members("notes", TextAt);
  study.study.status = object.Member("status", IntAt);
  object.Finish();
  return study;
}

std::vector<WorkbookStudy> StudiesAt(const Place& place, Findings& findings) {
  std::unordered_set<std::string> ids;
  std::vector<WorkbookStudy> studies;
  EachAt(place, findings, [&](const Place& element) {
    studies.push_back(StudyAt(element, findings));
    if (!ids.insert(studies.back().id).second) {
      findings.Fail(element, "another study has the id \"" + studies.back().id + "\"");
    }
  });
  return studies;
}

bool IsWorkbook(const Json& root) {
  const auto format = root.is_object() ? root.find("format") : root.end();
  return root.is_object() && format != root.end() && *format == WorkbookFormatName;
}

}  // namespace

LoadedWorkbook ParseWorkbook(std::string_view text) {
  LoadedWorkbook loaded;
  Json root;
  loaded.error = ReadJsonTree(text, kLimits, root);
  if (loaded.error.empty() && !IsWorkbook(root)) {
    loaded.error = "it is no workbook of PowerAnalysis";
  }
  if (!loaded.error.empty()) {
    return loaded;
  }
  const Place place{root};
  Findings findings;
  Object object(place, findings);
  object.Member("format", TextAt);
  const int schema = object.Member("schema", IntAt);
  const int minor = object.Member("minor", IntAt);
  if (!findings.failed() && schema != WorkbookSchema) {
    loaded.error = "it has the schema " + std::to_string(schema) +
                   ", and this version of PowerAnalysis reads the schema " +
                   std::to_string(WorkbookSchema);
    return loaded;
  }
  if (minor > WorkbookMinor) {
    findings.SetNewer();
  }
  std::vector<WorkbookStudy> studies = object.Member("studies", StudiesAt);
  object.Finish();
  return findings.Result(std::move(studies));
}

}  // namespace poweranalysis
