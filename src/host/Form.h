#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "host/DialogSpec.h"

namespace poweranalysis {

// The visible side of one dialog: its controls by number. A dialog reads and writes controls
// through this and knows nothing of widgets. Operations on a control that the form lacks do
// nothing.
class Form {
 public:
  virtual ~Form() = default;

  // Builds the controls; AddDlgTabs of the frame and its pages.
  virtual void AddDlgTabs(const DialogSpec& spec) = 0;

  virtual void SetDlgItemText(int control, std::string_view text) = 0;
  virtual std::string GetDlgItemText(int control) const = 0;

  virtual void SetDlgItemLong(int control, std::int64_t value) = 0;
  // The whole number of the text, toward zero and held to 32 bits; 0 for a text that is not a
  // number.
  virtual std::int32_t GetDlgItemLong(int control) const = 0;

  // Shows at most `decimals` decimals; the full value stays with the control until it is typed in.
  virtual void SetDlgItemDouble(int control, double value, int width, int decimals) = 0;
  // 0 and the value, or nonzero for a text that is not a number.
  virtual int GetDlgItemDouble(int control, double& value) const = 0;
  virtual void SetRETruncate(int control, int truncate) = 0;

  virtual void CheckRadioButton(int first, int last, int checked) = 0;
  virtual void CheckDlgButton(int control, bool checked) = 0;
  virtual bool IsDlgButtonChecked(int control) const = 0;

  // Typing hints; a value outside is never refused here.
  virtual void SetIntEditRange(int control, std::int32_t lower, std::int32_t upper) = 0;
  virtual void SetRealEditRange(int control, double lower, double upper, int form) = 0;

  virtual void ResetListContent(int list) = 0;
  virtual void AddListRow(int list, std::string_view text, int icon) = 0;
  virtual void SelectListRow(int list, int row) = 0;
  virtual int SelectedListRow(int list) const = 0;  // -1: none

  virtual void SetHelpTextAttrib(int control) = 0;
  virtual void ShowControl(int control, bool shown) = 0;

  // False once the window has gone, as when it was destroyed during a calculation.
  virtual bool IsWindow() const = 0;
};

}  // namespace poweranalysis
