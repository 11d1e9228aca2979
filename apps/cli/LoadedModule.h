#pragma once

#include <string>

namespace poweranalysis {

// The function of a module that ships beside the program, as built or as installed. The module is
// opened on the first call. Null with the reason in `error`; `what` names the module for the user:
// "the painter of PNG and PDF".
void* FunctionOfModule(const char* module,
                       const char* function,
                       const std::string& what,
                       std::string& error);

// For functions that hand over bytes: appends them to the text that is the context.
void AppendBytes(void* text, const char* bytes, std::size_t count);

// What a module reports a failure in.
inline constexpr std::size_t ModuleErrorSize = 200;

}  // namespace poweranalysis
