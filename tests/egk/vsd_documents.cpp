#include "egk/vsd_documents.h"

#include <QDir>
#include <QFile>

#include <ostream>
#include <stdexcept>

#include "text/code_page.h"

namespace kartocheck::test {

namespace {

QByteArray ReadFile(const QString& path) {
  QFile file(path);
  if (!file.open(QIODevice::ReadOnly)) throw std::runtime_error(path.toStdString());
  return file.readAll();
}

VsdKind KindOf(const QString& name) {
  for (const VsdKind kind : {VsdKind::Pd, VsdKind::Vd, VsdKind::Gvd}) {
    if (name.startsWith(KindName(kind) + u'_')) return kind;
  }
  throw std::runtime_error(name.toStdString());
}

QStringList FilesIn(const QString& directory, const QString& pattern) {
  const QStringList names = QDir(DocumentPath(directory)).entryList({pattern}, QDir::Files);
  if (names.isEmpty()) throw std::runtime_error(directory.toStdString());
  return names;
}

// The bytes of a document in which an element's text or a whole piece was replaced.
struct Change {
  const char* base;  // genuine document
  const char* sentence;
  const char16_t* from;
  QString to;
  bool isValid;
};

QString Times(int count, char16_t letter = u'x') {
  return QString(count, QChar(letter));
}

std::vector<Change> Changes() {
  const char* const pd = "pd_crlf_maximum_lengths.xml";
  const char* const pdPlain = "pd_default_namespace.xml";
  const char* const vd = "vd_prefix_settling_insurer.xml";
  const char* const gvd = "gvd_prefix_all_elements.xml";
  const QString ae45 = Times(45, u'Ä');
  return {
      // The root's attribute
      {pdPlain, "PD without version", u" CDM_VERSION=\"5.2.0\"", QString(), false},
      {pdPlain, "PD of another version", u"5.2.0", QStringLiteral("5.2.1"), false},
      {pdPlain, "PD of version 5.1.0", u"5.2.0", QStringLiteral("5.1.0"), false},
      {vd, "VD without version", u" CDM_VERSION=\"5.2.0\"", QString(), false},
      {vd, "VD of another version", u"5.2.0", QStringLiteral("5.2"), false},
      {gvd, "GVD without version", u" CDM_VERSION=\"5.2.0\"", QString(), false},
      {gvd, "GVD of another version", u"5.2.0", QStringLiteral("6.0.0"), false},
      {pdPlain, "PD with an unknown attribute", u" CDM_VERSION",
       QStringLiteral(" X=\"1\" CDM_VERSION"), false},

      // PD
      {pd, "identifier with a small letter", u"Z999999994", QStringLiteral("z999999994"), false},
      {pd, "identifier with eight digits", u"Z999999994", QStringLiteral("Z99999999"), false},
      {pd, "identifier with ten digits", u"Z999999994", QStringLiteral("Z9999999949"), false},
      {pd, "identifier without letter", u"Z999999994", QStringLiteral("9999999994"), false},
      {pd, "first name of 46", u"Vorname>ÄÄ", QStringLiteral("Vorname>ÄÄÄ"), false},
      {pdPlain, "first name of 1", u"Änne Jördis", QStringLiteral("Ä"), true},
      {pdPlain, "empty first name", u"Änne Jördis", QString(), false},
      {pd, "last name of 46", u"Nachname>ÖÖ", QStringLiteral("Nachname>ÖÖÖ"), false},
      {pdPlain, "empty last name", u"Erfunden-Müßig", QString(), false},
      {pd, "sex as a small letter", u"Geschlecht>D<", QStringLiteral("Geschlecht>d<"), false},
      {pd, "sex of two letters", u"Geschlecht>D<", QStringLiteral("Geschlecht>DD<"), false},
      {pd, "empty sex", u"Geschlecht>D<", QStringLiteral("Geschlecht><"), false},
      {pd, "prefix of 21", u"Vorsatzwort>ÜÜ", QStringLiteral("Vorsatzwort>ÜÜÜ"), false},
      {pd, "affix of 21", u"Namenszusatz>ßß", QStringLiteral("Namenszusatz>ßßß"), false},
      {pd, "title of 21", u"Titel>€€", QStringLiteral("Titel>€€€"), false},
      {pd, "postal code of 11 in the post box address", u"1234567890", Times(11), false},
      {pd, "postal code of 11 in the street address", u"0987654321", Times(11), false},
      {pd, "postal code of 1", u"0987654321", QStringLiteral("1"), true},
      {pd, "empty postal code", u"0987654321", QString(), false},
      {pd, "town of 41 in the post box address", u"Ort>oo", QStringLiteral("Ort>ooo"), false},
      {pd, "town of 41 in the street address", u"Ort>pp", QStringLiteral("Ort>ppp"), false},
      {pd, "post box of 9", u"Postfach>12345678", QStringLiteral("Postfach>123456789"), false},
      {pd, "country of 4", u"code>YYY", QStringLiteral("code>YYYY"), false},
      {pd, "street of 47", u"Strasse>ss", QStringLiteral("Strasse>sss"), false},
      {pd, "house number of 10", u"Hausnummer>1", QStringLiteral("Hausnummer>11"), false},
      {pd, "address supplement of 41", u"zusatz>zz", QStringLiteral("zusatz>zzz"), false},
      {pd, "unknown element", u"<vsdp:Person>",
       QStringLiteral("<vsdp:Person><vsdp:Augenfarbe>blau</vsdp:Augenfarbe>"), false},
      {pd, "element of another namespace", u"<vsdp:Person>",
       QStringLiteral("<vsdp:Person xmlns:vsdp=\"urn:erfunden\">"), false},
      {pdPlain, "no last name", u"<Nachname>Erfunden-Müßig</Nachname>", QString(), false},
      {pdPlain, "two titles", u"<Titel>Dr.</Titel>",
       QStringLiteral("<Titel>Dr.</Titel><Titel>Dr.</Titel>"), false},
      {pdPlain, "no postal code", u"<Postleitzahl>12345</Postleitzahl>", QString(), true},
      {pdPlain, "no street", u"<Strasse>Große Prüfgasse</Strasse>", QString(), true},
      {pdPlain, "no house number", u"<Hausnummer>7a</Hausnummer>", QString(), true},
      {pdPlain, "no town", u"<Ort>Nirgendhöchst</Ort>", QString(), false},
      {pdPlain, "elements in another order", u"<Geschlecht>W</Geschlecht><Titel>Dr.</Titel>",
       QStringLiteral("<Titel>Dr.</Titel><Geschlecht>W</Geschlecht>"), false},
      {pdPlain, "a comment and a schema location", u" CDM_VERSION",
       QStringLiteral(" xmlns:xsi=\"http://www.w3.org/2001/XMLSchema-instance\" "
                      "xsi:schemaLocation=\"http://ws.gematik.de/fa/vsdm/vsd/v5.2 x.xsd\" "
                      "CDM_VERSION"),
       true},

      // VD
      {vd, "settling insurer's number of 10 digits", u"987654321", QStringLiteral("9876543210"),
       false},
      {vd, "insurer's country of 4", u"code>CH", QStringLiteral("code>CHCH"), false},
      {vd, "insurer's name of 46", u"Name>KK", QStringLiteral("Name>KKK"), false},
      {vd, "settling insurer's name of 45", u"Abrechnende Beispielkasse", ae45, true},
      {vd, "settling insurer's name of 46", u"Abrechnende Beispielkasse", Times(46, u'Ä'), false},
      {vd, "no end", u"<vsda:Ende>20261231</vsda:Ende>", QString(), true},
      {vd, "no beginning", u"<vsda:Beginn>20200101</vsda:Beginn>", QString(), false},
      {vd, "reimbursement of 2", u"Versorgung>1", QStringLiteral("Versorgung>2"), false},
      {vd, "no region", u"<vsda:WOP>01</vsda:WOP>", QString(), false},

      // GVD
      {gvd, "no contract kind", u"<VSD:Art>1000</VSD:Art>", QString(), true},
      {gvd, "no end of the suspension", u"<VSD:Ende>20250630</VSD:Ende>", QString(), true},
      {gvd, "no beginning of the suspension", u"<VSD:Beginn>20250101</VSD:Beginn>", QString(),
       false},
      {gvd, "no contracts",
       u"<VSD:Selektivvertraege><VSD:Aerztlich>1</VSD:Aerztlich><VSD:Zahnaerztlich>0"
       u"</VSD:Zahnaerztlich><VSD:Art>1000</VSD:Art></VSD:Selektivvertraege>",
       QString(), false},
  };
}

// ISO-8859-15 of a text that holds only the characters of the tests.
QByteArray BytesOf(const QString& text) {
  QByteArray bytes;
  for (const QChar character : text) {
    for (int byte = 0; byte < 256; ++byte) {
      if (CharacterOf(static_cast<quint8>(byte)) == character) {
        bytes.append(static_cast<char>(byte));
        break;
      }
    }
  }
  if (bytes.size() != text.size()) throw std::runtime_error("not in the code page");
  return bytes;
}

}  // namespace

void PrintTo(const TestDocument& document, std::ostream* out) {
  *out << document.name.toStdString();
}

std::vector<GenuineDocument> GenuineDocuments() {
  const QString directory = QStringLiteral("genuine/");
  std::vector<GenuineDocument> documents;
  for (const QString& name : FilesIn(directory, QStringLiteral("*.xml"))) {
    GenuineDocument document;
    document.name = name;
    document.kind = KindOf(name);
    document.bytes = ReadDocument(directory + name);
    const QString expected = directory + name.chopped(4) + QStringLiteral(".expected");
    document.mapped = QString::fromUtf8(ReadDocument(expected)).split(u'\n', Qt::SkipEmptyParts);
    const QString outcome = document.mapped.takeFirst();
    if (outcome.startsWith(u"valid ")) document.validVersion = outcome.sliced(6);
    documents.push_back(document);
  }
  return documents;
}

std::vector<TestDocument> HostileDocuments() {
  const QString directory = QStringLiteral("hostile/");
  std::vector<TestDocument> documents;
  for (const QString& name : FilesIn(directory, QStringLiteral("*.xml"))) {
    documents.push_back({name, VsdKind::Gvd, ReadDocument(directory + name)});
  }
  const auto nested = [](qsizetype levels) -> QByteArray {
    return QByteArray("<a>").repeated(levels) + "Niemand" + QByteArray("</a>").repeated(levels);
  };
  const QByteArray opening = "<a><Nachname>";
  const QByteArray closing = "</Nachname></a>";
  const auto filled = [&](qsizetype size) -> QByteArray {
    return opening + QByteArray(size - opening.size() - closing.size(), 'x') + closing;
  };
  documents.push_back({QStringLiteral("ten_thousand_levels.xml"), VsdKind::Gvd, nested(10'000)});
  documents.push_back({QStringLiteral("most_levels.xml"), VsdKind::Gvd, nested(4'680)});
  documents.push_back({QStringLiteral("longest.xml"), VsdKind::Gvd, filled(32767)});
  documents.push_back({QStringLiteral("too_long.xml"), VsdKind::Gvd, filled(32768)});
  return documents;
}

std::vector<BoundCase> BoundCases() {
  std::vector<BoundCase> cases;
  for (const Change& change : Changes()) {
    const QString base = QString::fromLatin1(change.base);
    QString text = TextOf(ReadDocument(QStringLiteral("genuine/") + base));
    const qsizetype position = text.indexOf(QStringView(change.from));
    if (position < 0) throw std::runtime_error(change.sentence);
    text.replace(position, QStringView(change.from).size(), change.to);
    BoundCase result;
    result.name = QStringLiteral("bound_%1.xml").arg(cases.size());
    result.kind = KindOf(base);
    result.bytes = BytesOf(text);
    result.sentence = QString::fromLatin1(change.sentence);
    result.isValid = change.isValid;
    cases.push_back(result);
  }
  return cases;
}

QByteArray ReadDocument(const QString& path) {
  return ReadFile(DocumentPath(path));
}

QString DocumentPath(const QString& path) {
  return QStringLiteral(VSD_DOCUMENTS) + u'/' + path;
}

QString OwnSchemaDirectory() {
  return QStringLiteral(VSD_SCHEMAS);
}

QString ProgramDirectory() {
  return QStringLiteral(VSD_PROGRAM_DIRECTORY);
}

QStringList UserSchemas() {
  QStringList paths;
  const QString directory = QStringLiteral("schemas/");
  for (const QString& name : FilesIn(directory, QStringLiteral("*.xsd"))) {
    paths.append(DocumentPath(directory + name));
  }
  return paths;
}

QString KindName(VsdKind kind) {
  constexpr PerVsdKind<QStringView> Names({u"pd", u"vd", u"gvd"});
  return Names[kind].toString();
}

}  // namespace kartocheck::test
