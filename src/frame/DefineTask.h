#pragma once

#include <array>
#include <vector>

#include "frame/PowerAnalysis.h"

namespace poweranalysis {

// Controls of the startup page.
inline constexpr int ControlOk = 1;
inline constexpr int ControlCancel = 2;
inline constexpr int ControlModes = 101;
inline constexpr int ControlTasks = 102;
inline constexpr int ControlTaskHelp = 103;
inline constexpr int ControlModeHelp = 105;
inline constexpr int ControlOptions = 10710;

inline constexpr int StartupPage = 6101;

// "No selection from this call."
inline constexpr int NoSelection = 65535;

// Fills a list from (text, icon) pairs, its content reset first, and selects a row.
struct ListRow {
  TextId text;
  int icon;
};
void FillTaskList(FormModel& form, int list, std::span<const ListRow> rows, int selected);

// The startup dialog: the user picks a mode and a task, which become Mode and Selection[Mode] of
// the block. Each mode remembers its own row.
class CDefineTask : public CPowerAnalysisModelessDialog {
 public:
  explicit CDefineTask(CAnalysisSupport& analysis);

  DialogSpec Spec() const override;

 protected:
  long EventHandler(const DialogEvent& event) override;

 private:
  static constexpr std::size_t kHelpRows = 18;

  long Start();
  long ModeListCommand(Notification notification);
  long TaskListCommand(Notification notification);
  void ChangeMode(PowerSettingsHead& block, bool keepList);
  void ShowTaskHelp(const PowerSettingsHead& block);

  // The choice as of the last change, beside the block.
  PowerSettingsHead shadow_;
  // Help of each task, by row and mode, assembled when the dialog opens.
  std::array<std::array<TextId, ModeCount>, kHelpRows> help_{};
};

}  // namespace poweranalysis
