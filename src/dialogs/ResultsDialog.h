#pragma once

#include "dialogs/ChartNames.h"
#include "dialogs/FieldDialog.h"
#include "families/Families.h"
#include "output/Charts.h"
#include "output/SummaryTables.h"

namespace poweranalysis {

// The standardized effect among the slots of a text.
inline constexpr Slot EffectSlot = quantity::kEffect;

// A text of a chart and what fills its slots.
struct PlotText {
  TextId id = text::None;
  std::array<Slot, 6> slots{};
};

// Alternatives of a text by the value of a field; without a field the first is all.
struct PlotTexts {
  const char* byField = nullptr;
  std::array<PlotText, 4> alternatives{};
};

// The axis along which a plot varies its input: three fields of the results page.
struct PlotAxis {
  const char* start;
  const char* end;
  const char* intervals;
  bool whole;  // sample sizes and degrees of freedom
};

// One plot of a results dialog. Plots with the same name are neighbours, drawn by one press of its
// button.
struct PlotRow {
  Varied varied;
  ChartName chart;
  int kind;
  PlotAxis axis;
  PlotTexts title;  // third title line
  PlotTexts xLabel;
  PlotTexts yLabel;
  std::size_t effect = 0;  // of a family with several
};

// One results dialog.
struct ResultsDialogTable {
  Family family;
  int mode;
  TextId calculateCaption;
  std::span<const char* const> fields;  // of the page: the ranges of the charts
  std::span<const PlotRow> plots;
  PlotTexts familyTitle{};  // second title line; without one the task's name and the hypothesis
  FailedPointRule failedPoint = FailedPointRule::GoOn;
};

// The buttons of a results dialog's charts, in their order.
struct ChartButton {
  int control;
  ChartName chart;
};
std::vector<ChartButton> ChartButtons(const ResultsDialogTable& dialog);

// Shows a summary of the parameters, calculates, draws charts, and sends all of it to the host's
// output. One engine for all families.
class CResultsDialog : public CFieldDialog {
 public:
  CResultsDialog(CAnalysisSupport& analysis,
                 const CatalogueDialog& entry,
                 const ResultsDialogTable& rows);

  DialogSpec Spec() const override;
  // Handle of the sheet that the last calculation sent; 0 before the first.
  int sheet() const { return sheet_; }

 protected:
  void ShowOnStart() override;
  void ShowValues() override;
  long Command(int control) override;
  int StageBefore() const override { return StageCompute; }

 private:
  long Calculate();
  Outcome Compute();
  bool HoldsResult(const Outcome& outcome) const;
  long ChangeParams();
  Question question() const;
  // A session that has taken the Committed record over.
  std::unique_ptr<FamilySession> Session() const;
  // What follows from the inputs alone.
  Computed DerivedFrom(const RecordView& record) const;
  bool NullHypothesisRefuses(std::size_t effect) const;
  long DrawPlotsOf(const ChartName& chart);
  PlotOutcome DrawPlotOf(const PlotRow& plot);
  // Its table, and the rows that it shows.
  const TableDefinition& Table() const;
  std::vector<ShownRow> Rows() const;
  std::string FrameText() const;
  void ShowSummary();
  void Commit();

  const ResultsDialogTable& rows_;
  int sheet_ = 0;
};

}  // namespace poweranalysis
