#include "host/HeadlessHost.h"

#include <sys/stat.h>

#include <cstdlib>
#include <utility>

#include "host/KeywordFile.h"

namespace poweranalysis {

// --- Keyword files.

namespace {

// What distinguishes a changed file from the one that was read.
struct FileStamp {
  bool exists = false;
  dev_t device = 0;
  ino_t inode = 0;
  off_t size = 0;
  timespec changed{};

  bool operator==(const FileStamp& other) const {
    return exists == other.exists && device == other.device && inode == other.inode &&
           size == other.size && changed.tv_sec == other.changed.tv_sec &&
           changed.tv_nsec == other.changed.tv_nsec;
  }
};

FileStamp StampOf(const std::string& path) {
  struct stat status {};
  if (::stat(path.c_str(), &status) != 0) {
    return {};
  }
  return {true, status.st_dev, status.st_ino, status.st_size, status.st_mtim};
}

struct ReadFile {
  FileStamp stamp;
  LoadedKeywordFile loaded;
};

std::string ValueText(const KeywordValue& value) {
  return value.kind == KeywordKind::Long ? std::to_string(value.whole) : FormatReal(value.real);
}

}  // namespace

struct HeadlessHost::Keywords {
  std::map<std::string, ReadFile> read;
  std::unique_ptr<KeywordWriter> writer;

