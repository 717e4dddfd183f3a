#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>
#include <ostream>

#include "egk/prepared_schema.h"
#include "support/answer_book.h"
#include "support/fake_api.h"
#include "support/printing.h"
#include "support/sentence_name.h"
#include "ui/main_window/window_fixture.h"

// Schemas and their switch, as the menu works with them.

namespace kartocheck::test {
namespace {

QByteArray SchemaWith(const QByteArray& content) {
  return "<xs:schema xmlns:xs='http://www.w3.org/2001/XMLSchema' targetNamespace='urn:t'>" +
         content + "</xs:schema>";
}

class SchemaTest : public testing::Test {
 protected:
  QString File(const QString& name, const QByteArray& bytes) {
    QFile file(folder.filePath(name));
    EXPECT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(bytes);
    return file.fileName();
  }

  void ExpectRefused(const QString& file, QStringView reason) {
    const QByteArray used = SchemaWith("<xs:element name='bisher'/>");
    window.module.Validation.schemas[VsdKind::Vd].SetText(QString::fromLatin1(used));
    window.dialogs.boxes.clear();
    window.flow.LoadSchema(VsdKind::Vd, file);
    EXPECT_EQ(Held(VsdKind::Vd), QString::fromLatin1(used));
    EXPECT_TRUE(window.module.Validation.schemas[VsdKind::Vd].Prepared().IsUsable());
    ASSERT_EQ(window.dialogs.boxes.size(), 1U);
    EXPECT_EQ(window.dialogs.boxes[0].title, u" KartoCheck ");
    EXPECT_EQ(window.dialogs.boxes[0].icon, Icon::Exclamation);
    EXPECT_EQ(window.dialogs.boxes[0].text, u"Das Schema konnte nicht geladen werden:\r\n" +
                                                QFileInfo(file).fileName() + u"\r\n\r\n" + reason +
                                                u"\r\nDas bisherige Schema wird weiter verwendet.");
    EXPECT_TRUE(window.display.statusTexts.empty());
  }

  const QString& Held(VsdKind kind) { return window.module.Validation.schemas[kind].Text(); }

  QTemporaryDir folder;
  FakeApi api;
  Window window{api};
};

TEST_F(SchemaTest, TextFromTheFirstMarkOnReplacesTheHeldOne) {
  const QByteArray text = SchemaWith("<xs:element name='neu'/>") + "\r\n";
  window.module.Validation.schemas[VsdKind::Pd].SetText(QStringLiteral("<alt/>"));
  window.flow.LoadSchema(VsdKind::Pd, File(QStringLiteral("neu.xsd"), "vorweg " + text));
  EXPECT_EQ(Held(VsdKind::Pd), QString::fromLatin1(text));
  EXPECT_EQ(Held(VsdKind::Vd), u"");
  EXPECT_EQ(Held(VsdKind::Gvd), u"");
  EXPECT_EQ(window.display.statusTexts,
            std::vector<QString>{QStringLiteral("Das Schema neu.xsd wurde geladen")});
  EXPECT_TRUE(window.dialogs.boxes.empty());
}

constexpr QStringView NoXml = u"Die Datei ist nicht lesbar oder enthält kein XML.";
constexpr QStringView NoSchema =
    u"Die Datei enthält kein Schema, das für sich allein verwendet werden kann.";

struct RefusedFile {
  const char* sentence;
  QByteArray bytes;
  QStringView reason;

