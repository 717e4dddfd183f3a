#include <QAbstractButton>
#include <QApplication>
#include <QFontInfo>
#include <QLabel>
#include <QListWidget>
#include <QPlainTextEdit>
#include <QTableWidget>

#include <gtest/gtest.h>

#include "gui/support/box_answerer.h"
#include "gui/support/program.h"
#include "support/printing.h"
#include "ui/form_egk_info.h"
#include "ui/plain_label.h"
#include "ui/text_label.h"
#include "ui/value_field.h"

// Capital umlauts are drawn whole, dots and all: wherever a text stands, its letters look as in a
// label that is far higher than its text.

namespace kartocheck::test {
namespace {

// Behind a blank: some fonts begin a letter left of its place.
const QString Umlauts = QStringLiteral(" ÄÖÜ");

// The smallest part of a picture that holds everything darker than the light ground: rows of
// characters, from " " to "9" for black.
std::vector<std::string> InkOf(const QImage& picture) {
  constexpr int Ground = 250;
  constexpr const char* Shades = "9876543210 ";
  const QImage grey = picture.convertToFormat(QImage::Format_Grayscale8);
  QRect ink;
  for (int y = 0; y < grey.height(); ++y) {
    for (int x = 0; x < grey.width(); ++x) {
      if (qGray(grey.pixel(x, y)) < Ground) ink |= QRect(x, y, 1, 1);
    }
  }
  std::vector<std::string> rows;
  for (int y = ink.top(); y <= ink.bottom(); ++y) {
    std::string row;
    for (int x = ink.left(); x <= ink.right(); ++x) row += Shades[qGray(grey.pixel(x, y)) / 25];
    rows.push_back("\n" + row);
  }
  return rows;
}

// The first lines of what is drawn.
std::vector<std::string> Above(const std::vector<std::string>& ink, std::size_t lines) {
  return {ink.begin(), ink.begin() + static_cast<std::ptrdiff_t>(std::min(lines, ink.size()))};
}

// What a widget draws in the area.
std::vector<std::string> InkIn(QWidget& widget, const QRect& area) {
  return InkOf(widget.grab(area).toImage());
}

// What a field draws inside of its outline.
std::vector<std::string> InkIn(QWidget& field) {
  return InkIn(field, field.rect().adjusted(1, 1, -1, -1));
}

// What a table draws in a cell: the grid runs along its right and lower edges.
std::vector<std::string> InkIn(QTableWidget& table, const QRect& cell) {
  return InkIn(*table.viewport(), cell.adjusted(0, 0, -1, -1));
}

// How the umlauts look where nothing can cut them.
std::vector<std::string> WholeUmlauts(const QFont& font) {
  QLabel label(Umlauts);
  label.setFont(font);
  label.setFixedSize(label.sizeHint() * 3);
  return InkOf(label.grab().toImage());
}

// A white window makes letters the only ink.
QPalette PlainPalette() {
  QPalette palette = QApplication::palette();
  for (const auto role :
       {QPalette::Window, QPalette::Base, QPalette::AlternateBase, QPalette::Button}) {
    palette.setColor(role, Qt::white);
  }
  for (const auto role : {QPalette::WindowText, QPalette::Text}) {
    palette.setColor(role, Qt::black);
  }
  return palette;
}

struct FontRow {
  const char* family;
  double points;
};

void PrintTo(const FontRow& row, std::ostream* out) {
  *out << row.family << " " << row.points;
}

class UmlautTest : public testing::TestWithParam<FontRow> {
 protected:
  void SetUp() override {
    QFont font(QString::fromLatin1(GetParam().family));
    font.setPointSizeF(GetParam().points);
    ASSERT_EQ(QFontInfo(font).family(), font.family()) << "scripts/install.sh test installs it";
    QApplication::setPalette(PlainPalette());
    QApplication::setFont(font);
    whole = WholeUmlauts(font);
    ASSERT_GT(static_cast<int>(whole.size()), QFontMetrics(font).capHeight());
  }
  void TearDown() override {
    QApplication::setFont(fontBefore);
    QApplication::setPalette(paletteBefore);
  }

  static void Show(QWidget& widget) {
    widget.show();
    QCoreApplication::processEvents();
  }

