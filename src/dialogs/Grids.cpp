#include "dialogs/Grids.h"

#include <algorithm>

#include "families/CellMeans.h"
#include "frame/FormatText.h"
#include "output/GridTables.h"

namespace poweranalysis {

namespace {

// --- One-way.

constexpr GridMeasure kOneWayMeasures[] = {{"RMSSE", text::RowRMSSEHeading},
                                           {"f", text::CaptionFBox}};

double& OneWayCell(PowerSettings& block, std::int32_t row, std::int32_t /*column*/) {
  return block.AV1.GridScratch.GridMeans[static_cast<std::size_t>(row)];
}

std::vector<double> MeasureOneWayGrid(PowerSettings& block) {
  const OneWayMeasures measures = PutMeasures(block.AV1.GridScratch);
  return {measures.effect.rmsse, measures.effect.f};
}

// --- Two-way.

constexpr GridMeasure kTwoWayMeasures[] = {
    {"RMSSE_Row", text::CaptionRowRMSSE},         {"f_Row", text::CaptionRowF},
    {"RMSSE_Col", text::CaptionColumnRMSSE},      {"f_Col", text::CaptionColumnF},
    {"RMSSE_Int", text::CaptionInteractionRMSSE}, {"f_Int", text::CaptionInteractionF},
};

double& TwoWayCell(PowerSettings& block, std::int32_t row, std::int32_t column) {
  return block.AV2.GridScratch
      .GridMeans[static_cast<std::size_t>(row)][static_cast<std::size_t>(column)];
}

std::vector<double> MeasureTwoWayGrid(PowerSettings& block) {
  const TwoWayMeasures measures = PutMeasures(block.AV2.GridScratch);
  return {measures.row.rmsse,         measures.row.f,
          measures.column.rmsse,      measures.column.f,
          measures.interaction.rmsse, measures.interaction.f};
}

// --- Contrast.

constexpr GridMeasure kContrastMeasures[] = {{"Psi", text::CaptionPsiBox},
                                             {"Es", text::CaptionEsBox},
                                             {"SumOfSquaredWeights", text::SSWeights}};
constexpr std::int32_t kWeights = 1;  // the column

double& ContrastCell(PowerSettings& block, std::int32_t row, std::int32_t column) {
  PCParams& grid = block.PC.GridScratch;
  return (column == kWeights ? grid.GridWeights : grid.GridMeans)[static_cast<std::size_t>(row)];
}

std::vector<double> MeasureContrastGrid(PowerSettings& block) {
  const ContrastMeasures measures = PutMeasures(block.PC.GridScratch);
  return {measures.psi, measures.es, measures.ssWeights};
}

// --- All.

// What a record with a grid holds beside its fields.
template <class Params>
void CopyCells(const Params& from, Params& to) {
  to.GridMeans = from.GridMeans;
  to.GridDeviations = from.GridDeviations;
  if constexpr (requires { to.GridWeights; }) {
    to.GridWeights = from.GridWeights;
  }
}

template <class Params, GridFamilySet<Params> PowerSettings::*set>
void TakePageBesideCells(PowerSettings& block) {
  Params page = (block.*set).Working;
  CopyCells((block.*set).GridScratch, page);
  (block.*set).GridScratch = page;
}

template <class Params, GridFamilySet<Params> PowerSettings::*set>
i16& LoadedOf(PowerSettings& block) {
  return (block.*set).GridScratch.GridLoaded;
}

constexpr int kMost = 65535;

constexpr GridRow kGrids[] = {
    {Family::AV1,
     "COnewayAnovaGrid",
     23900,
     text::GridTitleOneWay,
     OneWayGridTable,
     "NumberOfGroups",
     nullptr,
     {OneWayCapacity, 1},
     {2, 1},
     {12, 1},
     {12, 1},
     {2, 1},
     // Kept: a file stops at 8 groups, where a paste takes 12.
     {8, kMost},
     {1, 0},
     true,
     true,
     false,
     text::GridTooLargeOneWay,
     kOneWayMeasures,
     OneWayCell,
     LoadedOf<AV1Params, &PowerSettings::AV1>,
     TakePageBesideCells<AV1Params, &PowerSettings::AV1>,
     MeasureOneWayGrid},
    {Family::AV2,
     "CTwowayAnovaGrid",
     23910,
     text::GridTitleTwoWay,
     TwoWayGridTable,
     "Rows",
     "Columns",
     {TwoWayCapacity, TwoWayCapacity},
     {2, 2},
     // Kept: a paste stops at 6 by 6, where a file takes 8 by 8.
     {6, 6},
     {8, 8},
     {2, 2},
     {8, 8},
     {0, 0},
     false,
     true,
     false,
     text::GridTooLargeTwoWay,
     kTwoWayMeasures,
     TwoWayCell,
     LoadedOf<AV2Params, &PowerSettings::AV2>,
     TakePageBesideCells<AV2Params, &PowerSettings::AV2>,
     MeasureTwoWayGrid},
    {Family::PC,
     "CPC_Grid_Dialog",
     23920,
     text::GridTitleContrast,
     ContrastGridTable,
     "NumberOfGroups",
     nullptr,
     {ContrastCapacity, 2},
     {1, 2},
     {8, 2},
     {8, 2},
     {1, 2},
     {8, kMost},
     {0, 1},
     false,
     // Kept: the text is made and never handed to the clipboard.
     false,
     true,
     text::GridTooLargeContrast,
     kContrastMeasures,
     ContrastCell,
     LoadedOf<PCParams, &PowerSettings::PC>,
     TakePageBesideCells<PCParams, &PowerSettings::PC>,
     MeasureContrastGrid},
};

std::string WithoutBlanks(const std::string& text) {
  const std::size_t first = text.find_first_not_of(' ');
  return text.substr(first, text.find_last_not_of(' ') - first + 1);
}

}  // namespace

int GridRow::ControlOfCell(std::int32_t row, std::int32_t column) const {
  if (columnsField != nullptr) {
    return ControlGridCells + row * capacity.columns + column;
  }
  return (column == kWeights ? ControlGridWeights : ControlGridCells) + row;
}

std::string GridRow::NameOfCell(std::int32_t row, std::int32_t column) const {
  if (columnsField != nullptr) {
    return RowTitle(row) + ColumnTitle(column);
  }
  return (column == kWeights ? "Weight" : "Mean") + std::to_string(row + 1);
}

std::string GridRow::RowTitle(std::int32_t row) const {
  const TextId wording = columnsField != nullptr ? text::GridRowName : text::GroupNumber;
  return WithoutBlanks(FormatResource(wording, {row + 1}));
}

std::string GridRow::ColumnTitle(std::int32_t column) const {
  if (columnsField != nullptr) {
    return FormatResource(text::GridColumnName, {column + 1});
  }
  return WithoutBlanks(LoadText(column == kWeights ? text::WeightColumn : text::MeanColumn));
}

GridSize GridRow::SizeOf(const RecordView& record) const {
  const auto count = [&](const char* field) {
    return static_cast<std::int32_t>(record.Get(*record.table().Find(field)));
  };
  return {count(rowsField), columnsField == nullptr ? capacity.columns : count(columnsField)};
}

void GridRow::SetSize(const RecordView& record, GridSize size) const {
  record.Set(*record.table().Find(rowsField), size.rows);
  if (columnsField != nullptr) {
    record.Set(*record.table().Find(columnsField), size.columns);
  }
}

std::span<const GridRow> Grids() { return kGrids; }

const GridRow* FindGrid(Family family) {
  const auto* row = std::find_if(std::begin(kGrids), std::end(kGrids),
                                 [family](const GridRow& grid) { return grid.family == family; });
  return row == std::end(kGrids) ? nullptr : row;
}

}  // namespace poweranalysis
