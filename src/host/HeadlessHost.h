#pragma once

#include <deque>
#include <functional>
#include <map>
#include <string>
#include <vector>

#include "host/AnalysisSupport.h"
#include "host/Host.h"

namespace poweranalysis {

// A form without a window: a map from control number to what the control holds.
class HeadlessForm : public Form {
 public:
  struct Control {
    ControlSpec spec;
    std::string text;
    std::optional<double> number;  // the full value behind a shown text
    bool checked = false;
    bool visible = true;
    bool helpText = false;
    std::vector<std::string> rows;
    std::vector<int> icons;
    int selected = -1;
    std::optional<double> lower;  // typing hints
    std::optional<double> upper;
    int resets = 0;  // how often the list was emptied
  };

  void AddDlgTabs(const DialogSpec& spec) override;
  void SetDlgItemText(int control, std::string_view text) override;
  std::string GetDlgItemText(int control) const override;
  void SetDlgItemLong(int control, std::int64_t value) override;
  std::int32_t GetDlgItemLong(int control) const override;
  void SetDlgItemDouble(int control, double value, int width, int decimals) override;
  int GetDlgItemDouble(int control, double& value) const override;
  void SetRETruncate(int control, int truncate) override;
  void CheckRadioButton(int first, int last, int checked) override;
  void CheckDlgButton(int control, bool checked) override;
  bool IsDlgButtonChecked(int control) const override;
  void SetIntEditRange(int control, std::int32_t lower, std::int32_t upper) override;
  void SetRealEditRange(int control, double lower, double upper, int form) override;
  void ResetListContent(int list) override;
  void AddListRow(int list, std::string_view text, int icon) override;
  void SelectListRow(int list, int row) override;
  int SelectedListRow(int list) const override;
  void SetHelpTextAttrib(int control) override;
  void ShowControl(int control, bool shown) override;
  bool IsWindow() const override { return window_; }

  const DialogSpec& spec() const { return spec_; }
  // The control, or null when the dialog has none of that number.
  const Control* Find(int control) const;
  // As the user types: the text alone.
  void Type(int control, std::string_view text);
  void DestroyWindow() { window_ = false; }

 private:
  Control* FindForChange(int control);

  DialogSpec spec_;
  std::map<int, Control> controls_;
  bool window_ = true;
};

struct ProgressState {
  std::string title;
  int count = 0;
  int position = 0;
  bool open = false;
};

// The host without a window: forms are maps, messages are collected, output lands in a workbook.
// The command line, the Python module and the tests run on it.
class HeadlessHost : public Host {
 public:
  HeadlessHost();
  HeadlessHost(const HeadlessHost&) = delete;
  HeadlessHost& operator=(const HeadlessHost&) = delete;
  ~HeadlessHost() override;

  // --- Running an analysis.
  // Attaches the host and runs the sequence to its first dialog.
  int Start(CAnalysisSupport& analysis);
  // The open dialog and its form; null when none is open.
  CAnalysisDialog* dialog() const { return dialog_.get(); }
  HeadlessForm* form() const { return form_.get(); }
  // Sends an event to the open dialog, then follows its exit, if it asked for one.
  long Send(const DialogEvent& event);
  long Press(int control) { return Send({MessageCommand, control, Notification::Command}); }
  // Puts a text into an edit control as typed, and sends its command.
  long Type(int control, std::string_view text);
  // Selects a row of a list, and sends the change.
  long Select(int list, int row);

  // --- What came out.
  const Workbook& workbook() const { return workbook_; }
  Workbook TakeWorkbook();
  const std::vector<Message>& messages() const { return messages_; }
  int messageCalls() const { return messageCalls_; }  // repeats counted one by one
  void ClearMessages();

  // --- Settings of this host.
  // Folder in which bare names of keyword files resolve; empty: bare names hold nothing.
  std::string configFolder;
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
  // Why the last keyword write failed; empty when none did.
  const std::string& keywordError() const { return keywordError_; }
  // Why the last keyword file read held nothing; empty when it could be read or is not there.
  const std::string& keywordReadError() const { return keywordReadError_; }

  // --- Host.
  int AllocMem(void** block, std::size_t bytes) override;
  int GetMem(void** block, std::size_t bytes) override;
  void FreeMem(void* block) override;
  void DspMessageBox(unsigned flags,
                     WindowHandle parent,
                     int textId,
                     const std::string& text) override;
  void d_pbar(const std::string& title) override;
  void dstart(int count) override;
  void termom(int position) override;
  void dstop() override;
  bool IsProgressBarOpen() const override { return progress_.open; }
  bool lookbr() override;
  bool IsExternallyCancelled() const override { return wasCancelled_; }
  bool pcancel() const override { return wasCancelled_; }
  bool WasCanceled() const override { return wasCancelled_; }
  bool CreateAnalysisDialog(std::unique_ptr<CAnalysisDialog> dialog) override;
  bool IsOleAutomation() const override { return oleAutomation; }
  void EnableStartupMenus(int enable) override;
  void RGBAttrType(int type) override;
  std::optional<std::string> DoFileSaveAsDlg(const std::string& title,
                                             const std::string& startName,
                                             const std::string& extension) override;
  std::optional<std::string> DoFileOpenDlg(const std::string& title,
                                           const std::string& extension) override;
  std::optional<KeywordValue> GetInitKeywordPrivate(KeywordKind kind,
                                                    const std::string& file,
                                                    const std::string& section,
                                                    const std::string& key) override;
  KeywordSection GetInitSection(const std::string& file, const std::string& section) override;
  int BeginInitKeywords(const std::string& file) override;
  int PutInitKeywordPrivate(const std::string& file,
                            const std::string& section,
                            const std::string& key,
                            const KeywordValue& factory,
                            const KeywordValue& value) override;
  int EndInitKeywords(const std::string& file) override;
  std::string InitKeywordsError() const override { return keywordError_; }
  void NextScrSetOptions(int option) override;
  int looka4(SummaryTable table) override;
  void type(const std::string& paragraph) override;
  int NewGeneralMultipleChart(Chart chart) override;
  void LockResults() override { ++calls.lockResults; }
  void UnlockResults() override { ++calls.unlockResults; }
  void RestoreResults() override { ++calls.restoreResults; }
  bool IsResultsToReportWindow() const override { return resultsToReportWindow; }
  bool IsResultsToWord() const override { return resultsToWord; }
  int GetSupplementaryLevel() const override { return supplementaryLevel; }

 private:
  struct Keywords;  // the files read and the one being written

  void FollowExit();
  void TellProgress(std::string call);
  std::string ResolveKeywordFile(const std::string& file) const;

  CAnalysisSupport* analysis_ = nullptr;
  std::unique_ptr<CAnalysisDialog> dialog_;
  std::unique_ptr<HeadlessForm> form_;
  std::unique_ptr<CAnalysisDialog> nextDialog_;  // created while another's handler runs
  std::unique_ptr<HeadlessForm> nextForm_;
  Workbook workbook_;
  std::vector<Message> messages_;
  int messageCalls_ = 0;
  ProgressState progress_;
  bool wasCancelled_ = false;  // a break ends the command that it came in, and no other
  bool reportOpen_ = false;
  std::unique_ptr<Keywords> keywords_;
  std::string keywordError_;
  std::string keywordReadError_;
};

}  // namespace poweranalysis
