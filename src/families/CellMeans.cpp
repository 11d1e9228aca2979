#include "families/CellMeans.h"

#include <cmath>
#include <numeric>

namespace poweranalysis {

namespace {

bool IsWithin(std::int64_t count, std::int64_t least, std::int64_t capacity) {
  return count >= least && count <= capacity;
}

double MeanOf(std::span<const double> values) {
  return std::accumulate(values.begin(), values.end(), 0.0) / static_cast<double>(values.size());
}

// `freedom` is the count less what the deviations are bound by.
EffectMeasure EffectOf(double sumOfSquares, double freedom, double count) {
  return {std::sqrt(sumOfSquares / freedom), std::sqrt(sumOfSquares / count)};
}

double SumOfSquares(std::span<const double> values) {
  return std::inner_product(values.begin(), values.end(), values.begin(), 0.0);
}

// The means of an effect's levels, which become deviations.
using Levels = std::array<double, TwoWayCapacity>;

EffectMeasure MainEffectOf(std::span<const double> deviations, double sigma) {
  const auto count = static_cast<double>(deviations.size());
  return EffectOf(SumOfSquares(deviations) / (sigma * sigma), count - 1, count);
}

}  // namespace

bool FitsGrid(const AV1Params& record) {
  return IsWithin(record.NumberOfGroups, 2, OneWayCapacity);
}

bool FitsGrid(const PCParams& record) {
  return IsWithin(record.NumberOfGroups, 1, ContrastCapacity);
}

bool FitsGrid(const AV2Params& record) {
  return IsWithin(record.Rows, 2, TwoWayCapacity) && IsWithin(record.Columns, 2, TwoWayCapacity);
}

OneWayMeasures MeasureOneWay(std::span<const double> means, double sigma) {
  OneWayMeasures measures;
  const double grand = MeanOf(means);
  double sum = 0;
  for (std::size_t i = 0; i < means.size(); ++i) {
    const double deviation = means[i] - grand;
    measures.deviations[i] = deviation;
    sum += (deviation / sigma) * (deviation / sigma);
  }
  const auto count = static_cast<double>(means.size());
  measures.effect = EffectOf(sum, count - 1, count);
  return measures;
}

TwoWayMeasures MeasureTwoWay(std::span<const double> cells,
                             std::size_t rows,
                             std::size_t columns,
                             std::size_t stride,
                             double sigma) {
  Levels rowMeans{};
  Levels columnMeans{};
  for (std::size_t i = 0; i < rows; ++i) {
    rowMeans[i] = MeanOf(cells.subspan(i * stride, columns));
    for (std::size_t j = 0; j < columns; ++j) {
      columnMeans[j] += cells[i * stride + j];
    }
  }
  for (std::size_t j = 0; j < columns; ++j) {
    columnMeans[j] /= static_cast<double>(rows);
  }
  const double grand = MeanOf({columnMeans.data(), columns});
  for (double& mean : rowMeans) {
    mean -= grand;
  }
  for (double& mean : columnMeans) {
    mean -= grand;
  }

  TwoWayMeasures measures;
  double sum = 0;
  for (std::size_t i = 0; i < rows; ++i) {
    for (std::size_t j = 0; j < columns; ++j) {
      const double cell = cells[i * stride + j];
      const double residual = cell - rowMeans[i] - columnMeans[j] - grand;
      measures.deviations[i][j] = cell - grand;
      sum += residual * residual;
    }
  }
  measures.row = MainEffectOf({rowMeans.data(), rows}, sigma);
  measures.column = MainEffectOf({columnMeans.data(), columns}, sigma);
  const auto r = static_cast<double>(rows);
  const auto c = static_cast<double>(columns);
  measures.interaction = EffectOf(sum / (sigma * sigma), (r - 1) * (c - 1), r * c);
  return measures;
}

ContrastMeasures MeasureContrast(std::span<const double> means,
                                 std::span<const double> weights,
                                 double sigma) {
  const double psi = std::inner_product(means.begin(), means.end(), weights.begin(), 0.0);
  return {psi, psi / sigma, SumOfSquares(weights)};
}

OneWayMeasures PutMeasures(AV1Params& record) {
  if (!FitsGrid(record) || !(record.Sigma > 0)) {
    return {};
  }
  const std::span<const double> cells(record.GridMeans);
  const OneWayMeasures measures =
      MeasureOneWay(cells.first(static_cast<std::size_t>(record.NumberOfGroups)), record.Sigma);
  record.GridDeviations = measures.deviations;
  record.RMSSE = measures.effect.rmsse;
  return measures;
}

TwoWayMeasures PutMeasures(AV2Params& record) {
  if (!FitsGrid(record) || !(record.Sigma > 0)) {
    return {};
  }
  const std::span<const double> cells(record.GridMeans[0].data(), TwoWayCapacity * TwoWayCapacity);
  const TwoWayMeasures measures =
      MeasureTwoWay(cells, static_cast<std::size_t>(record.Rows),
                    static_cast<std::size_t>(record.Columns), TwoWayCapacity, record.Sigma);
  record.GridDeviations = measures.deviations;
  record.RMSSE_Row = measures.row.rmsse;
  record.RMSSE_Col = measures.column.rmsse;
  record.RMSSE_Int = measures.interaction.rmsse;
  return measures;
}

ContrastMeasures PutMeasures(PCParams& record) {
  if (!FitsGrid(record) || !(record.Sigma > 0)) {
    return {};
  }
  const auto groups = static_cast<std::size_t>(record.NumberOfGroups);
  const ContrastMeasures measures =
      MeasureContrast(std::span<const double>(record.GridMeans).first(groups),
                      std::span<const double>(record.GridWeights).first(groups), record.Sigma);
  record.StandardizedEffect = measures.es;
  record.SumOfSquaredWeights = measures.ssWeights;
  return measures;
}

}  // namespace poweranalysis
