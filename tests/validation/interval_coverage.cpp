// Simulates the coverage of the confidence intervals and prints the report in Markdown. Ends with 1
// when an interval holds the truth less or more often than its level says by more than is allowed.
//
//   interval_coverage [--draws N] [--update docs/validation.md]

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <iterator>

#include "validation/Coverage.h"

namespace {

using namespace poweranalysis;            // NOLINT(google-build-using-namespace)
using namespace poweranalysis::coverage;  // NOLINT(google-build-using-namespace)

constexpr const char* kBegin = "<!-- begin of the report of interval_coverage -->";
constexpr const char* kEnd = "<!-- end of the report of interval_coverage -->";
constexpr std::int64_t kShareOfSlowOnes = 10;

std::string LineOf(const Design& design, const Row& row, const Tally& tally) {
  const char* const verdict = !row.isJudged                     ? "reported only"
                              : !IsAccepted(design, row, tally) ? "DEVIATES"
                              : row.isAtLeast                   ? "at least the level"
                                                                : "agrees";
  std::array<char, 400> line{};
  std::snprintf(
      line.data(), line.size(),
      "| %s | %s | %s | %.4g | %g | %lld | %.5f | %.5f | %+.2f | %.5f | %.5f | %.5f | %s |\n",
      TableOf(design.family).code, design.what.c_str(), row.name, row.truth, design.confidence,
      static_cast<long long>(tally.draws), tally.Coverage(),
      StandardError(design.confidence, tally.draws), DeviationOf(design, tally),
      static_cast<double>(tally.below) / static_cast<double>(tally.draws),
      static_cast<double>(tally.above) / static_cast<double>(tally.draws),
      static_cast<double>(tally.missing) / static_cast<double>(tally.draws), verdict);
  return line.data();
}

// Puts the report between its marks; false when the page has none.
bool Update(const char* page, const std::string& report) {
  std::ifstream in(page);
  std::string text{std::istreambuf_iterator<char>(in), {}};
  const std::size_t begin = text.find(kBegin);
  const std::size_t end = text.find(kEnd);
  if (begin == std::string::npos || end == std::string::npos) {
    return false;
  }
  const std::size_t from = begin + std::strlen(kBegin);
  text.replace(from, end - from, "\n\n" + report + "\n");
  std::ofstream(page) << text;
  return true;
}

}  // namespace

int main(int count, char** arguments) {
  std::int64_t draws = 100000;
  const char* page = nullptr;
  for (int i = 1; i + 1 < count; i += 2) {
    if (std::strcmp(arguments[i], "--draws") == 0) {
      draws = std::atoll(arguments[i + 1]);
    } else if (std::strcmp(arguments[i], "--update") == 0) {
      page = arguments[i + 1];
    }
  }
  std::string report =
      "| | Design | Interval on | Truth | Level | Samples | Coverage | S.E. | Deviation in S.E. | "
      "Truth below | Truth above | Limit missing | |\n"
      "|---|---|---|---|---|---|---|---|---|---|---|---|---|\n";
  bool good = true;
  std::uint64_t stream = 0;
  for (const Design& design : Designs()) {
    const std::vector<Tally> tallies =
        Simulate(design, stream++, design.isSlow ? draws / kShareOfSlowOnes : draws);
    for (std::size_t r = 0; r < tallies.size(); ++r) {
      report += LineOf(design, design.rows[r], tallies[r]);
      good = good && IsAccepted(design, design.rows[r], tallies[r]);
    }
  }
  std::fputs(report.c_str(), stdout);
  if (page != nullptr && !Update(page, report)) {
    std::fprintf(stderr, "%s has no place for the report\n", page);
    good = false;
  }
  return good ? 0 : 1;
}
