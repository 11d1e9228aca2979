#pragma once

#include <QPalette>

namespace poweranalysis {

QPalette LightPalette();
QPalette DarkPalette();
// Colours for all widgets, and those of the kinds that need their own.
void UsePalette(const QPalette& palette);
bool IsDark(const QPalette& palette);

}  // namespace poweranalysis
