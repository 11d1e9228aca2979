#include "desktop/ResultPages.h"

#include <QAction>
#include <QHBoxLayout>
#include <QLabel>
#include <QTextBrowser>
#include <QToolButton>
#include <QVBoxLayout>

#include "desktop/ChartView.h"
#include "desktop/Strings.h"
#include "desktop/StudyDocument.h"
#include "desktop/SummaryTableModel.h"

namespace poweranalysis {

namespace {

QTextBrowser* MakeBrowser(const QString& name, const QString& description) {
  auto* browser = new QTextBrowser;
  browser->setAccessibleName(name);
  browser->setAccessibleDescription(description);
  browser->setOpenExternalLinks(false);
  browser->setFrameShape(QFrame::NoFrame);
  browser->document()->setDocumentMargin(16);
  browser->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
  return browser;
}

QToolButton* MakeTool(const QString& text, const QString& help) {
  auto* button = new QToolButton;
  button->setText(text);
  button->setToolTip(help);
  button->setStatusTip(help);
  button->setAccessibleName(WithoutMnemonic(text));
  button->setAccessibleDescription(help);
  button->setFocusPolicy(Qt::StrongFocus);
  return button;
}

}  // namespace

ResultPages::ResultPages(QWidget* parent)
    : QStackedWidget(parent),
      study_(MakeBrowser(tr("Study"), tr("The whole study: tables, reports and charts"))),
      report_(MakeBrowser(tr("Report"), tr("The report in words"))) {
  setAccessibleName(tr("Result"));
  addWidget(study_);
  addWidget(report_);
  tablePage_ = BuildTablePage();
  addWidget(tablePage_);
  chartPage_ = BuildChartPage();
  addWidget(chartPage_);
  ShowWelcome();
}

QWidget* ResultPages::BuildTablePage() {
  auto* page = new QWidget;
  auto* column = new QVBoxLayout(page);
  column->setContentsMargins(16, 12, 16, 12);
  tableTitle_ = new QLabel;
  tableTitle_->setTextInteractionFlags(Qt::TextSelectableByMouse);
  tableTitle_->setAccessibleName(tr("Headings of the table"));
  column->addWidget(tableTitle_);
  model_ = new SummaryTableModel(this);
  table_ = new SummaryTableView;
  table_->setModel(model_);
  table_->setAccessibleName(tr("Summary table"));
  table_->setAccessibleDescription(tr("Parameters and results; copy with Ctrl+C"));
  column->addWidget(table_, 1);
  note_ = new QLabel;
  note_->setTextInteractionFlags(Qt::TextSelectableByMouse);
  note_->setAccessibleName(tr("Note of the workbook"));
  note_->setMargin(6);
  column->addWidget(note_);
  return page;
}

QWidget* ResultPages::BuildChartPage() {
  auto* page = new QWidget;
  auto* column = new QVBoxLayout(page);
  column->setContentsMargins(8, 8, 8, 8);
  chart_ = new ChartView;
  auto* row = new QHBoxLayout;
  QToolButton* in = MakeTool(tr("Zoom In"), tr("Show the middle half of the chart (+)"));
  QToolButton* out = MakeTool(tr("Zoom Out"), tr("Show twice as much (-)"));
  reset_ = MakeTool(tr("Reset"), tr("Show the whole chart (0)"));
  QToolButton* save =
      MakeTool(tr("Export Chart..."), tr("Write the chart as SVG, PDF or PNG, or its data as CSV"));
  readOut_ = new QLabel;
  readOut_->setAccessibleName(tr("Point"));
  readOut_->setAccessibleDescription(tr("The point under the pointer, or chosen with arrow keys"));
  readOut_->setTextInteractionFlags(Qt::TextSelectableByMouse);
  readOut_->setWordWrap(true);
  for (QWidget* widget : std::initializer_list<QWidget*>{in, out, reset_, save}) {
    row->addWidget(widget);
  }
  row->addStretch(1);
  column->addLayout(row);
  column->addWidget(chart_, 1);
  column->addWidget(readOut_);
  connect(in, &QToolButton::clicked, chart_, &ChartView::ZoomIn);
  connect(out, &QToolButton::clicked, chart_, &ChartView::ZoomOut);
  connect(reset_, &QToolButton::clicked, chart_, &ChartView::ResetZoom);
  connect(save, &QToolButton::clicked, this, &ResultPages::ChartExportWanted);
  connect(chart_, &ChartView::PointRead, readOut_, &QLabel::setText);
  connect(chart_, &ChartView::ZoomChanged, reset_, &QToolButton::setEnabled);
  return page;
}

void ResultPages::ShowWelcome() {
  study_->setHtml(
      tr("<h2>PowerAnalysis</h2>"
         "<p>Choose what to compute and for which test, and press OK. "
         "Tables, reports and charts are kept here.</p>"
         "<p>Analysis &gt; New Analysis opens the choice of tasks again.</p>"));
  setCurrentWidget(study_);
}

void ResultPages::ShowStudy(const StudyRecord& record) {
  FillDocument(*study_->document(), record, {digits_, dark_});
  setCurrentWidget(study_);
}

void ResultPages::ShowItem(const StudyRecord& record, std::size_t item) {
  const WorkbookItem& shown = record.study.workbook.items[item];
  if (const auto* table = std::get_if<SummaryTable>(&shown)) {
    model_->Show(*table);
    QStringList headings;
    for (const std::string& heading : table->headings) {
      headings += ToText(heading).toHtmlEscaped();
    }
    if (!headings.empty()) {
      headings[0] = QStringLiteral("<b>%1</b>").arg(headings[0]);
    }
    tableTitle_->setText(headings.join(QStringLiteral("<br>")));
    QStringList note;
    for (const QString& line : record.note) {
      note += line.toHtmlEscaped();
    }
    note_->setVisible(!note.empty());
    note_->setText(
        QStringLiteral("<b>%1</b><br>%2").arg(tr("Note"), note.join(QStringLiteral("<br>"))));
    table_->FitColumns();
    setCurrentWidget(tablePage_);
  } else if (const auto* report = std::get_if<Report>(&shown)) {
    FillReport(*report_->document(), *report);
    setCurrentWidget(report_);
  } else {
    chart_->Show(std::get<Chart>(shown));
    setCurrentWidget(chartPage_);
  }
}

void ResultPages::SetDigits(int digits) {
  digits_ = digits;
  model_->SetDigits(digits);
  table_->FitColumns();
}

void ResultPages::SetDark(bool dark) {
  dark_ = dark;
  chart_->SetDark(dark);
}

void ResultPages::SetTextScale(double scale) { chart_->SetTextScale(scale); }

void ResultPages::Copy() {
  if (currentWidget() == tablePage_) {
    table_->Copy();
  } else if (currentWidget() == chartPage_) {
    chart_->CopyPicture();
  } else {
    auto* browser = qobject_cast<QTextBrowser*>(currentWidget());
    if (!browser->textCursor().hasSelection()) {
      QTextCursor all(browser->document());
      all.select(QTextCursor::Document);
      browser->setTextCursor(all);
    }
    browser->copy();
  }
}

const Chart* ResultPages::ShownChart() const {
  return currentWidget() == chartPage_ ? &chart_->chart() : nullptr;
}

}  // namespace poweranalysis
