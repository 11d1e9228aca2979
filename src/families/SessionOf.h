#pragma once

#include "families/Families.h"
#include "procedures/RequiredSizeSearch.h"

// How the sources of the families give them a session: a design is a record with what its
// computations remember and derive, and a session asks it.
namespace poweranalysis {

template <class Params>
const Params& As(const RecordView& record) {
  return *static_cast<const Params*>(record.record());
}

// What a design has by default. A design adds
//
//   double Power(std::size_t effect, Refusal& refusal, ProcedureObserver& observer)
//   SearchResult Size(std::size_t effect, ProcedureObserver& observer)
//   bool Describe(std::size_t effect, Statistic& statistic)
//
// and, where a calculation is more than the two, Outcome ComputePower and ComputeSize.
template <class Params, Family theFamily>
struct DesignOf {
  using Record = Params;
  static constexpr Family kFamily = theFamily;

  Record record{};
  std::int64_t sizeLimit = 0;

  // A record has been taken over.
  void Started() {}
  // The record has changed: what is derived from it follows.
  void Follow(Question /*question*/) {}
  // The measure of the effect in place of the record's own.
  void SetEffect(double /*measure*/) {}
  // What tables show beside the power, and beside the required size.
  void ShowPower(Computed& /*computed*/) const {}
  void ShowSize(const SearchResult& /*found*/, Computed& /*computed*/) {}
};

template <class Design>
class SessionOf final : public FamilySession {
 public:
  explicit SessionOf(Question question) : question_(question) {}

  Outcome Compute(ProcedureObserver& observer) override {
    return question_ == Question::Power ? ComputePower(observer) : ComputeSize(observer);
  }

  double Value(std::size_t effect, ProcedureObserver& observer) override {
    return question_ == Question::Power ? PowerValue(effect, observer)
                                        : SizeValue(effect, observer);
  }

  bool Describe(std::size_t effect, Statistic& statistic) override {
    return design_.Describe(effect, statistic);
  }

 protected:
  Family family() const override { return Design::kFamily; }
  void* record() override { return &design_.record; }
  void SetLimit(std::int64_t sizeLimit) override { design_.sizeLimit = sizeLimit; }
  void Follow() override { design_.Follow(question_); }
  void SetEffect(double measure) override { design_.SetEffect(measure); }
  void Started() override { design_.Started(); }

 private:
  Outcome ComputePower(ProcedureObserver& observer) {
    if constexpr (requires { design_.ComputePower(observer); }) {
      return design_.ComputePower(observer);
    } else {
      Outcome outcome;
      outcome.good = true;
      outcome.computed.power[0] = design_.Power(0, outcome.refusal, observer);
      design_.ShowPower(outcome.computed);
      return outcome;
    }
  }

  Outcome ComputeSize(ProcedureObserver& observer) {
    if constexpr (requires { design_.ComputeSize(observer); }) {
      return design_.ComputeSize(observer);
    } else {
      const SearchResult found = design_.Size(0, observer);
      Outcome outcome;
      outcome.good = found.status == SearchOk;
      outcome.refusal = found.refusal;
      outcome.computed.power[0] = found.actualPower;
      outcome.computed.size[0] = found.requiredSize;
      design_.ShowSize(found, outcome.computed);
      return outcome;
    }
  }

  double PowerValue(std::size_t effect, ProcedureObserver& observer) {
    Refusal refusal;
    const double power = design_.Power(effect, refusal, observer);
    observer.Tell(refusal);
    return power;
  }

  double SizeValue(std::size_t effect, ProcedureObserver& observer) {
    const SearchResult found = design_.Size(effect, observer);
    if (!IsQuiet(found.refusal.text)) {
      observer.Tell(found.refusal);
    }
    return static_cast<double>(found.status == SearchOk ? found.requiredSize : SizeFailure);
  }

  // A curve leaves out a point that a fixed group has no answer for, without a message.
  static bool IsQuiet(Said text) {
    return text == Said::IncreaseN1 || text == Said::IncreaseN2 ||
           text == Said::SelectedGroupNotFound;
  }

  Question question_;
  Design design_;
};

template <class Design>
std::unique_ptr<FamilySession> Open(Question question) {
  return std::make_unique<SessionOf<Design>>(question);
}

// Puts the critical values of a form in their places, each by `critical(side)` of HighSide or
// LowSide. False for an unknown form.
template <class Critical>
bool PutCriticals(std::int16_t form, Critical critical, Statistic& statistic) {
  const CriticalPair pair = FindCriticals(form, critical);
  const bool rejectsBelow = form == H0AtLeast;
  statistic.upper = rejectsBelow ? NumericFailure : pair.high;
  statistic.lower = rejectsBelow ? pair.high : pair.low;
  return form >= H0TwoTailed && form <= H0Zero && pair.high != NumericFailure;
}

// What a family shows of its limits.
inline Outcome OutcomeOf(const IntervalLimits& limits) {
  Outcome outcome;
  outcome.good = true;
  outcome.computed.limits = limits;
  outcome.computed.effectDf[0] = limits.df1;
  outcome.computed.errorDf = limits.df2;
  return outcome;
}

template <class Params, IntervalLimits (*limits)(const Params&, ProcedureObserver&)>
Outcome IntervalFrom(const RecordView& record, ProcedureObserver& observer) {
  return OutcomeOf(limits(As<Params>(record), observer));
}

// One group, and two.
inline Groups OneGroup(std::int64_t size) { return {{{size, 1}}}; }
inline Groups TwoGroups(std::int64_t first, std::int64_t second) {
  return {{{first, 1}, {second, 1}}};
}

// The rows of each source.
std::span<const FamilyRow> TTestRows();
std::span<const FamilyRow> AnovaRows();
std::span<const FamilyRow> VarianceRows();
std::span<const FamilyRow> CorrelationRows();
std::span<const FamilyRow> ProportionRows();
std::span<const FamilyRow> SurvivalRows();
std::span<const FamilyRow> ModelFitRows();

}  // namespace poweranalysis
