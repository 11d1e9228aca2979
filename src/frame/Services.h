#pragma once

#include <array>
#include <cstdint>
#include <string>

#include "frame/FormatText.h"
#include "frame/Texts.h"
#include "host/AnalysisSupport.h"

// The small services over the host, and the state of the module.
namespace poweranalysis {

// Head of the one block of parameters, all that the frame reads of it: the chosen mode, and the
// chosen list row of each mode. The rest of the block is the settings'.
struct PowerSettingsHead {
  std::int16_t Mode = 0;
  std::array<std::int16_t, 4> Selection{};
};

// The block shared by report and chart: at most one paragraph at a time.
struct ReportBufferBlock {
  std::string text;
};

// State of the module, one instance per thread: an analysis belongs to the thread that created it.
struct ModuleState {
  PowerSettingsHead* settings = nullptr;
  std::int16_t ProgressOpen = 0;  // a progress bar that this program opened is up
  ReportBufferBlock ReportBuffer;
  CAnalysisSupport* analysis = nullptr;
  std::int32_t messagesShown = 0;  // so far, so that a caller can see whether a procedure spoke
};
ModuleState& Module();

// The host of the live analysis, or null when there is none: procedures then run silently.
Host* ModuleHost();

// Shows a text of the table, filled in.
void ShowMessage(unsigned flags,
                 WindowHandle parent,
                 TextId id,
                 std::initializer_list<FormatArg> args = {});
// Shows a finished text; `id` is the number it was made from.
void ShowMessage(unsigned flags, WindowHandle parent, int id, const std::string& finishedText);

// --- Progress. A bar opened by someone else is left alone.
void ProgressStart(const std::string& title, int count);
void ProgressStep(int position);
void ProgressStop();
// Polls for a break (lookbr).
bool BreakRequested();
// Asks IsExternallyCancelled, pcancel and WasCanceled, in that order.
bool IsCancelled();

// How SetDlgItemNumber lays a number out.
struct NumberLayout {
  int decimals = 0;
  int places = 0;
  int digits = 0;
  int width = 0;
  bool handedToHost = false;  // too wide: shown by the host's SetDlgItemDouble
};
NumberLayout LayOutNumber(double value, int maxDecimals, int minDecimals);

// Shows a real number in a control with as many decimals as it needs.
void SetDlgItemNumber(
    FormModel& form, int control, double value, int maxDecimals, int minDecimals, int truncate);

// Hands a finished summary table to the host; the handle of its sheet.
int SetTableOptions(Host& host, SummaryTable table);

// Guards the module's resources while a handler builds its controls. The texts are constant and
// every analysis stays on its thread, so nothing needs locking; the guard marks the span for hosts
// whose resources do.
class ResourceScope {
 public:
  ResourceScope();
  ResourceScope(const ResourceScope&) = delete;
  ResourceScope& operator=(const ResourceScope&) = delete;
  ~ResourceScope();
  void Release();

  static int depth();

 private:
  bool held_ = true;
};

}  // namespace poweranalysis
