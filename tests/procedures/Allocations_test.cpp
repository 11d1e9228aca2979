#include <cstddef>
#include <cstdlib>
#include <new>

#include "procedures/Anova.h"
#include "procedures/Correlations.h"
#include "procedures/ModelFit.h"
#include "procedures/OneProportion.h"
#include "procedures/ProceduresTest.h"
#include "procedures/SquaredCorrelation.h"
#include "procedures/Survival.h"
#include "procedures/TTests.h"
#include "procedures/TwoProportions.h"
#include "procedures/Variances.h"

namespace {

// Calls of the global operator new in this program.
std::size_t g_allocations = 0;

}  // namespace

[[gnu::noinline]] void* operator new(std::size_t bytes) {
  ++g_allocations;
  if (void* block = std::malloc(bytes == 0 ? 1 : bytes)) {
    return block;
  }
  throw std::bad_alloc();
}
[[gnu::noinline]] void operator delete(void* block) noexcept { std::free(block); }
[[gnu::noinline]] void operator delete(void* block, std::size_t /*bytes*/) noexcept {
  std::free(block);
}

namespace poweranalysis {
namespace {

class AllocationsTest : public ProceduresTest {};

TEST_F(AllocationsTest, AreCounted) {
  const std::size_t before = g_allocations;
  const std::vector<int> block(100);
  EXPECT_GT(g_allocations, before);
  EXPECT_EQ(block.size(), 100U);
}

TEST_F(AllocationsTest, DoNotHappenInsideASearch) {
  TSizeRequest request{.es = .2, .alpha = .05, .powerGoal = .8, .sizeLimit = 150000};
  CriticalTCache criticals;
  const std::size_t before = g_allocations;
  const SearchResult one = OneGroupRequiredN(request, criticals, observer);
  const SearchResult both = TwoGroupsRequiredN(request, NToVaryBoth, 0, criticals, observer);
  request.es = .5;
  const SearchResult fixed = TwoGroupsRequiredN(request, NToVaryN1, 40, criticals, observer);
  EXPECT_EQ(g_allocations, before);
  EXPECT_EQ(one.status, SearchOk);
  EXPECT_EQ(both.status, SearchOk);
  EXPECT_EQ(fixed.status, SearchOk);
}

// The size that a search finds, without an allocation; 0 when there is one or the search fails.
template <class Search>
double FoundWithoutAllocation(Search&& search) {
  const std::size_t before = g_allocations;
  const double size = search();
  EXPECT_EQ(g_allocations, before);
  EXPECT_GT(size, 0);
  return size;
}

double SizeOf(const SearchResult& result) {
  return result.status == SearchOk ? static_cast<double>(result.requiredSize) : 0;
}

TEST_F(AllocationsTest, DoNotHappenInTheSearchesOfMeans) {
  FoundWithoutAllocation([this] {
    CriticalTCache criticals;
    return SizeOf(ContrastRequiredN(
        {.es = .25, .ss = 6, .groups = 3, .alpha = .05, .powerGoal = .9, .sizeLimit = 150000},
        criticals, observer));
  });
  for (const std::int16_t model : {FixedEffects, RandomEffects}) {
    FoundWithoutAllocation([this, model] {
      CriticalFCache criticals;
      return SizeOf(
          OneWayRequiredN({.test = {.groups = 4, .rmsse = .5, .alpha = .05, .model = model},
                           .committedAlpha = .05,
                           .powerGoal = .9,
                           .sizeLimit = 150000},
                          criticals, observer));
    });
  }
  FoundWithoutAllocation([this] {
    CriticalFCache criticals;
    return SizeOf(TwoWayRequiredN({.rows = 2,
                                   .columns = 3,
                                   .rmsse = .3,
                                   .alpha = .05,
                                   .powerGoal = .9,
                                   .effect = InteractionEffect,
                                   .sizeLimit = 150000},
                                  criticals, observer));
  });
}

TEST_F(AllocationsTest, DoNotHappenInTheSearchesOfVariances) {
  FoundWithoutAllocation([this] {
    CriticalChiSquareCache criticals;
    return SizeOf(OneVarianceRequiredDf(
        {.var = 2, .var0 = 1, .alpha = .05, .powerGoal = .9, .sizeLimit = 150000}, criticals,
        observer));
  });
  FoundWithoutAllocation([this] {
    CriticalFCache criticals;
    return SizeOf(TwoVariancesRequiredDf(
        {.ratio = 2, .alpha = .05, .powerGoal = .9, .sizeLimit = 150000}, criticals, observer));
  });
}

TEST_F(AllocationsTest, DoNotHappenInTheSearchesOfCorrelations) {
  for (const std::int16_t algorithm :
       {CorrelationExact, CorrelationFisherZRefined, CorrelationFisherZCrude}) {
    FoundWithoutAllocation([this, algorithm] {
      return SizeOf(CorrelationRequiredN(
          {.rho = .5, .rho0 = .1, .alpha = .05, .powerGoal = .8, .algorithm = algorithm},
          observer));
    });
  }
  FoundWithoutAllocation([this] {
    return SizeOf(TwoCorrelationsRequiredN({.rho1 = .4, .rho2 = .1, .alpha = .05, .powerGoal = .8},
                                           observer));
  });
  for (const std::int16_t algorithm : {R2Lee, R2Exact}) {
    FoundWithoutAllocation([this, algorithm] {
      return SizeOf(SquaredCorrelationRequiredN({.rho2 = .3,
                                                 .c2 = .1,
                                                 .alpha = .05,
                                                 .powerGoal = .8,
                                                 .k = 4,
                                                 .algorithm = algorithm,
                                                 .form = H0AtMost},
                                                observer));
    });
  }
}

TEST_F(AllocationsTest, DoNotHappenInTheSearchesOfProportions) {
  for (const std::int16_t algorithm : {ProportionExact, ProportionNormal}) {
    FoundWithoutAllocation([this, algorithm] {
      int err = 0;
      Refusal refusal;
      return static_cast<double>(OneProportionRequiredN(.9, {.pi = .7, .pi0 = .5, .alpha = .05},
                                                        err, algorithm, refusal, observer));
    });
  }
  FoundWithoutAllocation([] {
    GroupSizes groups;
    double power = 0;
    int err = 0;
    Refusal refusal;
    return static_cast<double>(
        TwoProportionRequiredN({.test = {.pi1 = .6, .pi2 = .5, .alpha = .05}, .powerGoal = .9},
                               groups, power, err, refusal));
  });
  FoundWithoutAllocation([] {
    int err = 0;
    Refusal refusal;
    return McNemarRequiredN({.delta = .1, .eta = .4, .alpha = .05}, .9, err, refusal);
  });
}

TEST_F(AllocationsTest, DoNotHappenInTheSearchesOfSurvivalAndModelFit) {
  FoundWithoutAllocation([] {
    std::int64_t events = 0;
    int err = 0;
    Refusal refusal;
    return static_cast<double>(
        LogRankRequiredN({.pi1 = .5, .pi2 = .7, .alpha = .05}, .9, events, err, refusal));
  });
  for (const double dropouts : {0.0, .1}) {
    FoundWithoutAllocation([dropouts] {
      int err = 0;
      Refusal refusal;
      return static_cast<double>(ExponentialSurvivalRequiredN(
          {.lambda1 = .5, .lambda2 = .7, .d = dropouts, .t = 10, .t0 = 9, .alpha = .05}, .9, err,
          refusal));
    });
  }
  FoundWithoutAllocation([this] {
    return SizeOf(ModelFitRequiredN({.r = .08, .r0 = .05, .alpha = .05, .powerGoal = .9, .df = 20},
                                    observer));
  });
}

}  // namespace
}  // namespace poweranalysis