  friend std::ostream& operator<<(std::ostream& out, const RefusedFile& row) {
    return out << row.sentence;
  }
};

class RefusedSchemaTest : public SchemaTest, public testing::WithParamInterface<RefusedFile> {};

TEST_P(RefusedSchemaTest, IsToldAndTheHeldOneStays) {
  ExpectRefused(File(QStringLiteral("gewaehlt.xsd"), GetParam().bytes), GetParam().reason);
}

INSTANTIATE_TEST_SUITE_P(
    Files, RefusedSchemaTest,
    testing::Values(
        RefusedFile{"an empty file", "", NoXml},
        RefusedFile{"no mark in it", "Kein Schema, nur Text & mehr.", NoXml},
        RefusedFile{"broken XML", "<xs:schema><nicht zu Ende", NoXml},
        RefusedFile{"text behind the root", SchemaWith("<xs:element name='a'/>") + "Rest", NoXml},
        RefusedFile{"a document type",
                    "<!DOCTYPE s SYSTEM 'x.dtd'>" + SchemaWith("<xs:element name='a'/>"), NoXml},
        RefusedFile{"another document", "<UC_GeschuetzteVersichertendatenXML/>", NoSchema},
        RefusedFile{"a schema without its namespace", "<schema><element name='a'/></schema>",
                    NoSchema},
        RefusedFile{"an unknown type", SchemaWith("<xs:element name='a' type='xs:gibtEsNicht'/>"),
                    NoSchema},
        RefusedFile{"a pattern that is none",
                    SchemaWith("<xs:simpleType name='a'><xs:restriction base='xs:string'>"
                               "<xs:pattern value='[0-9'/></xs:restriction></xs:simpleType>"),
                    NoSchema},
        RefusedFile{"an import", SchemaWith("<xs:import namespace='urn:u'/><xs:element name='a'/>"),
                    NoSchema},
        RefusedFile{"an import of a file that is there",
                    SchemaWith("<xs:import namespace='http://www.w3.org/2001/XMLSchema' "
                               "schemaLocation='gewaehlt.xsd'/><xs:element name='a'/>"),
                    NoSchema},
        RefusedFile{"an include",
                    SchemaWith("<xs:include schemaLocation='b.xsd'/><xs:element name='a'/>"),
                    NoSchema},
        RefusedFile{"a redefinition",
                    SchemaWith("<xs:redefine schemaLocation='b.xsd'/><xs:element name='a'/>"),
                    NoSchema},
        RefusedFile{"more than 1 MiB",
                    SchemaWith("<xs:element name='a'/>") + QByteArray(1 << 20, ' '), NoXml}),
    SentenceName());

TEST_F(SchemaTest, WhatIsNoOrdinaryFileIsTold) {
  ExpectRefused(folder.filePath(QStringLiteral("fehlt.xsd")), NoXml);
  ExpectRefused(folder.path(), NoXml);
}

// A hole of the file system is no memory that is needed.
TEST_F(SchemaTest, AFileThatIsLargerThanTheMemoryIsNotReadWhole) {
  const QString path = File(QStringLiteral("riesig.xsd"), SchemaWith("<xs:element name='a'/>"));
  constexpr qint64 FourTiB = qint64{4} << 40;
  if (!QFile::resize(path, FourTiB)) GTEST_SKIP() << "no such files here";
  ExpectRefused(path, NoXml);
}

TEST_F(SchemaTest, UpToOneMiBIsRead) {
  QByteArray text = SchemaWith("<xs:element name='a'/>");
  text = text.leftJustified(1 << 20, ' ');
  window.flow.LoadSchema(VsdKind::Vd, File(QStringLiteral("gross.xsd"), text));
  EXPECT_EQ(Held(VsdKind::Vd).size(), 1 << 20);
  EXPECT_TRUE(window.dialogs.boxes.empty());
}

// What is refused is exactly what documents could not be validated against.
TEST_F(SchemaTest, AChosenSchemaValidates) {
  window.flow.LoadSchema(VsdKind::Gvd,
                         File(QStringLiteral("neu.xsd"), SchemaWith("<xs:element name='a'/>")));
  const HeldSchema& held = window.module.Validation.schemas[VsdKind::Gvd];
  EXPECT_NE(held.Prepared().For(QStringLiteral("urn:t")), nullptr);
}

TEST_F(SchemaTest, ValidationIsSwitched) {
  EXPECT_FALSE(window.module.Validation.isOn);
  window.flow.SetValidation(true);
  EXPECT_TRUE(window.module.Validation.isOn);
  window.flow.SetValidation(false);
  EXPECT_FALSE(window.module.Validation.isOn);
}

TEST_F(SchemaTest, NothingChangesDuringAnAction) {
  const QString file = File(QStringLiteral("neu.xsd"), SchemaWith("<xs:element name='a'/>"));
  window.module.Busy = true;
  window.flow.SetValidation(true);
  window.flow.LoadSchema(VsdKind::Pd, file);
  EXPECT_FALSE(window.module.Validation.isOn);
  EXPECT_EQ(Held(VsdKind::Pd), u"");
}

TEST_F(SchemaTest, TheEgkWindowShowsTheCurrentSlot) {
  window.module.Egk[1].iccsn = QStringLiteral("11");
  window.module.Egk[2].stored.statusText = QStringLiteral("22");
  window.module.Terminals[2].Reset95 = true;
  EXPECT_EQ(window.flow.CurrentEgkInfo().lines[3].text, u"ICC Serial Number:       0x11");
  window.module.CurrentSlot = 2;
  EXPECT_EQ(window.flow.CurrentEgkInfo().lines[3].text, u"VSDStatus: 0x22");
  for (const int slot : {0, -1, 6}) {
    window.module.CurrentSlot = slot;
    EXPECT_THROW((void)window.flow.CurrentEgkInfo(), std::out_of_range) << slot;
  }
}

}  // namespace
}  // namespace kartocheck::test
