#include <gtest/gtest.h>
#include <sys/time.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <limits>
#include <random>
#include <string>
#include <vector>

#include "automation/CalculatorNames.h"
#include "automation/TaskRun.h"
#include "cli/CommandLine.h"
#include "exporters/Exporters.h"
#include "host/ChartLayout.h"
#include "host/NumberText.h"
#include "module/PowerAnalysisModule.h"

// Any inputs within their ranges, and at the ends of them, for every task: a calculation ends in
// numbers or in a message. It may take long only where it can be cancelled.
//
// POWERANALYSIS_BOUNDARY_RUNS multiplies the number of runs, and POWERANALYSIS_BOUNDARY_SEED starts
// another sequence of them.
namespace poweranalysis {
namespace {

#if defined(__SANITIZE_ADDRESS__)
constexpr double kSlowness = 8;
constexpr int kRunsEach = 40;
#else
constexpr double kSlowness = 1;
constexpr int kRunsEach = 120;
#endif

// Seconds of processor time.
constexpr double kPatience = .5 * kSlowness;   // until the host asks to cancel
constexpr double kLongest = 10 * kSlowness;    // for a call that has not looked at its host
constexpr double kCancelTime = 2 * kSlowness;  // from its look at the host on
constexpr double kHang = 1.5 * kLongest;

double ProcessorSeconds() {
  timespec now{};
  ::clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &now);
  return static_cast<double>(now.tv_sec) + 1e-9 * static_cast<double>(now.tv_nsec);
}

unsigned long Environment(const char* name, unsigned long otherwise) {
  const char* value = std::getenv(name);
  return value == nullptr ? otherwise : std::strtoul(value, nullptr, 10);
}

// A host whose user loses patience.
class ImpatientHost : public HeadlessHost {
 public:
  ImpatientHost() {
    cancelled = [this] { return Overdue(); };
  }
  // Whether a call that has ended now has taken too long.
  bool Hung() const {
    const double now = ProcessorSeconds();
    return now - start_ > kLongest && (asked_ == 0 || now - asked_ > kCancelTime);
  }
  bool asked() const { return asked_ != 0; }
  double Seconds() const { return ProcessorSeconds() - start_; }

 private:
  bool Overdue() {
    const double now = ProcessorSeconds();
    if (asked_ == 0 && now - start_ > kPatience) {
      asked_ = now;
    }
    return asked_ != 0;
  }

  double start_ = ProcessorSeconds();
  double asked_ = 0;
};

// Ends the program with the command in hand when a call never comes back.
class Watchdog {
 public:
  explicit Watchdog(const std::string& command) {
    std::snprintf(Command().data(), Command().size(), "hangs: %s\n", command.c_str());
    std::signal(SIGPROF, [](int) {
      const std::size_t length = std::strlen(Command().data());
      const bool told = ::write(STDERR_FILENO, Command().data(), length) >= 0;
      ::_exit(told ? 3 : 4);
    });
    Set(static_cast<long>(kHang));
  }
  Watchdog(const Watchdog&) = delete;
  Watchdog& operator=(const Watchdog&) = delete;
  ~Watchdog() { Set(0); }

 private:
  static std::array<char, 2048>& Command() {
    static std::array<char, 2048> command;
    return command;
  }
  static void Set(long seconds) {
    itimerval timer{};
    timer.it_value.tv_sec = seconds;
    ::setitimer(ITIMER_PROF, &timer, nullptr);
  }
};

class Sampler {
 public:
  explicit Sampler(std::uint64_t seed) : random_(seed) {}

  std::size_t Below(std::size_t count) { return random_() % count; }
  double Uniform() { return static_cast<double>(random_() >> 11) * 0x1p-53; }

  // A value of the field: usually within its range.
  double ValueOf(const Field& field) {
    const double value = AnyOf(field);
    if (field.type == FieldType::Real) {
      return value;
    }
    return std::floor(value);
  }

