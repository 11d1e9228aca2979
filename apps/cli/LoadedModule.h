#pragma once

#include <array>
#include <string>

#include "cli/ModuleInterface.h"

namespace poweranalysis {

// The function of a module that ships beside the program, as built or as installed. The module is
// opened on the first call. Null with the reason in `error`.
void* FunctionOf(const MakerModule& module, std::string& error);

// What a module made, or why it made nothing.
struct Made {
  std::string bytes;
  std::string error;
};

// The sink of a text, which is the context.
void AppendBytes(void* text, const char* bytes, std::size_t count);

template <class Thing, class Format>
Made MakeBy(const MakerModule& module, const Thing& thing, Format format) {
  constexpr std::size_t kErrorSize = 200;
  Made made;
  const auto make = reinterpret_cast<MakerFunction<Thing, Format>>(FunctionOf(module, made.error));
  std::array<char, kErrorSize> error{};
  if (make != nullptr &&
      make(&thing, format, AppendBytes, &made.bytes, error.data(), error.size()) != 0) {
    made.error = error.data();
  }
  return made;
}

}  // namespace poweranalysis
