#pragma once

#include <QWidget>

class QMainWindow;

namespace kartocheck::test {

// The window with title bar and frame lies on its screen, beside the task bar, and could be made no
// larger by what is in it.
void ExpectFitsOnScreen(const QWidget& window);

// Every text of a label, a button or a tab has the room that it asks for, and no control reaches
// out of what holds it.
void ExpectNothingCut(const QWidget& window);

// No two controls lie over one another.
void ExpectNothingOverlaps(const QWidget& window);

// Every button that is not in a scrolled part is seen.
void ExpectButtonsInView(const QWidget& window);

// The main window's buttons stay where they are while its parts scroll.
void ExpectOnlyPartsScroll(const QMainWindow& window);

// All of these.
void ExpectUsable(const QWidget& window);

}  // namespace kartocheck::test
