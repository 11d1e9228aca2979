#pragma once

#include <string>
#include <vector>

// The description of a dialog from which a host builds its form: pages of controls. It is made by
// the dialog from its tables, so that every face shows the same fields under the same numbers.
namespace poweranalysis {

enum class ControlKind {
  IntEdit,   // whole number
  RealEdit,  // real number
  Radio,     // one of a group
  CheckBox,
  Button,
  List,
  HelpText,
  StaticText,
};

struct ControlSpec {
  int number = 0;
  ControlKind kind = ControlKind::StaticText;
  std::string name;       // for scripts and for accessibility: the field, or the command
  std::string caption;    // as shown, with "&" before the mnemonic
  std::string help;       // meaning, for tool tips
  std::string group;      // caption of the group box that it stands in
  int value = 0;          // of a radio button: the value that it stores
  bool chart = false;     // of a button: it draws the chart of its name
  bool readOnly = false;  // an edit that only shows
  bool whenDone = false;  // an edit whose command comes when the user has left it
  int row = -1;           // of a cell in the table of its page; -1: none
  int column = -1;
};

struct PageSpec {
  int resource = 0;
  std::string caption;
  std::vector<ControlSpec> controls;
  std::vector<std::string> rowTitles{};  // of its table of cells; empty when it has none
  std::vector<std::string> columnTitles{};
};

struct DialogSpec {
  std::string className;
  int resource = 0;
  std::string title;
  int defaultButton = 1;
  std::vector<ControlSpec> frame;
  std::vector<PageSpec> pages;
};

}  // namespace poweranalysis
