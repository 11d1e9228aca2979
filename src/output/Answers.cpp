#include "output/Answers.h"

#include <algorithm>
#include <array>

#include "output/SummaryTables.h"

namespace poweranalysis {

namespace {

// What a required size is: the field that takes it, what it counts, which of the sizes of a
// calculation it is, and the group that it is of where two were sought.
struct SoughtSize {
  const char* field;
  const char* counts;
  int index = 0;
  const char* group = "";
};

constexpr int kEveryEffect = -1;

// By the rule that the record chooses; a choice without a rule counts as the first.
std::vector<SoughtSize> SoughtSizes(const FamilyRow& row, const RecordView& record) {
  const SizeRule* chosen = RuleOf(row, record);
  const SizeRule& rule = chosen != nullptr ? *chosen : row.sizes.rules[0];
  if (rule.ratio != nullptr) {
    return {{rule.field, WordOf(Counts::Group1), 0, WordOf(Counts::Group1)},
            {rule.follower, WordOf(Counts::Group2), 1, WordOf(Counts::Group2)}};
  }
  const int index = row.effects.size() > 1 ? kEveryEffect : static_cast<int>(rule.place);
  return {{rule.field, WordOf(rule.counts), index}};
}

const char* EffectOf(const FamilyRow& row, int index) {
  const char* of = row.effects[static_cast<std::size_t>(index)].of;
  return of == nullptr ? "" : of;
}

// A cell of the table that holds a power or a size, and which of several it is.
struct Cell {
  double value;
  int index;
};

std::vector<Cell> CellsOf(const SummaryTable& table,
                          const std::vector<ShownRow>& rows,
                          QuantityKind kind) {
  std::vector<Cell> cells;
  for (std::size_t i = 0; i < std::min(rows.size(), table.rows.size()); ++i) {
    if (rows[i].quantity.kind == kind && !table.rows[i].values.empty()) {
      cells.push_back({table.rows[i].values.front(), rows[i].quantity.index});
    }
  }
  return cells;
}

std::vector<Answer> Sizes(const std::vector<Cell>& cells,
                          const FamilyRow& row,
                          const RecordView& record) {
  std::vector<Answer> answers;
  for (const SoughtSize& size : SoughtSizes(row, record)) {
    // A table of one size shows it in the same row whichever group it is of.
    const int index = cells.size() > 1 ? size.index : 0;
    for (const Cell& cell : cells) {
      if (size.index == kEveryEffect) {
        answers.push_back({size.field, cell.value, size.counts, EffectOf(row, cell.index)});
      } else if (cell.index == index) {
        answers.push_back({size.field, cell.value, size.counts, size.group});
      }
    }
  }
  return answers;
}

std::vector<Answer> Powers(const std::vector<Cell>& cells, const FamilyRow& row) {
  std::vector<Answer> answers;
  answers.reserve(cells.size());
  for (const Cell& cell : cells) {
    answers.push_back({"Power", cell.value, "", EffectOf(row, cell.index)});
  }
  return answers;
}

// --- Limits.

const char* NameOf(Limit limit) {
  // In the order of Limit.
  constexpr std::array kNames = {"Delta",   "Es",    "RMSSE",   "Power",   "N",
                                 "Rho",     "P2",    "P2Bound", "PiExact", "PiApproximate",
                                 "PiCrude", "RMSEA", "Gamma1",  "Gamma2"};
  return kNames[static_cast<std::size_t>(limit)];
}

bool IsLimit(QuantityKind kind) {
  return kind == QuantityKind::LowerLimit || kind == QuantityKind::UpperLimit;
}

// Visits what each row of a finished table shows, with its value.
template <class Visit>
void ForEachRow(const SummaryTable& table, PowerSettings& params, Visit visit) {
  const TableDefinition* definition = FindTableDefinition(table.code);
  if (definition == nullptr) {
    return;
  }
  const std::vector<ShownRow> rows = ShownRows(*definition, params);
  for (std::size_t i = 0; i < std::min(rows.size(), table.rows.size()); ++i) {
    if (!table.rows[i].values.empty()) {
      visit(rows[i].quantity, table.rows[i].values.front());
    }
  }
}

double ShownValue(double value) { return value == NumericFailure ? MissingValue() : value; }

}  // namespace

std::vector<Answer> AnswersOf(const FamilyRow& row,
                              Question question,
                              const RecordView& record,
                              const Computed& computed) {
  std::vector<Cell> cells;
  const std::size_t sizes = row.effects.size() > 1 ? row.effects.size() : 2;
  const std::size_t count = question == Question::Power ? row.effects.size() : sizes;
  for (std::size_t i = 0; i < count; ++i) {
    const double value =
        question == Question::Power ? computed.power[i] : static_cast<double>(computed.size[i]);
    cells.push_back({ShownValue(value), static_cast<int>(i)});
  }
  return question == Question::Power ? Powers(cells, row) : Sizes(cells, row, record);
}

std::vector<Answer> AnswersOf(const SummaryTable& table, PowerSettings& params) {
  const TableDefinition* definition = FindTableDefinition(table.code);
  const FamilyRow* row = definition == nullptr ? nullptr : FindFamilyRow(definition->family);
  if (row == nullptr) {
    return {};
  }
  const std::vector<ShownRow> rows = ShownRows(*definition, params);
  const std::vector<Cell> sizes = CellsOf(table, rows, QuantityKind::Size);
  if (!sizes.empty()) {
    return Sizes(sizes, *row, ViewOf(params, definition->family, Instance::Committed));
  }
  return Powers(CellsOf(table, rows, QuantityKind::Power), *row);
}

std::vector<NamedLimits> LimitsOf(const SummaryTable& table, PowerSettings& params) {
  std::vector<NamedLimits> limits;
  ForEachRow(table, params, [&limits](const Quantity& quantity, double value) {
    if (!IsLimit(quantity.kind)) {
      return;
    }
    const char* name = NameOf(static_cast<Limit>(quantity.index));
    if (limits.empty() || limits.back().name != name) {
      limits.push_back({name, MissingValue(), MissingValue()});
    }
    NamedLimits& pair = limits.back();
    (quantity.kind == QuantityKind::LowerLimit ? pair.lower : pair.upper) = value;
  });
  return limits;
}

std::optional<double> PValueOf(const SummaryTable& table, PowerSettings& params) {
  std::optional<double> found;
  ForEachRow(table, params, [&found](const Quantity& quantity, double value) {
    if (quantity.kind == QuantityKind::PValue) {
      found = value;
    }
  });
  return found;
}

}  // namespace poweranalysis
