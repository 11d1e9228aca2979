#include "distributions/AdaptiveIntegrate.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <numbers>

#include "distributions/TruthTable.h"

namespace poweranalysis {
namespace {

using test::ErrorOf;

struct Outcome {
  double result = 7.0;
  double abserr = 7.0;
  int neval = 7;
  int ier = 7;
};

template <class Function>
Outcome Integral(const Function& f, double lower, double upper, double epsabs, double epsrel) {
  Outcome outcome;
  AdaptiveIntegrate(
      [&f](double x) {
        return IntegrandValue{f(x), 0};
      },
      lower, upper, epsabs, epsrel, outcome.result, outcome.abserr, outcome.neval, outcome.ier);
  return outcome;
}

TEST(GaussKronrod21, IsExactForPolynomialsOfDegreeThirtyOne) {
  for (int degree = 0; degree <= 31; ++degree) {
    const auto estimate = qags::GaussKronrod21(
        [degree](double x) {
          return IntegrandValue{std::pow(x, degree), 0};
        },
        0.0, 1.0);
    EXPECT_LT(ErrorOf(estimate.result, 1.0 / (degree + 1)), 1e-15) << degree;
  }
}

TEST(GaussKronrod21, WeightsOfBothRulesSumToTwo) {
  double kronrod = qags::CentreWeight;
  for (const double weight : qags::KronrodWeights) {
    kronrod += 2.0 * weight;
  }
  double gauss = 0.0;
  for (const double weight : qags::GaussWeights) {
    gauss += 2.0 * weight;
  }
  EXPECT_NEAR(kronrod, 2.0, 1e-15);
  EXPECT_NEAR(gauss, 2.0, 1e-15);
}

TEST(GaussKronrod21, EstimatesItsErrorAsPublishedWhereThePowerIsNotTaken) {
  for (double difference = 1e-30; difference < 10.0; difference *= 1.7) {
    for (const double resabs : {1e-300, 1e-3, 1.0, 40.0}) {
      for (const double share : {0.0, 1e-12, 1e-3, 0.5, 1.0}) {
        const double resasc = resabs * share;
        double expected = difference;
        if (resasc != 0.0) {
          expected = resasc * std::min(1.0, std::pow(200.0 * difference / resasc, 1.5));
        }
        if (resabs > qags::SmallestNormal / (50.0 * qags::Epsilon)) {
          expected = std::max(qags::Epsilon * 50.0 * resabs, expected);
        }
        EXPECT_EQ(qags::RuleError(difference, resabs, resasc), expected);
        EXPECT_EQ(qags::RuleError(-difference, resabs, resasc), expected);
      }
    }
  }
}

TEST(AdaptiveIntegrate, SettlesASmoothIntegrandByOneRule) {
  const Outcome outcome = Integral([](double x) { return std::exp(x); }, 0.0, 1.0, 1e-12, 1e-12);
  EXPECT_LT(ErrorOf(outcome.result, std::numbers::e - 1.0), 1e-15);
  EXPECT_EQ(outcome.ier, 0);
  EXPECT_EQ(outcome.neval, 21);
  EXPECT_LE(outcome.abserr, 1e-12);
}

TEST(AdaptiveIntegrate, TakesLimitsInEitherOrder) {
  const auto f = [](double x) { return std::cos(x); };
  EXPECT_EQ(Integral(f, 0.0, 2.0, 1e-12, 1e-12).result,
            -Integral(f, 2.0, 0.0, 1e-12, 1e-12).result);
}

TEST(AdaptiveIntegrate, GivesZeroOverAnEmptyInterval) {
  const Outcome outcome = Integral([](double) { return 3.0; }, 0.5, 0.5, 1e-12, 1e-12);
  EXPECT_EQ(outcome.result, 0.0);
  EXPECT_EQ(outcome.ier, 0);
}

TEST(AdaptiveIntegrate, SubdividesWhereTheIntegrandIsHard) {
  const Outcome outcome =
      Integral([](double x) { return 1.0 / (1.0 + 400.0 * x * x); }, -1.0, 1.0, 1e-10, 1e-10);
  EXPECT_LT(ErrorOf(outcome.result, std::atan(20.0) / 10.0), 1e-12);
  EXPECT_EQ(outcome.ier, 0);
  EXPECT_GT(outcome.neval, 21);
  EXPECT_EQ((outcome.neval + 21) % 42, 0);
}

TEST(AdaptiveIntegrate, ExtrapolatesAnEndpointSingularity) {
  struct Case {
    double (*f)(double);
    double expected;
  };
  const Case cases[] = {
      {[](double x) { return 1.0 / std::sqrt(x); }, 2.0},
      {[](double x) { return std::log(x); }, -1.0},
      {[](double x) { return std::log(x) / std::sqrt(x); }, -4.0},
  };
  for (const Case& each : cases) {
    const Outcome outcome = Integral(each.f, 0.0, 1.0, 1e-8, 1e-8);
    EXPECT_EQ(outcome.ier, 0) << each.expected;
    EXPECT_LT(ErrorOf(outcome.result, each.expected), 1e-8);
    // Bisection alone would leave about 2^-10 of the singularity after 20 intervals.
    EXPECT_LE(outcome.neval, 42 * 20 - 21);
  }
}

TEST(AdaptiveIntegrate, KeepsTheEstimatedErrorAboveTheTrueOne) {
  const Outcome outcome =
      Integral([](double x) { return std::sqrt(std::fabs(x - 0.3)); }, 0.0, 1.0, 1e-6, 1e-6);
  const double truth = 2.0 / 3.0 * (std::pow(0.3, 1.5) + std::pow(0.7, 1.5));
  EXPECT_EQ(outcome.ier, 0);
  EXPECT_LE(std::fabs(outcome.result - truth), outcome.abserr);
}

TEST(AdaptiveIntegrate, SaysWhenTheTwentiethIntervalIsReached) {
  const Outcome outcome =
      Integral([](double x) { return std::sin(3000.0 * x * x); }, 0.0, 1.0, 1e-12, 1e-12);
  EXPECT_EQ(outcome.ier, 1);
  EXPECT_EQ(outcome.neval, 42 * 20 - 21);
}

TEST(AdaptiveIntegrate, ReportsAnIntegralThatDiverges) {
  const Outcome outcome = Integral([](double x) { return 1.0 / x; }, 0.0, 1.0, 1e-10, 1e-10);
  EXPECT_NE(outcome.ier, 0);
}

TEST(AdaptiveIntegrate, RefusesTolerancesThatNothingCanMeet) {
  int calls = 0;
  const auto counting = [&calls](double x) {
    ++calls;
    return x;
  };
  const Outcome refused = Integral(counting, 0.0, 1.0, 0.0, 1e-15);
  EXPECT_EQ(refused.ier, 6);
  EXPECT_EQ(refused.result, 0.0);
  EXPECT_EQ(refused.neval, 0);
  EXPECT_EQ(calls, 0);
  EXPECT_EQ(Integral([](double x) { return x; }, 0.0, 1.0, 0.0, 1.2e-14).ier, 0);
}

TEST(AdaptiveIntegrate, AbandonsEverythingOnTheFlagOfTheIntegrand) {
  for (const int raisedAt : {1, 2, 21, 22, 30, 43, 64}) {
    int calls = 0;
    Outcome outcome;
    AdaptiveIntegrate(
        [&](double x) {
          return IntegrandValue{1.0 / (1.0 + 4e4 * x * x), ++calls == raisedAt ? 3 : 0};
        },
        -1.0, 1.0, 1e-12, 1e-12, outcome.result, outcome.abserr, outcome.neval, outcome.ier);
    EXPECT_EQ(outcome.ier, 99) << raisedAt;
    EXPECT_EQ(outcome.result, 0.0);
    EXPECT_EQ(calls, raisedAt) << "nothing is evaluated after the flag";
  }
}

TEST(AdaptiveIntegrate, EndsOnAnIntegrandThatIsNoNumber) {
  const double nan = std::numeric_limits<double>::quiet_NaN();
  const Outcome outcome = Integral([nan](double) { return nan; }, 0.0, 1.0, 1e-12, 1e-12);
  EXPECT_LE(outcome.neval, 42 * 20 - 21);
  EXPECT_TRUE(outcome.ier != 0 || std::isnan(outcome.result));
}

TEST(AdaptiveIntegrate, NestsInsideItself) {
  // The integral over the unit square of 1 / (1 + x y), pi^2 / 12.
  const auto outer = [](double x) {
    const Outcome inner =
        Integral([x](double y) { return 1.0 / (1.0 + x * y); }, 0.0, 1.0, 1e-10, 1e-10);
    return inner.result;
  };
  const Outcome outcome = Integral(outer, 0.0, 1.0, 1e-8, 1e-8);
  EXPECT_LT(ErrorOf(outcome.result, std::numbers::pi * std::numbers::pi / 12.0), 1e-10);
}

}  // namespace
}  // namespace poweranalysis
