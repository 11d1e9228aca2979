#include "distributions/SolveParameter.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <vector>

#include "distributions/Binomial.h"
#include "distributions/Common.h"
#include "distributions/NoncentralChiSquare.h"
#include "distributions/NoncentralF.h"
#include "distributions/NoncentralT.h"
#include "distributions/Normal.h"

namespace poweranalysis {
namespace {

constexpr double Nan = std::numeric_limits<double>::quiet_NaN();
constexpr SearchKind AllKinds[] = {
    SearchChiSquareDelta,    SearchTDelta,    SearchFDelta,       SearchTQuantile,
    SearchChiSquareQuantile, SearchFQuantile, SearchFDeltaApprox, SearchBinomialProportion};

// A scripted residual under the policy of a kind, with every point it was asked for.
struct Trace {
  double value = 0.0;
  int status = 7;
  int failure = 7;
  std::vector<double> points;
};

template <class Function>
Trace Search(SearchKind kind, double start, const Function& f) {
  Trace run;
  const auto residual = [&](double b, int& failure) {
    run.points.push_back(b);
    return f(b, failure);
  };
  run.value = SecantSearch(residual, start, SearchPolicyOf(kind), run.status, run.failure);
  return run;
}

template <class Function>
auto Plain(const Function& f) {
  return [f](double b, int&) { return f(b); };
}

TEST(SecantSearch, SolvesASmoothResidualUnderEveryPolicy) {
  for (const SearchKind kind : AllKinds) {
    const Trace run = Search(kind, 0.9, Plain([](double b) { return b * b - 0.25; }));
    EXPECT_NEAR(run.value, 0.5, 1e-9) << kind;
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(run.failure, 0);
  }
}

TEST(SecantSearch, TakesItsFirstSlopeJustBelowTheStart) {
  const Trace run = Search(SearchTQuantile, 2.0, Plain([](double b) { return b - 1.0; }));
  ASSERT_GE(run.points.size(), 3U);
  EXPECT_EQ(run.points[0], 2.0);
  EXPECT_EQ(run.points[1], 2.0 - 2.0 * 0.0001);
  EXPECT_NEAR(run.points[2], 1.0, 1e-8) << "the step leaves from the start, not its neighbour";
}

TEST(SecantSearch, TakesTheSmallestStepForANegativeStart) {
  const Trace run = Search(SearchTQuantile, -2.0, Plain([](double b) { return b + 1.0; }));
  EXPECT_EQ(run.points[1], -2.0 - 1e-10);
}

TEST(SecantSearch, DividesTheFirstSlopeByTheWholeStepEvenAtTheFloor) {
  // Start 5e-11: the neighbour moves from -5e-11 up to 0, and |0| then ends the search at once.
  const Trace run = Search(SearchChiSquareQuantile, 5e-11, Plain([](double b) { return b - 1.0; }));
  ASSERT_EQ(run.points.size(), 2U);
  EXPECT_EQ(run.points[1], 0.0);
  EXPECT_EQ(run.value, 5e-11);
  EXPECT_EQ(run.status, 1);
}

TEST(SecantSearch, MirrorsANeighbourBelowTheFloorWhenTheStartIsNotPositive) {
  const Trace run = Search(SearchFDelta, -0.25, Plain([](double b) { return b - 1.0; }));
  EXPECT_EQ(run.points[1], 0.25 + 1e-10);
}

TEST(SecantSearch, SkipsTheLoopWhenTheNeighbourIsAtZero) {
  const Trace run = Search(SearchBinomialProportion, 0.0, Plain([](double b) { return 0.5 - b; }));
  EXPECT_EQ(run.points.size(), 2U);
  EXPECT_EQ(run.value, 0.0);
  EXPECT_EQ(run.status, 1);
  EXPECT_EQ(run.failure, 0);
}

TEST(SecantSearch, ReturnsTheStartOfASkippedLoopWithStatusZeroWhenItSolves) {
  const Trace run = Search(SearchBinomialProportion, 0.0, Plain([](double b) { return b; }));
  EXPECT_EQ(run.value, 0.0);
  EXPECT_EQ(run.status, 0);
}

TEST(SecantSearch, TriesZeroFirstForTheChiSquareDeltaAlone) {
  const auto zeroAtZero = Plain([](double b) { return b * (b - 3.0); });
  const Trace run = Search(SearchChiSquareDelta, 5.0, zeroAtZero);
  EXPECT_EQ(run.value, 0.0);
  EXPECT_EQ(run.status, 0);
  EXPECT_EQ(run.points, std::vector<double>{0.0});
  for (const SearchKind kind : AllKinds) {
    if (kind != SearchChiSquareDelta) {
      EXPECT_EQ(Search(kind, 0.875, zeroAtZero).points[0], 0.875) << kind;
    }
  }
}

TEST(SecantSearch, RaisesTheStartOfTheChiSquareDeltaToOne) {
  for (const double start : {-3.0, 0.5, 1.0}) {
    const Trace run = Search(SearchChiSquareDelta, start, Plain([](double b) { return b - 2.0; }));
    EXPECT_EQ(run.points[1], 1.0);
  }
  const Trace run = Search(SearchChiSquareDelta, 1.5, Plain([](double b) { return b - 2.0; }));
  EXPECT_EQ(run.points[1], 1.5);
}

TEST(SecantSearch, KeepsTheFlooredKindsAtOrAboveZeroAndNoOther) {
  const auto rootBelow = Plain([](double b) { return b + 2.0; });
  for (const SearchKind kind : AllKinds) {
    const bool floored = SearchPolicyOf(kind).floorAtZero;
    bool below = false;
    for (const double b : Search(kind, 0.75, rootBelow).points) {
      below = below || b < 0.0;
    }
    EXPECT_EQ(below, !floored) << kind;
  }
  EXPECT_TRUE(SearchPolicyOf(SearchFDelta).floorAtZero);
  EXPECT_TRUE(SearchPolicyOf(SearchChiSquareQuantile).floorAtZero);
  EXPECT_TRUE(SearchPolicyOf(SearchFQuantile).floorAtZero);
  EXPECT_TRUE(SearchPolicyOf(SearchBinomialProportion).floorAtZero);
}

TEST(SecantSearch, LetsTheApproximateFDeltaGoNegativeThoughItsExactTwinMayNot) {
  const auto rootBelow = Plain([](double b) { return b + 2.0; });
  const Trace approximate = Search(SearchFDeltaApprox, 1.0, rootBelow);
  EXPECT_NEAR(approximate.value, -2.0, 1e-9);
  EXPECT_EQ(approximate.status, 0);
  const Trace exact = Search(SearchFDelta, 1.0, rootBelow);
  EXPECT_TRUE(exact.failure != 0 || exact.value >= 0.0);
}

TEST(SecantSearch, KeepsTheProportionAtOrBelowOneAndNoOther) {
  const auto rootAbove = Plain([](double b) { return b - 5.0; });
  for (const SearchKind kind : AllKinds) {
    bool above = false;
    for (const double b : Search(kind, 0.75, rootAbove).points) {
      above = above || b > 1.0;
    }
    EXPECT_EQ(above, kind != SearchBinomialProportion) << kind;
  }
}

TEST(SecantSearch, TakesTheNextSlopeWithTheBoundedPoint) {
  // The slope 1 at the start leads from 1 to -1, which the floor makes 0, and there f is -2. With
  // that 0 the slope is (2 + 2) / (1 - 0) and the next point 1/2; with the -1 it would be 2, and 1.
  const Trace run =
      Search(SearchFDelta, 1.0, Plain([](double b) { return b > 0.75 ? b + 1.0 : 4.0 * b - 2.0; }));
  ASSERT_EQ(run.points.size(), 4U);
  EXPECT_EQ(run.points[2], 0.0);
  EXPECT_NEAR(run.points[3], 0.5, 1e-9);
  EXPECT_EQ(run.status, 0);
}

TEST(SecantSearch, FailsWhenABoundedPointIsMetTwice) {
  const Trace run = Search(SearchFDelta, 1.0, Plain([](double b) { return b + 2.0; }));
  EXPECT_EQ(run.value, NumericFailure);
  EXPECT_EQ(run.failure, 1);
  for (const double b : run.points) {
    EXPECT_FALSE(std::isnan(b)) << "a distribution is never asked for a point that is no number";
  }
}

TEST(SecantSearch, EndsOnAZeroSlopeWithStatusOne) {
  const Trace run = Search(SearchTQuantile, 2.0, Plain([](double) { return 0.5; }));
  EXPECT_EQ(run.value, 2.0);
  EXPECT_EQ(run.status, 1);
  EXPECT_EQ(run.failure, 0);
  EXPECT_EQ(run.points.size(), 2U);
}

TEST(SecantSearch, GivesUpAfterTenThousandCountsWithStatusTwo) {
  // No root: the steps of the secant wander about the minimum of b^2 + 1 for ever.
  int calls = 0;
  const Trace run = Search(SearchTQuantile, 2.0, Plain([&calls](double b) {
                             ++calls;
                             return std::fabs(std::fmod(b, 7.0)) + 1.0 + 0.001 * (calls % 17);
                           }));
  EXPECT_EQ(run.status, 2);
  EXPECT_EQ(calls, 10001);
  EXPECT_TRUE(std::isfinite(run.value));
}

TEST(SecantSearch, FailsWithTheEvaluationThatFails) {
  for (const int failing : {1, 2, 3}) {
    int calls = 0;
    const Trace run = Search(SearchTQuantile, 2.0, [&](double b, int& failure) {
      failure = ++calls == failing ? 4 : 0;
      return b - 1.0;
    });
    EXPECT_EQ(run.value, NumericFailure);
    EXPECT_EQ(run.failure, 4);
    EXPECT_EQ(calls, failing);
  }
}

TEST(SecantSearch, GoesOnFromAFailedLookAtZero) {
  const Trace run = Search(SearchChiSquareDelta, 3.0, [](double b, int& failure) {
    failure = b == 0.0 ? 1 : 0;
    return b - 2.0;
  });
  EXPECT_NEAR(run.value, 2.0, 1e-9);
  EXPECT_EQ(run.failure, 0);
}

TEST(SecantSearch, CountsAResidualThatIsNoNumberAsAFailedEvaluation) {
  for (const SearchKind kind : AllKinds) {
    const Trace run = Search(kind, 2.0, Plain([](double) { return Nan; }));
    if (kind == SearchTDelta) {
      EXPECT_EQ(run.failure, 0);
      EXPECT_GE(run.status, 1);
    } else {
      EXPECT_EQ(run.value, NumericFailure) << kind;
      EXPECT_EQ(run.failure, 1);
    }
  }
}

TEST(SecantSearch, ClearsBothWordsOnEntry) {
  int status = 5;
  int failure = 5;
  SecantSearch([](double b, int&) { return b - 1.0; }, 2.0, {}, status, failure);
  EXPECT_EQ(status, 0);
  EXPECT_EQ(failure, 0);
}

TEST(SearchKind, HasTheCodesOfItsCallers) {
  EXPECT_EQ(SearchChiSquareDelta, 1);
  EXPECT_EQ(SearchTDelta, 2);
  EXPECT_EQ(SearchFDelta, 3);
  EXPECT_EQ(SearchTQuantile, 5);
  EXPECT_EQ(SearchChiSquareQuantile, 6);
  EXPECT_EQ(SearchFQuantile, 7);
  EXPECT_EQ(SearchFDeltaApprox, 8);
  EXPECT_EQ(SearchBinomialProportion, 9);
}

TEST(SolveResidual, EvaluatesTheDistributionOfItsKind) {
  int failure = 3;
  EXPECT_EQ(SolveResidual(2.0, 0.5, 10, 0.25, failure, SearchTDelta, 0),
            NoncentralTCdf(2.0, 10, 0.5) - 0.25);
  EXPECT_EQ(failure, 0);
  EXPECT_EQ(SolveResidual(2.0, 0.5, 10, 0.25, failure, SearchTQuantile, 0),
            NoncentralTCdf(0.5, 10, 2.0) - 0.25);
  double density = 0.0;
  int ignored = 0;
  EXPECT_EQ(SolveResidual(12.0, 3.0, 7, 0.25, failure, SearchChiSquareDelta, 0),
            NoncentralChiSquareCdf(12.0, 7, 3.0, density, ignored) - 0.25);
  EXPECT_EQ(SolveResidual(12.0, 3.0, 7, 0.25, failure, SearchChiSquareQuantile, 0),
            NoncentralChiSquareCdf(3.0, 7, 12.0, density, ignored) - 0.25);
  EXPECT_EQ(SolveResidual(4.0, 0.375, 10, 0.25, failure, SearchBinomialProportion, 0),
            BinomialCdf(10.0, 0.375, 4.0, ignored) - 0.25);
  EXPECT_EQ(failure, 0);
}

TEST(SolveResidual, TakesTheExactAlgorithmForTheFAndTikusForItsApproximation) {
  int failure = 3;
  int ignored = 0;
  EXPECT_EQ(SolveResidual(2.5, 3.0, 4, 0.25, failure, SearchFDelta, 20),
            NoncentralFCdfInt(2.5, 4, 20, 3.0, ignored, FExact) - 0.25);
  EXPECT_EQ(SolveResidual(2.5, 3.0, 4, 0.25, failure, SearchFDeltaApprox, 20),
            NoncentralFCdfInt(2.5, 4, 20, 3.0, ignored, FTiku) - 0.25);
  EXPECT_EQ(SolveResidual(2.5, 3.0, 4, 0.25, failure, SearchFQuantile, 20),
            NoncentralFCdfInt(3.0, 4, 20, 2.5, ignored, FExact) - 0.25);
  EXPECT_EQ(failure, 0);
  EXPECT_NE(NoncentralFCdfInt(2.5, 4, 20, 3.0, ignored, FExact),
            NoncentralFCdfInt(2.5, 4, 20, 3.0, ignored, FTiku));
}

TEST(SolveResidual, IsNumericFailureWithTheFailureOfItsDistribution) {
  struct Row {
    SearchKind kind;
    double x;
    double b;
    int failure;
  };
  const Row rows[] = {
      {SearchChiSquareDelta, 5.0, -0.5, 1},
      {SearchChiSquareDelta, 980.0, 900.0, 2},
      {SearchChiSquareQuantile, -0.5, 5.0, 1},
      {SearchChiSquareQuantile, 900.0, 980.0, 2},
      {SearchFDelta, 2.0, -0.5, 1},
      {SearchFQuantile, -0.5, 2.0, 1},
      {SearchBinomialProportion, 3.0, 1.0001, 1},
  };
  for (const Row& row : rows) {
    int failure = 0;
    EXPECT_EQ(SolveResidual(row.x, row.b, 10, 0.25, failure, row.kind, 12), NumericFailure)
        << row.kind;
    EXPECT_EQ(failure, row.failure) << row.kind;
  }
}

TEST(SolveResidual, HasNoFailureInTheNormalApproximationOfTheChiSquare) {
  // That leaves the word as it stood, which is cleared before every evaluation.
  int failure = 7;
  EXPECT_NE(SolveResidual(1000.0, 950.0, 10, 0.25, failure, SearchChiSquareDelta, 0),
            NumericFailure);
  EXPECT_EQ(failure, 0);
}

TEST(SolveResidual, FailsForAKindWithoutADistribution) {
  for (const int code : {0, 4, 10, -1}) {
    const auto kind = static_cast<SearchKind>(code);
    int failure = 0;
    int status = 0;
    EXPECT_EQ(SolveResidual(1.0, 1.0, 5, 0.5, failure, kind, 5), NumericFailure) << code;
    EXPECT_EQ(failure, 1);
    failure = 0;
    EXPECT_EQ(SolveParameter(1.0, 5, 0.5, 1.0, status, failure, kind, 5), NumericFailure) << code;
    EXPECT_EQ(failure, 1);
  }
}

// A t at which, with one degree of freedom, twenty intervals do not resolve the integrand.
constexpr double UnmanageableT = 1.2e5;

TEST(SolveResidual, TurnsAFailedIntegralIntoAFailureForTheQuantileAlone) {
  ASSERT_EQ(NoncentralTCdf(UnmanageableT, 1, 0.5), NumericFailure);
  int failure = 0;
  EXPECT_EQ(SolveResidual(0.5, UnmanageableT, 1, 0.25, failure, SearchTQuantile, 0),
            NumericFailure);
  EXPECT_EQ(failure, 1);
  EXPECT_EQ(SolveResidual(UnmanageableT, 0.5, 1, 0.25, failure, SearchTDelta, 0),
            NumericFailure - 0.25);
  EXPECT_EQ(failure, 0);
}

TEST(SolveParameter, RunsOnAfterAFailedIntegralForTheTDelta) {
  int status = 0;
  int failure = 0;
  SolveParameter(UnmanageableT, 1, 0.25, 0.5, status, failure, SearchTDelta, 0);
  EXPECT_GE(status, 1);
  EXPECT_EQ(failure, 0);
  EXPECT_EQ(SolveParameter(0.5, 1, 0.25, UnmanageableT, status, failure, SearchTQuantile, 0),
            NumericFailure);
  EXPECT_EQ(failure, 1);
}

TEST(SolveParameter, FindsTheDeltaOfTheT) {
  for (const double t : {-1.5, 0.25, 2.0, 4.0}) {
    for (const double p : {0.025, 0.5, 0.9}) {
      int status = 1;
      int failure = 1;
      const double start = NoncentralTDeltaStart(t, 12, p);
      const double delta = SolveParameter(t, 12, p, start, status, failure, SearchTDelta, 0);
      EXPECT_EQ(status, 0) << t << " " << p;
      EXPECT_EQ(failure, 0);
      EXPECT_NEAR(NoncentralTCdf(t, 12, delta), p, 1e-9);
    }
  }
}

TEST(SolveParameter, FindsItsParameterForEveryOtherKind) {
  struct Row {
    SearchKind kind;
    double x;
    std::int32_t df;
    std::int32_t df2;
    double b;
    double start;
  };
  const Row rows[] = {
      {SearchChiSquareDelta, 22.0, 8, 0, 12.5, 9.0},
      {SearchChiSquareQuantile, 5.5, 8, 0, 14.0, 9.0},
      {SearchFDelta, 3.0, 4, 30, 6.25, 4.0},
      {SearchFQuantile, 6.25, 4, 30, 3.0, 2.0},
      {SearchFDeltaApprox, 3.0, 4, 30, 6.25, 4.0},
      {SearchBinomialProportion, 7.0, 20, 0, 0.5, 0.4},
  };
  for (const Row& row : rows) {
    int failure = 0;
    int status = 5;
    const double p = SolveResidual(row.x, row.b, row.df, 0.0, failure, row.kind, row.df2);
    ASSERT_EQ(failure, 0) << row.kind;
    EXPECT_NEAR(SolveParameter(row.x, row.df, p, row.start, status, failure, row.kind, row.df2),
                row.b, 1e-6)
        << row.kind;
    EXPECT_EQ(status, 0) << row.kind;
    EXPECT_EQ(failure, 0) << row.kind;
  }
}

TEST(SolveParameter, ReturnsZeroForAChiSquareDeltaWhoseTargetIsTheCentralValue) {
  double density = 0.0;
  int status = 5;
  int failure = 5;
  const double central = NoncentralChiSquareCdf(9.0, 6, 0.0, density, failure);
  EXPECT_EQ(SolveParameter(9.0, 6, central, 40.0, status, failure, SearchChiSquareDelta, 0), 0.0);
  EXPECT_EQ(status, 0);
  EXPECT_EQ(failure, 0);
}

TEST(SolveParameter, FailsForAChiSquareDeltaThatStepsBelowZero) {
  // No floor: the root .05 is overshot from the least start of 1.
  double density = 0.0;
  int status = 5;
  int failure = 5;
  const double p = NoncentralChiSquareCdf(2.5, 1, 0.05, density, failure);
  EXPECT_EQ(SolveParameter(2.5, 1, p, 0.05, status, failure, SearchChiSquareDelta, 0),
            NumericFailure);
  EXPECT_EQ(failure, 1);
  EXPECT_EQ(status, 0);
}

TEST(SolveParameter, TakesTheWholeStepForAChiSquareQuantileWhoseNeighbourIsMovedToZero) {
  int status = 5;
  int failure = 5;
  EXPECT_EQ(SolveParameter(0.0, 1, 0.25, 5e-11, status, failure, SearchChiSquareQuantile, 0),
            5e-11);
  EXPECT_EQ(status, 1);
  EXPECT_EQ(failure, 0);
}

TEST(SolveParameter, LeavesAProportionThatStartsAtZeroThere) {
  int status = 5;
  int failure = 5;
  EXPECT_EQ(SolveParameter(0.0, 10, 0.5, 0.0, status, failure, SearchBinomialProportion, 0), 0.0);
  EXPECT_EQ(status, 1);
  EXPECT_EQ(failure, 0);
}

TEST(SolveParameter, KeepsAProportionWithinItsRange) {
  // From .9 the flat tail throws the step far below 0; the floor catches it.
  for (const double start : {0.1, 0.9, 0.999}) {
    int status = 5;
    int failure = 5;
    const double pi =
        SolveParameter(4.0, 10, 0.5, start, status, failure, SearchBinomialProportion, 0);
    EXPECT_TRUE(pi == NumericFailure || (pi >= 0.0 && pi <= 1.0)) << start << " gives " << pi;
  }
}

TEST(SolveParameter, EndsAChiSquareSearchThatBouncesAcrossAnEdgeOfTheSeries) {
  // The sum ends a term earlier on one side of the root than on the other. At few degrees of
  // freedom that shows in the status after all evaluations, at many the search is cut short.
  int status = 0;
  int failure = 0;
  EXPECT_EQ(
      SolveParameter(22.81, 177162, 0x1p-19, 174496.0, status, failure, SearchChiSquareQuantile, 0),
      NumericFailure);
  EXPECT_EQ(failure, 1);
}

TEST(SolveParameter, EndsATSearchThatHasDoneItsWork) {
  // No delta has a probability of 2; every evaluation takes a million steps.
  int status = 0;
  int failure = 0;
  std::int64_t steps = 2'000'000;
  EXPECT_EQ(SolveParameter(5000.0, 2'000'000, 2.0, 10.0, status, failure, SearchTDelta, 0, steps),
            NumericFailure);
  EXPECT_EQ(failure, 1);
  EXPECT_LT(steps, 0);
}

TEST(SolveParameter, CountsTheStepsOfARecurrenceAlone) {
  int status = 0;
  int failure = 0;
  std::int64_t steps = 1000;
  const double t = SolveParameter(0.0, 10, 0.75, 0.7, status, failure, SearchTQuantile, 0, steps);
  EXPECT_NEAR(NoncentralTCdf(t, 10, 0.0), 0.75, 1e-10);
  EXPECT_LT(steps, 1000);
  EXPECT_GT(steps, 900);
  steps = 0;
  EXPECT_NE(SolveParameter(4.0, 10, 0.5, 0.5, status, failure, SearchBinomialProportion, 0, steps),
            NumericFailure);
  EXPECT_EQ(steps, 0);
}

TEST(SolveParameter, EndsForATargetThatIsNoProbability) {
  for (const SearchKind kind : AllKinds) {
    for (const double target : {-1.0, 2.0, Nan, std::numeric_limits<double>::infinity()}) {
      int status = 0;
      int failure = 0;
      SolveParameter(3.0, 8, target, 0.5, status, failure, kind, 12);
      EXPECT_TRUE(status != 0 || failure != 0) << kind << " " << target;
    }
  }
}

}  // namespace
}  // namespace poweranalysis
