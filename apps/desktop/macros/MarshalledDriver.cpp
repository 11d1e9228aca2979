#include "macros/MarshalledDriver.h"

#include <utility>

namespace poweranalysis {

MarshalledDriver::MarshalledDriver(DialogDriver& driver, std::shared_ptr<WindowCalls> calls)
    : driver_(driver), calls_(std::move(calls)) {}

bool MarshalledDriver::StartAnalysis() {
  return OnWindow([](DialogDriver& driver) { return driver.StartAnalysis(); });
}

std::uint64_t MarshalledDriver::OpenDialog() const {
  return OnWindow([](DialogDriver& driver) { return driver.OpenDialog(); });
}

bool MarshalledDriver::IsOpen(std::uint64_t dialog) const {
  return OnWindow([dialog](DialogDriver& driver) { return driver.IsOpen(dialog); });
}

DialogSpec MarshalledDriver::Spec() const {
  return OnWindow([](DialogDriver& driver) { return driver.Spec(); });
}

void MarshalledDriver::Type(int control, const std::string& text) {
  OnWindow([control, text](DialogDriver& driver) { driver.Type(control, text); });
}

void MarshalledDriver::Press(int control) {
  OnWindow([control](DialogDriver& driver) { driver.Press(control); });
}

void MarshalledDriver::PressWithFile(int control, const std::string& path) {
  OnWindow([control, path](DialogDriver& driver) { driver.PressWithFile(control, path); });
}

void MarshalledDriver::Select(int list, int row) {
  OnWindow([list, row](DialogDriver& driver) { driver.Select(list, row); });
}

std::string MarshalledDriver::Text(int control) const {
  return OnWindow([control](DialogDriver& driver) { return driver.Text(control); });
}

std::optional<double> MarshalledDriver::Number(int control) const {
  return OnWindow([control](DialogDriver& driver) { return driver.Number(control); });
}

bool MarshalledDriver::Checked(int control) const {
  return OnWindow([control](DialogDriver& driver) { return driver.Checked(control); });
}

int MarshalledDriver::SelectedRow(int list) const {
  return OnWindow([list](DialogDriver& driver) { return driver.SelectedRow(list); });
}

std::size_t MarshalledDriver::ItemCount() const {
  return OnWindow([](DialogDriver& driver) { return driver.ItemCount(); });
}

WorkbookItem MarshalledDriver::Item(std::size_t index) const {
  return OnWindow([index](DialogDriver& driver) { return driver.Item(index); });
}

int MarshalledDriver::MessageCount() const {
  return OnWindow([](DialogDriver& driver) { return driver.MessageCount(); });
}

}  // namespace poweranalysis
