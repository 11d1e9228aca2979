#include "frame/DefineTask.h"

#include <algorithm>

namespace poweranalysis {

namespace {

std::vector<ListRow> ModeList() {
  std::vector<ListRow> rows;
  for (const ModeRow& mode : Modes()) {
    rows.push_back({mode.name, mode.icon});
  }
  return rows;
}

std::vector<ListRow> TaskList(int mode) {
  std::vector<ListRow> rows;
  for (const TaskRow& task : Tasks(mode)) {
    rows.push_back({task.name, task.icon});
  }
  return rows;
}

bool ShareOneList(int mode, int otherMode) { return Tasks(mode).data() == Tasks(otherMode).data(); }

// A script can put any number into the block.
bool KnownMode(const PowerSettingsHead& block) { return block.Mode >= 0 && block.Mode < ModeCount; }

int SelectionOf(const PowerSettingsHead& block) {
  return KnownMode(block) ? block.Selection[static_cast<std::size_t>(block.Mode)] : -1;
}

bool IsHelpControl(int control) { return control == ControlModeHelp || control == ControlTaskHelp; }

}  // namespace

void FillTaskList(FormModel& form, int list, std::span<const ListRow> rows, int selected) {
  form.ResetListContent(list);
  for (const ListRow& row : rows) {
    form.AddListRow(list, LoadText(row.text), row.icon);
  }
  if (selected != NoSelection) {
    form.SelectListRow(list, selected);
  }
}

CDefineTask::CDefineTask(CAnalysisSupport& analysis)
    : CPowerAnalysisModelessDialog(analysis, StartupDialog().resource) {}

DialogSpec CDefineTask::Spec() const {
  const auto control = [](int number, ControlKind kind, const char* name, TextId caption) {
    ControlSpec spec;
    spec.number = number;
    spec.kind = kind;
    spec.name = name;
    spec.caption = LoadText(caption);
    return spec;
  };
  DialogSpec spec;
  spec.className = StartupDialog().className;
  spec.resource = StartupDialog().resource;
  spec.title = LoadText(StartupDialog().title);
  spec.frame = {control(ControlOk, ControlKind::Button, "OK", text::ButtonOK),
                control(ControlCancel, ControlKind::Button, "Cancel", text::ButtonCancel),
                control(ControlOptions, ControlKind::Button, "Options", text::ButtonOptions)};
  spec.pages = {{StartupPage,
                 LoadText(text::CaptionQuick),
                 {control(ControlModes, ControlKind::List, "AnalysisItem", text::ListModes),
                  control(ControlTasks, ControlKind::List, "AnalysisType", text::ListTasks),
                  control(ControlModeHelp, ControlKind::HelpText, "ModeHelp", text::ListModes),
                  control(ControlTaskHelp, ControlKind::HelpText, "TaskHelp", text::ListTasks)}}};
  return spec;
}

long CDefineTask::EventHandler(const DialogEvent& event) {
  if (const long taken = CommonHandler(event); taken != 0) {
    return taken;
  }
  if (event.message == MessageColour) {
    if (!IsHelpControl(event.control)) {
      return 0;
    }
    analysis().host().RGBAttrType(1);
    return 1;
  }
  if (event.message == MessageStart) {
    return Start();
  }
  if (event.message != MessageCommand) {
    return 0;
  }
  switch (event.control) {
    case ControlOk:
      ExitDialog(1, ExitForward, 0);
      return 0;
    case ControlCancel:
      ExitDialog(0, ExitBack, 0);
      return 1;
    case ControlModes:
      return ModeListCommand(event.notification);
    case ControlTasks:
      return TaskListCommand(event.notification);
    default:
      return 0;
  }
}

long CDefineTask::Start() {
  ResourceScope scope;
  form().AddDlgTabs(Spec());
  scope.Release();

  for (int mode = 0; mode < ModeCount; ++mode) {
    const std::span<const TaskRow> tasks = Tasks(mode);
    for (std::size_t row = 0; row < std::min(tasks.size(), kHelpRows); ++row) {
      help_[row][static_cast<std::size_t>(mode)] = tasks[row].help;
    }
  }
  if (const PowerSettingsHead* block = Module().settings) {
    shadow_ = *block;
    FillTaskList(form(), ControlModes, ModeList(), block->Mode);
    FillTaskList(form(), ControlTasks, TaskList(block->Mode), NoSelection);
    form().SelectListRow(ControlTasks, SelectionOf(*block));
    ShowTaskHelp(*block);
  }
  analysis().host().EnableStartupMenus(1);
  form().SetHelpTextAttrib(ControlModeHelp);
  form().SetHelpTextAttrib(ControlTaskHelp);
  // A script goes on as if the message had not been taken.
  return analysis().host().IsOleAutomation() ? 0 : 1;
}

long CDefineTask::ModeListCommand(Notification notification) {
  PowerSettingsHead* block = Module().settings;
  if (block == nullptr) {
    return 0;
  }
  if (notification == Notification::DoubleClick) {
    CallEventHandler({MessageCommand, ControlOk, Notification::Command});
  } else if (notification == Notification::SelectionChange) {
    const int chosen = form().SelectedListRow(ControlModes);
    const bool keepList = chosen >= 0 && chosen < ModeCount && ShareOneList(chosen, block->Mode);
    ChangeMode(*block, keepList);
    ShowTaskHelp(*block);
  }
  return 0;
}

long CDefineTask::TaskListCommand(Notification notification) {
  PowerSettingsHead* block = Module().settings;
  if (block == nullptr) {
    return 0;
  }
  if (notification == Notification::DoubleClick) {
    CallEventHandler({MessageCommand, ControlOk, Notification::Command});
  } else if (notification == Notification::SelectionChange) {
    if (!KnownMode(*block)) {
      return 0;
    }
    const auto row = static_cast<std::int16_t>(form().SelectedListRow(ControlTasks));
    block->Selection[static_cast<std::size_t>(block->Mode)] = row;
    shadow_ = *block;
    ShowTaskHelp(*block);
  }
  return 0;
}

void CDefineTask::ChangeMode(PowerSettingsHead& block, bool keepList) {
  const int chosen = form().SelectedListRow(ControlModes);
  if (chosen < 0 || chosen >= ModeCount) {
    return;
  }
  block.Mode = static_cast<std::int16_t>(chosen);
  shadow_ = block;
  if (!keepList) {
    FillTaskList(form(), ControlTasks, TaskList(chosen), NoSelection);
  }
  form().SelectListRow(ControlTasks, SelectionOf(block));
}

void CDefineTask::ShowTaskHelp(const PowerSettingsHead& block) {
  if (!KnownMode(block)) {
    form().SetDlgItemText(ControlModeHelp, "");
    form().SetDlgItemText(ControlTaskHelp, "");
    return;
  }
  const auto mode = static_cast<std::size_t>(block.Mode);
  form().SetDlgItemText(ControlModeHelp, LoadText(Modes()[mode].help));
  const int row = SelectionOf(block);
  const bool known = row >= 0 && static_cast<std::size_t>(row) < Tasks(block.Mode).size();
  form().SetDlgItemText(ControlTaskHelp,
                        known ? LoadText(help_[static_cast<std::size_t>(row)][mode]) : "");
}

}  // namespace poweranalysis
