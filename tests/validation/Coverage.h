#pragma once

#include <array>
#include <cmath>
#include <cstdint>
#include <functional>
#include <random>
#include <string>
#include <vector>

#include "families/Families.h"

// Coverage of confidence intervals by simulation: random data are drawn for a design whose truth is
// known, the statistic computed from them, and counted how often its interval holds the truth.
namespace poweranalysis::coverage {

// Uniform and normal numbers that are the same everywhere.
class Random {
 public:
  explicit Random(std::uint64_t stream) : bits_(kSeed + stream) {}

  // In (0, 1).
  double Uniform() { return (static_cast<double>(bits_() >> 11U) + .5) * 0x1p-53; }

  // By the polar method, which gives two at a time.
  double Normal() {
    if (hasSpare_) {
      hasSpare_ = false;
      return spare_;
    }
    double u = 0;
    double v = 0;
    double s = 0;
    do {
      u = 2 * Uniform() - 1;
      v = 2 * Uniform() - 1;
      s = u * u + v * v;
    } while (s >= 1 || s == 0);
    const double scale = std::sqrt(-2 * std::log(s) / s);
    spare_ = v * scale;
    hasSpare_ = true;
    return u * scale;
  }

 private:
  static constexpr std::uint64_t kSeed = 20261122;

  std::mt19937_64 bits_;
  double spare_ = 0;
  bool hasSpare_ = false;
};

// One interval of a family, with its truth.
struct Row {
  Limit limit;
  const char* name;
  double truth;
  // An approximation is reported and not judged.
  bool isJudged = true;
  // Of a count: it holds the truth at least as often as its level says, not just as often.
  bool isAtLeast = false;
};

struct Design {
  Family family;
  std::string what;
  double confidence;
  std::vector<Row> rows;
  std::vector<std::pair<const char*, double>> inputs;  // of the record, beside the statistic
  const char* observed;                                // the field of the statistic
  std::function<double(Random&)> draw;
  bool isSlow = false;  // a limit takes a thousand times as long as elsewhere
};

struct Tally {
  std::int64_t draws = 0;
  std::int64_t below = 0;  // the truth below the lower limit
  std::int64_t above = 0;
  std::int64_t missing = 0;  // an interval without one of its limits

