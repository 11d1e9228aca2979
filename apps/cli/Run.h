#pragma once

#include <string>
#include <vector>

#include "cli/CommandLine.h"
#include "host/HeadlessHost.h"

// A calculation as a scripted run of the dialogs that a user would see: choose the task, fill in
// the controls, OK, Calculate, and the chart buttons.
namespace poweranalysis {

struct RunOutcome {
  Study study;                      // its status is the exit status
  std::vector<std::string> errors;  // what went wrong beyond the messages of the system
  std::vector<std::string> notes;   // what the user may want to know
};

// `host` carries the user's cancel and the progress bar. Throws UsageError for a chart that the
// task does not have.
RunOutcome RunTask(const RunRequest& request, HeadlessHost& host);

// Settles the status of a study whose results and messages are in: cancelled, an answer or none.
// `refused`: something that was asked for is missing although there is a result.
void FinishStudy(RunOutcome& outcome, bool refused);

// What the dialogs of a task show; nothing when it has none yet.
struct TaskDialogs {
  std::vector<std::string> parameters;  // fields of the parameter dialog
  std::vector<std::string> ranges;      // fields of the results dialog
  std::vector<std::string> charts;      // names of its charts
};
TaskDialogs LookAtDialogs(int mode, int row);

// Whether the task has its dialogs.
bool IsAvailable(int mode, int row);

// --- Chart files.

// ".svg", and what else charts can be written as.
std::string ChartExtensions();

// Throws UsageError unless the extension is one that charts can be written in.
void CheckChartFile(const std::string& file);

// Writes the charts of a study that are wanted in files; one text for each that could not be
// written.
std::vector<std::string> WriteChartFiles(const Study& study, const std::vector<ChartWish>& wishes);

}  // namespace poweranalysis
