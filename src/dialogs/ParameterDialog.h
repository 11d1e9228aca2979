#pragma once

#include "dialogs/FieldDialog.h"

namespace poweranalysis {

// One parameter dialog of a power or sample size task: the fields of its page, in tab order.
struct ParameterDialogTable {
  Family family;
  int mode;
  std::span<const char* const> fields;
};

// Shows the inputs of a task, keeps them in Working, and leads forward to the results or back to
// the startup. One engine for all families.
class CParameterDialog : public CFieldDialog {
 public:
  CParameterDialog(CAnalysisSupport& analysis,
                   const CatalogueDialog& entry,
                   const ParameterDialogTable& rows);

  DialogSpec Spec() const override;

 protected:
  void ShowOnStart() override;
  long Command(int control) override;
  int StageBefore() const override { return StageStartup; }

 private:
  long Accept();
  long RestoreDefaults();
};

}  // namespace poweranalysis
