#pragma once

class QApplication;

namespace kartocheck {

// Makes Qt's own texts German: standard buttons (Ja, Nein, Abbrechen) and context menus.
void InstallGermanTexts(QApplication& application);

}  // namespace kartocheck
