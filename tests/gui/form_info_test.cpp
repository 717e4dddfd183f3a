#include "ui/form_info.h"

#include <QLabel>
#include <QPushButton>
#include <QTest>

#include <gtest/gtest.h>

#include "gui/support/screen.h"
#include "support/printing.h"

namespace kartocheck::test {
namespace {

class InfoTest : public testing::Test {
 protected:
  InfoTest() { window.show(); }

  Form_Info window{{.version = QStringLiteral("1.2.3"),
                    .library = QStringLiteral("/opt/<b>x</b>/libCTNRV32.so"),
                    .system = QStringLiteral("Testsystem 1")},
                   nullptr};
  Screen screen{window};
};

TEST_F(InfoTest, ShowsPictureAndFacts) {
  EXPECT_EQ(window.objectName(), u"Form_Info");
  EXPECT_EQ(window.windowTitle(), u"Info zu KartoCheck");
  const auto& picture = screen.Find<QLabel>(QStringLiteral("Imag_Produkt"));
  EXPECT_FALSE(picture.pixmap().isNull());
  EXPECT_FALSE(picture.accessibleName().isEmpty());
  EXPECT_EQ(screen.Text(QStringLiteral("Labl_Version")), u"1.2.3");
  EXPECT_EQ(screen.Text(QStringLiteral("Labl_Bibliothek")), u"/opt/<b>x</b>/libCTNRV32.so");
  EXPECT_EQ(screen.Find<QLabel>(QStringLiteral("Labl_Bibliothek")).textFormat(), Qt::PlainText);
  EXPECT_EQ(screen.Text(QStringLiteral("Labl_System")), u"Testsystem 1");
}

TEST_F(InfoTest, ClosesWithItsButton) {
  screen.Click(QStringLiteral("CmdB_1Form_Info"));
  EXPECT_FALSE(window.isVisible());
}

TEST_F(InfoTest, ClosesWithEscapeOnTheButton) {
  screen.Press(QStringLiteral("CmdB_1Form_Info"), Qt::Key_Escape);
  EXPECT_FALSE(window.isVisible());
}

TEST_F(InfoTest, ClosesWithEnter) {
  QTest::keyClick(&window, Qt::Key_Enter);
  EXPECT_FALSE(window.isVisible());
}

TEST_F(InfoTest, ClosesWithTheCloseBox) {
  EXPECT_TRUE(window.close());
  EXPECT_FALSE(window.isVisible());
}

TEST(EmptyInfoTest, WhatIsNotKnownHasNoLine) {
  const Form_Info window({.version = QStringLiteral("1.2.3")}, nullptr);
  EXPECT_NE(window.findChild<QLabel*>(QStringLiteral("Labl_Version")), nullptr);
  EXPECT_EQ(window.findChild<QLabel*>(QStringLiteral("Labl_Bibliothek")), nullptr);
}

}  // namespace
}  // namespace kartocheck::test
