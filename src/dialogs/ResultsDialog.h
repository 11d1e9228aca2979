#pragma once

#include "dialogs/FieldDialog.h"
#include "output/Charts.h"
#include "output/Computed.h"

namespace poweranalysis {

// A text of a chart and what fills its slots: a field of Committed, or the standardized effect.
struct PlotText {
  TextId id = text::None;
  std::array<const char*, 4> slots{};  // EffectSlot stands for the standardized effect
};
inline constexpr const char* EffectSlot = "(effect)";

// Alternatives of a text by the value of a field; without a field the first is all.
struct PlotTexts {
  const char* byField = nullptr;
  std::array<PlotText, 3> alternatives{};
};

// The axis along which a plot varies its input: three fields of the results page.
struct PlotAxis {
  const char* start;
  const char* end;
  const char* intervals;
  bool whole;  // sample sizes and degrees of freedom
};

// One plot of a results dialog.
struct PlotRow {
  TextId caption;  // of its button; the plot's name is made from it
  int kind;
  PlotAxis axis;
  PlotTexts title;  // third title line
  PlotTexts xLabel;
  PlotTexts yLabel;
  bool fixesEffect;  // then a true null hypothesis ends the plot before it starts
  FailedPointRule failedPoint;
  // The value at a point, computed from Committed with one input varied.
  PlotFunction (*point)(WindowHandle parent, const PowerSettings& block);
};

// What a calculation gives: whether there is anything to send, and the numbers.
struct CalculationOutcome {
  bool good = false;
  Computed computed;
};

// What guards a calculation: the effect of Working under its null hypothesis.
struct NullCheckRow {
  double (*effect)(const RecordView& record);
  double tolerance;
  bool useTolerance;  // a search also refuses an effect too small to be worth searching
};

// One results dialog.
struct ResultsDialogTable {
  Family family;
  int mode;
  int tableCode;
  TextId calculateCaption;
  std::span<const char* const> fields;  // of the page: the ranges of the charts
  NullCheckRow nullCheck;
  CalculationOutcome (*calculate)(WindowHandle parent, const PowerSettings& block);
  std::span<const PlotRow> plots;
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
  long Command(int control) override;
  int StageBefore() const override { return StageCompute; }

 private:
  long Calculate();
  long ChangeParams();
  long DrawPlotOf(const PlotRow& plot);
  bool NullHypothesisRefuses();
  int FirstChartControl() const;
  std::string FrameText() const;

  const ResultsDialogTable& rows_;
  int sheet_ = 0;
};

}  // namespace poweranalysis
