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

// A search without a bar that can be cancelled all the same. Only a bar that opens makes the host
// forget an earlier break; one that was there before is none of this search's.
class BreakObserver final : public SearchObserver {
 public:
  void Start(std::int32_t /*count*/) override {}
  bool Advance(std::int32_t /*counter*/) override { return BreakRequested() && !earlier_; }
  void Stop() override {}

 private:
  bool earlier_ = IsCancelled();
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
