#include "desktop/Names.h"

#include <QAbstractButton>
#include <QDialogButtonBox>

namespace poweranalysis {

void NameButtons(const QDialogButtonBox& buttons) {
  for (QAbstractButton* button : buttons.buttons()) {
    button->setAccessibleName(button->text().remove(QLatin1Char('&')));
    button->setAccessibleDescription(button->accessibleName());
  }
}

}  // namespace poweranalysis
