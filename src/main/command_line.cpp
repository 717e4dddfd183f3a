#include "main/command_line.h"

#include <QCommandLineParser>
#include <QCoreApplication>

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

constexpr QStringView HelpText =
    uR"(KartoCheck prüft Chipkartenterminals und liest Versichertendaten (KVK, eGK).

Aufruf: kartocheck [Optionen]

Ohne --console öffnet sich das Fenster.
  --ct-api DATEI         diese CT-API-Bibliothek verwenden
  --simulate [SZENARIO]  simulierte Terminals: Name oder Datei, sonst "praxis"
  --serial-port N=GERÄT  dieses Gerät ist COM N (mehrfach möglich)
  --schema-dir ORDNER    die drei XSD-Schemas in diesem Ordner suchen

Ohne Fenster:
  --console              prüfen, lesen und Bericht ausgeben
  --json                 Bericht als ein JSON-Dokument
  --port PN              nur diese Portnummer (1 bis 256, 8192 bis 8447)
  --erase-records        Datensätze mobiler Terminals lesen; sie werden dort gelöscht
  --validate             eGK-Daten gegen die Schemas validieren
  --diagnose PN          Fragen der Diagnose zu dieser Portnummer stellen
  --report DATEI         auch einen Prüfbericht ohne Kartendaten schreiben (.pdf: als PDF)
  --verbose              jeden Schritt melden, auch wo kein Terminal zusieht
  --quiet                keine Meldungen, nur den Bericht

  --help                 diese Hilfe
  --version              Version

Exit-Status mit --console: 0 Daten gelesen, 1 kein Terminal, 2 Terminal ohne Daten,
3 falscher Aufruf oder Bibliothek nicht verwendbar, 4 Bericht nicht ausgebbar,
130 abgebrochen. Ohne --console: 3 auch, wo sich kein Fenster öffnen lässt.)";

struct Options {
  QCommandLineOption ctApi{QStringLiteral("ct-api"), {}, QStringLiteral("DATEI")};
  QCommandLineOption simulate{QStringLiteral("simulate"), {}, QStringLiteral("SZENARIO")};
  QCommandLineOption console{QStringLiteral("console")};
  QCommandLineOption json{QStringLiteral("json")};
  QCommandLineOption port{QStringLiteral("port"), {}, QStringLiteral("PN")};
  QCommandLineOption eraseRecords{QStringLiteral("erase-records")};
  QCommandLineOption serialPort{QStringLiteral("serial-port"), {}, QStringLiteral("N=GERÄT")};
  QCommandLineOption schemaDir{QStringLiteral("schema-dir"), {}, QStringLiteral("ORDNER")};
  QCommandLineOption validate{QStringLiteral("validate")};
  QCommandLineOption diagnose{QStringLiteral("diagnose"), {}, QStringLiteral("PN")};
  QCommandLineOption report{QStringLiteral("report"), {}, QStringLiteral("DATEI")};
  QCommandLineOption verbose{QStringLiteral("verbose")};
  QCommandLineOption quiet{QStringLiteral("quiet")};
  QCommandLineOption help{{QStringLiteral("h"), QStringLiteral("help")}};
  QCommandLineOption version{QStringLiteral("version")};

  [[nodiscard]] QList<QCommandLineOption> All() const {
    return {ctApi,    simulate, console, json,    port,  eraseRecords, serialPort, schemaDir,
            validate, diagnose, report,  verbose, quiet, help,         version};
  }
};

// The first argument that gives a value to an option without one, cut to its option; empty where
// there is none.
QString OptionWithNeedlessValue(const QStringList& arguments, const Options& options) {
  for (const QString& argument : arguments) {
    QString option = argument.section(u'=', 0, 0);
    const bool hasValue = option.startsWith(u'-') && option.size() < argument.size();
    const QString name = option.startsWith(u"--") ? option.mid(2) : option.last(1);
    for (const QCommandLineOption& known : options.All()) {
      if (hasValue && known.valueName().isEmpty() && known.names().contains(name)) return option;
    }
  }
  return {};
}

QString ProblemOf(const QCommandLineParser& parser, const QStringList& arguments,
                  const Options& options) {
  if (const QStringList unknown = parser.unknownOptionNames(); !unknown.isEmpty()) {
    const QString& name = unknown.first();
    const QStringView dashes = name.size() == 1 ? u"-" : u"--";
    return QStringLiteral("Unbekannte Option: ") + dashes + name;
  }
  if (const QString option = OptionWithNeedlessValue(arguments, options); !option.isEmpty()) {
    return option + u" nimmt keinen Wert an.";
  }
  return QStringLiteral("Einer Option fehlt ihr Wert.");
}

