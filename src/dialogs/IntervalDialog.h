#pragma once

#include "dialogs/FieldDialog.h"
#include "output/SummaryTables.h"

namespace poweranalysis {

// A remark on a page, shown while a field has a value.
struct PageHint {
  TextId text = text::None;
  const char* field = nullptr;
  double value = 0;
};

// One interval dialog: the fields of its page in tab order, and what its family does besides.
struct IntervalDialogTable {
  Family family;
  std::span<const char* const> fields;
  const char* readOnly = nullptr;  // a field that the page only shows
  PageHint hint{};
};

// Shows what was observed, estimates the limits from it and sends them to the host's output; it
// stays open. One engine for all families.
class CIntervalDialog : public CFieldDialog {
 public:
  CIntervalDialog(CAnalysisSupport& analysis,
                  const CatalogueDialog& entry,
                  const IntervalDialogTable& rows);

  DialogSpec Spec() const override;
  // Handle of the sheet that the last estimation sent; 0 before the first.
  int sheet() const { return sheet_; }

 protected:
  void ShowOnStart() override;
  void ShowValues() override;
  long Command(int control) override;
  int StageBefore() const override { return StageStartup; }

 private:
  long Estimate();
  void ShowHint();
  const TableDefinition& Table() const { return *FindTable(family(), ModeInterval); }

  const IntervalDialogTable& rows_;
  int sheet_ = 0;
};

}  // namespace poweranalysis
