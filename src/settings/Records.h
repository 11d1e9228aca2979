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
#define POWERANALYSIS_RECORD(family, section, cells)                                            \
  struct family##Params {                                                                       \
    POWERANALYSIS_##family##_FIELDS(POWERANALYSIS_KEYED_MEMBER,                                 \
                                    POWERANALYSIS_UNKEYED_MEMBER) POWERANALYSIS_##cells##_CELLS \
  };
POWERANALYSIS_FAMILIES(POWERANALYSIS_RECORD)
#undef POWERANALYSIS_RECORD
#undef POWERANALYSIS_UNKEYED_MEMBER
#undef POWERANALYSIS_KEYED_MEMBER

}  // namespace poweranalysis
