#include <pybind11/numpy.h>
#include <pybind11/pybind11.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <limits>
#include <optional>
#include <string>
#include <tuple>
#include <type_traits>
#include <vector>

#include "Bindings.h"
#include "PythonHost.h"
#include "distributions/AdaptiveIntegrate.h"
#include "distributions/Beta.h"
#include "distributions/Binomial.h"
#include "distributions/Common.h"
#include "distributions/Correlation.h"
#include "distributions/MultipleR2.h"
#include "distributions/NoncentralChiSquare.h"
#include "distributions/NoncentralF.h"
#include "distributions/NoncentralT.h"
#include "distributions/Normal.h"
#include "distributions/SearchObserver.h"
#include "distributions/SolveParameter.h"
#include "procedures/TTests.h"

// The numeric functions over NumPy arrays. One table, one row per function; names of arguments and
// docstrings come from the headers.
namespace poweranalysis {

namespace py = pybind11;

namespace {

constexpr std::size_t kMostArguments = 8;
constexpr std::size_t kMostResults = 7;

// --- What a function takes and gives, read off its type.

// Bounds of a whole-number argument; none for a real one.
struct ArgumentType {
  bool whole = false;
  double lower = 0;
  double upper = 0;
};

// What a function reports beside its value, in its own type: a word or a number.
struct Report {
  int word = 0;
  double number = 0;
};

struct Call {
  const double* arguments;
  SearchObserver* observer;
  std::array<Report, kMostResults> results{};
  std::size_t next = 0;
  std::size_t nextResult = 0;
};

// One argument of a call: the next of its kind.
template <class T>
struct Taken {
  explicit Taken(Call& call) : value(static_cast<T>(call.arguments[call.next++])) {}
  operator T() const { return value; }
  T value;
};
template <class T>
requires std::is_enum_v<T>
struct Taken<T> {
  explicit Taken(Call& call)
      : value(static_cast<T>(static_cast<std::int32_t>(call.arguments[call.next++]))) {}
  operator T() const { return value; }
  T value;
};
template <>
struct Taken<int&> {
  explicit Taken(Call& call) : value(&call.results[call.nextResult++].word) {}
  operator int&() const { return *value; }
  int* value;
};
template <>
struct Taken<double&> {
  explicit Taken(Call& call) : value(&call.results[call.nextResult++].number) {}
  operator double&() const { return *value; }
  double* value;
};
// Whoever watches the call takes no argument.
template <>
struct Taken<SearchObserver&> {
  explicit Taken(Call& call) : value(call.observer) {}
  operator SearchObserver&() const { return *value; }
  SearchObserver* value;
};

template <class T>
constexpr ArgumentType TypeOf() {
  if constexpr (std::is_same_v<T, double>) {
    return {};
  } else if constexpr (std::is_enum_v<T>) {
    return TypeOf<std::underlying_type_t<T>>();
  } else {
    return {true, static_cast<double>(std::numeric_limits<T>::min()),
            static_cast<double>(std::numeric_limits<T>::max())};
  }
}

// The types of what a function takes, and whether what it reports beside its value are words.
struct Signature {
  std::vector<ArgumentType> arguments;
  std::vector<bool> words;
};

template <class T>
void AddType(Signature& signature) {
  if constexpr (std::is_same_v<T, int&> || std::is_same_v<T, double&>) {
    signature.words.push_back(std::is_same_v<T, int&>);
  } else if constexpr (!std::is_same_v<T, SearchObserver&>) {
    signature.arguments.push_back(TypeOf<T>());
  }
}

// What a function gives as its value.
enum class ValueKind { Number, Truth, None };

template <class R>
constexpr ValueKind KindOf() {
  return std::is_void_v<R>         ? ValueKind::None
         : std::is_same_v<R, bool> ? ValueKind::Truth
                                   : ValueKind::Number;
}

using Evaluate = double (*)(Call& call);

template <auto Function>
struct Adapter;
template <class R, class... A, R (*Function)(A...)>
struct Adapter<Function> {
  static double Evaluate(Call& call) {
    // Braces: the arguments are taken from left to right.
    std::tuple<Taken<A>...> taken{Taken<A>(call)...};
    return std::apply(
        [](const Taken<A>&... arguments) {
          if constexpr (std::is_void_v<R>) {
            Function(static_cast<A>(arguments)...);
            return 0.0;
          } else {
            return static_cast<double>(Function(static_cast<A>(arguments)...));
          }
        },
        taken);
  }
  static Signature Types() {
    Signature signature;
    (AddType<A>(signature), ...);
    return signature;
  }
  static constexpr ValueKind kKind = KindOf<R>();
};

// --- Declarations, as the headers have them.

struct Declaration {
  const char* name;
  const char* arguments;  // separated by blanks
  const char* results;
  const char* doc;
};

constexpr Declaration kDeclarations[] = {
#define DECLARATION(name, arguments, results, doc) {#name, arguments, results, doc},
#include "Declarations.inc"
#undef DECLARATION
};

std::vector<std::string> Words(const std::string& text) {
  std::vector<std::string> words;
  std::size_t start = 0;
  while (start < text.size()) {
    const std::size_t end = std::min(text.find(' ', start), text.size());
    words.push_back(text.substr(start, end - start));
    start = end + 1;
  }
  return words;
}

const Declaration& DeclarationOf(const char* name, std::size_t arguments) {
  for (const Declaration& declaration : kDeclarations) {
    if (declaration.name == std::string(name) && Words(declaration.arguments).size() == arguments) {
      return declaration;
    }
  }
  throw std::logic_error(std::string("no declaration of ") + name);
}

// --- The table.

// Guards of what a function leaves to its caller. NaN passes: it comes out again.
using Domain = bool (*)(const double* arguments);

template <int Index>
bool DfAt(const double* arguments) {
  return arguments[Index] >= 1;
}
template <int Index>
bool PairsAt(const double* arguments) {
  return arguments[Index] >= 2;
}
// A correlation other than -1 and 1, or not a number.
template <int Index>
bool InsideAt(const double* arguments) {
  return !(std::fabs(arguments[Index]) >= 1);
}
bool IntegrandDomain(const double* arguments) {
  const double u = arguments[0];
  return !(u <= 0) && !(u >= 1) && InsideAt<1>(arguments) && InsideAt<2>(arguments) &&
         arguments[3] >= 3;
}
bool DensityDomain(const double* arguments) {
  return InsideAt<0>(arguments) && InsideAt<1>(arguments) && arguments[2] >= 3;
}
bool CountDomain(const double* arguments) {
  return !(arguments[0] < 0) && !(arguments[0] > 1) && !(arguments[1] < 1);
}
bool PositiveX(const double* arguments) { return !(arguments[0] <= 0); }
bool PositiveShapesBehindX(const double* arguments) {
  return !(arguments[1] <= 0) && !(arguments[2] <= 0);
}
bool PositiveShapesBeforeX(const double* arguments) {
  const double x = arguments[2];
  return !(arguments[0] <= 0) && !(arguments[1] <= 0) && !(x < 0) && !(x > 1);
}

// The power alone: a true null hypothesis is a failure like any other.
double PowerAlone(double crit, std::int32_t df, double delta, std::int16_t form) {
  Refusal refusal;
  return TTestPower(crit, df, delta, form, refusal);
}

// The fields of the struct that the header declares, one by one.
void RoundedCount(double proportion, double n, double& count, double& rounded) {
  const CountedProportion counted = RoundProportionToCount(proportion, n);
  count = counted.count;
  rounded = counted.proportion;
}

// Of several functions with one name, the one with these types; the ones that can be cancelled
// where there are such.
using BetaFunction = double (*)(double, double, double, int&);
using FractionFunction = double (*)(double, double, double);
using ParameterSearch =
    double (*)(double, std::int32_t, double, double, int&, int&, SearchKind, std::int32_t);
using RhoSearch = double (*)(std::int32_t, double, double, int&, std::int16_t, SearchObserver&);
using SeriesFunction =
    double (*)(double, double, std::int32_t, std::int32_t, int&, SearchObserver&);
using R2Function =
    double (*)(double, std::int32_t, std::int32_t, double, std::int16_t, int&, SearchObserver&);
using R2Inverse =
    double (*)(double, std::int32_t, std::int32_t, double, int&, std::int16_t, SearchObserver&);
using R2Critical = double (*)(std::int32_t,
                              std::int32_t,
                              double,
                              double,
                              std::int16_t,
                              std::int16_t,
                              int&,
                              std::int16_t,
                              SearchObserver&);
using R2Search = double (*)(
    double, std::int32_t, std::int32_t, double, double, int&, std::int16_t, SearchObserver&);
using R2Limits = void (*)(std::int32_t,
                          double,
                          std::int32_t,
                          double,
                          double&,
                          double&,
                          double&,
                          int&,
                          int&,
                          int&,
                          std::int16_t,
                          double&,
                          SearchObserver&);

struct Row {
  const char* name;
  Evaluate evaluate;
  Signature (*types)();
  ValueKind kind;
  Domain domain;
};

template <auto Function>
constexpr Row RowOf(const char* name, Domain domain = nullptr) {
  return {name, Adapter<Function>::Evaluate, Adapter<Function>::Types, Adapter<Function>::kKind,
          domain};
}

// An additional function is an additional row.
constexpr Row kRows[] = {
    RowOf<NormalCdf>("NormalCdf"),
    RowOf<NormalQuantile>("NormalQuantile"),
    RowOf<LogGamma>("LogGamma", PositiveX),
    RowOf<BetaFunction{BetaCdf}>("BetaCdf", PositiveShapesBehindX),
    RowOf<FractionFunction{BetaContinuedFraction}>("BetaContinuedFraction", PositiveShapesBeforeX),
    RowOf<AlmostEqual>("AlmostEqual"),
    RowOf<ParameterSearch{SolveParameter}>("SolveParameter", DfAt<1>),
    RowOf<SolveResidual>("SolveResidual", DfAt<2>),
    RowOf<NoncentralTCdf>("NoncentralTCdf", DfAt<1>),
    RowOf<OwenTIntegrand>("OwenTIntegrand"),
    RowOf<NoncentralTDeltaStart>("NoncentralTDeltaStart", DfAt<1>),
    RowOf<NoncentralTQuantile>("NoncentralTQuantile", DfAt<1>),
    RowOf<CentralTQuantile>("CentralTQuantile", DfAt<0>),
    RowOf<NoncentralBetaCdf>("NoncentralBetaCdf"),
    RowOf<NoncentralFCdf>("NoncentralFCdf"),
    RowOf<NoncentralFCdfInt>("NoncentralFCdfInt"),
    RowOf<CentralFQuantile>("CentralFQuantile"),
    RowOf<NoncentralFQuantile>("NoncentralFQuantile"),
    RowOf<NoncentralFDelta>("NoncentralFDelta"),
    RowOf<NoncentralChiSquareCdf>("NoncentralChiSquareCdf"),
    RowOf<NoncentralChiSquareQuantile>("NoncentralChiSquareQuantile"),
    RowOf<NoncentralChiSquareDelta>("NoncentralChiSquareDelta"),
    RowOf<FisherZBias>("FisherZBias", PairsAt<1>),
    RowOf<FisherZSecondMoment>("FisherZSecondMoment", PairsAt<1>),
    RowOf<CorrelationIntegrand>("CorrelationIntegrand", IntegrandDomain),
    RowOf<CorrelationDensity>("CorrelationDensity", DensityDomain),
    RowOf<CorrelationCdf>("CorrelationCdf"),
    RowOf<CorrelationQuantileStart>("CorrelationQuantileStart"),
    RowOf<CorrelationQuantile>("CorrelationQuantile"),
    RowOf<RhoSearch{CorrelationRhoForP}>("CorrelationRhoForP"),
    RowOf<SeriesFunction{MultipleR2CdfExact}>("MultipleR2CdfExact"),
    RowOf<MultipleR2CdfLee>("MultipleR2CdfLee"),
    RowOf<R2Function{MultipleR2Cdf}>("MultipleR2Cdf"),
    RowOf<R2Inverse{MultipleR2Quantile}>("MultipleR2Quantile"),
    RowOf<R2Critical{MultipleR2CriticalValue}>("MultipleR2CriticalValue"),
    RowOf<R2Search{MultipleR2RhoForP}>("MultipleR2RhoForP"),
    RowOf<R2Limits{MultipleR2Interval}>("MultipleR2Interval"),
    RowOf<BinomialCdf>("BinomialCdf"),
    RowOf<BinomialQuantile>("BinomialQuantile"),
    RowOf<BinomialProportionForP>("BinomialProportionForP"),
    RowOf<RoundedCount>("RoundProportionToCount", CountDomain),
    RowOf<OneMeanEffect>("OneMeanEffect"),
    RowOf<TwoMeansEffect>("TwoMeansEffect"),
    RowOf<PairedSigmaDiff>("PairedSigmaDiff"),
    RowOf<PairedMeansEffect>("PairedMeansEffect"),
    RowOf<CriticalT>("CriticalT", DfAt<0>),
    RowOf<PowerAlone>("TTestPower", DfAt<1>),
};

// A row with all that is read from it once.
struct Function {
  const Row* row;
  std::vector<ArgumentType> types;
  std::vector<std::string> arguments;
  std::vector<std::string> results;
  std::vector<bool> words;  // whether the results are
  const char* doc;

