#pragma once

#include <array>
#include <span>
#include <string>

#include "output/Quantities.h"

// Narrative reports: paragraphs, one call each, written after a summary table at the host's highest
// output detail. The paragraphs of a family and the slots of each are rows of a table.
namespace poweranalysis {

// Sends a finished paragraph. 0 when it was sent, 1 when the output routing or the level of detail
// refused it; asked afresh for every paragraph.
int EmitReportParagraph(const std::string& text);

// The sentence on the tails of the test by hypothesis form.
// Kept: a null hypothesis with "<=" is rejected by a positive deviation, one with ">=" by a
// negative. Form 3 has no sentence.
inline constexpr ChosenText TailSentence = {
    "H0Type", {text::TailTwoSided, text::TailPositive, text::TailNegative, text::None}};

enum class ReportKind { Power = 1, Size = 2 };

// One paragraph: where it stands in which report, what fills it, and when.
struct ReportRow {
  unsigned reports;  // bits of ReportKind
  ChosenText text;   // without a text no paragraph
  std::array<Slot, 7> slots{};
  int slotCount = 0;
  Condition when{};
};

// The rows of a family's reports, in the order of emission; empty for a family without reports.
std::span<const ReportRow> ReportRows(Family family);

// Writes the report of a family from its Committed record and the computed numbers.
void EmitReport(Family family, ReportKind kind, const Computed& numbers, PowerSettings& params);

}  // namespace poweranalysis
