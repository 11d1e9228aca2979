#include "calculators/Equations.h"
#include "dialogs/Speaker.h"
#include "distributions/Correlation.h"

namespace poweranalysis {

namespace {

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

}  // namespace

CalculatorAnswer SolveForR(const PowerSettings& block, double p) {
  const RParams& in = block.R.Working;
  const double r = CorrelationQuantile(in.Rho, in.SampleSize, p, in.Algorithm);
  return r != NumericFailure ? GoodAnswer(r) : CalculatorAnswer();
}

CalculatorAnswer SolveForRProbability(const PowerSettings& block, double /*p*/) {
  const RParams& in = block.R.Working;
  if (in.RObserved <= -1 || in.RObserved >= 1) {
    return GoodAnswer(in.RObserved <= -1 ? 0 : 1);
  }
  const double p = CorrelationCdf(in.Rho, in.SampleSize, in.RObserved, in.Algorithm);
  if (p == NumericFailure) {
    return {};
  }
  // Mirrored, the upper tail is a lower one.
  return ProbabilityAnswer(
      p, [&in] { return CorrelationCdf(-in.Rho, in.SampleSize, -in.RObserved, in.Algorithm); });
}

CalculatorAnswer SolveForRho(const PowerSettings& block, double p) {
  const RParams& in = block.R.Working;
  const LockedResults locked;
  HostObserver observer(text::Computing);
  int failure = 0;
  const double rho =
      CorrelationRhoForP(in.SampleSize, in.RObserved, p, failure, in.Algorithm, observer);
  return failure == 0 ? GoodAnswer(rho) : CalculatorAnswer();
}

}  // namespace poweranalysis