// The port whose number an option names; nothing where it is none.
std::optional<Port> PortOf(const QString& value) {
  bool isNumber = false;
  const Port port(value.toInt(&isNumber));
  return isNumber && port.Kind() != PortKind::Other ? std::optional(port) : std::nullopt;
}

// Takes "N=DEVICE" into the table; false where it is anything else.
bool TakeSerialPort(const QString& value, QMap<int, QString>& table) {
  const QString device = value.section(u'=', 1);
  const auto port = PortOf(value.section(u'=', 0, 0));
  if (!port || port->Kind() != PortKind::Com || device.isEmpty()) return false;
  table.insert(port->Number(), device);
  return true;
}

// Fills the line from what was set; the text of the first problem, empty where there is none.
QString Fill(CommandLine& line, const QCommandLineParser& parser, const Options& options) {
  line.console = parser.isSet(options.console);
  line.json = parser.isSet(options.json);
  line.eraseRecords = parser.isSet(options.eraseRecords);
  line.validate = parser.isSet(options.validate);
  line.quiet = parser.isSet(options.quiet);
  line.verbose = parser.isSet(options.verbose);
  if (parser.isSet(options.ctApi)) line.ctApi = parser.value(options.ctApi);
  if (parser.isSet(options.report)) line.report = parser.value(options.report);
  if (parser.isSet(options.simulate)) line.simulate = parser.value(options.simulate);
  if (parser.isSet(options.schemaDir)) line.schemaDirectory = parser.value(options.schemaDir);
  for (const QString& value : parser.values(options.serialPort)) {
    if (!TakeSerialPort(value, line.serialPorts)) {
      return QStringLiteral("--serial-port verlangt N=GERÄT mit N von 1 bis 256.");
    }
  }
  if (parser.isSet(options.port)) {
    line.port = PortOf(parser.value(options.port));
    if (!line.port) {
      return QStringLiteral("--port verlangt eine Zahl von 1 bis 256 oder 8192 bis 8447.");
    }
  }
  if (parser.isSet(options.diagnose)) {
    line.diagnose = PortOf(parser.value(options.diagnose));
    if (!line.diagnose) {
      return QStringLiteral("--diagnose verlangt eine Zahl von 1 bis 256 oder 8192 bis 8447.");
    }
  }
  return {};
}

// What cannot be asked for together.
QString ContradictionIn(const CommandLine& line) {
  if (line.ctApi && line.simulate) {
    return QStringLiteral("--ct-api und --simulate schließen einander aus.");
  }
  const bool asksForConsole = line.json || line.eraseRecords || line.validate || line.port ||
                              line.diagnose || line.quiet || line.verbose || line.report;
  if (!line.console && asksForConsole) {
    return QStringLiteral(
        "--json, --port, --erase-records, --validate, --diagnose, --report, --verbose und --quiet "
        "gelten nur mit --console.");
  }
  if (line.diagnose && (line.json || line.eraseRecords || line.port || line.quiet || line.report)) {
    return QStringLiteral(
        "--diagnose verträgt --json, --port, --erase-records, --report und --quiet nicht.");
  }
  if (line.verbose && line.quiet) {
    return QStringLiteral("--verbose und --quiet schließen einander aus.");
  }
  return {};
}

}  // namespace

std::variant<CommandLine, CommandLineText> ParseCommandLine(QStringList arguments) {
  CompleteSimulate(arguments);
  const Options options;
  QCommandLineParser parser;
  parser.addOptions(options.All());
  if (!parser.parse(arguments)) return Usage(ProblemOf(parser, arguments, options));
  if (parser.isSet(options.help)) return CommandLineText{.text = HelpText.toString()};
  if (parser.isSet(options.version)) {
    return CommandLineText{.text = u"KartoCheck " + QCoreApplication::applicationVersion()};
  }
  if (const QStringList rest = parser.positionalArguments(); !rest.isEmpty()) {
    return Usage(QStringLiteral("Unbekannte Angabe: ") + rest.first());
  }
  CommandLine line;
  QString problem = Fill(line, parser, options);
  if (problem.isEmpty()) problem = ContradictionIn(line);
  if (!problem.isEmpty()) return Usage(problem);
  return line;
}

}  // namespace kartocheck
