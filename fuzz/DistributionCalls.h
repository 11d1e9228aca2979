#pragma once

#include <array>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <iterator>
#include <limits>
#include <random>

#include "distributions/Beta.h"
#include "distributions/Binomial.h"
#include "distributions/Correlation.h"
#include "distributions/MultipleR2.h"
#include "distributions/NoncentralChiSquare.h"
#include "distributions/NoncentralF.h"
#include "distributions/NoncentralT.h"
#include "distributions/Normal.h"
#include "distributions/SolveParameter.h"

// Every public distribution function, called with arguments made of arbitrary bits: by the fuzzer,
// and by the driver that measures how long a call takes.
namespace poweranalysis::fuzzing {

// A call: which function, and eight bytes for each argument, of which a count takes the lower four
// and an algorithm the lower two.
struct CallBytes {
  std::uint8_t function = 0;
  std::array<std::uint64_t, 6> arguments{};
};

class Arguments {
 public:
  explicit Arguments(const CallBytes& call) : call_(call) {}

  double Real() {
    const std::uint64_t bits = Next();
    double value = 0;
    std::memcpy(&value, &bits, sizeof value);
    return value;
  }
  std::int32_t Count() { return static_cast<std::int32_t>(Next()); }
  std::int16_t Code() { return static_cast<std::int16_t>(Next()); }

 private:
  std::uint64_t Next() { return call_.arguments[next_++]; }

