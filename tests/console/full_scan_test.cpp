#include <algorithm>
#include <gtest/gtest.h>
#include <string>

#include "console/console_fixture.h"
#include "support/kvk_records.h"

namespace kartocheck::test {
namespace {

ctapi::SimulatedPort LineIn(ctapi::SerialLine::State state) {
  ctapi::SimulatedPort port;
  port.Line = ctapi::SerialLine{.Port = state};
  return port;
}

int CountOf(const std::string& text, const std::string& part) {
  int count = 0;
  for (auto at = text.find(part); at != std::string::npos; at = text.find(part, at + 1)) ++count;
  return count;
}

TEST(ConsoleScanTest, ReportsEveryPortAndThenTheTable) {
  Console console;
  console.practice.Attach(1, PortOf("kvk-60"));
  console.practice.Attach(2, {});
  console.practice.Attach(3, LineIn(ctapi::SerialLine::State::InUse));
  ctapi::SimulatedPort usb = PortOf("keine-karte");
  usb.DeviceId = "USB VID_FFFE PID_0001 SIM0001";
  console.practice.Attach(8192, usb);
  EXPECT_EQ(console.Run(), 0);
  EXPECT_EQ(console.out.str(), R"(KartoCheck 

COM 1 (CTAPI pn=1)
  Serielle Schnittstelle:         Ist verfügbar!
  Baudrate:                       9600 Baud
  PKT Modell:                     Serie Gamma
  Hersteller:                     DENRV
  CT-Typ:                         PKT-G
  Software Version:               1.20
  Ausgabemedium:                  PC (ASN-1)

  Krankenversicherten Kartendaten(Karte)
  Krankenkassenname:              GKV Musterland
  Krankenkassennummer:            1234567
  Versichertennummer:             123456789
  VKNR:                           00012
  Versichertenstatus:             1000
  Statusergänzung:                1
  Vorname:                        Änne
  Familienname:                   Größl
  Geburtsdatum:                   01021950
  Postleitzahl:                   12345
  Ortsname:                       Musterstadt
  Gültigkeitsdatum:               1230

COM 2 (CTAPI pn=2)
  Serielle Schnittstelle:         Ist verfügbar!
  Baudrate:                       Unbekannt!
  PKT Modell:                     Modell nicht bekannt!

COM 3 (CTAPI pn=3)
  Serielle Schnittstelle:         Wird vom System benutzt!

COM 4 (CTAPI pn=4)
  Serielle Schnittstelle:         Ist nicht vorhanden bzw. wird vom System benutzt!

USB Device 1 (CTAPI pn=8192)
  Schnittstelle:                  USB (CTAPI pn=8192)
  PKT Modell:                     Serie Omega
  Hersteller:                     DENRV
  CT-Typ:                         PKTO
  Software Version:               4.01
  PnP Device ID:                  USB VID_FFFE PID_0001 SIM0001

Schnittstellen
  COM 1 (CTAPI pn=1)              Serie Gamma, Daten gelesen
  COM 2 (CTAPI pn=2)              Modell nicht bekannt!
  COM 3 (CTAPI pn=3)              Wird vom System benutzt!
  COM 4 (CTAPI pn=4)              Ist nicht vorhanden bzw. wird vom System benutzt!
  USB Device 1 (CTAPI pn=8192)    Serie Omega, keine Daten gelesen
)");
}

TEST(ConsoleScanTest, TellsEachStepAndAnswersPromptsWithCancel) {
  Console console;
  console.practice.Attach(1, PortOf("kvk-60"));
  console.practice.Attach(2, PortOf("keine-karte"));
  (void)console.Run();
  const std::string messages = console.messages.str();
  EXPECT_TRUE(
      messages.starts_with("Programm prüft die serielle Schnittstelle COM 1\n"
                           "Die Krankenversichertendaten lesen\n"
                           "Die Krankenversichertendaten werden gelesen\n"
                           "Die Krankenversichertendaten werden angezeigt\n"
                           "Programm prüft die serielle Schnittstelle COM 2\n"
                           "Die Krankenversichertendaten lesen\n"
                           "KartoCheck: Bitte eine Krankenversichertenkarte in"))
      << messages;
  EXPECT_NE(messages.find("\n-> Abbrechen\nProgramm prüft die serielle Schnittstelle COM 3\n"),
            std::string::npos);
  EXPECT_NE(messages.find("\nProgramm prüft die serielle Schnittstelle COM 256\n"
                          "Programm prüft USB Device 1\n"),
            std::string::npos);
  EXPECT_TRUE(messages.ends_with("\nProgramm prüft USB Device 256\n"));
  EXPECT_EQ(CountOf(messages, "Programm prüft "), 512);
}

// A port's report is out before the next port is looked at.
TEST(ConsoleScanTest, PrintsEachPortWhenItIsDone) {
  Console console;
  for (const std::uint16_t pn : std::initializer_list<std::uint16_t>{1, 2, 3, 4, 7, 8192}) {
    console.practice.Attach(pn, PortOf("keine-karte"));
  }
  int checked = 0;
  console.eventLoop.onYield = [&] {
    const std::string out = console.out.str();
    const std::string messages = console.messages.str();
    if (messages.ends_with("Programm prüft die serielle Schnittstelle COM 3\n")) {
      EXPECT_NE(out.find("COM 2 (CTAPI pn=2)\n"), std::string::npos);
      EXPECT_EQ(out.find("COM 3 (CTAPI pn=3)\n"), std::string::npos);
      ++checked;
    }
    if (messages.ends_with("\nProgramm prüft USB Device 1\n") &&
        CountOf(messages, "Programm prüft USB Device 1\n") == 2) {
      EXPECT_NE(out.find("COM 7 (CTAPI pn=7)\n"), std::string::npos);
      ++checked;
    }
  };
  (void)console.Run();
  EXPECT_GE(checked, 2);
}

TEST(ConsoleScanTest, EveryPortFoundIsReadInTurn) {
  Console console;
  console.practice.Attach(7, PortOf("kvk-60"));
  console.practice.Attach(256, PortOf("gamma"));
  console.practice.Attach(8192, PortOf("omega"));
  console.practice.Attach(8447, PortOf("keine-karte"));
  EXPECT_EQ(console.Run(), 0);
  const std::string out = console.out.str();
  EXPECT_EQ(CountOf(out, "Krankenversicherten Kartendaten(Karte)"), 3);
  std::size_t last = 0;
  for (const char* title :
       {"COM 4 (CTAPI pn=4)\n", "COM 7 (CTAPI pn=7)\n", "COM 256 (CTAPI pn=256)\n",
        "USB Device 1 (CTAPI pn=8192)\n", "USB Device 256 (CTAPI pn=8447)\n", "Schnittstellen\n"}) {
    const std::size_t at = out.find(title);
    ASSERT_NE(at, std::string::npos) << title;
    EXPECT_GT(at, last);
    last = at;
  }
}

struct StatusRow {
  const char* scenario;
  int expected;
};

TEST(ConsoleScanTest, ExitStatusTellsWhatWasFound) {
  const StatusRow rows[] = {{"gamma", exit_status::DataRead},
                            {"leer", exit_status::NoTerminal},
                            {"keine-karte", exit_status::NoData},
                            {"unbekannte-antwort", exit_status::NoTerminal},
                            {"delta", exit_status::NoData}};
  for (const StatusRow& row : rows) {
    Console console;
    console.practice.Attach(1, PortOf(row.scenario));
    EXPECT_EQ(console.Run(), row.expected) << row.scenario;
    Console onePort;
    onePort.practice.Attach(1, PortOf(row.scenario));
    EXPECT_EQ(onePort.Run({.port = Port(1)}), row.expected) << row.scenario;
  }
  EXPECT_EQ(exit_status::DataRead, 0);
  EXPECT_EQ(exit_status::NoTerminal, 1);
  EXPECT_EQ(exit_status::NoData, 2);
  EXPECT_EQ(exit_status::UsageOrFatal, 3);
}

TEST(ConsoleScanTest, DataOnOnePortAreEnough) {
  Console console;
  console.practice.Attach(1, PortOf("keine-karte"));
  console.practice.Attach(8192, PortOf("omega"));
  EXPECT_EQ(console.Run(), exit_status::DataRead);
}

TEST(ConsoleScanTest, OnePortMeansNoSweepAndNoOtherPort) {
  for (const int pn : {2, 7, 8200}) {
    Console console;
    for (const std::uint16_t other : std::initializer_list<std::uint16_t>{1, 2, 7, 8192, 8200}) {
      console.practice.Attach(other, PortOf("kvk-60"));
    }
    EXPECT_EQ(console.Run({.port = Port(pn)}), exit_status::DataRead);
    EXPECT_EQ(CountOf(console.messages.str(), "Programm prüft "), 1);
    EXPECT_EQ(CountOf(console.out.str(), "(CTAPI pn=" + std::to_string(pn) + ")\n"), pn > 4 ? 2 : 1)
        << "its heading, and of a further port its description";
    EXPECT_EQ(CountOf(console.out.str(), "Daten gelesen"), 1);
  }
}

TEST(ConsoleScanTest, StoredRecordsStayUnlessTheCallerAllowsTheirErasure) {
  for (const StoredRecords stored : {StoredRecords::Keep, StoredRecords::Erase}) {
    Console console(stored);
    console.practice.Attach(1, PortOf("delta"));
    const bool erases = stored == StoredRecords::Erase;
    EXPECT_EQ(console.Run(), erases ? exit_status::DataRead : exit_status::NoData);
    EXPECT_EQ(console.practice.TerminalAt(1)->StoredRecords(), erases ? 0U : 1U);
    EXPECT_NE(console.messages.str().find(erases ? "\n-> Ja\n" : "\n-> Nein\n"), std::string::npos);
  }
}

TEST(ConsoleScanTest, NothingButAnErasureIsEverAgreedTo) {
  Console console(StoredRecords::Erase);
  console.practice.Attach(1, PortOf("kvk-kein-aid"));
  console.practice.Attach(2, PortOf("keine-karte"));
  EXPECT_EQ(console.Run(), exit_status::NoData);
  const std::string messages = console.messages.str();
  EXPECT_NE(messages.find("Noch einmal versuchen?\n-> Nein\n"), std::string::npos) << messages;
  EXPECT_NE(messages.find("COM  2\n-> Abbrechen\n"), std::string::npos);
}

// SIGTERM and the like: the step that runs is finished, and the report covers what was looked at.
TEST(ConsoleScanTest, ARequestToEndEndsTheRunAfterThePortItIsAt) {
  Console console;
  for (const std::uint16_t pn : std::initializer_list<std::uint16_t>{1, 2, 3, 8192})
    console.practice.Attach(pn, PortOf("kvk-60"));
  console.eventLoop.onYield = [&] {
    if (console.messages.str().ends_with("COM 2\n")) console.module.ExitRequested = true;
  };
  (void)console.Run();
  const std::string out = console.out.str();
  EXPECT_NE(out.find("COM 2 (CTAPI pn=2)\n"), std::string::npos);
  EXPECT_EQ(out.find("pn=3"), std::string::npos);
  EXPECT_EQ(out.find("pn=8192"), std::string::npos);
  EXPECT_EQ(console.practice.OpenLinks(), 0U);
}

TEST(ConsoleScanTest, ARequestToEndEndsTheSweep) {
  Console console;
  console.practice.Attach(6, PortOf("kvk-60"));
  console.eventLoop.onYield = [&] {
    if (console.messages.str().ends_with("COM 20\n")) console.module.ExitRequested = true;
  };
  (void)console.Run();
  EXPECT_EQ(console.messages.str().find("COM 21\n"), std::string::npos);
  EXPECT_EQ(console.out.str().find("COM 6"), std::string::npos) << "nothing more is looked at";
}

// A card whose texts would drive the terminal they are shown on.
TEST(ConsoleScanTest, ControlCharactersOfACardDoNotReachTheTerminal) {
  const QByteArray hostile = QByteArray("\x1B[31mA\x07\x08\x7F\rB\x9B\x33Z", 15);
  const QByteArray record = QByteArray::fromHex(
      TemplateRecord(Form::Form60, {{0x80, hostile}, {0x85, hostile}, {0x87, hostile}}).toLatin1());
  ctapi::SimulatedPort port = PortOf("gamma");
  port.DeviceId = "USB \x1B]0;title\x07 SIM";
  port.Terminal->Insert(ctapi::KvkCard(ctapi::Bytes(record.begin(), record.end())));
  for (const bool json : {false, true}) {
    Console console;
    console.practice.Attach(1, port);
    (void)console.Run({.json = json, .port = Port(1)});
    for (const std::string& text : {console.out.str(), console.messages.str()}) {
      const bool hasControl = std::any_of(text.begin(), text.end(), [](char byte) {
        return byte != '\n' && (static_cast<unsigned char>(byte) < 0x20 || byte == 0x7F);
      });
      EXPECT_FALSE(hasControl) << text;
      EXPECT_EQ(text.find("\xC2\x9B"), std::string::npos) << "nor the one-byte CSI";
    }
    EXPECT_NE(console.out.str().find("31mA"), std::string::npos) << "the letters stay";
  }
}

// On a terminal status texts share a line; everything else begins on a line of its own.
TEST(ConsoleScanTest, OnATerminalStatusTextsOverwriteEachOther) {
  Console console(StoredRecords::Keep, StatusLine::Overwritten);
  console.practice.Attach(1, PortOf("keine-karte"));
  (void)console.Run();
  const std::string messages = console.messages.str();
  EXPECT_TRUE(
      messages.starts_with("\rProgramm prüft die serielle Schnittstelle COM 1"
                           "\rDie Krankenversichertendaten lesen             \n"
                           "KartoCheck: Bitte eine"))
      << messages;
  EXPECT_EQ(CountOf(messages, "\rProgramm prüft "), 512);
  EXPECT_TRUE(messages.ends_with("\rProgramm prüft USB Device 256\n"));
  EXPECT_LT(CountOf(messages, "\n"), 20);
  EXPECT_NE(messages.find("COM 256\rProgramm prüft USB Device 1" + std::string(22, ' ') + '\r'),
            std::string::npos)
      << "blanks cover a longer text";
  EXPECT_EQ(console.out.str().find('\r'), std::string::npos);
}

// Both streams on one terminal.
TEST(ConsoleScanTest, OnATerminalTheReportBeginsOnALineOfItsOwn) {
  Console console(StoredRecords::Keep, StatusLine::Overwritten);
  console.practice.Attach(1, PortOf("kvk-60"));
  (void)RunConsole({}, console.module, console.frontEnd, console.messages);
  const std::string text = console.messages.str();
  for (const char* begin : {"COM 1 (CTAPI", "COM 2 (CTAPI", "Schnittstellen\n"}) {
    const std::size_t at = text.find(begin);
    ASSERT_NE(at, std::string::npos) << begin;
    EXPECT_EQ(text[at - 1], '\n') << begin;
  }
}

TEST(ConsoleScanTest, AStatusLineIsEndedOnce) {
  std::ostringstream out;
  ConsoleFrontEnd frontEnd(out, {.statusLine = StatusLine::Overwritten}, StoredRecords::Keep);
  frontEnd.EndStatusLine();
  EXPECT_EQ(out.str(), "");
  frontEnd.ShowStatusText(QStringLiteral("text"));
  frontEnd.ShowStatusText(QString());
  frontEnd.EndStatusLine();
  frontEnd.EndStatusLine();
  EXPECT_EQ(out.str(), "\rtext\n");
}

}  // namespace
}  // namespace kartocheck::test
