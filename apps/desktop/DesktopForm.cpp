#include "desktop/DesktopForm.h"

#include <QAction>
#include <QButtonGroup>
#include <QCheckBox>
#include <QEvent>
#include <QFormLayout>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QRadioButton>
#include <QScrollArea>
#include <QTabWidget>
#include <QVBoxLayout>
#include <algorithm>
#include <array>
#include <cmath>
#include <utility>

#include "automation/SpecLookup.h"
#include "desktop/CellTable.h"
#include "desktop/Icons.h"
#include "desktop/Mnemonics.h"
#include "desktop/Strings.h"
#include "dialogs/Controls.h"
#include "host/NumberText.h"

namespace poweranalysis {

namespace {

constexpr int kEscapeControl = 2;  // Back or Cancel in every dialog

QString Shown(std::string_view text) { return ToText(std::string(text)); }

using ControlGroup = std::vector<ControlSpec>;

// Controls under one caption, in the order in which the page begins them. A control without a
// caption stands by itself.
std::vector<ControlGroup> InGroups(const PageSpec& page) {
  std::vector<ControlGroup> groups;
  for (const ControlSpec& control : page.controls) {
    const auto same = [&control](const ControlGroup& group) {
      return group.front().group == control.group;
    };
    const auto begun =
        control.group.empty() ? groups.end() : std::find_if(groups.begin(), groups.end(), same);
    if (begun != groups.end()) {
      begun->push_back(control);
    } else if (groups.empty() || !same(groups.back())) {
      groups.push_back({control});
    } else {
      groups.back().push_back(control);
    }
  }
  return groups;
}

// The controls of a page as they stand on it, which is also the order of the Tab key.
std::vector<ControlSpec> Arranged(const PageSpec& page) {
  std::vector<ControlSpec> controls;
  for (const ControlGroup& group : InGroups(page)) {
    controls.insert(controls.end(), group.begin(), group.end());
  }
  return controls;
}

std::vector<ControlSpec> AllControls(const DialogSpec& spec) {
  std::vector<ControlSpec> controls = spec.frame;
  for (const PageSpec& page : spec.pages) {
    controls.insert(controls.end(), page.controls.begin(), page.controls.end());
  }
  return controls;
}

// Numbers of one kind in a page, for its lists and their help texts.
std::vector<ControlSpec> OfKind(const PageSpec& page, ControlKind kind) {
  std::vector<ControlSpec> found;
  for (const ControlSpec& control : page.controls) {
    if (control.kind == kind) {
      found.push_back(control);
    }
  }
  return found;
}

// --- What a text reads as.

enum class Reading { Number, Missing, NotNumber, NotWhole, TooLarge };

// What the mark of a box says about it, and what a message says, with its name and its text.
struct ReadingWords {
  const char* mark;
  const char* sentence;
};
constexpr std::array<ReadingWords, 5> kReadingWords = {
    {{"", ""},
     {QT_TRANSLATE_NOOP("poweranalysis::DesktopForm", "A number is missing here."),
      QT_TRANSLATE_NOOP("poweranalysis::DesktopForm", "%1 is empty.")},
     {QT_TRANSLATE_NOOP("poweranalysis::DesktopForm", "This is not a number."),
      QT_TRANSLATE_NOOP("poweranalysis::DesktopForm", "%1: \u201c%2\u201d is not a number.")},
     {QT_TRANSLATE_NOOP("poweranalysis::DesktopForm", "This is not a whole number."),
      QT_TRANSLATE_NOOP("poweranalysis::DesktopForm", "%1: \u201c%2\u201d is not a whole number.")},
     {QT_TRANSLATE_NOOP("poweranalysis::DesktopForm", "This is not a whole number of 32 bits."),
      QT_TRANSLATE_NOOP("poweranalysis::DesktopForm",
                        "%1: \u201c%2\u201d is not a whole number of 32 bits.")}}};

const ReadingWords& WordsOf(Reading reading) {
  return kReadingWords.at(static_cast<std::size_t>(reading));
}

Reading ReadingOf(const FormModel& form, const FormModel::Control& held) {
  const int control = held.spec.number;
  double value = 0;
  if (held.number) {
    return Reading::Number;  // shown by the dialog itself
  }
  if (form.GetDlgItemDouble(control, value) != 0 || std::isnan(value)) {
    return ToText(held.text).trimmed().isEmpty() ? Reading::Missing : Reading::NotNumber;
  }
  if (held.spec.kind == ControlKind::IntEdit &&
      value != static_cast<double>(form.GetDlgItemLong(control))) {
    return value == std::trunc(value) ? Reading::TooLarge : Reading::NotWhole;
  }
  return Reading::Number;
}

// Reads a text as the box would.
Reading ReadingOf(const ControlSpec& box, const QString& text) {
  DialogSpec spec;
  spec.frame = {box};
  FormModel form;
  form.AddDlgTabs(spec);
  form.Type(box.number, FromText(text));
  return ReadingOf(form, *form.Find(box.number));
}

// The number that a text with one comma may stand for; empty for none.
QString WithPoint(const ControlSpec& box, QString text) {
  const bool lone = text.count(QLatin1Char(',')) == 1;
  text = text.replace(QLatin1Char(','), QLatin1Char('.')).trimmed();
  return lone && ReadingOf(box, text) == Reading::Number ? text : QString();
}

bool IsCell(const ControlSpec& control) { return control.row >= 0 && control.column >= 0; }

// A page may be taller than a small screen; it is wider only where it has a table of cells.
QWidget* InScrollArea(QWidget* content, const PageSpec& page) {
  auto* scroll = new QScrollArea;
  scroll->setWidgetResizable(true);
  scroll->setFrameShape(QFrame::NoFrame);
  scroll->setFocusPolicy(Qt::NoFocus);
  scroll->setWidget(content);
  if (page.rowTitles.empty()) {
    scroll->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    scroll->setMinimumWidth(content->minimumSizeHint().width() + 24);
  }
  return scroll;
}

}  // namespace

DesktopForm::DesktopForm(std::shared_ptr<FormModel> model) : model_(std::move(model)) {
  setObjectName(QStringLiteral("dialog"));
  setFocusPolicy(Qt::NoFocus);
  model_->SetView(this);
}

DesktopForm::~DesktopForm() { model_->SetView(nullptr); }

// --- Building.

void DesktopForm::Built() {
  AssignMnemonics(spec());
  setAccessibleName(Shown(spec().title));
  setAccessibleDescription(tr("Dialog"));
  auto* column = new QVBoxLayout(this);

  std::vector<ControlSpec> buttons;
  for (const ControlSpec& control : spec().frame) {
    if (control.kind == ControlKind::StaticText || control.kind == ControlKind::HelpText) {
      column->addWidget(BuildSummary(control));
    } else {
      buttons.push_back(control);
    }
  }
  QWidget* bar = BuildButtonBar(buttons);
  if (spec().pages.size() == 1) {
    const PageSpec& page = spec().pages.front();
    QWidget* content = BuildPage(page);
    // Lists scroll by themselves.
    column->addWidget(
        OfKind(page, ControlKind::List).empty() ? InScrollArea(content, page) : content, 1);
  } else {
    tabs_ = new QTabWidget;
    tabs_->setAccessibleName(tr("Pages of %1").arg(Shown(spec().title)));
    tabs_->setAccessibleDescription(tr("The fields, and the files that keep them"));
    for (const PageSpec& page : spec().pages) {
      tabs_->addTab(InScrollArea(BuildPage(page), page), Shown(page.caption));
    }
    column->addWidget(tabs_, 1);
  }
  column->addWidget(bar);
  SetTabOrder();
}

// Captions that bring their own letter keep it; the others share what is left, the buttons first:
// they are farther away by keyboard than a field.
void DesktopForm::AssignMnemonics(const DialogSpec& spec) {
  QString taken = QStringLiteral("FEAMVH");  // the menu bar's
  const std::vector<ControlSpec> controls = AllControls(spec);
  for (const ControlSpec& control : controls) {
    if (const QChar letter = MnemonicOf(Shown(control.caption)); !letter.isNull()) {
      taken += letter;
    }
  }
  for (const bool buttons : {true, false}) {
    for (const ControlSpec& control : controls) {
      const bool isText =
          control.kind == ControlKind::StaticText || control.kind == ControlKind::HelpText;
      // A table has more cells than there are letters.
      if (!isText && !IsCell(control) && (control.kind == ControlKind::Button) == buttons) {
        captions_.insert(control.number, WithMnemonic(Shown(control.caption), taken));
      }
    }
  }
}

void DesktopForm::Describe(QWidget& widget, const ControlSpec& control) {
  widgets_.insert(control.number, &widget);
  widget.setObjectName(QStringLiteral("control%1").arg(control.number));
  const QString spoken = SpokenName(Shown(control.caption));
  const QString help = control.help.empty() ? spoken : Shown(control.help);
  widget.setAccessibleName(spoken);
  widget.setAccessibleDescription(help);
  widget.setToolTip(help);
  widget.setStatusTip(help);
}

QWidget* DesktopForm::BuildPage(const PageSpec& page) {
  auto* content = new QWidget;
  auto* column = new QVBoxLayout(content);
  if (!OfKind(page, ControlKind::List).empty()) {
    column->setContentsMargins(0, 0, 0, 0);
    column->addLayout(BuildLists(page), 1);
    return content;
  }
  for (const ControlGroup& group : InGroups(page)) {
    AddGroup(page, group, *column);
  }
  column->addStretch(1);
  return content;
}

// Lists stand side by side, each under its caption and above its help.
QLayout* DesktopForm::BuildLists(const PageSpec& page) {
  const std::vector<ControlSpec> lists = OfKind(page, ControlKind::List);
  const std::vector<ControlSpec> helps = OfKind(page, ControlKind::HelpText);
  auto* grid = new QGridLayout;
  grid->setHorizontalSpacing(12);
  for (std::size_t i = 0; i < lists.size(); ++i) {
    const int columnIndex = static_cast<int>(i);
    auto* label = new QLabel(Caption(lists[i]));
    QListWidget* list = MakeList(lists[i]);
    label->setBuddy(list);
    grid->addWidget(label, 0, columnIndex);
    grid->addWidget(list, 1, columnIndex);
    if (i < helps.size()) {
      QLabel* help = MakeHelpText(helps[i]);
      help->setMinimumHeight(help->fontMetrics().lineSpacing() * 6);  // for any text to come
      grid->addWidget(help, 2, columnIndex);
    }
    grid->setColumnStretch(columnIndex, columnIndex == 0 ? 3 : 4);
  }
  grid->setRowStretch(1, 1);
  return grid;
}

void DesktopForm::AddGroup(const PageSpec& page,
                           const std::vector<ControlSpec>& controls,
                           QBoxLayout& column) {
  QBoxLayout* inner = &column;
  const QString caption = Shown(controls.front().group);
  if (!caption.isEmpty()) {
    auto* box = new QGroupBox(caption);
    box->setAccessibleName(caption);
    box->setAccessibleDescription(caption);
    inner = new QVBoxLayout(box);
    column.addWidget(box);
  }
  std::vector<ControlSpec> buttons;
  QFormLayout* form = nullptr;  // of the fields so far
  for (const ControlSpec& control : controls) {
    const bool toggle = control.kind == ControlKind::Radio || control.kind == ControlKind::CheckBox;
    if (control.kind == ControlKind::Button) {
      buttons.push_back(control);
    } else if (IsCell(control)) {
      AddCell(page, control, *inner);
    } else if (IsEdit(control) || control.kind == ControlKind::StaticText) {
      form = form == nullptr ? AddForm(*inner) : form;
      AddField(control, *form);
    } else if (toggle && form != nullptr) {
      form->addRow(MakeToggle(control));
    } else if (toggle) {
      inner->addWidget(MakeToggle(control));
    } else {
      QLabel* hint = MakeHelpText(control);
      hint->setText(Shown(control.caption));
      inner->addWidget(hint);
    }
  }
  AddButtons(buttons, *inner);
}

void DesktopForm::AddCell(const PageSpec& page, const ControlSpec& cell, QBoxLayout& column) {
  if (cells_ == nullptr) {
    cells_ = new CellTable(page.rowTitles, page.columnTitles);
    connect(cells_, &CellTable::PasteWanted, this, [this] { Click(ControlGridPaste); });
    connect(cells_, &CellTable::CopyWanted, this, [this] { Click(ControlGridCopy); });
    column.addWidget(cells_, 0, Qt::AlignLeft);
  }
  cells_->Add(cell.row, cell.column, *MakeEdit(cell));
}

QFormLayout* DesktopForm::AddForm(QBoxLayout& column) {
  auto* form = new QFormLayout;
  form->setFieldGrowthPolicy(QFormLayout::ExpandingFieldsGrow);
  form->setLabelAlignment(Qt::AlignLeft | Qt::AlignVCenter);
  form->setRowWrapPolicy(QFormLayout::DontWrapRows);
  column.addLayout(form);
  return form;
}

void DesktopForm::AddField(const ControlSpec& field, QFormLayout& form) {
  QLabel* label = std::exchange(label_, nullptr);
  if (label == nullptr) {
    label = new QLabel(Caption(field));
  }
  if (!IsEdit(field)) {
    // A label that changes, of the edit behind it.
    Describe(*label, field);
    label_ = label;
    return;
  }
  QLineEdit* line = MakeEdit(field);
  label->setBuddy(line);
  label->setToolTip(line->toolTip());
  form.addRow(label, line);
}

void DesktopForm::AddButtons(const std::vector<ControlSpec>& buttons, QBoxLayout& column) {
  if (buttons.empty()) {
    return;
  }
  constexpr int kColumns = 2;
  auto* grid = new QGridLayout;
  int place = 0;
  for (const ControlSpec& button : buttons) {
    grid->addWidget(MakeButton(button), place / kColumns, place % kColumns);
    ++place;
  }
  for (int i = 0; i < kColumns; ++i) {
    grid->setColumnStretch(i, 1);
  }
  column.addLayout(grid);
}

// The accepting button and its escape stand at the right, the others at the left.
QWidget* DesktopForm::BuildButtonBar(const std::vector<ControlSpec>& controls) {
  auto* bar = new QWidget;
  auto* rows = new QVBoxLayout(bar);
  rows->setContentsMargins(0, 0, 0, 0);
  auto* main = new QHBoxLayout;
  auto* others = new QHBoxLayout;
  main->addStretch(1);
  const int defaultButton = model_->spec().defaultButton;
  for (const ControlSpec& control : controls) {
    QPushButton* button = MakeButton(control);
    const bool first = control.number == defaultButton;
    if (first || control.number == kEscapeControl) {
      main->addWidget(button);
    } else {
      others->addWidget(button);
    }
    if (first) {
      button->setDefault(true);
    }
  }
  if (others->count() <= 1) {
    // Few enough for one row.
    while (QLayoutItem* item = others->takeAt(0)) {
      main->insertItem(0, item);
    }
    delete others;
    rows->addLayout(main);
  } else {
    others->addStretch(1);
    rows->addLayout(others);
    rows->addLayout(main);
  }
  return bar;
}

QWidget* DesktopForm::BuildSummary(const ControlSpec& control) {
  auto* box = new QGroupBox(Shown(control.caption));
  box->setAccessibleName(SpokenName(Shown(control.caption)));
  box->setAccessibleDescription(tr("What was set in the dialog before"));
  auto* inner = new QVBoxLayout(box);
  auto* label = new QLabel;
  label->setTextFormat(Qt::PlainText);
  label->setTextInteractionFlags(Qt::TextSelectableByMouse);
  Describe(*label, control);
  inner->addWidget(label);
  return box;
}

QPushButton* DesktopForm::MakeButton(const ControlSpec& control) {
  auto* button = new QPushButton(Caption(control));
  Describe(*button, control);
  button->setAutoDefault(true);  // Enter presses the button that has the focus
  const int number = control.number;
  connect(button, &QPushButton::clicked, this, [this, number] { Press(number); });
  return button;
}

QLineEdit* DesktopForm::MakeEdit(const ControlSpec& control) {
  auto* line = new QLineEdit;
  Describe(*line, control);
  // Wide enough for any number; the width of the window is for the results.
  const int letter = fontMetrics().averageCharWidth();
  line->setMinimumWidth(letter * 14);
  line->setMaximumWidth(letter * 40);
  line->setAlignment(Qt::AlignLeft);
  if (control.readOnly) {
    line->setReadOnly(true);
    line->setStyleSheet(
        QStringLiteral("QLineEdit { background: palette(window); border: 1px solid palette(mid); "
                       "border-radius: 3px; padding: 2px; }"));
    return line;
  }
  Edit edit;
  edit.line = line;
  edit.help = line->toolTip();
  edit.name = line->accessibleName();
  edit.mark = line->addAction(IconOf(QStringLiteral("warning")), QLineEdit::TrailingPosition);
  edit.mark->setVisible(false);
  edits_.insert(control.number, edit);
  const int number = control.number;
  const auto taken = control.whenDone ? &DesktopForm::Held : &DesktopForm::Edited;
  // Not only typed text: assistive technology sets the whole of it.
  connect(line, &QLineEdit::textChanged, this,
          [this, number, taken](const QString& text) { (this->*taken)(number, text); });
  if (control.whenDone) {
    connect(line, &QLineEdit::editingFinished, this, &DesktopForm::SendHeld);
  }
  return line;
}

QWidget* DesktopForm::MakeToggle(const ControlSpec& control) {
  QAbstractButton* toggle = nullptr;
  if (control.kind == ControlKind::Radio) {
    toggle = new QRadioButton(Caption(control));
    const QString field = Shown(control.name);
    QButtonGroup*& group = radios_[field];
    if (group == nullptr) {
      group = new QButtonGroup(this);
    }
    group->addButton(toggle);
  } else {
    toggle = new QCheckBox(Caption(control));
  }
  Describe(*toggle, control);
  // Assistive technology toggles without a click. A click on a button that is checked already
  // toggles nothing, and is a command nevertheless.
  const int number = control.number;
  const bool isRadio = control.kind == ControlKind::Radio;
  connect(toggle, &QAbstractButton::pressed, this, [this] { toggled_ = 0; });
  connect(toggle, &QAbstractButton::toggled, this, [this, number, isRadio](bool checked) {
    if (checked || !isRadio) {
      Toggled(number);
    }
  });
  connect(toggle, &QAbstractButton::clicked, this, [this, number] {
    if (toggled_ != number) {
      Toggled(number);
    }
  });
  return toggle;
}

QListWidget* DesktopForm::MakeList(const ControlSpec& control) {
  auto* list = new QListWidget;
  Describe(*list, control);
  const int side = fontMetrics().height() * 2;
  list->setIconSize(QSize(side, side));
  list->setSpacing(1);
  list->setWordWrap(true);
  list->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  const int number = control.number;
  connect(list, &QListWidget::currentRowChanged, this, [this, number](int row) {
    if (row >= 0) {
      model_->SelectListRow(number, row);
      Q_EMIT Commanded(number, Notification::SelectionChange);
    }
  });
  // Assistive technology selects a row without making it the current one.
  connect(list, &QListWidget::itemSelectionChanged, this, [list] {
    const QList<QListWidgetItem*> chosen = list->selectedItems();
    if (chosen.size() == 1 && chosen.front() != list->currentItem()) {
      list->setCurrentItem(chosen.front());
    }
  });
  connect(list, &QListWidget::itemDoubleClicked, this,
          [this, number] { Q_EMIT Commanded(number, Notification::DoubleClick); });
  return list;
}

QLabel* DesktopForm::MakeHelpText(const ControlSpec& control) {
  auto* label = new QLabel;
  label->setWordWrap(true);
  label->setTextFormat(Qt::PlainText);
  label->setAlignment(Qt::AlignLeft | Qt::AlignTop);
  label->setMargin(8);
  Describe(*label, control);
  return label;
}

// The fields of the pages as they stand there, then the frame's buttons.
void DesktopForm::SetTabOrder() {
  QWidget* last = tabs_;
  const auto follow = [&](const std::vector<ControlSpec>& controls) {
    for (const ControlSpec& control : controls) {
      QWidget* widget = WidgetOf(control.number);
      if (widget != nullptr && (widget->focusPolicy() & Qt::TabFocus) != 0) {
        if (last != nullptr) {
          QWidget::setTabOrder(last, widget);
        }
        last = widget;
      }
    }
  };
  for (const PageSpec& page : spec().pages) {
    follow(Arranged(page));
  }
  follow(spec().frame);
}

void DesktopForm::FocusBox(int control) {
  const auto edit = edits_.constFind(control);
  if (edit == edits_.constEnd()) {
    return;
  }
  for (int page = 0; tabs_ != nullptr && page < tabs_->count(); ++page) {
    if (tabs_->widget(page)->isAncestorOf(edit->line)) {
      tabs_->setCurrentIndex(page);
    }
  }
  edit->line->setFocus(Qt::OtherFocusReason);
  edit->line->selectAll();
}

void DesktopForm::TakeFocus() {
  if (focusBefore_ == nullptr) {
    FocusFirst();
  } else {
    focusBefore_->setFocus(Qt::OtherFocusReason);
  }
}

void DesktopForm::FocusFirst() {
  for (const PageSpec& page : spec().pages) {
    for (const ControlSpec& control : Arranged(page)) {
      QWidget* widget = WidgetOf(control.number);
      if (widget != nullptr && (widget->focusPolicy() & Qt::TabFocus) != 0) {
        widget->setFocus(Qt::OtherFocusReason);
        if (auto* line = qobject_cast<QLineEdit*>(widget)) {
          line->selectAll();
        }
        return;
      }
    }
  }
}

// --- What the user does.

int DesktopForm::ControlOf(const QWidget* widget) const {
  for (auto it = widgets_.begin(); it != widgets_.end(); ++it) {
    if (it.value() == widget) {
      return it.key();
    }
  }
  return 0;
}

// While a search runs the form is disabled, and nothing is taken; whoever can set a text all the
// same sees it disappear.
void DesktopForm::Edited(int control, const QString& text) {
  if (!isEnabled()) {
    TextChanged(control);
    return;
  }
  model_->Type(control, FromText(text));
  Q_EMIT Commanded(control, Notification::Command);
}

// The text counts for what the form shows of it; the dialog hears of it when the user is done.
void DesktopForm::Held(int control, const QString& text) {
  if (!isEnabled()) {
    TextChanged(control);
    return;
  }
  model_->Type(control, FromText(text));
  held_ = control;
}

// A text that cannot be read waits, with its mark, until it is mended: the dialog would put another
// number in its place.
void DesktopForm::SendHeld() {
  const FormModel::Control* held = held_ == 0 ? nullptr : model_->Find(held_);
  if (held == nullptr || !isEnabled() || ReadingOf(*model_, *held) != Reading::Number) {
    return;
  }
  held_ = 0;
  Q_EMIT Commanded(held->spec.number, Notification::Command);
}

// A button works on what the boxes show.
void DesktopForm::Press(int button) {
  SendHeld();
  Q_EMIT Commanded(button, Notification::Command);
}

void DesktopForm::Toggled(int control) {
  toggled_ = control;
  if (!isEnabled()) {
    ChecksChanged();
    return;
  }
  if (auto* box = qobject_cast<QCheckBox*>(WidgetOf(control))) {
    model_->CheckDlgButton(control, box->isChecked());
  }
  Q_EMIT Commanded(control, Notification::Command);
}

void DesktopForm::Type(int control, const QString& text) {
  if (auto* line = qobject_cast<QLineEdit*>(WidgetOf(control))) {
    const QSignalBlocker quiet(line);
    line->setText(text);
    held_ = held_ == control ? 0 : held_;
    Edited(control, text);
  }
}

void DesktopForm::Click(int control) {
  if (auto* button = qobject_cast<QAbstractButton*>(WidgetOf(control))) {
    button->click();
  } else {
    Press(control);
  }
}

void DesktopForm::Choose(int list, int row) {
  model_->SelectListRow(list, row);
  Q_EMIT Commanded(list, Notification::SelectionChange);
}

void DesktopForm::PressDefault() { Click(spec().defaultButton); }

void DesktopForm::keyPressEvent(QKeyEvent* event) {
  if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) {
    PressDefault();
  } else if (event->key() == Qt::Key_Escape) {
    Click(kEscapeControl);
  } else {
    QWidget::keyPressEvent(event);
  }
}

