#include <algorithm>
#include <cmath>
#include <nlohmann/json.hpp>

#include "exporters/Exporters.h"
#include "exporters/JsonShapes.h"
#include "host/ChartLayout.h"
#include "host/NumberText.h"

namespace poweranalysis {

namespace json_shapes {

Json NumberOrNull(double value) {
  // A negative zero is a zero like the other.
  return IsMissing(value) || !std::isfinite(value) ? Json() : Json(value + 0.0);
}

namespace {

Json SingleJson(float value, NumberShape number) {
  return number(std::isfinite(value) ? ShortestDouble(value) : static_cast<double>(value));
}

Json RowJson(const TableRow& row, NumberShape number) {
  Json json = {{"title", ShownTitle(row)}, {"indent", row.indent}};
  if (row.values.size() > 1) {
    json["values"] = Json::array();
    for (const double value : row.values) {
      json["values"].push_back(number(value));
    }
  } else {
    json["value"] = row.values.empty() ? Json() : number(row.values.front());
  }
  return json;
}

}  // namespace

Json PointsJson(const std::vector<float>& points, NumberShape number) {
  Json array = Json::array();
  for (const float point : points) {
    array.push_back(point == FailedPoint ? Json() : SingleJson(point, number));
  }
  return array;
}

Json ChartJson(const Chart& chart, NumberShape number) {
  const auto single = [number](float value) { return SingleJson(value, number); };
  return {{"name", chart.name},
          {"kind", chart.kind},
          {"titles", chart.titles},
          {"xLabel", chart.xLabel},
          {"yLabel", chart.yLabel},
          {"x", PointsJson(chart.x, number)},
          {"y", PointsJson(chart.y, number)},
          {"axes",
           {{"xMin", single(chart.xAxis.min)},
            {"xMax", single(chart.xAxis.max)},
            {"xStep", single(chart.xAxis.step)},
            {"yMin", single(chart.yAxis.min)},
            {"yMax", single(chart.yAxis.max)},
            {"yStep", single(chart.yAxis.step)}}}};
}

// --- Writing. The library's own writer gives doubles digits that read back, but not always the
// fewest, and 64 as 64.0.

namespace {

bool IsFlat(const Json& json) {
  constexpr std::size_t kFewMembers = 6;
  const auto plain = [](const Json& member) { return !member.is_structured(); };
  return std::all_of(json.begin(), json.end(), plain) &&
         (json.is_array() ? json.empty() || json.front().is_number() || json.front().is_null()
                          : json.size() <= kFewMembers);
}

std::string ScalarText(const Json& json) {
  if (json.is_number_float()) {
    return FormatShortest(json.get<double>());
  }
  constexpr int kCompact = -1;
  // Texts of files and paths may hold bytes that are not UTF-8: JSON cannot.
  return json.dump(kCompact, ' ', false, Json::error_handler_t::replace);
}

void Write(const Json& json, int depth, std::string& text) {
  if (!json.is_structured()) {
    text += ScalarText(json);
    return;
  }
  constexpr std::size_t kIndent = 2;
  const bool flat = IsFlat(json);
  const auto breakLine = [&text, flat](int level) {
    if (!flat) {
      text += '\n';
      text.append(static_cast<std::size_t>(level) * kIndent, ' ');
    }
  };
  text += json.is_array() ? '[' : '{';
  bool first = true;
  for (auto member = json.begin(); member != json.end(); ++member) {
    text += first ? "" : (flat ? ", " : ",");
    first = false;
    breakLine(depth + 1);
    if (json.is_object()) {
      text += ScalarText(member.key()) + ": ";
    }
    Write(*member, depth + 1, text);
  }
  breakLine(depth);
  text += json.is_array() ? ']' : '}';
}

}  // namespace

std::string Written(const Json& json) {
  std::string text;
  Write(json, 0, text);
  return text + "\n";
}

void AddTable(const SummaryTable* table, NumberShape number, Json& json) {
  const std::vector<std::string> none;
  json["headings"] = table == nullptr ? none : table->headings;
  json["columns"] = table == nullptr ? none : table->columns;
  json["rows"] = Json::array();
  if (table != nullptr) {
    for (const TableRow& row : table->rows) {
      json["rows"].push_back(RowJson(row, number));
    }
  }
}

Json MessagesJson(const std::vector<Message>& messages) {
  Json array = Json::array();
  for (const Message& message : messages) {
    array.push_back({{"id", message.id}, {"text", message.text}, {"count", message.count}});
  }
  return array;
}

namespace {

Json TextOrNull(const std::string& text) { return text.empty() ? Json() : Json(text); }

Json AnswerJson(const Answer& answer, NumberShape number) {
  return {{"name", answer.name},
          {"value", number(answer.value)},
          {"counts", TextOrNull(answer.counts)},
          {"of", TextOrNull(answer.of)}};
}

}  // namespace

Json AnswersJson(const std::vector<Answer>& answers, NumberShape number) {
  Json array = Json::array();
  for (const Answer& answer : answers) {
    array.push_back(AnswerJson(answer, number));
  }
  return array;
}

}  // namespace json_shapes

namespace {

using namespace json_shapes;

constexpr int kSchema = 1;

void AddAnswers(const Study& study, Json& json) {
  json["answers"] = AnswersJson(study.answers, NumberOrNull);
  json["answer"] = OnlyAnswer(study) == nullptr ? Json() : json["answers"].front();
}

void AddLimits(const Study& study, Json& json) {
  if (!IsInterval(study)) {
    return;
  }
  json["limits"] = Json::array();
  for (const NamedLimits& limits : study.limits) {
    json["limits"].push_back({{"name", limits.name},
                              {"lower", NumberOrNull(limits.lower)},
                              {"upper", NumberOrNull(limits.upper)}});
  }
  json["pValue"] = study.pValue ? NumberOrNull(*study.pValue) : Json();
}

}  // namespace

std::string ExportJson(const Study& study) {
  Json json = {
      {"schema", kSchema}, {"family", study.family}, {"mode", study.mode}, {"code", study.code}};
  AddTable(SummaryOf(study), NumberOrNull, json);
  AddAnswers(study, json);
  AddLimits(study, json);
  json["report"] = ParagraphsOf(study);
  json["messages"] = MessagesJson(study.messages);
  json["charts"] = Json::array();
  for (const Chart* chart : ChartsOf(study)) {
    json["charts"].push_back(ChartJson(*chart, NumberOrNull));
  }
  json["status"] = study.status;
  return Written(json);
}

namespace {

Json FieldJson(const FieldDescription& field) {
  Json json = {{"field", field.field}, {"option", field.option}, {"type", field.type}};
  if (field.checked) {
    json["range"] = {{"lower", field.lower}, {"upper", field.upper}, {"text", field.range}};
  } else {
    json["range"] = nullptr;
  }
  json["default"] = field.standard;
  json["label"] = field.label;
  json["meaning"] = field.meaning;
  json["choices"] = Json::object();
  for (const auto& choice : field.choices) {
    json["choices"][choice.name] = choice.value;
  }
  return json;
}

}  // namespace

std::string DescribeJson(const FamilyDescription& family) {
  Json json = {{"schema", kSchema},     {"family", family.family}, {"name", family.name},
               {"title", family.title}, {"help", family.help},     {"fields", Json::array()}};
  for (const FieldDescription& field : family.fields) {
    json["fields"].push_back(FieldJson(field));
  }
  return Written(json);
}

}  // namespace poweranalysis
