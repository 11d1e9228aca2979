#pragma once

#include <string>
#include <vector>

#include "cli/CommandLine.h"
#include "host/Study.h"

// The charts of a run in files of their own.
namespace poweranalysis {

// ".svg", and what else charts can be written as.
std::string ChartExtensions();

// Throws UsageError unless the extension is one that charts can be written in.
void CheckChartFile(const std::string& file);

// Writes the charts of a study that are wanted in files; one text for each that could not be
// written.
std::vector<std::string> WriteChartFiles(const Study& study, const std::vector<ChartWish>& wishes);

}  // namespace poweranalysis