  const CallBytes& call_;
  std::size_t next_ = 0;
};

// What an argument of a function is: a letter each.
//   p a probability or proportion, r a correlation, x any real, d a noncentrality, n a count,
//   a an algorithm, k a kind of search
struct Function {
  const char* name;
  const char* arguments;
  double (*call)(Arguments& arguments);
};

inline double SolveAnything(Arguments& from) {
  int status = 0;
  int failure = 0;
  const double x = from.Real();
  const std::int32_t df = from.Count();
  const double target = from.Real();
  const double start = from.Real();
  const auto kind = static_cast<SearchKind>(from.Code() & 15);
  return SolveParameter(x, df, target, start, status, failure, kind, from.Count());
}

inline double IntervalOfR2(Arguments& from) {
  double lower = 0;
  double upper = 0;
  double oneSided = 0;
  double pValue = 0;
  std::array<int, 3> failures{};
  const std::int32_t k = from.Count();
  const double r2 = from.Real();
  const std::int32_t n = from.Count();
  const double confidence = from.Real();
  MultipleR2Interval(k, r2, n, confidence, lower, upper, oneSided, failures[0], failures[1],
                     failures[2], from.Code(), pValue);
  return lower + upper + oneSided + pValue;
}

// An argument that the caller of the innermost routines guarantees to be above zero.
inline double Positive(double value) { return value > 0 ? value : 1; }

// The arguments are read in statements of their own: the order in which a call evaluates its own is
// not fixed.
inline constexpr Function Functions[] = {
    {"NormalCdf", "x", [](Arguments& a) { return NormalCdf(a.Real()); }},
    {"NormalQuantile", "p", [](Arguments& a) { return NormalQuantile(a.Real()); }},
    {"LogGamma", "d", [](Arguments& a) { return LogGamma(Positive(a.Real())); }},
    {"BetaCdf", "pdd",
     [](Arguments& a) {
       int failure = 0;
       const double x = a.Real();
       const double shape = Positive(a.Real());
       return BetaCdf(x, shape, Positive(a.Real()), failure);
     }},
    {"NoncentralTCdf", "xnx",
     [](Arguments& a) {
       const double t = a.Real();
       const std::int32_t df = a.Count();
       return NoncentralTCdf(t, df, a.Real());
     }},
    {"NoncentralTCdfBesideLarger", "xnx",
     [](Arguments& a) {
       const double t = a.Real();
       const std::int32_t df = a.Count();
       return NoncentralTCdfBesideLarger(t, df, a.Real());
     }},
    {"NoncentralTDeltaStart", "xnp",
     [](Arguments& a) {
       const double t = a.Real();
       const std::int32_t df = a.Count();
       return NoncentralTDeltaStart(t, df, a.Real());
     }},
    {"NoncentralTQuantile", "xnp",
     [](Arguments& a) {
       int status = 0;
       int failure = 0;
       const double delta = a.Real();
       const std::int32_t df = a.Count();
       return NoncentralTQuantile(delta, df, a.Real(), status, failure);
     }},
    {"CentralTQuantile", "np",
     [](Arguments& a) {
       int status = 0;
       int failure = 0;
       const std::int32_t df = a.Count();
       return CentralTQuantile(df, a.Real(), status, failure);
     }},
    {"SolveParameter", "xnpxkn", SolveAnything},
    {"NoncentralBetaCdf", "pddd",
     [](Arguments& a) {
       int failure = 0;
       const double x = a.Real();
       const double shapeA = a.Real();
       const double shapeB = a.Real();
       return NoncentralBetaCdf(x, shapeA, shapeB, a.Real(), failure);
     }},
    {"NoncentralFCdf", "dddd",
     [](Arguments& a) {
       int failure = 0;
       const double f = a.Real();
       const double df1 = a.Real();
       const double df2 = a.Real();
       return NoncentralFCdf(f, df1, df2, a.Real(), failure);
     }},
    {"NoncentralFCdfInt", "dnnda",
     [](Arguments& a) {
       int failure = 0;
       const double f = a.Real();
       const std::int32_t df1 = a.Count();
       const std::int32_t df2 = a.Count();
       const double delta = a.Real();
       return NoncentralFCdfInt(f, df1, df2, delta, failure, a.Code());
     }},
    {"CentralFQuantile", "ddp",
     [](Arguments& a) {
       int failure = 0;
       const double df1 = a.Real();
       const double df2 = a.Real();
       return CentralFQuantile(df1, df2, a.Real(), failure);
     }},
    {"NoncentralFQuantile", "dddpa",
     [](Arguments& a) {
       int failure = 0;
       const double delta = a.Real();
       const double df1 = a.Real();
       const double df2 = a.Real();
       const double p = a.Real();
       return NoncentralFQuantile(delta, df1, df2, p, failure, a.Code());
     }},
    {"NoncentralFDelta", "dnnpa",
     [](Arguments& a) {
       int failure = 0;
       const double f = a.Real();
       const std::int32_t df1 = a.Count();
       const std::int32_t df2 = a.Count();
       const double p = a.Real();
       return NoncentralFDelta(f, df1, df2, p, failure, a.Code());
     }},
    {"NoncentralChiSquareCdf", "dnd",
     [](Arguments& a) {
       double density = 0;
       int failure = 0;
       const double x = a.Real();
       const std::int32_t df = a.Count();
       return NoncentralChiSquareCdf(x, df, a.Real(), density, failure);
     }},
    {"NoncentralChiSquareQuantile", "dnp",
     [](Arguments& a) {
       int status = 0;
       const double delta = a.Real();
       const std::int32_t df = a.Count();
       return NoncentralChiSquareQuantile(delta, df, a.Real(), status);
     }},
    {"NoncentralChiSquareDelta", "dnp",
     [](Arguments& a) {
       int word = 0;
       const double x = a.Real();
       const std::int32_t df = a.Count();
       return NoncentralChiSquareDelta(x, df, a.Real(), word);
     }},
    {"FisherZBias", "rn",
     [](Arguments& a) {
       const double rho = a.Real();
       return FisherZBias(rho, a.Count());
     }},
    {"FisherZSecondMoment", "rn",
     [](Arguments& a) {
       const double rho = a.Real();
       return FisherZSecondMoment(rho, a.Count());
     }},
    {"CorrelationIntegrand", "prrn",
     [](Arguments& a) {
       const double u = a.Real();
       const double rho = a.Real();
       const double x = a.Real();
       return CorrelationIntegrand(u, rho, x, a.Count());
     }},
    {"CorrelationDensity", "rrn",
     [](Arguments& a) {
       int flag = 0;
       const double x = a.Real();
       const double rho = a.Real();
       return CorrelationDensity(x, rho, a.Count(), flag);
     }},
    {"CorrelationCdf", "rnra",
     [](Arguments& a) {
       const double rho = a.Real();
       const std::int32_t n = a.Count();
       const double r = a.Real();
       return CorrelationCdf(rho, n, r, a.Code());
     }},
    {"CorrelationQuantileStart", "rnp",
     [](Arguments& a) {
       const double rho = a.Real();
       const std::int32_t n = a.Count();
       return CorrelationQuantileStart(rho, n, a.Real());
     }},
    {"CorrelationQuantile", "rnpa",
     [](Arguments& a) {
       const double rho = a.Real();
       const std::int32_t n = a.Count();
       const double p = a.Real();
       return CorrelationQuantile(rho, n, p, a.Code());
     }},
    {"CorrelationRhoForP", "nrpa",
     [](Arguments& a) {
       int failure = 0;
       const std::int32_t n = a.Count();
       const double r = a.Real();
       const double p = a.Real();
       return CorrelationRhoForP(n, r, p, failure, a.Code());
     }},
    {"MultipleR2CdfExact", "ppnn",
     [](Arguments& a) {
       int failure = 0;
       const double x = a.Real();
       const double rho2 = a.Real();
       const std::int32_t n = a.Count();
       return MultipleR2CdfExact(x, rho2, n, a.Count(), failure);
     }},
    {"MultipleR2CdfLee", "ppnn",
     [](Arguments& a) {
       int failure = 0;
       const double x = a.Real();
       const double rho2 = a.Real();
       const std::int32_t n = a.Count();
       return MultipleR2CdfLee(x, rho2, n, a.Count(), failure);
     }},
    {"MultipleR2Cdf", "pnnpa",
     [](Arguments& a) {
       int failure = 0;
       const double rho2 = a.Real();
       const std::int32_t n = a.Count();
       const std::int32_t k = a.Count();
       const double x = a.Real();
       return MultipleR2Cdf(rho2, n, k, x, a.Code(), failure);
     }},
    {"MultipleR2Quantile", "pnnpa",
     [](Arguments& a) {
       int failure = 0;
       const double rho2 = a.Real();
       const std::int32_t n = a.Count();
       const std::int32_t k = a.Count();
       const double p = a.Real();
       return MultipleR2Quantile(rho2, n, k, p, failure, a.Code());
     }},
    {"MultipleR2CriticalValue", "nnppaa",
     [](Arguments& a) {
       int failure = 0;
       const std::int32_t n = a.Count();
       const std::int32_t k = a.Count();
       const double alpha = a.Real();
       const double rho2 = a.Real();
       const std::int16_t algorithm = a.Code();
       const std::int16_t form = a.Code();
       return MultipleR2CriticalValue(n, k, alpha, rho2, algorithm, form, failure,
                                      static_cast<std::int16_t>(form >> 8));
     }},
    {"MultipleR2RhoForP", "pnnppa",
     [](Arguments& a) {
       int failure = 0;
       const double start = a.Real();
       const std::int32_t n = a.Count();
       const std::int32_t k = a.Count();
       const double r2 = a.Real();
       const double target = a.Real();
       return MultipleR2RhoForP(start, n, k, r2, target, failure, a.Code());
     }},
    {"MultipleR2Interval", "npnpa", IntervalOfR2},
    {"BinomialCdf", "dpd",
     [](Arguments& a) {
       int failure = 0;
       const double n = a.Real();
       const double pi = a.Real();
       return BinomialCdf(n, pi, a.Real(), failure);
     }},
    {"BinomialQuantile", "pdpx",
     [](Arguments& a) {
       int failure = 0;
       double actual = 0;
       const double p = a.Real();
       const double n = a.Real();
       const double pi = a.Real();
       return BinomialQuantile(p, n, pi, actual, failure, a.Real());
     }},
    {"BinomialProportionForP", "dpd",
     [](Arguments& a) {
       int failure = 0;
       const double n = a.Real();
       const double p = a.Real();
       return BinomialProportionForP(n, p, a.Real(), failure);
     }},
    {"RoundProportionToCount", "pd",
     [](Arguments& a) {
       const double proportion = a.Real();
       return RoundProportionToCount(proportion, a.Real()).proportion;
     }},
};
inline constexpr std::size_t FunctionCount = std::size(Functions);

inline const Function& FunctionOf(const CallBytes& call) {
  return Functions[call.function % FunctionCount];
}

inline double Call(const CallBytes& call) {
  Arguments arguments(call);
  return FunctionOf(call).call(arguments);
}

// --- Arguments that a function may meet: bits at random seldom are a probability.

class Sampler {
 public:
  explicit Sampler(std::uint64_t seed) : random_(seed) {}

