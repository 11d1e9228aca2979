#pragma once

#include <QDialog>
#include <vector>

#include "desktop/KeptWork.h"

class QButtonGroup;
class QGridLayout;

namespace poweranalysis {

// Asks of each work that was left behind whether to open it, keep it for later or delete it. One
// can be opened, for a window shows one workbook. Closing the dialog keeps them all.
class RecoveryDialog : public QDialog {
  Q_OBJECT

 public:
  enum Choice { Open, Later, Delete };

  explicit RecoveryDialog(const std::vector<LeftWork>& works, QWidget* parent = nullptr);

  Choice ChoiceOf(std::size_t work) const;

 private:
  void AddWork(const LeftWork& work, QGridLayout& grid);
  void OpenOnly(const QButtonGroup* chosen);

  std::vector<QButtonGroup*> rows_;
};

}  // namespace poweranalysis
