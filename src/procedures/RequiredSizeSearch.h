#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>

#include "distributions/Common.h"
#include "procedures/ProcedureObserver.h"

// The searches for the smallest size (sample size or degrees of freedom) whose power exceeds a
// goal, and the guard against a true null hypothesis that every procedure calls first.
namespace poweranalysis {

// Forms of a null hypothesis, the field H0Type.
inline constexpr std::int16_t H0TwoTailed = 0;  // "="
inline constexpr std::int16_t H0AtMost = 1;     // "<=", the upper tail rejects
inline constexpr std::int16_t H0AtLeast = 2;    // ">=", the lower tail rejects
inline constexpr std::int16_t H0Zero = 3;       // "= 0", in the families that have it

// Whether an effect within the tolerance of the null hypothesis counts as a true one: it does where
// a size is searched, which such an effect would make enormous.
enum class TrueNull { Exactly, WithinTolerance };

// Is the null hypothesis true for `effect`, or, if that counts, within `tolerance` of it?
//
//   0  neither: go on
//   1  true: the effect is 0 (forms 0 and 3), not above 0 (form 1) or not below 0 (form 2). The
//      refusal says NullHypothesisTrue.
//   2  |effect| < tolerance. The refusal says NullHypothesisNearlyTrue and the tolerance.
//
// Domain: any effect and form. An unknown form has no true null, and |effect| = tolerance passes.
// Fails:  never. An effect that passes leaves the refusal empty.
std::int16_t NullHypothesisCheck(
    double effect, std::int16_t form, double tolerance, TrueNull trueNull, Refusal& refusal);

enum SearchStatus : int {
  SearchOk = 0,
  SearchTooLarge = 1,        // the size limit was passed, and the refusal says so
  SearchCancelled = 2,       // the user stopped the search, and the refusal says so
  SearchNullTrue = 3,        // the refusal is that of NullHypothesisCheck
  SearchGoalOutOfRange = 4,  // without a message
};

// What a search gives. Without an answer both numbers are the missing value of their kind.
struct SearchResult {
  std::int64_t requiredSize = SizeFailure;
  double actualPower = NumericFailure;
  int status = SearchOk;
  Refusal refusal{};
};

// What one search is asked. `effect` and `form` feed NullHypothesisCheck, and `start` is the
// family's estimate, a whole number.
struct SearchRequest {
  double effect = 0;
  std::int16_t form = H0TwoTailed;
  double powerGoal = 0;
  double start = 0;
  std::int64_t sizeLimit = 0;
};

// A candidate above the limit...
enum class CandidateRule {
  Fails,          // ends the search
  MarksTooLarge,  // sets the status and is tried all the same
  CutToLimit,
};

// A trial that falls short ends the search...
enum class ShortTrialRule { AboveLimit, AtLimit };

// The smallest design is tried before the estimate and is the answer when its power is...
enum class SmallestDesign { NotTried, AboveGoal, AtLeastGoal };

// What a search past the limit leaves in its results.
enum class TooLargeResult { Nothing, SizeAndPower, PowerOnly };

// What sets one member of the search apart from the others.
struct SearchPolicy {
  // The form of the null check is the request's where the member has none of its own.
  static constexpr std::int16_t FormOfRequest = -1;
  // The limit is the request's where the member has none of its own.
  static constexpr std::int64_t LimitOfRequest = 0;

  // --- What is refused.
  double nullTolerance;
  std::int16_t nullForm = FormOfRequest;
  bool statusOfNullCheck = false;  // a refusal gives the result of NullHypothesisCheck itself
  bool goalWindow = false;         // the goal must lie within .01 to .999

  // --- The first trial: start + startOffset, but at least firstTrialFloor.
  SmallestDesign smallestDesign = SmallestDesign::NotTried;
  std::int64_t smallestDesignSize = 1;
  std::int64_t fixedFirstTrial = 0;  // in place of any estimate
  std::int64_t startOffset = 0;
  std::int64_t firstTrialFloor = 0;
  bool firstTrialWithinLimit = false;  // a first trial above the limit fails at once

  // --- The bracket and its steps.
  std::int64_t smallestSize = 1;  // a size below has no power, and none is evaluated
  std::int64_t lowerBracket = 1;
  std::int64_t firstStep = 1;
  std::int64_t ownLimit = LimitOfRequest;
  CandidateRule candidateRule;
  ShortTrialRule shortTrialRule;
  std::int64_t lowStop = 2;      // the smallest answer
  bool resetOnlyUpward = false;  // a power above .999 resets the step only on the way up

