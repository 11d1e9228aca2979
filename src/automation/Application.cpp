#include "automation/Application.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "dialogs/Controls.h"

namespace poweranalysis {

namespace {

// Toward zero and held to 32 bits, as a whole number is read from a control; nothing for what is
// not a number.
std::int64_t WholeOf(double value) {
  constexpr double kLowest = std::numeric_limits<std::int32_t>::min();
  constexpr double kHighest = std::numeric_limits<std::int32_t>::max();
  return std::isnan(value)
             ? 0
             : static_cast<std::int64_t>(std::clamp(std::trunc(value), kLowest, kHighest));
}

// What a put gives, for a control.
Entry EntryOf(const Value& value, std::string_view member) {
  if (const auto* whole = std::get_if<std::int64_t>(&value)) {
    return *whole;
  }
  if (const auto* real = std::get_if<double>(&value)) {
    return *real;
  }
  if (const auto* text = std::get_if<std::string>(&value)) {
    return *text;
  }
  throw AutomationError(Quoted(member) + " takes a number");
}

int RowOfEnumerator(std::string_view name, std::span<const Enumerator> enumerators) {
  std::vector<std::string> names;
  for (const Enumerator& enumerator : enumerators) {
    if (name == enumerator.name) {
      return enumerator.value;
    }
    names.emplace_back(enumerator.name);
  }
  ThrowUnknown("There is no constant", name, names);
}

}  // namespace

std::atomic<int> DialogObject::locks_{0};

DialogObject::DialogObject(Application& application,
                           const Interface& interface,
                           std::uint64_t dialog)
    : application_(application), interface_(interface), dialog_(dialog) {
  ++locks_;
}

DialogObject::~DialogObject() { --locks_; }

bool DialogObject::IsOpen() const { return application_.driver().IsOpen(dialog_); }

void DialogObject::ThrowIfClosed() const {
  if (!IsOpen()) {
    throw DialogClosed(std::string(interface_.name) + ": the dialog has closed");
  }
  if (application_.driver().OpenDialog() != dialog_) {
    throw AutomationError(std::string(interface_.name) +
                          ": another dialog is open above it, which Dialog gives");
  }
}

Session& DialogObject::session() const { return application_.session(); }

const Member& DialogObject::MemberOf(std::string_view name) const {
  const Member* member = interface_.Find(name);
  if (member == nullptr) {
    std::vector<std::string> names;
    for (const std::span<const Member> members : {interface_.members, BaseInterface().members}) {
      for (const Member& known : members) {
        names.emplace_back(known.name);
      }
    }
    ThrowUnknown(std::string(interface_.name) + " has no member", name, names);
  }
  return *member;
}

const ControlSpec& DialogObject::ControlOf(const Member& member) {
  const ControlSpec* control = FindControlSpec(session().Spec(), member.control);
  if (control == nullptr) {
    throw AutomationError(Quoted(member.name) + ": the dialog does not show it");
  }
  return *control;
}

// --- Gets.

Value DialogObject::Get(std::string_view name) {
  const Member& member = MemberOf(name);
  ThrowIfClosed();
  if (member.kind == MemberKind::PutOnly || member.kind == MemberKind::Method) {
    throw AutomationError(Quoted(name) + (member.kind == MemberKind::Method
                                              ? " is a method: call it"
                                              : " can be set and not read"));
  }
  switch (member.binding) {
    case Binding::Name:
      return session().Spec().title;
    case Binding::Host:
      return &application_;
    case Binding::Summary:
    case Binding::Graph:
      return ResultOf(member);
    case Binding::List:
      return static_cast<std::int64_t>(application_.driver().SelectedRow(member.control));
    default:
      return Read(ControlOf(member), member.type);
  }
}

Value DialogObject::ResultOf(const Member& member) {
  session().Press(ControlOf(member).number);
  if (member.binding == Binding::Summary) {
    const std::vector<SummaryTable> tables = session().NewItems<SummaryTable>();
    return tables.empty() ? Value() : Value(tables.back());
  }
  std::vector<Chart> charts = session().NewItems<Chart>();
  if (charts.empty()) {
    return {};
  }
  return charts.size() == 1 ? Value(charts.front()) : Value(std::move(charts));
}

Value DialogObject::Read(const ControlSpec& control, MemberType type) {
  const DialogDriver& driver = application_.driver();
  double value = 0;
  if (control.kind == ControlKind::Radio || control.kind == ControlKind::CheckBox) {
    value = driver.Checked(control.number) ? 1 : 0;
  } else {
    // A text that is not a number reads as the 0 that it stores.
    value = driver.Number(control.number).value_or(0);
    if (control.kind == ControlKind::IntEdit) {
      value = static_cast<double>(WholeOf(value));
    }
  }
  return type == MemberType::Real ? Value(value) : Value(WholeOf(value));
}

// --- Puts.

void DialogObject::Put(std::string_view name, const Value& value) {
  const Member& member = MemberOf(name);
  ThrowIfClosed();
  switch (member.binding) {
    case Binding::Edit:
    case Binding::Flag:
    case Binding::Check:
      return session().Put(ControlOf(member), EntryOf(value, name));
    case Binding::List:
      return Choose(member, value);
    case Binding::Stored:
      stored_.insert_or_assign(std::string(name), value);
      return;
    default:
      throw AutomationError(Quoted(name) + (member.kind == MemberKind::Method
                                                ? " is a method: call it"
                                                : " is read-only"));
  }
}

void DialogObject::Choose(const Member& member, const Value& value) {
  const bool item = member.type == MemberType::AnalysisItem;
  const auto* name = std::get_if<std::string>(&value);
  const int row =
      name != nullptr
          ? RowOfEnumerator(*name, item ? AnalysisItems() : AnalysisTypes())
          : static_cast<int>(WholeOf(NumberOf(EntryOf(value, member.name), member.name)));
  application_.driver().Select(member.control, row);
}

// --- Calls.

Value DialogObject::Call(std::string_view name, const Value& argument) {
  const Member& member = MemberOf(name);
  ThrowIfClosed();
  if (member.kind != MemberKind::Method) {
    throw AutomationError(Quoted(name) + " is a property and cannot be called");
  }
  if (member.control == ControlAccept) {
    return static_cast<std::int64_t>(OK());
  }
  const auto* path = std::get_if<std::string>(&argument);
  if (path != nullptr && member.control == ControlSaveAs) {
    SaveSettingsAs(*path);
  } else if (!std::holds_alternative<std::monostate>(argument)) {
    throw AutomationError(
        Quoted(name) + (member.control == ControlSaveAs ? " takes a path" : " takes no argument"));
  } else {
    session().Press(member.control);
  }
  return {};
}

namespace {

// The one refusal, with a message, that comes before anything else and leaves the boxes as they
// were.
bool HasTooFewObservations(const DialogDriver& driver, const DialogSpec& spec) {
  std::optional<double> observations;
  std::optional<double> variables;
  for (const ControlSpec* control : FieldControls(spec)) {
    if (control->name == "SampleSize") {
      observations = driver.Number(control->number).value_or(0);
    } else if (control->name == "TotalNumberOfVars") {
      variables = driver.Number(control->number).value_or(0);
    }
  }
  return observations && variables && *observations < *variables;
}

// Whether the computation just asked for gave a number: a refusal leaves the box of the unknown
// empty. A message may come beside an answer, and `told` whether one came.
bool HasComputed(const DialogDriver& driver, bool told) {
  const DialogSpec spec = driver.Spec();
  const ControlSpec* box =
      UnknownBox(spec, [&driver](int control) { return driver.Checked(control); });
  const std::string answer = box == nullptr ? std::string() : driver.Text(box->number);
  return !answer.empty() && answer != LoadText(text::CaptionError) &&
         !(told && HasTooFewObservations(driver, spec));
}

}  // namespace

int DialogObject::OK() {
  ThrowIfClosed();
  DialogDriver& driver = application_.driver();
  session().Press(ControlAccept);
  switch (interface_.kind) {
    case DialogKind::Startup:
      return !IsOpen() && driver.OpenDialog() != 0 ? 1 : 0;
    case DialogKind::Results:
    case DialogKind::Interval:
      return session().NewItems<SummaryTable>().empty() ? 0 : 1;
    case DialogKind::Calculator:
      return HasComputed(driver, session().HasSpoken()) ? 1 : 0;
    default:
      return IsOpen() ? 0 : 1;
  }
}

void DialogObject::Cancel() {
  ThrowIfClosed();
  session().Press(ControlBack);
}

void DialogObject::SaveSettingsAs(const std::optional<std::string>& path) {
  const Member& member = MemberOf("SaveSettingsAs");
  ThrowIfClosed();
  if (path) {
    application_.driver().PressWithFile(member.control, *path);
  } else {
    session().Press(member.control);
  }
}

void DialogObject::SaveAsDefault() {
  const Member& member = MemberOf("SaveAsDefault");
  ThrowIfClosed();
  session().Press(member.control);
}

// --- Beyond the interface.

Value DialogObject::GetField(std::string_view field) {
  ThrowIfClosed();
  const std::vector<const ControlSpec*> controls = session().FindField(field);
  const ControlSpec& first = *controls.front();
  if (first.kind != ControlKind::Radio) {
    return Read(first, first.kind == ControlKind::RealEdit ? MemberType::Real : MemberType::Int);
  }
  for (const ControlSpec* control : controls) {
    if (application_.driver().Checked(control->number)) {
      return static_cast<std::int64_t>(control->value);
    }
  }
  return {};
}

void DialogObject::SetField(std::string_view field, const Value& value) {
  ThrowIfClosed();
  const std::vector<const ControlSpec*> controls = session().FindField(field);
  if (controls.front()->kind != ControlKind::Radio) {
    return session().Put(*controls.front(), EntryOf(value, field));
  }
  const double wanted = NumberOf(EntryOf(value, field), field);
  if (session().PutValue(controls, wanted) == Session::Outcome::NoButton) {
    throw AutomationError(Quoted(field) + " has no button for this value");
  }
}

void DialogObject::PressButton(std::string_view button, const std::optional<std::string>& path) {
  ThrowIfClosed();
  const int control = session().FindButton(button).number;
  if (path) {
    application_.driver().PressWithFile(control, *path);
  } else {
    session().Press(control);
  }
}

// --- Application.

std::shared_ptr<DialogObject> Application::StartAnalysis() {
  if (!driver_.StartAnalysis()) {
    throw AutomationError("The startup dialog did not open");
  }
  return Dialog();
}

std::shared_ptr<DialogObject> Application::Dialog() {
  for (auto it = dialogs_.begin(); it != dialogs_.end();) {
    it = driver_.IsOpen(it->first) ? std::next(it) : dialogs_.erase(it);
  }
  const std::uint64_t open = driver_.OpenDialog();
  if (open == 0) {
    return nullptr;
  }
  std::shared_ptr<DialogObject>& dialog = dialogs_[open];
  if (dialog == nullptr) {
    // A dialog without its own interface has the members of all dialogs.
    const Interface* interface = InterfaceOfClass(driver_.Spec().className);
    dialog = std::make_shared<DialogObject>(
        *this, interface == nullptr ? BaseInterface() : *interface, open);
  }
  return dialog;
}

}  // namespace poweranalysis
