#include "exporters/WorkbookFile.h"

#include <algorithm>
#include <cmath>
#include <nlohmann/json.hpp>
#include <unordered_set>

#include "exporters/JsonShapes.h"
#include "exporters/WorkbookMembers.h"
#include "host/AtomicFile.h"

namespace poweranalysis {

namespace {

using namespace json_shapes;

// A workbook keeps apart what the JSON output gives as null: a value that is missing, and one that
// is there and not a number.
Json NumberOrName(double value) {
  if (IsMissing(value)) {
    return {};
  }
  if (std::isnan(value)) {
    return NotANumberName;
  }
  if (std::isinf(value)) {
    return value > 0 ? InfinityName : MinusInfinityName;
  }
  return value;
}

void AddItem(const SummaryTable& table, Json& json) {
  json["type"] = TableType;
  json["code"] = table.code;
  AddTable(&table, NumberOrName, json);
  Json layout = Json::object();
  for (const LayoutHint& hint : LayoutHints) {
    layout[hint.name] = table.*hint.member;
  }
  layout["columnFormats"] = table.columnFormats;
  json["layout"] = std::move(layout);
}

void AddItem(const Report& report, Json& json) {
  json["type"] = ReportType;
  Study study;
  study.workbook.items.emplace_back(report);
  json["report"] = ParagraphsOf(study);
}

void AddItem(const Chart& chart, Json& json) {
  json["type"] = ChartType;
  json.update(ChartJson(chart, NumberOrName));
  json["tickPositions"] = PointsJson(chart.tickPositions, NumberOrName);
  json["tickLabels"] = chart.tickLabels;
  json["decimals"] = chart.decimals;
  json["labelWidth"] = chart.labelWidth;
}

std::string DateOrNothing(const std::string& date) {
  return IsWorkbookDate(date) ? date : std::string();
}

Json ItemsJson(const WorkbookStudy& study) {
  Json items = Json::array();
  for (std::size_t i = 0; i < study.study.workbook.items.size(); ++i) {
    const ItemLabel label = i < study.labels.size() ? study.labels[i] : ItemLabel{};
    Json json = {{"label", label.name}, {"date", DateOrNothing(label.date)}};
    std::visit([&json](const auto& item) { AddItem(item, json); }, study.study.workbook.items[i]);
    items.push_back(std::move(json));
  }
  return items;
}

Json StudyJson(const WorkbookStudy& study, const std::string& id) {
  Json inputs = Json::object();
  for (const WorkbookInput& input : study.inputs) {
    inputs[input.field] = NumberOrName(input.value);
  }
  return {{"id", id},
          {"name", study.name},
          {"date", DateOrNothing(study.date)},
          {"family", study.study.family},
          {"mode", study.study.mode},
          {"code", study.study.code},
          {"inputs", std::move(inputs)},
          {"answers", AnswersJson(study.study.answers, NumberOrName)},
          {"items", ItemsJson(study)},
          {"messages", MessagesJson(study.study.messages)},
          {"notes", study.notes},
          {"status", study.study.status}};
}

// The studies' own ids; the first free "s1", "s2", ... for those that have none or another's.
std::vector<std::string> UniqueIds(const std::vector<WorkbookStudy>& studies) {
  std::unordered_set<std::string> all;
  for (const WorkbookStudy& study : studies) {
    all.insert(study.id);
  }
  std::vector<std::string> ids;
  std::unordered_set<std::string> used = {""};
  int next = 1;
  for (const WorkbookStudy& study : studies) {
    std::string id = study.id;
    if (!used.insert(id).second) {
      do {
        id = std::string("s").append(std::to_string(next++));
      } while (!all.insert(id).second);
    }
    ids.push_back(std::move(id));
  }
  return ids;
}

std::string TooLarge() {
  return "a workbook cannot be larger than " + std::to_string(WorkbookFileLimit >> 20) + " MiB";
}

// Whether the text has the pattern's marks, and digits where it has '0'.
bool Matches(std::string_view text, std::string_view pattern) {
  const auto fits = [](char c, char mark) {
    return mark == '0' ? c >= '0' && c <= '9' : c == mark;
  };
  return text.size() == pattern.size() &&
         std::equal(text.begin(), text.end(), pattern.begin(), fits);
}

int TwoDigits(std::string_view text, std::size_t at) {
  return (text[at] - '0') * 10 + (text[at + 1] - '0');
}

bool IsZone(std::string_view text) {
  if (text.empty() || text == "Z") {
    return true;
  }
  return (Matches(text, "+00:00") || Matches(text, "-00:00")) && TwoDigits(text, 1) < 24 &&
         TwoDigits(text, 4) < 60;
}

}  // namespace

bool IsWorkbookDate(std::string_view text) {
  constexpr std::string_view kPattern = "0000-00-00T00:00:00";
  if (!Matches(text.substr(0, kPattern.size()), kPattern)) {
    return false;
  }
  struct Part {
    std::size_t at;
    int least;
    int most;
  };
  constexpr Part kParts[] = {{5, 1, 12}, {8, 1, 31}, {11, 0, 23}, {14, 0, 59}, {17, 0, 59}};
  for (const Part& part : kParts) {
    const int value = TwoDigits(text, part.at);
    if (value < part.least || value > part.most) {
      return false;
    }
  }
  std::string_view rest = text.substr(kPattern.size());
  if (!rest.empty() && rest.front() == '.') {
    constexpr std::size_t kMostDigits = 9;
    const std::size_t end = std::min(rest.find_first_not_of("0123456789", 1), rest.size());
    if (end < 2 || end > kMostDigits + 1) {
      return false;
    }
    rest.remove_prefix(end);
  }
  return IsZone(rest);
}

std::string WorkbookText(const std::vector<WorkbookStudy>& studies) {
  Json json = {{"format", WorkbookFormatName},
               {"schema", WorkbookSchema},
               {"minor", WorkbookMinor},
               {"studies", Json::array()}};
  const std::vector<std::string> ids = UniqueIds(studies);
  for (std::size_t i = 0; i < studies.size(); ++i) {
    json["studies"].push_back(StudyJson(studies[i], ids[i]));
  }
  return Written(json);
}

LoadedWorkbook LoadWorkbook(const std::string& path) {
  LoadedWorkbook loaded;
  const FileBytes bytes = ReadFile(path, WorkbookFileLimit);
  if (bytes.tooLarge) {
    loaded.error = TooLarge();
  } else if (!bytes.problem.empty()) {
    loaded.error = bytes.problem;
  } else if (!bytes.exists) {
    loaded.error = FileReason(ENOENT);
  } else {
    loaded = ParseWorkbook(bytes.text);
  }
  if (!loaded.error.empty()) {
    loaded.error = "Cannot open the workbook \"" + path + "\": " + loaded.error + ".";
  }
  return loaded;
}

std::string SaveWorkbook(const std::vector<WorkbookStudy>& studies, const std::string& path) {
  const std::string text = WorkbookText(studies);
  // Only the reader knows what it would refuse; it is asked before the old file is gone.
  std::string problem = text.size() > WorkbookFileLimit ? TooLarge() : ParseWorkbook(text).error;
  if (problem.empty()) {
    problem = SaveFile(path, text);
  }
  return problem.empty() ? problem : "Cannot save the workbook \"" + path + "\": " + problem + ".";
}

}  // namespace poweranalysis
