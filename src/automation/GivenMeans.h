#pragma once

#include <optional>
#include <string_view>
#include <vector>

#include "automation/FieldValues.h"
#include "dialogs/Grids.h"
#include "host/Sheet.h"

// Cell means that are given beside the fields of a task: what the user would type into the grid.
namespace poweranalysis {

struct GivenMeans {
  std::vector<std::vector<double>> rows;  // one row of groups where the family has no columns
  std::vector<double> weights;            // of a contrast
  std::optional<Sheet> sheet;             // in place of both, with the standard deviation
};

// The grid that the first page of a task opens; null when it has none.
const GridRow* GridOfTask(int mode, Family family);

// What goes into the grid.
struct GridEntries {
  const GridRow* grid = nullptr;
  GridSize size;
  std::vector<double> cells;    // row by row
  std::optional<double> sigma;  // the one of the record stands where none is given
};

// The entries of the means, out of the values of the fields: the standard deviation leaves the
// values, and the counts join them. Throws UsageError for means that the grid does not take, and
// for a field that contradicts them or follows from them.
GridEntries EntriesOf(const GivenMeans& means,
                      const GridRow& grid,
                      const FamilyTable& family,
                      std::vector<FieldValue>& values);

// "10,12,15" or "1,2;3,4"; throws UsageError, of the argument, for what is not a number.
std::vector<std::vector<double>> ParseMeans(const char* argument, std::string_view text);

}  // namespace poweranalysis
