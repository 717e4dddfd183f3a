#include "main/command_line.h"

#include <QCommandLineParser>
#include <QCoreApplication>

#include "terminal/slot.h"

namespace kartocheck {

namespace {

constexpr QStringView DefaultScenario = u"praxis";

// --simulate takes its value only where one follows.
void CompleteSimulate(QStringList& arguments) {
  const qsizetype index = arguments.indexOf(QStringLiteral("--simulate"));
  if (index < 0) return;
  const bool hasValue = index + 1 < arguments.size() && !arguments.at(index + 1).startsWith(u'-');
  if (!hasValue) arguments.insert(index + 1, DefaultScenario.toString());
}

CommandLineText Usage(const QString& problem) {
  return {.text = problem + QStringLiteral("\nHilfe: kartocheck --help"), .isError = true};
}

bool IsPortNumber(int pn) {
  return (pn >= FirstComPort && pn <= LastComPort) || IsUsbPort(pn);
}

constexpr QStringView HelpText =
    uR"(KartoCheck prüft Chipkartenterminals und liest Versichertendaten (KVK, eGK).

Aufruf: kartocheck [Optionen]

Ohne --console öffnet sich das Fenster.
  --ct-api DATEI         diese CT-API-Bibliothek verwenden
  --simulate [SZENARIO]  simulierte Terminals: Name oder Datei, sonst "praxis"

Ohne Fenster:
  --console              prüfen, lesen und Bericht ausgeben
  --json                 Bericht als ein JSON-Dokument
  --port PN              nur diese Portnummer (1 bis 256, 8192 bis 8447)
  --erase-records        Datensätze mobiler Terminals lesen; sie werden dort gelöscht

  --help                 diese Hilfe
  --version              Version

Exit-Status mit --console: 0 Daten gelesen, 1 kein Terminal, 2 Terminal ohne Daten,
3 falscher Aufruf oder Bibliothek nicht verwendbar.)";

struct Options {
  QCommandLineOption ctApi{QStringLiteral("ct-api"), {}, QStringLiteral("DATEI")};
  QCommandLineOption simulate{QStringLiteral("simulate"), {}, QStringLiteral("SZENARIO")};
  QCommandLineOption console{QStringLiteral("console")};
  QCommandLineOption json{QStringLiteral("json")};
  QCommandLineOption port{QStringLiteral("port"), {}, QStringLiteral("PN")};
  QCommandLineOption eraseRecords{QStringLiteral("erase-records")};
  QCommandLineOption help{{QStringLiteral("h"), QStringLiteral("help")}};
  QCommandLineOption version{QStringLiteral("version")};
};

QString ProblemOf(const QCommandLineParser& parser) {
  const QStringList unknown = parser.unknownOptionNames();
  return unknown.isEmpty() ? QStringLiteral("Einer Option fehlt ihr Wert.")
                           : QStringLiteral("Unbekannte Option: ") + unknown.first();
}

}  // namespace

std::variant<CommandLine, CommandLineText> ParseCommandLine(QStringList arguments) {
  CompleteSimulate(arguments);
  const Options options;
  QCommandLineParser parser;
  parser.addOptions({options.ctApi, options.simulate, options.console, options.json, options.port,
                     options.eraseRecords, options.help, options.version});
  if (!parser.parse(arguments)) return Usage(ProblemOf(parser));
  if (parser.isSet(options.help)) return CommandLineText{.text = HelpText.toString()};
  if (parser.isSet(options.version)) {
    return CommandLineText{.text = u"KartoCheck " + QCoreApplication::applicationVersion()};
  }
  if (const QStringList rest = parser.positionalArguments(); !rest.isEmpty()) {
    return Usage(QStringLiteral("Unbekannte Angabe: ") + rest.first());
  }

  CommandLine line;
  line.console = parser.isSet(options.console);
  line.json = parser.isSet(options.json);
  line.eraseRecords = parser.isSet(options.eraseRecords);
  if (parser.isSet(options.ctApi)) line.ctApi = parser.value(options.ctApi);
  if (parser.isSet(options.simulate)) line.simulate = parser.value(options.simulate);
  if (line.ctApi && line.simulate) {
    return Usage(QStringLiteral("--ct-api und --simulate schließen einander aus."));
  }
  if (parser.isSet(options.port)) {
    bool isNumber = false;
    line.port = parser.value(options.port).toInt(&isNumber);
    if (!isNumber || !IsPortNumber(*line.port)) {
      return Usage(QStringLiteral("--port verlangt eine Zahl von 1 bis 256 oder 8192 bis 8447."));
    }
  }
  if (!line.console && (line.json || line.eraseRecords || line.port)) {
    return Usage(
        QStringLiteral("--json, --port und --erase-records gelten nur zusammen mit --console."));
  }
  return line;
}

}  // namespace kartocheck
