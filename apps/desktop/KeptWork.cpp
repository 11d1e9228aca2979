#include "desktop/KeptWork.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QUuid>
#include <algorithm>
#include <utility>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include "desktop/WorkbookIo.h"

namespace poweranalysis {

// A lock file that is held. The kernel lets go of the lock when its process ends, however it ends
// and whoever gets its number afterwards.
class HeldFile {
 public:
  // Null when another holds it, or when there can be none.
  static std::unique_ptr<HeldFile> TryHold(const QString& path) {
    const QByteArray name = QFile::encodeName(path);
    const int file = open(name.constData(), O_RDWR | O_CREAT | O_CLOEXEC, 0600);
    if (file < 0) {
      return nullptr;
    }
    auto held = std::unique_ptr<HeldFile>(new HeldFile(path, file));
    return flock(file, LOCK_EX | LOCK_NB) == 0 && held->IsThere() ? std::move(held) : nullptr;
  }
  ~HeldFile() { close(file_); }
  HeldFile(const HeldFile&) = delete;
  HeldFile& operator=(const HeldFile&) = delete;

  // Its text, one line.
  bool Write(const QString& line) {
    const QByteArray bytes = line.toUtf8() + '\n';
    return ftruncate(file_, 0) == 0 &&
           pwrite(file_, bytes.constData(), static_cast<std::size_t>(bytes.size()), 0) ==
               bytes.size();
  }
  QString Read() const {
    QFile file(path_);
    const QByteArray bytes = file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    return QString::fromUtf8(bytes.left(std::max<qsizetype>(bytes.indexOf('\n'), 0)));
  }
  void Delete() { QFile::remove(path_); }

 private:
  HeldFile(QString path, int file) : path_(std::move(path)), file_(file) {}

  // The file may have been deleted by its last holder between opening and locking it.
  bool IsThere() const {
    struct stat mine {};
    struct stat named {};
    return fstat(file_, &mine) == 0 && stat(QFile::encodeName(path_).constData(), &named) == 0 &&
           mine.st_ino == named.st_ino;
  }

  QString path_;
  int file_;
};

namespace {

QString LockPath(const QString& workbook) {
  const QFileInfo info(workbook);
  return info.path() + QLatin1Char('/') + info.completeBaseName() + QStringLiteral(".lock");
}

// Removes the lock files of windows that ended before they had kept anything, or while they removed
// it. Whoever is about to keep the workbook holds the lock.
void SweepLocks(const QDir& folder) {
  for (const QFileInfo& info : folder.entryInfoList({QStringLiteral("*.lock")}, QDir::Files)) {
    const QString workbook = info.completeBaseName() + QStringLiteral(".pawb");
    const std::unique_ptr<HeldFile> lock =
        folder.exists(workbook) ? nullptr : HeldFile::TryHold(info.filePath());
    if (lock != nullptr && !folder.exists(workbook)) {
      lock->Delete();
    }
  }
}

}  // namespace

// --- Of this window.

// Not named by the number of the process: the next one to have it would overwrite what is left
// here.
KeptWork::KeptWork(const QString& folder)
    : folder_(folder),
      path_(folder.isEmpty()
                ? QString()
                : folder + QLatin1Char('/') + QUuid::createUuid().toString(QUuid::WithoutBraces) +
                      QStringLiteral(".pawb")) {}

KeptWork::~KeptWork() = default;

QString KeptWork::Keep(const std::vector<StudyRecord>& studies, const QString& file) {
  if (folder_.isEmpty()) {
    return {};
  }
  QDir().mkpath(folder_);
  if (lock_ == nullptr) {
    lock_ = HeldFile::TryHold(LockPath(path_));
  }
  if (lock_ == nullptr || !lock_->Write(file)) {
    return QObject::tr("Unsaved work cannot be kept in %1.").arg(folder_);
  }
  return SaveStudies(path_, studies);
}

void KeptWork::Remove() {
  if (lock_ != nullptr) {
    QFile::remove(path_);
    lock_->Delete();
    lock_.reset();
  }
}

// --- Of windows that are gone.

bool LeftWork::IsOvertaken() const {
  const QFileInfo saved(file);
  return !file.isEmpty() && saved.exists() && saved.lastModified() > when;
}

void LeftWork::Delete() {
  QFile::remove(path);
  lock->Delete();
}

std::vector<LeftWork> FindLeftWork(const QString& folder) {
  std::vector<LeftWork> found;
  if (folder.isEmpty()) {
    return found;
  }
  SweepLocks(QDir(folder));
  const QFileInfoList files =
      QDir(folder).entryInfoList({QStringLiteral("*.pawb")}, QDir::Files, QDir::Time);
  for (const QFileInfo& info : files) {
    if (std::shared_ptr<HeldFile> lock = HeldFile::TryHold(LockPath(info.filePath()))) {
      const QString file = lock->Read();
      found.push_back({info.filePath(), file, info.lastModified(), std::move(lock)});
    }
  }
  return found;
}

}  // namespace poweranalysis
