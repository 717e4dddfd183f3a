#include "gui/support/random_user.h"

#include <QAbstractButton>
#include <QAction>
#include <QApplication>
#include <QFileDialog>
#include <QLineEdit>
#include <QMenu>
#include <QTest>

#include <array>
#include <utility>

#include "ui/form_first_user.h"

namespace kartocheck::test {

namespace {

// After so many deeds at the same window it is closed.
constexpr int Patience = 12;
constexpr qsizetype DeedsKept = 25;

const QString Schema = QStringLiteral(KARTOCHECK_SCHEMAS "/");

QString NameOf(const QWidget& widget) {
  const QString type = QString::fromLatin1(widget.metaObject()->className());
  return widget.objectName().isEmpty() ? type : type + u' ' + widget.objectName();
}

}  // namespace

RandomUser::RandomUser(Form_MKT_Test& window, unsigned seed)
    : window_(window), screen_(window), random_(seed) {
  timer_.setSingleShot(true);
  // Started anew before each look: a deed may run an event loop, in which the next look comes.
  QObject::connect(&timer_, &QTimer::timeout, [this] {
    timer_.start(0);
    Look();
  });
  timer_.start(0);
}

void RandomUser::Note(const QString& deed) {
  deeds_.append(deed);
  if (deeds_.size() > DeedsKept) deeds_.removeFirst();
}

void RandomUser::Look() {
  if (QWidget* popup = QApplication::activePopupWidget()) {
    if (++looks_ % Patience == 0) {
      popup->close();
    } else {
      PressAnyKey(*popup);
    }
    return;
  }
  QWidget* const modal = QApplication::activeModalWidget();
  if (modal == nullptr || !modal->isVisible()) return static_cast<void>(looked_ = nullptr);
  looks_ = modal == std::exchange(looked_, modal) ? looks_ + 1 : 0;
  if (looks_ > Patience) {
    Note(u"closes " + NameOf(*modal));
    modal->close();
  } else if (auto* box = qobject_cast<QMessageBox*>(modal)) {
    Answer(*box);
  } else if (auto* files = qobject_cast<QFileDialog*>(modal)) {
    ChooseFile(*files);
  } else if (auto* dialog = qobject_cast<QDialog*>(modal)) {
    Use(*dialog);
  }
}

void RandomUser::Answer(QMessageBox& box) {
  const QString caption = box.windowTitle() + u": ";
  switch (Below(8)) {
    case 0:
      Note(caption + u"Escape");
      return QTest::keyClick(&box, Qt::Key_Escape);
    case 1:
      Note(caption + u"Tab");
      return QTest::keyClick(&box, Qt::Key_Tab);
    case 2:
      Note(caption + u"closed");
      return static_cast<void>(box.close());
    default:
      break;
  }
  const QList<QAbstractButton*> buttons = box.buttons();
  QAbstractButton* const button = buttons[Below(static_cast<unsigned>(buttons.size()))];
  const bool isYes = box.standardButton(button) == QMessageBox::Yes;
  const bool endsProgram = isYes && box.windowTitle().startsWith(u"Beendet");
  // Mostly the user stays.
  if (endsProgram && Below(4) != 0) return static_cast<void>(box.close());
  hasEnded_ = hasEnded_ || endsProgram;
  Note(caption + button->text());
  QTest::mouseClick(button, Qt::LeftButton);
}

void RandomUser::ChooseFile(QFileDialog& dialog) {
  constexpr std::array<QStringView, 5> Files{u"UC_PersoenlicheVersichertendatenXML.xsd",
                                             u"UC_AllgemeineVersicherungsdatenXML.xsd",
                                             u"gibt-es-nicht.xsd", u"", u".."};
  auto* const name = dialog.findChild<QLineEdit*>(QStringLiteral("fileNameEdit"));
  if (name == nullptr || Below(3) == 0) return static_cast<void>(dialog.close());
  // What is saved goes into a folder of its own.
  name->setText(dialog.acceptMode() == QFileDialog::AcceptSave
                    ? folder_.filePath(QStringLiteral("Bericht"))
                    : QString(Schema + Files.at(Below(Files.size()))));
  Note(u"chooses " + name->text());
  QTest::keyClick(name, Qt::Key_Return);
}

void RandomUser::Use(QDialog& dialog) {
  auto* const information = qobject_cast<Form_FirstUser*>(&dialog);
  if (information != nullptr && looks_ == 0) {
    QObject::connect(information, &QDialog::finished, &timer_, [this, information] {
      hasEnded_ = hasEnded_ || !information->ContinueFlag();
    });
  }
  Below(2) == 0 ? ClickAnything(dialog) : PressAnyKey(dialog);
}

void RandomUser::ClickButton() {
  // A read is what most is to be seen of, and a search of all ports takes long.
  constexpr std::array<int, 16> Buttons{3, 3, 3, 3, 3, 3, 1, 1, 1, 1, 2, 4, 5, 5, 5, 0};
  const QString name = QStringLiteral("CmdB_MKt_Test_%1").arg(Buttons.at(Below(Buttons.size())));
  Note(u"clicks " + name);
  screen_.Click(name);
}

void RandomUser::ClickPort() {
  const QString name = QStringLiteral("Opti_Comx_%1").arg(Below(5));
  Note(u"clicks " + name);
  screen_.Click(name);
}

void RandomUser::ClickAnything(QWidget& window) {
  QList<QWidget*> visible;
  for (QWidget* widget : window.findChildren<QWidget*>()) {
    if (widget->isVisibleTo(&window) && widget->window() == &window) visible.append(widget);
  }
  if (visible.isEmpty()) return;
  QWidget& widget = *visible[Below(static_cast<unsigned>(visible.size()))];
  const QPoint place(static_cast<int>(Below(static_cast<unsigned>(widget.width()) + 1)),
                     static_cast<int>(Below(static_cast<unsigned>(widget.height()) + 1)));
  Note(u"clicks into " + NameOf(widget));
  QTest::mouseClick(&widget, Qt::LeftButton, {}, place);
}

void RandomUser::PressAnyKey(QWidget& window) {
  constexpr std::array<QKeyCombination, 26> Keys{
      Qt::Key_Tab,          Qt::Key_Backtab,
      Qt::Key_Space,        Qt::Key_Return,
      Qt::Key_Escape,       Qt::Key_Up,
      Qt::Key_Down,         Qt::Key_Left,
      Qt::Key_Right,        Qt::Key_Home,
      Qt::Key_End,          Qt::Key_PageDown,
      Qt::Key_F1,           Qt::Key_F10,
      Qt::Key_Menu,         Qt::Key_A,
      Qt::ALT | Qt::Key_D,  Qt::ALT | Qt::Key_H,
      Qt::ALT | Qt::Key_P,  Qt::ALT | Qt::Key_L,
      Qt::ALT | Qt::Key_Z,  Qt::ALT | Qt::Key_K,
      Qt::CTRL | Qt::Key_Q, Qt::CTRL | Qt::Key_C,
      Qt::CTRL | Qt::Key_A, Qt::CTRL | Qt::Key_End,
  };
  const QKeyCombination key = Keys.at(Below(Keys.size()));
  Note(u"presses " + QKeySequence(key).toString() + u" in " + NameOf(window));
  QWidget* const focus = window.focusWidget();
  QTest::keyClick(focus == nullptr ? &window : focus, key.key(), key.keyboardModifiers());
}

void RandomUser::ChooseEntry(bool isIdle) {
  QList<QAction*> entries;
  for (QAction* entry : window_.findChildren<QAction*>()) {
    const bool needsIdle = entry->objectName().startsWith(u"mnuSchema");
    const bool isEntry = entry->objectName().startsWith(u"mnu") && entry->menu() == nullptr;
    if (isEntry && entry->isEnabled() && (isIdle || !needsIdle)) entries.append(entry);
  }
  QAction& entry = *entries[Below(static_cast<unsigned>(entries.size()))];
  Note(u"chooses " + entry.objectName());
  if (!isIdle && entry.objectName() == u"mnuBeenden") hasEnded_ = true;
  entry.trigger();
  // The entry that ends the program asks when the menu is done.
  QCoreApplication::sendPostedEvents(&window_, QEvent::MetaCall);
}

void RandomUser::Close() {
  Note(QStringLiteral("closes the window"));
  window_.close();
}

void RandomUser::Act() {
  looks_ = 0;
  const unsigned deed = Below(100);
  if (deed < 45) return ClickButton();
  if (deed < 60) return ClickPort();
  if (deed < 75) return ClickAnything(window_);
  if (deed < 88) return PressAnyKey(window_);
  if (deed < 96) return ChooseEntry(true);
  if (deed < 98)
    return window_.resize(400 + static_cast<int>(Below(900)), 300 + static_cast<int>(Below(600)));
  Close();
}

void RandomUser::Interfere() {
  Note(QStringLiteral("(during the action)"));
  const unsigned deed = Below(100);
  if (deed < 50) return ClickAnything(window_);
  if (deed < 70) return ClickButton();
  if (deed < 85) return QTest::keyClick(&window_, Qt::Key_Escape);
  if (deed < 97) return ChooseEntry(false);
  hasEnded_ = true;
  if (deed < 99) return Close();
  Note(QStringLiteral("the system ends the program"));
  window_.CloseForSystem();
}

}  // namespace kartocheck::test