 private:
  double AnyOf(const Field& field) {
    const bool open = field.type == FieldType::Real;
    switch (Below(16)) {
      case 0:
      case 1:
        return open && IsOpenBelow(field) ? std::nextafter(field.lower, field.upper) : field.lower;
      case 2:
      case 3:
        return open && IsOpenAbove(field) ? std::nextafter(field.upper, field.lower) : field.upper;
      case 4:
        return field.factory;
      case 5:
        return Below(4) == 0 ? field.lower - 1 : NearZero(field);
      case 6:
        return Below(4) == 0 ? field.upper + 1 : NearZero(field);
      case 7:
      case 8:
      case 9:
      case 10:
        return Inside(field, Magnitude(field));
      default:
        return Inside(field, field.lower + (field.upper - field.lower) * Uniform());
    }
  }

  static bool IsOpenBelow(const Field& field) {
    return field.form == RangeForm::Open || field.form == RangeForm::ClosedAbove;
  }
  static bool IsOpenAbove(const Field& field) {
    return field.form == RangeForm::Open || field.form == RangeForm::ClosedBelow;
  }
  static double Inside(const Field& field, double value) {
    return std::clamp(value, field.lower, field.upper);
  }
  // All orders of magnitude between the bounds.
  double Magnitude(const Field& field) {
    const double largest =
        std::log(std::max(std::fabs(field.lower), std::fabs(field.upper)) + 1e-10);
    const double size = std::exp(largest - Uniform() * std::max(largest, 10.0));
    return field.lower < 0 && Below(2) == 0 ? -size : size;
  }
  double NearZero(const Field& field) {
    return Inside(field, std::pow(10.0, -300 * Uniform()) * (Below(2) == 0 ? 1 : -1));
  }

  std::mt19937_64 random_;
};

struct Task {
  int mode;
  int row;

  const TaskRow& catalogue() const { return Tasks(mode)[static_cast<std::size_t>(row)]; }
};

std::vector<Task> AllTasks() {
  std::vector<Task> tasks;
  for (const int mode : {ModePower, ModeSampleSize, ModeDistribution}) {
    for (int row = 0; row < static_cast<int>(Tasks(mode).size()); ++row) {
      tasks.push_back({mode, row});
    }
  }
  return tasks;
}

// The fields of a task's dialogs, and the charts.
struct Inputs {
  const FamilyTable* family = nullptr;
  std::vector<const Field*> fields;
  std::vector<std::string> charts;
};

Inputs InputsOf(const Task& task) {
  Inputs inputs;
  inputs.family = &FamilyOfTask(task.mode, task.row);
  if (task.mode == ModeDistribution) {
    const CalculatorTable& rows = *FindCalculator(task.catalogue().family);
    for (const Field& field : inputs.family->fields) {
      if (ShowsField(rows, field)) {
        inputs.fields.push_back(&field);
      }
    }
    return inputs;
  }
  const TaskDialogs dialogs = LookAtDialogs(task.mode, task.row, NewAnalysis);
  for (const Field& field : inputs.family->fields) {
    for (const auto* names : {&dialogs.parameters, &dialogs.ranges}) {
      if (field.keyed() && std::find(names->begin(), names->end(), field.name) != names->end()) {
        inputs.fields.push_back(&field);
        break;
      }
    }
  }
  inputs.charts = dialogs.charts;
  return inputs;
}

TaskRequest Draw(const Task& task, const Inputs& inputs, Sampler& sampler) {
  TaskRequest request;
  request.mode = task.mode;
  request.row = task.row;
  request.family = inputs.family;
  const char* unknown = nullptr;
  if (task.mode == ModeDistribution) {
    const CalculatorTable& rows = *FindCalculator(task.catalogue().family);
    request.unknown = sampler.Below(rows.unknowns.size());
    request.oneMinusP = sampler.Below(2) == 1;
    unknown = rows.unknowns[*request.unknown].field;
  }
  // From few changes to the built-in values to all of them changed.
  const double changes = sampler.Uniform();
  for (const Field* field : inputs.fields) {
    if ((unknown == nullptr || std::string_view(unknown) != field->name) &&
        sampler.Uniform() < changes) {
      request.values.push_back({field, sampler.ValueOf(*field)});
    }
  }
  if (!inputs.charts.empty() && sampler.Below(4) == 0) {
    request.charts.push_back(inputs.charts[sampler.Below(inputs.charts.size())]);
  }
  return request;
}

// The command that does the same.
std::string CommandOf(const TaskRequest& request) {
  const TaskRow& task = Tasks(request.mode)[static_cast<std::size_t>(request.row)];
  std::string command = SubCommandOf(request.mode) + " " + LowerCase(task.family);
  if (request.unknown) {
    command +=
        std::string(" --unknown ") + FindCalculator(task.family)->unknowns[*request.unknown].name;
  }
  if (request.oneMinusP) {
    command += " --one-minus-p";
  }
  for (const FieldValue& value : request.values) {
    command += " --" + OptionName(value.field->name) + "=" + FormatShortest(value.value);
  }
  for (const std::string& chart : request.charts) {
    command += " --chart " + chart;
  }
  return command;
}

bool Has(const std::string& text, std::string_view part) {
  return text.find(part) != std::string::npos;
}

// What is wrong with an outcome; empty when nothing is.
class Inspection {
 public:
  Inspection(const TaskRequest& request, const TaskOutcome& outcome)
      : request_(request), outcome_(outcome) {}

