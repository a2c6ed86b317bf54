#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstdio>
#include <filesystem>

#include "tests/e2e/users_keyboard.h"

namespace tavrel {
namespace {

using std::chrono::seconds;
using testing::HasSubstr;

// The whole job of the program, from its first start to the printed page, by somebody who has no
// mouse. A hundred seconds of the instrument pass in one, and it is sampled once in each of them.
class JobByKeyboard : public testing::Test {
 protected:
  void SetUp() override {
    ASSERT_TRUE(screen.IsUp());
    ASSERT_TRUE(program.StartInstruments({"--ovens", "1=1", "--speedup", "100"}));
    program.WatchForms();
    program.Begin();
  }

  void DoAllSteps() {
    const std::vector<void (JobByKeyboard::*)()> steps = {
        &JobByKeyboard::ChooseSettings, &JobByKeyboard::Install,
        &JobByKeyboard::BeginRecording, &JobByKeyboard::SwitchControllerOn,
        &JobByKeyboard::ShowPart,       &JobByKeyboard::Measure,
        &JobByKeyboard::AddComment,     &JobByKeyboard::Export,
        &JobByKeyboard::PrintToPdf,     &JobByKeyboard::Leave};
    for (const auto step : steps) {
      (this->*step)();
      ASSERT_FALSE(HasFailure());
    }
  }

  // A step that fails says what was on the screen.
  [[nodiscard]] std::string Sight() const {
    std::string sight = "the keyboard is at " + user.Place() + ", prompt " + user.Prompt();
    for (const std::string& title : user.Titles()) {
      sight += "\n  window " + title;
    }
    return sight;
  }

  // The first start: the splash, and the settings behind it.
  void ChooseSettings() {
    ASSERT_TRUE(user.Opens("TAVREL")) << Sight();
    user.Press({"space"});
    ASSERT_TRUE(user.Opens("Settings")) << Sight();
    user.Type("Institute of Glass");
    ASSERT_TRUE(user.TabTo("cboCom")) << Sight();
    user.Type("COM1");
    user.Press({"Return"});
    ASSERT_TRUE(WaitUntil([this] { return !program.Read("TAVREL.USR").empty(); }, seconds(20)));
    EXPECT_THAT(program.Read("TAVREL.USR"), HasSubstr("\"PLANT:: Institute of Glass\"\r\n"));
    EXPECT_THAT(program.Read("TAVREL.USR"), HasSubstr("\"COMMPORT:: COM1\"\r\n"));
    ASSERT_TRUE(user.Opens("TAVREL  6.1")) << Sight();
    EXPECT_TRUE(WaitUntil(
        [this] { return !program.Read("tavdat/M011111A.NEW").empty() || !Recordings().empty(); },
        seconds(20)));
  }

  // The one test, with a third input and another name.
  void Install() {
    user.Press({"alt+t", "i"});
    ASSERT_TRUE(user.Opens("Installation  of  tests")) << Sight();
    user.Press({"Right", "Right", "m", "Home"});
    user.Type("Tube oven");
    user.Press({"Tab"});
    user.Type("TUB");
    user.Press({"Return"});
    ASSERT_TRUE(user.Opens("Tavrel")) << Sight();
    user.Press({"Return"});
    ASSERT_TRUE(user.ReturnsTo("TAVREL  6.1")) << Sight();
    ASSERT_EQ(Recordings().size(), 1U);
    file = Recordings().front();
    EXPECT_TRUE(file.starts_with("M") && file.ends_with("A.TUB")) << file;
    EXPECT_THAT(program.Read("TAVREL.USR"), HasSubstr("\"ACTIVE01:: " + file + "\"\r\n"));
    EXPECT_THAT(program.Read("tavdat/" + file), HasSubstr("TUB:Tube oven"));
  }

