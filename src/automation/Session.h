#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "automation/SpecLookup.h"
#include "host/DialogDriver.h"

namespace poweranalysis {

// What is put into a control: a number, or a text as it is typed.
using Entry = std::variant<std::int64_t, double, std::string>;

// The number of an entry; throws AutomationError, which names `what`, for a text.
double NumberOf(const Entry& entry, std::string_view what);

// The one way to drive the dialogs by their names: open a task, put values into its fields, press
// its buttons, take what came out. The command line's runs, Python's calculations and the object
// model all go this way, over whatever host the driver has.
class Session {
 public:
  using Cancelled = std::function<bool()>;

  // Once `cancelled` says so, no button is pressed any more.
  explicit Session(DialogDriver& driver, Cancelled cancelled = nullptr)
      : driver_(driver), cancelled_(std::move(cancelled)) {}

  // Chooses a mode and a task of its list in a new analysis, and goes on to the task's first
  // dialog; false when the task has none.
  bool OpenTask(int mode, int row);

  // --- The open dialog, empty when none is open. What is found lasts as long as the dialog.
  const DialogSpec& Spec();
  // The controls of a field; empty when the dialog does not show it.
  std::vector<const ControlSpec*> ControlsOf(std::string_view field);
  // The same for a field that must be there, and the button of a name: UnknownMember, with the
  // nearest name, for one that is not.
  std::vector<const ControlSpec*> FindField(std::string_view field);
  const ControlSpec& FindButton(std::string_view name);
  const ControlSpec& FindChart(std::string_view name);

  // --- As a user does it.
  // Types into an edit, chooses a radio button or sets a check box for anything but 0. A text for
  // what takes numbers alone is an AutomationError.
  void Put(const ControlSpec& control, const Entry& entry);
  // Puts a value into the controls of a field.
  enum class Outcome {
    Put,
    Shown,    // the control shows the value already, and was left alone
    NoButton  // the field has buttons, and none of them stands for the value
  };
  Outcome PutValue(const std::vector<const ControlSpec*>& controls, double value);
  void Press(int control);
  // A button of the dialog, by its name.
  void Press(std::string_view button) { Press(FindButton(button).number); }
  // The charts that the button of this name draws; none when the dialog refuses.
  std::vector<Chart> Draw(std::string_view chart);

  // --- What came of the last press.
  bool HasSpoken() const { return driver_.MessageCount() > messages_; }
  template <class Item>
  std::vector<Item> NewItems() const {
    std::vector<Item> items;
    for (std::size_t i = items_; i < driver_.ItemCount(); ++i) {
      WorkbookItem item = driver_.Item(i);
      if (Item* found = std::get_if<Item>(&item)) {
        items.push_back(std::move(*found));
      }
    }
    return items;
  }

 private:
  DialogDriver& driver_;
  Cancelled cancelled_;
  DialogSpec spec_;
  std::uint64_t dialog_ = 0;  // that spec_ describes
  std::size_t items_ = 0;     // before the last press
  int messages_ = 0;
};

}  // namespace poweranalysis
