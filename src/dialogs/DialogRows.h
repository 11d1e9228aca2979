#pragma once

#include "dialogs/ResultsDialog.h"

// The axes and texts that the rows of results dialogs share.
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

}  // namespace poweranalysis
