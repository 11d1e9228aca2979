#include "calculators/CalculatorDialog.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "calculators/CalculatorResults.h"
#include "host/NumberText.h"

namespace poweranalysis {

namespace {

// How the boxes show a real number, besides its most decimals.
constexpr int kFewestDecimals = 2;
constexpr int kTruncate = 0;
constexpr int kActualWidth = 9;

bool IsSettingsButton(int control) {
  return control == ControlSave || control == ControlSaveAs || control == ControlOpen ||
         control == ControlSaveAsDefault;
}

}  // namespace

CCalculatorDialog::CCalculatorDialog(CAnalysisSupport& analysis,
                                     const CatalogueDialog& entry,
                                     const CalculatorTable& rows)
    : CFieldDialog(analysis, entry, rows.family, rows.fields), rows_(rows) {}

// --- Appearance.

DialogSpec CCalculatorDialog::Spec() const {
  DialogSpec spec;
  spec.className = entry().dialog->className;
  spec.resource = resource();
  spec.title = LoadText(entry().dialog->title);
  spec.defaultButton = ControlAccept;
  spec.frame = {ButtonSpec(ControlAccept, "Compute", text::ButtonCompute),
                ButtonSpec(ControlBack, "Cancel", text::ButtonBack),
                ButtonSpec(ControlRestoreDefaults, "RestoreDefaults", text::ButtonRestoreDefaults)};
  PageSpec page{PageOfFrame(resource()), LoadText(text::CaptionQuick), {}};
  for (std::size_t i = 0; i < rows_.unknowns.size(); ++i) {
    const TextId caption = i == UnknownProbability ? text::ButtonP : rows_.unknowns[i].caption;
    page.controls.push_back({ControlUnknown + static_cast<int>(i), ControlKind::Radio,
                             SelectorField, LoadText(caption), LoadText(text::MeaningWhatToCompute),
                             WithoutMnemonic(LoadText(text::ButtonCompute)), static_cast<int>(i)});
  }
  for (ControlSpec& control : BoxSpecs()) {
    page.controls.push_back(std::move(control));
  }
  page.controls.push_back({ControlOfField(OneMinusPField), ControlKind::CheckBox, OneMinusPField,
                           LoadText(text::Button1CumulativeP), LoadText(text::MeaningOneMinusP),
                           LoadText(text::GroupOptions), 1});
  for (const char* name : fields()) {
    if (!IsBox(name)) {
      for (ControlSpec& control : ControlsOfField(table(), FieldOf(name), text::None)) {
        page.controls.push_back(std::move(control));
      }
    }
  }
  spec.pages = {page};
  return spec;
}

// The edits; a label that changes is a separate control, in front of its box.
std::vector<ControlSpec> CCalculatorDialog::BoxSpecs() const {
  std::vector<ControlSpec> boxes;
  const auto label = [&boxes](int control, std::string name, TextId caption) {
    boxes.push_back(
        {control, ControlKind::StaticText, std::move(name), LoadText(caption), {}, {}, 0});
  };
  for (const char* name : fields()) {
    if (!IsBox(name)) {
      continue;
    }
    ControlSpec box = ControlsOfField(table(), FieldOf(name), text::None).front();
    if (name == std::string_view(ProbabilityField)) {
      label(ControlProbabilityLabel, "CumPLabel", text::CaptionCumPBox);
      box.caption = LoadText(text::CaptionCumPBox);
    } else {
      box.caption = CaptionOfBox(rows_, FieldOf(name));
    }
    if (!FieldOf(name).keyed()) {
      box.help = MeaningOfBox(FieldOf(name));  // it has no range
    }
    boxes.push_back(std::move(box));
  }
  if (ShowsActual()) {
    label(ControlActualValueLabel, "ActualValueLabel", text::CaptionActualValueBox);
    boxes.push_back({ControlActualValue,
                     ControlKind::RealEdit,
                     ActualField,
                     LoadText(text::CaptionActualValueBox),
                     LoadText(text::MeaningCumP),
                     {},
                     0});
  }
  return boxes;
}

// --- Events.

long CCalculatorDialog::EventHandler(const DialogEvent& event) {
  // There is no page "Settings I/O" here: the records of three calculators have no section in a
  // file.
  const bool settings = event.message == MessageCommand && IsSettingsButton(event.control);
  return settings ? 0 : CFieldDialog::EventHandler(event);
}

void CCalculatorDialog::ShowOnStart() {
  Copy(Instance::Committed, Instance::Working);
  ShowValues();
  SetEditLimits();
}

long CCalculatorDialog::Command(int control) {
  switch (control) {
    case ControlAccept:
    case ControlAcceptToo:
    case ControlCompute:
      return Compute();
    case ControlBack:
    case ControlBackToo:
      return Back();
    case ControlRestoreDefaults:
    case ControlRestoreDefaultsToo:
      return RestoreDefaults();
    case ControlRefresh:
      return ShowAgain();
    case ControlActualValue:
      return 1;  // what is typed there has no effect
    default:
      break;
  }
  if (control == ControlOfField(OneMinusPField)) {
    return FlipOneMinusP();
  }
  const int unknown = control - ControlUnknown;
  if (unknown >= 0 && unknown < static_cast<int>(rows_.unknowns.size())) {
    ChooseUnknown(static_cast<std::size_t>(unknown));
    ShowUnknown();
    ShowLabels();
    return 1;
  }
  return StoreBox(control) ? 1 : 0;
}

long CCalculatorDialog::RestoreDefaults() {
  Copy(Instance::Defaults, Instance::Working);
  answers_.clear();
  ShowValues();
  return 1;
}

long CCalculatorDialog::FlipOneMinusP() {
  Set(OneMinusPField, OneMinusP() ? 0 : 1);
  form().CheckDlgButton(ControlOfField(OneMinusPField), OneMinusP());
  ShowLabels();
  double shown = 0;
  if (form().GetDlgItemDouble(ControlOfField(ProbabilityField), shown) == 0) {
    ShowBox(ProbabilityField);
  }
  ShowActual();
  return 1;
}

// --- What is stored.

double CCalculatorDialog::Complemented(double p) const {
  return OneMinusP() && p != NumericFailure ? 1 - p : p;
}

double CCalculatorDialog::ShownProbability(double p) const {
  const bool known = tail_.upper != NumericFailure && p == tail_.p;
  return OneMinusP() && known ? tail_.upper : Complemented(p);
}

double CCalculatorDialog::Shown(const char* field) const {
  const bool probability =
      field == std::string_view(ProbabilityField) || field == std::string_view(ActualField);
  return probability ? ShownProbability(Get(field)) : Get(field);
}

std::size_t CCalculatorDialog::UnknownIndex() const {
  for (std::size_t i = 0; i < rows_.unknowns.size(); ++i) {
    const char* flag = rows_.unknowns[i].flag;
    if (flag == nullptr ? Get(SelectorField) == static_cast<double>(i) : Get(flag) != 0) {
      return i;
    }
  }
  return UnknownProbability;  // a value from a file that no button stands for
}

void CCalculatorDialog::ChooseUnknown(std::size_t index) {
  for (std::size_t i = 0; i < rows_.unknowns.size(); ++i) {
    const char* flag = rows_.unknowns[i].flag;
    if (flag != nullptr) {
      Set(flag, i == index ? 1 : 0);
    } else if (i == index) {
      Set(SelectorField, static_cast<double>(i));
    }
  }
}

bool CCalculatorDialog::StoreBox(int control) {
  if (!StoreField(control)) {
    return false;
  }
  for (const char* name : fields()) {
    if (ControlOfField(name) == control) {
      answers_.erase(name);
    }
  }
  double typed = 0;
  if (control == ControlOfField(ProbabilityField) && form().GetDlgItemDouble(control, typed) == 0) {
    Set(ProbabilityField, Complemented(typed));
  }
  return true;
}

// Reads every box but that of the unknown, which is empty by now. A box that still shows what the
// dialog put there stands for the number behind it, whose digits it does not all show.
void CCalculatorDialog::ExchangeBoxes() {
  for (const char* name : fields()) {
    const int control = ControlOfField(name);
    if (IsBox(name) && name != std::string_view(Unknown().field) &&
        form().GetDlgItemText(control) != shown_[name]) {
      StoreBox(control);
    }
  }
}

// An answer is taken back as an input also where it lies outside what may be entered, as long as
// it is a probability at all.
bool CCalculatorDialog::IsOwnAnswer(const Field& field) const {
  const double value = Get(field.name);
  const bool usable = field.name != std::string_view(ProbabilityField) || (value > 0 && value < 1);
  return answers_.count(field.name) != 0 && usable;
}

bool CCalculatorDialog::InputsPass() {
  std::vector<KeyEntry> entries = FillKeys(*Block(), family()).entries;
  entries.erase(std::remove_if(entries.begin(), entries.end(),
                               [this](const KeyEntry& entry) { return IsOwnAnswer(*entry.field); }),
                entries.end());
  return CheckRanges(window(), entries) != 0;
}

// A stale answer must not fail the range check.
void CCalculatorDialog::ClearUnknown() {
  const Field& field = FieldOf(Unknown().field);
  form().SetDlgItemText(ControlOfField(field.name), "");
  answers_.erase(field.name);
  View(Instance::Working).Set(field, View(Instance::Defaults).Get(field));
  if (ShowsActual()) {
    Set(ActualField, NumericFailure);
    ShowActual();
  }
}

// --- What is shown.

void CCalculatorDialog::ShowValues() {
  for (const char* name : fields()) {
    if (IsBox(name)) {
      ShowBox(name);
      continue;
    }
    const RadioGroup& radios = *RadiosOf(name, family());
    // A value without a button leaves the group as it was.
    if (radios.HasButton(Get(name))) {
      form().CheckRadioButton(radios.base, radios.last(),
                              radios.base + static_cast<int>(Get(name)));
    }
  }
  form().CheckDlgButton(ControlOfField(OneMinusPField), OneMinusP());
  ShowUnknown();
  ShowActual();
  ShowLabels();
}

void CCalculatorDialog::ShowBox(const char* field) {
  const int control = ControlOfField(field);
  if (FieldOf(field).type != FieldType::Real) {
    form().SetDlgItemLong(control, static_cast<std::int64_t>(Get(field)));
  } else {
    SetDlgItemNumber(form(), control, Shown(field), BoxDecimals, kFewestDecimals, kTruncate);
  }
  shown_[field] = form().GetDlgItemText(control);
}

void CCalculatorDialog::ShowActual() {
  if (!ShowsActual()) {
    return;
  }
  const double actual = Get(ActualField);
  form().SetDlgItemText(ControlActualValue,
                        actual == NumericFailure
                            ? std::string()
                            : RealToText(Shown(ActualField), RealPlain, kActualWidth, BoxDecimals));
}

void CCalculatorDialog::ShowUnknown() {
  form().CheckRadioButton(ControlUnknown, ControlUnknown + UnknownParameter,
                          ControlUnknown + static_cast<int>(UnknownIndex()));
}

void CCalculatorDialog::ShowLabels() {
  form().SetDlgItemText(ControlProbabilityLabel,
                        LoadText(ProbabilityLabel(ShowsRequested(), OneMinusP())));
  form().SetDlgItemText(ControlUnknown + UnknownProbability,
                        LoadText(OneMinusP() ? text::Button1P : text::ButtonP));
  if (ShowsActual()) {
    form().SetDlgItemText(ControlActualValueLabel, LoadText(text::CaptionActualValueBox));
    form().ShowControl(ControlActualValueLabel, ShowsRequested());
    form().ShowControl(ControlActualValue, ShowsRequested());
  }
}

// --- Computing.

std::optional<ResultsInPlace> CCalculatorDialog::TakeResults() {
  return std::exchange(results_, std::nullopt);
}

void CCalculatorDialog::KeepResults(const CalculatorAnswer& answer) {
  SolvedEquation solved{rows_, UnknownIndex(), OneMinusP(), {}};
  for (const char* field : fields()) {
    solved.numbers[field] = Shown(field);
  }
  if (ShowsActual()) {
    solved.numbers[ActualField] = Shown(ActualField);
  }
  results_ = ResultsOf(solved);
  results_->nearest = answer.noSolution != text::None;
}

long CCalculatorDialog::Compute() {
  results_.reset();
  if (rows_.before != nullptr && !rows_.before(window(), *Block())) {
    return 1;
  }
  ClearUnknown();
  ExchangeBoxes();
  if (!InputsPass()) {
    return 1;
  }
  const double p = Get(ProbabilityField);
  const CalculatorAnswer answer = Unknown().compute(*Block(), p);
  // The window may have gone while a search polled for a break.
  if (form().IsWindow()) {
    ShowAnswer(answer, p);
  }
  return 1;
}

void CCalculatorDialog::ShowAnswer(const CalculatorAnswer& answer, double p) {
  const char* field = Unknown().field;
  if (!answer.good || !std::isfinite(answer.value)) {
    form().SetDlgItemText(ControlOfField(field), LoadText(text::CaptionError));
    return;
  }
  if (answer.noSolution != text::None) {
    ShowMessage(MessagePlain, window(), answer.noSolution, {p});
    Set(ProbabilityField, answer.nearestProbability);
    answers_.insert(ProbabilityField);
    ShowBox(ProbabilityField);
  }
  if (answer.upper != NumericFailure) {
    tail_ = {ShowsActual() && UnknownIndex() == UnknownStatistic ? answer.actual : answer.value,
             answer.upper};
  }
  answers_.insert(field);
  Set(field, answer.value);
  ShowBox(field);
  if (ShowsActual()) {
    Set(ActualField, answer.actual);
    ShowActual();
  }
  KeepResults(answer);
}

std::unique_ptr<CAnalysisDialog> CreateCalculator(CAnalysisSupport& analysis,
                                                  const CatalogueDialog& entry) {
  if (entry.mode != ModeDistribution) {
    return nullptr;
  }
  const TaskRow& task = Tasks(entry.mode)[static_cast<std::size_t>(entry.row)];
  const CalculatorTable* rows = FindCalculator(task.family);
  return rows == nullptr ? nullptr : std::make_unique<CCalculatorDialog>(analysis, entry, *rows);
}

}  // namespace poweranalysis
