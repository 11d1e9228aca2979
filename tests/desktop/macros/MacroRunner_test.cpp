#include "macros/MacroRunner.h"

#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QThread>
#include <QTimer>
#include <algorithm>
#include <fstream>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <thread>
#include <utility>
#include <variant>

#include "automation/Application.h"
#include "automation/HeadlessDriver.h"
#include "frame/TaskCatalogue.h"
#include "module/PowerAnalysisModule.h"
#include "support/TemporaryFolder.h"

namespace poweranalysis {
namespace {

using testing::TemporaryFolder;

constexpr int kStopLimit = 2000;  // milliseconds

// The dialogs live on the thread of the test; a call from another one is counted.
class WatchedDriver : public HeadlessDriver {
 public:
  explicit WatchedDriver(HeadlessHost& host) : HeadlessDriver(host, NewAnalysis) {}

  bool StartAnalysis() override {
    Watch();
    if (onStart) {
      onStart();
    }
    return HeadlessDriver::StartAnalysis();
  }
  std::uint64_t OpenDialog() const override {
    Watch();
    return HeadlessDriver::OpenDialog();
  }
  void Type(int control, const std::string& text) override {
    Watch();
    HeadlessDriver::Type(control, text);
  }
  void Press(int control) override {
    Watch();
    HeadlessDriver::Press(control);
  }

  int calls() const { return calls_; }
  int strayCalls() const { return strayCalls_; }
  std::function<void()> onStart;

 private:
  void Watch() const {
    ++calls_;
    strayCalls_ += QThread::currentThread() == home_ ? 0 : 1;
  }

  QThread* home_ = QThread::currentThread();
  mutable int calls_ = 0;
  mutable int strayCalls_ = 0;
};

struct Ending {
  bool ok = false;
  std::string error;
};

class Macros : public ::testing::Test {
 protected:
  Macros() : driver_(host_) {
    NewRunner();
    host_.configFolder = folder_.path();
  }

  void NewRunner() {
    runner_ = std::make_unique<MacroRunner>(driver_, QStringLiteral(PACKAGE_FOLDER));
    QObject::connect(runner_.get(), &MacroRunner::Output, runner_.get(),
                     [this](const QString& text) {
                       output_ += text.toStdString();
                       ++outputs_;
                     });
    QObject::connect(runner_.get(), &MacroRunner::Finished, runner_.get(),
                     [this](bool ok, const QString& error) {
                       ending_ = Ending{ok, error.toStdString()};
                       outputAtTheEnd_ = output_;
                     });
  }

  QString Write(const std::string& text, const std::string& name = "macro.py") {
    const std::string path = folder_.path() + "/" + name;
    std::ofstream(path) << text;
    return QString::fromStdString(path);
  }

  static bool WaitUntil(const std::function<bool()>& reached, int milliseconds = 20000) {
    QElapsedTimer timer;
    timer.start();
    bool done = reached();
    while (!done && timer.elapsed() < milliseconds) {
      QCoreApplication::processEvents(QEventLoop::AllEvents, 10);
      QThread::msleep(1);
      done = reached();
    }
    return done;
  }

  void Start(const std::string& text) {
    ending_.reset();
    output_.clear();
    ASSERT_TRUE(runner_->Run(Write(text)));
  }
  Ending Ended(int milliseconds = 20000) {
    EXPECT_TRUE(WaitUntil([this] { return ending_.has_value(); }, milliseconds));
    return ending_.value_or(Ending{});
  }
  Ending Run(const std::string& text) {
    Start(text);
    return Ended();
  }
  void StartAndWaitFor(const std::string& text, const std::string& printed) {
    Start(text);
    ASSERT_TRUE(WaitUntil([&] { return output_.find(printed) != std::string::npos; })) << output_;
  }
  void StopsInTime() {
    QElapsedTimer timer;
    timer.start();
    runner_->Stop();
    const Ending ending = Ended();
    EXPECT_LT(timer.elapsed(), kStopLimit);
    EXPECT_FALSE(ending.ok);
    EXPECT_EQ(ending.error, "The macro was stopped");
    EXPECT_FALSE(runner_->running());
  }
  // The time that the destructor of the runner takes.
  qint64 Destroy() {
    QElapsedTimer timer;
    timer.start();
    runner_.reset();
    return timer.elapsed();
  }