  bool IsFailureWord(std::size_t result) const {
    return words[result] && (results[result] == "failure" || results[result] == "flag");
  }
};

std::vector<Function> MakeFunctions() {
  std::vector<Function> functions;
  for (const Row& row : kRows) {
    Signature signature = row.types();
    const Declaration& declaration = DeclarationOf(row.name, signature.arguments.size());
    functions.push_back({&row, std::move(signature.arguments), Words(declaration.arguments),
                         Words(declaration.results), std::move(signature.words), declaration.doc});
  }
  return functions;
}

const std::vector<Function>& Functions() {
  static const std::vector<Function> functions = MakeFunctions();
  return functions;
}

// --- Evaluation.

// The index of an argument that is not a whole number of its type; nothing when all are good.
std::optional<std::size_t> BadArgument(const Function& function, const double* arguments) {
  for (std::size_t i = 0; i < function.types.size(); ++i) {
    const ArgumentType& type = function.types[i];
    if (type.whole && !(std::trunc(arguments[i]) == arguments[i] && arguments[i] >= type.lower &&
                        arguments[i] <= type.upper)) {
      return i;
    }
  }
  return std::nullopt;
}

double EvaluateOne(const Function& function, Call& call) {
  const Row& row = *function.row;
  if (row.domain == nullptr || row.domain(call.arguments)) {
    return row.evaluate(call);
  }
  for (std::size_t i = 0; i < function.results.size(); ++i) {
    call.results[i] = {function.IsFailureWord(i) ? 1 : 0, NumericFailure};
  }
  return NumericFailure;
}

// Ends a long search when Python wants to raise an exception.
class InterruptObserver final : public SearchObserver {
 public:
  explicit InterruptObserver(SignalPoll& poll) : poll_(poll) {}
  void Start(std::int32_t /*count*/) override {}
  bool Advance(std::int32_t /*counter*/) override { return poll_.Interrupted(); }
  void Stop() override {}