  void BeginRecording() {
    user.Press({"ctrl+1"});
    ASSERT_TRUE(user.Opens("Tube oven")) << Sight();
    ASSERT_TRUE(user.TabTo("cmd_Rec_1")) << Sight();
    user.Press({"space"});
    ASSERT_TRUE(user.Opens("Tavrel")) << "the instrument takes its sampling time in\n" << Sight();
    ASSERT_TRUE(user.ReturnsTo("Tube oven")) << Sight();
    ASSERT_TRUE(WaitUntil([this] { return RowsNow() > 0; }, seconds(20))) << Sight();
  }

  // Holds 200 degrees.
  void SwitchControllerOn() {
    EXPECT_THAT(program.Status(), HasSubstr(" controllers 0 0 0 0 "));
    ASSERT_TRUE(user.TabTo("cmd_setCtrl")) << Sight();
    user.Press({"space"});
    ASSERT_TRUE(user.Opens("Controller")) << Sight();
    ASSERT_TRUE(user.TabTo("TBox_1")) << Sight();
    user.Type("150");
    ASSERT_TRUE(user.TabTo("TBox_4")) << Sight();
    user.Type("200");
    user.Press({"Return"});
    ASSERT_TRUE(user.ReturnsTo("Tube oven")) << Sight();
    ASSERT_TRUE(user.TabTo("cmd_Ctrl_0")) << Sight();
    user.Press({"space"});
    EXPECT_TRUE(WaitUntil(
        [this] { return program.Status().find(" controllers 2 0 0 0 ") != std::string::npos; },
        seconds(10)))
        << program.Status();
  }

  // The first rows of the overview, from 20 to 90 degrees.
  void ShowPart() {
    ASSERT_TRUE(user.TabTo("CmdOK")) << Sight();
    user.Press({"space"});
    ASSERT_TRUE(user.Opens("Tube oven")) << Sight();
    ASSERT_TRUE(WaitUntil([this] { return RowsNow() > 5; }, seconds(20)));
    user.Press({"Home", "shift+Up", "shift+Up", "shift+Up", "shift+Up", "space"});
    user.Press({"shift+Right", "shift+Down", "shift+Down", "shift+Down", "shift+Down", "shift+Down",
                "shift+Down", "shift+Down", "space", "Return"});
  }

  // One row and a tenth of the seventy degrees from each other.
  void Measure() {
    ASSERT_TRUE(user.TabTo("PbEval_0")) << Sight();
    user.Press({"space"});
    ASSERT_TRUE(user.IsPrompted("set 1st point")) << Sight();
    user.Press({"Home", "Right", "Right", "space"});
    ASSERT_TRUE(user.IsPrompted("set 2nd point")) << Sight();
    user.Press({"Right", "shift+Up", "space"});
    ASSERT_TRUE(user.IsPrompted("dy = 7.00       dx = 100.00 sec       dy/dx = 70.00 E-3"))
        << Sight();
  }

  void AddComment() {
    ASSERT_TRUE(user.TabTo("PbMark_2")) << Sight();
    user.Press({"space"});
    ASSERT_TRUE(user.IsAt("Txt_for_Mark")) << Sight();
    user.Type("by keyboard");
    user.Press({"Return"});
    ASSERT_TRUE(user.IsPrompted("text location")) << Sight();
    user.Press({"shift+Down", "space"});
  }

  void Export() {
    user.Press({"alt+o", "a"});
    ASSERT_TRUE(user.Opens("Save As")) << Sight();
    user.Press({"ctrl+a"});
    user.Type(program.Directory() + "/values.asc");
    user.Press({"Return"});
    ASSERT_TRUE(user.Opens("ASCII - file")) << Sight();
    user.Press({"Return"});
    ASSERT_TRUE(user.ReturnsTo("Tube oven")) << Sight();
    ExpectExported();
  }

