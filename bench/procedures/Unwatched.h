#pragma once

#include "procedures/ProcedureObserver.h"

namespace poweranalysis {

// A procedure that nobody watches, and the refusal that nobody reads.
inline SilentProcedureObserver unwatched;
inline Refusal unread;

}  // namespace poweranalysis