  CallBytes Sample() {
    CallBytes call;
    call.function = static_cast<std::uint8_t>(random_() % FunctionCount);
    const char* letters = FunctionOf(call).arguments;
    for (std::size_t i = 0; letters[i] != '\0'; ++i) {
      call.arguments[i] = Argument(letters[i]);
    }
    return call;
  }

  // Another value for one argument of the call.
  void Change(CallBytes& call) {
    const std::size_t count = std::strlen(FunctionOf(call).arguments);
    const std::size_t i = random_() % count;
    call.arguments[i] = Argument(FunctionOf(call).arguments[i]);
  }

 private:
  std::uint64_t Argument(char letter) {
    if (random_() % 64 == 0) {
      return random_();
    }
    switch (letter) {
      case 'n':
        return CountBits();
      case 'a':
        return random_() % 3 + (random_() % 2 << 8);
      case 'k':
        return random_() % 10;
      case 'p':
        return Bits(Probability());
      case 'r':
        return Bits(random_() % 2 == 0 ? Probability() : -Probability());
      case 'd':
        return Bits(Magnitude());
      default:
        return Bits(random_() % 2 == 0 ? Magnitude() : -Magnitude());
    }
  }

  static std::uint64_t Bits(double value) {
    std::uint64_t bits = 0;
    std::memcpy(&bits, &value, sizeof bits);
    return bits;
  }

