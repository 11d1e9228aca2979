#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "host/DialogSpec.h"

namespace poweranalysis {

// Whoever shows a form model. It is called after each change, and reads the model to see what
// changed.
class FormView {
 public:
  FormView() = default;
  FormView(const FormView&) = delete;
  FormView& operator=(const FormView&) = delete;
  virtual ~FormView() = default;

  virtual void Built() = 0;
  virtual void TextChanged(int control) = 0;  // or the range that is a hint to it
  virtual void ChecksChanged() = 0;           // of radio buttons and check boxes
  virtual void ListChanged(int list) = 0;     // its rows, or which is selected
  virtual void LookChanged(int control) = 0;  // shown or hidden, or styled as a help text
  virtual void EnabledChanged() = 0;          // of the form as a whole
};

// The form of one dialog: what each control holds, by number. A dialog reads and writes its
// controls here and knows nothing of widgets; without a window this is all there is. Operations on
// a control that the form lacks do nothing.
class FormModel {
 public:
  struct Control {
    ControlSpec spec;
    std::string text;
    std::optional<double> number;  // the full value behind a shown text
    bool checked = false;
    bool visible = true;
    bool helpText = false;
    std::vector<std::string> rows;
    std::vector<int> icons;
    int selected = -1;
    std::optional<double> counting;  // the value that counts while the shown text is refused
    std::optional<double> lower;     // typing hints
    std::optional<double> upper;
    int resets = 0;  // how often the list was emptied
  };

  // Builds the controls of the frame and its pages.
  void AddDlgTabs(const DialogSpec& spec);
  const DialogSpec& spec() const { return spec_; }
  // The control, or null when the dialog has none of that number.
  const Control* Find(int control) const;

  void SetDlgItemText(int control, std::string_view text);
  std::string GetDlgItemText(int control) const;
  // As the user types: the text alone.
  void Type(int control, std::string_view text) { SetDlgItemText(control, text); }

  void SetDlgItemLong(int control, std::int64_t value);
  // The whole number of the text, toward zero and held to 32 bits; 0 for a text that is not a
  // number.
  std::int32_t GetDlgItemLong(int control) const;

  // Shows at most `decimals` decimals; the full value stays with the control until it is typed in.
  void SetDlgItemDouble(int control, double value, int width, int decimals);
  // 0 and the value, or nonzero for a text that is not a number.
  int GetDlgItemDouble(int control, double& value) const;
  // The dialog keeps another value than the one shown, until the text changes.
  void SetCountingValue(int control, double value);
  void SetRETruncate(int /*control*/, int /*truncate*/) {}

  void CheckRadioButton(int first, int last, int checked);
  void CheckDlgButton(int control, bool checked);
  bool IsDlgButtonChecked(int control) const;

  // Typing hints; a value outside is never refused here.
  void SetIntEditRange(int control, std::int32_t lower, std::int32_t upper);
  void SetRealEditRange(int control, double lower, double upper, int form);

  void ResetListContent(int list);
  void AddListRow(int list, std::string_view text, int icon);
  void SelectListRow(int list, int row);
  int SelectedListRow(int list) const;  // -1: none

  void SetHelpTextAttrib(int control);
  void ShowControl(int control, bool shown);

  // False once the window has gone, as when it was destroyed during a calculation.
  bool IsWindow() const { return window_; }
  void DestroyWindow() { window_ = false; }
  // A form is disabled while a modal dialog lies on top of it.
  bool IsEnabled() const { return enabled_; }
  void Enable(bool enabled);

  // At most one view listens; null for none.
  void SetView(FormView* view) { view_ = view; }

 private:
  Control* FindForChange(int control);
  void SetRange(int control, double lower, double upper);
  template <class... Arguments>
  void Notify(void (FormView::*change)(Arguments...), Arguments... arguments) {
    if (view_ != nullptr) {
      (view_->*change)(arguments...);
    }
  }

  DialogSpec spec_;
  std::map<int, Control> controls_;
  bool window_ = true;
  bool enabled_ = true;
  FormView* view_ = nullptr;
};

}  // namespace poweranalysis
