#pragma once

#include <QDialog>

#include "desktop/DesktopHost.h"

class QCheckBox;
class QComboBox;
class QSpinBox;

namespace poweranalysis {

// How results are routed and shown.
class OptionsDialog : public QDialog {
  Q_OBJECT

 public:
  explicit OptionsDialog(const OutputOptions& options, QWidget* parent = nullptr);
  OutputOptions options() const;

 private:
  QComboBox* routing_;
  QComboBox* level_;
  QSpinBox* digits_;
};

}  // namespace poweranalysis
