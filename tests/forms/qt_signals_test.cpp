#include "platform/qt/qt_signals.h"

#include <gtest/gtest.h>

#include <QSignalSpy>
#include <csignal>

#include "tests/support/wait_until.h"

namespace tavrel {
namespace {

class Request : public testing::TestWithParam<int> {};

TEST_P(Request, ComesInTheEventLoop) {
  QtSignals requests;
  QSignalSpy asked(&requests, &QtSignals::EndRequested);
  ASSERT_EQ(raise(GetParam()), 0);
  EXPECT_EQ(asked.count(), 0);
  EXPECT_TRUE(WaitUntil([&asked] { return asked.count() == 1; }));
}

INSTANTIATE_TEST_SUITE_P(Of, Request, testing::Values(SIGTERM, SIGINT, SIGHUP));

TEST(Requests, ThatComeAtOnceAreOne) {
  QtSignals requests;
  QSignalSpy asked(&requests, &QtSignals::EndRequested);
  raise(SIGTERM);
  raise(SIGTERM);
  ASSERT_TRUE(WaitUntil([&asked] { return asked.count() > 0; }));
  QCoreApplication::processEvents();
  EXPECT_EQ(asked.count(), 1);
}

TEST(RequestsDeathTest, EndTheProcessAgainWhenNobodyListens) {
  testing::GTEST_FLAG(death_test_style) = "threadsafe";
  EXPECT_EXIT(
      {
        { const QtSignals requests; }
        raise(SIGTERM);
      },
      testing::KilledBySignal(SIGTERM), "");
}

}  // namespace
}  // namespace tavrel
