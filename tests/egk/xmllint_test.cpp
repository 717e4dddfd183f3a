#include <QFile>
#include <QProcess>
#include <QStandardPaths>
#include <QTemporaryDir>

#include <gtest/gtest.h>
#include <iostream>
#include <set>
#include <vector>

#include "egk/schema_values.h"
#include "egk/vsd_documents.h"
#include "egk/vsd_fixture.h"

namespace kartocheck {
namespace {

// Every document of the tests, genuine, changed and hostile.
std::vector<test::TestDocument> AllDocuments() {
  std::vector<test::TestDocument> all = test::HostileDocuments();
  for (const auto& document : test::GenuineDocuments()) all.push_back(document);
  for (const auto& document : test::BoundCases()) all.push_back(document);
  for (const auto& document : test::ValueCases()) all.push_back(document);
  all.push_back({QStringLiteral("umlaut.xml"), VsdKind::Gvd,
                 test::ReadDocument(QStringLiteral("other/umlaut.xml"))});
  // Above the cap, hence never parsed.
  std::erase_if(all, [](const auto& document) { return document.bytes.size() >= 32768; });
  return all;
}

// The path of xmllint; empty where it is not installed.
QString Xmllint() {
  return QStandardPaths::findExecutable(QStringLiteral("xmllint"));
}

// The names of those files that xmllint finds valid.
std::set<QString> ValidByXmllint(const QString& schema, const QString& directory,
                                 const QStringList& names) {
  QProcess process;
  process.setWorkingDirectory(directory);
  process.setProcessChannelMode(QProcess::MergedChannels);
  process.start(Xmllint(), QStringList{QStringLiteral("--noout"), QStringLiteral("--nonet"),
                                       QStringLiteral("--schema"), schema} +
                               names);
  EXPECT_TRUE(process.waitForFinished());
  std::set<QString> valid;
  const QString output = QString::fromUtf8(process.readAll());
  for (const QString& line : output.split(u'\n')) {
    if (line.endsWith(u" validates")) valid.insert(line.chopped(10));
  }
  return valid;
}

bool IsValidByUs(const QString& schema, const test::TestDocument& document) {
  test::VsdFixture fixture;
  fixture.validation.isOn = true;
  fixture.validation.schemas[document.kind].SetText(ReadSchemaText(schema));
  const auto result = fixture.Decompress(document.kind, document.bytes);
  const VsdDocument& kept = fixture.egk.documents[document.kind];
  EXPECT_EQ(!kept.notValidated, kept.validationText.endsWith(u"war erfolgreich!"));
  return result == VsdResult::Decompressed && !kept.notValidated;
}

// Documents and schemas that are refused by rule, not for what they hold: those with a document
// type and schemas that read other schemas.
bool IsRefusedByRule(const QByteArray& bytes) {
  return bytes.contains("<!DOCTYPE") || bytes.contains("<xs:include ") ||
         bytes.contains("<xs:import ") || bytes.contains("<xs:redefine ");
}

// Writes the documents into the directory; their names.
template <typename Document>
QStringList Write(const std::vector<Document>& documents, const QTemporaryDir& directory) {
  QStringList names;
  for (const Document& document : documents) {
    QFile file(directory.filePath(document.name));
    EXPECT_TRUE(file.open(QIODevice::WriteOnly));
    EXPECT_EQ(file.write(document.bytes), document.bytes.size());
    EXPECT_FALSE(names.contains(document.name));
    names.append(document.name);
  }
  return names;
}

// Whether the tests can be run; not having xmllint is a failure where all tests have to run.
bool HasXmllint() {
  if (!Xmllint().isEmpty()) return true;
  if (qEnvironmentVariable("CI") == u"true") ADD_FAILURE() << "xmllint is not installed";
  return false;
}

class XmllintTest : public testing::TestWithParam<QString> {};

TEST_P(XmllintTest, AgreesOnEveryDocument) {
  if (!HasXmllint()) GTEST_SKIP() << "xmllint is not installed";
  QFile schemaFile(GetParam());
  ASSERT_TRUE(schemaFile.open(QIODevice::ReadOnly));
  const bool isSchemaRefused = IsRefusedByRule(schemaFile.readAll());

  const QTemporaryDir directory;
  const std::vector<test::TestDocument> documents = AllDocuments();
  const QStringList names = Write(documents, directory);

  const std::set<QString> valid = ValidByXmllint(GetParam(), directory.path(), names);
  for (const test::TestDocument& document : documents) {
    const bool isRefused = isSchemaRefused || IsRefusedByRule(document.bytes);
    EXPECT_EQ(IsValidByUs(GetParam(), document), !isRefused && valid.contains(document.name))
        << document.name.toStdString();
  }
}

QString OwnSchema(VsdKind kind) {
  return test::OwnSchemaDirectory() + u'/' + VsdTexts[kind].schemaFile;
}

QStringList AllSchemas() {
  QStringList schemas = test::UserSchemas();
  for (const VsdKind kind : {VsdKind::Pd, VsdKind::Vd, VsdKind::Gvd}) {
    schemas.append(OwnSchema(kind));
  }
  schemas.append(test::DocumentPath(QStringLiteral("hostile/anything_goes.xsd")));
  return schemas;
}

INSTANTIATE_TEST_SUITE_P(Schemas, XmllintTest, testing::ValuesIn(AllSchemas()),
                         [](const auto& row) {
                           return row.param.section(u'/', -1).chopped(4).toStdString();
                         });

// Prints the table of values with both verdicts: scripts/schema_verdicts.sh.
TEST(SchemaVerdicts, AreBothThoseOfTheDataModel) {
  if (!HasXmllint()) GTEST_SKIP() << "xmllint is not installed";
  const QTemporaryDir directory;
  const std::vector<test::ValueCase> cases = test::ValueCases();
  const QStringList names = Write(cases, directory);
  PerVsdKind<std::set<QString>> valid;
  for (const VsdKind kind : VsdKinds) {
    valid[kind] = ValidByXmllint(OwnSchema(kind), directory.path(), names);
  }
  const auto word = [](bool isValid) { return isValid ? "accepted" : "refused"; };
  for (const test::ValueCase& row : cases) {
    const bool isValidByUs = IsValidByUs(OwnSchema(row.kind), row);
    const bool isValidByXmllint = valid[row.kind].contains(row.name);
    QString value = row.value;
    value.replace(u'\n', QStringLiteral("\\n"));
    std::cout << "| " << test::KindName(row.kind).toStdString() << " | "
              << row.element.toStdString() << " | \"" << value.toStdString() << "\" | "
              << word(isValidByUs) << " | " << word(isValidByXmllint) << " |\n";
    EXPECT_EQ(isValidByUs, row.isValid);
    EXPECT_EQ(isValidByXmllint, row.isValid);
  }
}

// The comparison is worth something only where there are documents of both sorts.
TEST(XmllintComparison, CoversValidAndInvalidDocumentsOfEachKind) {
  PerVsdKind<int> valid;
  PerVsdKind<int> invalid;
  for (const test::TestDocument& document : AllDocuments()) {
    const bool isValid = IsValidByUs(OwnSchema(document.kind), document);
    ++(isValid ? valid : invalid)[document.kind];
  }
  for (const VsdKind kind : {VsdKind::Pd, VsdKind::Vd, VsdKind::Gvd}) {
    EXPECT_GE(valid[kind], 5);
    EXPECT_GE(invalid[kind], 5);
  }
}

}  // namespace
}  // namespace kartocheck
