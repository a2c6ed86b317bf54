#ifndef TAVREL_TESTS_FORMS_MODAL_BENCH_H_
#define TAVREL_TESTS_FORMS_MODAL_BENCH_H_

#include <gtest/gtest.h>

#include <QAction>
#include <QApplication>
#include <QDialog>
#include <QTest>
#include <QTimer>
#include <deque>
#include <functional>
#include <string>

#include "tests/support/settings_bench.h"

namespace tavrel {

// Modal forms driven by mouse and keys while they run. Deeds are done one after another, each to
// the modal form that is then in front; widgets are found in it by name.
class ModalDeeds : public testing::Test {
 protected:
  ModalDeeds() {
    poll.callOnTimeout([this] { DoNext(); });
  }

  // The next action, as soon as the form called `form_name` is in front.
  void Then(const char* form_name, std::function<void()> action) {
    actions.push_back({form_name, std::move(action)});
    poll.start(1);
  }

  template <typename Widget = QWidget>
  static Widget* Find(const char* name) {
    QWidget* form = QApplication::activeModalWidget();
    auto* widget = form == nullptr ? nullptr : form->findChild<Widget*>(name);
    EXPECT_NE(widget, nullptr) << "no " << name;
    return widget;
  }
  static void Click(const char* name) { QTest::mouseClick(Find(name), Qt::LeftButton); }
  static void Key(Qt::Key key) {
    QWidget* focus = QApplication::focusWidget();
    QTest::keyClick(focus != nullptr ? focus : QApplication::activeModalWidget(), key);
  }
  static std::string TextOf(const char* name) {
    return Find(name)->property("text").toString().toStdString();
  }
  static std::string TipOf(const char* name) { return Find(name)->toolTip().toStdString(); }
  static QWidget* Form() { return QApplication::activeModalWidget(); }

  // All actions were done; a form that never came fails the test.
  void TearDown() override {
    EXPECT_TRUE(actions.empty()) << actions.front().first << " never came";
  }

 private:
  void DoNext() {
    QWidget* form = QApplication::activeModalWidget();
    if (is_pending) {
      return;  // the form in front may be that of the action which has not begun yet
    }
    if (actions.empty()) {
      poll.stop();
    } else if (form != nullptr && form->objectName().toStdString() == actions.front().first) {
      const auto action = std::move(actions.front().second);
      actions.pop_front();
      // Not inside this timer's own event: an action may open a form that waits for the next one.
      is_pending = true;
      QTimer::singleShot(0, form, [this, action] {
        is_pending = false;
        action();
      });
    } else if (++idle > kPatience) {
      poll.stop();
      ADD_FAILURE() << actions.front().first << " never came";
      if (form != nullptr) {
        qobject_cast<QDialog*>(form)->done(0);
      }
    }
  }

  static constexpr int kPatience = 5000;  // turns of a millisecond
  std::deque<std::pair<std::string, std::function<void()>>> actions;
  QTimer poll;
  int idle = 0;
  bool is_pending = false;
};

// The same for the settings dialog and what belongs to it.
class ModalBench : public ModalDeeds, public SettingsBench {};

}  // namespace tavrel

#endif  // TAVREL_TESTS_FORMS_MODAL_BENCH_H_
