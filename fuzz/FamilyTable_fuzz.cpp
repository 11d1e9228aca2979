// Any bytes as a record of any family: no question to the table of families crashes or hangs, and
// the answers keep their promises.

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <random>

#include "FamilyCalls.h"

namespace {

constexpr double kInstrumentedLimit = 60;  // seconds

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  namespace fuzzing = poweranalysis::fuzzing;
  const double before = fuzzing::ProcessorSeconds();
  const std::string broken = fuzzing::Broken(data, size);
  if (!broken.empty()) {
    std::fprintf(stderr, "broken: %s\n", broken.c_str());
    std::abort();
  }
  if (fuzzing::ProcessorSeconds() - before > kInstrumentedLimit) {
    std::fprintf(stderr, "takes too long\n");
    std::abort();
  }
  return 0;
}

extern "C" std::size_t LLVMFuzzerMutate(std::uint8_t* data, std::size_t size, std::size_t maxSize);

// Every other change sets one field more, or another family.
extern "C" std::size_t LLVMFuzzerCustomMutator(std::uint8_t* data,
                                               std::size_t size,
                                               std::size_t maxSize,
                                               unsigned int seed) {
  std::minstd_rand random(seed);
  if (random() % 2 == 0 || size == 0 || size + 4 > maxSize) {
    return LLVMFuzzerMutate(data, size, maxSize);
  }
  if (random() % 8 == 0) {
    data[0] = static_cast<std::uint8_t>(random() >> 8);
    return size;
  }
  const std::size_t end = 1 + (size - 1) / 4 * 4;
  for (std::size_t i = 0; i < 4; ++i) {
    data[end + i] = static_cast<std::uint8_t>(random() >> 8);
  }
  return end + 4;
}