  std::string Find(bool cancelled);

 private:
  void Complain(const std::string& what) { faults_ += (faults_.empty() ? "" : "; ") + what; }
  void Silence();
  void Number(const std::string& title, double value);
  void Power(const std::string& title, double value);
  void Table(const SummaryTable& table);
  void Size(const SummaryTable& table);
  void Text(const Report& report);
  void Picture(const Chart& chart);
  double Value(const char* field) const;

  const TaskRequest& request_;
  const TaskOutcome& outcome_;
  std::string faults_;
};

double Inspection::Value(const char* field) const {
  for (const FieldValue& value : request_.values) {
    if (std::string_view(value.field->name) == field) {
      return value.value;
    }
  }
  const Field* found = request_.family->Find(field);
  return found == nullptr ? std::numeric_limits<double>::quiet_NaN() : found->factory;
}

// No answer, and not a word why.
void Inspection::Silence() {
  const bool answered = HasAnswer(outcome_.study);
  const bool told =
      !outcome_.study.messages.empty() ||
      std::any_of(outcome_.errors.begin(), outcome_.errors.end(), [](const std::string& error) {
        return error != "the calculation gave no result";
      });
  if (!answered && !told) {
    Complain("silence");
  }
}

void Inspection::Number(const std::string& title, double value) {
  if (!IsMissing(value) && !std::isfinite(value)) {
    Complain(title + " is no number");
  }
}

// The t distribution may leave the range by some 1e-8. The power of a two-tailed test of model fit
// subtracts the lower tail, so that it can be negative.
void Inspection::Power(const std::string& title, double value) {
  constexpr double kRounding = 1e-7;
  const double least =
      std::string_view(request_.family->code) == "SEM" ? -1 - kRounding : -kRounding;
  if (!IsMissing(value) && !(value >= least && value <= 1 + kRounding)) {
    Complain(title + " is " + FormatShortest(value));
  }
}

void Inspection::Table(const SummaryTable& table) {
  for (const TableRow& row : table.rows) {
    for (const double value : row.values) {
      Number(row.title, value);
      if (Has(row.title, "Power") && !Has(row.title, "Goal")) {
        Power(row.title, value);
      }
      if (Has(row.title, "Required") && !Has(row.title, "Power") && !IsMissing(value) &&
          (value < 1 || value != std::floor(value))) {
        Complain(row.title + " is " + FormatShortest(value));
      }
    }
  }
}

// The power of a required size reaches the goal, as near as a closed form undoes a power with short
// constants. One proportion tells two powers, of which the algorithm's own does.
void Inspection::Size(const SummaryTable& table) {
  constexpr double kShortConstants = 1e-7;
  const double goal = Value("PowerGoal");
  const bool isP1 = std::string_view(request_.family->code) == "P1";
  const char* other = Value("Algorithm") == 0 ? "Normal" : "Exact";
  for (const TableRow& row : table.rows) {
    if (!Has(row.title, "Actual Power") || (isP1 && Has(row.title, other))) {
      continue;
    }
    for (const double power : row.values) {
      if (!IsMissing(power) && power < goal - kShortConstants) {
        Complain("the size has a power of " + FormatShortest(power));
      }
    }
  }
}

void Inspection::Text(const Report& report) {
  for (const std::string& paragraph : report.paragraphs) {
    for (const char* word : {" nan", "-nan", " inf", "-inf", "(nan", "(inf", " -9999.00"}) {
      const std::size_t at = paragraph.find(word);
      const std::size_t end = at + std::strlen(word);
      if (at != std::string::npos &&
          (end >= paragraph.size() ||
           std::isalpha(static_cast<unsigned char>(paragraph[end])) == 0)) {
        Complain("the report says '" + paragraph + "'");
      }
    }
  }
}

bool IsAxis(const Axis& axis) {
  return std::isfinite(axis.min) && std::isfinite(axis.max) && axis.min <= axis.max;
}

void Inspection::Picture(const Chart& chart) {
  for (std::size_t i = 0; i < chart.y.size(); ++i) {
    if (!std::isfinite(chart.x[i]) || !std::isfinite(chart.y[i])) {
      Complain("a point of the chart is no number");
      break;
    }
    if (chart.yLabel == "Power" && chart.y[i] != FailedPoint) {
      Power("a point of the chart", static_cast<double>(chart.y[i]));
    }
  }
  // The axis of an RMSEA is cut off at -.05, so that it runs backwards for a range below that.
  const bool runsBackwards = Has(chart.name, "rmsea") && chart.xAxis.max < chart.xAxis.min;
  if (!IsAxis(chart.yAxis) || !(IsAxis(chart.xAxis) || runsBackwards)) {
    Complain("the chart has no axis");
  }
}

std::string Inspection::Find(bool cancelled) {
  if (!cancelled) {
    Silence();
  }
  for (const WorkbookItem& item : outcome_.study.workbook.items) {
    if (const auto* table = std::get_if<SummaryTable>(&item)) {
      Table(*table);
      if (request_.mode == ModeSampleSize) {
        Size(*table);
      }
    } else if (const auto* report = std::get_if<Report>(&item)) {
      Text(*report);
    } else {
      Picture(std::get<Chart>(item));
    }
  }
  for (const ExportFormat format : {ExportFormat::Text, ExportFormat::Json}) {
    if (Export(outcome_.study, format).empty() && HasAnswer(outcome_.study)) {
      Complain("nothing is printed");
    }
  }
  return faults_;
}

class Boundaries : public ::testing::TestWithParam<Task> {};

TEST_P(Boundaries, EndInANumberOrInAMessage) {
  const Task task = GetParam();
  const Inputs inputs = InputsOf(task);
  ASSERT_FALSE(inputs.fields.empty());
  const unsigned long seed = Environment("POWERANALYSIS_BOUNDARY_SEED", 1);
  const unsigned long runs = kRunsEach * Environment("POWERANALYSIS_BOUNDARY_RUNS", 1);
  Sampler sampler(1000003 * seed + static_cast<unsigned long>(100 * task.mode + task.row));
  int answers = 0;
  for (unsigned long run = 0; run < runs; ++run) {
    const TaskRequest request = Draw(task, inputs, sampler);
    const std::string command = CommandOf(request);
    const Watchdog watchdog(command);
    ImpatientHost host;
    const TaskOutcome outcome = RunTask(request, host, NewAnalysis);
    answers += HasAnswer(outcome.study) ? 1 : 0;
    EXPECT_FALSE(host.Hung()) << "hangs for " << host.Seconds() << " seconds"
                              << (host.asked() ? ", cancelled in vain: " : ": ") << command;
    const std::string faults = Inspection(request, outcome).Find(host.asked());
    EXPECT_EQ(faults, "") << command;
  }
  EXPECT_GT(answers, 0) << "nothing was tested";
}

std::string NameOf(const ::testing::TestParamInfo<Task>& info) {
  constexpr std::array<const char*, ModeCount> kModes = {"Power", "Size", "Interval", "Calculator"};
  std::string name = kModes[static_cast<std::size_t>(info.param.mode)];
  for (const char letter : std::string_view(info.param.catalogue().family)) {
    if (std::isalnum(static_cast<unsigned char>(letter)) != 0) {
      name += letter;
    }
  }
  return name;
}

INSTANTIATE_TEST_SUITE_P(OfEveryTask, Boundaries, ::testing::ValuesIn(AllTasks()), NameOf);

}  // namespace
}  // namespace poweranalysis
