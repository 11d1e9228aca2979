#include "desktop/WindowTest.h"
#include "support/SmallAnalysis.h"

using namespace poweranalysis;
using poweranalysis::testing::SmallAnalysis;
namespace small = poweranalysis::testing::small;

// What the window's host shares with the one that has no window, and how modal dialogs show.
class HostsTest : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  static void initTestCase() { PrepareApplication(); }
  void dialogsLiveTheSameLifeWithAndWithoutAWindow();
  void aModalDialogStandsInForTheOneBelowAndGivesItBackAsItWas();
  void escapeEndsAModalDialogAndNotTheAnalysis();
  void resultsOfAModalDialogBelongToTheStudyOfTheOneBelow();
  void aWindowClosesWithAModalDialogOpen();
};

namespace {

struct Step {
  int control = 0;
  const char* text = nullptr;  // typed, where there is one
  bool breaks = false;         // the user loses patience during the command
  bool breaksBefore = false;   // and here too late, after the one before
};

// Each dialog is given its number before it goes on: the window wants one.
const Step kSteps[] = {
    {small::Speak},
    {small::Search},
    {small::Search, nullptr, true},
    {small::Search, nullptr, false, true},
    {small::Edit, "1.50"},
    {small::OpenModal},
    {small::Speak},
    {small::Edit, "3"},
    {small::OpenModal},
    {small::Edit, "4"},
    {small::Search, nullptr, true},
    {small::Forward},
    {small::Back},
    {small::OpenModalAndLeave},
    {small::Edit, "x"},
    {small::Edit, "2"},
    {small::OpenModal},
    {small::Back},
    {small::Back},
};

// What a run of all steps shows, a line for each thing.
QStringList Story(RunningHost& host,
                  SmallAnalysis& analysis,
                  const std::function<std::vector<Message>()>& takeMessages) {
  QStringList lines;
  const auto log = analysis.log;
  for (const Step& step : kSteps) {
    if (step.breaksBefore) {
      host.Cancel();
    }
    analysis.onPoll = [&](int at) {
      if (step.breaks && at == 4) {
        host.Cancel();
      }
    };
    step.text == nullptr ? host.Press(step.control) : host.Type(step.control, step.text);
    for (const std::string& line : std::exchange(*log, {})) {
      lines += QString::fromStdString(line);
    }
    const int calls = host.messageCalls();
    for (const Message& message : takeMessages()) {
      lines += QStringLiteral("says %1 %2 times")
                   .arg(QString::fromStdString(message.text))
                   .arg(message.count);
    }
    const int resource = host.dialog() == nullptr ? 0 : host.dialog()->resource();
    lines += QStringLiteral("dialog %1 is the %2th, %3 calls, bar at %4 of %5, %6")
                 .arg(resource)
                 .arg(host.dialogNumber())
                 .arg(calls)
                 .arg(host.progress().position)
                 .arg(host.progress().count)
                 .arg(host.WasCanceled() ? "cancelled" : "not cancelled");
    if (host.form() != nullptr) {
      lines += QString::fromStdString(host.form()->GetDlgItemText(small::Edit));
    }
    if (resource == 0) {
      break;
    }
  }
  return lines;
}

QStringList HeadlessStory() {
  SmallAnalysis analysis;
  HeadlessHost host;
  host.Start(analysis);
  return Story(host, analysis, [&host] {
    std::vector<Message> shown = JoinRepeats(host.messages());
    host.ClearMessages();
    return shown;
  });
}

QStringList WindowStory() {
  StudyBook book;
  SmallAnalysis* analysis = nullptr;
  DesktopHost host(book, [&analysis] {
    auto made = std::make_unique<SmallAnalysis>();
    analysis = made.get();
    return made;
  });
  std::vector<Message> shown;
  QObject::connect(&host, &DesktopHost::MessagesReady,
                   [&shown](const std::vector<Message>& messages) { shown = messages; });
  host.StartAnalysis();
  return Story(host, *analysis, [&] {
    host.ClearMessages();
    return std::exchange(shown, {});
  });
}

// A modal dialog of the analysis that runs in the window.
class ModalDialog : public CAnalysisModalDialog {
 public:
  explicit ModalDialog(CAnalysisSupport& analysis) : CAnalysisModalDialog(analysis, 1) {}
  DialogSpec Spec() const override { return small::Spec(1); }

