#pragma once

#include <functional>
#include <memory>

#include "host/DialogDriver.h"
#include "host/HeadlessHost.h"

namespace poweranalysis {

// Drives the dialogs of a host without a window: the command line's macros, the Python module,
// tests.
class HeadlessDriver : public DialogDriver {
 public:
  using Factory = std::function<std::unique_ptr<CAnalysisSupport>()>;

  // `factory` makes a new analysis: the program's exported one, which only the faces know.
  HeadlessDriver(HeadlessHost& host, Factory factory);
  ~HeadlessDriver() override;

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

  HeadlessHost& host() const { return host_; }

 private:
  HeadlessHost& host_;
  Factory factory_;
  std::unique_ptr<CAnalysisSupport> analysis_;
};

}  // namespace poweranalysis
