#include "procedures/RequiredSizeSearch.h"

#include <cmath>

namespace poweranalysis {

namespace {

constexpr std::int16_t kNullFalse = 0;
constexpr std::int16_t kNullTrue = 1;
constexpr std::int16_t kNullNearlyTrue = 2;

// The smallest size known to exceed the goal, before any is known.
// Kept: independent of the size limit.
constexpr std::int64_t kUpperBracket = 1000000;

// The goals that a search with a window takes.
constexpr double kLowestGoal = .01;
constexpr double kHighestGoal = .999;
// So near to 1, or between powers that differ by rounding alone, the slope of the power says
// nothing: the step begins again at 1.
constexpr double kStepResetPower = .999;
constexpr double kEqualPowers = 1e-15;
// Kept: what the bars are opened with, however many trials there are.
constexpr int kBarCount = 10;
constexpr int kBracketBisectBarCount = 20;

// Beyond it a step says no more, and its sum with a size must fit.
constexpr double kLargestStep = 2e9;
// An estimate that is not a number or beyond any size is as good as none.
constexpr double kLargestStart = 2147483648.0;
// More than any power that rises with size takes: a power that falls could cycle forever.
constexpr std::int64_t kMostTrials = 2000000;

bool NullIsTrue(double effect, std::int16_t form) {
  switch (form) {
    case H0TwoTailed:
    case H0Zero:
      return effect == 0;
    case H0AtMost:
      return !(effect > 0);
    case H0AtLeast:
      return !(effect < 0);
    default:
      // Kept: a form that no family has passes.
      return false;
  }
}

}  // namespace

std::int16_t NullHypothesisCheck(
    double effect, std::int16_t form, double tolerance, TrueNull trueNull, Refusal& refusal) {
  refusal = {};
  if (NullIsTrue(effect, form)) {
    refusal.text = Said::NullHypothesisTrue;
    return kNullTrue;
  }
  if (trueNull == TrueNull::WithinTolerance && std::fabs(effect) < tolerance) {
    refusal = {Said::NullHypothesisNearlyTrue, {tolerance}};
    return kNullNearlyTrue;
  }
  return kNullFalse;
}

SizeSearch::SizeSearch(const SearchPolicy& policy,
                       const SearchRequest& request,
                       ProcedureObserver& observer,
                       SearchResult& result)
    : policy_(policy),
      request_(request),
      observer_(observer),
      result_(result),
      limit_(policy.ownLimit == SearchPolicy::LimitOfRequest ? request.sizeLimit : policy.ownLimit),
      lower_(policy.lowerBracket),
      upper_(kUpperBracket),
      step_(static_cast<double>(policy.firstStep)) {
  if (Refused()) {
    return;
  }
  bar_ = policy_.title != Said::Nothing && observer_.Open(policy_.title, kBarCount);
  if (policy_.smallestDesign == SmallestDesign::NotTried) {
    ChooseFirstTrial();
  } else {
    phase_ = Phase::Smallest;
    size_ = policy_.smallestDesignSize;
  }
}

bool SizeSearch::Refused() {
  const std::int16_t form =
      policy_.nullForm == SearchPolicy::FormOfRequest ? request_.form : policy_.nullForm;
  Refusal refusal;
  const std::int16_t result = NullHypothesisCheck(request_.effect, form, policy_.nullTolerance,
                                                  TrueNull::WithinTolerance, refusal);
  if (result != 0) {
    // Kept: the status of two variances reads as "too large" or "cancelled" though neither
    // happened.
    FinishWithout(policy_.statusOfNullCheck ? int{result} : int{SearchNullTrue}, refusal);
    return true;
  }
  const double goal = request_.powerGoal;
  if (policy_.goalWindow && !(goal >= kLowestGoal && goal <= kHighestGoal)) {
    FinishWithout(SearchGoalOutOfRange);
    return true;
  }
  return false;
}

void SizeSearch::ChooseFirstTrial() {
  phase_ = Phase::First;
  if (policy_.fixedFirstTrial != 0) {
    size_ = policy_.fixedFirstTrial;
    return;
  }
  // The estimate may exceed any integer, so it meets the limit as a double.
  const double first = request_.start + static_cast<double>(policy_.startOffset);
  if (policy_.firstTrialWithinLimit && !(first <= static_cast<double>(limit_))) {
    FinishTooLarge(NumericFailure);
    return;
  }
  const bool usable = std::fabs(first) <= kLargestStart;
  size_ = std::max(usable ? static_cast<std::int64_t>(first) : 0, policy_.firstTrialFloor);
}

void SizeSearch::Record(double power) {
  switch (phase_) {
    case Phase::Smallest:
      RecordSmallest(power);
      break;
    case Phase::First:
      RecordFirst(power);
      break;
    case Phase::Next:
      RecordNext(power);
      break;
    case Phase::Done:
      break;
  }
}

void SizeSearch::RecordSmallest(double power) {
  // Kept: one member requires more than the goal, the other accepts the goal itself.
  const bool reached = policy_.smallestDesign == SmallestDesign::AboveGoal
                           ? power > request_.powerGoal
                           : power >= request_.powerGoal;
  if (reached) {
    Finish(size_, power);
    return;
  }
  lower_ = std::max(lower_, size_);
  ChooseFirstTrial();
  // A start below the smallest design has just been tried.
  if (size_ == policy_.smallestDesignSize && !(request_.start >= static_cast<double>(size_))) {
    RecordFirst(power);
  }
}

void SizeSearch::RecordFirst(double power) {
  lastPower_ = power;
  if (power > request_.powerGoal) {
    Exceeded(power);
    // With the bracket's lower end at the low stop the bracket could not close.
    if (size_ <= policy_.lowStop) {
      Finish(size_, power);
      return;
    }
  } else {
    FellShort();
  }
  phase_ = Phase::Next;
  ChooseNextTrial();
}

void SizeSearch::RecordNext(double power) {
  if (CancelledNow()) {
    FinishCancelled();
    return;
  }
  if (power > request_.powerGoal) {
    Exceeded(power);
    if (size_ == policy_.lowStop) {
      Finish(upper_, upperPower_);
      return;
    }
  } else {
    if (FallsShortForGood()) {
      FinishTooLarge(power);
      return;
    }
    FellShort();
  }
  ChooseStep(power);
  ChooseNextTrial();
}

void SizeSearch::Exceeded(double power) {
  direction_ = -1;
  if (size_ < upper_) {
    upper_ = size_;
    upperPower_ = power;
  }
}

void SizeSearch::FellShort() {
  direction_ = 1;
  lower_ = std::max(lower_, size_);
}

bool SizeSearch::FallsShortForGood() const {
  return policy_.shortTrialRule == ShortTrialRule::AboveLimit ? size_ > limit_ : size_ == limit_;
}

// The old step enters the new one, so that the step carries a memory of earlier slopes.
// Kept: a step of 0 is legal; the bracket then moves the trial by one.
void SizeSearch::ChooseStep(double power) {
  const bool steep = power > kStepResetPower && (!policy_.resetOnlyUpward || direction_ == 1);
  const double change = std::fabs(power - lastPower_);
  if (steep || !(change > kEqualPowers)) {
    step_ = 1;
  } else {
    const double scaled = step_ * std::fabs(power - request_.powerGoal) / change;
    step_ = scaled < kLargestStep ? std::floor(scaled) : kLargestStep;
  }
  lastPower_ = power;
}

void SizeSearch::ChooseNextTrial() {
  if (upper_ - lower_ == 1 && upperPower_ >= request_.powerGoal) {
    Finish(upper_, upperPower_);
    return;
  }
  if (++trials_ > kMostTrials) {
    FinishTooLarge(lastPower_);
    return;
  }
  std::int64_t candidate = static_cast<std::int64_t>(step_) * direction_ + size_;
  if (candidate <= lower_) {
    candidate = lower_ + 1;
  }
  if (!ApplyCandidateRule(candidate)) {
    FinishTooLarge(NumericFailure);
    return;
  }
  size_ = candidate < upper_ ? candidate : upper_ - 1;
}

bool SizeSearch::ApplyCandidateRule(std::int64_t& candidate) {
  if (candidate <= limit_) {
    return true;
  }
  switch (policy_.candidateRule) {
    case CandidateRule::Fails:
      // A bracket within the limit brings the candidate back.
      return upper_ <= limit_;
    case CandidateRule::MarksTooLarge:
      // Kept: the mark stays even when the search then finds its answer.
      status_ = SearchTooLarge;
      return true;
    case CandidateRule::CutToLimit:
      candidate = limit_;
      return true;
  }
  return true;
}

bool SizeSearch::CancelledNow() {
  return bar_ && observer_.Advance(static_cast<std::int32_t>(trials_));
}

void SizeSearch::Finish(std::int64_t requiredSize, double actualPower) {
  CloseBar();
  result_ = {requiredSize, actualPower, status_};
}

void SizeSearch::FinishWithout(int status, const Refusal& refusal) {
  CloseBar();
  result_ = {SizeFailure, NumericFailure, status, refusal};
}

void SizeSearch::FinishTooLarge(double power) {
  // Kept: the wording says N also where the size is degrees of freedom.
  FinishWithout(SearchTooLarge, {Said::SearchTooLarge, {request_.sizeLimit}});
  if (policy_.tooLargeResult == TooLargeResult::SizeAndPower) {
    result_.requiredSize = size_;
  }
  if (policy_.tooLargeResult != TooLargeResult::Nothing) {
    result_.actualPower = power;
  }
}

void SizeSearch::FinishCancelled() {
  CloseBar();
  if (policy_.keepsResultsWhenCancelled) {
    result_.status = SearchCancelled;
  } else {
    FinishWithout(SearchCancelled);
  }
  result_.refusal = {Said::CancelledAtRequest};
}

void SizeSearch::CloseBar() {
  phase_ = Phase::Done;
  if (bar_) {
    observer_.Stop();
    bar_ = false;
  }
}

bool BracketBisect::Refused(Refusal& refusal) const {
  return NullHypothesisCheck(request_.effect, request_.form, BracketBisectTolerance,
                             TrueNull::WithinTolerance, refusal) != 0;
}

void BracketBisect::OpenBar(Said title) { bar_ = observer_.Open(title, kBracketBisectBarCount); }

bool BracketBisect::CancelledNow() {
  ++trials_;
  return bar_ ? observer_.Advance(trials_) : observer_.StopRequested();
}

void BracketBisect::CloseBar() {
  if (bar_) {
    observer_.Stop();
  }
}

SearchResult BracketBisect::End(std::int64_t size, double power) {
  CloseBar();
  return {size, power, SearchOk};
}

SearchResult BracketBisect::EndWithout(int status, const Refusal& refusal) {
  CloseBar();
  return {SizeFailure, NumericFailure, status, refusal};
}

}  // namespace poweranalysis
