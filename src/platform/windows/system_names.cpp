#include "platform/system_names.h"

#include <algorithm>
#include <array>
#include <cstdint>

namespace kartocheck {

namespace {

struct Crash {
  std::uint32_t Code;
  QStringView Name;
};

// NTSTATUS values ([MS-ERREF] 2.3.1), and the codes by which the run-time libraries of Microsoft
// and GNU raise C++ exceptions that nobody catches.
constexpr std::array<Crash, 15> Crashes{{
    {0x80000003, u"Haltepunkt"},
    {0xC0000005, u"Zugriffsverletzung"},
    {0xC0000006, u"Lesefehler beim Nachladen einer Datei"},
    {0xC0000017, u"zu wenig Speicher"},
    {0xC000001D, u"ungültiger Maschinenbefehl"},
    {0xC0000094, u"Teilung durch null"},
    {0xC0000096, u"verbotener Maschinenbefehl"},
    {0xC00000FD, u"Stapelüberlauf"},
    {0xC0000135, u"eine DLL fehlt"},
    {0xC0000139, u"einer DLL fehlt eine Funktion"},
    {0xC000013A, u"von außen beendet"},
    {0xC0000142, u"eine DLL ließ sich nicht starten"},
    {0xC0000374, u"beschädigter Speicher"},
    {0xC0000409, u"von sich selbst abgebrochen"},
    {0xE06D7363, u"C++-Ausnahme"},
}};

}  // namespace

// As Windows itself calls service, device class and programs in German.
ReaderServiceAdvice AdviceOfThisSystem() {
  return {
      .NotInstalled = QStringLiteral(
          "Diesem Windows fehlt die Schnittstelle zu Kartenlesern (winscard.dll). Lassen Sie es "
          "von Ihrer Systemverwaltung reparieren."),
      .NotRunning = QStringLiteral(
          "Der Windows-Dienst \"Smartcard\" läuft nicht. Stecken Sie den Kartenleser an; startet "
          "ihn das nicht, starten Sie ihn in \"services.msc\" oder als Administrator mit "
          "\"net start SCardSvr\"."),
      .NoReader = QStringLiteral(
          "Windows kennt keinen Kartenleser. Stecken Sie den Leser an und installieren Sie den "
          "Treiber seines Herstellers; im Geräte-Manager steht er dann unter "
          "\"Smartcardleser\"."),
      .Refuses = QStringLiteral(
          "Der Windows-Dienst \"Smartcard\" läuft, weist Sie aber ab. Arbeiten Sie am Rechner "
          "selbst statt über eine Fernverbindung oder bitten Sie Ihre Systemverwaltung um dieses "
          "Recht.")};
}

QString NameOfCrash(int number) {
  const auto code = static_cast<std::uint32_t>(number);
  const QString text = u"0x" + QString::number(code, 16).toUpper().rightJustified(8, u'0');
  const auto* const known = std::find_if(Crashes.begin(), Crashes.end(),
                                         [code](const Crash& crash) { return crash.Code == code; });
  if (known == Crashes.end()) return text;
  return known->Name + u", " + text;
}

// What QProcess takes for crashes ends below the codes of run-time libraries. Others of their size
// are the small negative numbers that programs end with.
bool IsCrashStatus(int status) {
  return std::any_of(Crashes.begin(), Crashes.end(), [status](const Crash& crash) {
    return crash.Code == static_cast<std::uint32_t>(status);
  });
}

// The other one knows no fonts of the system.
QString PlatformWithoutDisplay() {
  return {};
}

}  // namespace kartocheck