bool DesktopForm::event(QEvent* event) {
  if (event->type() == QEvent::PaletteChange || event->type() == QEvent::StyleChange) {
    StyleHelpTexts();
  }
  return QWidget::event(event);
}

// --- Marks while typing.

// What stands in the box of an unknown, or of the value that was reached, is an answer, not an
// input.
bool DesktopForm::IsAnswer(const ControlSpec& box) const {
  const ControlSpec* unknown =
      UnknownBox(spec(), [this](int radio) { return model_->IsDlgButtonChecked(radio); });
  return box.name == "ActualValue" || (unknown != nullptr && unknown->number == box.number);
}

QString DesktopForm::Fault(int control) const {
  const FormModel::Control* held = model_->Find(control);
  if (held == nullptr || IsAnswer(held->spec)) {
    return {};
  }
  if (const Reading reading = ReadingOf(*model_, *held); reading != Reading::Number) {
    return tr(WordsOf(reading).mark);
  }
  if (held->counting) {
    return tr("The dialog does not take this; %1 counts.")
        .arg(ToText(FormatShortest(*held->counting)));
  }
  double value = 0;
  model_->GetDlgItemDouble(control, value);
  if (held->lower && value < *held->lower) {
    return tr("Below the lowest value, %1.").arg(ToText(FormatShortest(*held->lower)));
  }
  if (held->upper && value > *held->upper) {
    return tr("Above the highest value, %1.").arg(ToText(FormatShortest(*held->upper)));
  }
  return {};
}

