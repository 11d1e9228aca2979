#include <cmath>
#include <functional>
#include <map>
#include <set>
#include <vector>

#include "intervals/Correlations.h"
#include "intervals/IntervalsTest.h"
#include "intervals/Means.h"
#include "intervals/ModelFit.h"
#include "intervals/OneProportion.h"
#include "procedures/CasesAndTables.h"

namespace poweranalysis {
namespace {

constexpr std::int64_t kSizeLimit = 150000;

template <class Params>
IntervalLimits IntervalOf(const Params& record) {
  SilentProcedureObserver observer;
  if constexpr (std::is_same_v<Params, T1Params>) {
    return OneMeanInterval(record, observer);
  } else if constexpr (std::is_same_v<Params, T2Params>) {
    return TwoMeansInterval(record, observer);
  } else if constexpr (std::is_same_v<Params, T3Params>) {
    return PairedMeansInterval(record, observer);
  } else if constexpr (std::is_same_v<Params, PCParams>) {
    return ContrastInterval(record, observer);
  } else if constexpr (std::is_same_v<Params, AV1Params>) {
    return OneWayInterval(record, kSizeLimit, observer);
  } else if constexpr (std::is_same_v<Params, AV2Params>) {
    return TwoWayInterval(record, kSizeLimit, observer);
  } else if constexpr (std::is_same_v<Params, RParams>) {
    return CorrelationInterval(record, observer);
  } else if constexpr (std::is_same_v<Params, R2Params>) {
    return SquaredCorrelationInterval(record, observer);
  } else if constexpr (std::is_same_v<Params, P1Params>) {
    return OneProportionInterval(record);
  } else {
    return ModelFitInterval(record);
  }
}

using Inputs = std::map<std::string, double>;

// The interval of a record with these inputs, built-in values elsewhere.
template <class Params>
IntervalLimits IntervalFrom(Family family, const Inputs& inputs) {
  auto record = BuiltIn<Params>(family);
  const RecordView view(TableOf(family), &record);
  for (const auto& [field, value] : inputs) {
    view.Set(*view.table().Find(field), value);
  }
  return IntervalOf(record);
}

IntervalLimits IntervalOfFamily(const std::string& code, const Inputs& inputs) {
  static const std::map<std::string, std::function<IntervalLimits(const Inputs&)>> kFamilies = {
      {"T1", [](const Inputs& in) { return IntervalFrom<T1Params>(Family::T1, in); }},
      {"T2", [](const Inputs& in) { return IntervalFrom<T2Params>(Family::T2, in); }},
      {"T3", [](const Inputs& in) { return IntervalFrom<T3Params>(Family::T3, in); }},
      {"PC", [](const Inputs& in) { return IntervalFrom<PCParams>(Family::PC, in); }},
      {"AV1", [](const Inputs& in) { return IntervalFrom<AV1Params>(Family::AV1, in); }},
      {"AV2", [](const Inputs& in) { return IntervalFrom<AV2Params>(Family::AV2, in); }},
      {"R", [](const Inputs& in) { return IntervalFrom<RParams>(Family::R, in); }},
      {"R2", [](const Inputs& in) { return IntervalFrom<R2Params>(Family::R2, in); }},
      {"P1", [](const Inputs& in) { return IntervalFrom<P1Params>(Family::P1, in); }},
      {"SEM", [](const Inputs& in) { return IntervalFrom<SEMParams>(Family::SEM, in); }},
  };
  return kFamilies.at(code)(inputs);
}

LimitPair LimitsNamed(const std::string& name, const IntervalLimits& limits) {
  static const std::map<std::string, Limit> kNames = {
      {"Delta", Limit::Delta},     {"Es", Limit::Es},
      {"RMSSE", Limit::Rmsse},     {"Power", Limit::Power},
      {"N", Limit::RequiredN},     {"Rho", Limit::Rho},
      {"P2", Limit::P2},           {"P2Bound", Limit::P2Bound},
      {"PiExact", Limit::PiExact}, {"PiApproximate", Limit::PiApproximate},
      {"PiCrude", Limit::PiCrude}, {"RMSEA", Limit::Rmsea},
      {"Gamma1", Limit::Gamma1},   {"Gamma2", Limit::Gamma2},
  };
  return name == "PValue" ? LimitPair{limits.pValue, NumericFailure}
                          : PairOf(limits, kNames.at(name));
}

std::vector<std::string> Split(const std::string& text, char at) {
  std::vector<std::string> parts;
  std::istringstream stream(text);
  for (std::string part; std::getline(stream, part, at);) {
    parts.push_back(part);
  }
  return parts;
}

Inputs InputsOf(const std::string& text) {
  Inputs inputs;
  for (const std::string& part : Split(text, ';')) {
    const std::size_t equals = part.find('=');
    inputs[part.substr(0, equals)] = std::stod(part.substr(equals + 1));
  }
  return inputs;
}

// '-' is a limit that is not there, '*' one that is not compared.
void ExpectLimit(double value, const std::string& expected, double tolerance) {
  if (expected == "-") {
    EXPECT_EQ(value, NumericFailure);
  } else if (expected != "*") {
    EXPECT_NEAR(value, std::stod(expected), tolerance);
  }
}

TEST(TruthOfIntervals, EveryLimitAgreesWithAnIndependentInversion) {
  std::ifstream file(TestDataDir() + "/limits.csv");
  std::map<std::string, std::set<std::string>> cases;
  std::string line;
  std::getline(file, line);
  std::getline(file, line);
  IntervalLimits limits;
  std::string computed;
  while (std::getline(file, line)) {
    SCOPED_TRACE(line);
    const std::vector<std::string> cells = Split(line, ',');
    ASSERT_EQ(cells.size(), 7u);
    // The rows of one record follow each other.
    if (cells[0] + cells[1] != computed) {
      limits = IntervalOfFamily(cells[0], InputsOf(cells[1]));
      computed = cells[0] + cells[1];
    }
    cases[cells[0]].insert(cells[1]);
    const LimitPair pair = LimitsNamed(cells[2], limits);
    ExpectLimit(pair.lower, cells[3], std::stod(cells[5]));
    ExpectLimit(pair.upper, cells[4], std::stod(cells[6]));
  }
  EXPECT_EQ(cases.size(), 10u);
  for (const auto& [family, records] : cases) {
    EXPECT_GE(records.size(), 40u) << family;
  }
}

TEST(TruthOfIntervals, PublishedLimitsAreReproduced) {
  // The names that the cases have for limits.
  struct Name {
    const char* key;
    const char* limit;
    bool isUpper;
  };
  static const std::map<std::string, std::vector<Name>> kNames = {
      {"T2",
       {{"delta_lower", "Delta", false},
        {"delta_upper", "Delta", true},
        {"Es_lower", "Es", false},
        {"Es_upper", "Es", true}}},
      {"PC", {{"Es_lower", "Es", false}, {"Es_upper", "Es", true}}},
      {"AV1", {{"delta_lower", "Delta", false}, {"delta_upper", "Delta", true}}},
      {"R", {{"lower", "Rho", false}, {"upper", "Rho", true}}},
      {"R2", {{"lower", "P2", false}, {"upper", "P2", true}}},
      {"P1",
       {{"exact_lower", "PiExact", false},
        {"exact_upper", "PiExact", true},
        {"approx_lower", "PiApproximate", false},
        {"approx_upper", "PiApproximate", true}}},
      {"SEM", {{"RMSEA_lower", "RMSEA", false}, {"RMSEA_upper", "RMSEA", true}}}};
  int compared = 0;
  for (const nlohmann::json& published : PublishedCases("published_intervals.json")) {
    Inputs inputs;
    for (const auto& [field, value] : published.at("inputs").items()) {
      inputs[field] = value.get<double>();
    }
    const std::string family = published.at("family");
    const IntervalLimits limits = IntervalOfFamily(family, inputs);
    for (const Name& name : kNames.at(family)) {
      const LimitPair pair = LimitsNamed(name.limit, limits);
      compared += published.at("expected").contains(name.key) ? 1 : 0;
      ExpectAsPublished(published, name.key, name.isUpper ? pair.upper : pair.lower);
    }
  }
  EXPECT_EQ(compared, 20);
}

}  // namespace
}  // namespace poweranalysis
