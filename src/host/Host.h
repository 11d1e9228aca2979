#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <type_traits>
#include <vector>

#include "host/KeywordLine.h"
#include "host/Sheet.h"
#include "host/Workbook.h"

namespace poweranalysis {

class CAnalysisDialog;

// The opaque owner of a message box; null without a window.
using WindowHandle = const void*;

// Flags of DspMessageBox.
inline constexpr unsigned MessagePlain = 0;
inline constexpr unsigned MessageStopIcon = 0x10;

// Kinds of a keyword's value.
enum class KeywordKind { Long = 0, Double = 1 };

struct KeywordValue {
  KeywordKind kind = KeywordKind::Long;
  std::int32_t whole = 0;  // of kind Long
  double real = 0;         // of kind Double
};

// What a section of a keyword file holds, as it stands there.
struct KeywordSection {
  bool exists = false;            // there is such a file
  std::string error;              // why the file could not be read; empty when it could
  std::vector<KeywordLine> keys;  // in the order of the file
};

// Everything that the program asks of whoever shows it. Three faces implement it: the headless host
// below the command line, the Python module and the tests, and the desktop window. The names are
// those of the host's operations; all calls come on the thread of the analysis.
class Host {
 public:
  virtual ~Host() = default;

  // --- Memory. Zeroed memory and 0, or nonzero on failure.
  virtual int AllocMem(void** block, std::size_t bytes) = 0;
  virtual int GetMem(void** block, std::size_t bytes) = 0;
  virtual void FreeMem(void* block) = 0;

  // --- Messages. `text` is shown as it stands: a percent sign in it is not a format. `textId` is
  // the number of the text that it was made from.
  virtual void DspMessageBox(unsigned flags,
                             WindowHandle parent,
                             int textId,
                             const std::string& text) = 0;

  // --- Progress and cancellation.
  virtual void d_pbar(const std::string& title) = 0;  // title of the next bar
  virtual void dstart(int count) = 0;                 // open it
  virtual void termom(int position) = 0;              // move it
  virtual void dstop() = 0;                           // close it
  virtual bool IsProgressBarOpen() const = 0;
  virtual bool lookbr() = 0;  // poll for a break; pumps events in a window
  virtual bool IsExternallyCancelled() const = 0;
  virtual bool pcancel() const = 0;
  virtual bool WasCanceled() const = 0;

  // --- Dialogs. Takes ownership; false when no dialog came up, also for a null object.
  virtual bool CreateAnalysisDialog(std::unique_ptr<CAnalysisDialog> dialog) = 0;
  virtual bool IsOleAutomation() const = 0;
  virtual void EnableStartupMenus(int enable) = 0;
  virtual void RGBAttrType(int type) = 0;

  // --- File choosers: the chosen path, or nothing on Cancel.
  virtual std::optional<std::string> DoFileSaveAsDlg(const std::string& title,
                                                     const std::string& startName,
                                                     const std::string& extension) = 0;
  virtual std::optional<std::string> DoFileOpenDlg(const std::string& title,
                                                   const std::string& extension) = 0;

  // --- Clipboard. Nothing when it holds no text or cannot be opened; false when it cannot be set.
  virtual std::optional<std::string> GetClipboardText() = 0;
  virtual bool SetClipboardText(const std::string& text) = 0;

  // --- Sheets of cell means. Nothing for a file that is no sheet: the host says why.
  virtual std::optional<Sheet> OpenSheet(const std::string& path) = 0;

  // --- Keyword files. A bare file name resolves in the user's configuration folder.
  // The value of a key, or nothing when file, section or key is missing or cannot be read.
  virtual std::optional<KeywordValue> GetInitKeywordPrivate(KeywordKind kind,
                                                            const std::string& file,
                                                            const std::string& section,
                                                            const std::string& key) = 0;
  // The keys of a section before they are read as numbers, to say what could not be.
  virtual KeywordSection GetInitSection(const std::string& file, const std::string& section) = 0;
  // Writes go between Begin and End, which puts them into the file at once. Nonzero on failure.
  virtual int BeginInitKeywords(const std::string& file) = 0;
  virtual int PutInitKeywordPrivate(const std::string& file,
                                    const std::string& section,
                                    const std::string& key,
                                    const KeywordValue& factory,
                                    const KeywordValue& value) = 0;
  virtual int EndInitKeywords(const std::string& file) = 0;
  // Why the last write failed, in a sentence; empty when it did not.
  virtual std::string InitKeywordsError() const = 0;

  // --- Output.
  virtual void NextScrSetOptions(int option) = 0;
  // Puts a finished table into the workbook; the handle of its sheet.
  virtual int looka4(SummaryTable table) = 0;
  // Prints one paragraph of the report.
  virtual void type(const std::string& paragraph) = 0;
  // Draws a chart; 0 when it could not.
  virtual int NewGeneralMultipleChart(Chart chart) = 0;
  virtual void LockResults() = 0;
  virtual void UnlockResults() = 0;
  virtual void RestoreResults() = 0;

  // --- Output options (CAnalysisOutputOptions).
  virtual bool IsResultsToReportWindow() const = 0;
  virtual bool IsResultsToWord() const = 0;
  virtual int GetSupplementaryLevel() const = 0;
};

// A block of the host's zeroed memory for `count` plain values, freed with the object. Converts to
// false when the host had none.
template <class T>
class HostArray {
  static_assert(std::is_trivially_copyable_v<T>);

 public:
  HostArray(Host& host, std::size_t count) : host_(host), size_(count) {
    void* block = nullptr;
    if (host_.AllocMem(&block, count * sizeof(T)) == 0) {
      data_ = static_cast<T*>(block);
    }
  }
  HostArray(const HostArray&) = delete;
  HostArray& operator=(const HostArray&) = delete;
  ~HostArray() {
    if (data_ != nullptr) {
      host_.FreeMem(data_);
    }
  }

  explicit operator bool() const { return data_ != nullptr; }
  T* data() { return data_; }
  std::size_t size() const { return size_; }
  T& operator[](std::size_t i) { return data_[i]; }

 private:
  Host& host_;
  T* data_ = nullptr;
  std::size_t size_;
};

}  // namespace poweranalysis
