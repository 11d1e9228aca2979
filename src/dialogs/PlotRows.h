#pragma once

#include <type_traits>

#include "dialogs/ResultsDialog.h"

// What the rows of plots and results dialogs are made of, in all families.
namespace poweranalysis {

// --- Axes.

inline constexpr PlotAxis EsAxis = {"EsStart", "EsEnd", "NInterval", false};
inline constexpr PlotAxis AlphaAxis = {"AlphaStart", "AlphaEnd", "NInterval", false};
inline constexpr PlotAxis PowerAxis = {"PowerStart", "PowerEnd", "NInterval", false};
inline constexpr PlotAxis NAxis = {"NStart", "NEnd", "NInterval", true};

// --- Texts.

// One text, whatever the record holds.
constexpr PlotTexts Only(TextId id, std::array<PlotSlot, 6> slots = {}) {
  return {nullptr, {{{id, slots}}}};
}

inline constexpr PlotTexts PowerLabel = Only(text::RowPower);
inline constexpr PlotTexts EsLabel = Only(text::StandardizedEffectEs);
inline constexpr PlotTexts AlphaLabel = Only(text::TypeIErrorRateAlpha);
inline constexpr PlotTexts GoalLabel = Only(text::PowerGoal);
inline constexpr PlotTexts GroupNLabel = Only(text::GroupSampleSizeN);
inline constexpr PlotTexts RequiredNLabel = Only(text::RequiredSampleSizeN);

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
PlotFunction PointOf(WindowHandle parent, const PowerSettings& block) {
  return [parent, design = describe(block)](double x) mutable {
    Vary<vary>(design, x);
    return static_cast<double>(compute(parent, design));
  };
}

}  // namespace poweranalysis