  // --- The endings.
  TooLargeResult tooLargeResult = TooLargeResult::Nothing;
  bool keepsResultsWhenCancelled = false;
  Said title = Said::Nothing;  // of the progress bar; none: no progress and no cancellation
};

enum class SearchMember : std::size_t {
  TTest,
  PlannedContrast,
  OneWayAnova,
  TwoWayAnova,
  OneVariance,
  TwoVariances,
};

inline constexpr std::array<SearchPolicy, 6> SearchPolicies = {{
    // SearchMember::TTest
    {.nullTolerance = .001,
     .startOffset = 1,
     .firstTrialFloor = 2,
     .firstTrialWithinLimit = true,
     .firstStep = 2,
     .candidateRule = CandidateRule::Fails,
     .shortTrialRule = ShortTrialRule::AboveLimit,
     .title = Said::SearchingForN},
    // SearchMember::PlannedContrast
    // Kept: `lower` starts at 2 and the start is not raised, so that the least answer of an
    // estimate below 2 is 3.
    {.nullTolerance = .01,
     .nullForm = H0TwoTailed,
     .firstTrialWithinLimit = true,
     .smallestSize = 2,
     .lowerBracket = 2,
     .candidateRule = CandidateRule::MarksTooLarge,
     .shortTrialRule = ShortTrialRule::AboveLimit,
     .title = Said::SearchingForN},
    // SearchMember::OneWayAnova
    {.nullTolerance = .01,
     .nullForm = H0AtMost,
     .goalWindow = true,
     .firstTrialFloor = 2,
     .candidateRule = CandidateRule::CutToLimit,
     .shortTrialRule = ShortTrialRule::AtLimit,
     .resetOnlyUpward = true,
     .tooLargeResult = TooLargeResult::SizeAndPower,
     .keepsResultsWhenCancelled = true,
     .title = Said::SearchingForN},
    // SearchMember::TwoWayAnova
    {.nullTolerance = .01,
     .nullForm = H0AtMost,
     .goalWindow = true,
     .fixedFirstTrial = 5,
     .candidateRule = CandidateRule::CutToLimit,
     .shortTrialRule = ShortTrialRule::AtLimit,
     .resetOnlyUpward = true,
     .tooLargeResult = TooLargeResult::PowerOnly},
    // SearchMember::OneVariance
    // Kept: the limit is this member's own number, though its refusal states the request's.
    {.nullTolerance = .02,
     .smallestDesign = SmallestDesign::AboveGoal,
     .firstTrialFloor = 1,
     .ownLimit = 150000,
     .candidateRule = CandidateRule::CutToLimit,
     .shortTrialRule = ShortTrialRule::AtLimit,
     .lowStop = 0,
     .title = Said::SearchingForDf},
    // SearchMember::TwoVariances
    // Kept: the twin of the member above accepts equality at the smallest design and names its bar
    // after N.
    {.nullTolerance = .001,
     .statusOfNullCheck = true,
     .smallestDesign = SmallestDesign::AtLeastGoal,
     .firstTrialFloor = 2,
     .candidateRule = CandidateRule::CutToLimit,
     .shortTrialRule = ShortTrialRule::AtLimit,
     .title = Said::SearchingForN},
}};

constexpr const SearchPolicy& PolicyOf(SearchMember member) {
  return SearchPolicies[static_cast<std::size_t>(member)];
}

// Secant search with a closing bracket, one trial at a time: while running(), evaluate the power at
// size() and Record() it. RequiredSizeSearch drives it.
class SizeSearch {
 public:
  // Refuses, opens the bar and chooses the first trial.
  SizeSearch(const SearchPolicy& policy,
             const SearchRequest& request,
             ProcedureObserver& observer,
             SearchResult& result);

  bool running() const { return phase_ != Phase::Done; }
  std::int64_t size() const { return size_; }
  // Is there a power at size() to evaluate?
  bool evaluable() const { return size_ >= policy_.smallestSize; }
  void Record(double power);

 private:
  enum class Phase { Smallest, First, Next, Done };

  bool Refused();
  void ChooseFirstTrial();
  void RecordSmallest(double power);
  void RecordFirst(double power);
  void RecordNext(double power);
  void ChooseNextTrial();
  bool ApplyCandidateRule(std::int64_t& candidate);
  bool FallsShortForGood() const;
  void Exceeded(double power);
  void FellShort();
  void ChooseStep(double power);
  bool CancelledNow();

  void Finish(std::int64_t requiredSize, double actualPower);
  void FinishWithout(int status, const Refusal& refusal = {});
  void FinishTooLarge(double power);
  void FinishCancelled();
  void CloseBar();

