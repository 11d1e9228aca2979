#pragma once

#include <string>

#include "exporters/Exporters.h"

namespace poweranalysis {

// A document of an office program, made by the module that writes them, which is opened on the
// first call. Empty, with the reason in `error`, when there is none.
std::string DocumentOf(const Study& study, ExportFormat format, std::string& error);

}  // namespace poweranalysis