  double Coverage() const {
    return 1 - static_cast<double>(below + above + missing) / static_cast<double>(draws);
  }
};

inline double StandardError(double level, std::int64_t draws) {
  return std::sqrt(level * (1 - level) / static_cast<double>(draws));
}

inline double DeviationOf(const Design& design, const Tally& tally) {
  return (tally.Coverage() - design.confidence) / StandardError(design.confidence, tally.draws);
}

inline constexpr double kAllowed = 4;  // standard errors

inline bool IsAccepted(const Design& design, const Row& row, const Tally& tally) {
  const double deviation = DeviationOf(design, tally);
  return !row.isJudged || (deviation >= -kAllowed && (row.isAtLeast || deviation <= kAllowed));
}

// --- Statistics, from their definitions.

struct MeanAndSquares {
  double mean = 0;
  double squares = 0;  // sum of squared deviations
};

inline MeanAndSquares DrawGroup(Random& random, int n, double mean) {
  MeanAndSquares group;
  for (int i = 1; i <= n; ++i) {
    const double deviation = mean + random.Normal() - group.mean;
    group.mean += deviation / i;
    group.squares += deviation * deviation * (i - 1) / i;
  }
  return group;
}

inline double DrawT(Random& random, int n1, int n2, double effect) {
  const MeanAndSquares a = DrawGroup(random, n1, effect);
  const MeanAndSquares b = DrawGroup(random, n2, 0);
  const double variance = (a.squares + b.squares) / (n1 + n2 - 2);
  return (a.mean - b.mean) / std::sqrt(variance * (1.0 / n1 + 1.0 / n2));
}

inline double DrawF(Random& random, int n, const std::vector<double>& means) {
  const auto k = static_cast<double>(means.size());
  std::vector<MeanAndSquares> groups;
  double grand = 0;
  double within = 0;
  for (const double mean : means) {
    groups.push_back(DrawGroup(random, n, mean));
    grand += groups.back().mean / k;
    within += groups.back().squares;
  }
  double between = 0;
  for (const MeanAndSquares& group : groups) {
    between += n * (group.mean - grand) * (group.mean - grand);
  }
  return between / (k - 1) / (within / (k * (n - 1)));
}

// The squared correlation of a criterion with the best combination of predictors, of which the
// first alone has to do with it: orthogonal columns one after the other, each from what the others
// leave of it.
inline double DrawR2(Random& random, int n, int predictors, double p2) {
  const auto size = static_cast<std::size_t>(n);
  std::vector<std::vector<double>> columns(static_cast<std::size_t>(predictors) + 1,
                                           std::vector<double>(size));
  std::vector<double>& criterion = columns.back();
  for (std::size_t i = 0; i < size; ++i) {
    for (std::size_t j = 0; j + 1 < columns.size(); ++j) {
      columns[j][i] = random.Normal();
    }
    criterion[i] = std::sqrt(p2) * columns[0][i] + std::sqrt(1 - p2) * random.Normal();
  }
  const auto product = [](const std::vector<double>& a, const std::vector<double>& b) {
    double sum = 0;
    for (std::size_t i = 0; i < a.size(); ++i) {
      sum += a[i] * b[i];
    }
    return sum;
  };
  const auto takeOff = [&](const std::vector<double>& from, std::vector<double>& of) {
    const double share = product(from, of) / product(from, from);
    for (std::size_t i = 0; i < of.size(); ++i) {
      of[i] -= share * from[i];
    }
  };
  const std::vector<double> ones(size, 1);
  for (std::vector<double>& column : columns) {
    takeOff(ones, column);
  }
  const double total = product(criterion, criterion);
  for (std::size_t j = 0; j + 1 < columns.size(); ++j) {
    for (std::size_t later = j + 1; later < columns.size(); ++later) {
      takeOff(columns[j], columns[later]);
    }
  }
  return 1 - product(criterion, criterion) / total;
}

inline double DrawR(Random& random, int n, double rho) {
  double x = 0;
  double y = 0;
  double xx = 0;
  double yy = 0;
  double xy = 0;
  for (int i = 1; i <= n; ++i) {
    const double u = random.Normal();
    const double dx = u - x;
    const double dy = rho * u + std::sqrt(1 - rho * rho) * random.Normal() - y;
    const double part = static_cast<double>(i - 1) / i;
    x += dx / i;
    y += dy / i;
    xx += dx * dx * part;
    yy += dy * dy * part;
    xy += dx * dy * part;
  }
  return xy / std::sqrt(xx * yy);
}

inline double DrawProportion(Random& random, int n, double pi) {
  int count = 0;
  for (int i = 0; i < n; ++i) {
    count += random.Uniform() < pi ? 1 : 0;
  }
  return static_cast<double>(count) / n;
}

// The statistic of a model is noncentral chi-square by assumption.
inline double DrawChiSquare(Random& random, int df, double delta) {
  double sum = 0;
  for (int i = 0; i < df; ++i) {
    const double z = random.Normal() + (i == 0 ? std::sqrt(delta) : 0);
    sum += z * z;
  }
  return sum;
}

// --- Designs.

inline Design T2Design(int n1, int n2, double effect, double confidence) {
  return {Family::T2,
          "n " + std::to_string(n1) + ", " + std::to_string(n2),
          confidence,
          {{Limit::Es, "Es", effect}},
          {{"SampleSizeN1", n1}, {"SampleSizeN2", n2}},
          "TObserved",
          [=](Random& random) { return DrawT(random, n1, n2, effect); }};
}

inline Design AV1Design(int n, const std::vector<double>& means, double confidence) {
  const auto k = static_cast<double>(means.size());
  double grand = 0;
  for (const double mean : means) {
    grand += mean / k;
  }
  double squares = 0;
  for (const double mean : means) {
    squares += (mean - grand) * (mean - grand);
  }
  return {Family::AV1,
          std::to_string(means.size()) + " groups, n " + std::to_string(n),
          confidence,
          {{Limit::Rmsse, "RMSSE", std::sqrt(squares / (k - 1))}},
          // Small sizes to look for, which take no time.
          {{"NumberOfGroups", k}, {"N", n}, {"Alpha", .25}, {"PowerGoal", .65}},
          "FObserved",
          [=](Random& random) { return DrawF(random, n, means); }};
}

inline Design RDesign(int n, double rho, double confidence, int algorithm) {
  static constexpr const char* kAlgorithms[] = {", exact", ", refined", ", crude"};
  return {Family::R,
          "n " + std::to_string(n) + kAlgorithms[algorithm],
          confidence,
          {{Limit::Rho, "Rho", rho, algorithm == 0}},
          {{"SampleSize", n}, {"Algorithm", algorithm}},
          "RObserved",
          [=](Random& random) { return DrawR(random, n, rho); },
          algorithm == 0};
}

inline Design R2Design(int n, int predictors, double p2, double confidence, int algorithm) {
  static constexpr const char* kAlgorithms[] = {", speed", ", accuracy"};
  return {Family::R2,
          "n " + std::to_string(n) + ", " + std::to_string(predictors) + " predictors" +
              kAlgorithms[algorithm],
          confidence,
          {{Limit::P2, "P2", p2, algorithm == 1}},
          {{"SampleSize", n}, {"TotalNumberOfVars", predictors + 1}, {"Algorithm", algorithm}},
          "R2Observed",
          [=](Random& random) { return DrawR2(random, n, predictors, p2); }};
}

inline Design P1Design(int n, double pi, double confidence) {
  return {Family::P1,
          "n " + std::to_string(n),
          confidence,
          {{Limit::PiExact, "Pi, exact", pi, true, true},
           {Limit::PiApproximate, "Pi, approximate", pi, false},
           {Limit::PiCrude, "Pi, crude", pi, false}},
          {{"SampleSize", n}},
          "PObserved",
          [=](Random& random) { return DrawProportion(random, n, pi); }};
}

inline Design SEMDesign(int df, int n, double rmsea, double confidence) {
  return {Family::SEM,
          "df " + std::to_string(df) + ", n " + std::to_string(n),
          confidence,
          {{Limit::Rmsea, "RMSEA", rmsea}},
          {{"DegreesOfFreedom", df}, {"SampleSize", n}, {"Groups", 1}},
          "ObservedChiSquare",
          [=](Random& random) { return DrawChiSquare(random, df, (n - 1) * df * rmsea * rmsea); }};
}

inline std::vector<Design> Designs() {
  return {
      T2Design(10, 10, .5, .9),
      T2Design(8, 25, 1.2, .95),
      T2Design(40, 20, 0, .99),
      AV1Design(10, {-.4, 0, .4}, .9),
      AV1Design(6, {0, 0, .5, 1.5}, .95),
      AV1Design(20, {0, .1, .2, .3, .4, .5}, .9),
      RDesign(10, .5, .95, 0),
      RDesign(20, -.3, .9, 0),
      RDesign(30, .8, .95, 0),
      RDesign(10, .5, .95, 1),
      RDesign(10, .5, .95, 2),
      R2Design(30, 2, .3, .9, 1),
      R2Design(50, 5, .5, .95, 1),
      R2Design(40, 3, .1, .9, 1),
      R2Design(30, 2, .3, .9, 0),
      P1Design(20, .3, .95),
      P1Design(50, .1, .9),
      P1Design(100, .5, .95),
      SEMDesign(24, 301, .06, .9),
      SEMDesign(8, 200, .1, .95),
      SEMDesign(50, 500, .03, .9),
  };
}

// --- The simulation.

inline void Count(double truth, const LimitPair& pair, Tally& tally) {
  ++tally.draws;
  if (pair.lower == NumericFailure || pair.upper == NumericFailure) {
    ++tally.missing;
  } else if (truth < pair.lower) {
    ++tally.below;
  } else if (truth > pair.upper) {
    ++tally.above;
  }
}

// One tally for each row of the design; `stream` chooses the random numbers.
inline std::vector<Tally> Simulate(const Design& design, std::uint64_t stream, std::int64_t draws) {
  const FamilyTable& table = TableOf(design.family);
  std::vector<double> memory(table.recordSize / sizeof(double) + 1);
  const RecordView record(table, memory.data());
  for (const Field& field : table.fields) {
    record.Set(field, field.factory);
  }
  for (const auto& [field, value] : design.inputs) {
    record.Set(*table.Find(field), value);
  }
  record.Set(*table.Find("Confidence"), design.confidence);
  const Field& observed = *table.Find(design.observed);
  const FamilyRow& row = RowOf(design.family);
  SilentProcedureObserver observer;
  Random random(stream);
  std::vector<Tally> tallies(design.rows.size());
  for (std::int64_t i = 0; i < draws; ++i) {
    record.Set(observed, design.draw(random));
    const IntervalLimits limits = IntervalOf(row, record, observer).computed.limits;
    for (std::size_t r = 0; r < design.rows.size(); ++r) {
      Count(design.rows[r].truth, PairOf(limits, design.rows[r].limit), tallies[r]);
    }
  }
  return tallies;
}

}  // namespace poweranalysis::coverage
