#include "desktop/OptionsDialog.h"

#include <QAbstractItemView>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QFormLayout>
#include <QLabel>
#include <QPushButton>
#include <QSpinBox>
#include <QVBoxLayout>

#include "desktop/Strings.h"

namespace poweranalysis {

namespace {

void Describe(QWidget& widget, const QString& name, const QString& help) {
  widget.setAccessibleName(name);
  widget.setAccessibleDescription(help);
  widget.setToolTip(help);
  widget.setStatusTip(help);
}

// The list that drops down takes the focus while it is open, so it has to say what it offers.
void Describe(QComboBox& combo, const QString& name, const QString& help) {
  Describe(static_cast<QWidget&>(combo), name, help);
  Describe(*combo.view(), name, help);
}

void AddRow(QFormLayout& form, const QString& caption, QWidget& field) {
  auto* label = new QLabel(caption);
  label->setBuddy(&field);
  form.addRow(label, &field);
}

}  // namespace

OptionsDialog::OptionsDialog(const OutputOptions& options, QWidget* parent)
    : QDialog(parent), routing_(new QComboBox), level_(new QComboBox), digits_(new QSpinBox) {
  setWindowTitle(tr("Output Options"));
  setAccessibleName(windowTitle());
  routing_->addItem(tr("Tables and reports"), true);
  routing_->addItem(tr("Tables only"), false);
  routing_->setCurrentIndex(options.report ? 0 : 1);
  Describe(*routing_, tr("Routing"), tr("What a calculation puts into the workbook"));

  const QString names[] = {tr("1: Brief"), tr("2: Medium"), tr("3: Long"),
                           tr("4: Comprehensive, with reports")};
  for (int level = LowestLevel; level <= HighestLevel; ++level) {
    level_->addItem(names[level - LowestLevel], level);
  }
  level_->setCurrentIndex(options.level - LowestLevel);
  Describe(*level_, tr("Level of detail"),
           tr("Reports in words are written at the highest level alone"));

  digits_->setRange(2, 15);
  digits_->setValue(options.digits);
  Describe(*digits_, tr("Digits in tables"),
           tr("Significant digits of a cell; the tool tip of a cell always has all of them"));

  auto* column = new QVBoxLayout(this);
  auto* form = new QFormLayout;
  AddRow(*form, tr("&Routing"), *routing_);
  AddRow(*form, tr("&Level of detail"), *level_);
  AddRow(*form, tr("&Digits in tables"), *digits_);
  column->addLayout(form);
  auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel);
  Describe(*buttons->button(QDialogButtonBox::Ok), tr("OK"), tr("Use these options"));
  Describe(*buttons->button(QDialogButtonBox::Cancel), tr("Cancel"), tr("Leave all as it was"));
  connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
  connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
  column->addWidget(buttons);
}

OutputOptions OptionsDialog::options() const {
  return {routing_->currentData().toBool(), level_->currentData().toInt(), digits_->value()};
}

}  // namespace poweranalysis
