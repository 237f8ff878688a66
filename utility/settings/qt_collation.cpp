#include "utility/settings/qt_collation.h"

#include <QLocale>
#include <QString>

namespace tarnwick {

QtCollation::QtCollation() : collator_(QLocale().collation()) {
  if (collator_.locale().language() == QLocale::C) collator_.setLocale(QLocale::English);
  collator_.setCaseSensitivity(Qt::CaseInsensitive);
}

int QtCollation::compareIgnoringCase(const std::string& first, const std::string& second) const {
  return collator_.compare(QString::fromStdString(first), QString::fromStdString(second));
}

}  // namespace tarnwick
