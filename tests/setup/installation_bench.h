#ifndef TAVREL_TESTS_SETUP_INSTALLATION_BENCH_H_
#define TAVREL_TESTS_SETUP_INSTALLATION_BENCH_H_

#include <gtest/gtest.h>

#include <cstring>
#include <filesystem>
#include <string>

#include "tests/setup/setup_bench.h"

namespace tavrel {

// The running program with tests in slots 2, 5 and 12; slot 5 records.
class TavInst : public testing::Test {
 protected:
  void Start(bool german = false) {
    bench.state.Settings.HelpLang = german ? "german" : "English";
    bench.Install(2, "M260101A.OVN", TestHeader(1, 1, 5, {9}), {1, 2, 3, 1, 2, 3});
    bench.Install(5, "M260314C.OVN", TestHeader(2, 2, 6, {}, true), {5, 6, 5, 6});
    bench.Install(12, "M260314F.OVN", TestHeader(6, 4, 15));
    bench.state.Settings.DefPath = bench.home.File("tavdat");
    bench.Start();
    ASSERT_EQ(bench.settings.SettingsSave(), "");
    bench.Run(1);
  }
  void Open() { inst->Open(); }
  void Press() {
    bench.dialogs.boxes.clear();
    bench.port.sent.clear();
    inst->CmdOK_Click();
  }
  [[nodiscard]] const InstallationRow& Row(int row) const { return inst->Values().Rows[row]; }
  [[nodiscard]] std::string Letters(int row) const {
    std::string letters;
    for (const InstallationCell& cell : Row(row).Inputs) {
      letters += cell.Text.empty() ? "." : cell.Text;
    }
    return letters + " " + Row(row).Number.Text;
  }
  // Makes row a test of its own on that instrument.
  void Fill(int row, int inet, int controller, int reference) {
    inst->PutNumber(row, inet);
    inst->PutRole(row, controller, Role::kController);
    inst->PutRole(row, reference, Role::kReference);
    inst->Test_Ext_Change(row, "new");
    inst->Test_Des_Change(row, "Row " + std::to_string(row));
  }
  [[nodiscard]] UnitRecord HeaderOf(const std::string& name) const {
    UnitRecord unit{};
    const std::string bytes = bench.home.Read("tavdat/" + name);
    std::memcpy(static_cast<void*>(&unit), bytes.data(), sizeof unit);
    return unit;
  }
  [[nodiscard]] bool IsThere(const std::string& name) const {
    return std::filesystem::exists(bench.home.File("tavdat/" + name));
  }
  [[nodiscard]] std::string Box() const {
    return bench.dialogs.boxes.empty()
               ? ""
               : bench.dialogs.boxes.back().Title + ": " + bench.dialogs.boxes.back().Text;
  }

  BenchProgram bench;
  Installation* inst = &bench.installation;
};

}  // namespace tavrel

#endif  // TAVREL_TESTS_SETUP_INSTALLATION_BENCH_H_
