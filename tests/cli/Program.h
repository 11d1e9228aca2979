#pragma once

#include <fcntl.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "support/TestData.h"

// The command line as its users run it: a process with arguments, an environment of its own and a
// folder of its own, so that no test meets the settings of whoever runs it.
namespace poweranalysis {

struct Result {
  int status = -1;  // exit status, or 128 + signal
  std::string out;
  std::string err;
};

class Program : public ::testing::Test {
 protected:
  static std::string LeakSuppressions() {
    return std::filesystem::path(TestDataDir()).parent_path() / "leaks.supp";
  }

  using Arguments = std::vector<std::string>;

  void SetUp() override {
    std::string pattern = "/tmp/poweranalysis-test-XXXXXX";
    folder_ = ::mkdtemp(pattern.data());
    environment_ = {{"XDG_CONFIG_HOME", folder_ + "/config"},
                    {"HOME", folder_},
                    {"PATH", "/usr/bin:/bin"},
                    {"TERM", "xterm"},
                    // fontconfig keeps its caches until the process ends.
                    {"LSAN_OPTIONS", "print_suppressions=0:suppressions=" + LeakSuppressions()}};
  }
  void TearDown() override { std::filesystem::remove_all(folder_); }

  // A path in the folder of this test.
  std::string At(const std::string& name) const { return folder_ + "/" + name; }
  std::string Read(const std::string& name) const {
    std::ifstream file(At(name), std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
  }
  void Write(const std::string& name, const std::string& bytes) const {
    std::ofstream(At(name), std::ios::binary) << bytes;
  }
  bool Exists(const std::string& name) const { return std::filesystem::exists(At(name)); }
  std::vector<std::string> FilesIn(const std::string& name) const {
    std::vector<std::string> files;
    for (const auto& entry : std::filesystem::directory_iterator(At(name))) {
      files.push_back(entry.path().filename());
    }
    return files;
  }

  Result Run(const Arguments& arguments) {
    std::array<int, 2> out{};
    std::array<int, 2> err{};
    EXPECT_EQ(0, ::pipe2(out.data(), O_CLOEXEC));
    EXPECT_EQ(0, ::pipe2(err.data(), O_CLOEXEC));
    const pid_t child = Start(arguments, out[1], err[1]);
    ::close(out[1]);
    ::close(err[1]);
    Result result;
    Drain(out[0], err[0], result);
    result.status = Wait(child);
    return result;
  }

  // Starts the program on these descriptors; -1 starts it with that one closed.
  pid_t Start(const Arguments& arguments, int out, int err) {
    std::vector<std::string> environment;
    for (const auto& [name, value] : environment_) {
      environment.push_back(name + "=" + value);
    }
    Arguments all = arguments;
    all.insert(all.begin(), CommandLineProgram());
    const std::vector<char*> argv = Pointers(all);
    const std::vector<char*> envp = Pointers(environment);
    const pid_t child = ::fork();
    if (child == 0) {
      // Interrupts may be ignored where the tests run in the background.
      std::signal(SIGINT, SIG_DFL);
      Redirect(out, STDOUT_FILENO);
      Redirect(err, STDERR_FILENO);
      if (::chdir(folder_.c_str()) == 0) {
        ::execve(CommandLineProgram(), argv.data(), envp.data());
      }
      ::_exit(126);
    }
    return child;
  }

  static int Wait(pid_t child) {
    int status = 0;
    ::waitpid(child, &status, 0);
    return WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
  }

  nlohmann::json RunJson(Arguments arguments, int status = 0) {
    arguments.insert(arguments.end(), {"--format", "json"});
    const Result result = Run(arguments);
    EXPECT_EQ(status, result.status) << result.err;
    EXPECT_TRUE(nlohmann::json::accept(result.out)) << result.out;
    return nlohmann::json::parse(result.out, nullptr, false);
  }

  static bool Has(const std::string& text, const std::string& part) {
    return text.find(part) != std::string::npos;
  }

  static double Value(const nlohmann::json& json, const std::string& title) {
    for (const auto& row : json["rows"]) {
      if (row["title"] == title) {
        return row["value"].get<double>();
      }
    }
    ADD_FAILURE() << "no row " << title;
    return -1;
  }

  std::string folder_;
  std::map<std::string, std::string> environment_;

 private:
  static std::vector<char*> Pointers(std::vector<std::string>& texts) {
    std::vector<char*> pointers;
    for (std::string& text : texts) {
      pointers.push_back(text.data());
    }
    pointers.push_back(nullptr);
    return pointers;
  }

  static void Redirect(int from, int to) {
    if (from < 0) {
      ::close(to);
    } else {
      ::dup2(from, to);
    }
  }

  static void Drain(int out, int err, Result& result) {
    std::array<pollfd, 2> open = {{{out, POLLIN, 0}, {err, POLLIN, 0}}};
    const std::array<std::string*, 2> texts = {&result.out, &result.err};
    while (open[0].fd >= 0 || open[1].fd >= 0) {
      ::poll(open.data(), open.size(), -1);
      for (std::size_t i = 0; i < open.size(); ++i) {
        if (open[i].fd < 0 || open[i].revents == 0) {
          continue;
        }
        std::array<char, 4096> buffer{};
        const ssize_t count = ::read(open[i].fd, buffer.data(), buffer.size());
        if (count <= 0) {
          ::close(open[i].fd);
          open[i].fd = -1;
        } else {
          texts[i]->append(buffer.data(), static_cast<std::size_t>(count));
        }
      }
    }
  }
};

}  // namespace poweranalysis
