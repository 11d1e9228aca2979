#pragma once

#include <array>
#include <functional>
#include <memory>
#include <span>

#include "families/FamilySession.h"

// One table: its row for a test family says what can be asked of the family, what its sizes count,
// what its effect is and how it is computed. Whoever wants the power of a record asks here.
namespace poweranalysis {

// --- Sizes.

enum class Counts { Observations, PerGroup, Group1, Group2, PerCell, Pairs, Df, Df1, Df2 };

// "per group"; "total" for the observations of a family with one group.
const char* WordOf(Counts counts);

// A size that can be sought, and what of a design follows from it.
struct SizeRule {
  Counts counts;
  const char* field;               // the size is its value
  const char* follower = nullptr;  // of the other group, which follows,
  const char* ratio = nullptr;     // as the same number, or the part of it that this field divides
  std::size_t place = 0;           // of the size among those of Computed
};

// The rules by the value of the field that chooses; with one rule there is no choice.
struct SizeRules {
  const char* choice = nullptr;
  std::array<SizeRule, 4> rules{};
  int count = 1;
  // Is a choice that has no rule refused before the search, as out of range? Otherwise the search
  // finds nothing.
  bool refusesOthers = false;
};

// This many groups of one size.
struct GroupRun {
  std::int64_t size = 0;
  std::int64_t times = 0;
};
using Groups = std::array<GroupRun, 2>;

// --- Effects.

struct NullCheck {
  static constexpr std::int16_t FormOfRecord = -1;

  double (*effect)(const RecordView& record) = nullptr;  // none: nothing is checked
  double tolerance = 0;              // a search also refuses an effect nearer to the null than that
  std::int16_t form = FormOfRecord;  // the field H0Type, in the families that have it
};

// An effect of a family: how it is measured, the field that is solved for it, and what that field
// is under the null hypothesis.
struct EffectRow {
  const char* of;    // "row", "column", "interaction"; null where the family has one effect
  const char* name;  // of the measure
  const char* solved;
  const char* nullField;  // the field that the solved one equals under the null hypothesis, or
  double nullValue;       // without one this value
  bool hasBelow;          // can the solved field be on either side of its null value?
  double (*measure)(const RecordView& record);
  // The value of the solved field that gives the measure, all else as in the record.
  double (*solve)(const RecordView& record, double measure);
  NullCheck powerCheck;
  NullCheck sizeCheck;

  const NullCheck& CheckOf(Question question) const {
    return question == Question::Power ? powerCheck : sizeCheck;
  }
};

// --- Algorithms.

// How a family computes under a value of the field that chooses; without a field it is the one way.
struct AlgorithmRow {
  const char* field;
  int value;
  const char* name;
  const char* reference;
};

// --- The table.

struct FamilyRow {
  Family family;
  SizeRules sizes;
  Groups (*groups)(const RecordView& record);
  std::span<const EffectRow> effects;
  // Does the calculation check the effects one by one, so that a true null hypothesis of one leaves
  // the others?
  bool checksItself;
  std::span<const AlgorithmRow> algorithms;
  std::unique_ptr<FamilySession> (*open)(Question question);
  // The confidence limits from what the record says was observed; null in a family without.
  Outcome (*interval)(const RecordView& record, ProcedureObserver& observer) = nullptr;
  // What follows from the inputs alone; null where there is nothing.
  void (*derive)(const RecordView& record, Computed& derived) = nullptr;
  // What the inputs are refused for beyond their ranges; null where there is nothing.
  Refusal (*check)(const RecordView& record) = nullptr;
  // What an interval changes of its inputs before it is computed; null where there is nothing.
  void (*prepareInterval)(const RecordView& record) = nullptr;
};

// All families, in the order of the block.
std::span<const std::reference_wrapper<const FamilyRow>> FamilyRows();
// Null for a calculator's record.
const FamilyRow* FindFamilyRow(Family family);
// Of a family that has one.
const FamilyRow& RowOf(Family family);

// --- What follows from a row.

// The rule that the record chooses, or null for a choice that nothing serves.
const SizeRule* RuleOf(const FamilyRow& row, const RecordView& record);
// The field by whose upper bound a search is limited.
const Field& LimitField(const FamilyRow& row);
// Makes `size` the size of the record, by the rule that it chooses. False without a rule, and where
// a field's range does not hold its size.
bool PutSize(const FamilyRow& row, const RecordView& record, std::int64_t size);
// All observations of a record: the sum over its groups.
std::int64_t TotalOf(const FamilyRow& row, const RecordView& record);

// What the solved field of an effect is under the null hypothesis.
double NullValueOf(const EffectRow& effect, const RecordView& record);
// Sets the solved field so that the effect has this measure. An input's bounds are not looked at.
void PutEffect(const EffectRow& effect, const RecordView& record, double measure);
// The refusal of the effect's null hypothesis, before a power or a search; empty when it passes.
Refusal RefusalOf(const NullCheck& check, const RecordView& record, Question question);

// --- Intervals.

// The third thing that a family can be asked. Not good in a family that has no interval; otherwise
// there is always something to show: a limit that could not be had is missing, and the observer has
// heard why where there is something to say.
Outcome IntervalOf(const FamilyRow& row, const RecordView& record, ProcedureObserver& observer);

// Is every keyed field within its range?
bool RangesHold(const RecordView& record);

}  // namespace poweranalysis