 private:
  SignalPoll& poll_;
};

[[noreturn]] void RefuseArgument(const Function& function, std::size_t index, double value) {
  throw py::value_error(std::string(function.row->name) + ": " + function.arguments[index] +
                        " must be a whole number of its range, not " +
                        py::repr(py::float_(value)).cast<std::string>());
}

bool IsNumber(py::handle value) { return PyFloat_Check(value.ptr()) || PyLong_Check(value.ptr()); }

// The value, alone or with what follows it: in the named tuple that `makeTuple` makes.
py::object Finished(const Function& function,
                    const py::object& value,
                    const py::tuple& further,
                    const py::object& makeTuple) {
  if (function.row->kind == ValueKind::None) {
    return makeTuple(*further);
  }
  return function.results.empty() ? value : makeTuple(value, *further);
}

py::object EvaluateNumbers(const Function& function,
                           const py::args& arguments,
                           const py::object& makeTuple) {
  std::array<double, kMostArguments> values{};
  for (std::size_t i = 0; i < arguments.size(); ++i) {
    values[i] = PyFloat_AsDouble(arguments[i].ptr());
    if (PyErr_Occurred() != nullptr) {
      throw py::error_already_set();
    }
  }
  if (const auto bad = BadArgument(function, values.data())) {
    RefuseArgument(function, *bad, values[*bad]);
  }
  SignalPoll poll;
  InterruptObserver observer(poll);
  Call call{values.data(), &observer};
  double value = 0;
  {
    const py::gil_scoped_release release;
    const ModuleStateScope silence;
    value = EvaluateOne(function, call);
  }
  if (PyErr_Occurred() != nullptr) {
    throw py::error_already_set();
  }
  py::tuple further(function.results.size());
  for (std::size_t i = 0; i < further.size(); ++i) {
    further[i] = function.words[i] ? py::object(py::int_(call.results[i].word))
                                   : py::object(py::float_(call.results[i].number));
  }
  py::object result = function.row->kind == ValueKind::Truth ? py::object(py::bool_(value != 0))
                                                             : py::object(py::float_(value));
  return Finished(function, std::move(result), std::move(further), makeTuple);
}

using Reals = py::array_t<double, py::array::c_style | py::array::forcecast>;

Reals AsReals(const Function& function, std::size_t index, py::handle value) {
  const py::array array = py::array::ensure(value);
  const char kind = array ? array.dtype().kind() : '?';
  if (std::string("biuf").find(kind) == std::string::npos) {
    PyErr_Clear();
    throw py::type_error(std::string(function.row->name) + ": " + function.arguments[index] +
                         " must be a number or an array of numbers");
  }
  Reals reals = Reals::ensure(array);
  if (!reals) {
    throw py::error_already_set();
  }
  return reals;
}

// One argument seen at the common shape: a step of 0 repeats it along an axis.
struct Operand {
  const double* data;
  std::vector<py::ssize_t> steps;
};

class Broadcast {
 public:
  Broadcast(const Function& function, const py::args& arguments) : function_(function) {
    for (std::size_t i = 0; i < arguments.size(); ++i) {
      arrays_.push_back(AsReals(function, i, arguments[i]));
    }
    FindShape();
    for (const Reals& array : arrays_) {
      operands_.push_back(OperandOf(array));
    }
  }

