#pragma once

#include <cstdint>

#include "procedures/CriticalPair.h"

// The statistic that decides a test: its distribution under both hypotheses, and what it rejects.
// What a power is made of, for whoever wants to see more of it than the number.
namespace poweranalysis {

enum class StatisticKind {
  T,
  F,
  ChiSquare,
  Normal,
  Correlation,         // r
  SquaredCorrelation,  // R2
  Binomial             // a count
};

// The distribution of a statistic under one hypothesis. A kind reads the members beside its name.
struct Distribution {
  StatisticKind kind = StatisticKind::Normal;
  double df1 = 0;              // T, ChiSquare, and of the effect F
  double df2 = 0;              // F
  double noncentrality = 0;    // T, F, ChiSquare
  double scale = 1;            // F, ChiSquare: the statistic is that many times such a variable
  double mean = 0;             // Normal
  double sd = 1;               // Normal
  std::int64_t n = 0;          // Correlation, SquaredCorrelation, Binomial
  std::int32_t variables = 0;  // SquaredCorrelation, the criterion among them
  double parameter = 0;        // of the population: rho, P2 or pi
  std::int16_t algorithm = 0;  // F, Correlation, SquaredCorrelation
};

// P(X <= x) and P(X < x), which differ for a count and for a normal statistic without variance.
//
// Fails: NumericFailure when the distribution does.
double ChanceUpTo(const Distribution& distribution, double x);
double ChanceBelow(const Distribution& distribution, double x);

// A critical value that fails does not count: the test does not reject on that side.
struct Statistic {
  Distribution null;
  Distribution alternative;
  double lower = NumericFailure;  // rejects up to it
  double upper = NumericFailure;  // rejects from it on
  LowTail lowTail = LowTail::Added;
};

// The chance that the statistic is beyond a critical value when it has the given distribution: the
// power under the alternative, and the true type I error rate under the null hypothesis.
//
// Fails: NumericFailure when the distribution does, and without critical values.
double RejectionChance(const Statistic& statistic, const Distribution& distribution);

}  // namespace poweranalysis
