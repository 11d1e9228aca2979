#pragma once

#include <QString>
#include <string>

// Texts between the core, which keeps UTF-8 with carriage returns, and the window.
namespace poweranalysis {

// Line ends of any kind become line feeds.
QString ToText(const std::string& utf8);
inline std::string FromText(const QString& text) { return text.toStdString(); }

// A caption without its mnemonic: "Save &As..." is "Save As...", "A && B" is "A & B".
QString WithoutMnemonic(const QString& caption);

// A caption to read aloud: without mnemonic, dots and colon.
QString SpokenName(const QString& caption);

}  // namespace poweranalysis
