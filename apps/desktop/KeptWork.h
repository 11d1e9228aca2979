#pragma once

#include <QDateTime>
#include <QString>
#include <memory>
#include <vector>

#include "desktop/StudyBook.h"

namespace poweranalysis {

class HeldFile;

// The unsaved work of one window: a workbook in a folder, and a lock file beside it. The window
// holds the lock as long as it lives, and the lock file names the file that the work belongs to.
class KeptWork {
 public:
  // Without a folder nothing is kept.
  explicit KeptWork(const QString& folder);
  ~KeptWork();
  KeptWork(const KeptWork&) = delete;
  KeptWork& operator=(const KeptWork&) = delete;

  const QString& folder() const { return folder_; }
  const QString& path() const { return path_; }
  // Empty, or why nothing is kept.
  QString Keep(const std::vector<StudyRecord>& studies, const QString& file);
  // The work is saved, or was given up.
  void Remove();

 private:
  QString folder_;
  QString path_;
  std::unique_ptr<HeldFile> lock_;
};

// Work whose window ended without saving it. Whoever has it holds its lock: no other window offers
// it meanwhile.
struct LeftWork {
  QString path;
  QString file;  // that it belongs to; empty for none
  QDateTime when;
  std::shared_ptr<HeldFile> lock;

  // Was its file saved after this was kept?
  bool IsOvertaken() const;
  void Delete();
};

// What windows left in a folder, the newest first. Lock files that they left without a workbook go.
std::vector<LeftWork> FindLeftWork(const QString& folder);

}  // namespace poweranalysis
