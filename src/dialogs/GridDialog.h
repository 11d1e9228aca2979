#pragma once

#include "dialogs/Grids.h"
#include "frame/PowerAnalysis.h"
#include "host/Sheet.h"

namespace poweranalysis {

// Cell means and what follows from them: types, pastes, copies, opens and shows them, and takes
// them to the page below on OK. It works on the scratch record of its family; Back leaves the page
// as it was. One engine for all grids.
class CGridDialog : public CPowerAnalysisModalDialog {
 public:
  CGridDialog(CAnalysisSupport& analysis, const GridRow& grid);

  DialogSpec Spec() const override;

 protected:
  long EventHandler(const DialogEvent& event) override;

 private:
  long Command(int control);
  void OpenScratch();
  void TakePage();
  long Accept();
  long Paste();
  long CopyOut();
  long OpenFile();
  long Create();
  bool TakeSheet(const Sheet& sheet);
  bool StoreCell(int control);
  void StoreSigma();
  // Keeps a new size and its standard deviation, and shows all.
  void Loaded(GridSize size);
  void ShowAll();
  void ShowSigma();
  void ShowMeasures();
  template <class Visit>
  void ForEachCell(GridSize size, Visit visit) const;

  double& Cell(std::int32_t row, std::int32_t column) const {
    return grid_.cell(*Block(), row, column);
  }
  GridSize size() const { return grid_.SizeOf(grid_.Scratch()); }
  const Field& Sigma() const { return *TableOf(grid_.family).Find("Sigma"); }

  const GridRow& grid_;
};

}  // namespace poweranalysis
