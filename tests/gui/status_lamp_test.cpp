#include "ui/status_lamp.h"

#include <QAccessible>
#include <QColor>
#include <QImage>

#include <array>
#include <gtest/gtest.h>
#include <set>

#include "support/printing.h"

namespace kartocheck::test {
namespace {

constexpr std::array<LampState, 3> AllStates{LampState::Off, LampState::Waiting,
                                             LampState::Answered};

class StatusLampTest : public testing::Test {
 protected:
  StatusLampTest() { lamp.resize(64, 64); }

  QImage Picture(LampState state) {
    lamp.SetState(state);
    return lamp.grab().toImage();
  }

  StatusLamp lamp{QStringLiteral("Shap_Lampe_0"), QStringLiteral("Kartenzugriff"), nullptr};
};

TEST_F(StatusLampTest, IsOffAtFirst) {
  EXPECT_EQ(lamp.State(), LampState::Off);
  EXPECT_EQ(lamp.objectName(), u"Shap_Lampe_0");
}

TEST_F(StatusLampTest, HasTheColourOfItsState) {
  // Left of the sign, inside of the ring.
  constexpr QPoint Face(10, 32);
  EXPECT_EQ(Picture(LampState::Waiting).pixelColor(Face), QColor(255, 255, 0));
  EXPECT_EQ(Picture(LampState::Answered).pixelColor(Face), QColor(0, 255, 0));
  EXPECT_EQ(Picture(LampState::Off).pixelColor(Face), lamp.palette().color(QPalette::Button));
}

TEST_F(StatusLampTest, ShowsItsStateWithoutColourToo) {
  constexpr int Dark = 60;
  std::set<std::vector<bool>> shapes;
  for (const LampState state : AllStates) {
    const QImage picture = Picture(state);
    std::vector<bool> shape;
    for (int y = 0; y < picture.height(); ++y) {
      for (int x = 0; x < picture.width(); ++x) {
        shape.push_back(qGray(picture.pixel(x, y)) < Dark);
      }
    }
    shapes.insert(shape);
  }
  EXPECT_EQ(shapes.size(), AllStates.size());
}

TEST_F(StatusLampTest, TellsItsStateInWords) {
  const std::array<const char16_t*, 3> texts{
      u"Kartenzugriff: keine Verbindung",
      u"Kartenzugriff: wartet auf Antwort",
      u"Kartenzugriff: Antwort erhalten",
  };
  for (std::size_t state = 0; state < AllStates.size(); ++state) {
    lamp.SetState(AllStates.at(state));
    EXPECT_EQ(lamp.accessibleName(), texts.at(state));
    EXPECT_EQ(lamp.toolTip(), texts.at(state));
    const auto* accessible = QAccessible::queryAccessibleInterface(&lamp);
    EXPECT_EQ(accessible->role(), QAccessible::Graphic);
    EXPECT_EQ(accessible->text(QAccessible::Name), texts.at(state));
    EXPECT_EQ(accessible->text(QAccessible::Description), QString()) << "it would be told twice";
  }
}

}  // namespace
}  // namespace kartocheck::test
