#pragma once

#include <string>

#include "host/ChartLayout.h"

namespace poweranalysis {

// A picture's bytes, or why there are none.
struct Picture {
  std::string bytes;
  std::string error;
};

// By the painter module, which is opened on the first call.
Picture PaintAsPng(const DisplayList& list);
Picture PaintAsPdf(const DisplayList& list);

}  // namespace poweranalysis