  TemporaryFolder folder_;
  HeadlessHost host_;
  WatchedDriver driver_;
  std::unique_ptr<MacroRunner> runner_;
  std::optional<Ending> ending_;
  std::string output_;
  int outputs_ = 0;
  std::string outputAtTheEnd_;
};

// The required size of two groups whose means differ by half a standard deviation.
constexpr const char* kSizeMacro = R"python(
import poweranalysis

app = poweranalysis.Application()

startup = app.StartAnalysis()  # PowStartup
startup.AnalysisItem = poweranalysis.PowAnalysisItem.scPowSampleSizeCalculation
startup.AnalysisType = poweranalysis.PowAnalysisType.scPowTwoMeansTTestIndependentSamples
startup.OK()

dialog = app.Dialog  # PowT2SSParametersDialog
for field, value in {"Mu1": 5, "Mu2": 0, "Sigma": 10, "PowerGoal": 0.8}.items():
    dialog.SetField(field, value)
assert dialog.OK() == 1

results = app.Dialog  # PowT2_S_ResultsDialog
for row in results.Summary:
    print(row.title, *row.values, sep=": ")
)python";

// What the macro above does, without Python. An analysis belongs to its thread, and that of the
// macro to the thread of the test.
SummaryTable SizeTable() {
  HeadlessHost host;
  std::thread([&host] {
    HeadlessDriver driver(host, NewAnalysis);
    Application application(driver);
    const auto startup = application.StartAnalysis();
    startup->Put("AnalysisItem", std::int64_t{ModeSampleSize});
    startup->Put("AnalysisType", std::int64_t{FindTask(ModeSampleSize, "T2")});
    startup->OK();
    const auto dialog = application.Dialog();
    dialog->SetField("Mu1", 5.0);
    dialog->SetField("Mu2", 0.0);
    dialog->SetField("Sigma", 10.0);
    dialog->SetField("PowerGoal", 0.8);
    dialog->OK();
    application.Dialog()->Get("Summary");
  }).join();
  return std::get<SummaryTable>(host.workbook().items.at(0));
}

TEST_F(Macros, PutTheTableIntoTheWorkbookOfTheWindow) {
  const Ending ending = Run(kSizeMacro);
  EXPECT_TRUE(ending.ok) << ending.error;
  EXPECT_EQ(ending.error, "");
  EXPECT_NE(output_.find("Required N (per group): 64\n"), std::string::npos) << output_;
  ASSERT_FALSE(host_.workbook().items.empty());
  const auto& table = std::get<SummaryTable>(host_.workbook().items[0]);
  const SummaryTable expected = SizeTable();
  ASSERT_EQ(table.rows.size(), expected.rows.size());
  for (std::size_t i = 0; i < expected.rows.size(); ++i) {
    EXPECT_EQ(table.rows[i].title, expected.rows[i].title);
    EXPECT_EQ(table.rows[i].values, expected.rows[i].values) << table.rows[i].title;
  }
}

TEST_F(Macros, TouchTheDialogsOnTheThreadThatTheyLiveOn) {
  Run(kSizeMacro);
  EXPECT_GT(driver_.calls(), 8);
  EXPECT_EQ(driver_.strayCalls(), 0);
}

TEST_F(Macros, RunOneAfterTheOtherWithNamesOfTheirOwn) {
  EXPECT_TRUE(Run("mark = 1\nprint('first')").ok);
  EXPECT_EQ(output_, "first\n");
  EXPECT_TRUE(Run("print('mark' in globals())").ok);
  EXPECT_EQ(output_, "False\n");
  EXPECT_TRUE(Run(kSizeMacro).ok);
  const std::string first = output_;
  EXPECT_TRUE(Run(kSizeMacro).ok);
  EXPECT_EQ(output_, first);
  const auto& items = host_.workbook().items;
  EXPECT_EQ(std::count_if(items.begin(), items.end(),
                          [](const WorkbookItem& item) {
                            return std::holds_alternative<SummaryTable>(item);
                          }),
            2);
}

TEST_F(Macros, LoadNumPyEachTime) {
  constexpr const char* kMacro = "import numpy\nprint(numpy.arange(4).sum())";
  for (int i = 0; i < 2; ++i) {
    const Ending ending = Run(kMacro);
    EXPECT_TRUE(ending.ok) << ending.error;
    EXPECT_EQ(output_, "6\n");
  }
  NewRunner();
  EXPECT_TRUE(Run(kMacro).ok);
}

TEST_F(Macros, RunAsAScriptOfTheirFolder) {
  Write("answer = 'from beside'", "beside.py");
  EXPECT_TRUE(Run("import sys, beside\nprint(__name__, beside.answer, sys.argv[1:])").ok);
  EXPECT_EQ(output_, "__main__ from beside []\n");
  EXPECT_TRUE(Run("import sys\nprint(sys.path[0] == '" + folder_.path() + "', sys.path.count('" +
                  folder_.path() + "'), sys.executable)")
                  .ok);
  EXPECT_EQ(output_, "True 1 /usr/bin/python3\n");
}

// --- What they print.

TEST_F(Macros, PrintInOrderBeforeTheyEnd) {
  const Ending ending = Run(R"python(
import sys
print("μ₁ ≤ μ₂")
print("to the error stream", file=sys.stderr)
print("last", end="", flush=True)
)python");
  EXPECT_TRUE(ending.ok) << ending.error;
  EXPECT_EQ(outputAtTheEnd_, "μ₁ ≤ μ₂\nto the error stream\nlast");
}

TEST_F(Macros, PrintManyLinesInFewSteps) {
  outputs_ = 0;
  EXPECT_TRUE(Run("for i in range(200000): print(i)").ok);
  EXPECT_EQ(outputAtTheEnd_.size(), 1288890U);
  // Each lasts 20 ms at least, and all together not longer than the test waits.
  EXPECT_LE(outputs_, 1000);
}

TEST_F(Macros, HaveNobodyToAsk) {
  const Ending ending = Run("input('Name? ')");
  EXPECT_FALSE(ending.ok);
  EXPECT_NE(ending.error.find("lost sys.stdin"), std::string::npos) << ending.error;
}

TEST_F(Macros, LogToTheStreamOfTheNextOneToo) {
  EXPECT_TRUE(
      Run("import logging\nlogging.basicConfig(format='%(message)s')\nlogging.error('a')").ok);
  EXPECT_EQ(output_, "a\n");
  EXPECT_TRUE(Run("import logging\nlogging.error('b')").ok);
  EXPECT_EQ(output_, "b\n");
}

// --- How they end.

TEST_F(Macros, TellWhatTheyRaiseAndWhere) {
  const Ending ending = Run("def half(x):\n    return 1 / x\n\nhalf(0)\n");
  EXPECT_FALSE(ending.ok);
  const std::string file = folder_.path() + "/macro.py";
  EXPECT_EQ(ending.error.find("Traceback (most recent call last):\n  File \"" + file +
                              "\", line 4, in <module>\n"),
            0U)
      << ending.error;
  EXPECT_NE(ending.error.find("line 2, in half\n"), std::string::npos);
  EXPECT_NE(ending.error.find("\nZeroDivisionError: division by zero"), std::string::npos);
  EXPECT_FALSE(runner_->running());
}

TEST_F(Macros, TellWhatIsWrongWithTheirText) {
  const Ending ending = Run("x = (1,\n");
  EXPECT_FALSE(ending.ok);
  EXPECT_NE(ending.error.find("SyntaxError: '(' was never closed"), std::string::npos)
      << ending.error;
  EXPECT_EQ(ending.error.find("runpy"), std::string::npos) << ending.error;
}

TEST_F(Macros, TellThatTheirFileIsNotThere) {
  ASSERT_TRUE(runner_->Run(QString::fromStdString(folder_.path() + "/none.py")));
  const Ending ending = Ended();
  EXPECT_FALSE(ending.ok);
  EXPECT_NE(ending.error.find("FileNotFoundError: [Errno 2]"), std::string::npos) << ending.error;
}

TEST_F(Macros, TellWhatTheObjectModelRefuses) {
  const Ending ending =
      Run("import poweranalysis as pa\npa.Application().StartAnalysis().Nonsense");
  EXPECT_FALSE(ending.ok);
  EXPECT_NE(ending.error.find("UnknownMember"), std::string::npos) << ending.error;
}

TEST_F(Macros, MayExit) {
  const struct {
    const char* statement;
    bool ok;
    const char* error;
  } rows[] = {
      {"sys.exit()", true, ""},
      {"sys.exit(0)", true, ""},
      {"sys.exit(3)", false, "The macro ended with status 3"},
      {"sys.exit('No data')", false, "No data"},
      {"raise SystemExit", true, ""},
  };
  for (const auto& row : rows) {
    const Ending ending = Run(std::string("import sys\n") + row.statement + "\nprint('not here')");
    EXPECT_EQ(ending.ok, row.ok) << row.statement;
    EXPECT_EQ(ending.error, row.error) << row.statement;
    EXPECT_EQ(output_, "") << row.statement;
  }
}

TEST_F(Macros, RunOneAtATime) {
  StartAndWaitFor("print('begun', flush=True)\nwhile True: pass", "begun");
  EXPECT_FALSE(runner_->Run(Write("print('second')", "second.py")));
  MacroRunner other(driver_, QStringLiteral(PACKAGE_FOLDER));
  EXPECT_FALSE(other.Run(Write("print('second')", "second.py")));
  EXPECT_FALSE(other.running());
  StopsInTime();
  EXPECT_EQ(output_, "begun\n");
  EXPECT_TRUE(Run("print('third')").ok);
}

TEST_F(Macros, MayStartTheNextAsOneEnds) {
  bool started = false;
  QObject::connect(runner_.get(), &MacroRunner::Finished, runner_.get(), [&] {
    if (!std::exchange(started, true)) {
      EXPECT_TRUE(runner_->Run(Write("print('next')", "next.py")));
    }
  });
  Start("print('one')");
  EXPECT_TRUE(WaitUntil([this] { return output_ == "one\nnext\n" && !runner_->running(); }));
}

// --- Stop.

TEST_F(Macros, StopInAnEndlessLoopWhileTheWindowLives) {
  StartAndWaitFor("print('begun', flush=True)\nwhile True: pass", "begun");
  int ticks = 0;
  QTimer timer;
  QObject::connect(&timer, &QTimer::timeout, [&ticks] { ++ticks; });
  timer.start(20);
  WaitUntil([&] { return ticks >= 5; }, 2000);
  EXPECT_GE(ticks, 5);
  StopsInTime();
  EXPECT_TRUE(Run("print('again')").ok);
}

TEST_F(Macros, StopBeforeTheyHaveBegun) {
  Start("while True: pass");
  StopsInTime();
}

TEST_F(Macros, StopWhileTheyWait) {
  StartAndWaitFor("import time\nprint('begun', flush=True)\ntime.sleep(60)", "begun");
  StopsInTime();
}

TEST_F(Macros, StopWhileTheyPrintWithoutEnd) {
  StartAndWaitFor("while True: print('x' * 1000)", "x");
  StopsInTime();
}

TEST_F(Macros, StopWhileTheyDriveTheDialogsWithoutEnd) {
  StartAndWaitFor(
      "import poweranalysis\napp = poweranalysis.Application()\nprint('begun', flush=True)\n"
      "while True: app.StartAnalysis().OK()",
      "begun");
  WaitUntil([this] { return driver_.calls() > 50; });
  StopsInTime();
  const int calls = driver_.calls();
  WaitUntil([] { return false; }, 50);
  EXPECT_EQ(driver_.calls(), calls);
}

TEST_F(Macros, StopWhenTheCommandOfTheWindowHasEnded) {
  bool stopping = false;
  bool commandEnded = false;
  QObject::connect(runner_.get(), &MacroRunner::Stopping, runner_.get(), [&] { stopping = true; });
  driver_.onStart = [&] {
    QTimer::singleShot(50, runner_.get(), [this] { runner_->Stop(); });
    // A search that comes to life now and then, and asks whether it was cancelled.
    EXPECT_TRUE(WaitUntil([&] { return stopping; }));
    WaitUntil([] { return false; }, 100);
    EXPECT_FALSE(ending_.has_value());
    commandEnded = true;
  };
  Start("import poweranalysis\npoweranalysis.Application().StartAnalysis()\nprint('not here')");
  EXPECT_EQ(Ended().error, "The macro was stopped");
  EXPECT_TRUE(commandEnded);
  EXPECT_EQ(output_, "");
}

TEST_F(Macros, MayTidyUpWhenStopped) {
  StartAndWaitFor(R"python(
import poweranalysis
app = poweranalysis.Application()
try:
    print("begun", flush=True)
    while True: pass
except KeyboardInterrupt:
    try:
        app.StartAnalysis()
    except RuntimeError as refusal:
        print(refusal)
    raise
)python",
                  "begun");
  StopsInTime();
  EXPECT_EQ(output_, "begun\nThe macro was stopped\n");
  EXPECT_EQ(driver_.calls(), 0);
}

