#include "kvk/insured_data.h"

#include <gtest/gtest.h>

#include "kvk/kvk_reading.h"
#include "support/printing.h"

namespace kartocheck::test {
namespace {

InsuredData AllElements(const QString& prefix) {
  InsuredData data;
  for (int i = 0; i < ElementCount; ++i) {
    data[static_cast<Element>(i)] = prefix + QString::number(i);
  }
  return data;
}

TEST(InsuredDataTest, StartsEmpty) {
  const InsuredData data;
  EXPECT_TRUE(data.IsEmpty());
  EXPECT_EQ(ElementsOf(data), Elements(20));
}

TEST(InsuredDataTest, EachElementAloneMakesItNonEmpty) {
  for (int i = 0; i < ElementCount; ++i) {
    InsuredData data;
    data[static_cast<Element>(i)] = QStringLiteral("x");
    EXPECT_FALSE(data.IsEmpty()) << i;
    data.Clear();
    EXPECT_TRUE(data.IsEmpty()) << i;
  }
}

TEST(InsuredDataTest, ACardsReadTakesOverSeventeenElements) {
  InsuredData data = AllElements(QStringLiteral("old"));
  data.Store(AllElements(QStringLiteral("new")), false);
  for (int i = 0; i < ElementCount; ++i) {
    EXPECT_EQ(data[static_cast<Element>(i)],
              QString((i < 17 ? u"new" : u"old") + QString::number(i)));
  }
}

TEST(InsuredDataTest, AMobileTerminalsReadTakesOverAllElements) {
  InsuredData data = AllElements(QStringLiteral("old"));
  data.Store(AllElements(QStringLiteral("new")), true);
  EXPECT_EQ(ElementsOf(data), ElementsOf(AllElements(QStringLiteral("new"))));
}

TEST(InsuredDataTest, AnElementThatWasNotDeliveredEmptiesTheOldOne) {
  InsuredData data = AllElements(QStringLiteral("old"));
  data.Store({}, true);
  EXPECT_TRUE(data.IsEmpty());
}

}  // namespace
}  // namespace kartocheck::test
