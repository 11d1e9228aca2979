#include "host/HeadlessHost.h"

#include <utility>

namespace poweranalysis {

// --- Memory and keyword files, and their failures.

int HeadlessHost::AllocMem(void** block, std::size_t bytes) {
  ++calls.allocMem;
  if (failAllocation > 0 && --failAllocation == 0) {
    *block = nullptr;
    return 1;
  }
  return RunningHost::AllocMem(block, bytes);
}

void HeadlessHost::FreeMem(void* block) {
  ++calls.freeMem;
  RunningHost::FreeMem(block);
}

int HeadlessHost::PutInitKeywordPrivate(const std::string& file,
                                        const std::string& section,
                                        const std::string& key,
                                        const KeywordValue& factory,
                                        const KeywordValue& value) {
  if (failKeyword > 0 && --failKeyword == 0) {
    SetKeywordError("The keyword could not be written.");
    return 1;
  }
  const int failed = RunningHost::PutInitKeywordPrivate(file, section, key, factory, value);
  calls.keywordsWritten += failed == 0 && !key.empty() ? 1 : 0;
  return failed;
}

// --- Dialogs.

bool HeadlessHost::CreateAnalysisDialog(std::unique_ptr<CAnalysisDialog> dialog) {
  return !failDialog && RunningHost::CreateAnalysisDialog(std::move(dialog));
}

namespace {

std::optional<std::string> NextAnswer(std::deque<std::optional<std::string>>& answers) {
  if (answers.empty()) {
    return std::nullopt;
  }
  std::optional<std::string> answer = std::move(answers.front());
  answers.pop_front();
  return answer;
}

}  // namespace

std::optional<std::string> HeadlessHost::DoFileSaveAsDlg(const std::string& title,
                                                         const std::string& startName,
                                                         const std::string& extension) {
  calls.saveDialogs.push_back({title, startName, extension});
  return NextAnswer(saveAnswers);
}

std::optional<std::string> HeadlessHost::DoFileOpenDlg(const std::string& title,
                                                       const std::string& extension) {
  calls.openDialogs.push_back({title, extension});
  return NextAnswer(openAnswers);
}

// --- Messages and progress.

void HeadlessHost::MessageShown(const Message& message) {
  if (onMessage) {
    onMessage(message);
  }
}

// The log is kept short: positions are reported to the observer only.
void HeadlessHost::LogProgress(BarChange change) {
  switch (change) {
    case BarChange::Titled:
      calls.progress.push_back("d_pbar " + progress().title);
      break;
    case BarChange::Opened:
      calls.progress.push_back("dstart " + std::to_string(progress().count));
      break;
    case BarChange::Closed:
      calls.progress.emplace_back("dstop");
      break;
    case BarChange::Moved:
      break;
  }
}

void HeadlessHost::ProgressChanged(BarChange change) {
  LogProgress(change);
  if (onProgress) {
    onProgress(progress());
  }
}

bool HeadlessHost::lookbr() {
  if (cancelled && cancelled()) {
    Cancel();
  }
  return RunningHost::lookbr();
}

// --- Clipboard and sheets.

bool HeadlessHost::SetClipboardText(const std::string& text) {
  if (clipboard) {
    clipboard = text;
  }
  return clipboard.has_value();
}

std::optional<Sheet> HeadlessHost::OpenSheet(const std::string& path) {
  SheetResult result = readSheet(path);
  sheetError_ = std::move(result.error);
  return sheetError_.empty() ? std::optional(std::move(result.sheet)) : std::nullopt;
}

// --- Output.

Workbook HeadlessHost::TakeWorkbook() { return std::exchange(workbook_, {}); }

int HeadlessHost::looka4(SummaryTable table) {
  workbook_.items.emplace_back(std::move(table));
  return static_cast<int>(workbook_.items.size());
}

void HeadlessHost::type(const std::string& paragraph) {
  if (!ContinueReport(workbook_, paragraph)) {
    workbook_.items.emplace_back(Report{{paragraph}});
  }
}

int HeadlessHost::NewGeneralMultipleChart(Chart chart) {
  if (failChart) {
    return 0;
  }
  workbook_.items.emplace_back(std::move(chart));
  return 1;
}

}  // namespace poweranalysis