QString DesktopForm::RangeOf(const FormModel::Control& held) const {
  const bool whole = held.spec.kind == ControlKind::IntEdit;
  if (!held.lower || !held.upper) {
    return whole ? tr("It takes a whole number.") : tr("It takes a number.");
  }
  return (whole ? tr("It takes a whole number from %1 to %2.")
                : tr("It takes a number from %1 to %2."))
      .arg(ToText(FormatShortest(*held.lower)), ToText(FormatShortest(*held.upper)));
}

std::vector<UnreadableBox> DesktopForm::UnreadableBoxes() const {
  std::vector<UnreadableBox> boxes;
  for (const ControlSpec& control : AllControls(spec())) {
    const auto edit = edits_.constFind(control.number);
    if (edit == edits_.constEnd() || IsAnswer(control)) {
      continue;
    }
    const FormModel::Control& held = *model_->Find(control.number);
    if (!held.visible) {
      continue;
    }
    const Reading reading = ReadingOf(*model_, held);
    if (reading == Reading::Number) {
      continue;
    }
    const QString text = ToText(held.text);
    QString words = tr(WordsOf(reading).sentence).arg(edit->name);
    if (reading != Reading::Missing) {
      words = words.arg(text);
    }
    boxes.push_back(
        {control.number, words + QLatin1Char(' ') + RangeOf(held), WithPoint(control, text)});
  }
  return boxes;
}

