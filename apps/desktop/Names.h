#pragma once

class QDialogButtonBox;

namespace poweranalysis {

// Gives the standard buttons of a box their accessible names.
void NameButtons(const QDialogButtonBox& buttons);

}  // namespace poweranalysis
