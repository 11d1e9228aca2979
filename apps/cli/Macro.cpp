#include "cli/Macro.h"

#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <cstring>

#include "cli/ProgramFolder.h"

namespace poweranalysis {

namespace {

constexpr const char* kInterpreter = "/usr/bin/python3";

// The folder that holds the Python package, as built or as installed; empty when neither is there.
// An installed package of the system needs no folder.
std::string PackageFolder() {
  for (const char* folder : {"../python", "../lib/poweranalysis/python"}) {
    std::string path = ProgramFolder() + folder;
    if (::access((path + "/poweranalysis/__init__.py").c_str(), R_OK) == 0) {
      return path;
    }
  }
  return {};
}

void PutFirstOnPythonPath(const std::string& folder) {
  const char* before = std::getenv("PYTHONPATH");
  const bool alone = before == nullptr || *before == '\0';
  ::setenv("PYTHONPATH", (alone ? folder : folder + ":" + before).c_str(), 1);
}

}  // namespace

std::string RunMacro(const std::string& file) {
  if (::access(file.c_str(), R_OK) != 0) {
    return "cannot read the macro '" + file + "': " + std::strerror(errno);
  }
  if (const std::string folder = PackageFolder(); !folder.empty()) {
    PutFirstOnPythonPath(folder);
  }
  // The signals of the command line are not the macro's: Python sets its own.
  std::signal(SIGINT, SIG_DFL);
  std::signal(SIGPIPE, SIG_DFL);
  ::execl(kInterpreter, kInterpreter, file.c_str(), static_cast<char*>(nullptr));
  return std::string("cannot start ") + kInterpreter + ": " + std::strerror(errno);
}

}  // namespace poweranalysis
