#pragma once

#include <string>

namespace poweranalysis {

// The folder of the running program, with a slash at its end; empty when it cannot be determined.
// What ships beside the program is looked for from there.
std::string ProgramFolder();

}  // namespace poweranalysis
