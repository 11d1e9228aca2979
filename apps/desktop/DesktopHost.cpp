#include "desktop/DesktopHost.h"

#include <QCoreApplication>
#include <QEventLoop>
#include <algorithm>
#include <utility>

#include "desktop/NeighbourPowers.h"
#include "desktop/Strings.h"
#include "desktop/StudyInputs.h"
#include "frame/PowerAnalysis.h"
#include "output/Answers.h"
#include "output/Reports.h"

namespace poweranalysis {

namespace {

// How often the window comes to life during a search.
constexpr int kPumpMilliseconds = 15;
constexpr int kOptionsControl = 10710;

// Repeats of one text become one message with their count.
std::vector<Message> Joined(const std::vector<Message>& messages) {
  std::vector<Message> joined;
  for (const Message& message : messages) {
    const auto same = std::find_if(joined.begin(), joined.end(), [&](const Message& other) {
      return other.id == message.id && other.text == message.text;
    });
    if (same == joined.end()) {
      joined.push_back(message);
    } else {
      same->count += message.count;
    }
  }
  return joined;
}

}  // namespace

DesktopHost::DesktopHost(StudyBook& book, Factory factory, QObject* parent)
    : QObject(parent), book_(book), factory_(std::move(factory)) {
  qRegisterMetaType<ProgressState>();
  sincePump_.start();
  sinceStart_.start();
}

DesktopHost::~DesktopHost() { EndAnalysis(); }

// --- Running an analysis.

bool DesktopHost::StartAnalysis() {
  if (busy_) {
    Q_EMIT Refused();
    return false;
  }
  EndAnalysis();
  analysis_ = factory_();
  if (analysis_ == nullptr) {
    return false;
  }
  busy_ = true;
  analysis_->AttachHost(this);
  analysis_->StartSequence();
  FollowExit();
  Finish();
  return dialog_ != nullptr;
}

void DesktopHost::EndAnalysis() {
  const bool open = dialog_ != nullptr;
  dialog_.reset();
  form_.reset();
  nextDialog_.reset();
  nextForm_.reset();
  analysis_.reset();
  if (open) {
    Q_EMIT DialogClosed();
  }
}

bool DesktopHost::CreateAnalysisDialog(std::unique_ptr<CAnalysisDialog> dialog) {
  if (dialog == nullptr) {
    return false;
  }
  nextDialog_ = std::move(dialog);
  nextForm_ = FormPointer(new DesktopForm);
  DesktopForm* form = nextForm_.get();
  connect(form, &DesktopForm::Commanded, this,
          [this, form](int control, Notification notification) {
            if (form == form_.get()) {
              Send({MessageCommand, control, notification});
            }
          });
  nextDialog_->AttachForm(form);
  nextDialog_->CallEventHandler({MessageStart, 0, Notification::Command});
  return true;
}

long DesktopHost::Send(const DialogEvent& event) {
  if (dialog_ == nullptr) {
    return 0;
  }
  if (busy_) {
    Q_EMIT Refused();
    return 0;
  }
  if (RefusesUnreadable(event)) {
    return 0;
  }
  busy_ = true;
  wasCancelled_ = false;
  sentOutput_ = false;
  sinceStart_.start();
  if (event.message == MessageCommand) {
    Q_EMIT Doing(event);
    if (event.control == kOptionsControl) {
      Q_EMIT OptionsWanted();
    }
  }
  const long result = dialog_->CallEventHandler(event);
  KeepResultsInPlace();
  FollowExit();
  Finish();
  return result;
}

// A box that cannot be read counts as 0, which nobody typed. A script gets the same numbers here as
// without a window.
bool DesktopHost::RefusesUnreadable(const DialogEvent& event) {
  const bool press = event.message == MessageCommand && event.notification == Notification::Command;
  if (automation || !press || !form_->TakesValues(event.control)) {
    return false;
  }
  const std::vector<UnreadableBox> boxes = form_->UnreadableBoxes();
  if (!boxes.empty()) {
    Q_EMIT BoxesUnreadable(event.control, boxes);
  }
  return !boxes.empty();
}

void DesktopHost::Finish() {
  if (sentOutput_) {
    book_.AddMessages(messages_);
  }
  busy_ = false;
  if (frozen_) {
    frozen_ = false;
    Q_EMIT Frozen(false);
  }
  const std::vector<Message> messages = Joined(std::exchange(messages_, {}));
  if (!messages.empty()) {
    Q_EMIT MessagesReady(messages);
  }
  Q_EMIT CommandDone();
}

void DesktopHost::OpenNext() {
  form_ = std::move(nextForm_);
  dialog_ = std::move(nextDialog_);
  freshStudy_ = true;
  ++dialogNumber_;
  Q_EMIT DialogOpened();
}

void DesktopHost::FollowExit() {
  while (analysis_ != nullptr) {
    if (nextDialog_ != nullptr) {
      OpenNext();
    }
    const std::optional<PendingExit> exit = analysis_->TakePendingExit();
    if (!exit) {
      return;
    }
    dialog_.reset();
    form_.reset();
    analysis_->ForwardSequence(exit->stage, exit->kind);
    if (nextDialog_ == nullptr) {
      if (exit->stage != 0) {
        ReopenStartup();
      } else {
        Q_EMIT DialogClosed();
      }
    }
  }
}

// A task whose dialogs are not there yet would end the analysis without a message.
void DesktopHost::ReopenStartup() {
  QString task;
  if (const PowerSettingsHead* block = Module().settings) {
    const int mode = block->Mode;
    const int row =
        mode >= 0 && mode < ModeCount ? block->Selection[static_cast<std::size_t>(mode)] : -1;
    if (row >= 0 && static_cast<std::size_t>(row) < Tasks(mode).size()) {
      task = ToText(LoadText(Tasks(mode)[static_cast<std::size_t>(row)].name));
    }
  }
  Q_EMIT TaskUnavailable(task);
  analysis_->ForwardSequence(StageStartup, ExitBack);
}

// --- Memory and keyword files.

int DesktopHost::AllocMem(void** block, std::size_t bytes) {
  return services_.AllocMem(block, bytes);
}

int DesktopHost::GetMem(void** block, std::size_t bytes) { return services_.GetMem(block, bytes); }

void DesktopHost::FreeMem(void* block) { services_.FreeMem(block); }

std::optional<KeywordValue> DesktopHost::GetInitKeywordPrivate(KeywordKind kind,
                                                               const std::string& file,
                                                               const std::string& section,
                                                               const std::string& key) {
  return services_.GetInitKeywordPrivate(kind, file, section, key);
}

KeywordSection DesktopHost::GetInitSection(const std::string& file, const std::string& section) {
  return services_.GetInitSection(file, section);
}

int DesktopHost::BeginInitKeywords(const std::string& file) {
  return services_.BeginInitKeywords(file);
}

int DesktopHost::PutInitKeywordPrivate(const std::string& file,
                                       const std::string& section,
                                       const std::string& key,
                                       const KeywordValue& factory,
                                       const KeywordValue& value) {
  return services_.PutInitKeywordPrivate(file, section, key, factory, value);
}

int DesktopHost::EndInitKeywords(const std::string& file) {
  return services_.EndInitKeywords(file);
}

std::string DesktopHost::InitKeywordsError() const { return services_.InitKeywordsError(); }

// --- Messages. They are shown when the command has ended, so that repeats join and no box stops a
// search.

void DesktopHost::DspMessageBox(unsigned /*flags*/,
                                WindowHandle /*parent*/,
                                int textId,
                                const std::string& text) {
  ++messageCount_;
  // Neighbours join here as they do without a window; what is shown joins all repeats of a command.
  if (!messages_.empty() && messages_.back().id == textId && messages_.back().text == text) {
    ++messages_.back().count;
    return;
  }
  messages_.push_back({textId, text, 1});
}

// --- Progress.

void DesktopHost::d_pbar(const std::string& title) { progress_.title = title; }

void DesktopHost::dstart(int count) {
  progress_.count = count;
  progress_.position = 0;
  progress_.open = true;
  Q_EMIT ProgressChanged(progress_);
}

void DesktopHost::termom(int position) {
  progress_.position = position;
  Q_EMIT ProgressChanged(progress_);
}

void DesktopHost::dstop() {
  progress_.open = false;
  Q_EMIT ProgressChanged(progress_);
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
  return wasCancelled_;
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

// --- Output.

void DesktopHost::PrepareStudy(bool forTable) {
  sentOutput_ = true;
  const bool hasTable = !book_.empty() && SummaryOf(book_.studies().back().study) != nullptr;
  if (!freshStudy_ && book_.growing() && !(forTable && hasTable)) {
    return;
  }
  freshStudy_ = false;
  const CatalogueDialog entry =
      dialog_ == nullptr ? CatalogueDialog{} : FindDialog(dialog_->resource());
  if (entry.dialog == nullptr) {
    book_.StartStudy(tr("Study"), {}, {});
    return;
  }
  const TaskRow& task = Tasks(entry.mode)[static_cast<std::size_t>(entry.row)];
  const ModeRow& mode = Modes()[static_cast<std::size_t>(entry.mode)];
  book_.StartStudy(
      ToText(LoadText(task.name)) + QStringLiteral(" \u2013 ") + ToText(LoadText(mode.name)),
      task.family, mode.word, InputsOf(entry));
}

int DesktopHost::looka4(SummaryTable table) {
  PrepareStudy(true);
  const CatalogueDialog entry =
      dialog_ == nullptr ? CatalogueDialog{} : FindDialog(dialog_->resource());
  std::vector<QString> note;
  if (entry.dialog != nullptr && entry.mode == ModeSampleSize) {
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
  std::optional<ResultsInPlace> results = dialog_->TakeResults();
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

void DesktopHost::RestoreResults() {}

}  // namespace poweranalysis
