#pragma once

#include <QMessageBox>
#include <QString>
#include <QStringList>
#include <QTemporaryDir>
#include <QTimer>

#include <random>

#include "gui/support/screen.h"
#include "ui/form_mkt_test.h"

class QAction;
class QDialog;
class QFileDialog;
class QWidget;

namespace kartocheck::test {

// A user who does anything: clicks, keys and menu entries on the window, and whatever comes up over
// it is answered, used or closed. What they do follows from the seed alone, as far as it does not
// depend on when a window appears.
class RandomUser {
 public:
  RandomUser(Form_MKT_Test& window, unsigned seed);
  RandomUser(const RandomUser&) = delete;
  RandomUser& operator=(const RandomUser&) = delete;

  // One deed at an idle window. Comes back when the action that it began has ended.
  void Act();
  // A deed while an action runs.
  void Interfere();

  // Whether the window was asked to close in a way that it must follow.
  [[nodiscard]] bool HasEnded() const { return hasEnded_; }
  // The last deeds, for whoever looks for a fault.
  [[nodiscard]] QString LastDeeds() const { return deeds_.join(u'\n'); }

 private:
  unsigned Below(unsigned bound) { return static_cast<unsigned>(random_() % bound); }
  void Note(const QString& deed);
  // Looks whether a window has come up over the main window; done whenever the event loop runs.
  void Look();
  void Answer(QMessageBox& box);
  void ChooseFile(QFileDialog& dialog);
  void Use(QDialog& dialog);

  void ClickButton();
  void ClickPort();
  void ClickAnything(QWidget& window);
  void PressAnyKey(QWidget& window);
  void ChooseEntry(bool isIdle);
  void Close();

  Form_MKT_Test& window_;
  Screen screen_;
  std::mt19937 random_;
  QTemporaryDir folder_;
  QTimer timer_;
  const QWidget* looked_ = nullptr;
  int looks_ = 0;  // at the same window
  bool hasEnded_ = false;
  QStringList deeds_;
};

}  // namespace kartocheck::test