  double Uniform() { return static_cast<double>(random_() >> 11) * 0x1p-53; }

  // From 2^-low to 2^high, all sizes alike.
  double PowerOfTwo(double low, double high) { return std::exp2(low + (high - low) * Uniform()); }

  std::uint64_t CountBits() {
    constexpr std::array<std::int32_t, 8> kEdges = {0,
                                                    -1,
                                                    1,
                                                    2,
                                                    3,
                                                    4,
                                                    std::numeric_limits<std::int32_t>::max(),
                                                    std::numeric_limits<std::int32_t>::min()};
    if (random_() % 8 == 0) {
      return static_cast<std::uint64_t>(kEdges[random_() % kEdges.size()]);
    }
    return static_cast<std::uint64_t>(PowerOfTwo(0, random_() % 8 == 0 ? 31 : 12));
  }

  double Probability() {
    switch (random_() % 8) {
      case 0:
        return PowerOfTwo(-120, 0);
      case 1:
        return 1 - PowerOfTwo(-53, 0);
      case 2: {
        constexpr std::array<double, 8> kEdges = {0, 1, .5, 1e-35, 1.1e-35, 5e-324, 1.5, 1e300};
        return kEdges[random_() % kEdges.size()];
      }
      default:
        return Uniform();
    }
  }

  double Magnitude() {
    switch (random_() % 8) {
      case 0:
        return PowerOfTwo(-1070, 1024);
      case 1:
        return std::floor(PowerOfTwo(0, 31));
      case 2: {
        constexpr double kInfinity = std::numeric_limits<double>::infinity();
        constexpr std::array<double, 8> kEdges = {0,
                                                  1,
                                                  2,
                                                  kInfinity,
                                                  std::numeric_limits<double>::quiet_NaN(),
                                                  5e-324,
                                                  std::numeric_limits<double>::max(),
                                                  1e158};
        return kEdges[random_() % kEdges.size()];
      }
      case 3:
        return PowerOfTwo(-30, 60);
      default:
        return PowerOfTwo(-7, 14);
    }
  }

  std::mt19937_64 random_;
};

}  // namespace poweranalysis::fuzzing
