#pragma once

#include <QDateTime>
#include <QObject>
#include <QString>
#include <vector>

#include "exporters/WorkbookFile.h"

namespace poweranalysis {

// A study with what the window adds to it: names, times and a note.
struct StudyRecord {
  std::string id;  // given when it is first saved
  QString name;
  QDateTime when;
  std::vector<WorkbookInput> inputs;
  Study study;
  std::vector<QDateTime> times;  // of the items of study.workbook, one each
  std::vector<QString> note;     // lines of the workbook's own, never part of a system's table
};

// What an item is called in the tree.
QString NameOf(const WorkbookItem& item);

// The workbook: the studies in their order, and whether they are saved.
class StudyBook : public QObject {
  Q_OBJECT

 public:
  const std::vector<StudyRecord>& studies() const { return studies_; }
  bool changed() const { return changed_; }
  bool empty() const { return studies_.empty(); }
  // Is the last study the one that was started last? Only then do results belong into it.
  bool growing() const { return growing_; }

  // Puts an item into the last study, or into a new one.
  void StartStudy(const QString& name,
                  const std::string& family,
                  const std::string& mode,
                  std::vector<WorkbookInput> inputs = {});
  void Add(WorkbookItem item);
  // Adds a paragraph to the report that the last item is, or starts one.
  void AddParagraph(const std::string& paragraph);
  void AddMessages(const std::vector<Message>& messages);
  // Of the table added last.
  void SetAnswers(std::vector<Answer> answers);
  void SetNote(std::vector<QString> note);

  void Rename(std::size_t study, const QString& name);
  // Takes a study out; Insert brings it back.
  StudyRecord Take(std::size_t study);
  void Insert(std::size_t place, StudyRecord record);
  void Replace(std::vector<StudyRecord> studies);
  void SetSaved();
  void SetChanged();

 Q_SIGNALS:
  // The book was replaced by another.
  void Replaced();
  // As above, or a study was removed or came back.
  void Reset();
  void StudyAdded(int study);
  void ItemAdded(int study, int item);
  void ItemGrew(int study, int item);
  void StudyChanged(int study);
  void ChangedState(bool changed);

 private:
  int LastStudy() const { return static_cast<int>(studies_.size()) - 1; }

  std::vector<StudyRecord> studies_;
  bool changed_ = false;
  bool growing_ = false;
};

}  // namespace poweranalysis
