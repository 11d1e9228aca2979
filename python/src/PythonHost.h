#pragma once

#include <pybind11/pybind11.h>

#include <chrono>
#include <memory>
#include <utility>

#include "frame/Services.h"
#include "host/HeadlessHost.h"

namespace poweranalysis {

// Gives the thread its own module state for as long as it lives, and puts the one before back. So
// analyses of different callers do not take each other's place, on whatever thread they are called.
class ModuleStateScope {
 public:
  ModuleStateScope() : outer_(std::exchange(Module(), ModuleState{})) {}
  // With a state that goes on from call to call.
  explicit ModuleStateScope(ModuleState& state)
      : kept_(&state), outer_(std::exchange(Module(), std::move(state))) {}
  ModuleStateScope(const ModuleStateScope&) = delete;
  ModuleStateScope& operator=(const ModuleStateScope&) = delete;
  ~ModuleStateScope() {
    ModuleState inner = std::exchange(Module(), std::move(outer_));
    if (kept_ != nullptr) {
      *kept_ = std::move(inner);
    }
  }

 private:
  ModuleState* kept_ = nullptr;
  ModuleState outer_;
};

// Looks from time to time for an exception that a signal (KeyboardInterrupt) or another thread has
// raised, on a thread that has given the interpreter's lock away. The exception waits in the
// thread's state, and Interrupted stays true.
class SignalPoll {
 public:
  bool Interrupted();

 private:
  using Clock = std::chrono::steady_clock;

  Clock::time_point next_{};
  bool interrupted_ = false;
};

// The host without a window that an interrupt of Python cancels.
class PythonHost : public HeadlessHost {
 public:
  bool lookbr() override;
  // A new command begins: an interrupt of the one before is over.
  void BeginCommand() { poll_ = SignalPoll(); }

 private:
  SignalPoll poll_;
};

}  // namespace poweranalysis
