#include "host/KeywordFile.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <charconv>
#include <cmath>
#include <limits>
#include <string>
#include <system_error>
#include <thread>
#include <utility>

#include "host/AtomicFile.h"
#include "host/NumberText.h"

namespace poweranalysis {

namespace {

constexpr std::string_view ByteOrderMark = "\xEF\xBB\xBF";

bool IsBlank(char c) {
  return c == ' ' || c == '\t' || c == '\r' || c == '\n' || c == '\v' || c == '\f';
}

bool IsCommentMark(char c) { return c == ';' || c == '#'; }

std::string_view Trim(std::string_view text) {
  while (!text.empty() && IsBlank(text.front())) {
    text.remove_prefix(1);
  }
  while (!text.empty() && IsBlank(text.back())) {
    text.remove_suffix(1);
  }
  return text;
}

template <typename Number>
std::string Format(Number value) {
  std::array<char, 64> buffer{};
  const auto end = std::to_chars(buffer.data(), buffer.data() + buffer.size(), value).ptr;
  return std::string(buffer.data(), end);
}

template <typename Number>
std::optional<Number> ParseWhole(std::string_view text) {
  text = WithoutPlus(Trim(text));
  const char* const end = text.data() + text.size();
  Number value{};
  const auto result = std::from_chars(text.data(), end, value);
  if (result.ec != std::errc() || result.ptr != end) {
    return std::nullopt;
  }
  return value;
}

std::string IndexName(std::string_view section, std::string_view key) {
  std::string name;
  name.reserve(section.size() + key.size() + 1);
  // A line end can stand in neither name.
  return name.append(section).append("\n").append(key);
}

// The name in "[name]", which only a comment may follow. Empty when the header is not well formed:
// its keys then belong to no section, least of all to the one before.
std::string_view HeaderName(std::string_view header) {
  const std::size_t close = header.find(']');
  if (close == std::string_view::npos) {
    return {};
  }
  const std::string_view rest = Trim(header.substr(close + 1));
  if (!rest.empty() && !IsCommentMark(rest.front())) {
    return {};
  }
  return Trim(header.substr(1, close - 1));
}

struct Span {
  std::size_t begin;
  std::size_t end;
};

// The value in a line whose '=' stands before `begin`. A comment needs a blank before it.
Span ValueSpan(std::string_view line, std::size_t begin) {
  Span span{begin, line.size()};
  for (std::size_t i = begin + 1; i < line.size(); ++i) {
    if (IsCommentMark(line[i]) && IsBlank(line[i - 1])) {
      span.end = i;
      break;
    }
  }
  while (span.end > span.begin && IsBlank(line[span.end - 1])) {
    --span.end;
  }
  while (span.begin < span.end && IsBlank(line[span.begin])) {
    ++span.begin;
  }
  return span;
}

// Whether the reader finds what the writer is to write: only the reader knows. A NUL byte would
// make the file one that is not read at all.
bool ReadsBack(std::string_view section, std::string_view key, std::string_view value) {
  constexpr auto npos = std::string_view::npos;
  if (section.find('\0') != npos || key.find('\0') != npos || value.find('\0') != npos) {
    return false;
  }
  std::string text("[");
  text.append(section).append("]\n").append(key).append("= ").append(value).append(" ;\n");
  return KeywordFile::Parse(text).Find(section, key) == value;
}

}  // namespace

std::string FormatReal(double value) { return Format(value); }

std::string FormatLong(std::int32_t value) { return Format(value); }

std::optional<double> ParseReal(std::string_view text) {
  const std::optional<double> value = ParseWhole<double>(text);
  return value && std::isfinite(*value) ? value : std::nullopt;
}

std::optional<std::int32_t> ParseLong(std::string_view text) {
  if (const auto whole = ParseWhole<std::int32_t>(text)) {
    return whole;
  }
  const std::optional<double> real = ParseReal(text);
  const bool whole = real && std::trunc(*real) == *real &&
                     *real >= std::numeric_limits<std::int32_t>::min() &&
                     *real <= std::numeric_limits<std::int32_t>::max();
  return whole ? std::optional(static_cast<std::int32_t>(*real)) : std::nullopt;
}

bool IsBareFileName(std::string_view name) { return name.find('/') == std::string_view::npos; }

std::string ResolveFileName(const std::string& name, const std::string& folder) {
  if (!IsBareFileName(name)) {
    return name;
  }
  return name.empty() || folder.empty() ? std::string() : folder + "/" + name;
}

// ---------------------------------------------------------------------------------------------
// The text

// Where in the file the reader stands.
struct KeywordFile::Position {
  std::string section;  // empty: in none
  bool atHead = false;  // only comments since the section's header
};

KeywordFile KeywordFile::Parse(std::string_view text) {
  KeywordFile file;
  if (text.substr(0, ByteOrderMark.size()) == ByteOrderMark) {
    file.lines_[0].text = ByteOrderMark;
    text.remove_prefix(ByteOrderMark.size());
  }
  const std::size_t firstEnd = text.find('\n');
  if (firstEnd != std::string_view::npos && firstEnd > 0 && text[firstEnd - 1] == '\r') {
    file.lineEnd_ = "\r\n";
  }
  Position position;
  while (!text.empty()) {
    const std::size_t end = text.find('\n');
    const std::size_t length = end == std::string_view::npos ? text.size() : end + 1;
    file.TakeLine(text.substr(0, length), position);
    text.remove_prefix(length);
  }
  return file;
}

// Appends a line and notes what it says. A new key will follow the last key of its section, or,
// where there is none, the comments right under the header: what comes later, up to the next
// header, may well be a remark on the next section.
void KeywordFile::TakeLine(std::string_view line, Position& position) {
  const std::size_t index = InsertAfter(last_, std::string(line));
  const std::string_view content = Trim(line);
  if (content.empty()) {
    position.atHead = false;
  } else if (content.front() == '[') {
    position.section = HeaderName(content);
    position.atHead = !position.section.empty();
    if (position.atHead) {
      sections_[position.section] = index;
    }
  } else if (IsCommentMark(content.front())) {
    if (position.atHead) {
      sections_[position.section] = index;
    }
  } else {
    position.atHead = false;
    TakeKey(line, position.section);
  }
}

// Notes the key of the line just appended, if it is one.
void KeywordFile::TakeKey(std::string_view line, const std::string& section) {
  const std::size_t equals = line.find('=');
  if (equals == std::string_view::npos || section.empty()) {
    return;
  }
  const std::string_view key = Trim(line.substr(0, equals));
  if (key.empty()) {
    return;
  }
  const Span value = ValueSpan(line, equals + 1);
  lines_[last_].valueBegin = value.begin;
  lines_[last_].valueLength = value.end - value.begin;
  keys_[IndexName(section, key)] = last_;
  sections_[section] = last_;
}

std::optional<std::string_view> KeywordFile::Find(std::string_view section,
                                                  std::string_view key) const {
  const auto found = keys_.find(IndexName(section, key));
  if (found == keys_.end()) {
    return std::nullopt;
  }
  const Line& line = lines_[found->second];
  return std::string_view(line.text).substr(line.valueBegin, line.valueLength);
}

std::vector<KeywordLine> KeywordFile::Keys(std::string_view section) const {
  std::vector<std::size_t> numbers(lines_.size());
  for (std::size_t i = lines_[0].next, number = 1; i != 0; i = lines_[i].next, ++number) {
    numbers[i] = number;
  }
  const std::string prefix = IndexName(section, {});
  std::vector<KeywordLine> keys;
  for (const auto& [name, index] : keys_) {
    if (name.compare(0, prefix.size(), prefix) == 0) {
      const Line& line = lines_[index];
      keys.push_back({name.substr(prefix.size()),
                      line.text.substr(line.valueBegin, line.valueLength), numbers[index]});
    }
  }
  std::sort(keys.begin(), keys.end(),
            [](const KeywordLine& a, const KeywordLine& b) { return a.line < b.line; });
  return keys;
}

bool KeywordFile::Set(std::string_view section, std::string_view key, std::string_view value) {
  if (!ReadsBack(section, key, value)) {
    return false;
  }
  const auto found = keys_.find(IndexName(section, key));
  if (found != keys_.end()) {
    Line& line = lines_[found->second];
    line.text.replace(line.valueBegin, line.valueLength, value);
    line.valueLength = value.size();
    return true;
  }
  const auto known = sections_.find(std::string(section));
  const std::size_t previous = known == sections_.end() ? AddSection(section) : known->second;
  std::string text(key);
  text.append("=").append(value).append(lineEnd_);
  const std::size_t index = InsertAfter(previous, std::move(text));
  lines_[index].valueBegin = key.size() + 1;
  lines_[index].valueLength = value.size();
  keys_[IndexName(section, key)] = index;
  sections_[std::string(section)] = index;
  return true;
}

std::string KeywordFile::Text() const {
  std::string text = lines_[0].text;
  for (std::size_t i = lines_[0].next; i != 0; i = lines_[i].next) {
    text += lines_[i].text;
  }
  return text;
}

std::size_t KeywordFile::InsertAfter(std::size_t line, std::string text) {
  if (line != 0 && lines_[line].text.back() != '\n') {
    lines_[line].text += lineEnd_;
  }
  const std::size_t index = lines_.size();
  lines_.push_back({std::move(text), 0, 0, lines_[line].next});
  lines_[line].next = index;
  if (line == last_) {
    last_ = index;
  }
  return index;
}

// Returns the header's line, at the end of the file, after a blank line.
std::size_t KeywordFile::AddSection(std::string_view section) {
  if (last_ != 0 && !Trim(lines_[last_].text).empty()) {
    InsertAfter(last_, lineEnd_);
  }
  std::string header("[");
  header.append(section).append("]").append(lineEnd_);
  return InsertAfter(last_, std::move(header));
}

// ---------------------------------------------------------------------------------------------
// The file. Functions that can fail return an error number, 0 when all is well.

namespace {

std::string TooLarge() {
  return "a settings file cannot be larger than " + FormatLong(KeywordFileLimit >> 20) + " MiB";
}

constexpr const char* NoFolder =
    "no folder is known for settings files, since neither XDG_CONFIG_HOME nor HOME is set";

// Why a path cannot be used at all; empty when it can.
std::string PathProblem(const std::string& path) {
  if (path.empty()) {
    return NoFolder;
  }
  return path.find('\0') == std::string::npos ? "" : "the name holds a NUL byte";
}

LoadedKeywordFile Load(int folder, const std::string& name) {
  const FileBytes bytes = ReadFile(folder, name, KeywordFileLimit);
  LoadedKeywordFile loaded;
  loaded.exists = bytes.exists;
  loaded.error = bytes.tooLarge ? TooLarge() : bytes.problem;
  if (loaded.error.empty() && bytes.text.find('\0') != std::string::npos) {
    loaded.error = "it holds NUL bytes, so it is not a settings file";
  }
  if (loaded.error.empty()) {
    loaded.file = KeywordFile::Parse(bytes.text);
  }
  return loaded;
}

// Makes a folder and those above it that are missing, for the user alone. A folder above may exist
// where we must not write, so only the last step decides; the first failure is the one that
// matters.
int MakeFolders(const std::string& folder) {
  int firstError = 0;
  for (std::size_t end = 0; end != std::string::npos;) {
    end = folder.find('/', end + 1);
    const int made = mkdir(folder.substr(0, end).c_str(), 0700);
    if (made == 0 || errno == EEXIST) {
      firstError = 0;
    } else if (firstError == 0) {
      firstError = errno;
    }
  }
  return firstError;
}

// Polls, rather than blocks, so that a hung program cannot hang this one. A file system without
// locks still gets its file written whole.
int LockFolder(int folder, std::chrono::milliseconds patience) {
  const auto deadline = std::chrono::steady_clock::now() + patience;
  while (flock(folder, LOCK_EX | LOCK_NB) != 0) {
    if (errno == ENOSYS || errno == EOPNOTSUPP || errno == ENOLCK) {
      return 0;
    }
    if (errno != EWOULDBLOCK && errno != EINTR) {
      return errno;
    }
    if (std::chrono::steady_clock::now() >= deadline) {
      return EWOULDBLOCK;
    }
    std::this_thread::sleep_for(std::chrono::milliseconds(1));
  }
  return 0;
}

}  // namespace

LoadedKeywordFile LoadKeywordFile(const std::string& path) {
  LoadedKeywordFile loaded;
  loaded.error = PathProblem(path);
  if (loaded.error.empty()) {
    loaded = Load(AT_FDCWD, path);
  }
  if (!loaded.error.empty()) {
    loaded.error = "Cannot read the settings file \"" + path + "\": " + loaded.error + ".";
  }
  return loaded;
}

KeywordWriter::KeywordWriter(std::string path,
                             MissingFolder missingFolder,
                             std::chrono::milliseconds patience)
    : path_(std::move(path)), missingFolder_(missingFolder), patience_(patience) {
  const std::string problem = PathProblem(path_);
  if (problem.empty()) {
    Open();
  } else {
    Refuse(problem);
  }
}

KeywordWriter::~KeywordWriter() { Release(); }

KeywordResult KeywordWriter::status() const { return status_; }

void KeywordWriter::Put(std::string_view section, std::string_view key, std::string_view value) {
  changes_.push_back({std::string(section), std::string(key), std::string(value)});
}

KeywordResult KeywordWriter::Commit() {
  if (status_.ok && folder_ < 0) {  // the folder was missing, and may be made
    std::string target = path_;
    FollowLinks(target);
    if (const int error = MakeFolders(FolderOf(target)); error != 0) {
      Refuse(FileReason(error));
      return status_;
    }
    missingFolder_ = MissingFolder::Refuse;
    Open();
  }
  if (!status_.ok) {
    return status_;
  }
  const std::string before = file_.Text();
  std::string problem = ApplyChanges();
  const std::string after = file_.Text();
  if (problem.empty() && after.size() > KeywordFileLimit) {
    problem = TooLarge();
  }
  if (problem.empty() && after != before) {
    const int error = ReplaceFile(folder_, name_, after);
    problem = error == 0 ? "" : FileReason(error);
  }
  if (problem.empty()) {
    Release();
    status_ = {false, "The settings file \"" + path_ + "\" has been saved already."};
    return {};
  }
  Refuse(problem);
  return status_;
}

// Locks the folder and reads the file.
void KeywordWriter::Open() {
  std::string target = path_;
  if (const int error = FollowLinks(target); error != 0) {
    return Refuse(FileReason(error));
  }
  name_ = NameOf(target);
  if (name_.empty()) {
    return Refuse(FileReason(EISDIR));
  }
  folder_ = open(FolderOf(target).c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
  if (folder_ < 0) {
    if (errno != ENOENT || missingFolder_ != MissingFolder::Create) {
      Refuse(FileReason(errno));
    }
    return;
  }
  if (const int error = LockFolder(folder_, patience_); error != 0) {
    return Refuse(FileReason(error));
  }
  LoadedKeywordFile loaded = Load(folder_, name_);
  if (!loaded.error.empty()) {
    return Refuse(loaded.error);
  }
  file_ = std::move(loaded.file);
}

void KeywordWriter::Refuse(const std::string& reason) {
  status_ = {false, "Cannot save the settings file \"" + path_ + "\": " + reason + "."};
  Release();
}

// Returns why a change cannot be made; empty when all are.
std::string KeywordWriter::ApplyChanges() {
  for (const Change& change : changes_) {
    if (!file_.Set(change.section, change.key, change.value)) {
      return "the value of \"" + change.key + "\" in section \"" + change.section +
             "\" cannot be stored";
    }
  }
  return {};
}

void KeywordWriter::Release() {
  if (folder_ >= 0) {
    close(folder_);  // and the lock goes with it
    folder_ = -1;
  }
}

}  // namespace poweranalysis
