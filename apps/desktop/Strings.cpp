#include "desktop/Strings.h"

namespace poweranalysis {

QString ToText(const std::string& utf8) {
  QString text = QString::fromStdString(utf8);
  text.replace(QLatin1String("\r\n"), QLatin1String("\n"));
  text.replace(QLatin1Char('\r'), QLatin1Char('\n'));
  return text;
}

QString WithoutMnemonic(const QString& caption) {
  QString plain;
  for (qsizetype i = 0; i < caption.size(); ++i) {
    if (caption[i] == QLatin1Char('&') && i + 1 < caption.size()) {
      ++i;
    }
    plain += caption[i];
  }
  return plain;
}

QString SpokenName(const QString& caption) {
  QString name = WithoutMnemonic(caption).trimmed();
  while (name.endsWith(QLatin1Char('.')) || name.endsWith(QLatin1Char(':'))) {
    name.chop(1);
  }
  return name;
}

}  // namespace poweranalysis
