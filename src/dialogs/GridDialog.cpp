#include "dialogs/GridDialog.h"

#include "dialogs/ClipboardGrid.h"
#include "output/GridTables.h"
#include "output/SummaryTables.h"

namespace poweranalysis {

namespace {

constexpr int kShownWidth = 12;
constexpr int kShownDecimals = 5;

// What takes the place of a standard deviation that is not above 0.
constexpr double kLeastSigma = .1;

// The captions begin with marks that pick a picture or a style: "!097&Back", "`&Open", "eCreate".
std::string WithoutMark(const std::string& caption) {
  constexpr std::size_t kPictureMark = 4;
  return caption.substr(caption.front() == '!' ? kPictureMark : 1);
}

ControlSpec MarkedButton(int number, const char* name, TextId caption) {
  ControlSpec button = ButtonSpec(number, name, caption);
  button.caption = WithoutMark(button.caption);
  return button;
}

}  // namespace

CGridDialog::CGridDialog(CAnalysisSupport& analysis, const GridRow& grid)
    : CPowerAnalysisModalDialog(analysis, grid.resource), grid_(grid) {}

template <class Visit>
void CGridDialog::ForEachCell(GridSize size, Visit visit) const {
  for (std::int32_t row = 0; row < size.rows; ++row) {
    for (std::int32_t column = 0; column < size.columns; ++column) {
      visit(row, column);
    }
  }
}

// --- What it looks like. All cells are there; those beyond the counts are not shown.

DialogSpec CGridDialog::Spec() const {
  DialogSpec spec;
  spec.className = grid_.className;
  spec.resource = resource();
  spec.title = LoadText(grid_.title);
  spec.defaultButton = ControlAccept;
  spec.frame = {ButtonSpec(ControlAccept, "OK", text::ButtonOK),
                MarkedButton(ControlBack, "Cancel", text::Button097Back),
                MarkedButton(ControlGridCreate, "Create", text::ButtonECreate),
                MarkedButton(ControlGridOpen, "Open", text::ButtonOpen),
                MarkedButton(ControlGridCopy, "Copy", text::Button308Copy),
                MarkedButton(ControlGridPaste, "Paste", text::Button309Paste)};
  PageSpec page{PageOfFrame(resource()), LoadText(text::GroupCellMeans), {}};
  for (std::int32_t row = 0; row < grid_.capacity.rows; ++row) {
    page.rowTitles.push_back(grid_.RowTitle(row));
  }
  for (std::int32_t column = 0; column < grid_.capacity.columns; ++column) {
    page.columnTitles.push_back(grid_.ColumnTitle(column));
  }
  ForEachCell(grid_.capacity, [&](std::int32_t row, std::int32_t column) {
    ControlSpec cell{
        grid_.ControlOfCell(row, column), ControlKind::RealEdit,
        grid_.NameOfCell(row, column),    grid_.ColumnTitle(column) + " " + grid_.RowTitle(row),
        LoadText(text::CellHelp),         LoadText(text::GroupCellMeans)};
    cell.row = row;
    cell.column = column;
    page.controls.push_back(std::move(cell));
  });
  ControlSpec sigma{ControlOfField("Sigma"),
                    ControlKind::RealEdit,
                    "Sigma",
                    LoadText(text::OneWaySigmaWithin),
                    LoadText(text::MeaningSigma),
                    LoadText(text::GroupMeasures)};
  // It is replaced when it is not above 0, as the beginning of "0.5" is.
  sigma.whenDone = true;
  page.controls.push_back(std::move(sigma));
  int control = ControlGridMeasures;
  for (const GridMeasure& measure : grid_.measures) {
    ControlSpec box{control++,    ControlKind::RealEdit,
                    measure.name, LoadText(measure.caption),
                    {},           LoadText(text::GroupMeasures)};
    box.readOnly = true;
    page.controls.push_back(std::move(box));
  }
  spec.pages = {std::move(page)};
  return spec;
}

// --- Events.

long CGridDialog::EventHandler(const DialogEvent& event) {
  const bool hasBlock = Block() != nullptr;
  if (hasBlock) {
    if (const long taken = CommonHandler(event); taken != 0) {
      return taken;
    }
  }
  if (event.message == MessageStart) {
    ResourceScope scope;
    form().AddDlgTabs(Spec());
    scope.Release();
    if (hasBlock) {
      OpenScratch();
      ShowAll();
    }
    return 1;
  }
  if (event.message != MessageCommand) {
    return 0;
  }
  if (event.control == ControlBack || event.control == ControlBackToo) {
    ExitDialog(StageCompute, ExitBack, 0);
    return 1;
  }
  return hasBlock ? Command(event.control) : 0;
}

long CGridDialog::Command(int control) {
  switch (control) {
    case ControlAccept:
    case ControlAcceptToo:
      return Accept();
    case ControlGridCreate:
      return Create();
    case ControlGridOpen:
      return OpenFile();
    case ControlGridCopy:
      return CopyOut();
    case ControlGridPaste:
      return Paste();
    case ControlRefresh:
      ShowAll();
      return 1;
    default:
      break;
  }
  if (control == ControlOfField("Sigma")) {
    StoreSigma();
  } else if (!StoreCell(control)) {
    return 0;
  }
  ShowMeasures();
  return 1;
}

// Cells that were pasted or opened are kept for one opening, with the size, the standard deviation
// and the measures that belong to them: all else of the page may have been edited since.
void CGridDialog::OpenScratch() {
  i16& loaded = grid_.loaded(*Block());
  const RecordView working = ViewOf(*Block(), grid_.family, Instance::Working);
  if (loaded == 0) {
    grid_.Scratch().CopyFrom(working);
  } else {
    TakePage();
  }
  loaded = 0;
}

void CGridDialog::TakePage() {
  const RecordView scratch = grid_.Scratch();
  const GridSize kept = size();
  const double sigma = scratch.Get(Sigma());
  grid_.takePage(*Block());
  grid_.SetSize(scratch, kept);
  scratch.Set(Sigma(), sigma);
}

long CGridDialog::Accept() {
  ViewOf(*Block(), grid_.family, Instance::Working).CopyFrom(grid_.Scratch());
  ExitDialog(StageCompute, ExitForward, 0);
  return 1;
}

// --- Edits.

bool CGridDialog::StoreCell(int control) {
  bool found = false;
  ForEachCell(grid_.capacity, [&](std::int32_t row, std::int32_t column) {
    if (grid_.ControlOfCell(row, column) == control) {
      double value = 0;
      // A text that is not a number stores 0, as on the pages.
      Cell(row, column) = form().GetDlgItemDouble(control, value) == 0 ? value + 0.0 : 0;
      found = true;
    }
  });
  return found;
}

void CGridDialog::StoreSigma() {
  double value = 0;
  const bool good = form().GetDlgItemDouble(ControlOfField("Sigma"), value) == 0 && value > 0;
  grid_.Scratch().Set(Sigma(), good ? value : kLeastSigma);
  if (!good) {
    ShowSigma();
  }
}

// --- Clipboard and files.

void CGridDialog::Loaded(GridSize size) {
  grid_.SetSize(grid_.Scratch(), size);
  grid_.loaded(*Block()) = 1;
  ShowAll();
}

long CGridDialog::Paste() {
  const GridSize scan = grid_.pasteScan;
  std::vector<double> values(scan.count());
  GridSize pasted;
  const int failed = ParseClipboardGrid(analysis().host(), pasted.rows, pasted.columns, values,
                                        scan.rows, scan.columns);
  if (failed != 0 || !pasted.Holds(grid_.pasteLeast) || !grid_.pasteMost.Holds(pasted)) {
    ShowMessage(MessageStopIcon, window(), text::ClipboardDimensions);
    return 0;
  }
  ForEachCell(pasted, [&, next = values.begin()](std::int32_t row, std::int32_t column) mutable {
    Cell(row, column) = *next++;
  });
  Loaded(pasted);
  return 1;
}

long CGridDialog::CopyOut() {
  if (grid_.copies) {
    FormatClipboardGrid(analysis().host(), size().rows, size().columns, grid_.capacity.columns,
                        {&Cell(0, 0), grid_.capacity.count()});
  }
  return 1;
}

long CGridDialog::OpenFile() {
  Host& host = analysis().host();
  const std::optional<std::string> path =
      host.DoFileOpenDlg(LoadText(text::OpenCellMeans), LoadText(text::CellMeansExtension));
  const std::optional<Sheet> sheet = path ? host.OpenSheet(*path) : std::nullopt;
  return sheet && TakeSheet(*sheet) ? 1 : 0;
}

// A sheet of another shape, or without a number where a cell is to be, changes nothing.
bool CGridDialog::TakeSheet(const Sheet& sheet) {
  const auto sheetRows = static_cast<std::int32_t>(sheet.rows);
  const auto sheetColumns = static_cast<std::int32_t>(sheet.columns);
  const GridSize found{sheetRows - grid_.sheet.headings - grid_.sheet.blanks - 1, sheetColumns};
  const bool tooFew = found.rows < grid_.fileLeast.rows;
  if (found.rows < 0 || (tooFew && !grid_.storesFewer) || found.columns < grid_.fileLeast.columns ||
      !grid_.fileMost.Holds(found)) {
    return false;
  }
  const GridSize cells{found.rows,
                       grid_.columnsField == nullptr ? grid_.capacity.columns : found.columns};
  const auto at = [&](std::int32_t row, std::int32_t column) {
    const std::int32_t sheetRow = grid_.sheet.headings + row;
    return sheet.At(static_cast<std::size_t>(sheetRow), static_cast<std::size_t>(column));
  };
  bool whole = true;
  ForEachCell(cells, [&](std::int32_t row, std::int32_t column) {
    whole = whole && !IsMissing(at(row, column));
  });
  if (!whole) {
    return false;
  }
  ForEachCell(cells,
              [&](std::int32_t row, std::int32_t column) { Cell(row, column) = at(row, column); });
  const double sigma = sheet.At(sheet.rows - 1, 0);
  // Kept: the means are stored by now, though nothing shows them.
  if (tooFew || !(sigma > 0)) {
    return false;
  }
  grid_.Scratch().Set(Sigma(), sigma);
  Loaded(cells);
  return true;
}

long CGridDialog::Create() {
  const std::vector<double> shown = GridTableValues(grid_.tableCode, *Block());
  HostArray<double> values(analysis().host(), shown.size());
  if (!values) {
    return 0;
  }
  std::copy(shown.begin(), shown.end(), values.data());
  ShowSummaryTable({values.data(), values.size()}, grid_.tableCode, nullptr, *Block());
  analysis().host().RestoreResults();
  return 1;
}

// --- What is shown.

void CGridDialog::ShowAll() {
  const GridSize shown = size();
  ForEachCell(grid_.capacity, [&](std::int32_t row, std::int32_t column) {
    const int control = grid_.ControlOfCell(row, column);
    form().SetDlgItemDouble(control, Cell(row, column), kShownWidth, kShownDecimals);
    form().ShowControl(control, row < shown.rows && column < shown.columns);
  });
  ShowSigma();
  ShowMeasures();
}

void CGridDialog::ShowSigma() {
  form().SetDlgItemDouble(ControlOfField("Sigma"), grid_.Scratch().Get(Sigma()), kShownWidth,
                          kShownDecimals);
}

void CGridDialog::ShowMeasures() {
  int control = ControlGridMeasures;
  for (const double measure : grid_.measure(*Block())) {
    form().SetDlgItemDouble(control++, measure, kShownWidth, kShownDecimals);
  }
}

}  // namespace poweranalysis
