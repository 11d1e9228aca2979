#pragma once

#include <type_traits>

#include "dialogs/ResultsDialog.h"
#include "procedures/RequiredSizeSearch.h"

// What the rows of results dialogs are made of, in all families. A family has a design: its record
// and what its computations remember. `describe` takes one from the block, `power` gives its power
// and `search` its required size. Both are watched by an observer, which they tell of a refused
// power; a search hands its refusal back.
namespace poweranalysis {

// --- Axes.

inline constexpr PlotAxis EsAxis = {"EsStart", "EsEnd", "NInterval", false};
inline constexpr PlotAxis AlphaAxis = {"AlphaStart", "AlphaEnd", "NInterval", false};
inline constexpr PlotAxis PowerAxis = {"PowerStart", "PowerEnd", "NInterval", false};
inline constexpr PlotAxis NAxis = {"NStart", "NEnd", "NInterval", true};
inline constexpr PlotAxis RmsseAxis = {"StartRMSSE", "EndRMSSE", "NInterval", false};

// --- Texts.

// One text, whatever the record holds.
constexpr PlotTexts Only(TextId id, std::array<Slot, 6> slots = {}) {
  return {nullptr, {{{id, slots}}}};
}

inline constexpr PlotTexts PowerLabel = Only(text::RowPower);
inline constexpr PlotTexts EsLabel = Only(text::StandardizedEffectEs);
inline constexpr PlotTexts AlphaLabel = Only(text::TypeIErrorRateAlpha);
inline constexpr PlotTexts GoalLabel = Only(text::PowerGoal);
inline constexpr PlotTexts GroupNLabel = Only(text::GroupSampleSizeN);
inline constexpr PlotTexts RequiredNLabel = Only(text::RequiredSampleSizeN);

// --- Calculations.

// The power of the Committed record.
template <auto describe, auto power>
CalculationOutcome CalculatePower(ProcedureObserver& observer, const PowerSettings& block) {
  auto design = describe(block);
  CalculationOutcome outcome;
  outcome.good = true;
  outcome.computed.power[0] = power(observer, design);
  return outcome;
}

// The required size of the Committed record and the power at it.
template <auto describe, auto search>
CalculationOutcome CalculateSize(ProcedureObserver& observer, const PowerSettings& block) {
  auto design = describe(block);
  const SearchResult found = search(observer, design);
  observer.Tell(found.refusal);
  CalculationOutcome outcome;
  outcome.good = found.status == SearchOk;
  outcome.computed.power[0] = found.actualPower;
  outcome.computed.size[0] = found.requiredSize;
  return outcome;
}

// The required size at a point of a plot.
template <auto search, class Design>
std::int64_t SizeOf(ProcedureObserver& observer, Design& design) {
  const SearchResult found = search(observer, design);
  observer.Tell(found.refusal);
  return found.status == SearchOk ? found.requiredSize : SizeFailure;
}

// --- Points.

// Sets the input that a plot varies: a function that changes a design, or a field of the record
// that the design holds; a whole field takes the whole part.
template <auto vary, class Design>
void Vary(Design& design, double x) {
  if constexpr (std::is_invocable_v<decltype(vary), Design&, double>) {
    vary(design, x);
  } else {
    auto& field = design.record.*vary;
    field = static_cast<std::remove_reference_t<decltype(field)>>(x);
  }
}

// A plot's points: `describe` takes a design from the block, `vary` changes one of its inputs, and
// `compute` gives the power or the size of it. The design lives as long as the plot, so that what
// it remembers (critical values, say) serves all points.
template <auto describe, auto compute, auto vary>
PlotFunction PointOf(ProcedureObserver& observer, const PowerSettings& block) {
  return [&observer, design = describe(block)](double x) mutable {
    Vary<vary>(design, x);
    return static_cast<double>(compute(observer, design));
  };
}

// --- Rows.

// What a plot shows, apart from its points.
struct PlotWords {
  TextId caption;  // of its button
  int kind;
  PlotAxis axis;
  PlotTexts title;
  PlotTexts xLabel;
  PlotTexts yLabel;
  bool fixesEffect;  // a plot along the effect does not
  NullCheckRow nullCheck{};
};

// The plot of `compute` along what `vary` varies.
template <auto describe, auto compute, auto vary>
constexpr PlotRow Plot(const PlotWords& words, FailedPointRule rule = FailedPointRule::GoOn) {
  return {words.caption,     words.kind,   words.axis,
          words.title,       words.xLabel, words.yLabel,
          words.fixesEffect, rule,         PointOf<describe, compute, vary>,
          words.nullCheck};
}

}  // namespace poweranalysis
