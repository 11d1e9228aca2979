#include "desktop/MacroHost.h"

#include <QCoreApplication>
#include <QFile>

#ifdef POWERANALYSIS_EMBEDS_PYTHON
#include "macros/MacroRunner.h"
#endif

namespace poweranalysis {

MacroHost::MacroHost(MainWindow& window) : QObject(&window), window_(window), driver_(window) {}

#ifdef POWERANALYSIS_EMBEDS_PYTHON

namespace {

// A program in its build tree has the package beside it; an installed one finds it by itself.
QString PackageFolder() {
  const QString folder = QCoreApplication::applicationDirPath() + QStringLiteral("/../python");
  return QFile::exists(folder) ? folder : QString();
}

}  // namespace

MacroHost::~MacroHost() = default;

bool MacroHost::IsAvailable() { return true; }

bool MacroHost::running() const { return runner_ != nullptr && runner_->running(); }

bool MacroHost::Run(const QString& path) {
  if (running()) {
    return false;
  }
  if (runner_ == nullptr) {
    runner_ = std::make_unique<MacroRunner>(driver_, PackageFolder());
    connect(runner_.get(), &MacroRunner::Output, this, &MacroHost::Printed);
    connect(runner_.get(), &MacroRunner::Stopping, this, [this] { window_.host().Cancel(); });
    connect(runner_.get(), &MacroRunner::Finished, this, [this](bool ok, const QString& error) {
      window_.host().automation = false;
      Q_EMIT Finished(ok ? QString() : error.isEmpty() ? tr("The macro failed.") : error);
    });
  }
  window_.host().automation = true;
  const bool started = runner_->Run(path);
  window_.host().automation = started;
  return started;
}

void MacroHost::Stop() {
  if (running()) {
    runner_->Stop();
  }
}

#else

class MacroRunner {};

MacroHost::~MacroHost() = default;
bool MacroHost::IsAvailable() { return false; }
bool MacroHost::running() const { return false; }
bool MacroHost::Run(const QString&) { return false; }
void MacroHost::Stop() {}

#endif

}  // namespace poweranalysis
