#include "automation/Application.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "automation/SpecLookup.h"
#include "dialogs/Controls.h"
#include "host/NumberText.h"

namespace poweranalysis {

namespace {

std::string Quoted(std::string_view name) { return "'" + std::string(name) + "'"; }

[[noreturn]] void ThrowUnknown(const std::string& what,
                               std::string_view name,
                               const std::vector<std::string_view>& names) {
  std::string message = what + " " + Quoted(name);
  if (!names.empty()) {
    message += "; did you mean " + Quoted(NearestName(name, names)) + "?";
  }
  throw UnknownMember(message);
}

// Toward zero and held to 32 bits, as a whole number is read from a control; nothing for what is
// not a number.
std::int64_t WholeOf(double value) {
  constexpr double kLowest = std::numeric_limits<std::int32_t>::min();
  constexpr double kHighest = std::numeric_limits<std::int32_t>::max();
  return std::isnan(value)
             ? 0
             : static_cast<std::int64_t>(std::clamp(std::trunc(value), kLowest, kHighest));
}

// The number that a put gives, for what takes numbers alone.
double NumberOf(const Value& value, std::string_view member) {
  if (const auto* whole = std::get_if<std::int64_t>(&value)) {
    return static_cast<double>(*whole);
  }
  if (const auto* real = std::get_if<double>(&value)) {
    return *real;
  }
  throw AutomationError(Quoted(member) + " takes a number");
}

// What a user would type for a value.
std::string TypedText(const ControlSpec& control, const Value& value) {
  if (const auto* text = std::get_if<std::string>(&value)) {
    return *text;
  }
  if (const auto* whole = std::get_if<std::int64_t>(&value)) {
    return std::to_string(*whole);
  }
  const double real = NumberOf(value, control.name);
  // Written out whole: a control for whole numbers would read no more of it.
  return FormatShortest(control.kind == ControlKind::IntEdit ? std::trunc(real) : real);
}

std::vector<const ControlSpec*> FieldControls(const DialogSpec& spec, std::string_view field) {
  const std::vector<const ControlSpec*> all = FieldControls(spec);
  std::vector<const ControlSpec*> found;
  std::vector<std::string_view> names;
  for (const ControlSpec* control : all) {
    names.push_back(control->name);
    if (control->name == field) {
      found.push_back(control);
    }
  }
  if (found.empty()) {
    ThrowUnknown("The dialog shows no field", field, names);
  }
  return found;
}

const ControlSpec& FindButton(const DialogSpec& spec, std::string_view name) {
  std::vector<std::string_view> names;
  for (const ControlSpec* button : ButtonControls(spec)) {
    if (button->name == name) {
      return *button;
    }
    names.push_back(button->name);
  }
  ThrowUnknown("The dialog has no button", name, names);
}

// The items of one kind that were sent after the first `count`.
template <class Item>
std::vector<Item> NewItems(const DialogDriver& driver, std::size_t count) {
  std::vector<Item> items;
  for (std::size_t i = count; i < driver.ItemCount(); ++i) {
    WorkbookItem item = driver.Item(i);
    if (Item* found = std::get_if<Item>(&item)) {
      items.push_back(std::move(*found));
    }
  }
  return items;
}

int RowOfEnumerator(std::string_view name, std::span<const Enumerator> enumerators) {
  std::vector<std::string_view> names;
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

bool DialogObject::IsOpen() const { return application_.driver().OpenDialog() == dialog_; }

void DialogObject::ThrowIfClosed() const {
  if (!IsOpen()) {
    throw DialogClosed(std::string(interface_.name) + ": the dialog has closed");
  }
}

const DialogSpec& DialogObject::Spec() {
  if (!spec_) {
    spec_ = application_.driver().Spec();
  }
  return *spec_;
}

const Member& DialogObject::MemberOf(std::string_view name) const {
  const Member* member = interface_.Find(name);
  if (member == nullptr) {
    std::vector<std::string_view> names;
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
  const ControlSpec* control = FindControlSpec(Spec(), member.control);
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
      return Spec().title;
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
  DialogDriver& driver = application_.driver();
  const std::size_t count = driver.ItemCount();
  driver.Press(ControlOf(member).number);
  if (member.binding == Binding::Summary) {
    const std::vector<SummaryTable> tables = NewItems<SummaryTable>(driver, count);
    return tables.empty() ? Value() : Value(tables.back());
  }
  std::vector<Chart> charts = NewItems<Chart>(driver, count);
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
      return Write(ControlOf(member), value);
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

void DialogObject::Write(const ControlSpec& control, const Value& value) {
  DialogDriver& driver = application_.driver();
  switch (control.kind) {
    case ControlKind::Radio:
      // 0 does nothing: it does not say which other button to choose.
      if (NumberOf(value, control.name) != 0) {
        driver.Press(control.number);
      }
      return;
    case ControlKind::CheckBox:
      if ((NumberOf(value, control.name) != 0) != driver.Checked(control.number)) {
        driver.Press(control.number);
      }
      return;
    default:
      driver.Type(control.number, TypedText(control, value));
  }
}

void DialogObject::Choose(const Member& member, const Value& value) {
  const bool item = member.type == MemberType::AnalysisItem;
  const auto* name = std::get_if<std::string>(&value);
  const int row = name != nullptr ? RowOfEnumerator(*name, item ? AnalysisItems() : AnalysisTypes())
                                  : static_cast<int>(WholeOf(NumberOf(value, member.name)));
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
    application_.driver().Press(member.control);
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
  const std::size_t items = driver.ItemCount();
  const int messages = driver.MessageCount();
  driver.Press(ControlAccept);
  switch (interface_.kind) {
    case DialogKind::Startup:
      return !IsOpen() && driver.OpenDialog() != 0 ? 1 : 0;
    case DialogKind::Results:
    case DialogKind::Interval:
      return NewItems<SummaryTable>(driver, items).empty() ? 0 : 1;
    case DialogKind::Calculator:
      return HasComputed(driver, driver.MessageCount() > messages) ? 1 : 0;
    default:
      return IsOpen() ? 0 : 1;
  }
}

void DialogObject::Cancel() {
  ThrowIfClosed();
  application_.driver().Press(ControlBack);
}

void DialogObject::SaveSettingsAs(const std::optional<std::string>& path) {
  const Member& member = MemberOf("SaveSettingsAs");
  ThrowIfClosed();
  if (path) {
    application_.driver().PressWithFile(member.control, *path);
  } else {
    application_.driver().Press(member.control);
  }
}

void DialogObject::SaveAsDefault() {
  const Member& member = MemberOf("SaveAsDefault");
  ThrowIfClosed();
  application_.driver().Press(member.control);
}

// --- Beyond the interface.

Value DialogObject::GetField(std::string_view field) {
  ThrowIfClosed();
  const std::vector<const ControlSpec*> controls = FieldControls(Spec(), field);
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
  const std::vector<const ControlSpec*> controls = FieldControls(Spec(), field);
  if (controls.front()->kind != ControlKind::Radio) {
    return Write(*controls.front(), value);
  }
  const double wanted = NumberOf(value, field);
  for (const ControlSpec* control : controls) {
    if (control->value == wanted) {
      return application_.driver().Press(control->number);
    }
  }
  throw AutomationError(Quoted(field) + " has no button for this value");
}

void DialogObject::PressButton(std::string_view button, const std::optional<std::string>& path) {
  ThrowIfClosed();
  const int control = FindButton(Spec(), button).number;
  if (path) {
    application_.driver().PressWithFile(control, *path);
  } else {
    application_.driver().Press(control);
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
  const std::uint64_t open = driver_.OpenDialog();
  if (open == 0) {
    dialog_.reset();
  } else if (dialog_ == nullptr || number_ != open) {
    // A dialog without its own interface has the members of all dialogs.
    const Interface* interface = InterfaceOfClass(driver_.Spec().className);
    dialog_ = std::make_shared<DialogObject>(
        *this, interface == nullptr ? BaseInterface() : *interface, open);
  }
  number_ = open;
  return dialog_;
}

}  // namespace poweranalysis
