#pragma once

#include <array>
#include <cstdint>

// The parameter records, one type per family. Their members are the rows of Fields.def.
namespace poweranalysis {

using i16 = std::int16_t;
using i32 = std::int32_t;
using f64 = double;

#include "settings/Fields.def"

#define POWERANALYSIS_KEYED_MEMBER(type, field, factory, lower, upper, form, place) type field;
#define POWERANALYSIS_UNKEYED_MEMBER(type, field, factory) type field;
#define POWERANALYSIS_MEMBERS(family) \
  POWERANALYSIS_##family##_FIELDS(POWERANALYSIS_KEYED_MEMBER, POWERANALYSIS_UNKEYED_MEMBER)

struct T1Params {
  POWERANALYSIS_MEMBERS(T1)
};
struct T2Params {
  POWERANALYSIS_MEMBERS(T2)
};
struct T3Params {
  POWERANALYSIS_MEMBERS(T3)
};
struct R2Params {
  POWERANALYSIS_MEMBERS(R2)
};
struct X2CalcParams {
  POWERANALYSIS_MEMBERS(X2CALC)
};
struct FCalcParams {
  POWERANALYSIS_MEMBERS(FCALC)
};

// The cells of a one-way grid, which stand at the end of the record.
struct AV1Params {
  POWERANALYSIS_MEMBERS(AV1)
  i16 GridLoaded;
  std::array<f64, 12> GridMeans;
  std::array<f64, 12> GridDeviations;
};

struct PCParams {
  POWERANALYSIS_MEMBERS(PC)
  i16 GridLoaded;
  std::array<f64, 8> GridMeans;
  std::array<f64, 8> GridWeights;
  std::array<f64, 8> GridDeviations;
};

struct V1Params {
  POWERANALYSIS_MEMBERS(V1)
};
struct V2Params {
  POWERANALYSIS_MEMBERS(V2)
};
struct RParams {
  POWERANALYSIS_MEMBERS(R)
};
struct Z2RParams {
  POWERANALYSIS_MEMBERS(Z2R)
};
struct P1Params {
  POWERANALYSIS_MEMBERS(P1)
};
struct P2Params {
  POWERANALYSIS_MEMBERS(P2)
};
struct QMACParams {
  POWERANALYSIS_MEMBERS(QMAC)
};
struct SA1Params {
  POWERANALYSIS_MEMBERS(SA1)
};
struct SA2Params {
  POWERANALYSIS_MEMBERS(SA2)
};
struct SA3Params {
  POWERANALYSIS_MEMBERS(SA3)
};
struct SEMParams {
  POWERANALYSIS_MEMBERS(SEM)
};

struct AV2Params {
  POWERANALYSIS_MEMBERS(AV2)
  i16 GridLoaded;
  std::array<std::array<f64, 8>, 8> GridMeans;
  std::array<std::array<f64, 8>, 8> GridDeviations;
};

struct BinomialCalcParams {
  POWERANALYSIS_MEMBERS(BINOMIALCALC)
};

#undef POWERANALYSIS_MEMBERS
#undef POWERANALYSIS_UNKEYED_MEMBER
#undef POWERANALYSIS_KEYED_MEMBER

}  // namespace poweranalysis
