// Any bits for the arguments of every public distribution function: the call ends within two
// seconds of processor time (in a plain build; instrumented it may take longer), with no crash.

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <ctime>

#include "DistributionCalls.h"

namespace {

using poweranalysis::fuzzing::CallBytes;

constexpr double kInstrumentedLimit = 30;  // seconds

double ProcessorSeconds() {
  timespec now{};
  ::clock_gettime(CLOCK_THREAD_CPUTIME_ID, &now);
  return static_cast<double>(now.tv_sec) + 1e-9 * static_cast<double>(now.tv_nsec);
}

CallBytes CallOf(const std::uint8_t* data, std::size_t size) {
  CallBytes call;
  if (size > 0) {
    call.function = data[0];
    std::memcpy(call.arguments.data(), data + 1, std::min(size - 1, sizeof call.arguments));
  }
  return call;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const CallBytes call = CallOf(data, size);
  const double before = ProcessorSeconds();
  poweranalysis::fuzzing::Call(call);
  if (ProcessorSeconds() - before > kInstrumentedLimit) {
    std::fprintf(stderr, "%s takes too long\n", poweranalysis::fuzzing::FunctionOf(call).name);
    std::abort();
  }
  return 0;
}

extern "C" std::size_t LLVMFuzzerMutate(std::uint8_t* data, std::size_t size, std::size_t maxSize);

// Every other change is one to a value that the argument may well have.
extern "C" std::size_t LLVMFuzzerCustomMutator(std::uint8_t* data,
                                               std::size_t size,
                                               std::size_t maxSize,
                                               unsigned int seed) {
  constexpr std::size_t kSize = 1 + sizeof CallBytes::arguments;
  if (seed % 4 == 0 || maxSize < kSize) {
    return LLVMFuzzerMutate(data, size, maxSize);
  }
  poweranalysis::fuzzing::Sampler sampler(seed);
  CallBytes call = CallOf(data, size);
  if (seed % 4 == 1) {
    call = sampler.Sample();
  } else {
    sampler.Change(call);
  }
  data[0] = call.function;
  std::memcpy(data + 1, call.arguments.data(), sizeof call.arguments);
  return kSize;
}
