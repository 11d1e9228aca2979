#include "procedures/SquaredCorrelation.h"

#include <array>
#include <cstddef>

namespace poweranalysis {

namespace {

constexpr int kCancelled = 2;

std::int16_t EffectiveForm(std::int16_t form, double c2) {
  return (form == H0TwoTailed || form == H0AtMost) && c2 == 0.0 ? H0Zero : form;
}

// Of a test with its effective form.
CriticalPair CriticalsOf(const SquaredCorrelationTest& test, ProcedureObserver& procedure) {
  EvaluationObserver observer(procedure);
  int failure = ProcedureOk;
  CriticalPair pair = FindCriticals(test.form, [&](std::int16_t side) {
    int ownFailure = ProcedureOk;
    const double critical =
        MultipleR2CriticalValue(static_cast<std::int32_t>(test.n), test.k, test.alpha, test.c2,
                                test.algorithm, test.form, ownFailure, side, observer);
    if (ownFailure != ProcedureOk) {
      failure = ownFailure;
    }
    return ownFailure == ProcedureOk ? critical : NumericFailure;
  });
  pair.failure = failure;
  return pair;
}

// The power of a test with its effective form, whose null hypothesis is known to be false.
double PowerBeyond(const SquaredCorrelationTest& test,
                   const CriticalPair& criticals,
                   double rho2,
                   int& err,
                   ProcedureObserver& procedure) {
  EvaluationObserver observer(procedure);
  err = criticals.failure;
  const double power = RejectionProbability(test.form, criticals, [&](double c) {
    // A sum that ended too early is not a probability either.
    const double cdf = MultipleR2Cdf(rho2, static_cast<std::int32_t>(test.n), test.k, c,
                                     test.algorithm, err, observer);
    return err == ProcedureOk ? cdf : NumericFailure;
  });
  if (power == NumericFailure && err == ProcedureOk) {
    err = ProcedureFailed;
  }
  return power;
}

// The powers of a search, each computed once: its halving comes back to sizes that it has tried.
class PowersOfASearch {
 public:
  PowersOfASearch(const SquaredCorrelationSizeRequest& request, ProcedureObserver& observer)
      : request_(request),
        observer_(observer),
        form_(EffectiveForm(request.form, request.c2)),
        against_(form_ == H0Zero && request.rho2 < request.c2) {}

  double At(std::int64_t n) {
    for (std::size_t i = 0; i < count_; ++i) {
      if (tried_[i].n == n) {
        return tried_[i].power;
      }
    }
    const double power = fallen_ ? 0 : Compute(n);
    // An upper-tail test of an effect that points down loses its power for good as n rises.
    fallen_ = fallen_ || (against_ && power != NumericFailure && power < kNoPower);
    if (count_ < tried_.size()) {
      tried_[count_++] = {n, power};
    }
    return power;
  }

  bool cancelled() const { return cancelled_; }

 private:
  // Far below any goal and any alpha.
  static constexpr double kNoPower = 1e-9;
  // Doubling to the largest size and halving back takes fewer.
  static constexpr std::size_t kMostTrials = 64;

  struct Tried {
    std::int64_t n = 0;
    double power = NumericFailure;
  };

  double Compute(std::int64_t n) {
    if (cancelled_ || n <= request_.k) {
      return NumericFailure;
    }
    const SquaredCorrelationTest test = {n,           request_.k,         request_.alpha,
                                         request_.c2, request_.algorithm, form_};
    int err = ProcedureOk;
    const double power =
        PowerBeyond(test, CriticalsOf(test, observer_), request_.rho2, err, observer_);
    cancelled_ = err == kCancelled;
    return power;
  }

  const SquaredCorrelationSizeRequest& request_;
  ProcedureObserver& observer_;
  std::int16_t form_;
  bool against_;
  bool fallen_ = false;
  bool cancelled_ = false;
  std::array<Tried, kMostTrials> tried_{};
  std::size_t count_ = 0;
};

}  // namespace

double SquaredCorrelationPower(const SquaredCorrelationTest& test,
                               double rho2,
                               int& err,
                               Refusal& refusal,
                               SquaredCorrelationCriticalCache& criticals,
                               ProcedureObserver& observer) {
  err = ProcedureOk;
  if (NullHypothesisCheck(rho2 - test.c2, test.form, SquaredCorrelationTolerance, TrueNull::Exactly,
                          refusal) != 0) {
    return NumericFailure;
  }
  SquaredCorrelationTest effective = test;
  effective.form = EffectiveForm(test.form, test.c2);
  if (rho2 == test.c2) {
    return test.alpha;
  }
  if (test.k >= test.n) {
    return NumericFailure;
  }
  const auto criticalsOf = [&](const SquaredCorrelationTest& of) {
    return CriticalsOf(of, observer);
  };
  return PowerBeyond(effective, criticals.Find(effective, criticalsOf), rho2, err, observer);
}

double SquaredCorrelationPower(std::int64_t n,
                               std::int32_t k,
                               double alpha,
                               double rho2,
                               double c2,
                               std::int16_t algorithm,
                               std::int16_t form,
                               int& err,
                               Refusal& refusal,
                               ProcedureObserver& observer) {
  SquaredCorrelationCriticalCache criticals;
  return SquaredCorrelationPower({n, k, alpha, c2, algorithm, form}, rho2, err, refusal, criticals,
                                 observer);
}

SearchResult SquaredCorrelationRequiredN(const SquaredCorrelationSizeRequest& request,
                                         ProcedureObserver& observer) {
  const BracketBisectRequest search{.effect = request.rho2 - request.c2,
                                    .form = request.form,
                                    .powerGoal = request.powerGoal,
                                    .predictors = request.k};
  PowersOfASearch powers(request, observer);
  SearchResult result = BracketBisectSearch(
      search, [&](std::int64_t n) { return powers.At(n); }, observer);
  if (powers.cancelled()) {
    result = {SizeFailure, NumericFailure, SearchCancelled};
  }
  return result;
}

}  // namespace poweranalysis
