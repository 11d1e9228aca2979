#pragma once

#include <QHash>
#include <QPointer>
#include <QString>
#include <QWidget>
#include <memory>
#include <vector>

#include "host/AnalysisSupport.h"

class QAbstractButton;
class QBoxLayout;
class QButtonGroup;
class QFormLayout;
class QGroupBox;
class QLabel;
class QLineEdit;
class QListWidget;
class QPushButton;
class QTabWidget;

namespace poweranalysis {

class CellTable;

// A box whose text does not read as a number of its kind. It counts as 0 in the calculations.
struct UnreadableBox {
  int control = 0;
  QString words;     // what is wrong, by the name of the box, and what it takes
  QString proposal;  // the number with a point, where a comma stands for it; else empty
};

// The visible side of one dialog, built from its description alone. What the controls hold is kept
// by the form model; the widgets show it and pass on what the user does. So a number reads the same
// whether it was typed here, given as an option or set by a script.
class DesktopForm : public QWidget, public FormView {
  Q_OBJECT

 public:
  explicit DesktopForm(std::shared_ptr<FormModel> model);
  ~DesktopForm() override;

  const FormModel& model() const { return *model_; }
  const DialogSpec& spec() const { return model_->spec(); }
  // The widget of a control; null when the dialog has none of that number.
  QWidget* WidgetOf(int control) const { return widgets_.value(control); }
  // The control that a widget of this form is; 0 for none.
  int ControlOf(const QWidget* widget) const;

  // As the user does: a text typed, a button clicked, a row chosen. Each sends its command.
  void Type(int control, const QString& text);
  void Click(int control);
  void Choose(int list, int row);

  // Where it was when another dialog came on top, or in the first field.
  void TakeFocus();
  void FocusBox(int control);
  void PressDefault();

  // The inputs that cannot be read, in the order of the dialog.
  std::vector<UnreadableBox> UnreadableBoxes() const;
  // Does a button compute with what is in the boxes, or save it?
  bool TakesValues(int button) const;

  // --- FormView.
  void Built() override;
  void TextChanged(int control) override;
  void ChecksChanged() override;
  void ListChanged(int list) override;
  void LookChanged(int control) override;
  void EnabledChanged() override;

 Q_SIGNALS:
  // The user did something; the host passes it to the dialog.
  void Commanded(int control, poweranalysis::Notification notification);

 protected:
  void keyPressEvent(QKeyEvent* event) override;
  bool event(QEvent* event) override;

 private:
  struct Edit {
    QLineEdit* line = nullptr;
    QAction* mark = nullptr;
    QString help;
    QString name;
  };

  QWidget* BuildPage(const PageSpec& page);
  QLayout* BuildLists(const PageSpec& page);
  void AddGroup(const PageSpec& page, const std::vector<ControlSpec>& controls, QBoxLayout& column);
  void AddCell(const PageSpec& page, const ControlSpec& cell, QBoxLayout& column);
  void AddButtons(const std::vector<ControlSpec>& buttons, QBoxLayout& column);
  QFormLayout* AddForm(QBoxLayout& column);
  void AddField(const ControlSpec& field, QFormLayout& form);
  QWidget* BuildButtonBar(const std::vector<ControlSpec>& controls);
  QWidget* BuildSummary(const ControlSpec& control);
  QPushButton* MakeButton(const ControlSpec& control);
  QLineEdit* MakeEdit(const ControlSpec& control);
  QWidget* MakeToggle(const ControlSpec& control);
  QListWidget* MakeList(const ControlSpec& control);
  QLabel* MakeHelpText(const ControlSpec& control);
  void Describe(QWidget& widget, const ControlSpec& control);
  void AssignMnemonics(const DialogSpec& spec);
  QString Caption(const ControlSpec& control) const { return captions_.value(control.number); }
  void SetTabOrder();
  void FocusFirst();
  void Edited(int control, const QString& text);
  void Held(int control, const QString& text);
  void SendHeld();
  void Press(int button);
  void Toggled(int control);
  void Mark(int control);
  bool IsAnswer(const ControlSpec& box) const;
  QString Fault(int control) const;
  QString RangeOf(const FormModel::Control& held) const;
  void StyleHelpTexts();

  std::shared_ptr<FormModel> model_;
  QPointer<QWidget> focusBefore_;  // while another dialog lies on top
  QHash<int, QWidget*> widgets_;
  QHash<int, Edit> edits_;
  QHash<QString, QButtonGroup*> radios_;
  int toggled_ = 0;  // the toggle that the click under way has changed
  int held_ = 0;     // the edit that was typed in and has not been sent yet
  QTabWidget* tabs_ = nullptr;
  CellTable* cells_ = nullptr;
  QLabel* label_ = nullptr;       // waits for the edit behind it
  QHash<int, QString> captions_;  // with their mnemonics
};

}  // namespace poweranalysis
