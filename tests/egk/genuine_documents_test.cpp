#include <gtest/gtest.h>

#include "egk/vsd_documents.h"
#include "egk/vsd_fixture.h"
#include "text/code_page.h"

namespace kartocheck {
namespace {

class GenuineDocumentTest : public testing::TestWithParam<test::GenuineDocument> {
 protected:
  test::VsdFixture fixture_;
  const VsdDocument& Kept() { return fixture_.egk.documents[GetParam().kind]; }
};

TEST_P(GenuineDocumentTest, IsMappedWithoutValidation) {
  EXPECT_EQ(fixture_.Decompress(GetParam().kind, test::Gzip(GetParam().bytes)),
            VsdResult::Decompressed);
  EXPECT_EQ(fixture_.Mapped(GetParam().kind), GetParam().mapped);
  EXPECT_EQ(Kept().xmlText, TextOf(GetParam().bytes));
  EXPECT_TRUE(Kept().notValidated);
}

TEST_P(GenuineDocumentTest, IsValidUnderOurSchemasAndMapped) {
  if (GetParam().validVersion.isEmpty()) return;  // the next test's
  fixture_.ValidateWithOwnSchemas();
  EXPECT_EQ(fixture_.Decompress(GetParam().kind, test::Gzip(GetParam().bytes)),
            VsdResult::Decompressed);
  EXPECT_TRUE(Kept().validationText.endsWith(u'(' + GetParam().validVersion +
                                             QStringLiteral(")\r\nwar erfolgreich!")))
      << Kept().validationText.toStdString();
  EXPECT_FALSE(Kept().notValidated);
  EXPECT_EQ(fixture_.Mapped(GetParam().kind), GetParam().mapped);
}

TEST_P(GenuineDocumentTest, OfAnotherNamespaceIsKeptAndNotMapped) {
  if (!GetParam().validVersion.isEmpty()) return;  // the test's before
  fixture_.ValidateWithOwnSchemas();
  EXPECT_EQ(fixture_.Decompress(GetParam().kind, test::Gzip(GetParam().bytes)),
            VsdResult::Decompressed);
  EXPECT_TRUE(Kept().validationText.endsWith(
      u"Der URI-Verweis für den Namespace dieses Schemas ist nicht zutreffend!"));
  EXPECT_TRUE(Kept().notValidated);
  EXPECT_FALSE(Kept().xmlText.isEmpty());
  EXPECT_EQ(fixture_.Mapped(GetParam().kind), QStringList());
}

TEST_P(GenuineDocumentTest, KeepsTheRootsOwnXmlOnceParsedForValidation) {
  fixture_.ValidateWithOwnSchemas();
  EXPECT_EQ(fixture_.Decompress(GetParam().kind, test::Gzip(GetParam().bytes)),
            VsdResult::Decompressed);
  const QString raw = TextOf(GetParam().bytes);
  const qsizetype root = raw.indexOf(u'<', raw.indexOf(u"?>"));
  // The start tag's name and the end tag stand at both ends; the declaration is gone.
  EXPECT_TRUE(Kept().xmlText.startsWith(QStringView(raw).sliced(root, 20)));
  EXPECT_TRUE(Kept().xmlText.endsWith(QStringView(raw.trimmed()).last(20)));
  EXPECT_FALSE(Kept().xmlText.contains(u"<?xml"));
}

// A card that answers with less than it should.
TEST_P(GenuineDocumentTest, CutAnywhereDoesNoHarm) {
  fixture_.ValidateWithOwnSchemas();
  const QByteArray& bytes = GetParam().bytes;
  const qsizetype end = bytes.lastIndexOf('>');
  for (qsizetype size = 1; size <= end; ++size) {
    fixture_.validation.isOn = size % 2 == 0;
    const auto result = fixture_.Decompress(GetParam().kind, bytes.first(size));
    EXPECT_EQ(result, fixture_.validation.isOn ? VsdResult::XmlError : VsdResult::Decompressed)
        << size;
  }
  EXPECT_EQ(fixture_.Mapped(GetParam().kind), QStringList());
}

// Each bit of the compressed block turned over.
TEST_P(GenuineDocumentTest, DamagedAnywhereDoesNoHarm) {
  fixture_.ValidateWithOwnSchemas();
  const QByteArray member = test::Gzip(GetParam().bytes);
  for (qsizetype bit = 0; bit < member.size() * 8; ++bit) {
    QByteArray damaged = member;
    damaged[bit / 8] = static_cast<char>(damaged.at(bit / 8) ^ (1 << (bit % 8)));
    fixture_.egk.Clear();
    fixture_.insured.Clear();
    const VsdResult result = fixture_.Decompress(GetParam().kind, damaged);
    if (result != VsdResult::Decompressed) {
      EXPECT_EQ(fixture_.Mapped(GetParam().kind), QStringList()) << bit;
    }
  }
}

INSTANTIATE_TEST_SUITE_P(Files, GenuineDocumentTest, testing::ValuesIn(test::GenuineDocuments()),
                         [](const auto& row) { return row.param.name.chopped(4).toStdString(); });

TEST(GenuineDocuments, AreOfEveryKindAndStyle) {
  PerVsdKind<int> valid;
  PerVsdKind<int> otherNamespace;
  for (const test::GenuineDocument& document : test::GenuineDocuments()) {
    ++(document.validVersion.isEmpty() ? otherNamespace : valid)[document.kind];
  }
  for (const VsdKind kind : {VsdKind::Pd, VsdKind::Vd, VsdKind::Gvd}) {
    EXPECT_GE(valid[kind], 3) << test::KindName(kind).toStdString();
    EXPECT_GE(otherNamespace[kind], 1) << test::KindName(kind).toStdString();
  }
}

}  // namespace
}  // namespace kartocheck
