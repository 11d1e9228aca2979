#pragma once

#include <atomic>
#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "automation/Errors.h"
#include "automation/Interfaces.h"
#include "automation/Session.h"

// The objects that a script holds: the application, and one object for each dialog that opens.
namespace poweranalysis {

class Application;

// What goes in and out of members. A get of a flag or a count gives an int, of any other number a
// double; Summary gives a table, GraphOf a chart (or charts, when one button draws several), and
// none when the dialog refused.
using Value = std::variant<std::monostate,
                           std::int64_t,
                           double,
                           std::string,
                           Application*,
                           SummaryTable,
                           Chart,
                           std::vector<Chart>>;

// One open dialog. A put is typing: the text of the control is set and its command sent, so that
// bounds are checked by OK and not before. After the dialog has closed every call raises
// DialogClosed; while another lies above it every call fails, and works again afterwards.
class DialogObject {
 public:
  DialogObject(Application& application, const Interface& interface, std::uint64_t dialog);
  ~DialogObject();
  DialogObject(const DialogObject&) = delete;
  DialogObject& operator=(const DialogObject&) = delete;

  // The table of its members, also after it closed.
  const Interface& interface() const { return interface_; }
  bool IsOpen() const;

  Value Get(std::string_view member);
  void Put(std::string_view member, const Value& value);
  // OK, Cancel, SaveSettingsAs (with an optional path that answers the file chooser),
  // SaveAsDefault.
  Value Call(std::string_view member, const Value& argument = {});

  // 1 when it worked: a parameter dialog closed, a results or interval dialog sent a table, a
  // calculator computed, the startup opened the chosen dialog. Else 0, with a message.
  int OK();
  void Cancel();
  void SaveSettingsAs(const std::optional<std::string>& path = std::nullopt);
  void SaveAsDefault();

  // --- Beyond the interface: every field and button that the dialog shows, by name.
  Value GetField(std::string_view field);
  void SetField(std::string_view field, const Value& value);
  // As "RestoreDefaults", "ChangeParams", "Save", "Open"; a path answers the button's file chooser.
  void PressButton(std::string_view button, const std::optional<std::string>& path = std::nullopt);

  // How many dialog objects are alive in this process: a plain count, a lock on the module.
  static int LockCount() { return locks_.load(); }

 private:
  void ThrowIfClosed() const;
  const Member& MemberOf(std::string_view name) const;
  const ControlSpec& ControlOf(const Member& member);
  Value ResultOf(const Member& member);
  Value Read(const ControlSpec& control, MemberType type);
  void Choose(const Member& member, const Value& value);
  Session& session() const;

  Application& application_;
  const Interface& interface_;
  std::uint64_t dialog_;
  std::map<std::string, Value, std::less<>> stored_;
  static std::atomic<int> locks_;
};

// The root of the object model. It must outlive the objects that it gives.
class Application {
 public:
  explicit Application(DialogDriver& driver) : driver_(driver), session_(driver) {}
  Application(const Application&) = delete;
  Application& operator=(const Application&) = delete;

  // Opens the startup dialog of a new analysis, PowStartup.
  std::shared_ptr<DialogObject> StartAnalysis();
  // The open dialog; null when none is open. The same object as long as it is the same dialog.
  std::shared_ptr<DialogObject> Dialog();

  DialogDriver& driver() const { return driver_; }
  Session& session() { return session_; }

 private:
  DialogDriver& driver_;
  Session session_;
  std::map<std::uint64_t, std::shared_ptr<DialogObject>> dialogs_;  // those open, by number
};

}  // namespace poweranalysis
