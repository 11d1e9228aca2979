#include "desktop/DesktopDriver.h"

#include <QThread>
#include <stdexcept>
#include <utility>

#include "desktop/Strings.h"

namespace poweranalysis {

void DesktopDriver::OnWindowThread(const std::function<void()>& work) const {
  if (QThread::currentThread() == window_.thread()) {
    work();
  } else {
    QMetaObject::invokeMethod(&window_, work, Qt::BlockingQueuedConnection);
  }
}

void DesktopDriver::WithForm(const std::function<void(DesktopForm&)>& work) const {
  OnWindowThread([&] {
    if (DesktopForm* form = window_.host().widgets()) {
      work(*form);
    }
  });
}

bool DesktopDriver::StartAnalysis() {
  bool open = false;
  OnWindowThread([&] {
    window_.NewAnalysis();
    open = window_.host().widgets() != nullptr;
  });
  return open;
}

std::uint64_t DesktopDriver::OpenDialog() const {
  std::uint64_t number = 0;
  OnWindowThread([&] { number = window_.host().dialogNumber(); });
  return number;
}

bool DesktopDriver::IsOpen(std::uint64_t dialog) const {
  bool open = false;
  OnWindowThread([&] { open = window_.host().IsOpen(dialog); });
  return open;
}

DialogSpec DesktopDriver::Spec() const {
  DialogSpec spec;
  WithForm([&](DesktopForm& form) { spec = form.spec(); });
  return spec;
}

void DesktopDriver::Type(int control, const std::string& text) {
  WithForm([&](DesktopForm& form) { form.Type(control, ToText(text)); });
}

void DesktopDriver::Press(int control) {
  WithForm([&](DesktopForm& form) { form.Click(control); });
}

void DesktopDriver::PressWithFile(int control, const std::string& path) {
  OnWindowThread([&] {
    DesktopHost& host = window_.host();
    const DesktopHost::FileChooser chooser = std::exchange(
        host.chooseFile,
        [&path](const DesktopHost::FileQuestion&) { return std::optional<std::string>(path); });
    Press(control);
    host.chooseFile = chooser;
  });
}

void DesktopDriver::Select(int list, int row) {
  WithForm([&](DesktopForm& form) { form.Choose(list, row); });
}

std::string DesktopDriver::Text(int control) const {
  std::string text;
  WithForm([&](DesktopForm& form) { text = form.model().GetDlgItemText(control); });
  return text;
}

std::optional<double> DesktopDriver::Number(int control) const {
  std::optional<double> number;
  WithForm([&](DesktopForm& form) {
    double value = 0;
    if (form.model().GetDlgItemDouble(control, value) == 0) {
      number = value;
    }
  });
  return number;
}

bool DesktopDriver::Checked(int control) const {
  bool checked = false;
  WithForm([&](DesktopForm& form) { checked = form.model().IsDlgButtonChecked(control); });
  return checked;
}

int DesktopDriver::SelectedRow(int list) const {
  int row = -1;
  WithForm([&](DesktopForm& form) { row = form.model().SelectedListRow(list); });
  return row;
}

std::size_t DesktopDriver::ItemCount() const {
  std::size_t count = 0;
  OnWindowThread([&] {
    for (const StudyRecord& record : window_.book().studies()) {
      count += record.study.workbook.items.size();
    }
  });
  return count;
}

WorkbookItem DesktopDriver::Item(std::size_t index) const {
  std::optional<WorkbookItem> found;
  OnWindowThread([&] {
    std::size_t before = 0;
    for (const StudyRecord& record : window_.book().studies()) {
      const std::vector<WorkbookItem>& items = record.study.workbook.items;
      if (!found && index - before < items.size()) {
        found = items[index - before];
      }
      before += items.size();
    }
  });
  if (!found) {
    throw std::out_of_range("no result of that number");
  }
  return *found;
}

int DesktopDriver::MessageCount() const {
  int count = 0;
  OnWindowThread([&] { count = window_.host().messageCalls(); });
  return count;
}

}  // namespace poweranalysis
