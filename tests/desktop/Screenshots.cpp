#include <QApplication>
#include <QDir>
#include <QKeyEvent>
#include <QStyleFactory>
#include <QTextStream>
#include <clocale>

#include "desktop/ChartView.h"
#include "desktop/DesktopForm.h"
#include "desktop/MainWindow.h"
#include "desktop/ResultPages.h"
#include "dialogs/Controls.h"
#include "frame/TaskCatalogue.h"

// Takes pictures of the window along one analysis, in light and dark colours and with large
// letters; with "all" behind the folder also of every dialog of the program.
namespace {

using poweranalysis::MainWindow;
using poweranalysis::ModeDistribution;
using poweranalysis::ModePower;
using poweranalysis::ModeSampleSize;
using poweranalysis::Notification;

constexpr int kModes = 101;
constexpr int kTasks = 102;
constexpr int kAccept = 1;
constexpr int kBack = 2;
constexpr int kFirstSizeChart = 603;
constexpr int kAlpha = 111;

void Settle() {
  for (int i = 0; i < 5; ++i) {
    QApplication::processEvents();
    QApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
  }
}

class Photographer {
 public:
  Photographer(MainWindow& window, QString folder) : window_(window), folder_(std::move(folder)) {}

  void Shoot(const QString& name) {
    Settle();
    window_.grab().save(QStringLiteral("%1/%2%3.png").arg(folder_, name, suffix_));
  }

  void Tour(const QString& suffix) {
    suffix_ = suffix;
    window_.NewAnalysis();
    poweranalysis::DesktopHost& host = window_.host();
    host.widgets()->Choose(kModes, 1);
    host.widgets()->Choose(kTasks, 1);
    Shoot(QStringLiteral("startup"));
    host.widgets()->Click(kAccept);
    host.widgets()->Type(kAlpha, QStringLiteral("1.5"));
    Shoot(QStringLiteral("wrong-value"));
    host.widgets()->Type(kAlpha, QStringLiteral("0.05"));
    Shoot(QStringLiteral("parameters"));
    host.widgets()->Click(kAccept);
    Shoot(QStringLiteral("results"));
    host.widgets()->Click(kAccept);
    Shoot(QStringLiteral("table"));
    const int study = static_cast<int>(window_.book().studies().size()) - 1;
    window_.SelectItem(study, 1);
    Shoot(QStringLiteral("report"));
    host.widgets()->Click(kFirstSizeChart + 2);
    Settle();
    QKeyEvent next(QEvent::KeyPress, Qt::Key_Right, Qt::NoModifier);
    QApplication::sendEvent(window_.pages().chartView(), &next);
    Shoot(QStringLiteral("chart"));
    window_.SelectStudy(study);
    Shoot(QStringLiteral("study"));
    host.widgets()->Click(kBack);
    host.widgets()->Click(kBack);
  }

  // An interval, and the tables of cell means.
  void Grids() {
    const auto open = [this](int mode, const char* family) {
      window_.NewAnalysis();
      poweranalysis::DesktopHost& host = window_.host();
      host.widgets()->Choose(kModes, mode);
      host.widgets()->Choose(kTasks, poweranalysis::FindTask(mode, family));
      host.widgets()->Click(kAccept);
    };
    open(poweranalysis::ModeInterval, "P1");
    window_.host().widgets()->Click(kAccept);
    Shoot(QStringLiteral("interval"));
    for (const char* family : {"AV1", "AV2", "PC"}) {
      open(ModePower, family);
      window_.host().widgets()->Click(poweranalysis::ControlGrid);
      Shoot(QStringLiteral("grid-%1").arg(QLatin1String(family)));
    }
    window_.host().widgets()->Click(poweranalysis::ControlGridCreate);
    Shoot(QStringLiteral("grid-created"));
  }

  // Every dialog with its defaults, and what comes out.
  void Gallery(const QString& suffix) {
    suffix_ = suffix;
    for (const int mode : {ModePower, ModeSampleSize, ModeDistribution}) {
      int row = 0;
      for (const poweranalysis::TaskRow& task : poweranalysis::Tasks(mode)) {
        ShootTask(mode, row++, QStringLiteral("%1-%2").arg(mode).arg(QLatin1String(task.family)));
      }
    }
  }

 private:
  void ShootTask(int mode, int row, const QString& name) {
    window_.NewAnalysis();
    poweranalysis::DesktopHost& host = window_.host();
    host.widgets()->Choose(kModes, mode);
    host.widgets()->Choose(kTasks, row);
    host.widgets()->Click(kAccept);
    Shoot(name + QStringLiteral("-parameters"));
    host.widgets()->Click(kAccept);
    if (mode != ModeDistribution) {
      Shoot(name + QStringLiteral("-results"));
      host.widgets()->Click(kAccept);
    }
    Shoot(name + QStringLiteral("-table"));
  }

  MainWindow& window_;
  QString folder_;
  QString suffix_;
};

}  // namespace

int main(int argc, char** argv) {
  QApplication application(argc, argv);
  std::setlocale(LC_NUMERIC, "C");
  QApplication::setStyle(QStyleFactory::create(QStringLiteral("Fusion")));
  const QStringList arguments = QApplication::arguments();
  const bool all = arguments.size() == 3 && arguments[2] == QStringLiteral("all");
  if ((arguments.size() != 2 && !all) || !QDir().mkpath(arguments[1])) {
    QTextStream(stderr) << "usage: desktop_screenshots FOLDER [all]\n";
    return 2;
  }
  MainWindow window{QString()};
  window.show();
  Photographer photographer(window, arguments[1]);
  window.SetTheme(poweranalysis::Theme::Light);
  photographer.Tour(QString());
  photographer.Grids();
  window.SetTheme(poweranalysis::Theme::Dark);
  photographer.Tour(QStringLiteral("-dark"));
  window.SetTheme(poweranalysis::Theme::Light);
  constexpr int kLargeText = 200;
  constexpr int kUsualText = 100;
  window.SetTextPercent(kLargeText);
  photographer.Tour(QStringLiteral("-large"));
  if (all) {
    photographer.Gallery(QStringLiteral("-large"));
    window.SetTextPercent(kUsualText);
    photographer.Gallery(QString());
    window.SetTheme(poweranalysis::Theme::Dark);
    photographer.Gallery(QStringLiteral("-dark"));
  }
  window.book().SetSaved();
  return 0;
}
