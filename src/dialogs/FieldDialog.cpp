#include "dialogs/FieldDialog.h"

#include "dialogs/GridDialog.h"
#include "dialogs/Speaker.h"
#include "frame/NearlyEqual.h"

namespace poweranalysis {

namespace {

// How the pages show a real number.
constexpr int kShownWidth = 12;
constexpr int kShownDecimals = 5;
constexpr int kEditRangeForm = 3;

// The field whose lower bound limits an edit control.
// Kept: that of the true mean takes the lower bound of the hypothesized mean, which is the same
// number.
std::string_view LowerLimitField(const FamilyTable& table, std::string_view field) {
  return table.family == Family::T1 && field == "Mu" ? "Mu0" : field;
}

}  // namespace

CFieldDialog::CFieldDialog(CAnalysisSupport& analysis,
                           const CatalogueDialog& entry,
                           Family family,
                           std::span<const char* const> fields)
    : CPowerAnalysisModelessDialog(analysis, entry.dialog->resource),
      table_(TableOf(family)),
      entry_(entry),
      fields_(fields) {}

long CFieldDialog::EventHandler(const DialogEvent& event) {
  const bool hasBlock = Block() != nullptr;
  if (hasBlock) {
    if (const long taken = CommonHandler(event); taken != 0) {
      return taken;
    }
  }
  if (event.message == MessageStart) {
    ResourceScope scope;
    form().AddDlgTabs(Spec());
    scope.Release();
    if (hasBlock) {
      ShowOnStart();
    }
    return 1;
  }
  if (event.message != MessageCommand) {
    return 0;
  }
  if (!hasBlock) {
    // Without values the dialog can still be closed.
    return event.control == ControlBack || event.control == ControlBackToo ? Back() : 0;
  }
  return SettingsButton(event.control) || GridButton(event.control) ? 1 : Command(event.control);
}

long CFieldDialog::Back() {
  if (Block() != nullptr) {
    Copy(Instance::Committed, Instance::Working);
  }
  ExitDialog(StageBefore(), ExitBack, 0);
  return 1;
}

long CFieldDialog::ShowAgain() {
  analysis().host().LockResults();
  analysis().host().UnlockResults();
  Refresh();
  return 1;
}

void CFieldDialog::ShowFields() {
  const RecordView working = View(Instance::Working);
  for (const char* name : fields_) {
    const Field& field = *table_.Find(name);
    const double value = working.Get(field);
    if (const RadioGroup* radios = RadiosOf(name, family())) {
      // A value without a button leaves the group as it was.
      if (radios->HasButton(value)) {
        form().CheckRadioButton(radios->base, radios->last(),
                                radios->base + static_cast<int>(value));
      }
    } else if (IsCheckBox(name)) {
      form().CheckDlgButton(ControlOf(name), value != 0);
    } else if (field.type == FieldType::Real) {
      form().SetDlgItemDouble(ControlOf(name), value, kShownWidth, kShownDecimals);
    } else {
      form().SetDlgItemLong(ControlOf(name), static_cast<std::int64_t>(value));
    }
  }
}

void CFieldDialog::SetEditLimits() {
  const RecordView lower = View(Instance::Lower);
  const RecordView upper = View(Instance::Upper);
  for (const char* name : fields_) {
    const Field& field = *table_.Find(name);
    if (RadiosOf(name, family()) != nullptr || IsCheckBox(name) || !field.keyed()) {
      continue;
    }
    const double low = lower.Get(*table_.Find(LowerLimitField(table_, name)));
    const double high = upper.Get(field);
    if (field.type == FieldType::Real) {
      form().SetRealEditRange(ControlOf(name), low, high, kEditRangeForm);
    } else {
      form().SetIntEditRange(ControlOf(name), static_cast<std::int32_t>(low),
                             static_cast<std::int32_t>(high));
    }
  }
}

void CFieldDialog::Refresh() {
  ShowValues();
  analysis().host().RestoreResults();
}

bool CFieldDialog::SettingsButton(int control) {
  if (SettingsCommand(*Block(), window(), family(), control) == 0) {
    return false;
  }
  Refresh();
  return true;
}

const GridRow* CFieldDialog::GridOfPage() const {
  const GridRow* grid = entry_.result ? nullptr : FindGrid(family());
  return grid != nullptr && entry_.mode == ModeInterval && !grid->onIntervalPage ? nullptr : grid;
}

bool CFieldDialog::CountsFit(const GridRow& grid) {
  const KeyTable keys = FillKeys(*Block(), family());
  for (const char* name : {grid.rowsField, grid.columnsField}) {
    if (name == nullptr) {
      continue;
    }
    const Field& field = *table_.Find(name);
    const KeyEntry& entry = keys.entries[static_cast<std::size_t>(field.place)];
    if (CheckRanges(window(), std::span<const KeyEntry>(&entry, 1)) == 0) {
      return false;
    }
  }
  if (!grid.capacity.Holds(grid.SizeOf(View(Instance::Working)))) {
    ShowMessage(MessageStopIcon, window(), grid.tooLarge);
    return false;
  }
  return true;
}

bool CFieldDialog::GridButton(int control) {
  const GridRow* grid = control == ControlGrid ? GridOfPage() : nullptr;
  if (grid != nullptr && CountsFit(*grid)) {
    analysis().host().CreateAnalysisDialog(std::make_unique<CGridDialog>(analysis(), *grid));
  }
  return grid != nullptr;
}

bool CFieldDialog::StoreField(int control) {
  const RecordView working = View(Instance::Working);
  for (const char* name : fields_) {
    const Field& field = *table_.Find(name);
    if (const RadioGroup* radios = RadiosOf(name, family())) {
      const int value = control - radios->base;
      if (radios->HasButton(value)) {
        working.Set(field, value);
        form().CheckRadioButton(radios->base, radios->last(), control);
        return true;
      }
    } else if (IsCheckBox(name) && ControlOf(name) == control) {
      working.Set(field, form().IsDlgButtonChecked(control) ? 1 : 0);
      return true;
    } else if (ControlOf(name) == control) {
      double value = 0;
      if (field.type != FieldType::Real) {
        value = form().GetDlgItemLong(control);
      } else if (form().GetDlgItemDouble(control, value) != 0) {
        // A text that is not a number stores 0; the next check names the field.
        value = 0;
      }
      if (!SingleCheckPasses(name, value)) {
        form().SetCountingValue(control, working.Get(field));
        return true;
      }
      working.Set(field, value + 0.0);  // a "-0" is stored as 0
      return true;
    }
  }
  return false;
}

// The one field that is checked at every change and not by its range alone.
// Kept: its upper limit is narrower than that of the range.
bool CFieldDialog::SingleCheckPasses(std::string_view field, double value) {
  constexpr double kLargestObservedF = 1000;
  if (family() != Family::AV1 || field != "FObserved") {
    return true;
  }
  const bool inside = (value >= 0 && value <= kLargestObservedF) || NearlyEqual(value, 0.0) ||
                      NearlyEqual(value, kLargestObservedF);
  if (!inside) {
    ShowMessage(MessagePlain, window(), text::InvalidValueEntered);
  }
  return inside;
}

bool CFieldDialog::InputsPass() {
  if (!RangesPass() || !ChoiceIsServed()) {
    return false;
  }
  const Refusal refusal = row().check == nullptr ? Refusal{} : row().check(View(Instance::Working));
  Speak(window(), refusal);
  return !refusal;
}

// The range of a choice may hold values that no button offers and no search serves.
bool CFieldDialog::ChoiceIsServed() {
  const SizeRules& sizes = row().sizes;
  if (entry().mode != ModeSampleSize || !sizes.refusesOthers) {
    return true;
  }
  const Field& field = *table_.Find(sizes.choice);
  KeyEntry narrowed = FillKeys(*Block(), family()).entries[static_cast<std::size_t>(field.place)];
  auto last = static_cast<i16>(sizes.count - 1);
  narrowed.upper = &last;
  return CheckRanges(window(), std::span<const KeyEntry>(&narrowed, 1)) != 0;
}

bool CFieldDialog::RangesPass() { return CheckRanges(window(), FillKeys(*Block(), family())) != 0; }

PageSpec CFieldDialog::FieldsPage(TextId groupCaption) const {
  PageSpec page{PageOfFrame(resource()), LoadText(text::CaptionQuick), {}};
  for (const char* name : fields_) {
    for (ControlSpec& control : ControlsOfField(table_, *table_.Find(name), groupCaption)) {
      page.controls.push_back(std::move(control));
    }
  }
  if (GridOfPage() != nullptr) {
    ControlSpec button = ButtonSpec(ControlGrid, "Grid", text::ButtonGrid);
    button.group = LoadText(groupCaption);
    page.controls.push_back(std::move(button));
  }
  return page;
}

}  // namespace poweranalysis
