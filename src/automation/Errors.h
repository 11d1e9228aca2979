#pragma once

#include <cstdint>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

// What is thrown at whoever asks for what cannot be: faces turn it into an exit status or into an
// exception of their own.
namespace poweranalysis {

// All errors of the object model carry the one code of a failed call.
inline constexpr std::uint32_t AutomationFailure = 0x80004005;

class AutomationError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
  std::uint32_t code() const { return AutomationFailure; }
};
// A call on a dialog that has closed.
class DialogClosed : public AutomationError {
 public:
  using AutomationError::AutomationError;
};
// A member, a field, a button or an enumerator that is not there; the message names the nearest.
class UnknownMember : public AutomationError {
 public:
  using AutomationError::AutomationError;
};

std::string Quoted(std::string_view name);

// Throws UnknownMember: "<what> 'alfa'; did you mean 'Alpha'?"
[[noreturn]] void ThrowUnknown(const std::string& what,
                               std::string_view name,
                               const std::vector<std::string>& names);

// Wrong use of what a task offers: a name that it does not have, a text that is no value of a
// field. It is found before anything is computed.
class UsageError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
  // Of one argument of a request, by the name that its option and its keyword have in common
  // ("chart").
  UsageError(std::string argument, const std::string& text)
      : std::runtime_error(text), argument_(std::move(argument)) {}

  // Empty where the text names what is wrong.
  const std::string& argument() const { return argument_; }

 private:
  std::string argument_;
};

}  // namespace poweranalysis
