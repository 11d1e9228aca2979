#include "host/LocalHost.h"

#include <sys/stat.h>

#include <cstdlib>
#include <map>
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

struct LocalHost::Keywords {
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

LocalHost::LocalHost() : keywords_(std::make_unique<Keywords>()) {}

LocalHost::~LocalHost() = default;

std::string LocalHost::ResolveKeywordFile(const std::string& file) const {
  return ResolveFileName(file, configFolder);
}

std::optional<KeywordValue> LocalHost::GetInitKeywordPrivate(KeywordKind kind,
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

KeywordSection LocalHost::GetInitSection(const std::string& file, const std::string& section) {
  const std::string path = ResolveKeywordFile(file);
  if (path.empty()) {
    return {};
  }
  const LoadedKeywordFile& loaded = keywords_->Load(path);
  keywordReadError_ = loaded.error;
  return {loaded.exists, loaded.error, loaded.file.Keys(section)};
}

int LocalHost::BeginInitKeywords(const std::string& file) {
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

int LocalHost::PutInitKeywordPrivate(const std::string& /*file*/,
                                     const std::string& section,
                                     const std::string& key,
                                     const KeywordValue& /*factory*/,
                                     const KeywordValue& value) {
  if (keywords_->writer == nullptr) {
    return 1;
  }
  if (key.empty()) {
    // A field without a key text: many readers reject a line without a key, so it is not written.
    return 0;
  }
  keywords_->writer->Put(section, key, ValueText(value));
  return 0;
}

int LocalHost::EndInitKeywords(const std::string& file) {
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

// --- Memory.

int LocalHost::AllocMem(void** block, std::size_t bytes) {
  *block = std::calloc(1, bytes == 0 ? 1 : bytes);
  return *block == nullptr ? 1 : 0;
}

int LocalHost::GetMem(void** block, std::size_t bytes) { return AllocMem(block, bytes); }

void LocalHost::FreeMem(void* block) { std::free(block); }

}  // namespace poweranalysis
