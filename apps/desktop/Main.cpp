#include <QApplication>
#include <QStyleFactory>
#include <QTextStream>
#include <clocale>
#include <cstring>

#include "desktop/Icons.h"
#include "desktop/MainWindow.h"
#include "desktop/Strings.h"
#include "host/ConfigFolder.h"

namespace {

// Without a screen the library below would end the program with a message that helps nobody.
bool HasScreen() {
  for (const char* name : {"QT_QPA_PLATFORM", "DISPLAY", "WAYLAND_DISPLAY"}) {
    if (!qEnvironmentVariableIsEmpty(name)) {
      return true;
    }
  }
  return false;
}

bool IsFlag(int argc, char** argv, const char* flag) {
  return argc == 2 && std::strcmp(argv[1], flag) == 0;
}

}  // namespace

int main(int argc, char** argv) {
  using poweranalysis::MainWindow;
  if (IsFlag(argc, argv, "--version") || IsFlag(argc, argv, "--help")) {
    QTextStream(stdout) << (IsFlag(argc, argv, "--version")
                                ? "poweranalysis-desktop " POWERANALYSIS_VERSION "\n"
                                : "usage: poweranalysis-desktop [WORKBOOK]\n");
    return 0;
  }
  if (!HasScreen()) {
    QTextStream(stderr)
        << "poweranalysis-desktop: there is no screen to open a window on. The same "
           "calculations run in the terminal: poweranalysis --help\n";
    return 1;
  }
  QApplication application(argc, argv);
  // Numbers never follow the conventions of a country, here or in any library.
  std::setlocale(LC_NUMERIC, "C");
  QApplication::setApplicationName(QStringLiteral("PowerAnalysis"));
  QApplication::setDesktopFileName(QStringLiteral("poweranalysis-desktop"));
  // One look on every desktop, and one that follows the palette.
  QApplication::setStyle(QStyleFactory::create(QStringLiteral("Fusion")));
  QApplication::setWindowIcon(poweranalysis::IconOf(QStringLiteral("program")));

  const QString folder = poweranalysis::ToText(
      poweranalysis::UserConfigFolder("poweranalysis", poweranalysis::ProcessEnvironment));
  MainWindow window(folder);
  window.show();
  window.OfferRecovery();
  const QStringList arguments = QApplication::arguments();
  if (arguments.size() > 1) {
    window.OpenFile(arguments[1]);
  }
  window.NewAnalysis();
  return QApplication::exec();
}
