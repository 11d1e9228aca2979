#include "validation/Coverage.h"

#include <gtest/gtest.h>

// A small part of what tests/validation/interval_coverage simulates: enough to find an interval
// that is wrong at its root.
namespace poweranalysis::coverage {
namespace {

TEST(Coverage, EveryIntervalHoldsTheTruthAsOftenAsItsLevelSays) {
  constexpr std::int64_t kDraws = 1000;
  constexpr std::int64_t kSlowDraws = 40;
  std::uint64_t stream = 0;
  for (const Design& design : Designs()) {
    const std::vector<Tally> tallies =
        Simulate(design, stream++, design.isSlow ? kSlowDraws : kDraws);
    for (std::size_t r = 0; r < tallies.size(); ++r) {
      EXPECT_TRUE(IsAccepted(design, design.rows[r], tallies[r]))
          << TableOf(design.family).code << ' ' << design.what << ' ' << design.rows[r].name << ' '
          << tallies[r].Coverage();
    }
  }
}

TEST(Coverage, AWrongTruthIsNotAccepted) {
  for (Design design : {Designs()[0], Designs()[3], Designs()[18]}) {
    design.rows[0].truth *= 4;
    const std::vector<Tally> tallies = Simulate(design, 0, 500);
    EXPECT_FALSE(IsAccepted(design, design.rows[0], tallies[0])) << design.what;
  }
}

TEST(Coverage, TooWideAnIntervalIsAcceptedOfACountAlone) {
  Design design = Designs()[0];
  design.confidence = .65;
  Tally always;
  always.draws = 1000;
  EXPECT_FALSE(IsAccepted(design, design.rows[0], always));
  design.rows[0].isAtLeast = true;
  EXPECT_TRUE(IsAccepted(design, design.rows[0], always));
}

}  // namespace
}  // namespace poweranalysis::coverage
