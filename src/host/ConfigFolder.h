#pragma once

#include <functional>
#include <optional>
#include <string>

namespace poweranalysis {

// Looks up an environment variable; nothing when it is not set.
using EnvironmentLookup = std::function<std::optional<std::string>(const std::string&)>;

// The environment of this process.
std::optional<std::string> ProcessEnvironment(const std::string& name);

// The folder of the user's configuration for an application, by the XDG base directory rules of
// freedesktop.org: `$XDG_CONFIG_HOME/application`, or `$HOME/.config/application` where that
// variable is not set, is empty or is not an absolute path. Empty when HOME is not one either. The
// folder need not exist.
std::string UserConfigFolder(const std::string& application,
                             const EnvironmentLookup& environment = ProcessEnvironment);

}  // namespace poweranalysis
