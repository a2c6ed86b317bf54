#ifndef TAVREL_TESTS_SUPPORT_FORM_BENCH_H_
#define TAVREL_TESTS_SUPPORT_FORM_BENCH_H_

#include <gtest/gtest.h>

#include <QTest>
#include <string>

#include "main/forms/tavrel.h"
#include "tests/support/bench_program.h"
#include "tests/support/wait_until.h"

namespace tavrel {

// The main form on the bench's program, its widgets found by name.
class FormBench : public testing::Test {
 protected:
  // Slot `slot` with that instrument and controller; it records.
  void Install(int slot, int inet, int ctrl, const std::string& apparatus) {
    UnitRecord unit = BenchProgram::Header(inet, ctrl, 2, true);
    unit.SetApparatusName(apparatus);
    const std::string name = "M26031" + std::to_string(slot % 10) + "A.OVN";
    bench.Install(slot, slot < 10 ? name : "M26032" + name.substr(6), unit);
  }

  // Shows the form and lets it start the program.
  void Start(int expected_rows = 4) {
    bench.state.SettingsRead = true;
    ASSERT_TRUE(bench.LoadMainForm());
    form = std::make_unique<Tavrel>(
        Tavrel::Parts{bench.sheet, bench.commands, bench.cycle, bench.start_up}, expected_rows);
    form->show();
    ASSERT_TRUE(WaitUntil([this] { return bench.cycle.IsEnabled(); }));
  }

  // The cycle for a while, and what it says on the screen.
  void Run(double seconds) {
    bench.Run(seconds);
    form->UpdateWidgets();
  }

  template <typename Widget = QWidget>
  Widget* Find(const char* name) {
    auto* widget = form->findChild<Widget*>(name);
    EXPECT_NE(widget, nullptr) << "no " << name;
    return widget;
  }
  QString TextOf(const char* name) { return Find(name)->property("text").toString(); }
  Colour ColourOf(const char* name) { return Find<ColourCell>(name)->ShownColour(); }
  void Click(const char* name) { QTest::mouseClick(Find(name), Qt::LeftButton); }

  BenchProgram bench;
  std::unique_ptr<Tavrel> form;
};

}  // namespace tavrel

#endif  // TAVREL_TESTS_SUPPORT_FORM_BENCH_H_
