#include "host/FormModel.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "host/NumberText.h"

namespace poweranalysis {

void FormModel::AddDlgTabs(const DialogSpec& spec) {
  spec_ = spec;
  const auto add = [this](const std::vector<ControlSpec>& controls) {
    for (const ControlSpec& control : controls) {
      controls_[control.number].spec = control;
    }
  };
  add(spec.frame);
  for (const PageSpec& page : spec.pages) {
    add(page.controls);
  }
  Notify(&FormView::Built);
}

const FormModel::Control* FormModel::Find(int control) const {
  const auto found = controls_.find(control);
  return found == controls_.end() ? nullptr : &found->second;
}

FormModel::Control* FormModel::FindForChange(int control) {
  const auto found = controls_.find(control);
  return found == controls_.end() ? nullptr : &found->second;
}

// --- Texts and numbers.

void FormModel::SetDlgItemText(int control, std::string_view text) {
  if (Control* c = FindForChange(control)) {
    c->text = text;
    c->number.reset();
    c->counting.reset();
    Notify(&FormView::TextChanged, control);
  }
}

std::string FormModel::GetDlgItemText(int control) const {
  const Control* c = Find(control);
  return c == nullptr ? std::string() : c->text;
}

void FormModel::SetDlgItemLong(int control, std::int64_t value) {
  if (Control* c = FindForChange(control)) {
    c->text = std::to_string(value);
    c->number = static_cast<double>(value);
    c->counting.reset();
    Notify(&FormView::TextChanged, control);
  }
}

std::int32_t FormModel::GetDlgItemLong(int control) const {
  double value = 0;
  if (GetDlgItemDouble(control, value) != 0 || std::isnan(value)) {
    return 0;
  }
  constexpr double kLowest = std::numeric_limits<std::int32_t>::min();
  constexpr double kHighest = std::numeric_limits<std::int32_t>::max();
  return static_cast<std::int32_t>(std::clamp(std::trunc(value), kLowest, kHighest));
}

void FormModel::SetDlgItemDouble(int control, double value, int /*width*/, int decimals) {
  if (Control* c = FindForChange(control)) {
    c->text = FormatDecimals(value, decimals);
    c->number = value;
    c->counting.reset();
    Notify(&FormView::TextChanged, control);
  }
}

int FormModel::GetDlgItemDouble(int control, double& value) const {
  const Control* c = Find(control);
  if (c == nullptr) {
    return 1;
  }
  const std::optional<double> number = c->number ? c->number : ReadNumber(c->text);
  if (!number) {
    return 1;
  }
  value = *number;
  return 0;
}

void FormModel::SetCountingValue(int control, double value) {
  if (Control* c = FindForChange(control)) {
    c->counting = value;
    Notify(&FormView::TextChanged, control);
  }
}

void FormModel::SetRange(int control, double lower, double upper) {
  if (Control* c = FindForChange(control)) {
    c->lower = lower;
    c->upper = upper;
    Notify(&FormView::TextChanged, control);
  }
}

void FormModel::SetIntEditRange(int control, std::int32_t lower, std::int32_t upper) {
  SetRange(control, lower, upper);
}

void FormModel::SetRealEditRange(int control, double lower, double upper, int /*form*/) {
  SetRange(control, lower, upper);
}

// --- Buttons.

void FormModel::CheckRadioButton(int first, int last, int checked) {
  for (auto& [number, control] : controls_) {
    if (number >= first && number <= last) {
      control.checked = number == checked;
    }
  }
  Notify(&FormView::ChecksChanged);
}

void FormModel::CheckDlgButton(int control, bool checked) {
  if (Control* c = FindForChange(control)) {
    c->checked = checked;
    Notify(&FormView::ChecksChanged);
  }
}

bool FormModel::IsDlgButtonChecked(int control) const {
  const Control* c = Find(control);
  return c != nullptr && c->checked;
}

// --- Lists.

void FormModel::ResetListContent(int list) {
  if (Control* c = FindForChange(list)) {
    c->rows.clear();
    c->icons.clear();
    c->selected = -1;
    ++c->resets;
    Notify(&FormView::ListChanged, list);
  }
}

void FormModel::AddListRow(int list, std::string_view text, int icon) {
  if (Control* c = FindForChange(list)) {
    c->rows.emplace_back(text);
    c->icons.push_back(icon);
    Notify(&FormView::ListChanged, list);
  }
}

void FormModel::SelectListRow(int list, int row) {
  if (Control* c = FindForChange(list)) {
    const bool known = row >= 0 && static_cast<std::size_t>(row) < c->rows.size();
    c->selected = known ? row : -1;
    Notify(&FormView::ListChanged, list);
  }
}

int FormModel::SelectedListRow(int list) const {
  const Control* c = Find(list);
  return c == nullptr ? -1 : c->selected;
}

// --- How it looks.

void FormModel::SetHelpTextAttrib(int control) {
  if (Control* c = FindForChange(control)) {
    c->helpText = true;
    Notify(&FormView::LookChanged, control);
  }
}

void FormModel::ShowControl(int control, bool shown) {
  if (Control* c = FindForChange(control)) {
    c->visible = shown;
    Notify(&FormView::LookChanged, control);
  }
}

void FormModel::Enable(bool enabled) {
  enabled_ = enabled;
  Notify(&FormView::EnabledChanged);
}

}  // namespace poweranalysis
