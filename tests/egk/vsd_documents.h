#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>

#include <iosfwd>
#include <vector>

#include "egk/vsd_kind.h"

namespace kartocheck::test {

// A document of the tests, uncompressed.
struct TestDocument {
  QString name;  // file name
  VsdKind kind = VsdKind::Pd;
  QByteArray bytes;
};

void PrintTo(const TestDocument& document, std::ostream* out);

// A document of a genuine card's kind, and what must become of it.
struct GenuineDocument : TestDocument {
  // Version of the schema under which our schemas find it valid; empty where its namespace is not
  // that of our schemas.
  QString validVersion;
  // "row 3 | name | value" for every row of the field table and "insured 9 | text" for every
  // element of the insured person's data that is not empty.
  QStringList mapped;
};

[[nodiscard]] std::vector<GenuineDocument> GenuineDocuments();

// Documents that no card should hold: those in files and those that are too large for one.
[[nodiscard]] std::vector<TestDocument> HostileDocuments();

// A genuine document with one place changed, and whether our schema must still accept it.
struct BoundCase : TestDocument {
  QString sentence;
  bool isValid = false;
};

[[nodiscard]] std::vector<BoundCase> BoundCases();

[[nodiscard]] QByteArray ReadDocument(const QString& path);  // below documents/
[[nodiscard]] QString DocumentPath(const QString& path);
[[nodiscard]] QString OwnSchemaDirectory();
[[nodiscard]] QString ProgramDirectory();

// Paths of the schemas that users may load.
[[nodiscard]] QStringList UserSchemas();

// The name of a kind in files and test names: "pd", "vd", "gvd".
[[nodiscard]] QString KindName(VsdKind kind);

}  // namespace kartocheck::test
