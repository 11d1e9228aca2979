#include "dialogs/ParameterDialog.h"

namespace poweranalysis {

CParameterDialog::CParameterDialog(CAnalysisSupport& analysis,
                                   const CatalogueDialog& entry,
                                   const ParameterDialogTable& rows)
    : CFieldDialog(analysis, entry, rows.family, rows.fields) {}

DialogSpec CParameterDialog::Spec() const {
  DialogSpec spec;
  spec.className = entry().dialog->className;
  spec.resource = resource();
  spec.title = LoadText(entry().dialog->title);
  spec.defaultButton = ControlAccept;
  spec.frame = {ButtonSpec(ControlAccept, "OK", text::ButtonOK),
                ButtonSpec(ControlBack, "Cancel", text::ButtonBack),
                ButtonSpec(ControlOutputOptions, "Options", text::ButtonOptions),
                ButtonSpec(ControlRestoreDefaults, "RestoreDefaults", text::ButtonRestoreDefaults)};
  spec.pages = {FieldsPage(text::GroupTestParameters), SettingsPageSpec()};
  return spec;
}

void CParameterDialog::ShowOnStart() {
  Copy(Instance::Committed, Instance::Working);
  ShowFields();
  SetEditLimits();
}

long CParameterDialog::Command(int control) {
  switch (control) {
    case ControlAccept:
    case ControlAcceptToo:
      return Accept();
    case ControlBack:
    case ControlBackToo:
      return Back();
    case ControlRestoreDefaults:
    case ControlRestoreDefaultsToo:
      return RestoreDefaults();
    case ControlRefresh:
      return ShowAgain();
    default:
      return StoreField(control) ? 1 : 0;
  }
}

long CParameterDialog::Accept() {
  if (!InputsPass()) {
    return 0;
  }
  Copy(Instance::Working, Instance::Committed);
  ExitDialog(StageResult, ExitForward, 0);
  return 0;
}

long CParameterDialog::RestoreDefaults() {
  Copy(Instance::Defaults, Instance::Working);
  ShowFields();
  return 1;
}

}  // namespace poweranalysis