  const std::vector<py::ssize_t>& shape() const { return shape_; }

  // Evaluates at every point of the shape. Without the interpreter's lock.
  // `further` are as many places for what comes beside each value.
  void Run(double* values, const std::vector<double*>& further) {
    std::array<double, kMostArguments> point{};
    std::vector<py::ssize_t> index(shape_.size(), 0);
    SignalPoll poll;
    InterruptObserver observer(poll);
    for (py::ssize_t i = 0; i < size_; ++i) {
      Gather(index, point.data());
      if (const auto bad = BadArgument(function_, point.data())) {
        bad_ = bad;
        badValue_ = point[*bad];
        return;
      }
      Call call{point.data(), &observer};
      values[i] = EvaluateOne(function_, call);
      for (std::size_t k = 0; k < further.size(); ++k) {
        const Report& report = call.results[k];
        further[k][i] = function_.words[k] ? report.word : report.number;
      }
      if (poll.Interrupted()) {
        return;
      }
      Advance(index);
    }
  }

  void RefuseBadArgument() const {
    if (bad_) {
      RefuseArgument(function_, *bad_, badValue_);
    }
  }

 private:
  void FindShape() {
    for (const Reals& array : arrays_) {
      const auto axes = static_cast<std::size_t>(array.ndim());
      if (axes > shape_.size()) {
        shape_.insert(shape_.begin(), axes - shape_.size(), 1);
      }
      for (std::size_t k = 0; k < axes; ++k) {
        const py::ssize_t extent = array.shape(static_cast<py::ssize_t>(axes - 1 - k));
        py::ssize_t& common = shape_[shape_.size() - 1 - k];
        if (extent != 1 && common != 1 && extent != common) {
          throw py::value_error(std::string(function_.row->name) +
                                ": the shapes of the arguments do not fit together");
        }
        common = extent == 1 ? common : extent;
      }
    }
    for (const py::ssize_t extent : shape_) {
      size_ *= extent;
    }
  }

