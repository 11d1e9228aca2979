#pragma once

#include <string>

#include "distributions/SearchObserver.h"
#include "frame/Services.h"

namespace poweranalysis {

// A long search under the host's progress bar.
class ProgressObserver final : public SearchObserver {
 public:
  explicit ProgressObserver(TextId title) : title_(title) {}

  void Start(std::int32_t count) override { ProgressStart(LoadText(title_), count); }
  bool Advance(std::int32_t counter) override {
    ProgressStep(counter);
    return BreakRequested();
  }
  void Stop() override { ProgressStop(); }

 private:
  TextId title_;
};

// Holds the host's results while it lives.
class LockedResults {
 public:
  LockedResults() : host_(ModuleHost()) {
    if (host_ != nullptr) {
      host_->LockResults();
    }
  }
  LockedResults(const LockedResults&) = delete;
  LockedResults& operator=(const LockedResults&) = delete;
  ~LockedResults() {
    if (host_ != nullptr) {
      host_->UnlockResults();
    }
  }

 private:
  Host* host_;
};

}  // namespace poweranalysis
