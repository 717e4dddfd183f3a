// Whole reads, through the dispatcher, over a link or a card that misbehaves.

#include <algorithm>
#include <gtest/gtest.h>
#include <random>

#include "egk/readers/egk_reading.h"
#include "egk/readers/fake_egk.h"
#include "support/fake_api.h"
#include "support/faulty_api.h"
#include "support/sentence_name.h"

namespace kartocheck::test {
namespace {

using Holds = FakeEgk::Holds;

struct SweepRow {
  const char* sentence;
  Holds holds;
  bool isKnownMobile;  // from the identification
  int exchanges;       // of the intact read, with the dispatcher's three
  // Exchanges whose fault keeps a stored record from being erased.
  std::vector<int> notErasedAfter;

  friend std::ostream& operator<<(std::ostream& out, const SweepRow& row) {
    return out << row.sentence;
  }
};

// Plays no part in the read: every exchange is intact.
constexpr int NoExchange = 0;

struct Sweep {
  Sweep(const SweepRow& row, int faultyExchange, const Fault& fault)
      : card(row.holds), api(card, faultyExchange, fault), reading(api) {
    reading.FillWithAnotherPerson();
    reading.info.Reset95 = row.isKnownMobile;
    reading.info.Reset9501 = row.holds == Holds::ExtendedRecord;
    reading.link.dialogs.answerSafely = true;
    reading.link.dialogs.answers = {Answer::Yes};
    outcome = reading.Dispatched();
  }

  [[nodiscard]] std::int64_t Count(QStringView call) const {
    return std::count(api.Calls().begin(), api.Calls().end(), call);
  }

  FakeEgk card;
  FaultyApi api;
  EgkReading reading;
  ReadOutcome outcome = ReadOutcome::Failed;
};

class EgkFaultSweepTest : public testing::TestWithParam<SweepRow> {};

void ExpectClosed(const Sweep& sweep) {
  const std::vector<QString>& calls = sweep.api.Calls();
  ASSERT_GE(calls.size(), 4U);
  EXPECT_EQ(calls.front(), u"open 1");
  EXPECT_EQ(calls[calls.size() - 2], u"2011000000");
  EXPECT_EQ(calls.back(), u"close");
  EXPECT_EQ(sweep.Count(u"close"), 1);
  EXPECT_FALSE(sweep.reading.link.session.IsOpen());
}

// Each text is what the intact read brings at its place, or empty.
void ExpectPartOf(const std::vector<QString>& intact, const EgkReading& reading) {
  const std::vector<QString> texts = AllTexts(reading.insured, reading.egk);
  ASSERT_EQ(texts.size(), intact.size());
  for (std::size_t i = 0; i < texts.size(); ++i) {
    EXPECT_TRUE(texts[i].isEmpty() || texts[i] == intact[i]) << texts[i].toStdString();
  }
}

TEST_P(EgkFaultSweepTest, EveryFaultAtEveryExchange) {
  const SweepRow& row = GetParam();
  const Sweep intact(row, NoExchange, {});
  ASSERT_EQ(intact.outcome, ReadOutcome::Done);
  ASSERT_EQ(static_cast<int>(intact.api.Calls().size()), row.exchanges + 2);
  const std::vector<QString> intactTexts = AllTexts(intact.reading.insured, intact.reading.egk);
  const bool isRecord = row.holds == Holds::PlainRecord || row.holds == Holds::ExtendedRecord;
  EXPECT_EQ(intact.Count(u"000E0000"), isRecord ? 1 : 0);

  for (int exchange = 1; exchange <= row.exchanges; ++exchange) {
    const bool mayErase =
        isRecord && std::find(row.notErasedAfter.begin(), row.notErasedAfter.end(), exchange) ==
                        row.notErasedAfter.end();
    for (const Fault& fault : AllFaults()) {
      SCOPED_TRACE("exchange " + std::to_string(exchange) + ", " + fault.Name());
      const Sweep sweep(row, exchange, fault);
      ExpectClosed(sweep);
      EXPECT_EQ(sweep.Count(u"000E0000"), mayErase ? 1 : 0);
      sweep.reading.ExpectNothingOfAnotherPerson();
      ExpectPartOf(intactTexts, sweep.reading);
      if (sweep.outcome != ReadOutcome::Done) {
        EXPECT_TRUE(sweep.reading.insured.IsEmpty());
        EXPECT_TRUE(sweep.reading.egk.IsEmpty());
        EXPECT_FALSE(sweep.reading.info.DataRead);
        EXPECT_FALSE(sweep.reading.info.EgkData);
      }
    }
  }
}

INSTANTIATE_TEST_SUITE_P(
    Egk, EgkFaultSweepTest,
    testing::Values(
        // RESET CT, REQUEST ICC, 1 + 13 + 3 + 3 + 2, RESET CT.
        SweepRow{"a card with a GVD in its container", Holds::CardWithContainerGvd, false, 25, {}},
        SweepRow{"a card with EF.GVD", Holds::CardWithEfGvd, false, 27, {}},
        // Without the pieces of the GVD.
        SweepRow{"a card with a protected EF.GVD", Holds::CardWithProtectedGvd, false, 25, {}},
        // RESET CT, REQUEST ICC, SELECT, status, PD 3, VD 4, ERASE, EJECT, RESET CT. Nothing is
        // erased when no record was found, or when the terminal did not tell that it is mobile.
        SweepRow{"a plain record", Holds::PlainRecord, false, 14, {1, 2, 3}},
        SweepRow{"a plain record in a terminal known to be mobile",
                 Holds::PlainRecord,
                 true,
                 14,
                 {2, 3}},
        // VD 3, GVD 2; the status has to be readable.
        SweepRow{"an extended record", Holds::ExtendedRecord, true, 15, {2, 3, 4}}),
    SentenceName());

// A card that answers every command, and its reads with random bytes under a good status word.
class GarbageCard {
 public:
  GarbageCard(std::uint32_t seed, bool isMobile) : random_(seed), isMobile_(isMobile) {
    api.init = [this](std::uint16_t, std::uint16_t) {
      calls.push_back(QStringLiteral("open"));
      return std::int8_t{0};
    };
    api.close = [this](std::uint16_t) {
      calls.push_back(QStringLiteral("close"));
      return std::int8_t{0};
    };
    api.data = [this](std::uint8_t&, std::uint8_t&, std::span<const std::uint8_t> command,
                      std::span<std::uint8_t> response, std::uint16_t& length) {
      const QByteArray sent(reinterpret_cast<const char*>(command.data()),
                            static_cast<qsizetype>(command.size()));
      calls.push_back(QString::fromLatin1(sent.toHex().toUpper()));
      const QByteArray answer = AnswerTo(sent);
      std::copy(answer.begin(), answer.end(), response.begin());
      length = static_cast<std::uint16_t>(answer.size());
      return std::int8_t{0};
    };
  }

