#include "host/ConfigFolder.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <map>

namespace poweranalysis {
namespace {

std::string FolderWith(const std::map<std::string, std::string>& variables) {
  return UserConfigFolder("app", [&](const std::string& name) -> std::optional<std::string> {
    const auto found = variables.find(name);
    return found == variables.end() ? std::nullopt : std::optional(found->second);
  });
}

TEST(UserConfigFolder, IsBelowXdgConfigHome) {
  EXPECT_EQ(FolderWith({{"XDG_CONFIG_HOME", "/conf"}, {"HOME", "/home/ada"}}), "/conf/app");
  EXPECT_EQ(FolderWith({{"XDG_CONFIG_HOME", "/conf/"}}), "/conf/app");
}

TEST(UserConfigFolder, IsBelowDotConfigInHomeOtherwise) {
  EXPECT_EQ(FolderWith({{"HOME", "/home/ada"}}), "/home/ada/.config/app");
  EXPECT_EQ(FolderWith({{"XDG_CONFIG_HOME", ""}, {"HOME", "/home/ada"}}), "/home/ada/.config/app");
  EXPECT_EQ(FolderWith({{"HOME", "/"}}), "/.config/app");
}

TEST(UserConfigFolder, TakesNoRelativePath) {
  EXPECT_EQ(FolderWith({{"XDG_CONFIG_HOME", "conf"}, {"HOME", "/home/ada"}}),
            "/home/ada/.config/app");
  EXPECT_EQ(FolderWith({{"XDG_CONFIG_HOME", "conf"}, {"HOME", "ada"}}), "");
}

TEST(UserConfigFolder, IsEmptyWhenNothingIsKnown) { EXPECT_EQ(FolderWith({}), ""); }

TEST(UserConfigFolder, AsksTheProcessUnlessToldOtherwise) {
  EXPECT_EQ(UserConfigFolder("app"), UserConfigFolder("app", ProcessEnvironment));
  const char* path = std::getenv("PATH");
  EXPECT_EQ(ProcessEnvironment("PATH"),
            path == nullptr ? std::nullopt : std::optional<std::string>(path));
  EXPECT_EQ(ProcessEnvironment("NO_SUCH_VARIABLE_HERE"), std::nullopt);
}

}  // namespace
}  // namespace poweranalysis
