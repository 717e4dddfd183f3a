#include "ui/form_daten_info.h"

#include <QAccessible>
#include <QLabel>
#include <QPushButton>
#include <QTest>

#include <gtest/gtest.h>

#include "gui/support/scan_results.h"
#include "gui/support/screen.h"
#include "support/printing.h"

namespace kartocheck::test {
namespace {

QString Row(const char16_t* array, int row) {
  return QStringView(array).toString() + u'_' + QString::number(row);
}

ScanResult Nothing() {
  return ScanResultOf({}, {}, 0);
}

class DatenInfo {
 public:
  explicit DatenInfo(const ScanResult& result, double fontScale = 1.0) : window(result, nullptr) {
    QFont font = window.font();
    font.setPointSizeF(font.pointSizeF() * fontScale);
    window.setFont(font);
    window.show();
    window.resize(window.sizeHint());
    QCoreApplication::processEvents();
  }

  QLabel& Text(int row) { return screen.Find<QLabel>(Row(u"Labe_DatenInfo1", row)); }
  QLabel& Number(int row) { return screen.Find<QLabel>(Row(u"Labe_DatenInfo2", row)); }
  QLabel& Key(int row) { return screen.Find<QLabel>(Row(u"Imag_DatenInfo1", row)); }

  // Left and right end, in the window, of the blanks that follow `before` in a row's text.
  std::pair<int, int> GapIn(int row, const QString& before) {
    const QLabel& label = Text(row);
    const QFontMetrics metrics = label.fontMetrics();
    const QString text = label.text();
    const qsizetype start = text.indexOf(before) + before.size();
    qsizetype end = start;
    while (text.at(end) == u' ') ++end;
    const int left = label.mapTo(&window, QPoint(0, 0)).x();
    return {left + metrics.horizontalAdvance(text.left(start)),
            left + metrics.horizontalAdvance(text.left(end))};
  }

