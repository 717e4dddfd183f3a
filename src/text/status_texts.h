#pragma once

#include <QStringView>

#include <array>

// The fixed texts of the status bar, each written when the action it names starts.
namespace kartocheck::status_text {

// By port, COM 1 to COM 4; the further port has none.
inline constexpr auto ScanCom = std::to_array<QStringView>({
    u"Programm prüft die serielle Schnittstelle COM 1",
    u"Programm prüft die serielle Schnittstelle COM 2",
    u"Programm prüft die serielle Schnittstelle COM 3",
    u"Programm prüft die serielle Schnittstelle COM 4",
    u"",
});
inline constexpr QStringView ReaderFound = u"An COM         Chipkartenleser gefunden.";
inline constexpr QStringView ReaderPossible =
    u"An COM         Chipkartenleser möglich. Mit               Taste fortfahren.";
inline constexpr QStringView NoReader = u"Keinen Chipkartenleser gefunden!";
inline constexpr QStringView ScanResult = u"Das KartoCheck Ergebnis wird angezeigt";
inline constexpr QStringView Reading = u"Die Krankenversichertendaten werden gelesen";
inline constexpr QStringView Shown = u"Die Krankenversichertendaten werden angezeigt";
inline constexpr QStringView ReadPrompt = u"Die Krankenversichertendaten lesen";
inline constexpr QStringView FieldsReset = u"Die Anzeigefelder wurden zurückgesetzt";
inline constexpr QStringView Copied =
    u"Die Krankenversichertendaten wurden in die Zwischenablage kopiert";
inline constexpr QStringView TerminalStatus = u"Der MKT Status wird angezeigt";
inline constexpr QStringView DialogCheck = u"Überprüft die ausgewählte Schnittstelle im Dialog";
inline constexpr QStringView NotAnsweredYet = u"Das Terminal hat noch nicht geantwortet";
inline constexpr QStringView GivenUp = u"Das Warten auf das Terminal wurde abgebrochen";

}  // namespace kartocheck::status_text
