#include "cli/Terminal.h"

#include <fmt/format.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <algorithm>
#include <csignal>
#include <cstdlib>
#include <string_view>

#include "cli/Output.h"

namespace poweranalysis {

namespace {

volatile std::sig_atomic_t interrupted = 0;

void OnInterrupt(int) { interrupted = 1; }

}  // namespace

void WatchSignals() {
  struct sigaction ignore {};
  ignore.sa_handler = SIG_IGN;
  sigaction(SIGPIPE, &ignore, nullptr);

  struct sigaction before {};
  sigaction(SIGINT, nullptr, &before);
  if (before.sa_handler == SIG_IGN) {
    return;
  }
  struct sigaction watch {};
  watch.sa_handler = OnInterrupt;
  watch.sa_flags = static_cast<int>(SA_RESETHAND);
  sigaction(SIGINT, &watch, nullptr);
}

bool Interrupted() { return interrupted != 0; }

bool IsCapableTerminal(int descriptor) {
  const char* kind = std::getenv("TERM");
  return kind != nullptr && *kind != '\0' && std::string_view(kind) != "dumb" &&
         ::isatty(descriptor) != 0;
}

bool WantsColour(int descriptor) {
  const char* noColour = std::getenv("NO_COLOR");
  return (noColour == nullptr || *noColour == '\0') && IsCapableTerminal(descriptor);
}

int TerminalColumns(int descriptor) {
  constexpr int kUsual = 80;
  winsize size{};
  return ::ioctl(descriptor, TIOCGWINSZ, &size) == 0 && size.ws_col > 0 ? size.ws_col : kUsual;
}

// --- Progress.

void ProgressBar::Update(const ProgressState& state) {
  constexpr auto kPatience = std::chrono::milliseconds(300);
  constexpr auto kPace = std::chrono::milliseconds(100);
  const auto now = Clock::now();
  if (!state.open) {
    Wipe();
    open_ = false;
    return;
  }
  if (!open_) {
    open_ = true;
    next_ = now + kPatience;
  }
  if (now >= next_) {
    next_ = now + kPace;
    Draw(state);
  }
}

void ProgressBar::Draw(const ProgressState& state) {
  constexpr int kCells = 30;
  const int count = std::max(state.count, 1);
  const int position = std::clamp(state.position, 0, count);
  const auto full = static_cast<std::size_t>(kCells) * static_cast<std::size_t>(position) /
                    static_cast<std::size_t>(count);
  std::string bar = std::string(full, '#') + std::string(kCells - full, '.');
  std::string line = fmt::format("{} [{}]", state.title, bar);
  // A line that wraps could not be drawn over.
  const auto columns = static_cast<std::size_t>(TerminalColumns(STDERR_FILENO)) - 1;
  line.resize(std::min(line.size(), columns));
  WriteError("\r" + line + "\x1b[K");
  drawn_ = true;
}

void ProgressBar::Wipe() {
  if (drawn_) {
    WriteError("\r\x1b[K");
    drawn_ = false;
  }
}

}  // namespace poweranalysis