  Form_DatenInfo window;
  Screen screen{window};
};

TEST(DatenInfoTest, ShowsTheRows) {
  DatenInfo shown(EveryCase());
  EXPECT_EQ(shown.window.windowTitle(), u"KartoCheck Ergebnis");
  EXPECT_EQ(shown.window.objectName(), u"Form_DatenInfo");
  const std::array<const char16_t*, 5> texts{
      u"An COM         Chipkartenleser gefunden. Baudrate: 9600     Baud.",
      u"An COM         Chipkartenleser gefunden. USB Gerät (Virtueller COM port)",
      u"An COM         Chipkartenleser möglich. Mit               Taste fortfahren.",
      u"",
      u"1 weitere(n) Chipkartenleser gefunden.\nSiehe Schnittstellen weitere ...",
  };
  const std::array<const char16_t*, 4> numbers{u"1", u"2", u"3", u""};
  for (int row = 0; row < 5; ++row) {
    EXPECT_EQ(shown.Text(row).text(), texts.at(static_cast<std::size_t>(row)));
    EXPECT_EQ(shown.Text(row).textFormat(), Qt::PlainText);
  }
  for (int row = 0; row < 4; ++row) {
    EXPECT_EQ(shown.Number(row).text(), numbers.at(static_cast<std::size_t>(row)));
    EXPECT_EQ(shown.Key(row).isVisible(), row == 2) << row;
  }
  EXPECT_FALSE(shown.Key(2).pixmap().isNull());
}

TEST(DatenInfoTest, NothingFoundStandsCentredInTheSecondRow) {
  DatenInfo shown(Nothing());
  for (int row = 0; row < 5; ++row) {
    EXPECT_EQ(shown.Text(row).text(), row == 1 ? u"Keinen Chipkartenleser gefunden!" : u"");
    EXPECT_EQ((shown.Text(row).alignment() & Qt::AlignHCenter) != 0, row == 1) << row;
  }
  for (int row = 0; row < 4; ++row) {
    EXPECT_EQ(shown.Number(row).text(), u"");
    EXPECT_FALSE(shown.Key(row).isVisible());
  }
}

TEST(DatenInfoTest, NumberAndKeyLieOverTheGapsAtAnyFontSize) {
  for (const double scale : {0.7, 1.0, 1.5, 2.5, 4.0}) {
    DatenInfo shown(EveryCase(), scale);
    for (int row = 0; row < 3; ++row) {
      const auto [left, right] = shown.GapIn(row, QStringLiteral("An COM"));
      const QLabel& number = shown.Number(row);
      const int middle = number.mapTo(&shown.window, number.rect().center()).x();
      const int half = number.fontMetrics().horizontalAdvance(number.text()) / 2;
      EXPECT_GT(middle - half, left) << scale;
      EXPECT_LT(middle + half, right) << scale;
      EXPECT_NEAR(middle, (left + right) / 2, 1) << scale;
      EXPECT_GE(number.height(), number.fontMetrics().height()) << scale;
    }
    const auto [left, right] = shown.GapIn(2, QStringLiteral("Mit"));
    const QLabel& key = shown.Key(2);
    const QRect place(key.mapTo(&shown.window, QPoint(0, 0)), key.size());
    EXPECT_GE(place.left(), left) << scale;
    EXPECT_LE(place.right(), right) << scale;
    EXPECT_NEAR(place.center().x(), (left + right) / 2, 1) << scale;
    EXPECT_GE(key.height(), key.fontMetrics().height() / 2) << scale;
    EXPECT_GE(key.y(), 0) << scale;
    EXPECT_LE(key.geometry().bottom(), key.parentWidget()->rect().bottom()) << scale;
  }
}

TEST(DatenInfoTest, TheyFollowAChangeOfTheFont) {
  DatenInfo shown(EveryCase());
  const int before = shown.Number(0).x();
  QFont large = shown.window.font();
  large.setPointSizeF(large.pointSizeF() * 2);
  shown.window.setFont(large);
  QCoreApplication::processEvents();
  EXPECT_GT(shown.Number(0).x(), before * 3 / 2);
}

TEST(DatenInfoTest, NothingIsCutAndTextsGrowWithTheFont) {
  for (const double scale : {1.0, 2.0}) {
    DatenInfo shown(EveryCase(), scale);
    for (int row = 0; row < 5; ++row) {
      EXPECT_GE(shown.Text(row).width(), shown.Text(row).sizeHint().width()) << scale << row;
      EXPECT_GE(shown.Text(row).height(), shown.Text(row).sizeHint().height()) << scale << row;
    }
  }
}

// What is told of the row of this text, with all that lies over it.
QString Spoken(const QLabel& text) {
  const auto* row = QAccessible::queryAccessibleInterface(text.parentWidget());
  EXPECT_EQ(row->role(), QAccessible::StaticText);
  EXPECT_EQ(row->childCount(), 0);
  return row->text(QAccessible::Name);
}

TEST(DatenInfoTest, AScreenReaderTellsWhatLiesOverTheGaps) {
  DatenInfo shown(EveryCase());
  EXPECT_EQ(Spoken(shown.Text(1)),
            u"An COM 2 Chipkartenleser gefunden. USB Gerät (Virtueller COM port)");
  EXPECT_EQ(Spoken(shown.Text(2)),
            u"An COM 3 Chipkartenleser möglich. Mit der grünen Taste fortfahren.");
}

TEST(DatenInfoTest, ClosesWithButtonEscapeAndCloseBox) {
  const std::function<void(DatenInfo&)> ways[] = {
      [](DatenInfo& shown) { shown.screen.Click(QStringLiteral("Command1")); },
      [](DatenInfo& shown) { shown.screen.Press(QStringLiteral("Command1"), Qt::Key_Escape); },
      [](DatenInfo& shown) { shown.screen.Press(QStringLiteral("Command1"), Qt::Key_Return); },
      [](DatenInfo& shown) { shown.window.close(); },
  };
  for (const auto& close : ways) {
    DatenInfo shown(Nothing());
    close(shown);
    EXPECT_FALSE(shown.window.isVisible());
  }
}

}  // namespace
}  // namespace kartocheck::test