  const LoadedKeywordFile& Load(const std::string& path) {
    const FileStamp stamp = StampOf(path);
    const auto found = read.find(path);
    if (found != read.end() && found->second.stamp == stamp) {
      return found->second.loaded;
    }
    ReadFile file{stamp, LoadKeywordFile(path)};
    return read.insert_or_assign(path, std::move(file)).first->second.loaded;
  }
};

HeadlessHost::HeadlessHost() : keywords_(std::make_unique<Keywords>()) {}

HeadlessHost::~HeadlessHost() = default;

std::string HeadlessHost::ResolveKeywordFile(const std::string& file) const {
  return ResolveFileName(file, configFolder);
}

std::optional<KeywordValue> HeadlessHost::GetInitKeywordPrivate(KeywordKind kind,
                                                                const std::string& file,
                                                                const std::string& section,
                                                                const std::string& key) {
  const std::string path = ResolveKeywordFile(file);
  if (path.empty()) {
    return std::nullopt;
  }
  const LoadedKeywordFile& loaded = keywords_->Load(path);
  keywordReadError_ = loaded.error;
  const auto text = loaded.file.Find(section, key);
  if (!text) {
    return std::nullopt;
  }
  if (kind == KeywordKind::Long) {
    const auto whole = ParseLong(*text);
    return whole ? std::optional<KeywordValue>({kind, *whole, 0}) : std::nullopt;
  }
  const auto real = ParseReal(*text);
  return real ? std::optional<KeywordValue>({kind, 0, *real}) : std::nullopt;
}

KeywordSection HeadlessHost::GetInitSection(const std::string& file, const std::string& section) {
  const std::string path = ResolveKeywordFile(file);
  if (path.empty()) {
    return {};
  }
  const LoadedKeywordFile& loaded = keywords_->Load(path);
  keywordReadError_ = loaded.error;
  return {loaded.exists, loaded.error, loaded.file.Keys(section)};
}

int HeadlessHost::BeginInitKeywords(const std::string& file) {
  keywordError_.clear();
  const std::string path = ResolveKeywordFile(file);
  if (path.empty()) {
    keywordError_ = "No folder for settings files is known.";
    return 1;
  }
  keywords_->writer = std::make_unique<KeywordWriter>(
      path, IsBareFileName(file) ? KeywordWriter::MissingFolder::Create
                                 : KeywordWriter::MissingFolder::Refuse);
  const KeywordResult status = keywords_->writer->status();
  if (!status.ok) {
    keywordError_ = status.error;
    keywords_->writer.reset();
    return 1;
  }
  return 0;
}

int HeadlessHost::PutInitKeywordPrivate(const std::string& /*file*/,
                                        const std::string& section,
                                        const std::string& key,
                                        const KeywordValue& /*factory*/,
                                        const KeywordValue& value) {
  if (failKeyword > 0 && --failKeyword == 0) {
    keywordError_ = "The keyword could not be written.";
    return 1;
  }
  if (keywords_->writer == nullptr) {
    return 1;
  }
  if (key.empty()) {
    // A field without a key text: many readers reject a line without a key, so it is not written.
    return 0;
  }
  keywords_->writer->Put(section, key, ValueText(value));
  ++calls.keywordsWritten;
  return 0;
}

int HeadlessHost::EndInitKeywords(const std::string& file) {
  if (keywords_->writer == nullptr) {
    return 1;
  }
  const KeywordResult result = keywords_->writer->Commit();
  keywords_->writer.reset();
  keywords_->read.erase(ResolveKeywordFile(file));
  if (!result.ok) {
    keywordError_ = result.error;
  }
  return result.ok ? 0 : 1;
}

// --- Running an analysis.

int HeadlessHost::Start(CAnalysisSupport& analysis) {
  analysis_ = &analysis;
  analysis.AttachHost(this);
  const int result = analysis.StartSequence();
  FollowExit();
  return result;
}

bool HeadlessHost::CreateAnalysisDialog(std::unique_ptr<CAnalysisDialog> dialog) {
  if (dialog == nullptr || failDialog) {
    return false;
  }
  nextDialog_ = std::move(dialog);
  nextForm_ = std::make_unique<HeadlessForm>();
  nextDialog_->AttachForm(nextForm_.get());
  nextDialog_->CallEventHandler({MessageStart, 0, Notification::Command});
  return true;
}

long HeadlessHost::Send(const DialogEvent& event) {
  if (dialog_ == nullptr) {
    return 0;
  }
  wasCancelled_ = false;
  const long result = dialog_->CallEventHandler(event);
  FollowExit();
  return result;
}

void HeadlessHost::FollowExit() {
  while (analysis_ != nullptr) {
    if (nextDialog_ != nullptr) {
      form_ = std::move(nextForm_);
      dialog_ = std::move(nextDialog_);
    }
    const std::optional<PendingExit> exit = analysis_->TakePendingExit();
    if (!exit) {
      return;
    }
    calls.exits.push_back(*exit);
    dialog_.reset();
    form_.reset();
    analysis_->ForwardSequence(exit->stage, exit->kind);
  }
}

long HeadlessHost::Type(int control, std::string_view text) {
  if (form_ == nullptr) {
    return 0;
  }
  form_->Type(control, text);
  return Press(control);
}

long HeadlessHost::Select(int list, int row) {
  if (form_ == nullptr) {
    return 0;
  }
  form_->SelectListRow(list, row);
  return Send({MessageCommand, list, Notification::SelectionChange});
}

Workbook HeadlessHost::TakeWorkbook() {
  reportOpen_ = false;
  return std::exchange(workbook_, {});
}

void HeadlessHost::ClearMessages() {
  messages_.clear();
  messageCalls_ = 0;
}

// --- Memory.

int HeadlessHost::AllocMem(void** block, std::size_t bytes) {
  ++calls.allocMem;
  *block = nullptr;
  if (failAllocation > 0 && --failAllocation == 0) {
    return 1;
  }
  *block = std::calloc(1, bytes == 0 ? 1 : bytes);
  return *block == nullptr ? 1 : 0;
}

int HeadlessHost::GetMem(void** block, std::size_t bytes) { return AllocMem(block, bytes); }

void HeadlessHost::FreeMem(void* block) {
  ++calls.freeMem;
  std::free(block);
}

// --- Messages.

void HeadlessHost::DspMessageBox(unsigned /*flags*/,
                                 WindowHandle /*parent*/,
                                 int textId,
                                 const std::string& text) {
  ++messageCalls_;
  if (!messages_.empty() && messages_.back().id == textId && messages_.back().text == text) {
    ++messages_.back().count;
    return;
  }
  messages_.push_back({textId, text, 1});
  if (onMessage) {
    onMessage(messages_.back());
  }
}

// --- Progress.

void HeadlessHost::TellProgress(std::string call) {
  // The log is kept short: positions are reported to the observer only.
  if (!call.empty()) {
    calls.progress.push_back(std::move(call));
  }
  if (onProgress) {
    onProgress(progress_);
  }
}

void HeadlessHost::d_pbar(const std::string& title) {
  progress_.title = title;
  TellProgress("d_pbar " + title);
}

void HeadlessHost::dstart(int count) {
  progress_.count = count;
  progress_.position = 0;
  progress_.open = true;
  TellProgress("dstart " + std::to_string(count));
}

void HeadlessHost::termom(int position) {
  progress_.position = position;
  TellProgress({});
}

void HeadlessHost::dstop() {
  progress_.open = false;
  TellProgress("dstop");
}

bool HeadlessHost::lookbr() {
  if (cancelled && cancelled()) {
    wasCancelled_ = true;
  }
  return wasCancelled_;
}

// --- Dialog services.

void HeadlessHost::EnableStartupMenus(int enable) { calls.enableStartupMenus += enable; }

void HeadlessHost::RGBAttrType(int type) { calls.attrType = type; }

namespace {

std::optional<std::string> NextAnswer(std::deque<std::optional<std::string>>& answers) {
  if (answers.empty()) {
    return std::nullopt;
  }
  std::optional<std::string> answer = std::move(answers.front());
  answers.pop_front();
  return answer;
}

}  // namespace

std::optional<std::string> HeadlessHost::DoFileSaveAsDlg(const std::string& title,
                                                         const std::string& startName,
                                                         const std::string& extension) {
  calls.saveDialogs.push_back({title, startName, extension});
  return NextAnswer(saveAnswers);
}

std::optional<std::string> HeadlessHost::DoFileOpenDlg(const std::string& title,
                                                       const std::string& extension) {
  calls.openDialogs.push_back({title, extension});
  return NextAnswer(openAnswers);
}

// --- Output.

void HeadlessHost::NextScrSetOptions(int option) { calls.nextScrSetOptions += option; }

int HeadlessHost::looka4(SummaryTable table) {
  reportOpen_ = false;
  workbook_.items.emplace_back(std::move(table));
  return static_cast<int>(workbook_.items.size());
}

void HeadlessHost::type(const std::string& paragraph) {
  if (!reportOpen_) {
    workbook_.items.emplace_back(Report{});
    reportOpen_ = true;
  }
  std::get<Report>(workbook_.items.back()).paragraphs.push_back(paragraph);
}

int HeadlessHost::NewGeneralMultipleChart(Chart chart) {
  if (failChart) {
    return 0;
  }
  reportOpen_ = false;
  workbook_.items.emplace_back(std::move(chart));
  return 1;
}

}  // namespace poweranalysis
