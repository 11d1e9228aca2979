#pragma once

#include <algorithm>
#include <cmath>
#include <limits>

namespace poweranalysis {

// What an integrand gives: its value, and a nonzero flag when it could not be evaluated.
struct IntegrandValue {
  double value = 0.0;
  int flag = 0;
};

namespace qags {

inline constexpr double Epsilon = 2.220446049250313e-16;
inline constexpr double SmallestNormal = 2.2250738585072014e-308;
inline constexpr double Largest = 1.7976931348623157e+308;

// Positive nodes of the 21-point Kronrod rule, outermost first, without the centre. The odd
// positions (counting from 0) are the nodes of the 10-point Gauss rule.
inline constexpr int Pairs = 10;
inline constexpr double Nodes[Pairs] = {
    0.995657163025808080735527280689003, 0.973906528517171720077964012084452,
    0.930157491355708226001207180059508, 0.865063366688984510732096688423493,
    0.780817726586416897063717578345042, 0.679409568299024406234327365114874,
    0.562757134668604683339000099272694, 0.433395394129247190799265943165784,
    0.294392862701460198131126603103866, 0.148874338981631210884826001129720};
inline constexpr double KronrodWeights[Pairs] = {
    0.011694638867371874278064396062192, 0.032558162307964727478818972459390,
    0.054755896574351996031381300244580, 0.075039674810919952767043140916190,
    0.093125454583697605535065465083366, 0.109387158802297641899210590325805,
    0.123491976262065851077958109585166, 0.134709217311473325928054001771707,
    0.142775938577060080797094273138717, 0.147739104901338491374841515972068};
inline constexpr double CentreWeight = 0.149445554002916905664936468389821;
inline constexpr double GaussWeights[Pairs / 2] = {
    0.066671344308688137593568809893332, 0.149451349150580593145863396957658,
    0.219086362515982043995534934228163, 0.269266719309996355091226921569469,
    0.295524224714752870173815619188769};

// One application of the rule.
struct RuleEstimate {
  double result = 0.0;  // of the Kronrod rule
  double abserr = 0.0;  // estimated error
  double resabs = 0.0;  // integral of |f|
  double resasc = 0.0;  // integral of |f - mean|
  int flag = 0;         // of the integrand; the rest means nothing then
};

// The published error estimate from the difference of the two rules: resasc (200 |d| / resasc)^1.5,
// at most resasc, and not below what rounding leaves.
//
// Below a ratio of 1e-4 the power is less than a hundredth of its base. Where that bound is under
// the rounding floor already the floor is the result, and the power is not taken.
inline double RuleError(double difference, double resabs, double resasc) {
  const bool hasFloor = resabs > SmallestNormal / (50.0 * Epsilon);
  const double floor = hasFloor ? Epsilon * 50.0 * resabs : 0.0;
  double error = std::fabs(difference);
  if (resasc != 0.0 && error != 0.0) {
    const double ratio = 200.0 * error / resasc;
    if (ratio < 1e-4 && resasc * ratio * 0.011 <= floor) {
      return floor;
    }
    error = resasc * std::min(1.0, std::pow(ratio, 1.5));
  }
  return hasFloor ? std::max(floor, error) : error;
}

// The values of an integrand at the nodes of one interval.
struct NodeValues {
  double centre = 0.0;
  double below[Pairs] = {};
  double above[Pairs] = {};
};

template <class Integrand>
int Sample(const Integrand& f, double centre, double half, NodeValues& values) {
  const IntegrandValue middle = f(centre);
  values.centre = middle.value;
  int flag = middle.flag;
  for (int j = 0; j < Pairs && flag == 0; ++j) {
    const double offset = half * Nodes[j];
    const IntegrandValue below = f(centre - offset);
    if (below.flag != 0) {
      return below.flag;
    }
    const IntegrandValue above = f(centre + offset);
    flag = above.flag;
    values.below[j] = below.value;
    values.above[j] = above.value;
  }
  return flag;
}

// Sums the values in the order of the published rule: the Gauss nodes first, then the rest.
inline RuleEstimate Weigh(const NodeValues& values, double half) {
  double gauss = 0.0;
  double kronrod = CentreWeight * values.centre;
  double resabs = std::fabs(kronrod);
  const auto add = [&](int j) {
    const double sum = values.below[j] + values.above[j];
    kronrod += KronrodWeights[j] * sum;
    resabs += KronrodWeights[j] * (std::fabs(values.below[j]) + std::fabs(values.above[j]));
    return sum;
  };
  for (int j = 1; j < Pairs; j += 2) {
    gauss += GaussWeights[j / 2] * add(j);
  }
  for (int j = 0; j < Pairs; j += 2) {
    add(j);
  }
  const double mean = kronrod * 0.5;
  double resasc = CentreWeight * std::fabs(values.centre - mean);
  for (int j = 0; j < Pairs; ++j) {
    resasc +=
        KronrodWeights[j] * (std::fabs(values.below[j] - mean) + std::fabs(values.above[j] - mean));
  }
  resabs *= std::fabs(half);
  resasc *= std::fabs(half);
  return {kronrod * half, RuleError((kronrod - gauss) * half, resabs, resasc), resabs, resasc, 0};
}

// The 21-point Gauss-Kronrod rule on one interval.
template <class Integrand>
RuleEstimate GaussKronrod21(const Integrand& f, double lower, double upper) {
  const double centre = 0.5 * (lower + upper);
  const double half = 0.5 * (upper - lower);
  NodeValues values;
  const int flag = Sample(f, centre, half, values);
  if (flag != 0) {
    return {0.0, 0.0, 0.0, 0.0, flag};
  }
  return Weigh(values, half);
}

}  // namespace qags

}  // namespace poweranalysis
