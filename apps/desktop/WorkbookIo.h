#pragma once

#include <QString>
#include <vector>

#include "desktop/StudyBook.h"
#include "exporters/WorkbookFile.h"

namespace poweranalysis {

// The window's studies as those of a workbook file, and back.
WorkbookStudy ToFileStudy(const StudyRecord& record);
std::vector<WorkbookStudy> ToFileStudies(const std::vector<StudyRecord>& studies);

// Empty, or a sentence that names the file and what is wrong; then the old file stands as it was.
QString SaveStudies(const QString& path, const std::vector<StudyRecord>& studies);

struct LoadedStudies {
  std::vector<StudyRecord> studies;
  QString fault;       // then nothing was read
  QString notes;       // what the user should know of a file that was
  bool newer = false;  // to save under its name would lose what a newer version wrote
};
LoadedStudies LoadStudies(const QString& path);

}  // namespace poweranalysis
