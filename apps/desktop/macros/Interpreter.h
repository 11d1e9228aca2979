#pragma once

#include <functional>
#include <string>

namespace poweranalysis {

class DialogDriver;

// Starts the Python of this process, once; empty, or why it could not be. It is never ended: some
// extension modules, NumPy among them, cannot be loaded a second time.
std::string StartInterpreter();

struct ScriptOutcome {
  bool ok = false;
  std::string error;  // with the traceback; empty when ok
};

// One script in the interpreter. Only one may run at a time.
class ScriptRun {
 public:
  struct Surroundings {
    std::string file;
    std::string packageFolder;  // where `poweranalysis` lies; empty: where Python itself looks
    // Of the dialogs; must live as long as the process, since objects of a script may outlive it.
    DialogDriver* driver = nullptr;
    // Takes what the script prints, as UTF-8, on whatever thread, without the interpreter's lock.
    std::function<void(const std::string&)> write;
  };

  explicit ScriptRun(Surroundings surroundings);

  // Runs the script on the calling thread to its end.
  ScriptOutcome Run();
  // Raises KeyboardInterrupt in the script, or as soon as it begins; nothing once it has ended.
  // Callable from any other thread; waits for the interpreter's lock, which a script may hold for
  // long.
  void Interrupt();

 private:
  class InterruptibleSpan;

  ScriptOutcome RunPrepared();

  Surroundings surroundings_;
  // Under the interpreter's lock.
  unsigned long thread_ = 0;  // Python's number of the thread, while Interrupt may raise in it
  bool interrupted_ = false;
};

}  // namespace poweranalysis