  FakeApi api;
  std::vector<QString> calls;

 private:
  unsigned Below(unsigned limit) { return static_cast<unsigned>(random_()) % limit; }

  QByteArray AnswerTo(const QByteArray& command) {
    if (command == QByteArray::fromHex("2011000000")) {
      return QByteArray::fromHex(isMobile_ ? "9500" : "9000");
    }
    if (command.startsWith('\x20')) return QByteArray::fromHex("9001");
    if (!command.startsWith(QByteArray::fromHex("00B0"))) return QByteArray::fromHex("9000");
    // The status has to be readable for the read to go on.
    if (command == QByteArray::fromHex("00B08C0000")) {
      return Bytes().left(256) + QByteArray::fromHex("9000");
    }
    return Bytes() + QByteArray::fromHex(Below(4) == 0 ? "6282" : "9000");
  }

  QByteArray Bytes() {
    const unsigned kind = Below(8);
    if (kind == 0) return {};
    QByteArray bytes(kind == 1 ? 256 : Below(kind == 2 ? 1300 : 300), Qt::Uninitialized);
    for (char& byte : bytes) byte = static_cast<char>(random_());
    // Small numbers in front make lengths and offsets that pass.
    for (qsizetype i = 0; i < bytes.size() && i < 8 && kind != 3; i += 2) {
      bytes[i] = static_cast<char>(Below(3));
    }
    if (kind == 4) bytes.replace(0, 2, "\x1F\x8B");
    if (kind == 5) bytes.replace(0, 2, QByteArray::fromHex("A019"));
    return bytes;
  }

  std::mt19937 random_;
  bool isMobile_;
};

TEST(EgkGarbageTest, AnyBytesUnderAGoodStatusWord) {
  enum class Terminal { Stationary, Plain, Extended };
  for (std::uint32_t seed = 1; seed <= 400; ++seed) {
    for (const Terminal terminal : {Terminal::Stationary, Terminal::Plain, Terminal::Extended}) {
      SCOPED_TRACE("seed " + std::to_string(seed));
      const bool isMobile = terminal != Terminal::Stationary;
      GarbageCard card(seed, isMobile);
      EgkReading reading(card.api);
      reading.FillWithAnotherPerson();
      reading.info.Reset9501 = terminal == Terminal::Extended;
      reading.validation.isOn = seed % 2 == 0;
      reading.link.dialogs.answers = {Answer::Yes};
      EXPECT_EQ(reading.Dispatched(), ReadOutcome::Done);
      EXPECT_EQ(card.calls.back(), u"close");
      EXPECT_EQ(std::count(card.calls.begin(), card.calls.end(), QStringLiteral("000E0000")),
                isMobile ? 1 : 0);
      reading.ExpectNothingOfAnotherPerson();
      for (const ShownBox& box : reading.link.dialogs.boxes) EXPECT_EQ(box.title, BoxTitle);
    }
  }
}

}  // namespace
}  // namespace kartocheck::test
