#include "terminal/ct_session.h"

#include <gtest/gtest.h>

#include "support/dialogue.h"
#include "support/link_fixture.h"
#include "support/printing.h"

namespace kartocheck::test {
namespace {

TEST(CtSessionTest, ExchangeSendsTheBytesOfTheCommandText) {
  Dialogue dialogue(R"(
    open 1
    > 20 13 00 46 00
    < 0A F0 90 00
    close
  )");
  Link link(dialogue);
  ASSERT_EQ(link.session.CtOpen(1), 0);
  const CtAnswer answer = link.session.CtExchange(u"2013004600", Unit::Terminal);
  EXPECT_EQ(answer.response, u"0AF09000");
  EXPECT_EQ(answer.StatusWord(), u"9000");
  EXPECT_EQ(answer.Data(), u"0AF0");
  EXPECT_EQ(link.session.CtClose(), 0);
}

}  // namespace
}  // namespace kartocheck::test
