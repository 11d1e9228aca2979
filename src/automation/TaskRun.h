#pragma once

#include <optional>
#include <string>
#include <vector>

#include "automation/FieldValues.h"
#include "automation/GivenMeans.h"
#include "automation/HeadlessDriver.h"
#include "frame/TaskCatalogue.h"
#include "host/Study.h"

// A calculation as a session with the dialogs that a user would see: choose the task, fill in the
// controls, OK, Calculate, and the chart buttons.
namespace poweranalysis {

// How a calculation ended, as the exit status of the command line and as exported.
inline constexpr int StatusAnswer = 0;
inline constexpr int StatusNoAnswer = 1;
inline constexpr int StatusCancelled = 130;

inline constexpr const char* AllCharts = "all";

// A calculation as it is asked for.
struct TaskRequest {
  int mode = ModePower;
  int row = 0;  // of the task list
  const FamilyTable* family = nullptr;
  std::vector<FieldValue> values;   // in the order of the record
  std::optional<GivenMeans> means;  // for a task whose page opens a grid
  // Of a calculator: the unknown, else the probability, and what the probability stands for.
  std::optional<std::size_t> unknown;
  bool oneMinusP = false;
  std::optional<std::string> settings;
  std::optional<std::string> saveSettings;
  bool saveDefaults = false;
  std::string configFolder;
  std::vector<std::string> charts;  // by the names of their plots, or AllCharts
};

struct TaskOutcome {
  Study study;                      // its status is how the run ended
  std::vector<std::string> errors;  // what went wrong beyond the messages of the system
  std::vector<std::string> notes;   // what the user may want to know
};

// `host` carries the user's cancel, which also ends the run between two of its steps, and the
// progress bar. Throws UsageError, of the argument "chart", for a chart that the task does not have.
TaskOutcome RunTask(const TaskRequest& request,
                    HeadlessHost& host,
                    const HeadlessDriver::Factory& factory);

// Whether the user has cancelled whatever runs on the host.
bool IsCancelled(const HeadlessHost& host);

// Settles the status of a study whose results and messages are in: cancelled, an answer or none.
// `refused`: something that was asked for is missing although there is a result.
void FinishStudy(TaskOutcome& outcome, const HeadlessHost& host, bool refused);

// What the dialogs of a task show; nothing when it has none yet.
struct TaskDialogs {
  std::vector<std::string> parameters;  // fields of the parameter dialog
  std::vector<std::string> ranges;      // fields of the results dialog
  std::vector<std::string> charts;      // names of its charts
};
TaskDialogs LookAtDialogs(int mode, int row, const HeadlessDriver::Factory& factory);

// Whether the task has its dialogs.
bool IsAvailable(int mode, int row, const HeadlessDriver::Factory& factory);

}  // namespace poweranalysis
