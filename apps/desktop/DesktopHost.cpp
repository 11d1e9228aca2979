#include "desktop/DesktopHost.h"

#include <QClipboard>
#include <QCoreApplication>
#include <QEventLoop>
#include <QGuiApplication>
#include <QMimeData>
#include <utility>

#include "desktop/NeighbourPowers.h"
#include "desktop/Strings.h"
#include "desktop/StudyInputs.h"
#include "exporters/Exporters.h"
#include "frame/PowerAnalysis.h"
#include "office/SheetFile.h"
#include "output/Answers.h"
#include "output/Reports.h"

namespace poweranalysis {

namespace {

// How often the window comes to life during a search.
constexpr int kPumpMilliseconds = 15;
constexpr int kOptionsControl = 10710;

}  // namespace

DesktopHost::DesktopHost(StudyBook& book, Factory factory, QObject* parent)
    : QObject(parent), book_(book), factory_(std::move(factory)) {
  qRegisterMetaType<ProgressState>();
  sincePump_.start();
  sinceStart_.start();
}

DesktopHost::~DesktopHost() { DesktopHost::EndAnalysis(); }

// --- Running an analysis.

bool DesktopHost::StartAnalysis() {
  if (busy()) {
    Q_EMIT Refused();
    return false;
  }
  EndAnalysis();
  analysis_ = factory_();
  if (analysis_ == nullptr) {
    return false;
  }
  Start(*analysis_);
  return dialog() != nullptr;
}

void DesktopHost::EndAnalysis() {
  const bool open = dialog() != nullptr;
  RunningHost::EndAnalysis();
  analysis_.reset();
  if (open) {
    Q_EMIT DialogClosed();
  }
}

long DesktopHost::Send(const DialogEvent& event) {
  if (dialog() == nullptr) {
    return 0;
  }
  if (busy()) {
    Q_EMIT Refused();
    return 0;
  }
  if (RefusesUnreadable(event)) {
    return 0;
  }
  sentOutput_ = false;
  sinceStart_.start();
  if (event.message == MessageCommand) {
    Q_EMIT Doing(event);
    if (event.control == kOptionsControl) {
      Q_EMIT OptionsWanted();
    }
  }
  return RunningHost::Send(event);
}

// A box that cannot be read counts as 0, which nobody typed. A script gets the same numbers here as
// without a window.
bool DesktopHost::RefusesUnreadable(const DialogEvent& event) {
  const bool press = event.message == MessageCommand && event.notification == Notification::Command;
  if (automation || !press || !widgets()->TakesValues(event.control)) {
    return false;
  }
  const std::vector<UnreadableBox> boxes = widgets()->UnreadableBoxes();
  if (!boxes.empty()) {
    Q_EMIT BoxesUnreadable(event.control, boxes);
  }
  return !boxes.empty();
}

// Messages are shown when the command has ended, so that repeats join and no box stops a search.
void DesktopHost::CommandEnded() {
  KeepResultsInPlace();
  const std::vector<Message> messages = TakeMessages();
  if (sentOutput_) {
    book_.AddMessages(messages);
  }
  if (frozen_) {
    frozen_ = false;
    Q_EMIT Frozen(false);
  }
  if (!messages.empty()) {
    Q_EMIT MessagesReady(JoinRepeats(messages));
  }
  Q_EMIT CommandDone();
}

// --- Dialogs.

// The widgets may be inside one of their own signals when their dialog closes.
std::shared_ptr<FormView> DesktopHost::MakeView(const std::shared_ptr<FormModel>& form) {
  std::shared_ptr<DesktopForm> shown(new DesktopForm(form),
                                     [](DesktopForm* f) { f->deleteLater(); });
  connect(shown.get(), &DesktopForm::Commanded, this,
          [this, sender = shown.get()](int control, Notification notification) {
            if (sender == widgets()) {
              Send({MessageCommand, control, notification});
            }
          });
  return shown;
}

DesktopForm* DesktopHost::widgets() const { return static_cast<DesktopForm*>(view()); }

void DesktopHost::DialogOnTop(bool opened) {
  // A modal dialog goes on with the study of the one below.
  freshStudy_ = freshStudy_ || (opened && !dialog()->IsModal());
  Q_EMIT DialogShown();
}

void DesktopHost::NothingOpened(int /*stage*/) { Q_EMIT DialogClosed(); }

// --- Progress.

void DesktopHost::ProgressChanged(BarChange change) {
  if (change != BarChange::Titled) {
    Q_EMIT ProgressMoved(progress());
  }
}

bool DesktopHost::lookbr() {
  const bool patient = sinceStart_.elapsed() < patienceMilliseconds;
  if (!patient && (sincePump_.elapsed() >= kPumpMilliseconds || !frozen_)) {
    if (!frozen_) {
      frozen_ = true;
      Q_EMIT Frozen(true);
    }
    QCoreApplication::processEvents(QEventLoop::AllEvents, kPumpMilliseconds);
    sincePump_.restart();
  }
  return RunningHost::lookbr();
}

// --- File choosers.

std::optional<std::string> DesktopHost::DoFileSaveAsDlg(const std::string& title,
                                                        const std::string& startName,
                                                        const std::string& extension) {
  return chooseFile ? chooseFile({true, title, startName, extension}) : std::nullopt;
}

std::optional<std::string> DesktopHost::DoFileOpenDlg(const std::string& title,
                                                      const std::string& extension) {
  return chooseFile ? chooseFile({false, title, {}, extension}) : std::nullopt;
}

// --- Clipboard and sheets.

std::optional<std::string> DesktopHost::GetClipboardText() {
  const QMimeData* data = QGuiApplication::clipboard()->mimeData();
  if (data == nullptr || !data->hasText()) {
    return std::nullopt;
  }
  return WithPlainMinus(FromText(data->text()));
}

bool DesktopHost::SetClipboardText(const std::string& text) {
  QGuiApplication::clipboard()->setText(ToText(text));
  return true;
}

std::optional<Sheet> DesktopHost::OpenSheet(const std::string& path) {
  SheetResult result = ReadAnySheet(path);
  if (!result.error.empty()) {
    Q_EMIT SheetUnreadable(ToText(path), ToText(result.error));
    return std::nullopt;
  }
  return std::move(result.sheet);
}

// --- Output.

CatalogueDialog DesktopHost::Entry() const {
  const CAnalysisDialog* stage = stageDialog();
  return stage == nullptr ? CatalogueDialog{} : FindDialog(stage->resource());
}

void DesktopHost::PrepareStudy(bool forTable) {
  sentOutput_ = true;
  const bool hasTable = !book_.empty() && SummaryOf(book_.studies().back().study) != nullptr;
  if (!freshStudy_ && book_.growing() && !(forTable && hasTable)) {
    return;
  }
  freshStudy_ = false;
  const CatalogueDialog entry = Entry();
  if (entry.dialog == nullptr) {
    book_.StartStudy(tr("Study"), {}, {});
    return;
  }
  const TaskRow& task = Tasks(entry.mode)[static_cast<std::size_t>(entry.row)];
  const ModeRow& mode = Modes()[static_cast<std::size_t>(entry.mode)];
  if (dialog()->IsModal()) {
    // Cells are nobody's result: no field of the page has a part in them.
    book_.StartStudy(ToText(form()->spec().title), task.family, mode.word);
    return;
  }
  book_.StartStudy(
      ToText(LoadText(task.name)) + QStringLiteral(" \u2013 ") + ToText(LoadText(mode.name)),
      task.family, mode.word, InputsOf(entry));
}

int DesktopHost::looka4(SummaryTable table) {
  PrepareStudy(true);
  const CatalogueDialog entry = Entry();
  std::vector<QString> note;
  if (entry.dialog != nullptr && entry.mode == ModeSampleSize && !IsCellMeans(table)) {
    note = NeighbourNote(entry.row, table, options.digits);
  }
  std::vector<Answer> answers = AnswersOf(table, *Block());
  book_.Add(std::move(table));
  book_.SetAnswers(std::move(answers));
  if (!note.empty()) {
    book_.SetNote(std::move(note));
  }
  return static_cast<int>(book_.studies().size());
}

void DesktopHost::type(const std::string& paragraph) {
  PrepareStudy(false);
  book_.AddParagraph(paragraph);
}

void DesktopHost::KeepResultsInPlace() {
  std::optional<ResultsInPlace> results =
      dialog() == nullptr ? std::nullopt : dialog()->TakeResults();
  if (!results) {
    return;
  }
  looka4(std::move(results->table));
  book_.SetAnswers(std::move(results->answers));
  for (const std::string& paragraph : results->report.paragraphs) {
    EmitReportParagraph(paragraph);
  }
}

int DesktopHost::NewGeneralMultipleChart(Chart chart) {
  PrepareStudy(false);
  book_.Add(std::move(chart));
  return 1;
}

}  // namespace poweranalysis
