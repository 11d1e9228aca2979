#pragma once

#include <array>
#include <cstdint>
#include <variant>

#include "distributions/SearchObserver.h"

// How a procedure speaks without knowing who shows it: a refusal is a value, and what a procedure
// says before or while it goes on, its progress and the question whether it is to stop go through
// an observer.
namespace poweranalysis {

// What procedures and the checks before them say, each by the number of its text. The wording is in
// the one table of texts, with which the numbers are compared where they are shown.
enum class Said : int {
  Nothing = 0,
  // Why there is no answer.
  SearchTooLarge = 12381,
  CancelledAtRequest = 12865,
  NullHypothesisTrue = 12873,
  NullHypothesisNearlyTrue = 12874,
  EtaTooSmall = 12876,
  FollowUpTooShort = 12877,
  SelectedGroupNotFound = 12954,
  FollowUpBeforeAccrual = 13182,
  IncreaseN2 = 13199,
  IncreaseN1 = 13200,
  LambdaNotPositive = 13201,
  // Before a long walk.
  SwitchingToRefined = 12875,
  // Titles of a progress bar.
  SearchingForN = 12382,
  SearchingForDf = 12468,
  SearchingForUpperBound = 12963,
  ComputingLowerBound = 34003,
  ComputingUpperBound = 34004,
};

// Numbers that fill the slots of a text, as many as it has, in their order.
using SlotNumber = std::variant<double, std::int64_t>;
using SlotNumbers = std::array<SlotNumber, 2>;

// Why a procedure gives no answer; empty when it gives one, or fails without a message.
struct Refusal {
  Said text = Said::Nothing;
  SlotNumbers numbers{};

  explicit operator bool() const { return text != Said::Nothing; }
  bool operator==(const Refusal&) const = default;
};

// Watches a procedure. As an observer of a single distribution it starts a bar without a title from
// the procedure; a required-size search opens one with its own.
class ProcedureObserver : public SearchObserver {
 public:
  // A search opens a bar; `count` as in Start. False: there is no bar, and the search neither
  // advances nor stops it.
  virtual bool Open(Said title, std::int32_t count) = 0;

  // Whether the user asks to stop, with a bar or without one, which does not move.
  virtual bool StopRequested() = 0;

  // Says a text now. The procedure goes on.
  virtual void Notice(Said text, const SlotNumbers& numbers) = 0;

  // Says why a part of the work was refused; nothing for an empty refusal.
  void Tell(const Refusal& refusal) {
    if (refusal) {
      Notice(refusal.text, refusal.numbers);
    }
  }
};

// Shows nothing and never asks to stop.
class SilentProcedureObserver final : public ProcedureObserver {
 public:
  void Start(std::int32_t /*count*/) override {}
  bool Advance(std::int32_t /*counter*/) override { return false; }
  void Stop() override {}
  bool Open(Said /*title*/, std::int32_t /*count*/) override { return false; }
  bool StopRequested() override { return false; }
  void Notice(Said /*text*/, const SlotNumbers& /*numbers*/) override {}
};

// A long evaluation within a procedure: it can be stopped, and leaves the procedure's bar alone.
class EvaluationObserver final : public SearchObserver {
 public:
  explicit EvaluationObserver(ProcedureObserver& procedure) : procedure_(procedure) {}

  void Start(std::int32_t /*count*/) override {}
  bool Advance(std::int32_t /*counter*/) override { return procedure_.StopRequested(); }
  void Stop() override {}

 private:
  ProcedureObserver& procedure_;
};

// The power of a trial within a search: `powerOf` is handed a Refusal, which is reported at once,
// and the search goes on.
template <class PowerOf>
double TrialPower(ProcedureObserver& observer, PowerOf&& powerOf) {
  Refusal refusal;
  const double power = powerOf(refusal);
  observer.Tell(refusal);
  return power;
}

}  // namespace poweranalysis