  QFont fontBefore = QApplication::font();
  QPalette paletteBefore = QApplication::palette();
  std::vector<std::string> whole;
};

TEST_P(UmlautTest, StandInAValueField) {
  Program program;
  auto& field = program.Find<ValueField>(QStringLiteral("Labl_Wert_9"));
  field.ShowValue(Umlauts);
  QCoreApplication::processEvents();
  EXPECT_EQ(InkIn(field), whole);
}

TEST_P(UmlautTest, StandInALabelAsHighAsItsText) {
  QWidget window;
  QLabel* label = PlainLabel(QString(), Umlauts, &window);
  label->adjustSize();
  EXPECT_EQ(InkOf(label->grab().toImage()), whole);
}

TEST_P(UmlautTest, StandInALabelThatCanBeSelected) {
  for (const QString& before : {QString(), Umlauts, QStringLiteral("anderes")}) {
    QWidget window;
    QLabel* label = PlainLabel(QString(), before, &window);
    MakeSelectable(*label);
    label->setText(Umlauts);
    label->adjustSize();
    EXPECT_EQ(InkOf(label->grab().toImage()), whole) << before.toStdString();
  }
}

TEST_P(UmlautTest, StandInAStatusText) {
  Program program;
  program.window.ShowStatusText(Umlauts);
  QCoreApplication::processEvents();
  auto& text = program.Find(QStringLiteral("Labl_StatusText"));
  EXPECT_EQ(InkOf(text.grab().toImage()), whole);
}

TEST_P(UmlautTest, StandInTheFirstLineOfACell) {
  EgkData egk;
  egk.documents[VsdKind::Pd].fields[0] = {Umlauts, Umlauts + u'\n' + Umlauts};
  Form_egK_Info window(EgkInfoOf({}, egk), nullptr);
  Show(window);
  auto& grid = *window.findChild<QTableWidget*>(QStringLiteral("MSFlexGrid1"));
  EXPECT_EQ(InkIn(grid, grid.visualItemRect(grid.item(0, 0))), whole);
  QRect first = grid.visualItemRect(grid.item(0, 1));
  first.setBottom(first.center().y());
  EXPECT_EQ(Above(InkIn(grid, first), whole.size()), whole);
}

TEST_P(UmlautTest, StandInALineOfAList) {
  Program program;
  program.view.furtherPorts.Set({.ports = {{Umlauts, {}}, {Umlauts, {}}}});
  QCoreApplication::processEvents();
  auto& list = program.Find<QListWidget>(QStringLiteral("List1"));
  list.clearFocus();
  for (const int line : {0, 1}) {
    EXPECT_EQ(InkIn(*list.viewport(), list.visualItemRect(list.item(line))), whole) << line;
  }
}

TEST_P(UmlautTest, StandInAMessageBox) {
  Program program;
  std::vector<std::string> ink;
  const BoxAnswerer user({[&](QMessageBox& box) {
    auto& label = *box.findChild<QLabel*>(QStringLiteral("qt_msgbox_label"));
    ink = InkOf(label.grab().toImage());
    box.button(QMessageBox::Ok)->click();
  }});
  program.window.Boxes().Tell(Icon::Information, Dialogs::Title.toString(), Umlauts);
  EXPECT_EQ(ink, whole);
}

TEST_P(UmlautTest, StandInATextOfManyLines) {
  QPlainTextEdit text(Umlauts);
  text.setFocusPolicy(Qt::NoFocus);
  Show(text);
  EXPECT_EQ(InkIn(*text.viewport(), text.viewport()->rect()), whole);
}

TEST_P(UmlautTest, StandAfterTheFontHasGrown) {
  QWidget window;
  QLabel* label = PlainLabel(QString(), Umlauts, &window);
  auto* field = new ValueField(QString(), &window);
  field->ShowValue(Umlauts);
  QFont large = QApplication::font();
  large.setPointSizeF(large.pointSizeF() * 1.8);
  window.setFont(large);
  label->adjustSize();
  field->resize(300, field->heightForWidth(300));
  EXPECT_EQ(InkOf(label->grab().toImage()), WholeUmlauts(large));
  EXPECT_EQ(InkIn(*field), WholeUmlauts(large));
}

INSTANTIATE_TEST_SUITE_P(Fonts, UmlautTest,
                         testing::Values(FontRow{"DejaVu Sans", 9}, FontRow{"DejaVu Sans", 10},
                                         FontRow{"DejaVu Serif", 9}, FontRow{"Liberation Sans", 9},
                                         FontRow{"Liberation Sans", 11}, FontRow{"Cantarell", 11}));

}  // namespace
}  // namespace kartocheck::test
