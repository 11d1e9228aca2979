#pragma once

#include "host/Workbook.h"

// What the writer and the reader of workbook files must agree on and no type expresses.
namespace poweranalysis {

inline constexpr const char* WorkbookFormatName = "PowerAnalysis workbook";

// The title of a row that only separates.
inline constexpr const char* SeparatorTitle = "\x01";

inline constexpr const char* TableType = "table";
inline constexpr const char* ReportType = "report";
inline constexpr const char* ChartType = "chart";

// Values that are there and that JSON has no number for.
inline constexpr const char* NotANumberName = "NaN";
inline constexpr const char* InfinityName = "Infinity";
inline constexpr const char* MinusInfinityName = "-Infinity";

struct LayoutHint {
  const char* name;
  int SummaryTable::*member;
};

inline constexpr LayoutHint LayoutHints[] = {
    {"cellWidth", &SummaryTable::cellWidth},
    {"columnTitleWidth", &SummaryTable::columnTitleWidth},
    {"columnTitleIndent", &SummaryTable::columnTitleIndent},
    {"rowTitleWidth", &SummaryTable::rowTitleWidth},
    {"rowDisplayWidth", &SummaryTable::rowDisplayWidth},
    {"columnDisplayWidth", &SummaryTable::columnDisplayWidth},
    {"headingWidth", &SummaryTable::headingWidth},
    {"options", &SummaryTable::options},
};

}  // namespace poweranalysis