bool DesktopForm::TakesValues(int button) const {
  constexpr std::array<std::string_view, 5> kOthers = {"Cancel", "Options", "RestoreDefaults",
                                                       "Open", "Paste"};
  const ControlSpec* control = FindControlSpec(spec(), button);
  return control != nullptr && control->kind == ControlKind::Button &&
         std::find(kOthers.begin(), kOthers.end(), control->name) == kOthers.end();
}

void DesktopForm::Mark(int control) {
  const auto edit = edits_.constFind(control);
  if (edit == edits_.constEnd()) {
    return;
  }
  const QString fault = Fault(control);
  const QString tip = fault.isEmpty() ? edit->help : fault + QLatin1Char('\n') + edit->help;
  edit->mark->setVisible(!fault.isEmpty());
  edit->mark->setToolTip(fault);
  edit->line->setToolTip(tip);
  edit->line->setStatusTip(fault.isEmpty() ? edit->help : fault);
  edit->line->setAccessibleDescription(tip);
  edit->line->setStyleSheet(fault.isEmpty()
                                ? QString()
                                : QStringLiteral("QLineEdit { border: 2px solid #c0392b; "
                                                 "border-radius: 3px; padding: 2px; }"));
}

// --- What the model has changed.

void DesktopForm::TextChanged(int control) {
  const QString text = ToText(model_->GetDlgItemText(control));
  QWidget* widget = WidgetOf(control);
  if (auto* line = qobject_cast<QLineEdit*>(widget)) {
    // Not what stands there already: whoever types keeps the cursor.
    if (line->text() != text) {
      held_ = held_ == control ? 0 : held_;
      const QSignalBlocker quiet(line);
      line->setText(text);
      line->setCursorPosition(0);
    }
    Mark(control);
  } else if (auto* label = qobject_cast<QLabel*>(widget)) {
    label->setText(text);
    label->setAccessibleDescription(text);
  } else if (auto* button = qobject_cast<QAbstractButton*>(widget)) {
    button->setText(text);
    button->setAccessibleName(SpokenName(text));
  }
}

