#include "platform/qt/qt_event_loop.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QTimer>

#include <chrono>
#include <gtest/gtest.h>
#include <memory>
#include <vector>

namespace kartocheck::test {
namespace {

using std::chrono::milliseconds;

class QtEventLoopTest : public testing::Test {
 protected:
  static void SetUpTestSuite() {
    static int argc = 1;
    static char name[] = "platform_test";
    static char* argv[] = {name, nullptr};
    application_ = std::make_unique<QCoreApplication>(argc, argv);
  }
  static void TearDownTestSuite() { application_.reset(); }

  static void Post(int& counter) {
    QMetaObject::invokeMethod(application_.get(), [&counter] { ++counter; }, Qt::QueuedConnection);
  }

 private:
  static inline std::unique_ptr<QCoreApplication> application_;
};

TEST_F(QtEventLoopTest, AYieldRunsWhatIsDueAndComesBack) {
  QtEventLoop loop;
  int runs = 0;
  Post(runs);
  Post(runs);
  EXPECT_EQ(runs, 0);
  loop.Yield();
  EXPECT_EQ(runs, 2);
  loop.Yield();
  EXPECT_EQ(runs, 2);
}

TEST_F(QtEventLoopTest, AWaitTakesItsTimeAndLetsEventsRunMeanwhile) {
  QtEventLoop loop;
  int runs = 0;
  QTimer::singleShot(milliseconds(5), qApp, [&] { ++runs; });
  QElapsedTimer clock;
  clock.start();
  loop.Wait(milliseconds(60));
  EXPECT_GE(clock.elapsed(), 60);
  EXPECT_EQ(runs, 1);
}

TEST_F(QtEventLoopTest, AWaitInsideAWaitEndsFirst) {
  QtEventLoop loop;
  std::vector<int> order;
  QTimer::singleShot(milliseconds(1), qApp, [&] {
    loop.Wait(milliseconds(20));
    order.push_back(1);
  });
  loop.Wait(milliseconds(50));
  order.push_back(2);
  EXPECT_EQ(order, (std::vector<int>{1, 2}));
}

}  // namespace
}  // namespace kartocheck::test
