#pragma once

#include "distributions/SearchObserver.h"
#include "frame/Services.h"

namespace poweranalysis {

// A long evaluation without a progress bar that the user's break can end all the same.
class BreakObserver final : public SearchObserver {
 public:
  void Start(std::int32_t /*count*/) override {}
  bool Advance(std::int32_t /*counter*/) override { return BreakRequested(); }
  void Stop() override {}
};

}  // namespace poweranalysis
