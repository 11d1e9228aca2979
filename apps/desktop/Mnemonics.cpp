#include "desktop/Mnemonics.h"

namespace poweranalysis {

namespace {

bool StartsWord(const QString& caption, qsizetype i) {
  return i == 0 || !caption[i - 1].isLetterOrNumber();
}

// Place of the first letter that is free; -1 when none is.
qsizetype FindLetter(const QString& caption, const QString& taken, bool onlyAtWords) {
  for (qsizetype i = 0; i < caption.size(); ++i) {
    const QChar letter = caption[i];
    const bool plain = letter.unicode() < 128 && letter.isLetterOrNumber();
    if (plain && !taken.contains(letter.toUpper()) && (!onlyAtWords || StartsWord(caption, i))) {
      return i;
    }
  }
  return -1;
}

}  // namespace

QChar MnemonicOf(const QString& caption) {
  for (qsizetype i = 0; i + 1 < caption.size(); ++i) {
    if (caption[i] == QLatin1Char('&')) {
      if (caption[i + 1] != QLatin1Char('&')) {
        return caption[i + 1].toUpper();
      }
      ++i;
    }
  }
  return {};
}

QString WithMnemonic(const QString& caption, QString& taken) {
  if (const QChar own = MnemonicOf(caption); !own.isNull()) {
    return caption;
  }
  qsizetype place = FindLetter(caption, taken, true);
  if (place < 0) {
    place = FindLetter(caption, taken, false);
  }
  if (place < 0) {
    return caption;
  }
  taken += caption[place].toUpper();
  QString marked = caption;
  return marked.insert(place, QLatin1Char('&'));
}

}  // namespace poweranalysis