TEST_F(Macros, StopAtTheSecondCallWhenTheyCaughtTheFirst) {
  StartAndWaitFor(
      "try:\n    print('begun', flush=True)\n    while True: pass\nexcept KeyboardInterrupt:\n"
      "    print('caught', flush=True)\nwhile True: pass",
      "begun");
  runner_->Stop();
  ASSERT_TRUE(WaitUntil([this] { return output_ == "begun\ncaught\n"; }));
  EXPECT_TRUE(runner_->running());
  StopsInTime();
}

TEST_F(Macros, StopWithoutOneIsNothing) {
  runner_->Stop();
  EXPECT_TRUE(Run("print('fine')").ok);
  runner_->Stop();
  EXPECT_TRUE(Run("print('fine')").ok);
}

// --- The end of the window.

TEST_F(Macros, EndWithTheWindowInAnEndlessLoop) {
  StartAndWaitFor("print('begun', flush=True)\nwhile True: pass", "begun");
  EXPECT_LT(Destroy(), kStopLimit);
  EXPECT_FALSE(ending_.has_value());
  NewRunner();
  EXPECT_TRUE(Run("print('again')").ok);
}

TEST_F(Macros, EndWithTheWindowWhileTheyDriveItsDialogs) {
  for (int i = 0; i < 20; ++i) {
    StartAndWaitFor(
        "import poweranalysis\napp = poweranalysis.Application()\nprint('begun', flush=True)\n"
        "while True: app.StartAnalysis().OK()",
        "begun");
    EXPECT_LT(Destroy(), kStopLimit);
    NewRunner();
  }
}

