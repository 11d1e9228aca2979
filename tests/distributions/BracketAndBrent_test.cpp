#include "distributions/BracketAndBrent.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <vector>

#include "distributions/Common.h"

namespace poweranalysis {
namespace {

// Runs the root finder on a function and keeps every point it asked for.
struct Trace {
  double root = 0.0;
  int failure = 0;
  std::vector<double> points;
};

template <class Function>
Trace Find(const Function& f, double a, double b, const BracketPolicy& policy) {
  Trace run;
  const auto recording = [&](double x) {
    run.points.push_back(x);
    return f(x);
  };
  run.root = BracketAndBrent({a, f(a)}, {b, f(b)}, recording, policy, run.failure);
  return run;
}

double Cubic(double x) { return x * x * x - 2.0; }

TEST(BracketAndBrent, FindsARootInsideTheFirstPoints) {
  const Trace run = Find(Cubic, 0.0, 2.0, {});
  EXPECT_NEAR(run.root, std::cbrt(2.0), 1e-9);
  EXPECT_EQ(run.failure, 0);
  EXPECT_LT(run.points.size(), 20U);
}

TEST(BracketAndBrent, MovesTheEndWithTheSmallerResidualByTheFactor) {
  const Trace up = Find([](double x) { return x - 10.0; }, 1.0, 2.0, {.factor = 1.6});
  ASSERT_FALSE(up.points.empty());
  EXPECT_DOUBLE_EQ(up.points[0], 2.0 + 1.6 * (2.0 - 1.0));
  const Trace down = Find([](double x) { return x + 10.0; }, 1.0, 2.0, {.factor = 1.2});
  EXPECT_DOUBLE_EQ(down.points[0], 1.0 + 1.2 * (1.0 - 2.0));
}

TEST(BracketAndBrent, MovesTheUpperEndWhenTheResidualsAreEqual) {
  const Trace run = Find([](double x) { return x < 2.5 ? -1.0 : x - 2.5 + 1e-11; }, 1.0, 2.0, {});
  EXPECT_DOUBLE_EQ(run.points[0], 3.6);
}

TEST(BracketAndBrent, PutsAMovedEndOnTheFloorWithoutEvaluatingThere) {
  BracketPolicy policy;
  policy.floorsMovedEnd = true;
  policy.residualAtFloor = -0.5;
  // Positive throughout: only the residual given for the floor changes sign.
  const Trace run = Find([](double x) { return x * x + x - 0.5 + 0.25; }, 0.8, 1.0, policy);
  for (const double x : run.points) {
    EXPECT_GT(x, 0.0);
  }
  EXPECT_EQ(run.failure, 0);
  EXPECT_NEAR(run.root * run.root + run.root, 0.25, 1e-9);
}

TEST(BracketAndBrent, LetsAMovedEndGoBelowZeroWithoutThatFloor) {
  const Trace run = Find([](double x) { return x + 3.0; }, 0.8, 1.0, {.floorsNewPoint = true});
  EXPECT_LT(run.points[0], 0.8);
  bool below = false;
  for (const double x : run.points) {
    below = below || x < 0.0;
  }
  EXPECT_TRUE(below);
}

TEST(BracketAndBrent, KeepsTheNewPointAtItsFloor) {
  BracketPolicy policy;
  policy.floorsNewPoint = true;
  policy.newPointFloor = -1.0;
  // The root lies at -1.5, below the floor: no point of Brent's stage goes there.
  const Trace run = Find([](double x) { return x + 1.5; }, -2.0, 3.0, policy);
  for (const double x : run.points) {
    EXPECT_GE(x, -1.0);
  }
}

TEST(BracketAndBrent, FailsAfterAThousandPassesOfBracketing) {
  int calls = 0;
  int failure = 0;
  const auto constant = [&calls](double) {
    ++calls;
    return 1.0;
  };
  BracketPolicy policy;
  policy.factor = 0.0;
  EXPECT_EQ(BracketAndBrent({0.0, 1.0}, {1.0, 1.0}, constant, policy, failure), NumericFailure);
  EXPECT_EQ(failure, 1);
  EXPECT_EQ(calls, 1000);
}

TEST(BracketAndBrent, FailsAfterAThousandPassesFromPointsThatAreNoNumbers) {
  int calls = 0;
  int failure = 0;
  const double nan = std::numeric_limits<double>::quiet_NaN();
  const auto passing = [&calls](double x) {
    ++calls;
    return x;
  };
  EXPECT_EQ(BracketAndBrent({nan, nan}, {nan, nan}, passing, {}, failure), NumericFailure);
  EXPECT_EQ(failure, 1);
  EXPECT_EQ(calls, 1000);
}

TEST(BracketAndBrent, StopsAtAResidualOfTenToMinusTenWhateverTheHalfTolerance) {
  for (const double halfTolerance : {5e-11, 5e-37, 1e-300}) {
    BracketPolicy policy;
    policy.halfTolerance = halfTolerance;
    double last = 1.0;
    int failure = 0;
    const auto f = [&last](double x) { return last = 1e-6 * Cubic(x); };
    const double root = BracketAndBrent({0.0, f(0.0)}, {2.0, f(2.0)}, f, policy, failure);
    EXPECT_LE(std::fabs(1e-6 * Cubic(root)), 1.0001e-10);
    EXPECT_GT(std::fabs(root - std::cbrt(2.0)), 1e-13) << "ended by the residual, not the bracket";
  }
}

TEST(BracketAndBrent, StopsOnceHalfTheBracketIsWithinTenToMinusTen) {
  // A step of height 1: the residual never gets small, the bracket does.
  BracketPolicy policy;
  policy.halfTolerance = 5e-37;
  const Trace run = Find([](double x) { return x < 1.25 ? -1.0 : 1.0; }, 0.0, 2.0, policy);
  EXPECT_NEAR(run.root, 1.25, 2.1e-10);
  EXPECT_EQ(run.failure, 0);
}

TEST(BracketAndBrent, FirstTestsDifferByTheSlackOfTheirImages) {
  const double tol1 = 1e-3;
  double above = tol1;
  for (int i = 0; i < 15; ++i) {
    above = std::nextafter(above, 1.0);
  }
  // Both then pass at the 1e-10 level; only the tests before it tell them apart.
  EXPECT_TRUE(AtMostWithSlack(above, tol1));
  EXPECT_FALSE(above <= tol1);
  EXPECT_TRUE(brent::Converged(above, tol1, 1.0, BrentFirstTests::WithSlack));
  EXPECT_TRUE(brent::Converged(1.0, tol1, 1e-36, BrentFirstTests::WithSlack));
  EXPECT_TRUE(brent::Converged(1.0, tol1, 0.0, BrentFirstTests::Exact));
  EXPECT_FALSE(brent::Converged(1.0, tol1, 1.0, BrentFirstTests::Exact));
  EXPECT_FALSE(brent::Converged(1.0, tol1, 1.0, BrentFirstTests::WithSlack));
}

TEST(BracketAndBrent, LeavesTheFailureOfItsCallerAloneOnSuccess) {
  int failure = 5;
  BracketAndBrent({0.0, Cubic(0.0)}, {2.0, Cubic(2.0)}, Cubic, {}, failure);
  EXPECT_EQ(failure, 5);
}

}  // namespace
}  // namespace poweranalysis
