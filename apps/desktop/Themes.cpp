#include "desktop/Themes.h"

#include <QApplication>
#include <QColor>

namespace poweranalysis {

namespace {

// Contrast of text on its ground is 7 : 1 or better in both.
struct Colours {
  const char* window;
  const char* base;
  const char* alternate;
  const char* text;
  const char* button;
  const char* highlight;
  const char* highlighted;
  const char* link;
  const char* quiet;  // disabled and placeholder texts
};

constexpr Colours kLight = {"#f3f4f6", "#ffffff", "#eef2f7", "#17202a", "#e7eaee",
                            "#1f5fa8", "#ffffff", "#174f8f", "#6b7280"};
constexpr Colours kDark = {"#23272e", "#1b1e24", "#262b33", "#e8eaed", "#323842",
                           "#2f6fb5", "#ffffff", "#8ab8f0", "#8d96a3"};

constexpr const char* kDarkField = "#3d4552";
constexpr const char* kDarkMark = "#667085";  // small, and 3 : 1 against the window

QPalette PaletteOf(const Colours& colours) {
  QPalette palette(QColor(colours.button), QColor(colours.window));
  const QColor text(colours.text);
  palette.setColor(QPalette::WindowText, text);
  palette.setColor(QPalette::Text, text);
  palette.setColor(QPalette::ButtonText, text);
  palette.setColor(QPalette::Base, QColor(colours.base));
  palette.setColor(QPalette::AlternateBase, QColor(colours.alternate));
  palette.setColor(QPalette::ToolTipBase, QColor(colours.base));
  palette.setColor(QPalette::ToolTipText, text);
  palette.setColor(QPalette::Highlight, QColor(colours.highlight));
  palette.setColor(QPalette::HighlightedText, QColor(colours.highlighted));
  palette.setColor(QPalette::Link, QColor(colours.link));
  palette.setColor(QPalette::PlaceholderText, QColor(colours.quiet));
  for (const QPalette::ColorRole role :
       {QPalette::WindowText, QPalette::Text, QPalette::ButtonText}) {
    palette.setColor(QPalette::Disabled, role, QColor(colours.quiet));
  }
  return palette;
}

}  // namespace

QPalette LightPalette() { return PaletteOf(kLight); }
QPalette DarkPalette() { return PaletteOf(kDark); }

void UsePalette(const QPalette& palette) {
  QApplication::setPalette(palette);
  QPalette field = palette;
  QPalette mark = palette;
  if (IsDark(palette)) {
    // The style draws outlines darker than the window: on a dark one only a lighter ground shows
    // where a field or a button is.
    field.setColor(QPalette::Base, QColor(kDarkField));
    mark.setColor(QPalette::Base, QColor(kDarkMark));
  }
  for (const char* kind : {"QLineEdit", "QSpinBox"}) {
    QApplication::setPalette(field, kind);
  }
  for (const char* kind : {"QRadioButton", "QCheckBox"}) {
    QApplication::setPalette(mark, kind);
  }
}

bool IsDark(const QPalette& palette) {
  return palette.color(QPalette::Window).lightness() <
         palette.color(QPalette::WindowText).lightness();
}

}  // namespace poweranalysis
