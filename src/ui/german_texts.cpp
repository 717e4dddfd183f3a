#include "ui/german_texts.h"

#include <QApplication>
#include <QLocale>
#include <QTranslator>

namespace kartocheck {

void InstallGermanTexts(QApplication& application) {
  QLocale::setDefault(QLocale(QLocale::German, QLocale::Germany));
  auto* translator = new QTranslator(&application);
  if (!translator->load(QStringLiteral(":/translations/qtbase_de.qm")) ||
      !QApplication::installTranslator(translator)) {
    qWarning("The German texts of the standard buttons could not be loaded.");
  }
}

}  // namespace kartocheck
