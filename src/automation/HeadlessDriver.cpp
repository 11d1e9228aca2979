#include "automation/HeadlessDriver.h"

#include <utility>

namespace poweranalysis {

HeadlessDriver::HeadlessDriver(HeadlessHost& host, Factory factory)
    : host_(host), factory_(std::move(factory)) {
  host_.oleAutomation = true;
}

// A dialog must not outlive its analysis.
HeadlessDriver::~HeadlessDriver() { host_.EndAnalysis(); }

bool HeadlessDriver::StartAnalysis() {
  host_.EndAnalysis();
  analysis_.reset();
  analysis_ = factory_();
  if (analysis_ == nullptr) {
    return false;
  }
  host_.Start(*analysis_);
  return host_.dialog() != nullptr;
}

std::uint64_t HeadlessDriver::OpenDialog() const { return host_.dialogNumber(); }

bool HeadlessDriver::IsOpen(std::uint64_t dialog) const { return host_.IsOpen(dialog); }

DialogSpec HeadlessDriver::Spec() const {
  return host_.form() == nullptr ? DialogSpec() : host_.form()->spec();
}

void HeadlessDriver::Type(int control, const std::string& text) { host_.Type(control, text); }

void HeadlessDriver::Press(int control) {
  const FormModel::Control* button =
      host_.form() == nullptr ? nullptr : host_.form()->Find(control);
  if (button != nullptr && button->spec.kind == ControlKind::CheckBox) {
    host_.form()->CheckDlgButton(control, !button->checked);
  }
  host_.Press(control);
}

void HeadlessDriver::PressWithFile(int control, const std::string& path) {
  // Whichever chooser comes up; an answer that no chooser took must not wait for the next.
  const auto save = host_.saveAnswers;
  const auto open = host_.openAnswers;
  host_.saveAnswers = {path};
  host_.openAnswers = {path};
  Press(control);
  host_.saveAnswers = save;
  host_.openAnswers = open;
}

void HeadlessDriver::Select(int list, int row) { host_.Select(list, row); }

std::string HeadlessDriver::Text(int control) const {
  return host_.form() == nullptr ? std::string() : host_.form()->GetDlgItemText(control);
}

std::optional<double> HeadlessDriver::Number(int control) const {
  double value = 0;
  if (host_.form() == nullptr || host_.form()->GetDlgItemDouble(control, value) != 0) {
    return std::nullopt;
  }
  return value;
}

bool HeadlessDriver::Checked(int control) const {
  return host_.form() != nullptr && host_.form()->IsDlgButtonChecked(control);
}

int HeadlessDriver::SelectedRow(int list) const {
  return host_.form() == nullptr ? -1 : host_.form()->SelectedListRow(list);
}

std::size_t HeadlessDriver::ItemCount() const { return host_.workbook().items.size(); }

WorkbookItem HeadlessDriver::Item(std::size_t index) const {
  return host_.workbook().items.at(index);
}

int HeadlessDriver::MessageCount() const { return host_.messageCalls(); }

}  // namespace poweranalysis
