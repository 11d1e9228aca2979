#pragma once

#include <QString>
#include <QStringList>

namespace poweranalysis {

// Gives each caption without a mnemonic its own letter, where one is left: the first letter of a
// word if it can be, any other letter or digit otherwise. `taken` holds the letters that are in use
// and grows with those given.
QString WithMnemonic(const QString& caption, QString& taken);

// The letter of a caption's own mnemonic, in upper case; null when it has none.
QChar MnemonicOf(const QString& caption);

}  // namespace poweranalysis
