#include "terminal/reset_and_close.h"

#include <gtest/gtest.h>

#include "support/dialogue.h"
#include "support/link_fixture.h"

namespace kartocheck::test {
namespace {

TEST(ResetAndCloseTest, SendsTheResetAndClosesWhateverTheResetBrings) {
  for (const char* script : {"open 1\n> 20 11 00 00 00\n< 90 00\nclose",
                             "open 1\n> 20 11 00 00 00\n< -> -127\nclose -> -127"}) {
    Dialogue dialogue(script);
    Link link(dialogue);
    ASSERT_EQ(link.session.CtOpen(Port(1)), 0);
    ResetAndClose(link.session);
    EXPECT_FALSE(link.session.IsOpen());
  }
}

}  // namespace
}  // namespace kartocheck::test
