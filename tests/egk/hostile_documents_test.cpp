#include <gtest/gtest.h>

#include "egk/vsd_documents.h"
#include "egk/vsd_fixture.h"

namespace kartocheck {
namespace {

class HostileDocumentTest : public testing::TestWithParam<test::TestDocument> {
 protected:
  void SetUp() override {
    testing::internal::CaptureStderr();
    testing::internal::CaptureStdout();
  }
  // What a document holds must not reach a log.
  void TearDown() override {
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
  }

  [[nodiscard]] bool Is(const char* name) const {
    return GetParam().name == QString::fromLatin1(name) + QStringLiteral(".xml");
  }

  test::VsdFixture fixture_;
};

// Those above the cap are not decompressed. Of the others two are documents, and one of these holds
// a last name.
TEST_P(HostileDocumentTest, GivesNothingWithoutValidation) {
  const bool isDecompressed = !Is("too_long") && !Is("ten_thousand_levels");
  for (const VsdKind kind : {VsdKind::Pd, VsdKind::Vd, VsdKind::Gvd}) {
    EXPECT_EQ(fixture_.Decompress(kind, test::Gzip(GetParam().bytes)),
              isDecompressed ? VsdResult::Decompressed : VsdResult::NotDecompressed);
    QStringList mapped;
    if (kind == VsdKind::Pd && Is("longest")) {
      const QString name(32767 - 28, u'x');
      mapped = {QStringLiteral("row 2 | Nachname | ") + name,
                QStringLiteral("insured 9 | ") + name};
    }
    if (kind == VsdKind::Pd && (Is("longest") || Is("schema_location"))) {
      mapped.append(QStringLiteral("insured 11 |   "));  // the blanks of a street
    }
    EXPECT_EQ(fixture_.Mapped(kind), mapped);
    fixture_.egk.Clear();
    fixture_.insured.Clear();
  }
}

TEST_P(HostileDocumentTest, GivesAnErrorWithValidation) {
  fixture_.ValidateWithOwnSchemas();
  const bool isDecompressed = !Is("too_long") && !Is("ten_thousand_levels");
  const bool isDocument = Is("longest") || Is("schema_location");
  const VsdResult expected = !isDecompressed ? VsdResult::NotDecompressed
                             : isDocument    ? VsdResult::Decompressed
                                             : VsdResult::XmlError;
  EXPECT_EQ(fixture_.Decompress(VsdKind::Gvd, test::Gzip(GetParam().bytes)), expected);
  EXPECT_TRUE(fixture_.egk.documents[VsdKind::Gvd].notValidated);
  EXPECT_EQ(fixture_.Mapped(VsdKind::Gvd), QStringList());
}

// The schema that the document names would accept it.
TEST(HostileSchemaLocation, IsNotFollowed) {
  test::VsdFixture fixture;
  fixture.ValidateWithOwnSchemas();
  const QByteArray bytes = test::ReadDocument(QStringLiteral("hostile/schema_location.xml"));
  EXPECT_EQ(fixture.Decompress(VsdKind::Gvd, bytes), VsdResult::Decompressed);
  EXPECT_TRUE(
      fixture.egk.documents[VsdKind::Gvd].validationText.endsWith(u"war nicht erfolgreich!"));

  fixture.validation.schemas[VsdKind::Gvd].SetText(
      ReadSchemaText(test::DocumentPath(QStringLiteral("hostile/anything_goes.xsd"))));
  EXPECT_EQ(fixture.Decompress(VsdKind::Gvd, bytes), VsdResult::Decompressed);
  EXPECT_TRUE(fixture.egk.documents[VsdKind::Gvd].validationText.endsWith(u"war erfolgreich!"));
}

INSTANTIATE_TEST_SUITE_P(Files, HostileDocumentTest, testing::ValuesIn(test::HostileDocuments()),
                         [](const auto& row) { return row.param.name.chopped(4).toStdString(); });

}  // namespace
}  // namespace kartocheck
