#pragma once

#include <memory>

#include "host/DialogDriver.h"
#include "macros/WindowCalls.h"

namespace poweranalysis {

// The window's driver as a macro sees it: every call is carried out on the window's thread.
class MarshalledDriver : public DialogDriver {
 public:
  MarshalledDriver(DialogDriver& driver, std::shared_ptr<WindowCalls> calls);

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
  // `work` must not refer to the caller's frame: see WindowCalls.
  template <class Work>
  auto OnWindow(Work work) const {
    return calls_->Do([&driver = driver_, work = std::move(work)] { return work(driver); });
  }

  DialogDriver& driver_;  // touched on the window's thread only
  std::shared_ptr<WindowCalls> calls_;
};

}  // namespace poweranalysis
