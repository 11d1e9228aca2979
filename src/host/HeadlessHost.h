#pragma once

#include <array>
#include <deque>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "host/RunningHost.h"

namespace poweranalysis {

// The form of a host without a window is the model alone.
using HeadlessForm = FormModel;

// The host without a window: output lands in one workbook, files are chosen beforehand. The command
// line, the Python module and the tests run on it.
class HeadlessHost : public RunningHost {
 public:
  // --- What came out.
  const Workbook& workbook() const { return workbook_; }
  Workbook TakeWorkbook();

  // --- Settings of this host.
  bool resultsToReportWindow = true;
  bool resultsToWord = false;
  int supplementaryLevel = 4;
  bool oleAutomation = false;
  std::deque<std::optional<std::string>> saveAnswers;  // of the file choosers; empty: Cancel
  std::deque<std::optional<std::string>> openAnswers;
  std::function<bool()> cancelled;                       // polled by lookbr
  std::function<void(const ProgressState&)> onProgress;  // called at every change of the bar
  std::function<void(const Message&)> onMessage;         // called with every message as it is shown
  // The n-th allocation from now fails (1 is the next); 0: none does.
  int failAllocation = 0;
  // The n-th keyword written from now fails (1 is the next); 0: none does.
  int failKeyword = 0;
  bool failChart = false;
  bool failDialog = false;

  // Its clipboard, empty at first; none when it cannot be opened.
  std::optional<std::string> clipboard = std::string();
  // Reads sheets; one that reads files of spreadsheet programs can take its place.
  std::function<SheetResult(const std::string&)> readSheet = ReadSheet;

  // --- What was asked of it, for tests.
  struct Calls {
    int restoreResults = 0;
    int lockResults = 0;
    int unlockResults = 0;
    int freeMem = 0;
    int allocMem = 0;
    int keywordsWritten = 0;
    int enableStartupMenus = 0;
    int nextScrSetOptions = 0;
    int attrType = 0;
    std::vector<std::string> progress;  // "d_pbar Computing Plot Data", "dstart 10", ...
    std::vector<std::array<std::string, 3>> saveDialogs;  // title, start name, extension
    std::vector<std::array<std::string, 2>> openDialogs;  // title, extension
    std::vector<PendingExit> exits;
  };
  Calls calls;

  // Why the last sheet could not be read; empty when it could.
  const std::string& sheetError() const { return sheetError_; }

  // --- Host.
  std::optional<std::string> GetClipboardText() override { return clipboard; }
  bool SetClipboardText(const std::string& text) override;
  std::optional<Sheet> OpenSheet(const std::string& path) override;
  int AllocMem(void** block, std::size_t bytes) override;
  void FreeMem(void* block) override;
  bool lookbr() override;
  bool CreateAnalysisDialog(std::unique_ptr<CAnalysisDialog> dialog) override;
  bool IsOleAutomation() const override { return oleAutomation; }
  void EnableStartupMenus(int enable) override { calls.enableStartupMenus += enable; }
  void RGBAttrType(int type) override { calls.attrType = type; }
  std::optional<std::string> DoFileSaveAsDlg(const std::string& title,
                                             const std::string& startName,
                                             const std::string& extension) override;
  std::optional<std::string> DoFileOpenDlg(const std::string& title,
                                           const std::string& extension) override;
  int PutInitKeywordPrivate(const std::string& file,
                            const std::string& section,
                            const std::string& key,
                            const KeywordValue& factory,
                            const KeywordValue& value) override;
  void NextScrSetOptions(int option) override { calls.nextScrSetOptions += option; }
  int looka4(SummaryTable table) override;
  void type(const std::string& paragraph) override;
  int NewGeneralMultipleChart(Chart chart) override;
  void LockResults() override { ++calls.lockResults; }
  void UnlockResults() override { ++calls.unlockResults; }
  void RestoreResults() override { ++calls.restoreResults; }
  bool IsResultsToReportWindow() const override { return resultsToReportWindow; }
  bool IsResultsToWord() const override { return resultsToWord; }
  int GetSupplementaryLevel() const override { return supplementaryLevel; }

 protected:
  void Exiting(const PendingExit& exit) override { calls.exits.push_back(exit); }
  void MessageShown(const Message& message) override;
  void ProgressChanged(BarChange change) override;

 private:
  void LogProgress(BarChange change);

  Workbook workbook_;
  std::string sheetError_;
};

}  // namespace poweranalysis
