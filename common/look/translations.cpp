#include "common/look/translations.h"

#include <QCoreApplication>
#include <QLocale>
#include <QTranslator>

// Must be outside of any namespace.
static void initResources() {
  Q_INIT_RESOURCE(translations);
}

namespace tarnwick {

void useTranslations() {
  initResources();
  auto* const translator = new QTranslator(QCoreApplication::instance());
  for (const QString& name : QLocale::system().uiLanguages()) {
    const QString language = name.section('-', 0, 0);
    // What stands in the program; the user wants it rather than the languages that follow.
    if (language == "en" || language == "C") return;
    if (!translator->load(":/translations/tarnwick_" + language + ".qm")) continue;
    QCoreApplication::installTranslator(translator);
    return;
  }
}

}  // namespace tarnwick
