#include <algorithm>
#include <charconv>
#include <cmath>
#include <limits>

#include "host/HeadlessHost.h"
#include "host/NumberText.h"

namespace poweranalysis {

namespace {

constexpr std::string_view kBlanks = " \t\r\n";

std::string_view Trimmed(std::string_view text) {
  const std::size_t first = text.find_first_not_of(kBlanks);
  if (first == std::string_view::npos) {
    return {};
  }
  return text.substr(first, text.find_last_not_of(kBlanks) - first + 1);
}

// What digits stand for that no double can hold: zero, or an infinity, which every range refuses.
double OutOfReach(std::string_view text) {
  const bool negative = text.front() == '-';
  text.remove_prefix(negative ? 1 : 0);
  const std::size_t exponent = text.find_first_of("eE");
  const char sign = exponent == std::string_view::npos ? '\0' : text[exponent + 1];
  const bool small = sign == '-' || (sign == '\0' && (text.front() == '0' || text.front() == '.'));
  const double size = small ? 0 : std::numeric_limits<double>::infinity();
  return negative ? -size : size;
}

// The number that the whole text is, or nothing.
std::optional<double> ReadNumber(std::string_view text) {
  text = WithoutPlus(Trimmed(text));
  double value = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
  if (text.empty() || end != text.data() + text.size()) {
    return std::nullopt;
  }
  if (error == std::errc::result_out_of_range) {
    return OutOfReach(text);
  }
  return error == std::errc{} ? std::optional<double>(value) : std::nullopt;
}

}  // namespace

void HeadlessForm::AddDlgTabs(const DialogSpec& spec) {
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
}

const HeadlessForm::Control* HeadlessForm::Find(int control) const {
  const auto found = controls_.find(control);
  return found == controls_.end() ? nullptr : &found->second;
}

HeadlessForm::Control* HeadlessForm::FindForChange(int control) {
  const auto found = controls_.find(control);
  return found == controls_.end() ? nullptr : &found->second;
}

void HeadlessForm::SetDlgItemText(int control, std::string_view text) {
  if (Control* c = FindForChange(control)) {
    c->text = text;
    c->number.reset();
  }
}

void HeadlessForm::Type(int control, std::string_view text) { SetDlgItemText(control, text); }

std::string HeadlessForm::GetDlgItemText(int control) const {
  const Control* c = Find(control);
  return c == nullptr ? std::string() : c->text;
}

void HeadlessForm::SetDlgItemLong(int control, std::int64_t value) {
  if (Control* c = FindForChange(control)) {
    c->text = std::to_string(value);
    c->number = static_cast<double>(value);
  }
}

std::int32_t HeadlessForm::GetDlgItemLong(int control) const {
  double value = 0;
  if (GetDlgItemDouble(control, value) != 0 || std::isnan(value)) {
    return 0;
  }
  constexpr double kLowest = std::numeric_limits<std::int32_t>::min();
  constexpr double kHighest = std::numeric_limits<std::int32_t>::max();
  return static_cast<std::int32_t>(std::clamp(std::trunc(value), kLowest, kHighest));
}

void HeadlessForm::SetDlgItemDouble(int control, double value, int /*width*/, int decimals) {
  if (Control* c = FindForChange(control)) {
    c->text = FormatDecimals(value, decimals);
    c->number = value;
  }
}

int HeadlessForm::GetDlgItemDouble(int control, double& value) const {
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

void HeadlessForm::SetRETruncate(int, int) {}

void HeadlessForm::CheckRadioButton(int first, int last, int checked) {
  for (auto& [number, control] : controls_) {
    if (number >= first && number <= last) {
      control.checked = number == checked;
    }
  }
}

void HeadlessForm::CheckDlgButton(int control, bool checked) {
  if (Control* c = FindForChange(control)) {
    c->checked = checked;
  }
}

bool HeadlessForm::IsDlgButtonChecked(int control) const {
  const Control* c = Find(control);
  return c != nullptr && c->checked;
}

void HeadlessForm::SetIntEditRange(int control, std::int32_t lower, std::int32_t upper) {
  if (Control* c = FindForChange(control)) {
    c->lower = lower;
    c->upper = upper;
  }
}

void HeadlessForm::SetRealEditRange(int control, double lower, double upper, int /*form*/) {
  if (Control* c = FindForChange(control)) {
    c->lower = lower;
    c->upper = upper;
  }
}

void HeadlessForm::ResetListContent(int list) {
  if (Control* c = FindForChange(list)) {
    c->rows.clear();
    c->icons.clear();
    c->selected = -1;
    ++c->resets;
  }
}

void HeadlessForm::AddListRow(int list, std::string_view text, int icon) {
  if (Control* c = FindForChange(list)) {
    c->rows.emplace_back(text);
    c->icons.push_back(icon);
  }
}

void HeadlessForm::SelectListRow(int list, int row) {
  if (Control* c = FindForChange(list)) {
    const bool known = row >= 0 && static_cast<std::size_t>(row) < c->rows.size();
    c->selected = known ? row : -1;
  }
}

int HeadlessForm::SelectedListRow(int list) const {
  const Control* c = Find(list);
  return c == nullptr ? -1 : c->selected;
}

void HeadlessForm::SetHelpTextAttrib(int control) {
  if (Control* c = FindForChange(control)) {
    c->helpText = true;
  }
}

void HeadlessForm::ShowControl(int control, bool shown) {
  if (Control* c = FindForChange(control)) {
    c->visible = shown;
  }
}

}  // namespace poweranalysis
