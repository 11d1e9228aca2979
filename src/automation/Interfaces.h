#pragma once

#include <span>
#include <string>
#include <string_view>

#include "frame/TaskCatalogue.h"
#include "settings/PowerSettings.h"

// The vocabulary of scripts: one interface for each dialog class, its members, and the control that
// each member stands for. The object model, recorded macros, the Python classes and their stubs are
// all made from this table.
namespace poweranalysis {

enum class MemberKind {
  Property,  // get and put
  PutOnly,
  ReadOnly,
  Method,
};

// As the interface declares it, which need not be the type of the field behind it.
enum class MemberType {
  None,  // of a method without result
  Real,  // double
  Int,
  Text,
  Variant,
  Object,        // a table, a chart, or the application
  AnalysisType,  // PowAnalysisType, see AnalysisTypes()
  AnalysisItem,  // PowAnalysisItem, see AnalysisItems()
};

// What stands behind a member, and so how a get and a put go.
enum class Binding {
  Edit,     // an edit control
  Flag,     // one radio button of a group
  Check,    // a check box
  List,     // a row of a list
  Button,   // a method: presses a button
  Summary,  // presses the calculate button, gives the table
  Graph,    // presses a chart button, gives the chart
  Name,     // the caption
  Host,     // the application
  Stored,   // kept with the object, without effect
};

struct Member {
  const char* name;
  MemberKind kind;
  MemberType type;
  Binding binding;
  int control;        // 0: none
  const char* field;  // that the control shows; "" when it shows none
  int value;          // of a flag: the value that its button stores
  int id;             // in the interface, counted on from the last of the base interface
};

enum class DialogKind { Base, Startup, Parameters, Results, Interval, Calculator, Grid };

struct Interface {
  const char* name;
  std::string className;  // of the dialog; empty for the base interface
  DialogKind kind;
  const DialogRow* dialog;    // in the catalogue; null for the base interface and the grid
  const FamilyTable* record;  // where its fields live; null when it has none
  std::string helpTitle;
  std::span<const Member> members;  // its own; those of the base interface come first in the object

  // Own members, then those of the base interface; null when there is none with that name.
  const Member* Find(std::string_view member) const;
  // A member that stands for a control and, for a flag, is that button; null when none does.
  const Member* FindControl(int control) const;
};

// All 91: the base interface ZlvAnalysisDialog first, then the dialogs'.
std::span<const Interface> Interfaces();
const Interface& BaseInterface();
// By its name; null when there is none.
const Interface* FindInterface(std::string_view name);
// Of a dialog class; null for one without an interface.
const Interface* InterfaceOfClass(std::string_view className);

// What a member means, in words, for documentation: the meaning of its field, or the caption of
// what it presses.
std::string MemberHelp(const Interface& interface, const Member& member);

}  // namespace poweranalysis
