#pragma once

#include <QObject>
#include <QString>
#include <memory>
#include <thread>

#include "host/DialogDriver.h"

namespace poweranalysis {

// Runs macros inside this process, one at a time, each on its own thread. What a macro does to the
// dialogs is carried out on the thread that the runner lives on. All members are called, and all
// signals sent, on that thread.
class MacroRunner : public QObject {
  Q_OBJECT

 public:
  // The folder is the one that holds the package `poweranalysis`; empty: where Python itself looks.
  // The driver must outlive the runner.
  MacroRunner(DialogDriver& driver, QString packageFolder, QObject* parent = nullptr);
  // Stops a macro that runs. One that does not heed it within moments is left to itself; it cannot
  // reach the dialogs any more.
  ~MacroRunner() override;

  // False, and nothing else, while a macro runs in this process. Else Finished follows.
  bool Run(const QString& file);
  // Interrupts the macro, an endless loop too; it moves no dialog any more. A call into other code
  // that takes long ends first. Again when the macro caught the interrupt and goes on.
  void Stop();
  bool running() const { return execution_ != nullptr; }

 Q_SIGNALS:
  // What the macro printed, in order.
  void Output(const QString& text);
  // A macro is being stopped: a search that it has set off should be cancelled.
  void Stopping();
  // The error has the traceback; it is empty when ok.
  void Finished(bool ok, const QString& error);

 private:
  struct Execution;

  void Flush();
  void Done();

  DialogDriver& driver_;
  QString packageFolder_;
  std::shared_ptr<Execution> execution_;  // null when no macro runs
  std::thread thread_;
};

}  // namespace poweranalysis
