#include "dialogs/ResultsDialog.h"

#include <algorithm>
#include <utility>

#include "dialogs/Speaker.h"
#include "host/NumberText.h"
#include "output/Reports.h"

namespace poweranalysis {

namespace {

constexpr ReportKind ReportOf(int mode) {
  return mode == ModeSampleSize ? ReportKind::Size : ReportKind::Power;
}

double FieldValue(const RecordView& record, const char* name) {
  return record.Get(*record.table().Find(name));
}

std::string FillPlotTexts(const PlotTexts& texts,
                          const RecordView& record,
                          const Computed& derived) {
  const int choice = texts.byField == nullptr ? 0 : ChoiceBy(texts.byField, record);
  if (choice < 0 || choice >= static_cast<int>(texts.alternatives.size())) {
    return {};
  }
  const PlotText& chosen = texts.alternatives[static_cast<std::size_t>(choice)];
  return FillText(chosen.id, chosen.slots, record, derived);
}

PlotGrid GridOf(const PlotAxis& axis, const RecordView& record) {
  const auto whole = [&](const char* field) {
    return static_cast<std::int32_t>(FieldValue(record, field));
  };
  const std::int32_t intervals = whole(axis.intervals);
  return axis.whole
             ? WholeGrid(whole(axis.start), whole(axis.end), intervals)
             : RealGrid(FieldValue(record, axis.start), FieldValue(record, axis.end), intervals);
}

// Does a plot go along the effect itself, its null hypothesis among the points?
bool GoesAlongEffect(const PlotRow& plot, const FamilyRow& row) {
  return plot.varied.kind == Varied::Kind::Effect ||
         (plot.varied.kind == Varied::Kind::Field &&
          std::string_view(plot.varied.field) == row.effects[plot.effect].solved);
}

// Does a row show something before a calculation?
bool IsKnown(const Quantity& quantity, double value) {
  switch (quantity.kind) {
    case QuantityKind::Field:
      return true;
    case QuantityKind::Effect:
    case QuantityKind::Spread:
    case QuantityKind::Noncentrality:
      return value != NumericFailure;
    default:
      return false;
  }
}

// Is a row one of the numbers that a table is sent for?
bool IsResult(const Quantity& quantity) {
  return quantity.kind == QuantityKind::Power || quantity.kind == QuantityKind::Size ||
         quantity.kind == QuantityKind::NormalPower;
}

bool SameChart(const ChartName& a, const ChartName& b) {
  return std::string_view(a.name) == b.name;
}

// The calculation's name: the caption of the results dialog without its last word.
std::string CalculationName(const CatalogueDialog& entry) {
  constexpr std::string_view kResults = " Results";
  std::string title = LoadText(entry.dialog->title);
  if (title.ends_with(kResults)) {
    title.resize(title.size() - kResults.size());
  }
  return title;
}

// Family and hypothesis, "One Mean, t-Test (H0:  Mu = Mu0)".
std::string FamilyAndHypothesis(const CatalogueDialog& entry,
                                const TableDefinition& table,
                                PowerSettings& block) {
  constexpr std::size_t kThirdHeading = 2;
  std::string family = LoadText(Tasks(entry.mode)[static_cast<std::size_t>(entry.row)].name);
  const std::vector<TextId> headings = TableHeadings(table, block);
  if (headings.size() <= kThirdHeading) {
    return family;
  }
  return FormatResource(text::TitleWithDetail, {family, LoadText(headings[kThirdHeading])});
}

}  // namespace

std::vector<ChartButton> ChartButtons(const ResultsDialogTable& dialog) {
  int control = dialog.mode == ModeSampleSize ? ControlSizeCharts : ControlPowerCharts;
  std::vector<ChartButton> buttons;
  for (const PlotRow& plot : dialog.plots) {
    if (buttons.empty() || !SameChart(buttons.back().chart, plot.chart)) {
      buttons.push_back({control++, plot.chart});
    }
  }
  return buttons;
}

CResultsDialog::CResultsDialog(CAnalysisSupport& analysis,
                               const CatalogueDialog& entry,
                               const ResultsDialogTable& rows)
    : CFieldDialog(analysis, entry, rows.family, rows.fields), rows_(rows) {}

DialogSpec CResultsDialog::Spec() const {
  DialogSpec spec;
  spec.className = entry().dialog->className;
  spec.resource = resource();
  spec.title = LoadText(entry().dialog->title);
  spec.defaultButton = ControlAccept;
  spec.frame = {{ControlSummary,
                 ControlKind::StaticText,
                 "Parameters",
                 LoadText(text::GroupTestParameters),
                 {},
                 {},
                 0},
                ButtonSpec(ControlAccept, "Summary", rows_.calculateCaption),
                ButtonSpec(ControlBack, "Cancel", text::ButtonBack),
                ButtonSpec(ControlChangeParams, "ChangeParams", text::CaptionChangeParams),
                ButtonSpec(ControlOutputOptions, "Options", text::ButtonOptions)};
  PageSpec page = FieldsPage(text::GroupAxisRanges);
  for (const auto& [control, chart] : ChartButtons(rows_)) {
    ControlSpec button = ButtonSpec(control, chart.name, chart.caption);
    button.group = LoadText(text::GroupCharts);
    button.chart = true;
    page.controls.push_back(std::move(button));
  }
  spec.pages = {std::move(page), SettingsPageSpec()};
  return spec;
}

const TableDefinition& CResultsDialog::Table() const { return *FindTable(family(), rows_.mode); }

std::vector<ShownRow> CResultsDialog::Rows() const { return ShownRows(Table(), *Block()); }

std::string CResultsDialog::FrameText() const {
  // The inputs of the summary table and what follows from them, one per line, under the titles of
  // their blocks; what a calculation gives is not known yet. They are those that a calculation
  // would take: a file that was opened changes them before it is committed.
  const RecordView inputs = View(Instance::Working);
  const std::vector<ShownRow> rows = ShownRows(Table(), inputs);
  const std::vector<double> values = TableValues(rows, inputs, DerivedFrom(inputs));

  std::string frame = LoadText(TableHeadings(Table(), inputs).front());
  for (std::size_t i = 0; i < rows.size(); ++i) {
    const std::string title = LoadText(rows[i].title);
    if (rows[i].quantity.kind == QuantityKind::None) {
      frame += rows[i].title == text::BlankRow ? "" : "\n" + title;
    } else if (IsKnown(rows[i].quantity, values[i])) {
      frame += "\n" + title + LoadText(text::Colon) + " " +
               FormatCell(CellKindOf(rows[i].quantity), values[i]);
    }
  }
  return frame;
}

void CResultsDialog::ShowOnStart() {
  Copy(Instance::Committed, Instance::Working);
  ShowValues();
  SetEditLimits();
}

void CResultsDialog::ShowValues() {
  ShowSummary();
  CFieldDialog::ShowValues();
}

void CResultsDialog::ShowSummary() { form().SetDlgItemText(ControlSummary, FrameText()); }

// The inputs of a calculation or a plot are those of the dialog from here on.
void CResultsDialog::Commit() {
  Copy(Instance::Working, Instance::Committed);
  ShowSummary();
}

long CResultsDialog::Command(int control) {
  switch (control) {
    case ControlAccept:
      return Calculate();
    case ControlBack:
    case ControlBackToo:
      return Back();
    case ControlChangeParams:
      return ChangeParams();
    case ControlRefresh:
      return ShowAgain();
    default:
      break;
  }
  for (const ChartButton& button : ChartButtons(rows_)) {
    if (button.control == control) {
      return DrawPlotsOf(button.chart);
    }
  }
  return StoreField(control) ? 1 : 0;
}

Question CResultsDialog::question() const {
  return rows_.mode == ModeSampleSize ? Question::RequiredSize : Question::Power;
}

std::unique_ptr<FamilySession> CResultsDialog::Session() const {
  std::unique_ptr<FamilySession> session = row().open(question());
  const double limit = View(Instance::Upper).Get(LimitField(row()));
  session->Take(View(Instance::Committed), static_cast<std::int64_t>(limit));
  return session;
}

Computed CResultsDialog::DerivedFrom(const RecordView& record) const {
  Computed derived;
  if (row().derive != nullptr) {
    row().derive(record, derived);
  }
  return derived;
}

bool CResultsDialog::NullHypothesisRefuses(std::size_t effect) const {
  const NullCheck& check = row().effects[effect].CheckOf(question());
  const Refusal refusal = RefusalOf(check, View(Instance::Working), question());
  Speak(window(), refusal);
  return static_cast<bool>(refusal);
}

// Whether there is one of the numbers that the table is sent for.
bool CResultsDialog::HoldsResult(const Outcome& outcome) const {
  const std::vector<ShownRow> rows = Rows();
  return outcome.good && std::any_of(rows.begin(), rows.end(), [&](const ShownRow& row) {
           return IsResult(row.quantity) && ValueOf(row.quantity, View(Instance::Committed),
                                                    outcome.computed) != NumericFailure;
         });
}

// A procedure that fails says why, or in some cases fails without a message: then the user learns
// at least what has no value. Whoever cancels knows.
Outcome CResultsDialog::Compute() {
  const std::int32_t messagesBefore = Module().messagesShown;
  HostObserver observer(window(), HostObserver::Bar::OfSearches);
  const Outcome outcome = Session()->Compute(observer);
  observer.Tell(outcome.refusal);
  if (!HoldsResult(outcome) && Module().messagesShown == messagesBefore && !IsCancelled()) {
    const std::string result = LoadText(Rows().back().title);
    ShowMessage(MessageStopIcon, window(), text::NotComputable, {FormatArg(result)});
  }
  return outcome;
}

long CResultsDialog::Calculate() {
  Host& host = analysis().host();
  if (!InputsPass()) {
    host.RestoreResults();
    return 0;
  }
  if (!row().checksItself && NullHypothesisRefuses(0)) {
    ExitDialog(StageCompute, ExitBack, 0);
    return 0;
  }
  Commit();
  PowerSettings& block = *Block();
  const Outcome outcome = Compute();
  if (outcome.good) {
    const Computed& computed = outcome.computed;
    std::vector<double> values = TableValues(Rows(), View(Instance::Committed), computed);
    ShowSummaryTable(values, Table().code, &sheet_, block);
    host.RestoreResults();
    if (!form().IsWindow()) {
      return 0;
    }
    EmitReport(family(), ReportOf(rows_.mode), computed, block);
  }
  host.RestoreResults();
  return outcome.good ? 1 : 0;
}

long CResultsDialog::ChangeParams() {
  if (!InputsPass()) {
    return 0;
  }
  Copy(Instance::Working, Instance::Committed);
  ExitDialog(StageCompute, ExitBack, 0);
  return 1;
}

long CResultsDialog::DrawPlotsOf(const ChartName& chart) {
  long drawn = 0;
  if (InputsPass()) {
    bool committed = false;
    for (const PlotRow& plot : rows_.plots) {
      if (!SameChart(plot.chart, chart) ||
          (!GoesAlongEffect(plot, row()) && NullHypothesisRefuses(plot.effect))) {
        continue;
      }
      // The ranges edited on this page must reach the plots.
      if (!std::exchange(committed, true)) {
        Commit();
      }
      const PlotOutcome outcome = DrawPlotOf(plot);
      if (outcome == PlotOutcome::Cancelled) {
        break;  // whoever stops one of a button's plots wants none of the others
      }
      drawn = outcome == PlotOutcome::Drawn ? 1 : drawn;
    }
  }
  analysis().host().RestoreResults();
  return drawn;
}

PlotOutcome CResultsDialog::DrawPlotOf(const PlotRow& plot) {
  PowerSettings& block = *Block();
  const RecordView committed = View(Instance::Committed);
  const Computed derived = DerivedFrom(committed);
  std::string family = FillPlotTexts(rows_.familyTitle, committed, derived);
  if (family.empty()) {
    family = FamilyAndHypothesis(entry(), Table(), block);
  }

  ChartRequest request;
  request.kind = plot.kind;
  request.name = plot.chart.name;
  request.titles = {CalculationName(entry()), std::move(family),
                    FillPlotTexts(plot.title, committed, derived)};
  request.xLabel = FillPlotTexts(plot.xLabel, committed, derived);
  request.yLabel = FillPlotTexts(plot.yLabel, committed, derived);
  HostObserver observer(window(), HostObserver::Bar::None);
  const std::unique_ptr<FamilySession> session = Session();
  const Input input = session->Find(plot.varied);
  const auto point = [&](double x) {
    session->Vary(input, x);
    return session->Value(plot.effect, observer);
  };
  return DrawPlot(analysis().host(), GridOf(plot.axis, committed), point, rows_.failedPoint,
                  std::move(request));
}

}  // namespace poweranalysis
