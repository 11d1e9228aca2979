#pragma once

#include <cstdint>

#include "procedures/ProcedureObserver.h"

namespace poweranalysis {

// The search for one limit: it has a bar with the title of that limit if it asks for one, and can
// be stopped with a bar and without.
class LimitSearch final : public SearchObserver {
 public:
  LimitSearch(ProcedureObserver& procedure, Said title) : procedure_(procedure), title_(title) {}

  void Start(std::int32_t count) override { hasBar_ = procedure_.Open(title_, count); }

  bool Advance(std::int32_t counter) override {
    const bool asked = hasBar_ ? procedure_.Advance(counter) : procedure_.StopRequested();
    stopped_ = stopped_ || asked;
    return asked;
  }

  void Stop() override {
    if (hasBar_) {
      procedure_.Stop();
      hasBar_ = false;
    }
  }

  bool stopped() const { return stopped_; }

 private:
  ProcedureObserver& procedure_;
  Said title_;
  bool hasBar_ = false;
  bool stopped_ = false;
};

}  // namespace poweranalysis
