#include <unistd.h>

#include <algorithm>
#include <exception>

#include "cli/Catalogue.h"
#include "cli/ChartFiles.h"
#include "cli/CommandLine.h"
#include "cli/Errors.h"
#include "cli/LoadedModule.h"
#include "cli/Macro.h"
#include "cli/Output.h"
#include "cli/Terminal.h"
#include "cli/office/DocumentWriter.h"
#include "module/PowerAnalysisModule.h"

namespace poweranalysis {

namespace {

// A line of the program's own on standard error, with its name in front.
void Complain(const std::string& text) {
  const bool colour = WantsColour(STDERR_FILENO);
  WriteError((colour ? "\x1b[31mpoweranalysis:\x1b[0m " : "poweranalysis: ") + text + "\n");
}

// A message of the system, word for word.
void Tell(const Message& message) {
  std::string text;
  const std::string shown = ShownMessage(message);
  for (std::size_t i = 0; i < shown.size(); ++i) {
    const bool lineFeedFollows = i + 1 < shown.size() && shown[i + 1] == '\n';
    if (shown[i] != '\r') {
      text += shown[i];
    } else if (!lineFeedFollows) {
      text += '\n';
    }
  }
  WriteError(text + "\n");
}

int Print(const std::string& text) {
  const std::string error = WriteStandardOutput(text);
  if (!error.empty()) {
    Complain("cannot write the output: " + error);
  }
  return error.empty() ? StatusAnswer : StatusNoAnswer;
}

TextStyle StyleOf(const RunRequest& request, const Study& study) {
  TextStyle style;
  if (request.output.empty()) {
    style.columns = TerminalColumns(STDOUT_FILENO);
    style.emphasis = WantsColour(STDOUT_FILENO);
  }
  for (const ChartWish& wish : request.wishes) {
    for (const Chart* chart : ChartsOf(study)) {
      const bool wanted = wish.file.empty() && (wish.name == AllCharts || wish.name == chart->name);
      const bool first =
          std::find(style.charts.begin(), style.charts.end(), chart->name) == style.charts.end();
      if (wanted && first) {
        style.charts.push_back(chart->name);
      }
    }
  }
  return style;
}

// What was asked for, in its format.
Made Exported(const RunRequest& request, const Study& study) {
  if (IsDocument(request.format)) {
    return MakeBy(DocumentModule, study, request.format);
  }
  return {request.fullCsv ? ExportFullCsv(study)
                          : Export(study, request.format, StyleOf(request, study)),
          {}};
}

bool WantsFile(const RunRequest& request) {
  return !request.output.empty() && request.output != "-";
}

// Bytes that a terminal would take for its own commands.
void RefuseDocumentOnTerminal(const RunRequest& request) {
  if (IsDocument(request.format) && !WantsFile(request) && ::isatty(STDOUT_FILENO) != 0) {
    throw UsageError(
        "--format: a document is not for a terminal; name a file for it by --output FILE");
  }
}

// Puts the study where it was asked for. A file stays as it was when there is nothing to put into
// it: no answer (except for JSON, which reports it), or a cancelled run.
int Deliver(const RunRequest& request, const Study& study) {
  const bool json = request.format == ExportFormat::Json;
  const bool something = HasAnswer(study) || !ChartsOf(study).empty();
  const bool whole = study.status != StatusCancelled;
  if (!json && !(something && whole)) {
    return study.status;
  }
  if (WantsFile(request) && !whole) {
    return study.status;
  }
  auto [bytes, error] = Exported(request, study);
  if (error.empty() && !WantsFile(request)) {
    return std::max(study.status, Print(bytes));
  }
  if (error.empty()) {
    error = WriteFile(request.output, bytes);
  }
  if (!error.empty()) {
    Complain("cannot write " + (WantsFile(request) ? "'" + request.output + "'" : "the output") +
             ": " + error);
    return StatusNoAnswer;
  }
  return study.status;
}

int Calculate(const RunRequest& request) {
  RefuseDocumentOnTerminal(request);
  HeadlessHost host;
  ProgressBar bar;
  if (IsCapableTerminal(STDERR_FILENO)) {
    host.onProgress = [&bar](const ProgressState& state) { bar.Update(state); };
  }
  host.cancelled = Interrupted;
  TaskOutcome outcome = RunTask(request, host, NewAnalysis);
  if (outcome.study.status != StatusCancelled) {
    for (std::string& error : WriteChartFiles(outcome.study, request.wishes)) {
      outcome.errors.push_back(std::move(error));
      outcome.study.status = StatusNoAnswer;
    }
  }
  std::for_each(outcome.study.messages.begin(), outcome.study.messages.end(), Tell);
  std::for_each(outcome.notes.begin(), outcome.notes.end(), Complain);
  std::for_each(outcome.errors.begin(), outcome.errors.end(), Complain);
  return Deliver(request, outcome.study);
}

int RunCommand(const ParsedCommand& command) {
  switch (command.kind) {
    case CommandKind::Run:
      return Calculate(command.run);
    case CommandKind::List:
      return Print(ListTasks());
    case CommandKind::Describe:
      return Print(DescribeFamily(command.run.mode, command.run.row, command.run.format));
    case CommandKind::Macro:
      Complain(RunMacro(command.text));
      return StatusNoAnswer;
    default:
      return Print(command.text);
  }
}

int Main(std::vector<std::string> arguments) {
  GuardStandardDescriptors();
  WatchSignals();
  try {
    return RunCommand(ParseCommandLine(std::move(arguments)));
  } catch (const UsageError& error) {
    Complain((error.argument().empty() ? "" : "--" + error.argument() + ": ") + error.what());
    return StatusWrongUse;
  } catch (const std::exception& error) {
    Complain(std::string("internal error: ") + error.what());
    return StatusNoAnswer;
  }
}

}  // namespace

}  // namespace poweranalysis

int main(int argc, char** argv) {
  return poweranalysis::Main(std::vector<std::string>(argv + std::min(argc, 1), argv + argc));
}
