#include "procedures/ModelFit.h"

#include "distributions/NoncentralChiSquare.h"

namespace poweranalysis {

namespace {

// Of the climb; the last stride is halved down to single sizes.
constexpr std::int64_t kStride = 100;

std::int16_t EffectiveForm(std::int16_t form, double r0) {
  return (form == H0TwoTailed || form == H0AtMost) && r0 == 0.0 ? H0Zero : form;
}

double Noncentrality(double r, std::int64_t n, std::int32_t df) {
  return r * r * static_cast<double>(n - 1) * df;
}

// Of a null with its effective form.
CriticalPair CriticalsOf(const ModelFitNull& null) {
  return FindCriticals(null.form, [&](std::int16_t side) {
    int status = 0;
    const double p = CriticalProbability(null.alpha, null.form, side);
    // Kept: the status is not looked at; it may come from a search that never left its start at 0.
    return p == NumericFailure ? p : NoncentralChiSquareQuantile(null.delta, null.df, p, status);
  });
}

// The power of a test with its effective form, whose null hypothesis is known to be false.
double PowerBeyond(const ModelFitTest& test, double r, int& err, ModelFitCriticalCache& criticals) {
  const ModelFitNull null = {Noncentrality(test.r0, test.n, test.df), test.df, test.alpha,
                             test.form};
  const double delta = Noncentrality(r, test.n, test.df);
  err = ProcedureOk;
  const auto cdf = [&](double c) {
    double density = 0;
    int failure = ProcedureOk;
    const double probability = NoncentralChiSquareCdf(c, test.df, delta, density, failure);
    err = failure != ProcedureOk ? failure : err;
    // A sum that ended too early is off by a few parts in a thousand; only an argument out of range
    // has no probability at all.
    return failure == ProcedureFailed ? NumericFailure : probability;
  };
  const double power =
      RejectionProbability(test.form, criticals.Find(null, CriticalsOf), cdf, LowTail::Subtracted);
  if (power == NumericFailure && err == ProcedureOk) {
    err = ProcedureFailed;
  }
  return power;
}

// Steps of ModelFitRequiredN after its checks.
class ModelFitSearch {
 public:
  ModelFitSearch(const ModelFitSizeRequest& request, ProcedureObserver& observer)
      : request_(request), observer_(observer), form_(EffectiveForm(request.form, request.r0)) {}

  SearchResult Run();

 private:
  double PowerAt(std::int64_t n) {
    int err = ProcedureOk;
    return PowerBeyond({n, request_.df, request_.alpha, request_.r0, form_}, request_.r, err,
                       criticals_);
  }
  // The last steps come back to the ends of the bracket.
  double PowerOfTrial(std::int64_t trial) {
    return trial == upper_ ? upperPower_ : trial == lower_ ? lowerPower_ : PowerAt(trial);
  }
  // An upper-tail test of an effect that points down has less power the larger n is.
  bool RunsAgainstTheTest() const { return form_ != H0AtLeast && request_.r < request_.r0; }
  bool Climb();
  bool Close();
  bool CancelledNow() {
    status_ = observer_.StopRequested() ? SearchCancelled : ProcedureOk;
    return status_ != ProcedureOk;
  }

  const ModelFitSizeRequest& request_;
  ProcedureObserver& observer_;
  std::int16_t form_;
  ModelFitCriticalCache criticals_;
  std::int64_t upper_ = 0;
  double upperPower_ = NumericFailure;
  std::int64_t lower_ = 0;
  double lowerPower_ = NumericFailure;
  int status_ = ProcedureOk;
  Refusal refusal_;
};

// To the first hundred whose power is above the goal.
bool ModelFitSearch::Climb() {
  const std::int64_t limit = RunsAgainstTheTest() ? kStride : LargestModelFitN;
  do {
    upper_ += kStride;
    if (upper_ > limit) {
      status_ = ProcedureFailed;
      refusal_ = {Said::SearchTooLarge, {LargestModelFitN}};
      return false;
    }
    upperPower_ = PowerAt(upper_);
    if (CancelledNow()) {
      return false;
    }
  } while (!(upperPower_ > request_.powerGoal));
  return true;
}

// Down from that hundred by 50, 25, 12, 6, 3, 1 and 1, back up where a size falls short.
bool ModelFitSearch::Close() {
  std::int64_t width = 2 * kStride;
  std::int64_t direction = -1;
  std::int64_t trial = upper_;
  bool reached = false;
  do {
    width = width > 3 ? width / 2 : 2;
    trial += width * direction / 2;
    const double power = PowerOfTrial(trial);
    if (CancelledNow()) {
      return false;
    }
    reached = power >= request_.powerGoal;
    direction = reached ? -1 : 1;
    if (reached && trial < upper_) {
      upper_ = trial;
      upperPower_ = power;
    } else if (!reached && trial > lower_) {
      lower_ = trial;
      lowerPower_ = power;
    }
  } while (width > 2 || !reached);
  return true;
}

SearchResult ModelFitSearch::Run() {
  if (Climb() && Close()) {
    return {upper_, upperPower_, ProcedureOk};
  }
  return {SizeFailure, NumericFailure, status_, refusal_};
}

bool IsKnown(std::int16_t form) { return form >= H0TwoTailed && form <= H0Zero; }

}  // namespace

double ModelFitPower(const ModelFitTest& test,
                     double r,
                     int& err,
                     Refusal& refusal,
                     ModelFitCriticalCache& criticals) {
  ModelFitTest effective = test;
  effective.form = EffectiveForm(test.form, test.r0);
  err = NullHypothesisCheck(r - test.r0, effective.form, ModelFitTolerance, TrueNull::Exactly,
                            refusal);
  if (err != 0) {
    return NumericFailure;
  }
  if (r == test.r0) {
    return test.alpha;
  }
  return PowerBeyond(effective, r, err, criticals);
}

double ModelFitPower(std::int64_t n,
                     std::int32_t df,
                     double alpha,
                     double r,
                     double r0,
                     std::int16_t form,
                     int& err,
                     Refusal& refusal) {
  ModelFitCriticalCache criticals;
  return ModelFitPower({n, df, alpha, r0, form}, r, err, refusal, criticals);
}

SearchResult ModelFitRequiredN(const ModelFitSizeRequest& request, ProcedureObserver& observer) {
  Refusal refusal;
  if (NullHypothesisCheck(request.r - request.r0, request.form, ModelFitTolerance,
                          TrueNull::WithinTolerance, refusal) != 0 ||
      !IsKnown(request.form)) {
    return {SizeFailure, NumericFailure, ProcedureFailed, refusal};
  }
  return ModelFitSearch(request, observer).Run();
}

}  // namespace poweranalysis
