#include "families/Families.h"

#include <algorithm>
#include <vector>

#include "families/SessionOf.h"

namespace poweranalysis {

const char* WordOf(Counts counts) {
  constexpr std::array<const char*, 9> kWords = {
      "total", "per group", "group 1", "group 2", "per cell", "pairs", "df", "df1", "df2"};
  return kWords[static_cast<std::size_t>(counts)];
}

static_assert(NotComputed == NumericFailure, "an answer not computed is one that failed");

namespace {

// By the number of the family; null for a calculator's record.
const std::vector<const FamilyRow*>& RowsByFamily() {
  static const std::vector<const FamilyRow*> rows = [] {
    std::vector<const FamilyRow*> all(FamilyTables().size());
    for (const auto& source : {TTestRows(), AnovaRows(), VarianceRows(), CorrelationRows(),
                               ProportionRows(), SurvivalRows(), ModelFitRows()}) {
      for (const FamilyRow& row : source) {
        all[static_cast<std::size_t>(row.family)] = &row;
      }
    }
    return all;
  }();
  return rows;
}

}  // namespace

std::span<const std::reference_wrapper<const FamilyRow>> FamilyRows() {
  static const std::vector<std::reference_wrapper<const FamilyRow>> rows = [] {
    std::vector<std::reference_wrapper<const FamilyRow>> all;
    for (const FamilyRow* row : RowsByFamily()) {
      if (row != nullptr) {
        all.emplace_back(*row);
      }
    }
    return all;
  }();
  return rows;
}

const FamilyRow* FindFamilyRow(Family family) {
  return RowsByFamily()[static_cast<std::size_t>(family)];
}

const FamilyRow& RowOf(Family family) { return *FindFamilyRow(family); }

// --- Sizes.

namespace {

double Value(const RecordView& record, const char* field) {
  return record.Get(*record.table().Find(field));
}

// Sets a size; false where its range does not hold it.
bool PutWithin(const RecordView& record, const char* name, std::int64_t size) {
  const Field& field = *record.table().Find(name);
  const auto value = static_cast<double>(size);
  if (!WithinRange(field, value)) {
    return false;
  }
  record.Set(field, value);
  return true;
}

// The other group beside one of this size.
std::int64_t FollowerOf(const SizeRule& rule, const RecordView& record, std::int64_t size) {
  return rule.ratio == nullptr
             ? size
             : static_cast<std::int64_t>(static_cast<double>(size) / Value(record, rule.ratio));
}

}  // namespace

const SizeRule* RuleOf(const FamilyRow& row, const RecordView& record) {
  const SizeRules& sizes = row.sizes;
  const int choice = sizes.choice == nullptr ? 0 : static_cast<int>(Value(record, sizes.choice));
  return choice >= 0 && choice < sizes.count ? &sizes.rules[static_cast<std::size_t>(choice)]
                                             : nullptr;
}

const Field& LimitField(const FamilyRow& row) {
  return *TableOf(row.family).Find(row.sizes.rules[0].field);
}

bool PutSize(const FamilyRow& row, const RecordView& record, std::int64_t size) {
  const SizeRule* rule = RuleOf(row, record);
  return rule != nullptr && PutWithin(record, rule->field, size) &&
         (rule->follower == nullptr ||
          PutWithin(record, rule->follower, FollowerOf(*rule, record, size)));
}

std::int64_t TotalOf(const FamilyRow& row, const RecordView& record) {
  std::int64_t total = 0;
  for (const GroupRun& run : row.groups(record)) {
    total += run.size * run.times;
  }
  return total;
}

// --- Effects.

double NullValueOf(const EffectRow& effect, const RecordView& record) {
  return effect.nullField == nullptr ? effect.nullValue : Value(record, effect.nullField);
}

void PutEffect(const EffectRow& effect, const RecordView& record, double measure) {
  record.Set(*record.table().Find(effect.solved), effect.solve(record, measure));
}

Refusal RefusalOf(const NullCheck& check, const RecordView& record, Question question) {
  Refusal refusal;
  if (check.effect != nullptr) {
    const std::int16_t form = check.form == NullCheck::FormOfRecord
                                  ? static_cast<std::int16_t>(Value(record, "H0Type"))
                                  : check.form;
    const TrueNull trueNull =
        question == Question::RequiredSize ? TrueNull::WithinTolerance : TrueNull::Exactly;
    NullHypothesisCheck(check.effect(record), form, check.tolerance, trueNull, refusal);
  }
  return refusal;
}

Outcome IntervalOf(const FamilyRow& row, const RecordView& record, ProcedureObserver& observer) {
  return row.interval == nullptr ? Outcome{} : row.interval(record, observer);
}

bool RangesHold(const RecordView& record) {
  const std::span<const Field> fields = record.table().fields;
  return std::all_of(fields.begin(), fields.end(), [&](const Field& field) {
    return !field.keyed() || WithinRange(field, record.Get(field));
  });
}

}  // namespace poweranalysis
