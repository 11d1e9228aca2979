#include "dialogs/IntervalDialog.h"

#include "dialogs/Speaker.h"

namespace poweranalysis {

CIntervalDialog::CIntervalDialog(CAnalysisSupport& analysis,
                                 const CatalogueDialog& entry,
                                 const IntervalDialogTable& rows)
    : CFieldDialog(analysis, entry, rows.family, rows.fields), rows_(rows) {}

DialogSpec CIntervalDialog::Spec() const {
  DialogSpec spec;
  spec.className = entry().dialog->className;
  spec.resource = resource();
  spec.title = LoadText(entry().dialog->title);
  spec.defaultButton = ControlAccept;
  // Named as on results dialogs, so that a script asks for the table in the same word.
  spec.frame = {ButtonSpec(ControlAccept, "Summary", text::ButtonCompute),
                ButtonSpec(ControlBack, "Cancel", text::ButtonBack),
                ButtonSpec(ControlOutputOptions, "Options", text::ButtonOptions),
                ButtonSpec(ControlRestoreDefaults, "RestoreDefaults", text::ButtonRestoreDefaults)};
  PageSpec page = FieldsPage(text::GroupTestParameters);
  for (ControlSpec& control : page.controls) {
    control.readOnly = rows_.readOnly != nullptr && control.name == rows_.readOnly;
  }
  if (rows_.hint.text != text::None) {
    page.controls.push_back(
        {ControlHint, ControlKind::HelpText, "Hint", LoadText(rows_.hint.text), {}, {}, 0});
  }
  spec.pages = {std::move(page), SettingsPageSpec()};
  return spec;
}

void CIntervalDialog::ShowOnStart() {
  Copy(Instance::Committed, Instance::Working);
  ShowValues();
  SetEditLimits();
}

void CIntervalDialog::ShowValues() {
  CFieldDialog::ShowValues();
  ShowHint();
}

void CIntervalDialog::ShowHint() {
  if (rows_.hint.text != text::None) {
    const double value = View(Instance::Working).Get(*table().Find(rows_.hint.field));
    form().ShowControl(ControlHint, value == rows_.hint.value);
  }
}

long CIntervalDialog::Command(int control) {
  switch (control) {
    case ControlAccept:
    case ControlAcceptToo:
      return Estimate();
    case ControlBack:
    case ControlBackToo:
      return Back();
    case ControlRestoreDefaults:
    case ControlRestoreDefaultsToo:
      Copy(Instance::Defaults, Instance::Working);
      ShowValues();
      return 1;
    case ControlRefresh:
      return ShowAgain();
    default:
      break;
  }
  const bool stored = StoreField(control);
  ShowHint();
  return stored ? 1 : 0;
}

long CIntervalDialog::Estimate() {
  Host& host = analysis().host();
  if (!RangesPass()) {
    host.RestoreResults();
    return 0;
  }
  if (row().prepareInterval != nullptr) {
    row().prepareInterval(View(Instance::Working));
    ShowValues();
  }
  Copy(Instance::Working, Instance::Committed);
  HostObserver observer(window(), HostObserver::Bar::OfSearches);
  const RecordView inputs = View(Instance::Committed);
  const Outcome outcome = IntervalOf(row(), inputs, observer);
  observer.Tell(outcome.refusal);
  std::vector<double> values = TableValues(ShownRows(Table(), inputs), inputs, outcome.computed);
  ShowSummaryTable(values, Table().code, &sheet_, *Block());
  host.RestoreResults();
  return 1;
}

}  // namespace poweranalysis
