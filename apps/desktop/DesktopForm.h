#pragma once

#include <QHash>
#include <QString>
#include <QWidget>
#include <vector>

#include "host/AnalysisSupport.h"
#include "host/HeadlessHost.h"

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

// A box whose text does not read as a number of its kind. It counts as 0 in the calculations.
struct UnreadableBox {
  int control = 0;
  QString words;     // what is wrong, by the name of the box, and what it takes
  QString proposal;  // the number with a point, where a comma stands for it; else empty
};

// The visible side of one dialog, built from its description alone. What the controls hold is kept
// by the same form that runs without a window; the widgets show it and pass on what the user does.
// So a number reads the same whether it was typed here, given as an option or set by a script.
class DesktopForm : public QWidget, public Form {
  Q_OBJECT

 public:
  explicit DesktopForm(QWidget* parent = nullptr);

  const DialogSpec& spec() const { return model_.spec(); }
  // The widget of a control; null when the dialog has none of that number.
  QWidget* WidgetOf(int control) const { return widgets_.value(control); }
  const HeadlessForm::Control* Find(int control) const { return model_.Find(control); }
  // The control that a widget of this form is; 0 for none.
  int ControlOf(const QWidget* widget) const;

  // As the user does: a text typed, a button clicked, a row chosen. Each sends its command.
  void Type(int control, const QString& text);
  void Click(int control);
  void Choose(int list, int row);

  void FocusFirst();
  void FocusBox(int control);
  void PressDefault();

  // The inputs that cannot be read, in the order of the dialog.
  std::vector<UnreadableBox> UnreadableBoxes() const;
  // Does a button compute with what is in the boxes, or save it?
  bool TakesValues(int button) const;

  // --- Form.
  void AddDlgTabs(const DialogSpec& spec) override;
  void SetDlgItemText(int control, std::string_view text) override;
  std::string GetDlgItemText(int control) const override;
  void SetDlgItemLong(int control, std::int64_t value) override;
  std::int32_t GetDlgItemLong(int control) const override;
  void SetDlgItemDouble(int control, double value, int width, int decimals) override;
  int GetDlgItemDouble(int control, double& value) const override;
  void SetRETruncate(int control, int truncate) override;
  void CheckRadioButton(int first, int last, int checked) override;
  void CheckDlgButton(int control, bool checked) override;
  bool IsDlgButtonChecked(int control) const override;
  void SetIntEditRange(int control, std::int32_t lower, std::int32_t upper) override;
  void SetRealEditRange(int control, double lower, double upper, int form) override;
  void ResetListContent(int list) override;
  void AddListRow(int list, std::string_view text, int icon) override;
  void SelectListRow(int list, int row) override;
  int SelectedListRow(int list) const override;
  void SetHelpTextAttrib(int control) override;
  void ShowControl(int control, bool shown) override;
  bool IsWindow() const override { return model_.IsWindow(); }

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
  void AddGroup(const std::vector<ControlSpec>& controls, QBoxLayout& column);
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
  void ShowText(int control);
  void ShowChecked();
  void Edited(int control, const QString& text);
  void Toggled(int control);
  void Mark(int control);
  bool IsAnswer(const ControlSpec& box) const;
  QString Fault(int control) const;
  QString RangeOf(const HeadlessForm::Control& held) const;
  void StyleHelpTexts();

  HeadlessForm model_;
  QHash<int, QWidget*> widgets_;
  QHash<int, Edit> edits_;
  QHash<QString, QButtonGroup*> radios_;
  int toggled_ = 0;  // the toggle that the click under way has changed
  QTabWidget* tabs_ = nullptr;
  QLabel* label_ = nullptr;       // waits for the edit behind it
  QHash<int, QString> captions_;  // with their mnemonics
};

}  // namespace poweranalysis
