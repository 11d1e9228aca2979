#pragma once

#include <nlohmann/json_fwd.hpp>
#include <string>
#include <vector>

#include "exporters/Study.h"

// The shapes that the JSON output and the workbook file share: one shape for one thing. Only for
// the sources that know the JSON library.
namespace poweranalysis::json_shapes {

using Json = nlohmann::ordered_json;

// How a number that may be missing is written.
using NumberShape = Json (*)(double value);

// A missing value is null, as is whatever else JSON has no number for.
Json NumberOrNull(double value);

// Adds `headings`, `columns` and `rows`, which are empty without a table.
void AddTable(const SummaryTable* table, NumberShape number, Json& json);
// What was asked for, one object per number.
Json AnswersJson(const std::vector<Answer>& answers, NumberShape number);
Json MessagesJson(const std::vector<Message>& messages);
// Single precision numbers with their fewest digits; failed points are null.
Json PointsJson(const std::vector<float>& points, NumberShape number);
Json ChartJson(const Chart& chart, NumberShape number);

// The text, indented, with a line feed at its end. Arrays of numbers and small objects stand on
// their own line.
std::string Written(const Json& json);

}  // namespace poweranalysis::json_shapes