void DesktopForm::ChecksChanged() {
  // Of radio buttons the checked one alone: its group unchecks the others.
  for (const ControlSpec& control : AllControls(spec())) {
    auto* button = qobject_cast<QAbstractButton*>(WidgetOf(control.number));
    const bool checked = model_->IsDlgButtonChecked(control.number);
    if (button != nullptr && (checked || control.kind == ControlKind::CheckBox)) {
      const QSignalBlocker quiet(button);
      button->setChecked(checked);
    }
  }
  // Another box may have become that of the unknown.
  for (auto edit = edits_.constBegin(); edit != edits_.constEnd(); ++edit) {
    Mark(edit.key());
  }
}

// Rows come one by one behind those that are there, and go all at once.
void DesktopForm::ListChanged(int list) {
  auto* rows = qobject_cast<QListWidget*>(WidgetOf(list));
  if (rows == nullptr) {
    return;
  }
  const FormModel::Control& held = *model_->Find(list);
  const QSignalBlocker quiet(rows);
  if (held.rows.empty()) {
    rows->clear();
  }
  for (auto i = static_cast<std::size_t>(rows->count()); i < held.rows.size(); ++i) {
    rows->addItem(new QListWidgetItem(IconOf(held.icons[i]), Shown(held.rows[i])));
  }
  if (rows->currentRow() != held.selected) {
    rows->setCurrentRow(held.selected);
  }
}

void DesktopForm::LookChanged(int control) {
  if (model_->Find(control)->helpText) {
    StyleHelpTexts();
  }
  if (QWidget* widget = WidgetOf(control)) {
    widget->setVisible(model_->Find(control)->visible);
  }
  if (cells_ != nullptr && IsCell(model_->Find(control)->spec)) {
    cells_->ShowTitles();
  }
}

void DesktopForm::EnabledChanged() {
  if (!model_->IsEnabled()) {
    focusBefore_ = focusWidget();
  }
  setEnabled(model_->IsEnabled());
}

// A help text stands out from the page by the colours of a tool tip's quiet cousin.
void DesktopForm::StyleHelpTexts() {
  for (QWidget* widget : std::as_const(widgets_)) {
    const FormModel::Control* held = model_->Find(ControlOf(widget));
    if (held != nullptr && held->helpText) {
      widget->setAutoFillBackground(true);
      widget->setBackgroundRole(QPalette::AlternateBase);
      widget->setForegroundRole(QPalette::Text);
    }
  }
}

}  // namespace poweranalysis
