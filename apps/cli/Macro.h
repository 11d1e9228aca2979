#pragma once

#include <string>

namespace poweranalysis {

// Runs a macro, a Python script of the object model, in its own Python process: standard streams
// and exit status are that process'. Comes back only with the reason why it could not be started.
std::string RunMacro(const std::string& file);

}  // namespace poweranalysis
