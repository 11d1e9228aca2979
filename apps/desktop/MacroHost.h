#pragma once

#include <QObject>
#include <QString>
#include <memory>

#include "desktop/DesktopDriver.h"

namespace poweranalysis {

class MacroRunner;

// Macros on the dialogs of a window, where the program was built with an interpreter.
class MacroHost : public QObject {
  Q_OBJECT

 public:
  explicit MacroHost(MainWindow& window);
  ~MacroHost() override;

  static bool IsAvailable();
  // False while another macro runs.
  bool Run(const QString& path);
  bool running() const;
  // Ends the macro, and the search that it waits for.
  void Stop();

 Q_SIGNALS:
  void Printed(const QString& text);
  // Empty, or how it failed.
  void Finished(const QString& fault);

 private:
  MainWindow& window_;
  DesktopDriver driver_;
  std::unique_ptr<MacroRunner> runner_;  // made with the first macro
};

}  // namespace poweranalysis
