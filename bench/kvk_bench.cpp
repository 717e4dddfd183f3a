// Reading a full KVK template (parse, checks, store) beside a plain loop that decodes the same
// record's digits and XORs its bytes. Bound: at most 30 times the loop (counter times_plain_loop).

#include <QByteArray>
#include <QString>

#include <benchmark/benchmark.h>

#include "kvk/kvk_reader.h"
#include "quiet_front_end.h"
#include "stopwatch.h"

namespace kartocheck::bench {
namespace {

// Every element of a card, 219 bytes in all, the longest that a card's template may have; an
// invented person. With `supplement`, what a mobile terminal appends.
QString FullRecord(bool supplement) {
  struct Object {
    char tag;
    const char* value;
  };
  constexpr Object Objects[]{
      {'\x80', "Musterkasse Beispielhausen "},
      {'\x81', "7654321"},
      {'\x82', "987654321012"},
      {'\x8F', "17999"},
      {'\x83', "1000"},
      {'\x90', "9  "},
      {'\x84', "Prof. Dr."},
      {'\x85', "Maximiliane-Th|odora"},
      {'\x86', "Freifrau von"},
      {'\x87', "Musterfrau-B{umlein"},
      {'\x88', "31121969"},
      {'\x89', "Unter den Kastanien 123"},
      {'\x8A', "D"},
      {'\x8B', "01067"},
      {'\x8C', "Bad M}sterlingen am S."},
      {'\x8D', "1228"},
  };
  const auto append = [](QByteArray& bytes, char tag, const QByteArray& value) {
    bytes += tag;
    bytes += static_cast<char>(value.size());
    bytes += value;
  };
  const auto close = [](QByteArray& bytes, char tag) {
    bytes += tag;
    bytes += '\x01';
    char sum = 0;
    for (const char byte : bytes) sum = static_cast<char>(sum ^ byte);
    bytes += sum;
  };
  QByteArray content;
  for (const Object& object : Objects) append(content, object.tag, object.value);
  QByteArray record("\x60\x81");
  record += static_cast<char>(content.size() + 3);
  record += content;
  close(record, '\x8E');
  if (supplement) {
    QByteArray appended;
    append(appended, '\x91', "05032024");
    append(appended, '\x92', "103");
    close(appended, '\x93');
    record += appended;
  }
  return QString::fromLatin1(record.toHex().toUpper());
}

int PlainDigit(QChar digit) {
  const char16_t code = digit.unicode();
  return code <= u'9' ? code - u'0' : code - u'A' + 10;
}

// Decodes every byte and XORs it, nothing else.
int PlainLoop(const QString& record) {
  int sum = 0;
  for (qsizetype i = 0; i + 1 < record.size(); i += 2) {
    sum ^= PlainDigit(record[i]) * 16 + PlainDigit(record[i + 1]);
  }
  return sum;
}

void ReadFullTemplate(benchmark::State& state, bool mobile) {
  const QString record = FullRecord(mobile);
  const double plain = MicrosecondsOf([&] {
    int sum = PlainLoop(record);
    benchmark::DoNotOptimize(sum);
  });
  QuietDialogs dialogs;
  TerminalInfo info;
  info.Reset95 = mobile;
  InsuredData insured;
  const auto read = [&] {
    KvkResult result = ReadKvk(record, {info, insured, Port(1), dialogs});
    if (result != KvkResult::Read || insured[Element::Town].isEmpty())
      state.SkipWithError("not read");
    benchmark::DoNotOptimize(insured);
  };
  for ([[maybe_unused]] auto _ : state) read();
  const double whole = MicrosecondsOf(read);
  state.counters["plain_loop_us"] = plain;
  state.counters["read_us"] = whole;
  state.counters["times_plain_loop"] = whole / plain;
}

BENCHMARK_CAPTURE(ReadFullTemplate, card, false);
BENCHMARK_CAPTURE(ReadFullTemplate, stored_record, true);

}  // namespace
}  // namespace kartocheck::bench

BENCHMARK_MAIN();
