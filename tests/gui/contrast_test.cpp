#include "ui/contrast.h"

#include <QApplication>
#include <QCheckBox>
#include <QLineEdit>
#include <QListWidget>
#include <QRadioButton>
#include <QStyle>
#include <QTableWidget>
#include <QTest>
#include <QTextEdit>

#include <gtest/gtest.h>

#include "gui/support/desktops.h"
#include "gui/support/screen.h"
#include "support/printing.h"
#include "ui/value_field.h"

namespace kartocheck::test {
namespace {

TEST(ContrastTest, IsThatOfWcag) {
  EXPECT_NEAR(ContrastOf(Qt::black, Qt::white), 21.0, 0.001);
  EXPECT_NEAR(ContrastOf(Qt::white, Qt::black), 21.0, 0.001);
  EXPECT_NEAR(ContrastOf(Qt::white, Qt::white), 1.0, 0.001);
  // The lightest grey of text on white that WCAG allows, and the first that it does not.
  EXPECT_GE(ContrastOf(QColor(0x76, 0x76, 0x76), Qt::white), 4.5);
  EXPECT_LT(ContrastOf(QColor(0x77, 0x77, 0x77), Qt::white), 4.5);
  EXPECT_NEAR(ContrastOf(Qt::red, Qt::white), 3.998, 0.001);
}

TEST(ContrastTest, AColourThatStandsOutIsLeftAsItIs) {
  EXPECT_EQ(MovedToContrast(QColor(1, 2, 3), Qt::black, Qt::white, 4.5), QColor(1, 2, 3));
  EXPECT_EQ(MovedToContrast(Qt::white, QColor(200, 200, 200), Qt::white, 4.5),
            QColor(200, 200, 200));
}

class ReadableTest : public testing::TestWithParam<Desktop> {
 protected:
  void SetUp() override { QApplication::setPalette(PaletteOf(GetParam())); }
  void TearDown() override { QApplication::setPalette(before_); }

  static QColor Window() { return QApplication::palette().color(QPalette::Window); }

  // The strongest contrast with the window along a row of pixels.
  static double StrongestContrast(const QImage& row) {
    double strongest = 1.0;
    for (int x = 0; x < row.width(); ++x) {
      strongest = std::max(strongest, ContrastOf(row.pixelColor(x, 0), Window()));
    }
    return strongest;
  }

  // The outline is what lies at the left edge, half way down, and at the top, half way across.
  static void ExpectClearOutline(QWidget& widget, const QRect& shape) {
    constexpr int Depth = 2;
    QWidget& window = *widget.window();
    const QImage picture =
        window.grab(QRect(widget.mapTo(&window, shape.topLeft()), shape.size())).toImage();
    const QImage left = picture.copy(0, picture.height() / 2, Depth, 1);
    const QImage top =
        picture.copy(picture.width() / 2, 0, 1, Depth).transformed(QTransform().rotate(90));
    EXPECT_GE(StrongestContrast(left), OutlineContrast) << widget.metaObject()->className();
    EXPECT_GE(StrongestContrast(top), OutlineContrast) << widget.metaObject()->className();
  }

  static QRect IndicatorOf(QAbstractButton& button, QStyle::SubElement element) {
    QStyleOptionButton option;
    option.initFrom(&button);
    return button.style()->subElementRect(element, &option, &button);
  }

 private:
  QPalette before_ = QApplication::palette();
};

TEST_P(ReadableTest, SelectedTextStandsOut) {
  const QPalette palette = QApplication::palette();
  for (const auto group : {QPalette::Active, QPalette::Inactive}) {
    EXPECT_GE(ContrastOf(palette.color(group, QPalette::Highlight),
                         palette.color(group, QPalette::HighlightedText)),
              TextContrast);
  }
}

TEST_P(ReadableTest, SelectedTextStandsOutAsItIsDrawn) {
  ValueField field(QString(), nullptr);
  field.ShowValue(QString(12, QChar(0x2588)));  // blocks as high as a line
  field.resize(200, 30);
  field.show();
  field.setSelection(0, 6);
  QCoreApplication::processEvents();
  const QImage picture = field.grab().toImage();
  const QPalette palette = QApplication::palette();
  const int middle = picture.height() / 2;
  EXPECT_EQ(picture.pixelColor(12, middle), palette.color(QPalette::HighlightedText));
  field.ShowValue(QString(12, u' '));
  field.setSelection(0, 12);
  const QColor ground = field.grab().toImage().pixelColor(12, middle);
  EXPECT_GE(ContrastOf(ground, palette.color(QPalette::HighlightedText)), TextContrast);
}

TEST_P(ReadableTest, OutlinesOfFieldsStandOut) {
  QWidget window;
  const std::array<QWidget*, 5> fields{new ValueField(QString(), &window), new QLineEdit(&window),
                                       new QListWidget(&window), new QTableWidget(&window),
                                       new QTextEdit(&window)};
  int top = 10;
  for (QWidget* field : fields) {
    field->setGeometry(10, top, 200, 40);
    top += 50;
  }
  auto* unfocused = new QWidget(&window);
  unfocused->setFocusPolicy(Qt::StrongFocus);
  window.resize(220, top);
  window.show();
  for (QWidget* focused : {unfocused, fields[0], fields[1], fields[2]}) {
    focused->setFocus(Qt::TabFocusReason);
    QCoreApplication::processEvents();
    for (QWidget* field : fields) ExpectClearOutline(*field, field->rect());
  }
}

TEST_P(ReadableTest, OutlinesOfRadioButtonsAndCheckBoxesStandOut) {
  QWidget window;
  QRadioButton radio(&window);
  QCheckBox check(&window);
  radio.move(10, 10);
  check.move(10, 40);
  window.resize(100, 80);
  window.show();
  for (const bool on : {false, true}) {
    radio.setAutoExclusive(false);
    radio.setChecked(on);
    check.setChecked(on);
    for (QWidget* focused : {static_cast<QWidget*>(&radio), static_cast<QWidget*>(&check)}) {
      focused->setFocus(Qt::TabFocusReason);
      QCoreApplication::processEvents();
      ExpectClearOutline(radio, IndicatorOf(radio, QStyle::SE_RadioButtonIndicator));
      ExpectClearOutline(check, IndicatorOf(check, QStyle::SE_CheckBoxIndicator));
    }
  }
}

INSTANTIATE_TEST_SUITE_P(Desktops, ReadableTest, testing::ValuesIn(Desktops),
                         [](const auto& row) { return NameOf(row.param); });

}  // namespace
}  // namespace kartocheck::test