TEST_F(Macros, EndWithTheWindowWhileTheyPrint) {
  StartAndWaitFor("while True: print('x' * 1000)", "x");
  EXPECT_LT(Destroy(), kStopLimit);
  NewRunner();
}

TEST_F(Macros, EndWithTheWindowInsideACommandOfTheirs) {
  driver_.onStart = [this] { EXPECT_LT(Destroy(), kStopLimit); };
  Start("import poweranalysis\npoweranalysis.Application().StartAnalysis()");
  EXPECT_TRUE(WaitUntil([this] { return runner_ == nullptr; }));
  EXPECT_FALSE(ending_.has_value());
  NewRunner();
  driver_.onStart = nullptr;
  EXPECT_TRUE(Run(kSizeMacro).ok);
}

TEST_F(Macros, EndWithTheWindowThoughTheyCatchEveryFirstInterrupt) {
  StartAndWaitFor(R"python(
for i in range(3):
    try:
        print(i, flush=True)
        while True: pass
    except KeyboardInterrupt: pass
)python",
                  "0");
  EXPECT_LT(Destroy(), kStopLimit);
  NewRunner();
  EXPECT_TRUE(Run("print('again')").ok);
}

TEST_F(Macros, AreLeftAloneWhenOtherCodeKeepsThemFromStopping) {
  StartAndWaitFor(
      "import threading\nlock = threading.Lock()\nlock.acquire()\nprint('begun', flush=True)\n"
      "lock.acquire(timeout=4)",
      "begun");
  const qint64 time = Destroy();
  EXPECT_GE(time, 1900);
  EXPECT_LT(time, 3000);
  NewRunner();
  const QString next = Write("print('again')", "next.py");
  EXPECT_FALSE(runner_->Run(next));
  // It holds the interpreter until it ends.
  EXPECT_TRUE(WaitUntil([&] { return runner_->Run(next); }));
  EXPECT_TRUE(Ended().ok);
  EXPECT_EQ(output_, "begun\nagain\n");
}

TEST_F(Macros, LeaveObjectsThatReachNoWindowAnyMore) {
  EXPECT_TRUE(Run("import sys, poweranalysis\nsys.left = poweranalysis.Application()\n"
                  "sys.left.StartAnalysis()")
                  .ok);
  const int calls = driver_.calls();
  const Ending ending = Run("import sys\nsys.left.StartAnalysis()");
  EXPECT_FALSE(ending.ok);
  EXPECT_NE(ending.error.find("The macro has ended"), std::string::npos) << ending.error;
  EXPECT_EQ(driver_.calls(), calls);
}

}  // namespace
}  // namespace poweranalysis

int main(int argc, char** argv) {
  ::testing::InitGoogleTest(&argc, argv);
  const QCoreApplication application(argc, argv);
  return RUN_ALL_TESTS();
}
