#include "platform/qt/qt_events.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QElapsedTimer>
#include <QKeyEvent>
#include <QTimer>
#include <QWidget>
#include <functional>

#include "tests/support/wait_until.h"

namespace tavrel {
namespace {

using std::chrono::milliseconds;

class PaintCounter : public QWidget {
 public:
  int paints = 0;
  int keys = 0;

 protected:
  void keyPressEvent(QKeyEvent* /*event*/) override { ++keys; }
  void paintEvent(QPaintEvent* /*event*/) override { ++paints; }
};

class EventLoop : public testing::Test {
 protected:
  void SetUp() override {
    window.show();
    ASSERT_TRUE(WaitUntil([this] { return window.paints > 0; }));
    window.paints = 0;
    timer.callOnTimeout([this] { ++ticks; });
    timer.start(1);
  }

  QtEvents events;
  PaintCounter window;
  QTimer timer;
  int ticks = 0;
};

TEST_F(EventLoop, RepaintPaintsWhatChangedAndServesNoTimer) {
  const QDeadlineTimer timer_is_due(5);
  while (!timer_is_due.hasExpired()) {
  }
  window.update();
  events.Repaint();
  EXPECT_EQ(window.paints, 1);
  EXPECT_EQ(ticks, 0);
}

TEST_F(EventLoop, RepaintPaintsNothingThatStayedAsItWas) {
  events.Repaint();
  EXPECT_EQ(window.paints, 0);
}

TEST_F(EventLoop, RepaintServesNoQueuedCall) {
  bool called = false;
  QMetaObject::invokeMethod(
      &window, [&called] { called = true; }, Qt::QueuedConnection);
  events.Repaint();
  EXPECT_FALSE(called);
  events.Pump();
  EXPECT_TRUE(called);
}

TEST_F(EventLoop, RepaintCopiesTheValuesFirst) {
  events.BeforeRepaint([this] { window.update(); });
  events.Repaint();
  EXPECT_EQ(window.paints, 1);
}

TEST_F(EventLoop, PumpServesTimers) {
  EXPECT_TRUE(WaitUntil([this] {
    events.Pump();
    return ticks > 0;
  }));
}

TEST_F(EventLoop, RestTakesItsTimeAndPaintsAndLetsTimersWait) {
  window.update();
  QElapsedTimer passed;
  passed.start();
  events.Rest(milliseconds(60));
  EXPECT_GE(passed.elapsed(), 60);
  EXPECT_EQ(window.paints, 1);
  EXPECT_EQ(ticks, 0);
  EXPECT_TRUE(WaitUntil([this] { return ticks > 0; }));
}

TEST_F(EventLoop, WorkForWhenItIsIdleRunsOnceAndTheLastOneOnly) {
  int first = 0;
  int second = 0;
  events.WhenIdle([&first] { ++first; });
  events.WhenIdle([&second] { ++second; });
  EXPECT_EQ(second, 0) << "not before its caller has returned";
  EXPECT_TRUE(WaitUntil([&second] { return second > 0; }));
  EXPECT_TRUE(WaitUntil([this, seen = ticks] { return ticks > seen + 3; }));
  EXPECT_EQ(first, 0);
  EXPECT_EQ(second, 1);
}

// Work that asks for itself again, as a pump does that goes from exchange to exchange.
TEST_F(EventLoop, WorkForWhenItIsIdleKeepsNothingElseWaiting) {
  int works = 0;
  std::function<void()> work = [&] {
    ++works;
    window.update();
    events.WhenIdle(work);
  };
  events.WhenIdle(work);
  const int before = works;
  bool called = false;
  QMetaObject::invokeMethod(
      &window, [&called] { called = true; }, Qt::QueuedConnection);
  QCoreApplication::postEvent(
      &window, new QKeyEvent(QEvent::KeyPress, Qt::Key_A, Qt::NoModifier, QStringLiteral("a")));
  EXPECT_TRUE(
      WaitUntil([&] { return called && ticks > 5 && window.paints > 5 && window.keys == 1; }));
  EXPECT_GT(works, before + 5);
}

TEST_F(EventLoop, WorkForWhenItIsIdleWaitsWhileARuleRests) {
  int works = 0;
  events.WhenIdle([&works] { ++works; });
  events.Rest(milliseconds(40));
  EXPECT_EQ(works, 0);
  EXPECT_TRUE(WaitUntil([&works] { return works == 1; }));
}

TEST_F(EventLoop, PointerIsSetOnceHoweverOftenItIsAskedFor) {
  events.SetPointer(Pointer::kHourglass);
  events.SetPointer(Pointer::kHourglass);
  ASSERT_NE(QApplication::overrideCursor(), nullptr);
  EXPECT_EQ(QApplication::overrideCursor()->shape(), Qt::WaitCursor);
  events.SetPointer(Pointer::kNormal);
  EXPECT_EQ(QApplication::overrideCursor(), nullptr);
  events.SetPointer(Pointer::kNormal);
  EXPECT_EQ(QApplication::overrideCursor(), nullptr);
}

TEST_F(EventLoop, PointerIsNormalWhileABoxWaitsAndComesBack) {
  events.SetPointer(Pointer::kHourglass);
  {
    const QtEvents::NormalPointer normal(events);
    EXPECT_EQ(QApplication::overrideCursor(), nullptr);
  }
  EXPECT_NE(QApplication::overrideCursor(), nullptr);
  {
    const QtEvents::NormalPointer normal(events);
    events.SetPointer(Pointer::kNormal);
  }
  EXPECT_EQ(QApplication::overrideCursor(), nullptr);
}

}  // namespace
}  // namespace tavrel
