#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <random>

#include "tests/support/control_bench.h"
#include "work/program_editor.h"
#include "work/program_runner.h"

namespace tavrel {
namespace {

// One program file whose bytes change again and again, opened in the editor and started on a
// slot. Making each anew would wait for the disk.
class ProgramFiles : public testing::Test, public ControlBench {
 protected:
  ProgramFiles() {
    Greet();
    bench.home.Write("ANY.PRG", "");
    bench.dialogs.chosen_file = path;
    disk.open(path, std::ios::in | std::ios::out | std::ios::binary);
    Count();
  }

  // The file is taken for what its length says, and for a status and a setpoint in each step: it
  // opens or is refused in one box, and it starts or is refused in one box; nothing goes out on the
  // line.
  void ExpectByLength(const std::string& bytes) {
    disk.seekp(0);
    disk.write(bytes.data(), static_cast<std::streamsize>(bytes.size())).flush();
    std::filesystem::resize_file(path, bytes.size());
    const auto records = RecordsOf(static_cast<std::int64_t>(bytes.size()));
    const bool opens = records >= 1 && records <= kProgramRecords;
    ASSERT_EQ(BoxesOf([this] { editor.cmdOpen_Click(); }),
              opens ? "" : "Read  file|ANY.PRG  is not a program file !\n")
        << bytes.size();
    ASSERT_FALSE(editor.ProgChanged());
    std::string refusal = records > kProgramRecords ? "Read  file|ANY.PRG  is too big !\n" : "";
    refusal = records <= 1 ? "Read  file|ANY.PRG  is damaged !\n" : refusal;
    refusal = refusal.empty() ? EmptyWordIn(bytes, records) : refusal;
    ASSERT_EQ(BoxesOf([this] { static_cast<void>(runner.Start(1)); }), refusal) << bytes.size();
    ASSERT_EQ(bench.state.ProgRunning[1], refusal.empty()) << bytes.size();
    ASSERT_TRUE(Sent().empty());
    bench.state.ProgRunning[1] = false;
  }

  // The box about the first step that has an empty status or setpoint: FFFF, or not there.
  static std::string EmptyWordIn(const std::string& bytes, std::int64_t records) {
    for (std::size_t row = 1; row < static_cast<std::size_t>(records); ++row) {
      for (const auto& [word, name] : {std::pair(0U, "status"), std::pair(2U, "setpoint")}) {
        const std::string content = bytes.substr(std::min(bytes.size(), 8 * row + 2 * word), 2);
        if (content.size() < 2 || content == "\xFF\xFF") {
          return std::string("check of program|missing: ") + name + " on row " +
                 std::to_string(row) + "\n";
        }
      }
    }
    return {};
  }

  template <typename Act>
  std::string BoxesOf(Act act) {
    bench.dialogs.boxes.clear();
    bench.dialogs.file_dialogs.clear();
    act();
    std::string texts;
    for (const Notice& box : bench.dialogs.boxes) {
      texts += box.Title + "|" + box.Text + "\n";
    }
    return texts;
  }

  std::string path = bench.home.File("ANY.PRG");
  std::fstream disk;
  ProgramEditor& editor = bench.program_editor;
  ProgramRunner& runner = bench.runner;
};

TEST_F(ProgramFiles, CutOffAnywhereOpenOrAreRefused) {
  std::vector<std::vector<int>> steps;
  for (int step = 1; step <= 52; ++step) {
    steps.push_back({2 + step % 2, step, 100 * step, 10 * step});
  }
  const std::string bytes = ProgramBytes(steps);
  for (std::size_t length = 0; length <= bytes.size(); ++length) {
    ExpectByLength(bytes.substr(0, length));
  }
}

// A sample; the fuzz target of program files goes on where this ends.
TEST_F(ProgramFiles, OfAnyBytesOpenOrAreRefused) {
  constexpr int kRandomFiles = 1000;
  std::mt19937 random(20260314);
  for (int round = 0; round < kRandomFiles && !HasFailure(); ++round) {
    std::string bytes(random() % 430, '\0');
    for (char& byte : bytes) {
      byte = static_cast<char>(random());
    }
    ExpectByLength(bytes);
  }
}

}  // namespace
}  // namespace tavrel
