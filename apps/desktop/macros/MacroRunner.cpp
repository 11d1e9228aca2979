#include "macros/MacroRunner.h"

#include <QTimer>
#include <atomic>
#include <chrono>
#include <condition_variable>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "macros/Interpreter.h"
#include "macros/MarshalledDriver.h"
#include "macros/WindowCalls.h"

namespace poweranalysis {

namespace {

using std::chrono::milliseconds;

// How long the destructor waits for a macro, and how often it interrupts one that goes on.
constexpr milliseconds kPatience(2000);
constexpr milliseconds kInterruptPause(200);
// Output that the window has not taken yet; a macro that prints faster waits.
constexpr std::size_t kMostOutput = 1 << 18;
// The window has better things to do than to show each line by itself.
constexpr milliseconds kOutputPace(20);

// Whether a macro holds the interpreter, of whatever runner.
std::atomic<bool> interpreterTaken = false;

// Objects of a macro may outlive it, and they refer to their driver. So none is ever freed; without
// its window each only refuses.
MarshalledDriver* KeptDriver(DialogDriver& driver, std::shared_ptr<WindowCalls> calls) {
  static std::vector<std::unique_ptr<MarshalledDriver>> kept;
  kept.push_back(std::make_unique<MarshalledDriver>(driver, std::move(calls)));
  return kept.back().get();
}

}  // namespace

// What runner and thread share; whoever is last frees it.
struct MacroRunner::Execution {
  std::shared_ptr<WindowCalls> calls;
  std::optional<ScriptRun> script;

  std::mutex mutex;
  std::condition_variable changed;
  // Under the mutex.
  std::string output;
  bool flushPosted = false;
  bool stopped = false;
  bool ended = false;
  ScriptOutcome outcome;

  // True when the output has become due for a flush.
  bool Add(const std::string& text) {
    std::unique_lock<std::mutex> lock(mutex);
    changed.wait(lock, [this] { return output.size() < kMostOutput || stopped; });
    if (output.size() < kMostOutput) {
      output += text;
    }
    return !std::exchange(flushPosted, true);
  }
  std::string TakeOutput() {
    const std::lock_guard<std::mutex> lock(mutex);
    flushPosted = false;
    changed.notify_all();
    return std::exchange(output, {});
  }
  void MarkStopped() {
    const std::lock_guard<std::mutex> lock(mutex);
    stopped = true;
    changed.notify_all();
  }
  void End(ScriptOutcome result) {
    const std::lock_guard<std::mutex> lock(mutex);
    outcome = std::move(result);
    ended = true;
    changed.notify_all();
  }
  bool WaitForEnd(milliseconds time) {
    std::unique_lock<std::mutex> lock(mutex);
    return changed.wait_for(lock, time, [this] { return ended; });
  }
  // On its own thread: the macro may hold the interpreter's lock for long.
  static void Interrupt(const std::shared_ptr<Execution>& execution) {
    std::thread([execution] { execution->script->Interrupt(); }).detach();
  }
};

MacroRunner::MacroRunner(DialogDriver& driver, QString packageFolder, QObject* parent)
    : QObject(parent), driver_(driver), packageFolder_(std::move(packageFolder)) {}

MacroRunner::~MacroRunner() {
  if (execution_ == nullptr) {
    return;
  }
  execution_->MarkStopped();
  execution_->calls->Close();
  bool ended = execution_->WaitForEnd(milliseconds(0));
  for (milliseconds waited(0); !ended && waited < kPatience; waited += kInterruptPause) {
    Execution::Interrupt(execution_);
    ended = execution_->WaitForEnd(kInterruptPause);
  }
  if (ended) {
    thread_.join();
  } else {
    thread_.detach();
  }
}

bool MacroRunner::Run(const QString& file) {
  if (interpreterTaken.exchange(true)) {
    return false;
  }
  execution_ = std::make_shared<Execution>();
  const auto calls = execution_->calls = std::make_shared<WindowCalls>(*this);
  // A thread that the macro has left behind may still print.
  const auto write = [this, calls, weak = std::weak_ptr(execution_)](const std::string& text) {
    const std::shared_ptr<Execution> execution = weak.lock();
    if (execution != nullptr && execution->Add(text)) {
      calls->Post([this] { QTimer::singleShot(kOutputPace, this, &MacroRunner::Flush); });
    }
  };
  execution_->script.emplace(ScriptRun::Surroundings{
      file.toStdString(), packageFolder_.toStdString(), KeptDriver(driver_, calls), write});
  const std::string fault = StartInterpreter();
  thread_ = std::thread([this, calls, fault, execution = execution_] {
    ScriptOutcome outcome = fault.empty() ? execution->script->Run() : ScriptOutcome{false, fault};
    interpreterTaken = false;
    calls->Post([this] { Done(); });
    calls->Close();
    execution->End(std::move(outcome));
  });
  return true;
}

void MacroRunner::Stop() {
  if (execution_ == nullptr) {
    return;
  }
  execution_->MarkStopped();
  execution_->calls->Stop();
  Execution::Interrupt(execution_);
  Q_EMIT Stopping();
}

void MacroRunner::Flush() {
  if (execution_ == nullptr) {
    return;
  }
  const std::string text = execution_->TakeOutput();
  if (!text.empty()) {
    Q_EMIT Output(QString::fromStdString(text));
  }
}

void MacroRunner::Done() {
  thread_.join();
  Flush();
  const std::shared_ptr<Execution> execution = std::exchange(execution_, nullptr);
  const ScriptOutcome& outcome = execution->outcome;
  const QString error = execution->stopped && !outcome.ok ? tr("The macro was stopped")
                                                          : QString::fromStdString(outcome.error);
  Q_EMIT Finished(outcome.ok, error);
}

}  // namespace poweranalysis
