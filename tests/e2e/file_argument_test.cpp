#include <gtest/gtest.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <list>

#include "tests/e2e/installed_program.h"

namespace tavrel {
namespace {

using std::chrono::milliseconds;
using std::chrono::seconds;

// Whoever connects to the socket of the program.
class Stranger {
 public:
  explicit Stranger(const std::string& socket_path) : handle_(socket(AF_UNIX, SOCK_STREAM, 0)) {
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    std::strncpy(address.sun_path, socket_path.c_str(), sizeof address.sun_path - 1);
    is_connected_ =
        connect(handle_, reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0;
  }
  ~Stranger() { close(handle_); }
  Stranger(const Stranger&) = delete;
  Stranger& operator=(const Stranger&) = delete;

  [[nodiscard]] bool IsConnected() const { return is_connected_; }
  // Something came back before that.
  [[nodiscard]] bool IsAnswered() const { return is_answered_; }
  void Say(const std::string& bytes) const {
    static_cast<void>(send(handle_, bytes.data(), bytes.size(), MSG_NOSIGNAL));
  }
  // The program has hung up.
  [[nodiscard]] bool IsCutOff() {
    char byte = 0;
    const ssize_t got = recv(handle_, &byte, 1, MSG_DONTWAIT);
    is_answered_ = is_answered_ || got > 0;
    return got == 0 || (got < 0 && errno == ECONNRESET);
  }

 private:
  int handle_;
  bool is_connected_ = false;
  bool is_answered_ = false;
};

// The installed program and recordings that are named on its command line.
class FileArgument : public testing::Test {
 protected:
  void SetUp() override {
    ASSERT_TRUE(screen.IsUp());
    const std::string runtime = Path("run");
    std::filesystem::create_directory(runtime);
    std::filesystem::permissions(runtime, std::filesystem::perms::owner_all);
    setenv("XDG_RUNTIME_DIR", runtime.c_str(), 1);
    // Two recordings of rows that are no tests afterwards.
    ASSERT_TRUE(program.Prepare({"COMMPORT=----", "COMMODE=0",
                                 "slot:number=1,name=Old oven,ext=OLD,inet=1,ctrl=1,ref=5,"
                                 "inputs=1/5,rec=0",
                                 "slot:number=12,name=Other oven,ext=OTH,inet=6,ctrl=4,ref=15,"
                                 "inputs=4/15,rec=0"}));
    std::filesystem::create_directory(Path("old years"));
    std::filesystem::rename(Path("tavdat/M260314A.OLD"), old_file);
    std::filesystem::rename(Path("tavdat/M260314L.OTH"), other_file);
    ASSERT_TRUE(program.Prepare({"COMMPORT=----", "COMMODE=0",
                                 "slot:number=1,name=Tube oven,ext=TUB,inet=1,ctrl=1,ref=5,"
                                 "inputs=1/5,rec=0"}));
    program.KeepShownTexts();
  }

  std::string Path(const std::string& name) const { return program.Directory() + "/" + name; }
  int Call(const std::string& file) const {
    Process second({Path("tavrel"), file});
    return second.Wait(seconds(20));
  }
  bool Shows(const std::string& title, milliseconds limit = seconds(20)) const {
    return WaitUntil([&] { return !program.WindowCalled("^" + title + "$").empty(); }, limit);
  }
  void Press(const std::string& title, const char* key) const {
    const std::string window = program.WindowCalled("^" + title + "$");
    RunCommand({"xdotool", "windowfocus", window, "key", "--window", window, key});
  }
  bool WasTold(const std::string& text) const {
    for (const std::string& told : program.ShownTexts()) {
      if (told.find(text) != std::string::npos) {
        return true;
      }
    }
    return false;
  }
  std::string Socket() const {
    for (const auto& entry : std::filesystem::directory_iterator(Path("run"))) {
      if (entry.is_socket()) {
        return entry.path();
      }
    }
    return "";
  }

