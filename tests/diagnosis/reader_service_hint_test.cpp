#include <gtest/gtest.h>

#include "diagnosis/port_hints.h"
#include "diagnosis/reader_service_hints.h"
#include "support/printing.h"
#include "support/sentence_name.h"

namespace kartocheck::test {
namespace {

class ReaderServiceHintTest : public testing::TestWithParam<ReaderServiceHint> {};

TEST_P(ReaderServiceHintTest, SaysWhatToDo) {
  EXPECT_EQ(PortHint({.Kind = GetParam().trouble}), GetParam().hint);
}

INSTANTIATE_TEST_SUITE_P(Diagnosis, ReaderServiceHintTest, testing::ValuesIn(ReaderServiceHints()),
                         SentenceName());

}  // namespace
}  // namespace kartocheck::test
