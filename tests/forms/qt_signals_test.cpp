#include "platform/qt/qt_signals.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <QSignalSpy>
#include <array>
#include <cerrno>
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

TEST(Requests, AreSeenBeforeTheEventLoopTakesThem) {
  QtSignals requests;
  EXPECT_FALSE(requests.HasRequest());
  raise(SIGTERM);
  EXPECT_TRUE(requests.HasRequest());
  EXPECT_TRUE(requests.HasRequest());
  QSignalSpy asked(&requests, &QtSignals::EndRequested);
  ASSERT_TRUE(WaitUntil([&asked] { return asked.count() > 0; }));
  EXPECT_FALSE(requests.HasRequest());
}

// A write to a pipe that nobody reads, and beyond the largest file that the user may have.
TEST(FailedWrites, EndNothing) {
  const QtSignals requests;
  std::array<int, 2> ends{};
  ASSERT_EQ(pipe(ends.data()), 0);
  close(ends[0]);
  EXPECT_EQ(write(ends[1], "x", 1), -1);
  EXPECT_EQ(errno, EPIPE);
  close(ends[1]);
  raise(SIGXFSZ);
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
