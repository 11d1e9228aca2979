#pragma once

#include <array>
#include <cstdint>
#include <span>
#include <string>

#include "families/Computed.h"
#include "settings/PowerSettings.h"

// Narrative reports: paragraphs, one call each, written after a summary table at the host's highest
// output detail. The paragraphs of a family and the slots of each are rows of a table.
namespace poweranalysis {

// Sends a finished paragraph. 0 when it was sent, 1 when the output routing or the level of detail
// refused it; asked afresh for every paragraph.
int EmitReportParagraph(const std::string& text);

// "80.00%": "%-5.2f%%" of the power times 100, or five dashes for a failed power.
std::string FormatPowerText(double power);
// The size, or five dashes for a failed size.
std::string FormatSizeText(std::int64_t size);

// The sentence on the tails of the test by hypothesis form; text::None for form 3 and beyond.
TextId TailSentence(int h0Type);

// What fills a slot of a paragraph.
enum class SlotKind {
  Real,           // a field of the Committed record, %g
  Whole,          // a field of the Committed record, %ld
  Difference,     // of two fields, %g
  GoalPercent,    // PowerGoal times 100
  PowerText,      // of power[index]
  SizeText,       // of size[index]
  SizeNumber,     // size[index] as a whole number
  ModelText,      // "Fixed Effects" or "Random Effects"
  EffectVariance  // square of the effect times square of sigma
};

struct Slot {
  SlotKind kind;
  const char* field = nullptr;  // of the record
  const char* other = nullptr;  // second field of a difference
  int index = 0;
};

enum class ReportKind { Power = 1, Size = 2 };

// One paragraph: where it stands in which report, when, and what fills it. text::None stands for
// the tail sentence.
struct ReportRow {
  unsigned reports;  // bits of ReportKind
  TextId id;
  std::array<Slot, 7> slots{};  // up to the first without a kind
  int slotCount = 0;
  const char* whenField = nullptr;  // only while this field has the value,
  int whenValue = 0;
  bool whenOther = false;  // or only while it has another one
};

// The rows of a family's reports, in the order of emission; empty for a family without reports.
std::span<const ReportRow> ReportRows(Family family);

// Writes the report of a family from its Committed record and the computed numbers.
void EmitReport(Family family, ReportKind kind, const Computed& numbers, PowerSettings& params);

}  // namespace poweranalysis
