#include "desktop/NeighbourPowers.h"

#include <QObject>
#include <algorithm>
#include <cmath>
#include <memory>
#include <optional>

#include "desktop/Strings.h"
#include "families/Families.h"
#include "frame/DefineTask.h"
#include "host/NumberText.h"
#include "settings/PowerSettings.h"

namespace poweranalysis {

namespace {

// The power of a design when its required size is another, as its results dialog would give it; of
// several effects the last. Nothing where the dialog would refuse.
std::optional<double> PowerAt(const FamilyRow& row, double size) {
  PowerSettings block = *Block();
  const RecordView record = ViewOf(block, row.family, Instance::Committed);
  const EffectRow& effect = row.effects.back();
  if (!PutSize(row, record, static_cast<std::int64_t>(size)) ||
      (!row.checksItself && RefusalOf(effect.powerCheck, record, Question::Power))) {
    return std::nullopt;
  }
  SilentProcedureObserver observer;
  const std::unique_ptr<FamilySession> session = row.open(Question::Power);
  session->Take(record);
  const double power = session->Compute(observer).computed.power[row.effects.size() - 1];
  return power == NumericFailure ? MissingValue() : power;
}

// What the required size is called: the sizes of some tests are degrees of freedom.
QString NameOfSize(const FamilyRow& row) {
  const Counts counts = row.sizes.rules[0].counts;
  return counts == Counts::Df ? QStringLiteral("Df") : QStringLiteral("N");
}

// Of a table in sections, the title of the last: the note belongs to its size.
QString LastSection(const SummaryTable& table) {
  for (auto row = table.rows.rbegin(); row != table.rows.rend(); ++row) {
    const bool isTitle = std::all_of(row->values.begin(), row->values.end(), IsMissing);
    if (isTitle && !row->title.empty()) {
      return QObject::tr(" (%1)").arg(ToText(row->title));
    }
  }
  return {};
}

bool Holds(const SummaryTable& table, double value) {
  return std::any_of(table.rows.begin(), table.rows.end(), [value](const TableRow& row) {
    return std::find(row.values.begin(), row.values.end(), value) != row.values.end();
  });
}

}  // namespace

std::vector<QString> NeighbourNote(int task, const SummaryTable& table, int digits) {
  const FamilyTable* family =
      FindFamily(Tasks(ModeSampleSize)[static_cast<std::size_t>(task)].family);
  const FamilyRow* row = family == nullptr ? nullptr : FindFamilyRow(family->family);
  if (row == nullptr || Block() == nullptr || table.rows.empty() ||
      table.rows.back().values.empty()) {
    return {};
  }
  const double size = table.rows.back().values.front();
  if (!std::isfinite(size)) {
    return {};
  }
  const std::optional<double> power = PowerAt(*row, size);
  if (!power || !Holds(table, *power)) {
    return {};
  }
  const std::optional<double> powers[] = {PowerAt(*row, size - 1), power, PowerAt(*row, size + 1)};
  std::vector<QString> note;
  for (int i = 0; i < 3; ++i) {
    constexpr const char* kNeighbours[] = {" \u2212 1", "", " + 1"};
    note.push_back(QObject::tr("Power at %1 = %2%3: %4")
                       .arg(NameOfSize(*row) + QString::fromUtf8(kNeighbours[i]),
                            ToText(FormatCell(size + i - 1)), LastSection(table),
                            powers[i]
                                ? ToText(FormatCell(CellKind::Probability, *powers[i], digits))
                                : QObject::tr("none")));
  }
  return note;
}

}  // namespace poweranalysis
