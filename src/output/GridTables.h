#pragma once

#include <optional>
#include <vector>

#include "host/Workbook.h"
#include "settings/PowerSettings.h"

// Tables of cell means, as the grids show what is in them.
namespace poweranalysis {

inline constexpr int OneWayGridTable = 83;
inline constexpr int TwoWayGridTable = 1028;
inline constexpr int ContrastGridTable = 51;

// The table of a grid's code, of the size that the grid's record says and without values: headings,
// column titles, and a row for each group or row of cells, a blank one, and the standard deviation.
// Nothing for any other code.
std::optional<SummaryTable> GridTable(int code, const PowerSettings& params);

// What such a table shows of the grid's record, row by row. The standard deviation is the last of
// all; what stands beside it is NumericFailure, as are blank rows, and stays empty when it is shown.
std::vector<double> GridTableValues(int code, const PowerSettings& params);

}  // namespace poweranalysis
