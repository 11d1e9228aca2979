#include "desktop/WorkbookIo.h"

#include <QFile>

#include "calculators/CalculatorResults.h"
#include "desktop/Strings.h"
#include "output/SummaryTables.h"

namespace poweranalysis {

namespace {

std::string DateText(const QDateTime& when) {
  return when.isValid() ? FromText(when.toString(Qt::ISODate)) : std::string();
}

QDateTime DateOf(const std::string& text) {
  return QDateTime::fromString(ToText(text), Qt::ISODate);
}

// A file holds the numbers of a table, not what they are.
void MarkTables(Study& study) {
  const Answer* answer = OnlyAnswer(study);
  const bool calculator = study.mode == ModeWord(ModeDistribution) && answer != nullptr;
  for (WorkbookItem& item : study.workbook.items) {
    if (auto* table = std::get_if<SummaryTable>(&item)) {
      calculator ? MarkCalculatorRows(*table, study.family, answer->name) : MarkRows(*table);
    }
  }
}

StudyRecord FromFileStudy(WorkbookStudy&& stored) {
  StudyRecord record;
  record.id = std::move(stored.id);
  record.name = stored.name.empty() ? QObject::tr("Study") : ToText(stored.name);
  record.when = DateOf(stored.date);
  record.inputs = std::move(stored.inputs);
  record.study = std::move(stored.study);
  MarkTables(record.study);
  for (std::size_t i = 0; i < record.study.workbook.items.size(); ++i) {
    const ItemLabel label = i < stored.labels.size() ? stored.labels[i] : ItemLabel{};
    const QDateTime when = DateOf(label.date);
    record.times.push_back(when.isValid() ? when : record.when);
  }
  for (const std::string& line : stored.notes) {
    record.note.push_back(ToText(line));
  }
  return record;
}

}  // namespace

WorkbookStudy ToFileStudy(const StudyRecord& record) {
  WorkbookStudy stored;
  stored.id = record.id;
  stored.name = FromText(record.name);
  stored.date = DateText(record.when);
  stored.inputs = record.inputs;
  stored.study = record.study;
  for (std::size_t i = 0; i < record.times.size(); ++i) {
    stored.labels.push_back(
        {FromText(NameOf(record.study.workbook.items[i])), DateText(record.times[i])});
  }
  for (const QString& line : record.note) {
    stored.notes.push_back(FromText(line));
  }
  return stored;
}

std::vector<WorkbookStudy> ToFileStudies(const std::vector<StudyRecord>& studies) {
  std::vector<WorkbookStudy> stored;
  for (const StudyRecord& record : studies) {
    stored.push_back(ToFileStudy(record));
  }
  return stored;
}

QString SaveStudies(const QString& path, const std::vector<StudyRecord>& studies) {
  return ToText(SaveWorkbook(ToFileStudies(studies), QFile::encodeName(path).toStdString()));
}

LoadedStudies LoadStudies(const QString& path) {
  LoadedWorkbook file = LoadWorkbook(QFile::encodeName(path).toStdString());
  LoadedStudies loaded;
  loaded.fault = ToText(file.error);
  loaded.newer = file.newer;
  QStringList notes;
  for (const std::string& note : file.notes) {
    notes += ToText(note);
  }
  loaded.notes = notes.join(QLatin1Char('\n'));
  for (WorkbookStudy& study : file.studies) {
    loaded.studies.push_back(FromFileStudy(std::move(study)));
  }
  return loaded;
}

}  // namespace poweranalysis
