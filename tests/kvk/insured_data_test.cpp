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
  EXPECT_EQ(data, InsuredData{});
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

TEST(InsuredDataTest, ACardsReadTakesOverTheCardsElements) {
  InsuredData data = AllElements(QStringLiteral("old"));
  data.Store(AllElements(QStringLiteral("new")), false);
  for (const ElementDescription& element : ElementTable) {
    const bool isNew = element.Part == ElementPart::Card;
    EXPECT_EQ(data[element.Which].first(3), isNew ? u"new" : u"old") << element.Key;
  }
}

TEST(InsuredDataTest, AMobileTerminalsReadTakesOverAllElements) {
  InsuredData data = AllElements(QStringLiteral("old"));
  data.Store(AllElements(QStringLiteral("new")), true);
  EXPECT_EQ(data, AllElements(QStringLiteral("new")));
}

TEST(InsuredDataTest, AnElementThatWasNotDeliveredEmptiesTheOldOne) {
  InsuredData data = AllElements(QStringLiteral("old"));
  data.Store({}, true);
  EXPECT_TRUE(data.IsEmpty());
}

}  // namespace
}  // namespace kartocheck::test
