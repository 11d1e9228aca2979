#include <benchmark/benchmark.h>

#include <cstddef>
#include <memory>
#include <string>
#include <vector>

#include "families/Families.h"

// Times of every family at the built-in values of its fields: one power, one required size, and
// each of its charts by 100 points over the built-in range of its axis, sizes and degrees of
// freedom by ones. The files beside this one time what the peers are asked for.
namespace poweranalysis {
namespace {

constexpr int kPoints = 100;

// What a family's charts go along beside its size, alpha and the goal, and the fields that hold the
// range of it.
struct Axis {
  const char* name;
  Varied varied;
  const char* start;
  const char* end;
};

struct Subject {
  const char* name;
  Family family;
  std::vector<Axis> axes;
  const char* choice = nullptr;  // a field that is not as built in
  double value = 0;
};

class OwnRecord {
 public:
  explicit OwnRecord(const Subject& subject)
      : table_(TableOf(subject.family)), bytes_(table_.recordSize / sizeof(double) + 1) {
    for (const Field& field : table_.fields) {
      view().Set(field, field.factory);
    }
    if (subject.choice != nullptr) {
      view().Set(*table_.Find(subject.choice), subject.value);
    }
  }
  RecordView view() { return {table_, bytes_.data()}; }
  double Get(const char* field) { return view().Get(*table_.Find(field)); }

 private:
  const FamilyTable& table_;
  std::vector<double> bytes_;
};

std::unique_ptr<FamilySession> Session(const Subject& subject, Question question) {
  OwnRecord record(subject);
  std::unique_ptr<FamilySession> session = RowOf(subject.family).open(question);
  session->Take(record.view());
  return session;
}

// What a session remembers is part of the first call.
void Call(benchmark::State& state, const Subject& subject, Question question) {
  SilentProcedureObserver observer;
  for (auto _ : state) {
    benchmark::DoNotOptimize(Session(subject, question)->Value(0, observer));
  }
}

void Chart(benchmark::State& state,
           const Subject& subject,
           Question question,
           const Varied& varied,
           double low,
           double high) {
  SilentProcedureObserver observer;
  for (auto _ : state) {
    const std::unique_ptr<FamilySession> session = Session(subject, question);
    const Input input = session->Find(varied);
    for (int i = 0; i < kPoints; ++i) {
      session->Vary(input, low + (high - low) * i / (kPoints - 1));
      benchmark::DoNotOptimize(session->Value(0, observer));
    }
  }
}

void RegisterChart(const Subject& subject,
                   const std::string& name,
                   Question question,
                   const Varied& varied,
                   double low,
                   double high) {
  benchmark::RegisterBenchmark(
      (std::string(subject.name) + "/" + name).c_str(),
      [=](benchmark::State& state) { Chart(state, subject, question, varied, low, high); });
}

void Register(const Subject& subject) {
  OwnRecord record(subject);
  const std::string prefix = std::string(subject.name) + "/";
  const bool isDf = RowOf(subject.family).sizes.rules[0].counts == Counts::Df;
  const std::string size = isDf ? "Df" : "N";
  const auto call = [&](const std::string& name, Question question) {
    benchmark::RegisterBenchmark(
        (prefix + name).c_str(),
        [subject, question](benchmark::State& state) { Call(state, subject, question); });
  };
  const auto charts = [&](const std::string& name, const Varied& varied, double low, double high) {
    RegisterChart(subject, "PowerVs" + name, Question::Power, varied, low, high);
    RegisterChart(subject, size + "Vs" + name, Question::RequiredSize, varied, low, high);
  };
  call("Power", Question::Power);
  call("Required" + size, Question::RequiredSize);
  const double first = record.Get(isDf ? "DfStart" : "NStart");
  RegisterChart(subject, "PowerVs" + size, Question::Power, AlongSizes, first, first + kPoints - 1);
  for (const Axis& axis : subject.axes) {
    charts(axis.name, axis.varied, record.Get(axis.start), record.Get(axis.end));
  }
  charts("Alpha", Along("Alpha"), record.Get("AlphaStart"), record.Get("AlphaEnd"));
  RegisterChart(subject, size + "VsPower", Question::RequiredSize, Along("PowerGoal"),
                record.Get("PowerStart"), record.Get("PowerEnd"));
}

const Axis kEs = {"Es", AlongEffect, "EsStart", "EsEnd"};
const Axis kLambda2 = {"Lambda2", Along("Lambda2"), "Lambda2Start", "Lambda2End"};

Axis OfField(const char* name, const char* field, const char* start, const char* end) {
  return {name, Along(field), start, end};
}

// The exact tests of r and of R2 are not the built-in ones.
const std::vector<Subject>& Subjects() {
  static const std::vector<Subject> subjects = {
      {"T1", Family::T1, {kEs}},
      {"T2", Family::T2, {kEs}},
      {"T3", Family::T3, {kEs}},
      {"PC", Family::PC, {OfField("Es", "StandardizedEffect", "EsStart", "EsEnd")}},
      {"AV1", Family::AV1, {OfField("RMSSE", "RMSSE", "StartRMSSE", "EndRMSSE")}},
      {"AV2", Family::AV2, {OfField("RMSSE", "RMSSE_Row", "StartRMSSE", "EndRMSSE")}},
      {"V1", Family::V1, {OfField("Variance", "PopulationVariance", "VarStart", "VarEnd")}},
      {"V2", Family::V2, {{"Ratio", AlongEffect, "RatioStart", "RatioEnd"}}},
      {"R", Family::R, {OfField("Rho", "Rho", "RhoStart", "RhoEnd")}},
      {"R-exact", Family::R, {OfField("Rho", "Rho", "RhoStart", "RhoEnd")}, "Algorithm", 0},
      {"Z2R", Family::Z2R, {OfField("Rho", "Rho1", "RhoStart", "RhoEnd")}},
      {"R2", Family::R2, {OfField("P2", "PopulationR2", "R2Start", "R2End")}},
      {"R2-exact", Family::R2, {OfField("P2", "PopulationR2", "R2Start", "R2End")}, "Algorithm", 1},
      {"SEM",
       Family::SEM,
       {OfField("RMSEA", "R", "RStart", "REnd"),
        OfField("Df", "DegreesOfFreedom", "DfStart", "DfEnd")}},
      {"P1", Family::P1, {OfField("Pi", "Pi", "PiStart", "PiEnd")}},
      {"P2", Family::P2, {OfField("Pi1", "Pi1", "PiStart", "PiEnd")}},
      {"QMAC",
       Family::QMAC,
       {OfField("Delta", "Delta", "DeltaStart", "DeltaEnd"),
        OfField("Eta", "Eta", "EtaStart", "EtaEnd")}},
      {"SA1", Family::SA1, {OfField("Pi2", "Pi2", "Pi2Start", "Pi2End")}},
      {"SA2", Family::SA2, {kLambda2}},
      {"SA3", Family::SA3, {kLambda2}},
  };
  return subjects;
}

const bool kRegistered = [] {
  for (const Subject& subject : Subjects()) {
    Register(subject);
  }
  return true;
}();

}  // namespace
}  // namespace poweranalysis