  const SearchPolicy& policy_;
  const SearchRequest& request_;
  ProcedureObserver& observer_;
  SearchResult& result_;
  Phase phase_ = Phase::First;
  bool bar_ = false;
  int status_ = SearchOk;
  std::int64_t limit_;
  std::int64_t lower_;
  std::int64_t upper_;
  double upperPower_ = NumericFailure;
  std::int64_t size_ = 0;
  std::int64_t direction_ = 1;
  double step_;
  double lastPower_ = NumericFailure;
  std::int64_t trials_ = 0;
};

// The smallest whole size at which the power exceeds request.powerGoal.
//
//   From the family's estimate the search moves by secant steps on the power curve,
//     step <- floor(step * |power - goal| / |power - last power|),
//   and keeps a bracket of a size that falls short and one that exceeds the goal, until they are
//   neighbours. A power equal to the goal falls short.
//
// `powerAt` maps a size (std::int64_t) to a power; NumericFailure and NaN fall short. It is called
// once per trial and never for a size below the policy's smallest.
//
// Domain: any request. result.requiredSize and result.actualPower are not read; one ending (a
//         cancelled one-way ANOVA) leaves them as they stood. The bar is the observer's; a search
//         without one cannot be stopped.
// Fails:  result.status, a SearchStatus (for two variances the result of NullHypothesisCheck, 1 or
//         2), with both numbers missing; past the limit one-way ANOVA leaves size and power and
//         two-way ANOVA the power of the limit. result.refusal says why, for a goal out of range
//         nothing. A planned contrast may end with an answer and SearchTooLarge, and nothing to
//         say.
template <class PowerAt>
void RequiredSizeSearch(const SearchPolicy& policy,
                        const SearchRequest& request,
                        PowerAt&& powerAt,
                        ProcedureObserver& observer,
                        SearchResult& result) {
  SizeSearch search(policy, request, observer, result);
  while (search.running()) {
    search.Record(search.evaluable() ? powerAt(search.size()) : NumericFailure);
  }
}

template <class PowerAt>
SearchResult RequiredSizeSearch(SearchMember member,
                                const SearchRequest& request,
                                PowerAt&& powerAt,
                                ProcedureObserver& observer) {
  SearchResult result;
  RequiredSizeSearch(PolicyOf(member), request, powerAt, observer, result);
  return result;
}

// The tolerance of the null hypothesis of such a search, far wider than the others'.
inline constexpr double BracketBisectTolerance = .05;

// What a bracket-and-bisect search is asked. `effect` and `form` feed NullHypothesisCheck.
struct BracketBisectRequest {
  double effect = 0;
  std::int16_t form = H0TwoTailed;
  double powerGoal = 0;
  std::int64_t predictors = 2;
};

// Steps of BracketBisectSearch that do not depend on the power function.
class BracketBisect {
 public:
  static constexpr std::int64_t LargestSize = 100000000;

  BracketBisect(const BracketBisectRequest& request, ProcedureObserver& observer)
      : request_(request), observer_(observer) {}

  bool Refused(Refusal& refusal) const;
  bool Reaches(double power) const { return power >= request_.powerGoal; }
  bool Exceeds(double power) const { return power > request_.powerGoal; }
  void OpenBar(Said title);
  // Moves the bar and asks whether to stop, with or without a bar.
  bool CancelledNow();
  SearchResult End(std::int64_t size, double power);
  // Without an answer. Only a refused null has a refusal.
  SearchResult EndWithout(int status, const Refusal& refusal = {});

 private:
  void CloseBar();

  const BracketBisectRequest& request_;
  ProcedureObserver& observer_;
  bool bar_ = false;
  int trials_ = 0;
};

// The required size of a family without a usable estimate: bracket by doubling strides from
// predictors + 2 and 5 predictors, then bisect.
//
// Domain: predictors >= 1; powerAt maps a size to a power, where NumericFailure and NaN fall short.
// Fails:  status 1 for a null that NullHypothesisCheck refuses, with its refusal, and, without one,
//         when no size up to BracketBisect::LargestSize reaches the goal; status 2 for a
//         cancellation, without one either.
template <class PowerAt>
SearchResult BracketBisectSearch(const BracketBisectRequest& request,
                                 PowerAt&& powerAt,
                                 ProcedureObserver& observer) {
  constexpr std::int64_t kLeastStride = 10;
  BracketBisect search(request, observer);
  Refusal refusal;
  if (search.Refused(refusal)) {
    return search.EndWithout(SearchTooLarge, refusal);
  }
  search.OpenBar(Said::SearchingForUpperBound);
  std::int64_t low = request.predictors + 2;
  const double lowPower = powerAt(low);
  if (search.Reaches(lowPower)) {
    return search.End(low, lowPower);
  }
  std::int64_t high = 5 * request.predictors;
  std::int64_t stride = std::max(high - low, kLeastStride);
  double power = powerAt(high);
  while (!search.Reaches(power)) {
    stride *= 2;
    low = high;
    high += stride;
    if (high > BracketBisect::LargestSize) {
      return search.EndWithout(SearchTooLarge);
    }
    power = powerAt(high);
    if (search.CancelledNow()) {
      return search.EndWithout(SearchCancelled);
    }
  }

  search.OpenBar(Said::SearchingForN);
  // Kept: the remainders that the halving drops can leave the answer a few above the smallest size.
  std::int64_t width = high - low;
  while (width >= 1) {
    width /= 2;
    const std::int64_t trial = high - width;
    if (search.CancelledNow()) {
      return search.EndWithout(SearchCancelled);
    }
    power = powerAt(trial);
    if (search.Exceeds(power)) {
      high = trial;
    }
  }
  const double powerBelow = powerAt(high - 1);
  if (search.Reaches(powerBelow)) {
    return search.End(high - 1, powerBelow);
  }
  // Kept: the power of the last trial, whether or not that trial was at `high`.
  return search.End(high, power);
}

}  // namespace poweranalysis
