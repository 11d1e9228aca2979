// Calls every public distribution function with arguments at random, for as long as asked, and
// tells each call that takes more than two seconds of processor time, or that ends the program:
//
//   Distributions_driver [seconds [seed [function]]]

#include <sys/time.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cinttypes>
#include <cmath>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <ctime>

#include "DistributionCalls.h"

namespace {

using poweranalysis::fuzzing::Arguments;
using poweranalysis::fuzzing::CallBytes;
using poweranalysis::fuzzing::Function;
using poweranalysis::fuzzing::FunctionOf;
using poweranalysis::fuzzing::Sampler;

constexpr int kLimit = 2;         // seconds
constexpr int kCallsEach = 4096;  // between two looks at the clock

CallBytes current;

void Tell(const char* what) {
  const Function& function = FunctionOf(current);
  std::printf("%s: %s(", what, function.name);
  Arguments reals(current);
  Arguments counts(current);
  for (const char* letter = function.arguments; *letter != '\0'; ++letter) {
    const double real = reals.Real();
    const std::int32_t count = counts.Count();
    if (*letter == 'n' || *letter == 'a' || *letter == 'k') {
      std::printf(" %" PRId32, count);
    } else {
      std::printf(" %.17g", real);
    }
  }
  std::printf(" )\n");
  std::fflush(stdout);
}

// The child is lost after either, so that what a handler may not do does no harm.
void OnSignal(int signal) {
  Tell(signal == SIGPROF ? "too long" : "crash");
  ::_exit(signal == SIGPROF ? 3 : 4);
}

void Watch(int seconds) {
  itimerval timer{};
  timer.it_value.tv_sec = seconds;
  ::setitimer(ITIMER_PROF, &timer, nullptr);
}

[[noreturn]] void CallFor(std::uint64_t seed, std::time_t end, int function) {
  for (const int signal : {SIGPROF, SIGSEGV, SIGFPE, SIGABRT, SIGILL, SIGBUS}) {
    std::signal(signal, OnSignal);
  }
  Sampler sampler(seed);
  long calls = 0;
  do {
    for (int i = 0; i < kCallsEach; ++i) {
      current = sampler.Sample();
      if (function >= 0 && current.function != function) {
        continue;
      }
      Watch(kLimit);
      const double value = poweranalysis::fuzzing::Call(current);
      Watch(0);
      ++calls;
      if (std::isnan(value) && std::getenv("TELL_NAN") != nullptr) {
        Tell("no number");
      }
    }
  } while (std::time(nullptr) < end);
  std::printf("%ld calls\n", calls);
  std::fflush(stdout);
  ::_exit(0);
}

int FunctionNamed(const char* name) {
  for (std::size_t i = 0; i < poweranalysis::fuzzing::FunctionCount; ++i) {
    if (std::strcmp(poweranalysis::fuzzing::Functions[i].name, name) == 0) {
      return static_cast<int>(i);
    }
  }
  return -1;
}

}  // namespace

int main(int argc, char** argv) {
  const std::time_t end = std::time(nullptr) + (argc > 1 ? std::atol(argv[1]) : 60);
  std::uint64_t seed = argc > 2 ? std::strtoull(argv[2], nullptr, 10) : 1;
  const int function = argc > 3 ? FunctionNamed(argv[3]) : -1;
  int findings = 0;
  while (std::time(nullptr) < end) {
    const pid_t child = ::fork();
    if (child == 0) {
      CallFor(seed, end, function);
    }
    int status = 0;
    ::waitpid(child, &status, 0);
    findings += WIFEXITED(status) && WEXITSTATUS(status) == 0 ? 0 : 1;
    ++seed;
  }
  std::printf("%d findings\n", findings);
  return findings == 0 ? 0 : 1;
}
