#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "host/DialogSpec.h"
#include "host/Workbook.h"

namespace poweranalysis {

// How a script drives the dialogs of a host, with or without a window. Each operation is what a
// user does, and returns once the dialog has answered it: its handler has run, and the dialog that
// it led to, if any, is open. A host whose scripts run on another thread than its dialogs moves
// every call over.
class DialogDriver {
 public:
  virtual ~DialogDriver() = default;

  // Ends the running analysis, if there is one, and opens the startup dialog of a new one; false
  // when no dialog came up.
  virtual bool StartAnalysis() = 0;

  // --- The open dialog.
  // Its number, another for each dialog that was ever opened; 0 when none is open.
  virtual std::uint64_t OpenDialog() const = 0;
  // Whether the dialog of a number has not closed: a modal one may lie above it.
  virtual bool IsOpen(std::uint64_t dialog) const { return dialog == OpenDialog(); }
  // What it looks like; empty when none is open.
  virtual DialogSpec Spec() const = 0;

  // --- As the user does.
  // Puts a text into an edit control and sends its command.
  virtual void Type(int control, const std::string& text) = 0;
  // Clicks a button: a radio button is chosen, a check box changes over, and the command is sent.
  virtual void Press(int control) = 0;
  // As Press, with a file chooser that comes up answered by `path` instead of shown.
  virtual void PressWithFile(int control, const std::string& path) = 0;
  // Selects a row of a list and sends the change; a row that the list lacks leaves none selected.
  virtual void Select(int list, int row) = 0;

  // --- What the controls show.
  virtual std::string Text(int control) const = 0;
  // The number behind an edit control at full precision; nothing for a text that is not a number.
  virtual std::optional<double> Number(int control) const = 0;
  virtual bool Checked(int control) const = 0;
  virtual int SelectedRow(int list) const = 0;  // -1: none

  // --- What came out.
  // Results sent so far, in their order.
  virtual std::size_t ItemCount() const = 0;
  virtual WorkbookItem Item(std::size_t index) const = 0;
  // Messages shown so far, repeats counted one by one.
  virtual int MessageCount() const = 0;
};

}  // namespace poweranalysis