  void PrintToPdf() {
    user.Press({"ctrl+p"});
    ASSERT_TRUE(user.Opens("Print")) << Sight();
    ASSERT_TRUE(user.TabTo("printers")) << Sight();
    user.Type("Print");
    ASSERT_TRUE(user.TabTo("filename")) << Sight();
    user.Press({"ctrl+a"});
    user.Type(program.Directory() + "/report.pdf");
    user.Press({"Return"});
    ASSERT_TRUE(user.Opens("Printer")) << Sight();
    user.Press({"Return"});
    ASSERT_TRUE(user.ReturnsTo("Tube oven")) << Sight();
    EXPECT_TRUE(program.Read("report.pdf").starts_with("%PDF-"));
    RunCommand({"pdftotext", "-layout", program.Directory() + "/report.pdf"});
    const std::string page = program.Read("report.txt");
    for (const char* text : {"Institute of Glass", "Tube oven", "by keyboard"}) {
      EXPECT_THAT(page, HasSubstr(text));
    }
  }

  void Leave() {
    EXPECT_TRUE(WaitUntil([this] { return NewestDegrees() > 150; }, seconds(30)))
        << "the controller heats";
    user.Press({"Escape"});
    ASSERT_TRUE(user.ReturnsTo("Tube oven")) << "the graph\n" << Sight();
    EXPECT_THAT(program.Read("tavdat/" + file), HasSubstr("by keyboard"));
    user.Press({"Escape"});
    ASSERT_TRUE(user.ReturnsTo("TAVREL  6.1")) << "the worksheet\n" << Sight();
    user.Press({"ctrl+q"});
    ASSERT_TRUE(user.Opens("TAVREL")) << "the question\n" << Sight();
    user.Press({"Return"});
    EXPECT_TRUE(program.Ends()) << Sight();
  }

  [[nodiscard]] std::vector<std::string> Recordings() const {
    std::vector<std::string> names;
    const std::string directory = program.Directory() + "/tavdat";
    for (const auto& entry : std::filesystem::directory_iterator(directory)) {
      if (entry.is_regular_file()) {
        names.push_back(entry.path().filename().string());
      }
    }
    return names;
  }
  [[nodiscard]] std::size_t RowsNow() const { return program.Rows(file, kInputs).size(); }

  [[nodiscard]] double NewestDegrees() const {
    const auto rows = program.Rows(file, kInputs);
    return rows.empty() ? 0 : rows.back().front() / 20.0;
  }

  // What was exported are the rows of the part, with two decimals and the region's mark.
  void ExpectExported() const {
    std::string text = program.Read("values.asc");
    std::replace(text.begin(), text.end(), ',', '.');
    EXPECT_THAT(text, HasSubstr(file));
    const auto rows = program.Rows(file, kInputs);
    for (std::size_t row = 1; row <= 5; ++row) {
      std::string line = std::to_string(100 * row) + "; ";
      for (const std::int16_t word : rows[row]) {
        std::array<char, 16> value{};
        static_cast<void>(std::snprintf(value.data(), value.size(), "%.2f; ", word / 20.0));
        line += value.data();
      }
      EXPECT_THAT(text, HasSubstr("\n" + line + "\r\n"));
    }
  }

  // The recording is what the instrument sampled, word by word.
  void ExpectTruth() const {
    const Truth truth = program.ReadTruth();
    EXPECT_EQ(truth.lost, 0);
    const auto rows = program.Rows(file, kInputs);
    ASSERT_GT(rows.size(), 5U);
    for (std::size_t column = 0; column < kInputs; ++column) {
      const auto& taken = truth.taken.at({1, static_cast<int>(column) + 1});
      ASSERT_GE(taken.size(), rows.size() - 1);
      for (std::size_t row = 1; row < rows.size(); ++row) {
        ASSERT_EQ(rows[row][column], taken[row - 1]) << "row " << row << " column " << column;
      }
    }
  }

  static constexpr int kInputs = 3;  // controller, reference and the third
  VirtualScreen screen;
  InstalledProgram program;
  UsersKeyboard user{program};
  std::string file;  // of the recording
};

TEST_F(JobByKeyboard, IsDoneFromTheFirstStartToThePrintedPage) {
  DoAllSteps();
  if (!HasFailure()) {
    ExpectTruth();
  }
}

}  // namespace
}  // namespace tavrel
