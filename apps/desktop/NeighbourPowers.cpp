#include "desktop/NeighbourPowers.h"

#include <QObject>
#include <algorithm>
#include <cmath>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <thread>

#include "desktop/Strings.h"
#include "frame/DefineTask.h"
#include "host/HeadlessHost.h"
#include "host/NumberText.h"
#include "module/PowerAnalysisModule.h"
#include "settings/PowerSettings.h"

namespace poweranalysis {

namespace {

using FieldValues = std::map<std::string, double>;

std::vector<ControlSpec> ControlsOf(const HeadlessHost& host) {
  std::vector<ControlSpec> controls;
  if (host.form() != nullptr) {
    for (const PageSpec& page : host.form()->spec().pages) {
      controls.insert(controls.end(), page.controls.begin(), page.controls.end());
    }
  }
  return controls;
}

// An analysis of its own with the parameter dialog of a task open.
class PowerRun {
 public:
  PowerRun(int mode, int row) : analysis_(Zlv6NewAnalysis()) {
    if (analysis_ != nullptr) {
      host_.Start(*analysis_);
      host_.Select(ControlModes, mode);
      host_.Select(ControlTasks, row);
      host_.Press(ControlOk);
    }
  }

  std::vector<ControlSpec> Controls() const { return ControlsOf(host_); }

  void Put(const ControlSpec& control, double value) {
    if (control.kind == ControlKind::CheckBox) {
      host_.form()->CheckDlgButton(control.number, value != 0);
      host_.Press(control.number);
    } else if (control.kind == ControlKind::IntEdit || control.kind == ControlKind::RealEdit) {
      host_.Type(control.number, FormatShortest(value));
    } else if (control.kind == ControlKind::Radio && control.value == value) {
      host_.Press(control.number);
    }
  }

  // The last value of the table that OK and Calculate lead to.
  std::optional<double> Calculate() {
    host_.Press(ControlOk);
    host_.Press(ControlOk);
    for (const WorkbookItem& item : host_.workbook().items) {
      const auto* table = std::get_if<SummaryTable>(&item);
      if (table != nullptr && !table->rows.empty() && !table->rows.back().values.empty()) {
        return table->rows.back().values.front();
      }
    }
    return std::nullopt;
  }

 private:
  HeadlessHost host_;
  std::unique_ptr<CPowerAnalysis> analysis_;
};

bool EndsWith(const std::string& text, const std::string& end) {
  return text.size() >= end.size() && text.compare(text.size() - end.size(), end.size(), end) == 0;
}

// The fields of the power dialog that the required size stands for. Where the task chooses which of
// two sizes varies, the choice's value 0 means both, 1 the first and 2 the second; otherwise they
// are the whole numbers that only the power dialog shows.
std::set<std::string> SizeFields(const std::vector<ControlSpec>& power,
                                 const std::vector<ControlSpec>& size,
                                 const FieldValues& values) {
  std::set<std::string> known;
  std::optional<int> vary;
  for (const ControlSpec& control : size) {
    known.insert(control.name);
    if (EndsWith(control.name, "ToVary") && values.count(control.name) != 0) {
      vary = static_cast<int>(values.at(control.name));
    }
  }
  std::set<std::string> fields;
  for (const ControlSpec& control : power) {
    if (control.kind != ControlKind::IntEdit) {
      continue;
    }
    const bool first = EndsWith(control.name, "1");
    const bool second = EndsWith(control.name, "2");
    const bool varied = vary && ((first && *vary != 2) || (second && *vary != 1));
    if (vary ? varied : known.count(control.name) == 0) {
      fields.insert(control.name);
    }
  }
  return fields;
}

std::optional<double> PowerAt(int row, double size, const FieldValues& values) {
  const std::vector<ControlSpec> sizeControls = PowerRun(ModeSampleSize, row).Controls();
  PowerRun run(ModePower, row);
  const std::vector<ControlSpec> controls = run.Controls();
  const std::set<std::string> sizes = SizeFields(controls, sizeControls, values);
  if (sizes.empty()) {
    return std::nullopt;
  }
  for (const ControlSpec& control : controls) {
    const auto value = values.find(control.name);
    if (sizes.count(control.name) != 0) {
      run.Put(control, size);
    } else if (value != values.end()) {
      run.Put(control, value->second);
    }
  }
  return run.Calculate();
}

FieldValues CommittedValues(const FamilyTable& table) {
  FieldValues values;
  const RecordView committed = ViewOf(*Block(), table.family, Instance::Committed);
  for (const Field& field : table.fields) {
    values[field.name] = committed.Get(field);
  }
  return values;
}

// What the required size is called: the sizes of some tests are degrees of freedom.
QString NameOfSize(int row) {
  const std::vector<ControlSpec> controls = PowerRun(ModePower, row).Controls();
  const bool isDf = std::any_of(controls.begin(), controls.end(), [](const ControlSpec& control) {
    return control.name == "DegreesOfFreedom" || control.name == "Df1";
  });
  const bool isN = std::any_of(controls.begin(), controls.end(), [](const ControlSpec& control) {
    return control.name.rfind("SampleSize", 0) == 0;
  });
  return isDf && !isN ? QStringLiteral("Df") : QStringLiteral("N");
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

std::vector<QString> NeighbourNote(int row, const SummaryTable& table, int digits) {
  const FamilyTable* family =
      FindFamily(Tasks(ModeSampleSize)[static_cast<std::size_t>(row)].family);
  if (family == nullptr || Block() == nullptr || table.rows.empty() ||
      table.rows.back().values.empty()) {
    return {};
  }
  const double size = table.rows.back().values.front();
  if (!std::isfinite(size)) {
    return {};
  }
  const FieldValues values = CommittedValues(*family);
  std::optional<double> powers[3];
  QString name;
  // The state of an analysis belongs to its thread: the runs have one of their own.
  std::thread runs([&] {
    powers[1] = PowerAt(row, size, values);
    name = NameOfSize(row);
    if (powers[1] && Holds(table, *powers[1])) {
      powers[0] = PowerAt(row, size - 1, values);
      powers[2] = PowerAt(row, size + 1, values);
    }
  });
  runs.join();
  if (!powers[1] || !Holds(table, *powers[1])) {
    return {};
  }
  std::vector<QString> note;
  for (int i = 0; i < 3; ++i) {
    const std::optional<double>& power = powers[i];
    constexpr const char* kNeighbours[] = {" \u2212 1", "", " + 1"};
    note.push_back(QObject::tr("Power at %1 = %2%3: %4")
                       .arg(name + QString::fromUtf8(kNeighbours[i]),
                            ToText(FormatCell(size + i - 1)), LastSection(table),
                            power ? ToText(FormatCell(CellKind::Probability, *power, digits))
                                  : QObject::tr("none")));
  }
  return note;
}

}  // namespace poweranalysis
