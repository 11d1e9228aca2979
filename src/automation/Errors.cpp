#include "automation/Errors.h"

#include "automation/Names.h"

namespace poweranalysis {

std::string Quoted(std::string_view name) { return "'" + std::string(name) + "'"; }

void ThrowUnknown(const std::string& what,
                  std::string_view name,
                  const std::vector<std::string>& names) {
  std::string message = what + " " + Quoted(name);
  if (!names.empty()) {
    message += "; did you mean " + Quoted(Nearest(name, names)) + "?";
  }
  throw UnknownMember(message);
}

}  // namespace poweranalysis
