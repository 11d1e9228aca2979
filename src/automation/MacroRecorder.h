#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "automation/Interfaces.h"

// Writing down what a user does in the dialogs, as a script of the object model.
namespace poweranalysis {

struct GridRow;

// A value as a recorder holds it: a whole number, or, once it was replaced, a named constant.
class COleAConstant {
 public:
  enum Flag { Int = 0, Named = 1 };

  COleAConstant() = default;  // holds no number
  COleAConstant(int id, int flag) : id_(id), flag_(flag) {}

  // The whole number; nothing when there is none, as in a named constant.
  std::optional<int> getintvalue() const { return id_ && flag_ == Int ? id_ : std::nullopt; }
  // The number of the named constant; nothing for a plain value.
  std::optional<int> constant() const { return id_ && flag_ == Named ? id_ : std::nullopt; }

 private:
  std::optional<int> id_;
  int flag_ = Int;
};

// Replaces a row that was chosen in one of the startup's lists by the constant of its name. The
// tasks and the modes are numbered in one run, which is why the mode in force decides about a
// task's. Whatever is not a row of these lists stays as it is.
void PostRecordControlValue(int control, COleAConstant* value);

// The enumerator with a number; null for a number outside the run. A second, misspelled name of the
// independent t-test has no number.
const char* ConstantName(int constant);

// Writes a script that does again what the user did: it runs as it stands with Python. A host
// reports each action to it before the dialog answers, with the number of the dialog, which differs
// for each dialog that opens, and what the dialog looks like.
//
// A script holds whole analyses. When recording begins in the middle of one, what the dialogs hold
// by then is written first.
class MacroRecorder {
 public:
  // A new analysis has begun: its startup dialog opens.
  void AnalysisStarted();
  // A text was typed; `number` is what the control reads from it, nothing when it is not a number.
  void Typed(std::uint64_t dialog,
             const DialogSpec& spec,
             int control,
             std::string_view text,
             std::optional<double> number);
  // A button was clicked; `checked` is the state that a check box takes.
  void Pressed(std::uint64_t dialog, const DialogSpec& spec, int control, bool checked = true);
  // A row of a list was selected.
  void Selected(std::uint64_t dialog, const DialogSpec& spec, int list, int row);
  // The button pressed last brought up a file chooser: what was chosen, or nothing on Cancel, which
  // takes the press back out.
  void FileChosen(const std::optional<std::string>& path);

  bool empty() const { return lines_.empty(); }
  void Clear();
  std::string Script() const;

 private:
  struct Line {
    std::string text;
    std::uint64_t dialog = 0;
    std::string subject;        // field that it sets; empty when it sets none
    std::size_t arguments = 0;  // where a path goes; 0 when it takes none
  };

  void Enter(std::uint64_t dialog, const DialogSpec& spec);
  void CatchUp(const Interface& interface, const DialogSpec& spec);
  void CatchUpGrid(const GridRow& grid, const DialogSpec& spec);
  void WriteCounts(const GridRow& grid, const DialogSpec& page);
  void OpenVariable(const Interface& interface, bool started);
  void SetValue(const std::string& subject, const std::string& left, const std::string& value);
  void SetField(const ControlSpec& control, const std::string& value);
  void PressField(const ControlSpec& control, bool checked);
  void WriteFields(const DialogSpec& spec, Instance instance);
  void ChooseRow(int list, int row);
  void CompleteStartup();
  void CallButton(const ControlSpec& control);
  void Do(const std::string& text, std::size_t arguments = 0);

  // A dialog that may be covered by another, and what the script calls it.
  struct Known {
    const Interface* interface = nullptr;
    std::string variable;
  };

  std::vector<Line> lines_;
  std::map<std::uint64_t, Known> known_;
  std::uint64_t dialog_ = 0;
  const Interface* interface_ = nullptr;
  std::string variable_;
  bool started_ = false;      // the next startup dialog is that of a new analysis
  bool modeWritten_ = false;  // for the open startup dialog
  bool taskWritten_ = false;
};

}  // namespace poweranalysis