  Operand OperandOf(const Reals& array) const {
    Operand operand{array.data(), std::vector<py::ssize_t>(shape_.size(), 0)};
    const auto axes = static_cast<std::size_t>(array.ndim());
    py::ssize_t step = 1;
    for (std::size_t k = 0; k < axes; ++k) {
      const py::ssize_t extent = array.shape(static_cast<py::ssize_t>(axes - 1 - k));
      operand.steps[shape_.size() - 1 - k] = extent == 1 ? 0 : step;
      step *= extent;
    }
    return operand;
  }

  void Gather(const std::vector<py::ssize_t>& index, double* point) const {
    for (std::size_t a = 0; a < operands_.size(); ++a) {
      py::ssize_t offset = 0;
      for (std::size_t axis = 0; axis < index.size(); ++axis) {
        offset += index[axis] * operands_[a].steps[axis];
      }
      point[a] = operands_[a].data[offset];
    }
  }

  void Advance(std::vector<py::ssize_t>& index) const {
    for (std::size_t axis = index.size(); axis-- > 0;) {
      if (++index[axis] < shape_[axis]) {
        return;
      }
      index[axis] = 0;
    }
  }

  const Function& function_;
  std::vector<Reals> arrays_;
  std::vector<Operand> operands_;
  std::vector<py::ssize_t> shape_;
  py::ssize_t size_ = 1;
  std::optional<std::size_t> bad_;
  double badValue_ = 0;
};

// An array without axes is a number.
py::object NumberOrArray(const py::array& array) {
  return array.ndim() == 0 ? array.attr("item")() : py::object(array);
}

py::object EvaluateArrays(const Function& function,
                          const py::args& arguments,
                          const py::object& makeTuple) {
  Broadcast broadcast(function, arguments);
  py::array_t<double> values(broadcast.shape());
  std::vector<py::array_t<double>> further;
  std::vector<double*> furtherData;
  for (std::size_t i = 0; i < function.results.size(); ++i) {
    further.emplace_back(broadcast.shape());
    furtherData.push_back(further.back().mutable_data());
  }
  double* data = values.mutable_data();
  {
    const py::gil_scoped_release release;
    const ModuleStateScope silence;
    broadcast.Run(data, furtherData);
  }
  if (PyErr_Occurred() != nullptr) {
    throw py::error_already_set();
  }
  broadcast.RefuseBadArgument();
  py::array result = values;
  if (function.row->kind == ValueKind::Truth) {
    result = result.attr("astype")("bool").cast<py::array>();
  }
  py::tuple others(further.size());
  for (std::size_t i = 0; i < further.size(); ++i) {
    // A word passes through a double unharmed.
    others[i] =
        NumberOrArray(function.words[i] ? further[i].attr("astype")("int32").cast<py::array>()
                                        : py::array(further[i]));
  }
  return Finished(function, NumberOrArray(result), std::move(others), makeTuple);
}

py::object CallFunction(std::size_t index, const py::object& makeTuple, const py::args& arguments) {
  const Function& function = Functions().at(index);
  if (arguments.size() != function.types.size()) {
    throw py::type_error(std::string(function.row->name) + ": wrong number of arguments");
  }
  const bool numbers = std::all_of(arguments.begin(), arguments.end(), IsNumber);
  return numbers ? EvaluateNumbers(function, arguments, makeTuple)
                 : EvaluateArrays(function, arguments, makeTuple);
}

// (name, arguments, whole, results, kind of value, docstring) of each function.
py::list DescribeFunctions() {
  py::list rows;
  for (const Function& function : Functions()) {
    py::list arguments;
    py::list whole;
    py::list results;
    for (std::size_t i = 0; i < function.arguments.size(); ++i) {
      arguments.append(function.arguments[i]);
      whole.append(function.types[i].whole);
    }
    for (const std::string& name : function.results) {
      results.append(name);
    }
    constexpr const char* kKinds[] = {"float", "bool", "none"};
    rows.append(py::make_tuple(function.row->name, arguments, whole, results,
                               kKinds[static_cast<std::size_t>(function.row->kind)], function.doc));
  }
  return rows;
}

// The integrand is a Python function: its exception raises the flag and comes out at the end.
py::tuple Integrate(
    const py::function& f, double lower, double upper, double epsabs, double epsrel) {
  std::unique_ptr<py::error_already_set> error;
  const auto integrand = [&](double x) -> IntegrandValue {
    try {
      return {f(x).cast<double>(), 0};
    } catch (py::error_already_set& raised) {
      error = std::make_unique<py::error_already_set>(raised);
      return {0, 1};
    }
  };
  double result = 0;
  double abserr = 0;
  int neval = 0;
  int ier = 0;
  AdaptiveIntegrate(integrand, lower, upper, epsabs, epsrel, result, abserr, neval, ier);
  if (error != nullptr) {
    throw py::error_already_set(*error);
  }
  return py::make_tuple(result, abserr, neval, ier);
}

}  // namespace

void BindDistributions(py::module_& module) {
  module.attr("numeric_failure") = NumericFailure;
  module.def("functions", DescribeFunctions);
  module.def("call_function", CallFunction);
  module.def("integrate", Integrate);
}

}  // namespace poweranalysis