  VirtualScreen screen;
  InstalledProgram program;
  std::string old_file = program.Directory() + "/old years/M260314A.OLD";
  std::string other_file = program.Directory() + "/old years/M260314L.OTH";
};

TEST_F(FileArgument, IsShownByTheProgramThatStarts) {
  program.GiveFile(old_file);
  ASSERT_TRUE(program.Start());
  EXPECT_TRUE(Shows("Old oven"));
  EXPECT_TRUE(program.End());
}

TEST_F(FileArgument, IsShownInTheRunningProgramOnceItsDialogIsClosed) {
  ASSERT_TRUE(program.Start());
  EXPECT_EQ(Call(old_file), 0);
  ASSERT_TRUE(Shows("Old oven"));
  std::filesystem::current_path(Path("old years"));
  EXPECT_EQ(Call("M260314L.OTH"), 0);  // a path from where the user is
  EXPECT_FALSE(Shows("Other oven", seconds(1)));
  EXPECT_TRUE(Shows("Old oven"));
  Press("Old oven", "Escape");
  EXPECT_TRUE(Shows("Other oven"));
  std::filesystem::current_path("/");
  EXPECT_TRUE(program.End());
  EXPECT_EQ(Socket(), "");
}

TEST_F(FileArgument, ThatIsNoRecordingIsToldAndStaysAsItIs) {
  ASSERT_TRUE(program.Start());
  EXPECT_EQ(Call(Path("old years/M990101A.NIX")), 0);
  EXPECT_TRUE(WaitUntil([this] { return WasTold("M990101A.NIX  not found !"); }, seconds(20)));
  const std::string notes = Path("tavdat/notes.txt");
  ASSERT_EQ(RunCommand({"sh", "-c", "echo hello > '" + notes + "'"}), 0);
  EXPECT_EQ(Call(notes), 0);
  EXPECT_TRUE(WaitUntil([this] { return WasTold("is not a Tavrel-file !"); }, seconds(20)));
  EXPECT_EQ(std::filesystem::file_size(notes), 6U);
  EXPECT_TRUE(program.End());
}

TEST_F(FileArgument, ComesThroughBehindSendersOfInvalidBytes) {
  ASSERT_TRUE(program.Start());
  ASSERT_NE(Socket(), "");
  EXPECT_EQ(std::filesystem::status(Socket()).permissions() & std::filesystem::perms(0077),
            std::filesystem::perms::none);
  const std::string zero(1, '\0');
  std::list<Stranger> strangers;
  for (const std::string& said :
       {std::string("hello") + zero, zero, std::string("GET / HTTP/1.1\r\n\r\n") + zero,
        "/a" + zero + "/b" + zero, std::string(5000, '/'), std::string(100000, 'x'),
        std::string("\xff\xfe") + zero}) {
    Stranger& stranger = strangers.emplace_back(Socket());
    ASSERT_TRUE(stranger.IsConnected());
    stranger.Say(said);
    EXPECT_TRUE(WaitUntil([&] { return stranger.IsCutOff(); }, seconds(10))) << said.substr(0, 20);
  }
  // Many who come and say nothing, or half a path, are sent away; meanwhile a few wait.
  for (int count = 0; count < 40; ++count) {
    strangers.emplace_back(Socket()).Say(count % 2 == 0 ? "" : "/half");
  }
  const auto all_gone = [&] {
    return std::all_of(strangers.begin(), strangers.end(),
                       [](Stranger& stranger) { return stranger.IsCutOff(); });
  };
  EXPECT_TRUE(WaitUntil(all_gone, seconds(20)));
  EXPECT_TRUE(std::none_of(strangers.begin(), strangers.end(),
                           [](const Stranger& stranger) { return stranger.IsAnswered(); }));
  EXPECT_TRUE(program.ShownTexts().empty());
  EXPECT_EQ(Call(old_file), 0);
  EXPECT_TRUE(Shows("Old oven"));
  EXPECT_TRUE(program.End());
}

TEST_F(FileArgument, ReachesACopyThatFollowsAKilledOne) {
  ASSERT_TRUE(program.Start());
  program.Kill();
  EXPECT_NE(Socket(), "");
  ASSERT_TRUE(program.Start());
  EXPECT_EQ(Call(other_file), 0);
  EXPECT_TRUE(Shows("Other oven"));
  EXPECT_TRUE(program.End());
}

TEST_F(FileArgument, IsOneAtMost) {
  EXPECT_EQ(RunCommand({Path("tavrel"), old_file, other_file}), 2);
  EXPECT_EQ(RunCommand({Path("tavrel"), "-nonsense"}), 2);
}

}  // namespace
}  // namespace tavrel
