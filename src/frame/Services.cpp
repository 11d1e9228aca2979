#include "frame/Services.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "host/NumberText.h"

namespace poweranalysis {

ModuleState& Module() {
  thread_local ModuleState state;
  return state;
}

Host* ModuleHost() {
  const CAnalysisSupport* analysis = Module().analysis;
  return analysis == nullptr ? nullptr : analysis->hostOrNull();
}

void ShowMessage(unsigned flags,
                 WindowHandle parent,
                 TextId id,
                 std::initializer_list<FormatArg> args) {
  ShowMessage(flags, parent, static_cast<int>(id), FormatResource(id, args));
}

void ShowMessage(unsigned flags, WindowHandle parent, int id, const std::string& finishedText) {
  if (Host* host = ModuleHost()) {
    ++Module().messagesShown;
    host->DspMessageBox(flags, parent, id, finishedText);
  }
}

void ProgressStart(const std::string& title, int count) {
  Host* host = ModuleHost();
  if (host == nullptr) {
    return;
  }
  std::int16_t& open = Module().ProgressOpen;
  if (open != 0 && host->IsProgressBarOpen()) {
    host->dstop();
    open = 0;
  }
  host->d_pbar(title);
  host->dstart(count);
  open = 1;
}

void ProgressStep(int position) {
  Host* host = ModuleHost();
  if (host != nullptr && host->IsProgressBarOpen()) {
    host->termom(position);
  }
}

void ProgressStop() {
  Host* host = ModuleHost();
  if (host != nullptr && host->IsProgressBarOpen()) {
    host->dstop();
  }
  Module().ProgressOpen = 0;
}

bool BreakRequested() {
  Host* host = ModuleHost();
  return host != nullptr && host->lookbr();
}

bool IsCancelled() {
  const Host* host = ModuleHost();
  return host != nullptr &&
         (host->IsExternallyCancelled() || host->pcancel() || host->WasCanceled());
}

namespace {

// The fewest decimals at which the rest rounds away at `maxDecimals`.
int DecimalsNeeded(double value, int maxDecimals) {
  if (std::floor(value) == value) {
    return 0;
  }
  double tolerance = 0.5 / std::pow(10.0, maxDecimals);
  for (int k = 1; k <= maxDecimals; ++k) {
    value *= 10;
    tolerance *= 10;
    const double fraction = std::abs(value - std::trunc(value));
    if (tolerance > fraction || tolerance > 1 - fraction) {
      return k;
    }
  }
  return maxDecimals;
}

}  // namespace

NumberLayout LayOutNumber(double value, int maxDecimals, int minDecimals) {
  constexpr int kWidest = 7;
  NumberLayout layout;
  layout.decimals = DecimalsNeeded(value, maxDecimals);
  layout.places = std::max(layout.decimals, minDecimals);
  // Kept: one short of the digits of a number of 10 or more.
  layout.digits =
      value == 0 ? 1 : std::max(1, static_cast<int>(std::floor(std::log10(std::abs(value)))));
  layout.width = layout.digits + layout.places + 1 + (value < 0 ? 1 : 0);
  layout.handedToHost = layout.width > kWidest;
  return layout;
}

void SetDlgItemNumber(
    FormModel& form, int control, double value, int maxDecimals, int minDecimals, int truncate) {
  constexpr int kHostWidth = 4;
  value += 0.0;  // a negative zero shows as "0"
  if (!std::isfinite(value)) {
    form.SetDlgItemDouble(control, value, kHostWidth, maxDecimals);
    return;
  }
  const NumberLayout layout = LayOutNumber(value, maxDecimals, minDecimals);
  form.SetRETruncate(control, truncate);
  if (layout.handedToHost) {
    form.SetDlgItemDouble(control, value, kHostWidth, maxDecimals);
    return;
  }
  // The format pads on the right, so a one-digit whole number would end in a blank.
  std::string text = FormatText("%-*.*f", {layout.width, layout.places, value});
  text.erase(text.find_last_not_of(' ') + 1);
  form.SetDlgItemText(control, WithoutSignOfZero(text));
}

int SetTableOptions(Host& host, SummaryTable table) {
  host.NextScrSetOptions(1);
  return host.looka4(std::move(table));
}

namespace {

int& ScopeDepth() {
  thread_local int depth = 0;
  return depth;
}

}  // namespace

ResourceScope::ResourceScope() { ++ScopeDepth(); }

ResourceScope::~ResourceScope() { Release(); }

void ResourceScope::Release() {
  if (held_) {
    held_ = false;
    --ScopeDepth();
  }
}

int ResourceScope::depth() { return ScopeDepth(); }

}  // namespace poweranalysis
