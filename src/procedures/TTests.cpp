#include "procedures/TTests.h"

#include <algorithm>
#include <cmath>

#include "distributions/NoncentralT.h"
#include "distributions/Normal.h"

namespace poweranalysis {

namespace {

constexpr double kNullTolerance = PolicyOf(SearchMember::TTest).nullTolerance;

// With a group fixed the power levels off as the other grows. Secant steps from a small size cross
// that flat stretch badly: they leap over a limit within which a size is enough, or far above the
// answer, from where the search walks down by ones. So the smallest design is tried first and the
// search then goes on from its own normal estimate; a candidate above the limit is cut to it, and
// only the limit falling short is too large.
constexpr SearchPolicy FixedGroupPolicy() {
  SearchPolicy policy = PolicyOf(SearchMember::TTest);
  policy.smallestDesign = SmallestDesign::AboveGoal;
  policy.smallestDesignSize = policy.firstTrialFloor;
  policy.startOffset = 0;
  policy.firstTrialFloor = policy.smallestDesignSize + 1;
  policy.candidateRule = CandidateRule::CutToLimit;
  policy.shortTrialRule = ShortTrialRule::AtLimit;
  return policy;
}
constexpr SearchPolicy kFixedGroupPolicy = FixedGroupPolicy();

// Once the side that delta points to has this much power, the other side is needed to some 1e-15
// only.
constexpr double kSidePower = .05;

// Both tails. The side that delta points away from, where the exact recursion is slow, is the
// smaller.
double TwoTailedPower(double crit, std::int32_t df, double delta) {
  const auto beside = [](double power) {
    return power > kSidePower ? NoncentralTCdfBesideLarger : NoncentralTCdf;
  };
  double below = 0;
  double upTo = 0;
  if (delta > 0) {
    upTo = NoncentralTCdf(-crit, df, delta);
    below = beside(1 - upTo)(crit, df, delta);
  } else {
    below = NoncentralTCdf(crit, df, delta);
    upTo = beside(below)(-crit, df, delta);
  }
  return below == NumericFailure || upTo == NumericFailure ? NumericFailure : below + 1 - upTo;
}

// Every power is settled long before, and the recursion of the noncentral t distribution overflows
// from some 1e35 on. A standard deviation next to nothing reaches it.
double WithinReach(double delta) {
  constexpr double kFarthest = 1e15;
  return std::clamp(delta, -kFarthest, kFarthest);
}

// Probability below the critical value.
double TailProbability(double alpha, std::int16_t form) {
  return form == H0TwoTailed ? alpha * .5 : alpha;
}

// ((z of the goal + z of alpha) / es)^2, the size of one group by the normal distribution.
double NormalEstimate(double es, double alpha, double powerGoal, std::int16_t form) {
  const double d = (NormalQuantile(powerGoal) - NormalQuantile(TailProbability(alpha, form))) / es;
  return d * d;
}

// The n at which n fixedN / (n + fixedN) is the normal estimate for one group, and no more than 63
// fixedN where that is out of reach or nearly so: a start that is too small costs a few trials, one
// that is too large a walk down by ones.
double FixedGroupStart(const TSizeRequest& request, std::int64_t fixedN) {
  constexpr double kLargestShare = 63. / 64;
  const double fixed = static_cast<double>(fixedN);
  const double one =
      std::min(NormalEstimate(request.es, request.alpha, request.powerGoal, request.form),
               kLargestShare * fixed);
  return std::min(std::trunc(one * fixed / (fixed - one)), static_cast<double>(request.sizeLimit));
}

// A failed critical value stays the failure that it is.
double Negated(double crit) { return crit == NumericFailure ? NumericFailure : -crit; }

// The t-test member for the designs that `designAt` gives for the sizes under trial.
template <class DesignAt>
SearchResult RequiredN(const SearchPolicy& policy,
                       const TSizeRequest& request,
                       double start,
                       CriticalTCache& criticals,
                       ProcedureObserver& observer,
                       DesignAt designAt) {
  const SearchRequest search{.effect = request.es,
                             .form = request.form,
                             .powerGoal = request.powerGoal,
                             .start = start,
                             .sizeLimit = request.sizeLimit};
  const auto powerAt = [&](std::int64_t n) {
    return TrialPower(observer, [&](Refusal& refusal) {
      return TTestPower(designAt(n), request.alpha, request.form, refusal, criticals);
    });
  };
  SearchResult result;
  RequiredSizeSearch(policy, search, powerAt, observer, result);
  return result;
}

}  // namespace

double OneMeanEffect(double mu, double mu0, double sigma) { return (mu - mu0) / sigma; }

double TwoMeansEffect(double mu1, double mu2, double sigma) { return (mu1 - mu2) / sigma; }

double PairedSigmaDiff(double sigma1, double sigma2, double r) {
  return std::sqrt(sigma1 * sigma1 + sigma2 * sigma2 - 2 * r * sigma1 * sigma2);
}

double PairedMeansEffect(double mu1, double mu2, double sigmaDiff) {
  return (mu1 - mu2) / sigmaDiff;
}

TDesign OneGroupDesign(double es, std::int64_t n) {
  return {static_cast<std::int32_t>(n - 1), es * std::sqrt(static_cast<double>(n))};
}

TDesign TwoGroupsDesign(double es, std::int64_t n1, std::int64_t n2) {
  // The product of two sizes within the limits does not fit a 32-bit integer.
  const double product = static_cast<double>(n1) * static_cast<double>(n2);
  return {static_cast<std::int32_t>(n1 + n2 - 2),
          es * std::sqrt(product / static_cast<double>(n1 + n2))};
}

TDesign EqualGroupsDesign(double es, std::int64_t n) {
  return {static_cast<std::int32_t>(2 * n - 2), es * std::sqrt(static_cast<double>(n) * .5)};
}

double CriticalT(std::int32_t df, double alpha, std::int16_t form) {
  int status = 0;
  int failure = 0;
  return CentralTQuantile(df, TailProbability(alpha, form), status, failure);
}

double CriticalTCache::Find(std::int32_t df, double alpha, std::int16_t form) {
  Entry& entry = entries_[static_cast<std::uint32_t>(df) % kEntries];
  if (entry.df != df || entry.alpha != alpha || entry.form != form) {
    entry = {alpha, CriticalT(df, alpha, form), df, form};
  }
  return entry.critical;
}

double TTestPower(double crit, std::int32_t df, double delta, std::int16_t form, Refusal& refusal) {
  if (NullHypothesisCheck(delta, form, kNullTolerance, TrueNull::Exactly, refusal) != 0 ||
      crit == NumericFailure) {
    return NumericFailure;
  }
  const double reached = WithinReach(delta);
  switch (form) {
    case H0TwoTailed:
      return TwoTailedPower(crit, df, reached);
    case H0AtMost: {
      const double upTo = NoncentralTCdf(-crit, df, reached);
      return upTo == NumericFailure ? NumericFailure : 1 - upTo;
    }
    case H0AtLeast:
      return NoncentralTCdf(crit, df, reached);
    default:
      return 0.0;
  }
}

double TTestPower(const TDesign& design,
                  double alpha,
                  std::int16_t form,
                  Refusal& refusal,
                  CriticalTCache& criticals) {
  const double crit = criticals.Find(design.df, alpha, form);
  return TTestPower(crit, design.df, design.delta, form, refusal);
}

double OneGroupStart(double es, double alpha, double powerGoal, std::int16_t form) {
  return std::max(std::trunc(NormalEstimate(es, alpha, powerGoal, form)), 2.0);
}

double EqualGroupsStart(double es, double alpha, double powerGoal, std::int16_t form) {
  return 2 * std::trunc(NormalEstimate(es, alpha, powerGoal, form));
}

SearchResult OneGroupRequiredN(const TSizeRequest& request,
                               CriticalTCache& criticals,
                               ProcedureObserver& observer) {
  const double start = OneGroupStart(request.es, request.alpha, request.powerGoal, request.form);
  return RequiredN(PolicyOf(SearchMember::TTest), request, start, criticals, observer,
                   [&](std::int64_t n) { return OneGroupDesign(request.es, n); });
}

SearchResult TwoGroupsRequiredN(const TSizeRequest& request,
                                std::int16_t nToVary,
                                std::int64_t fixedN,
                                CriticalTCache& criticals,
                                ProcedureObserver& observer) {
  switch (nToVary) {
    case NToVaryBoth:
      return RequiredN(PolicyOf(SearchMember::TTest), request,
                       EqualGroupsStart(request.es, request.alpha, request.powerGoal, request.form),
                       criticals, observer,
                       [&](std::int64_t n) { return EqualGroupsDesign(request.es, n); });
    case NToVaryN1:
    case NToVaryN2:
      return RequiredN(kFixedGroupPolicy, request, FixedGroupStart(request, fixedN), criticals,
                       observer,
                       [&](std::int64_t n) { return TwoGroupsDesign(request.es, n, fixedN); });
    default:
      // Kept: the range of the field is wider than its choices.
      return {SizeFailure, NumericFailure, SearchNullTrue};
  }
}

double ShownCriticalTOfOneMean(double crit, std::int16_t form) {
  return form == H0AtLeast ? crit : Negated(crit);
}

double ShownCriticalT(double crit) { return Negated(crit); }

double ShownCriticalTOfRequiredN(std::int64_t requiredN, double alpha, std::int16_t form) {
  return Negated(CriticalT(static_cast<std::int32_t>(2 * requiredN - 2), alpha, form));
}

}  // namespace poweranalysis
