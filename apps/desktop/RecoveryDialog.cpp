#include "desktop/RecoveryDialog.h"

#include <QButtonGroup>
#include <QDialogButtonBox>
#include <QFileInfo>
#include <QGridLayout>
#include <QLabel>
#include <QLocale>
#include <QPushButton>
#include <QRadioButton>
#include <QScrollArea>
#include <QVBoxLayout>
#include <array>

#include "desktop/Names.h"

namespace poweranalysis {

namespace {

QString NameOf(const LeftWork& work) {
  return work.file.isEmpty() ? QObject::tr("Untitled workbook") : QFileInfo(work.file).fileName();
}

QString Details(const LeftWork& work) {
  QStringList lines = {QObject::tr("Kept %1").arg(
      QLocale::c().toString(work.when, QStringLiteral("yyyy-MM-dd HH:mm:ss")))};
  if (!work.file.isEmpty()) {
    lines += work.file;
  }
  if (work.IsOvertaken()) {
    lines += QObject::tr("The file was saved after this. What is opened gets no name.");
  }
  return lines.join(QLatin1Char('\n'));
}

}  // namespace

RecoveryDialog::RecoveryDialog(const std::vector<LeftWork>& works, QWidget* parent)
    : QDialog(parent) {
  setObjectName(QStringLiteral("recovery"));
  setWindowTitle(tr("Unsaved Work"));
  setAccessibleName(windowTitle());
  auto* column = new QVBoxLayout(this);
  auto* introduction = new QLabel(
      tr("The program ended without saving this work. One workbook can be opened in this window; "
         "what is kept for later is offered again."));
  introduction->setWordWrap(true);
  column->addWidget(introduction);
  auto* content = new QWidget;
  auto* grid = new QGridLayout(content);
  for (const LeftWork& work : works) {
    AddWork(work, *grid);
  }
  grid->setRowStretch(grid->rowCount(), 1);
  auto* scroll = new QScrollArea;
  scroll->setWidgetResizable(true);
  scroll->setFrameShape(QFrame::NoFrame);
  scroll->setFocusPolicy(Qt::NoFocus);
  scroll->setWidget(content);
  column->addWidget(scroll, 1);
  auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok);
  auto* all = buttons->addButton(tr("&Keep All for Later"), QDialogButtonBox::RejectRole);
  all->setObjectName(QStringLiteral("keepAll"));
  NameButtons(*buttons);
  connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
  connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
  column->addWidget(buttons);
  if (!rows_.empty()) {
    rows_.front()->button(Open)->setChecked(true);
    rows_.front()->button(Open)->setFocus();
  }
  constexpr int kMostHeight = 560;
  resize(sizeHint().expandedTo(QSize(560, 0)).boundedTo(QSize(900, kMostHeight)));
}

void RecoveryDialog::AddWork(const LeftWork& work, QGridLayout& grid) {
  const std::array<QString, 3> captions = {tr("Open"), tr("Keep for later"), tr("Delete")};
  const int row = grid.rowCount();
  auto* label = new QLabel(NameOf(work) + QLatin1Char('\n') + Details(work));
  label->setTextFormat(Qt::PlainText);
  label->setWordWrap(true);
  grid.addWidget(label, row, 0);
  grid.setColumnStretch(0, 1);
  auto* group = new QButtonGroup(this);
  for (const Choice choice : {Open, Later, Delete}) {
    auto* radio = new QRadioButton(captions.at(choice));
    radio->setAccessibleName(tr("%1: %2").arg(captions.at(choice), NameOf(work)));
    radio->setAccessibleDescription(Details(work));
    group->addButton(radio, choice);
    grid.addWidget(radio, row, choice + 1);
  }
  group->button(Later)->setChecked(true);
  connect(group->button(Open), &QRadioButton::toggled, this, [this, group](bool open) {
    if (open) {
      OpenOnly(group);
    }
  });
  rows_.push_back(group);
}

void RecoveryDialog::OpenOnly(const QButtonGroup* chosen) {
  for (QButtonGroup* row : rows_) {
    if (row != chosen && row->checkedId() == Open) {
      row->button(Later)->setChecked(true);
    }
  }
}

RecoveryDialog::Choice RecoveryDialog::ChoiceOf(std::size_t work) const {
  return result() == Accepted ? static_cast<Choice>(rows_.at(work)->checkedId()) : Later;
}

}  // namespace poweranalysis
