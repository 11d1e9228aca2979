#pragma once

#include <QIcon>
#include <QString>

namespace poweranalysis {

// The picture of a list row by its number; a plain one for a number without a picture.
QIcon IconOf(int number);
QIcon IconOf(const QString& name);

}  // namespace poweranalysis
