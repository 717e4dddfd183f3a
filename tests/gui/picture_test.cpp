#include "ui/picture.h"

#include <QFile>
#include <QImage>

#include <gtest/gtest.h>

#include "support/printing.h"

namespace kartocheck::test {
namespace {

struct PictureRow {
  const char16_t* name;
  QSize size;  // logical pixels
};

constexpr PictureRow Rows[] = {
    {u"kartocheck", {64, 64}},   {u"product", {320, 200}}, {u"key", {30, 24}},
    {u"full_scan", {40, 40}},    {u"diagnosis", {40, 40}}, {u"terminal_status", {40, 40}},
    {u"read_card", {40, 40}},    {u"copy", {40, 40}},      {u"reset", {40, 40}},
    {u"element_list", {24, 24}}, {u"xml_text", {24, 24}},  {u"chip_info", {24, 24}},
    {u"help", {24, 24}},         {u"close", {24, 24}},
};

TEST(PictureTest, ExistsForEveryScaleFactor) {
  const std::pair<int, const char16_t*> scales[] = {{1, u""}, {2, u"@2x"}, {3, u"@3x"}};
  for (const PictureRow& row : Rows) {
    const QString name = QStringView(row.name).toString();
    for (const auto& [scale, suffix] : scales) {
      const QImage image(u":/pictures/" + name + QStringView(suffix) + u".png");
      EXPECT_EQ(image.size(), row.size * scale) << name.toStdString() << " at " << scale;
      EXPECT_TRUE(image.hasAlphaChannel()) << name.toStdString();
    }
    EXPECT_FALSE(PictureIcon(name).isNull());
    EXPECT_FALSE(PicturePixmap(name).isNull());
  }
}

TEST(PictureTest, APixmapIsAsFineAsTheScreen) {
  const std::pair<double, int> scales[] = {{0.5, 1}, {1.0, 1}, {1.25, 2}, {2.0, 2},
                                           {2.5, 3}, {3.0, 3}, {4.0, 3}};
  for (const PictureRow& row : Rows) {
    const QString name = QStringView(row.name).toString();
    for (const auto& [screen, scale] : scales) {
      const QPixmap pixmap = PicturePixmap(name, screen);
      EXPECT_EQ(pixmap.size(), row.size * scale) << name.toStdString() << " at " << screen;
      EXPECT_EQ(pixmap.deviceIndependentSize(), QSizeF(row.size)) << name.toStdString();
    }
  }
}

}  // namespace
}  // namespace kartocheck::test
