#include <gtest/gtest.h>

#include "egk/schema_values.h"
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

// As strict as the public data model, and no stricter.
TEST(SchemaBounds, AcceptTheValuesOfTheDataModelAndNoOthers) {
  test::VsdFixture fixture;
  fixture.ValidateWithOwnSchemas();
  for (const test::ValueCase& row : test::ValueCases()) {
    EXPECT_EQ(fixture.Decompress(row.kind, test::Gzip(row.bytes)), VsdResult::Decompressed);
    EXPECT_EQ(!fixture.egk.documents[row.kind].notValidated, row.isValid)
        << row.element.toStdString() << " of \"" << row.value.toStdString() << '"';
  }
}

}  // namespace
}  // namespace kartocheck
