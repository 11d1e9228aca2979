#include "desktop/StudyBook.h"

#include <QMap>

#include "desktop/Strings.h"

namespace poweranalysis {

namespace {

// "power-vs-n" as "Power vs. N".
QString ChartName(const std::string& name) {
  const QMap<QString, QString> special = {{QStringLiteral("vs"), QStringLiteral("vs.")},
                                          {QStringLiteral("p2"), QStringLiteral("P\u00b2")},
                                          {QStringLiteral("rmsse"), QStringLiteral("RMSSE")},
                                          {QStringLiteral("rmsea"), QStringLiteral("RMSEA")}};
  QStringList words = ToText(name).split(QLatin1Char('-'));
  for (QString& word : words) {
    if (special.contains(word)) {
      word = special[word];
    } else if (!word.isEmpty()) {
      word[0] = word[0].toUpper();
    }
  }
  return words.join(QLatin1Char(' '));
}

// A plot that is drawn for each of several effects has one name for all: its title says which.
QString EffectOf(const Chart& chart) {
  const QString title = ToText(chart.titles.back());
  return title.contains(QLatin1String("Effect")) ? title.section(QLatin1String(" ("), 0, 0)
                                                 : QString();
}

}  // namespace

QString NameOf(const WorkbookItem& item) {
  if (std::holds_alternative<SummaryTable>(item)) {
    return QObject::tr("Summary table");
  }
  if (std::holds_alternative<Report>(item)) {
    return QObject::tr("Report");
  }
  const Chart& chart = std::get<Chart>(item);
  const QString effect = EffectOf(chart);
  return chart.name.empty() ? QObject::tr("Chart")
         : effect.isEmpty() ? ChartName(chart.name)
                            : effect;
}

void StudyBook::SetChanged() {
  if (!changed_) {
    changed_ = true;
    Q_EMIT ChangedState(true);
  }
}

void StudyBook::SetSaved() {
  changed_ = false;
  Q_EMIT ChangedState(false);
}

void StudyBook::StartStudy(const QString& name,
                           const std::string& family,
                           const std::string& mode,
                           std::vector<WorkbookInput> inputs) {
  StudyRecord record;
  record.name = name;
  record.when = QDateTime::currentDateTime();
  record.study.family = family;
  record.study.mode = mode;
  record.inputs = std::move(inputs);
  studies_.push_back(std::move(record));
  growing_ = true;
  SetChanged();
  Q_EMIT StudyAdded(LastStudy());
}

void StudyBook::Add(WorkbookItem item) {
  if (studies_.empty()) {
    StartStudy(tr("Study"), {}, {});
  }
  StudyRecord& record = studies_.back();
  if (const auto* table = std::get_if<SummaryTable>(&item)) {
    record.study.code = table->code;
  }
  record.study.workbook.items.push_back(std::move(item));
  record.times.push_back(QDateTime::currentDateTime());
  SetChanged();
  Q_EMIT ItemAdded(LastStudy(), static_cast<int>(record.times.size()) - 1);
}

void StudyBook::AddParagraph(const std::string& paragraph) {
  if (studies_.empty() || !ContinueReport(studies_.back().study.workbook, paragraph)) {
    Add(Report{{paragraph}});
    return;
  }
  SetChanged();
  const std::size_t items = studies_.back().study.workbook.items.size();
  Q_EMIT ItemGrew(LastStudy(), static_cast<int>(items) - 1);
}

void StudyBook::AddMessages(const std::vector<Message>& messages) {
  if (!studies_.empty() && !messages.empty()) {
    std::vector<Message>& all = studies_.back().study.messages;
    all.insert(all.end(), messages.begin(), messages.end());
    SetChanged();
    Q_EMIT StudyChanged(LastStudy());
  }
}

void StudyBook::SetAnswers(std::vector<Answer> answers) {
  if (!studies_.empty()) {
    studies_.back().study.answers = std::move(answers);
  }
}

void StudyBook::SetNote(std::vector<QString> note) {
  if (!studies_.empty()) {
    studies_.back().note = std::move(note);
    SetChanged();
    Q_EMIT StudyChanged(LastStudy());
  }
}

void StudyBook::Rename(std::size_t study, const QString& name) {
  if (study < studies_.size() && studies_[study].name != name && !name.trimmed().isEmpty()) {
    studies_[study].name = name.trimmed();
    SetChanged();
    Q_EMIT StudyChanged(static_cast<int>(study));
  }
}

StudyRecord StudyBook::Take(std::size_t study) {
  StudyRecord record = std::move(studies_.at(study));
  studies_.erase(studies_.begin() + static_cast<std::ptrdiff_t>(study));
  growing_ = growing_ && study < studies_.size();
  SetChanged();
  Q_EMIT Reset();
  return record;
}

void StudyBook::Insert(std::size_t place, StudyRecord record) {
  growing_ = growing_ && place < studies_.size();
  studies_.insert(studies_.begin() + static_cast<std::ptrdiff_t>(place), std::move(record));
  SetChanged();
  Q_EMIT Reset();
}

void StudyBook::Replace(std::vector<StudyRecord> studies) {
  studies_ = std::move(studies);
  growing_ = false;
  SetSaved();
  Q_EMIT Replaced();
  Q_EMIT Reset();
}

}  // namespace poweranalysis
