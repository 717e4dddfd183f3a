#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QRegularExpression>

#include <gtest/gtest.h>
#include <ostream>

#include "console/console_fixture.h"
#include "support/printing.h"
#include "support/sentence_name.h"

// The documentation says how each date of the JSON document looks.

namespace kartocheck::test {
namespace {

enum class Card { Kvk = 1, Egk = 2 };  // its column in the table of the documentation

struct DateRow {
  const char* sentence;
  const char* scenario;
  Card card;
  const char* name;  // in the documentation's table
  QStringView path;  // below the port: keys, and the name of a field, separated by slashes
  QStringView value;

  friend std::ostream& operator<<(std::ostream& out, const DateRow& row) {
    return out << row.sentence;
  }
};

// What the table says of the date: as TTMMJJJJ, in code marks.
QString DocumentedForm(const DateRow& row) {
  QFile page(QStringLiteral(CONSOLE_PAGE));
  EXPECT_TRUE(page.open(QIODevice::ReadOnly));
  for (const QString& line : QString::fromUtf8(page.readAll()).split(u'\n')) {
    if (!line.startsWith(u"| " + QString::fromLatin1(row.name) + u" |")) continue;
    return line.section(u'|', static_cast<int>(row.card) + 1, static_cast<int>(row.card) + 1)
        .trimmed()
        .remove(u'`');
  }
  ADD_FAILURE() << "no such row: " << row.name;
  return {};
}

QJsonValue ValueAt(QJsonValue value, QStringView path) {
  for (const QStringView key : path.split(u'/')) {
    if (value.isObject()) {
      value = value.toObject().value(key);
      continue;
    }
    QJsonValue found;
    for (const QJsonValue& field : value.toArray()) {
      if (field.toObject().value(u"name") == key.toString())
        found = field.toObject().value(u"value");
    }
    value = found;
  }
  return value;
}

class DateTest : public testing::TestWithParam<DateRow> {};

TEST_P(DateTest, LooksAsDocumented) {
  Console console(StoredRecords::Erase);
  console.practice.Attach(1, PortOf(GetParam().scenario));
  ASSERT_EQ(console.Run({.json = true, .port = Port(1)}), exit_status::DataRead);
  const QJsonObject report =
      QJsonDocument::fromJson(QByteArray::fromStdString(console.out.str())).object();
  const QJsonValue port = report.value(u"ports").toObject().value(u"1");
  const QString value = ValueAt(port, GetParam().path).toString();
  EXPECT_EQ(value, GetParam().value);
  const QString form = DocumentedForm(GetParam());
  EXPECT_EQ(form.size(), value.size());
  // A letter stands for a digit.
  QString digits = value;
  digits.replace(QRegularExpression(QStringLiteral("[0-9]")), QStringLiteral("9"));
  EXPECT_EQ(QString(form).replace(QRegularExpression(QStringLiteral("[TMJ]")), QStringLiteral("9")),
            digits);
}

INSTANTIATE_TEST_SUITE_P(
    Console, DateTest,
    testing::Values(DateRow{"a KVKs birth date", "kvk-60", Card::Kvk, "`birthDate`",
                            u"data/elements/birthDate", u"01021950"},
                    DateRow{"an eGKs birth date", "egk-beispiel", Card::Egk, "`birthDate`",
                            u"data/elements/birthDate", u"12.08.1964"},
                    DateRow{"a KVKs validity", "kvk-60", Card::Kvk, "`validUntil`",
                            u"data/elements/validUntil", u"1230"},
                    DateRow{"an eGKs validity", "egk-hoechstlaengen", Card::Egk, "`validUntil`",
                            u"data/elements/validUntil", u"31.12.2099"},
                    DateRow{"the reading date of a KVK record", "kvk-gespeichert", Card::Kvk,
                            "`readingDate`", u"data/elements/readingDate", u"05032024"},
                    DateRow{"the reading date of an eGK record", "egk-gespeichert", Card::Egk,
                            "`readingDate`", u"data/elements/readingDate", u"05.03.2024"},
                    DateRow{"the reading date as it was stored", "egk-gespeichert", Card::Egk,
                            "`storedDate`", u"egk/storedDate", u"05032024"},
                    DateRow{"the birth date among the fields", "egk-beispiel", Card::Egk,
                            "`pd`: Geburtsdatum", u"egk/pd/fields/Geburtsdatum", u"19640812"},
                    DateRow{"the begin among the fields", "egk-beispiel", Card::Egk,
                            "`vd`: Beginn, Ende", u"egk/vd/fields/Beginn", u"01.01.2015"},
                    DateRow{"the end among the fields", "egk-hoechstlaengen", Card::Egk,
                            "`vd`: Beginn, Ende", u"egk/vd/fields/Ende", u"31.12.2099"}),
    SentenceName());

}  // namespace
}  // namespace kartocheck::test
