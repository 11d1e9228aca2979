#pragma once

#include <QAbstractButton>
#include <QApplication>
#include <QLineEdit>
#include <QListWidget>
#include <QMessageBox>
#include <QPushButton>
#include <QStyleFactory>
#include <QTest>
#include <QTimer>
#include <clocale>
#include <memory>
#include <optional>
#include <thread>

#include "desktop/ChartView.h"
#include "desktop/DesktopForm.h"
#include "desktop/MainWindow.h"
#include "desktop/ResultPages.h"
#include "exporters/Exporters.h"
#include "host/HeadlessHost.h"
#include "module/PowerAnalysisModule.h"
#include "output/Answers.h"
#include "settings/PowerSettings.h"
#include "support/TemporaryFolder.h"

// Drives the real window as a user does: by keys and clicks on the widgets of the open dialog.
namespace poweranalysis {

namespace control {
constexpr int Accept = 1;
constexpr int Back = 2;
constexpr int Modes = 101;
constexpr int Tasks = 102;
constexpr int SampleSize = 104;
constexpr int Mu0 = 108;
constexpr int Alpha = 111;
constexpr int Mu = 112;
constexpr int PowerGoal = 114;
constexpr int RestoreDefaults = 118;
constexpr int Sigma = 119;
constexpr int NStart = 129;
constexpr int NInterval = 140;
constexpr int PowerVsN = 203;
constexpr int PowerVsEs = 204;
constexpr int ChangeParams = 208;
constexpr int NVsPower = 605;
constexpr int UpperTail = 1211;
constexpr int Mu1 = 21023;
constexpr int Mu2 = 21024;
constexpr int SampleSizeN1 = 21064;
constexpr int SampleSizeN2 = 21065;
}  // namespace control

// One action of a user: a text typed into a control, or a click on it.
struct Action {
  int control = 0;
  std::optional<std::string> text;
};

class WindowDriver {
 public:
  explicit WindowDriver(const std::string& folder = {})
      : window_(std::make_unique<MainWindow>(QString::fromStdString(folder))) {
    window_->show();
    window_->NewAnalysis();
  }

  MainWindow& window() { return *window_; }
  DesktopForm& form() { return *window_->host().widgets(); }
  int resource() const {
    return window_->host().dialog() == nullptr ? 0 : window_->host().dialog()->resource();
  }

  template <class Widget>
  Widget* Find(int number) {
    auto* widget = qobject_cast<Widget*>(form().WidgetOf(number));
    if (widget == nullptr) {
      qFatal("control %d is not there", number);
    }
    return widget;
  }

  void ChooseTask(int mode, int row) {
    ClickRow(control::Modes, mode);
    ClickRow(control::Tasks, row);
    Click(control::Accept);
  }
  void ClickRow(int list, int row) {
    auto* rows = Find<QListWidget>(list);
    rows->scrollToItem(rows->item(row));
    QTest::mouseClick(rows->viewport(), Qt::LeftButton, {},
                      rows->visualItemRect(rows->item(row)).center());
  }
  void Click(int number) {
    auto* button = Find<QAbstractButton>(number);
    // A radio button or a check box takes clicks on its mark and its words alone.
    const QPoint mark(8, button->height() / 2);
    const bool push = qobject_cast<QPushButton*>(button) != nullptr;
    QTest::mouseClick(button, Qt::LeftButton, {}, push ? button->rect().center() : mark);
    Settle();
  }
  // Replaces the text of an edit by key presses.
  void Type(int number, const QString& text) {
    auto* line = Find<QLineEdit>(number);
    line->setFocus();
    line->selectAll();
    QTest::keyClicks(line, text);
  }
  void Do(const std::vector<Action>& actions) {
    for (const Action& action : actions) {
      action.text ? Type(action.control, QString::fromStdString(*action.text))
                  : Click(action.control);
    }
  }
  QString Text(int number) { return Find<QLineEdit>(number)->text(); }

  static void Settle() {
    QApplication::processEvents();
    QApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
  }
  // Closes the message that shows and gives its text; empty when none does.
  QString TakeMessage() {
    Settle();
    QMessageBox* box = window_->openMessage();
    if (box == nullptr) {
      return {};
    }
    const QString text = box->text();
    QTest::mouseClick(box->button(QMessageBox::Ok), Qt::LeftButton);
    Settle();
    return text;
  }
  const std::vector<StudyRecord>& studies() { return window_->book().studies(); }

 private:
  std::unique_ptr<MainWindow> window_;
};

// The same actions without a window, as the JSON of a study. The state of an analysis belongs to
// its thread, and the window's analysis lives on this one.
inline std::string HeadlessJson(int mode,
                                int row,
                                const std::vector<Action>& actions,
                                const Study& like) {
  std::string json;
  std::thread([&] {
    HeadlessHost host;
    const std::unique_ptr<CPowerAnalysis> analysis(Zlv6NewAnalysis());
    host.Start(*analysis);
    host.Select(control::Modes, mode);
    host.Select(control::Tasks, row);
    host.Press(control::Accept);
    for (const Action& action : actions) {
      action.text ? host.Type(action.control, *action.text) : host.Press(action.control);
    }
    Study study;
    study.family = like.family;
    study.mode = like.mode;
    study.workbook = host.workbook();
    study.messages = host.messages();
    if (const SummaryTable* table = SummaryOf(study)) {
      study.code = table->code;
      study.answers = AnswersOf(*table, *Block());
    }
    json = ExportJson(study);
  }).join();
  return json;
}

inline void PrepareApplication() {
  std::setlocale(LC_NUMERIC, "C");
  QApplication::setStyle(QStyleFactory::create(QStringLiteral("Fusion")));
}

}  // namespace poweranalysis
