#pragma once

#include "dialogs/FieldDialog.h"
#include "output/Charts.h"
#include "output/SummaryTables.h"
#include "procedures/ProcedureObserver.h"

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

// What guards a calculation or a plot: the effect of a record under its null hypothesis.
struct NullCheckRow {
  static constexpr std::int16_t FormOfRecord = -1;

  double (*effect)(const RecordView& record) = nullptr;  // none: nothing is checked
  double tolerance = 0;
  bool useTolerance = false;  // a search also refuses an effect too small to be worth searching
  std::int16_t form = FormOfRecord;  // the field H0Type, in the families that have it
};

// One plot of a results dialog. Neighbours of one caption are drawn by one press of their button.
struct PlotRow {
  TextId caption;  // of its button; the plot's name is made from it
  int kind;
  PlotAxis axis;
  PlotTexts title;  // third title line
  PlotTexts xLabel;
  PlotTexts yLabel;
  bool fixesEffect;  // then a true null hypothesis ends the plot before it starts
  FailedPointRule failedPoint;
  // The value at a point, computed from Committed with one input varied. The observer outlives the
  // plot, which has the only bar.
  PlotFunction (*point)(ProcedureObserver& observer, const PowerSettings& block);
  NullCheckRow nullCheck{};  // of its own; without one that of the dialog
};

// What a calculation gives: whether there is anything to send, and the numbers.
struct CalculationOutcome {
  bool good = false;
  Computed computed;
};

// One results dialog.
struct ResultsDialogTable {
  Family family;
  int mode;
  int tableCode;
  TextId calculateCaption;
  std::span<const char* const> fields;  // of the page: the ranges of the charts
  NullCheckRow nullCheck;
  CalculationOutcome (*calculate)(ProcedureObserver& observer, const PowerSettings& block);
  std::span<const PlotRow> plots;
  PlotTexts familyTitle{};  // second title line; without one the task's name and the hypothesis
  // A check beyond the ranges, made before every command; it shows its own message and gives false.
  bool (*extraCheck)(WindowHandle parent, PowerSettings& block) = nullptr;
  // What follows from the inputs alone, beside the effect of the null check: shown when the dialog
  // opens.
  void (*derive)(const RecordView& record, Computed& derived) = nullptr;
};

// "Power vs. N1" as "power-vs-n1".
std::string PlotName(TextId caption);

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
  CalculationOutcome Compute();
  bool HoldsResult(const CalculationOutcome& outcome) const;
  long ChangeParams();
  bool InputsPass();
  bool NullHypothesisRefuses(const NullCheckRow& check) const;
  long DrawPlotsOf(TextId caption);
  PlotOutcome DrawPlotOf(const PlotRow& plot);
  // The caption of a chart's button; None for another control.
  TextId ChartCaption(int control) const;
  int FirstChartControl() const;
  // The rows of its table.
  std::vector<ShownRow> Rows() const;
  std::string FrameText() const;
  void ShowSummary();
  void Commit();

  const ResultsDialogTable& rows_;
  int sheet_ = 0;
};

}  // namespace poweranalysis
