#include <gtest/gtest.h>

#include "egk/vsd_documents.h"
#include "egk/vsd_fixture.h"

namespace kartocheck {
namespace {

TEST(SchemaBounds, AreTheKnownOnes) {
  test::VsdFixture fixture;
  fixture.ValidateWithOwnSchemas();
  for (const test::BoundCase& bound : test::BoundCases()) {
    SCOPED_TRACE(bound.sentence.toStdString());
    EXPECT_EQ(fixture.Decompress(bound.kind, test::Gzip(bound.bytes)), VsdResult::Decompressed);
    const VsdDocument& kept = fixture.egk.documents[bound.kind];
    EXPECT_EQ(kept.notValidated, !bound.isValid);
    EXPECT_TRUE(kept.validationText.endsWith(bound.isValid ? u"war erfolgreich!"
                                                           : u"war nicht erfolgreich!"));
  }
}

}  // namespace
}  // namespace kartocheck
