#include <QApplication>
#include <QDialog>
#include <QDialogButtonBox>
#include <QFile>
#include <QFileDialog>
#include <QFileInfo>
#include <QMessageBox>
#include <QPlainTextEdit>
#include <QProcess>
#include <QPushButton>
#include <QStatusBar>
#include <QVBoxLayout>

#include "desktop/MacroHost.h"
#include "desktop/MainWindow.h"
#include "desktop/Names.h"
#include "desktop/StudyExport.h"

// Macros: recorded, run and edited.
namespace poweranalysis {

void MainWindow::StartRecording() {
  recorder_.Clear();
  recording_ = true;
  record_->setEnabled(false);
  stopRecording_->setEnabled(true);
  statusBar()->showMessage(tr("Recording a macro"));
}

void MainWindow::StopRecording() {
  recording_ = false;
  record_->setEnabled(true);
  stopRecording_->setEnabled(false);
  statusBar()->clearMessage();
  if (recorder_.empty()) {
    statusBar()->showMessage(tr("Nothing was done that a macro could hold."), 5000);
    return;
  }
  QString path = QFileDialog::getSaveFileName(this, tr("Keep the macro"), tr("macro.py"),
                                              tr("Macros (*.py);;All files (*)"));
  if (path.isEmpty()) {
    return;
  }
  if (QFileInfo(path).suffix().isEmpty()) {
    path += QStringLiteral(".py");
  }
  const QString fault = WriteFile(path, QByteArray::fromStdString(recorder_.Script()));
  if (!fault.isEmpty()) {
    Complain(fault);
  }
}

// What the user did, before the dialog answers it.
void MainWindow::Record(const DialogEvent& event) {
  const FormModel* form = host_->form();
  const FormModel::Control* control = form == nullptr ? nullptr : form->Find(event.control);
  if (!recording_ || control == nullptr) {
    return;
  }
  constexpr int kAccept = 1;
  const std::uint64_t dialog = host_->dialogNumber();
  switch (control->spec.kind) {
    case ControlKind::IntEdit:
    case ControlKind::RealEdit: {
      double value = 0;
      const bool isNumber = form->GetDlgItemDouble(event.control, value) == 0;
      recorder_.Typed(dialog, form->spec(), event.control, form->GetDlgItemText(event.control),
                      isNumber ? std::optional<double>(value) : std::nullopt);
      break;
    }
    case ControlKind::List:
      if (event.notification == Notification::DoubleClick) {
        recorder_.Pressed(dialog, form->spec(), kAccept);
      } else {
        recorder_.Selected(dialog, form->spec(), event.control,
                           form->SelectedListRow(event.control));
      }
      break;
    case ControlKind::CheckBox:
      recorder_.Pressed(dialog, form->spec(), event.control,
                        form->IsDlgButtonChecked(event.control));
      break;
    default:
      recorder_.Pressed(dialog, form->spec(), event.control);
      break;
  }
}

void MainWindow::RunMacro() {
  const QString path =
      QFileDialog::getOpenFileName(this, tr("Run a macro"), {}, tr("Macros (*.py);;All files (*)"));
  if (path.isEmpty()) {
    return;
  }
  QMessageBox warning(
      QMessageBox::Warning, tr("Run a macro"),
      tr("A macro is a program. It can do whatever you can do on this computer: read "
         "and delete your files, or send them away. Run it only if you trust where "
         "it comes from.\n\n%1")
          .arg(path),
      QMessageBox::Cancel, this);
  QPushButton* run = warning.addButton(tr("Run"), QMessageBox::AcceptRole);
  warning.setDefaultButton(QMessageBox::Cancel);
  warning.exec();
  if (warning.clickedButton() != run) {
    return;
  }
  if (MacroHost::IsAvailable() && macros_->running()) {
    Complain(tr("Another macro is running. Wait for it, or stop it."));
    return;
  }
  const MacroDialog shown = ShowMacroDialog(path);
  if (MacroHost::IsAvailable()) {
    RunInside(path, shown);
  } else {
    RunBeside(path, shown);
  }
}

MainWindow::MacroDialog MainWindow::ShowMacroDialog(const QString& path) {
  MacroDialog shown;
  shown.dialog = new QDialog(this);
  shown.dialog->setAttribute(Qt::WA_DeleteOnClose);
  shown.dialog->setWindowTitle(tr("Macro %1").arg(path));
  shown.dialog->setAccessibleName(shown.dialog->windowTitle());
  auto* column = new QVBoxLayout(shown.dialog);
  shown.output = new QPlainTextEdit;
  shown.output->setReadOnly(true);
  shown.output->setAccessibleName(tr("Output of the macro"));
  shown.output->setAccessibleDescription(tr("What the macro prints"));
  column->addWidget(shown.output);
  shown.stop = new QPushButton(tr("&Stop"));
  shown.stop->setAccessibleName(tr("Stop"));
  shown.stop->setAccessibleDescription(tr("End the macro"));
  column->addWidget(shown.stop);
  shown.dialog->resize(640, 400);
  shown.dialog->show();
  return shown;
}

void MainWindow::RunInside(const QString& path, const MacroDialog& shown) {
  QPlainTextEdit* output = shown.output;
  QPushButton* stop = shown.stop;
  connect(macros_, &MacroHost::Printed, output, [output](const QString& text) {
    output->moveCursor(QTextCursor::End);
    output->insertPlainText(text);
  });
  // A macro that prints without end must not fill the memory.
  constexpr int kMostLines = 10000;
  output->setMaximumBlockCount(kMostLines);
  QDialog* dialog = shown.dialog;
  connect(macros_, &MacroHost::Finished, output,
          [this, dialog, output, stop](const QString& fault) {
            output->appendPlainText(fault.isEmpty() ? tr("The macro has ended.") : fault);
            stop->setEnabled(false);
            // The next macro has its own dialog; this one is no longer needed.
            disconnect(stop, nullptr, macros_, nullptr);
            disconnect(dialog, nullptr, macros_, nullptr);
            disconnect(macros_, nullptr, output, nullptr);
          });
  connect(stop, &QPushButton::clicked, macros_, &MacroHost::Stop);
  connect(shown.dialog, &QDialog::finished, macros_, &MacroHost::Stop);
  if (!macros_->Run(path)) {
    output->appendPlainText(tr("Another macro is running. Wait for it, or stop it."));
    stop->setEnabled(false);
  }
}

// Without its own interpreter the program leaves the macro to the system's: then the macro has its
// own dialogs, and not those of this window.
void MainWindow::RunBeside(const QString& path, const MacroDialog& shown) {
  QPlainTextEdit* output = shown.output;
  QPushButton* stop = shown.stop;
  auto* process = new QProcess(shown.dialog);
  QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
  const QString package = QApplication::applicationDirPath() + QStringLiteral("/../python");
  if (QFile::exists(package)) {
    environment.insert(QStringLiteral("PYTHONPATH"), package);
  }
  process->setProcessEnvironment(environment);
  process->setProcessChannelMode(QProcess::MergedChannels);
  connect(process, &QProcess::readyRead, output,
          [process, output] { output->appendPlainText(QString::fromUtf8(process->readAll())); });
  connect(process, &QProcess::finished, output, [output, stop](int code) {
    output->appendPlainText(tr("The macro has ended with status %1.").arg(code));
    stop->setEnabled(false);
  });
  connect(stop, &QPushButton::clicked, process, &QProcess::kill);
  connect(shown.dialog, &QDialog::finished, process, &QProcess::kill);
  process->start(QStringLiteral("/usr/bin/python3"), {path});
}

void MainWindow::EditMacro() {
  const QString path = QFileDialog::getOpenFileName(this, tr("Edit a macro"), {},
                                                    tr("Macros (*.py);;All files (*)"));
  QFile file(path);
  if (path.isEmpty()) {
    return;
  }
  if (!file.open(QIODevice::ReadOnly)) {
    Complain(tr("%1 could not be read: %2").arg(path, file.errorString()));
    return;
  }
  auto* dialog = new QDialog(this);
  dialog->setAttribute(Qt::WA_DeleteOnClose);
  dialog->setWindowTitle(path);
  dialog->setAccessibleName(path);
  auto* column = new QVBoxLayout(dialog);
  auto* editor = new QPlainTextEdit(QString::fromUtf8(file.readAll()));
  editor->setFont(QFont(QStringLiteral("DejaVu Sans Mono")));
  editor->setAccessibleName(tr("Text of the macro"));
  editor->setAccessibleDescription(path);
  column->addWidget(editor);
  auto* buttons = new QDialogButtonBox(QDialogButtonBox::Save | QDialogButtonBox::Cancel);
  NameButtons(*buttons);
  column->addWidget(buttons);
  connect(buttons, &QDialogButtonBox::rejected, dialog, &QDialog::reject);
  connect(buttons, &QDialogButtonBox::accepted, dialog, [this, dialog, editor, path] {
    const QString fault = WriteFile(path, editor->toPlainText().toUtf8());
    if (fault.isEmpty()) {
      dialog->accept();
    } else {
      Complain(fault);
    }
  });
  dialog->resize(720, 560);
  dialog->show();
}

}  // namespace poweranalysis
