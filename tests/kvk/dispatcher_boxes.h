#pragma once

#include "kvk/dispatcher_dialogue.h"

// Every box of the read dispatcher and of the KVK reader behind it, as the user sees it.
namespace kartocheck::test::box {

// Failed opens.
inline const ShownBox NoLinkOutputMedium =
    Message(Icon::Critical,
            QStringLiteral(" Lesen der Krankenversichertendaten von der Karte nicht möglich! \r\n"
                           " Haben Sie als Ausgabemedium LCD-Anzeige/Drucker eingestellt ?! "));
inline const ShownBox NoLink =
    Message(Icon::Critical,
            QStringLiteral(" Lesen der Krankenversichertendaten von der Karte nicht möglich! \r\n"
                           " Kommunikationsfehler ! "));

// The card request.
inline const ShownBox NoCard =
    YesNo(Icon::Question, QStringLiteral(" Keine Chipkarte gefunden! \r\n"
                                         " Noch einmal versuchen? "));
inline const ShownBox NoRecord =
    YesNo(Icon::Question, QStringLiteral(" Keine Datensätze gefunden! \r\n"
                                         " Noch einmal versuchen? "));
inline const ShownBox NoKeyCard =
    YesNo(Icon::Question, QStringLiteral(" Keine Datensätze/KeyCard gefunden! \r\n"
                                         " Gerät ist zugeschlossen!\r\n"
                                         "\r\n"
                                         " Noch einmal versuchen? "));
inline const ShownBox MobileLocked =
    YesNo(Icon::Question, QStringLiteral(" Das mobile Chipkartenterminal ist zugeschlossen! \r\n"
                                         " Noch einmal versuchen? "));
inline const ShownBox MenuActive = YesNo(
    Icon::Question, QStringLiteral(" Die Chipkartenterminal Menü-Einstellungen sind aktiviert! \r\n"
                                   " Noch einmal versuchen? "));

// The select.
inline const ShownBox OutputMedium =
    Message(Icon::Critical,
            QStringLiteral(" Lesen der Krankenversichertendaten von der Karte nicht möglich! \r\n"
                           " Beim Chipkartenterminal ist als Ausgabemedium \r\n"
                           "\r\n"
                           " LCD-Anzeige/Drucker eingestellt! "));
inline const ShownBox ReturnError =
    Message(Icon::Critical, QStringLiteral(" Chipkartenterminal RETURN Fehler! "));
inline const ShownBox OldIdentifier =
    YesNo(Icon::Critical, QStringLiteral(" Krankenversichertenkarte mit altem AID! \r\n"
                                         " Kein Vedra Gerät! \r\n"
                                         " Noch einmal versuchen? "));
inline const ShownBox NoIdentifier =
    YesNo(Icon::Critical, QStringLiteral(" Karte hat kein Krankenversichertenkarten AID! \r\n"
                                         " Noch einmal versuchen? "));
inline const ShownBox CheckMode =
    Message(Icon::Critical,
            QStringLiteral("\r\n"
                           "\r\n"
                           " Lesen der Krankenversichertendaten von der Karte nicht möglich! \r\n"
                           " Bitte die Betriebsart des Terminals prüfen! "));

// The read.
inline const ShownBox NoKvk =
    Message(Icon::Critical, QStringLiteral(" Keine Krankenversichertenkarte!!! "));
inline const ShownBox BadChecksum =
    Message(Icon::Critical, QStringLiteral(" Prüfsumme KVK korrupt!!! "));
inline const ShownBox BadSupplement =
    Message(Icon::Critical, QStringLiteral(" Prüfsummezusatz KVK korrupt!!! "));
inline const ShownBox NotReleased = Message(
    Icon::Information, QStringLiteral("Das Kommando Read KVK war nicht erfolgreich!\r\n"
                                      "\r\n"
                                      "Ist die HBA/SMC-B Karte im Terminal freigeschaltet?\r\n"
                                      "Wird der Idle-Screen oder ein Datensatz angezeigt?"));
inline const ShownBox NotInserted =
    Message(Icon::Information,
            QStringLiteral("Das Kommando Read KVK war nicht erfolgreich!\r\n"
                           "\r\n"
                           "Ist die HBA/SMC-B Karte im Terminal gesteckt und freigeschaltet?"));

// A stored record.
inline const ShownBox EraseKvkWarning = YesNo(
    Icon::Question,
    QStringLiteral(" Achtung, Lesetest an einem Vedra F/Serie Delta/Sigma Gerät! \r\n"
                   " Nach Durchführen eines Lesetests an einem Vedra F/Serie Delta/Sigma Gerät \r\n"
                   " mit dieser Testsoftware wird der gelesene Datensatz \r\n"
                   " automatisch gelöscht!\r\n"
                   "\r\n"
                   "                          Möchten Sie fortfahren? "),
    Answer::No);
inline const ShownBox EraseEgkWarning = YesNo(
    Icon::Question,
    QStringLiteral(" Achtung, Lesetest an einem Gerät der Norva Delta Serie! \r\n"
                   " Nach Durchführen eines Lesetests an einem Gerät der Norva Delta Serie \r\n"
                   " mit dieser Testsoftware wird der gelesene Datensatz \r\n"
                   " automatisch gelöscht!\r\n"
                   "\r\n"
                   "                          Möchten Sie fortfahren? "),
    Answer::No);
inline const ShownBox EraseError =
    Message(Icon::Critical, QStringLiteral(" ERASE BINARY Error! \r\n"
                                           " Datensatz konnte nicht gelöscht werden! "));

}  // namespace kartocheck::test::box
