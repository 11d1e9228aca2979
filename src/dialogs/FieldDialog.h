#pragma once

#include "dialogs/Controls.h"
#include "dialogs/Grids.h"
#include "families/Families.h"
#include "frame/PowerAnalysis.h"

namespace poweranalysis {

// What parameter and results dialogs have in common: a page whose controls show fields of Working
// and store each edit at once, and the page "Settings I/O".
class CFieldDialog : public CPowerAnalysisModelessDialog {
 public:
  CFieldDialog(CAnalysisSupport& analysis,
               const CatalogueDialog& entry,
               Family family,
               std::span<const char* const> fields);

 protected:
  Family family() const { return table_.family; }
  const FamilyTable& table() const { return table_; }
  const FamilyRow& row() const { return RowOf(family()); }
  const CatalogueDialog& entry() const { return entry_; }
  std::span<const char* const> fields() const { return fields_; }
  RecordView View(Instance instance) const { return ViewOf(*Block(), family(), instance); }
  void Copy(Instance from, Instance to) const { View(to).CopyFrom(View(from)); }

  // Hands the start and the commands on, after the host's common handler.
  long EventHandler(const DialogEvent& event) override;
  // What the form shows when the dialog opens; only with a block.
  virtual void ShowOnStart() = 0;
  // The dialog's own commands; only with a block.
  virtual long Command(int control) = 0;
  // The stage to which Back leads.
  virtual int StageBefore() const = 0;

  // Restores Working and leads back.
  long Back();
  // The host asks for the values to be shown again.
  long ShowAgain();

  // Writes Working to the controls.
  void ShowFields();
  // Shows all that follows from Working: the fields, and whatever a dialog shows beside them.
  virtual void ShowValues() { ShowFields(); }
  // Sets the typing hints of the edit controls from Lower and Upper.
  void SetEditLimits();
  // Shows the values again and gives the output back to the dialog.
  void Refresh();
  // Runs the buttons of the settings page; true when the dialog has shown its values again.
  bool SettingsButton(int control);
  // Opens the grid of cell means; true when that is what the button is for.
  bool GridButton(int control);
  // Stores what an edit or a radio button shows; false for a control that shows no field.
  bool StoreField(int control);
  // The checks before a record is accepted: its ranges, and what its family refuses beyond them.
  // Whichever fails shows its message.
  bool InputsPass();
  bool RangesPass();
  // Spec of the page with the fields, its edits in a group of this caption.
  PageSpec FieldsPage(TextId groupCaption) const;

 private:
  bool ChoiceIsServed();
  // The grid whose button the page has; null when it has none.
  const GridRow* GridOfPage() const;
  // Are the counts of the page within their ranges and within the grid? Shows why not.
  bool CountsFit(const GridRow& grid);
  bool SingleCheckPasses(std::string_view field, double value);
  int ControlOf(std::string_view field) const { return ControlOfField(family(), field); }

  const FamilyTable& table_;
  CatalogueDialog entry_;
  std::span<const char* const> fields_;
};

}  // namespace poweranalysis
