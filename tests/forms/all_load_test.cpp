#include "main/forms/all_load.h"

#include <gtest/gtest.h>

#include <QAbstractButton>
#include <QLabel>
#include <QScreen>
#include <QSignalSpy>
#include <QTest>
#include <QTimer>

#include "tests/support/wait_until.h"

namespace tavrel {
namespace {

class Splash : public testing::Test {
 protected:
  void Show() { form.UpdateWidgets({" ... to start hit any key ... ", "release   2446"}); }

  AllLoad form;
  QSignalSpy left{&form, &AllLoad::Left};
};

TEST_F(Splash, ShowsItsValues) {
  Show();
  EXPECT_EQ(form.findChild<QAbstractButton*>("cmdStart")->text(), " ... to start hit any key ... ");
  EXPECT_EQ(form.findChild<QLabel*>("lbRelease")->text(), "release   2446");
}

TEST_F(Splash, StaysUntilItsValuesAreThere) {
  form.show();
  QTest::keyClick(&form, Qt::Key_A);
  QTest::mouseClick(&form, Qt::LeftButton);
  EXPECT_EQ(left.count(), 0);
}

TEST_F(Splash, IsLeftByAnyKeyWhichGoesNoFurther) {
  for (const Qt::Key key : {Qt::Key_A, Qt::Key_Escape, Qt::Key_Return, Qt::Key_Tab, Qt::Key_F7}) {
    left.clear();
    form.show();
    Show();
    QTest::keyClick(&form, key);
    EXPECT_EQ(left.count(), 1) << key;
  }
}

TEST_F(Splash, IsLeftByItsButton) {
  form.show();
  Show();
  QTest::mouseClick(form.findChild<QAbstractButton*>("cmdStart"), Qt::LeftButton);
  EXPECT_EQ(left.count(), 1);
}

TEST_F(Splash, IsLeftByAClickAnywhere) {
  form.show();
  Show();
  QTest::mouseClick(&form, Qt::LeftButton, Qt::NoModifier, QPoint(5, 5));
  EXPECT_EQ(left.count(), 1);
}

TEST_F(Splash, IsLeftOnce) {
  form.show();
  Show();
  QTest::keyClick(&form, Qt::Key_A);
  QTest::keyClick(&form, Qt::Key_A);
  QTest::mouseClick(&form, Qt::LeftButton);
  EXPECT_EQ(left.count(), 1);
}

TEST_F(Splash, LeavesByItselfAfterAMinute) {
  Show();
  auto* timer = form.findChild<QTimer*>("TimerLoad");
  ASSERT_NE(timer, nullptr);
  EXPECT_EQ(timer->interval(), 60000);
  EXPECT_TRUE(timer->isActive());
  timer->setInterval(1);
  EXPECT_TRUE(WaitUntil([this] { return left.count() == 1; }));
}

TEST_F(Splash, StandsInTheMiddleOneTenthBelowTheTop) {
  const QRect room = form.screen()->availableGeometry();
  EXPECT_NEAR(form.geometry().center().x(), room.center().x(), 1);
  EXPECT_EQ(form.y() - room.top(), (room.height() - form.height()) / 10);
}

}  // namespace
}  // namespace tavrel
