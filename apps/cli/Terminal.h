#pragma once

#include <chrono>
#include <string>

#include "host/HeadlessHost.h"

// The terminal that the command line may stand in, and the signals that come from it.
namespace poweranalysis {

// Makes an interrupt (Control-C) a request to cancel; a second one ends the program at once. A
// program that was started with interrupts ignored goes on ignoring them. A closed pipe becomes an
// error of the write.
void WatchSignals();
bool Interrupted();

// A terminal that knows control sequences.
bool IsCapableTerminal(int descriptor);
// Whether bold and colour are wanted there: such a terminal, and no NO_COLOR.
bool WantsColour(int descriptor);
// Columns of a terminal; 80 for anything else.
int TerminalColumns(int descriptor);

// A bar on standard error for work that takes long. It is drawn from the third tenth of a second
// on, and wiped out when the work ends.
class ProgressBar {
 public:
  void Update(const ProgressState& state);

 private:
  using Clock = std::chrono::steady_clock;

  void Draw(const ProgressState& state);
  void Wipe();

  bool open_ = false;
  bool drawn_ = false;
  Clock::time_point next_;
};

}  // namespace poweranalysis
