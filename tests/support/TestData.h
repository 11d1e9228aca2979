#pragma once

#include <string>

// Where a test finds its files and programs. Both are defined in a source that CMake writes, and not on
// the compiler's command line, so that the compiler cache serves every checkout alike.
namespace poweranalysis {

// The folder "data" beside the sources of the running test program.
std::string TestDataDir();
// The command line's program, in the tests that start it.
const char* CommandLineProgram();

}  // namespace poweranalysis
