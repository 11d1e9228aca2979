#pragma once

#include <cstddef>
#include <cstring>

// What the command line and the modules agree on that it opens when it is asked for what they make.
extern "C" {

// Takes the next bytes of what is made.
using PowerAnalysisSink = void (*)(void* context, const char* bytes, std::size_t count);
}

namespace poweranalysis {

// A module exports one function, which hands the bytes of a thing in a format to the sink: 0, or
// nonzero with the reason in `error`.
template <class Thing, class Format>
using MakerFunction = int (*)(const Thing* thing,
                              Format format,
                              PowerAnalysisSink sink,
                              void* context,
                              char* error,
                              std::size_t errorSize);

struct MakerModule {
  const char* file;
  const char* function;
  const char* what;  // for the user: "the painter of PNG and PDF"
};

// How such a function fails.
inline int FailBecause(const char* reason, char* error, std::size_t errorSize) {
  std::strncpy(error, reason, errorSize - 1);
  error[errorSize - 1] = '\0';
  return 1;
}

}  // namespace poweranalysis