 protected:
  long EventHandler(const DialogEvent& event) override {
    if (event.message == MessageStart) {
      form().AddDlgTabs(Spec());
    } else if (event.control == small::Back) {
      ExitDialog(0, ExitBack, 0);
    } else if (event.control == small::Speak) {
      analysis().host().type("a paragraph");
    }
    return 1;
  }
};

// Presses a button, and opens a modal dialog while the dialog answers.
void PressAndOpen(WindowDriver& driver, int button) {
  DesktopHost& host = driver.window().host();
  const auto opening = std::make_shared<QMetaObject::Connection>();
  *opening = QObject::connect(&host, &DesktopHost::Doing, [&host, opening] {
    QObject::disconnect(*opening);
    host.CreateAnalysisDialog(std::make_unique<ModalDialog>(host.dialog()->analysis()));
  });
  driver.Click(button);
}

}  // namespace

void HostsTest::dialogsLiveTheSameLifeWithAndWithoutAWindow() {
  const QStringList story = HeadlessStory();
  QVERIFY(story.contains(QStringLiteral("says a 3 times")));
  QVERIFY(story.contains(QStringLiteral("searched 4")));
  QVERIFY(story.contains(QStringLiteral("900 133")));
  QVERIFY(story.contains(QStringLiteral("102 gone")));
  QCOMPARE(WindowStory(), story);
}

void HostsTest::aModalDialogStandsInForTheOneBelowAndGivesItBackAsItWas() {
  WindowDriver driver;
  driver.ChooseTask(ModePower, 0);
  driver.Type(control::Mu, QStringLiteral("12.5"));
  const DesktopForm* below = &driver.form();
  auto* radio = driver.Find<QAbstractButton>(control::UpperTail);
  radio->setFocus();
  const std::uint64_t number = driver.window().host().dialogNumber();
  PressAndOpen(driver, control::UpperTail);
  QCOMPARE(driver.resource(), 1);
  QVERIFY(&driver.form() != below);
  QVERIFY(driver.form().isVisible());
  QVERIFY(!below->isEnabled());
  QVERIFY(!below->isVisible());
  driver.Click(small::Back);
  QCOMPARE(&driver.form(), below);
  QVERIFY(below->isVisible());
  QVERIFY(below->isEnabled());
  QCOMPARE(driver.window().focusWidget(), radio);
  QCOMPARE(driver.Text(control::Mu), QStringLiteral("12.5"));
  QCOMPARE(driver.window().host().dialogNumber(), number);
}

void HostsTest::escapeEndsAModalDialogAndNotTheAnalysis() {
  WindowDriver driver;
  driver.ChooseTask(ModePower, 0);
  const int parameters = driver.resource();
  PressAndOpen(driver, control::UpperTail);
  QTest::keyClick(&driver.form(), Qt::Key_Escape);
  WindowDriver::Settle();
  QCOMPARE(driver.resource(), parameters);
  driver.Click(control::Accept);
  QVERIFY(driver.resource() != parameters);
}

void HostsTest::resultsOfAModalDialogBelongToTheStudyOfTheOneBelow() {
  WindowDriver driver;
  driver.ChooseTask(ModePower, 0);
  driver.Click(control::Accept);
  driver.Click(control::Accept);
  QCOMPARE(driver.studies().size(), std::size_t{1});
  const std::size_t items = driver.studies().front().study.workbook.items.size();
  PressAndOpen(driver, control::PowerVsN);
  driver.window().host().Press(small::Speak);
  QCOMPARE(driver.studies().size(), std::size_t{1});
  QCOMPARE(driver.studies().front().study.workbook.items.size(), items + 2);
}

void HostsTest::aWindowClosesWithAModalDialogOpen() {
  WindowDriver driver;
  driver.ChooseTask(ModePower, 0);
  PressAndOpen(driver, control::UpperTail);
  PressAndOpen(driver, small::OpenModal);
  QCOMPARE(driver.resource(), 1);
}

QTEST_MAIN(HostsTest)
#include "Hosts_test.moc"
