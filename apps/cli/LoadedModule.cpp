#include "cli/LoadedModule.h"

#include <dlfcn.h>
#include <unistd.h>

#include "cli/ProgramFolder.h"

namespace poweranalysis {

void* FunctionOf(const MakerModule& module, std::string& error) {
  for (const char* folder : {"../lib/", "../lib/poweranalysis/", ""}) {
    const std::string path = ProgramFolder() + folder + module.file;
    if (void* opened = ::dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL)) {
      if (void* found = ::dlsym(opened, module.function)) {
        return found;
      }
    }
    if (const char* reason = ::dlerror(); reason != nullptr && ::access(path.c_str(), F_OK) == 0) {
      error = reason;
    }
  }
  if (error.empty()) {
    error = std::string(module.what) + " (" + module.file + ") is not installed";
  }
  return nullptr;
}

void AppendBytes(void* text, const char* bytes, std::size_t count) {
  static_cast<std::string*>(text)->append(bytes, count);
}

}  // namespace poweranalysis
