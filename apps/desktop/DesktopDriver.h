#pragma once

#include <functional>

#include "desktop/MainWindow.h"
#include "host/DialogDriver.h"

namespace poweranalysis {

// Lets a script drive the dialogs of the window. Calls may come from any thread: each is carried
// out on the window's, and returns when the dialog has answered it.
class DesktopDriver : public DialogDriver {
 public:
  explicit DesktopDriver(MainWindow& window) : window_(window) {}

  bool StartAnalysis() override;
  std::uint64_t OpenDialog() const override;
  bool IsOpen(std::uint64_t dialog) const override;
  DialogSpec Spec() const override;
  void Type(int control, const std::string& text) override;
  void Press(int control) override;
  void PressWithFile(int control, const std::string& path) override;
  void Select(int list, int row) override;
  std::string Text(int control) const override;
  std::optional<double> Number(int control) const override;
  bool Checked(int control) const override;
  int SelectedRow(int list) const override;
  std::size_t ItemCount() const override;
  WorkbookItem Item(std::size_t index) const override;
  int MessageCount() const override;

 private:
  void OnWindowThread(const std::function<void()>& work) const;
  // Does nothing when no dialog is open.
  void WithForm(const std::function<void(DesktopForm&)>& work) const;

  MainWindow& window_;
};

}  // namespace poweranalysis
