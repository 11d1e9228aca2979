#include "host/ConfigFolder.h"

#include <cstdlib>

namespace poweranalysis {

namespace {

// The variable's value without slashes at its end, or nothing when it is not an absolute path.
std::optional<std::string> AbsolutePath(const EnvironmentLookup& environment,
                                        const std::string& name) {
  std::optional<std::string> path = environment(name);
  if (!path || path->empty() || path->front() != '/') {
    return std::nullopt;
  }
  while (!path->empty() && path->back() == '/') {
    path->pop_back();
  }
  return path;
}

}  // namespace

std::optional<std::string> ProcessEnvironment(const std::string& name) {
  const char* value = std::getenv(name.c_str());
  if (value == nullptr) {
    return std::nullopt;
  }
  return std::string(value);
}

std::string UserConfigFolder(const std::string& application, const EnvironmentLookup& environment) {
  if (const auto configHome = AbsolutePath(environment, "XDG_CONFIG_HOME")) {
    return *configHome + "/" + application;
  }
  if (const auto home = AbsolutePath(environment, "HOME")) {
    return *home + "/.config/" + application;
  }
  return {};
}

}  // namespace poweranalysis
