#include <fcntl.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <sys/wait.h>
#include <termios.h>
#include <unistd.h>

#include <array>
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "instrument/control_socket.h"
#include "instrument/file_descriptor.h"

namespace instrument {
namespace {

using Clock = std::chrono::steady_clock;
using std::chrono::milliseconds;

constexpr milliseconds kPatience{5000};

// The finished program as a child process with its files in a directory of its own.
class Program {
 public:
  explicit Program(std::vector<std::string> arguments) {
    std::string pattern = std::filesystem::temp_directory_path() / "instrument_pty_XXXXXX";
    directory_ = ::mkdtemp(pattern.data());
    const std::vector<std::string> files{"--link",  Path("COM1"),  "--control", Path("ctl"),
                                         "--truth", Path("truth"), "--log",     Path("log")};
    arguments.insert(arguments.begin(), files.begin(), files.end());
    Launch(arguments);
  }
  ~Program() {
    if (child_ > 0) {
      ::kill(child_, SIGKILL);
      ::waitpid(child_, nullptr, 0);
    }
    std::filesystem::remove_all(directory_);
  }
  Program(const Program&) = delete;
  Program& operator=(const Program&) = delete;

  [[nodiscard]] std::string Path(const std::string& name) const { return directory_ + "/" + name; }
  [[nodiscard]] const std::string& FirstLine() const { return first_line_; }
  [[nodiscard]] std::string Content(const std::string& name) const {
    std::ifstream file(Path(name));
    return {std::istreambuf_iterator<char>(file), {}};
  }
  [[nodiscard]] std::string Command(const std::string& text) const {
    std::string answer;
    return SendCommand(Path("ctl"), text, answer) ? answer + "ok" : answer;
  }
  void Signal(int signal) const { ::kill(child_, signal); }
  // The exit status, or -1 if it did not end by itself.
  int Wait() {
    int status = 0;
    ::waitpid(std::exchange(child_, -1), &status, 0);
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
  }

 private:
  void Launch(const std::vector<std::string>& arguments) {
    std::array<int, 2> ends{};
    ASSERT_EQ(::pipe(ends.data()), 0);
    std::vector<char*> pointers{const_cast<char*>(TAVREL_INSTRUMENT)};
    for (const std::string& argument : arguments) {
      pointers.push_back(const_cast<char*>(argument.c_str()));
    }
    pointers.push_back(nullptr);
    child_ = ::fork();
    if (child_ == 0) {
      ::dup2(ends[1], STDOUT_FILENO);
      ::execv(TAVREL_INSTRUMENT, pointers.data());
      ::_exit(127);
    }
    ::close(ends[1]);
    const FileDescriptor output(ends[0]);
    char byte = 0;
    while (::read(output.Get(), &byte, 1) == 1 && byte != '\n') {
      first_line_ += byte;
    }
  }

  pid_t child_ = -1;
  std::string directory_;
  std::string first_line_;
};

// The host's end of the line.
class HostPort {
 public:
  explicit HostPort(const std::string& path) : port_(::open(path.c_str(), O_RDWR | O_NOCTTY)) {
    termios settings{};
    if (::tcgetattr(port_.Get(), &settings) == 0) {
      ::cfmakeraw(&settings);
      ::tcsetattr(port_.Get(), TCSANOW, &settings);
    }
  }
  [[nodiscard]] bool IsOpen() const { return port_.IsOpen(); }
  void Send(std::string_view text) const {
    ASSERT_EQ(::write(port_.Get(), text.data(), text.size()), static_cast<ssize_t>(text.size()));
  }
  // What arrives up to a carriage return, "." or "?", or within `limit`.
  [[nodiscard]] std::string Receive(milliseconds limit = kPatience) const {
    std::string received;
    const auto end = Clock::now() + limit;
    while (received.empty() ||
           std::string_view("\r.?").find(received.back()) == std::string_view::npos) {
      const auto left = std::chrono::duration_cast<milliseconds>(end - Clock::now());
      pollfd waited{port_.Get(), POLLIN, 0};
      char byte = 0;
      if (left.count() <= 0 || ::poll(&waited, 1, static_cast<int>(left.count())) <= 0 ||
          ::read(port_.Get(), &byte, 1) != 1) {
        break;
      }
      received += byte;
    }
    return received;
  }
  std::string Ask(std::string_view text) const {
    Send(text);
    return Receive();
  }
  // Whether the other end goes away within the patience of these tests.
  [[nodiscard]] bool HangsUp() const {
    pollfd waited{port_.Get(), 0, 0};
    return ::poll(&waited, 1, static_cast<int>(kPatience.count())) == 1 &&
           (waited.revents & POLLHUP) != 0;
  }

 private:
  FileDescriptor port_;
};

milliseconds Since(Clock::time_point start) {
  return std::chrono::duration_cast<milliseconds>(Clock::now() - start);
}

TEST(Program, AnswersOverAPseudoTerminalUnderItsLink) {
  Program program({"--instruments", "3"});
  ASSERT_TRUE(program.FirstLine().starts_with("ready /dev/pts/")) << program.FirstLine();
  EXPECT_EQ(std::filesystem::read_symlink(program.Path("COM1")), program.FirstLine().substr(6));
  const HostPort host(program.Path("COM1"));
  EXPECT_EQ(host.Ask("W21=3E8\r"), ".");
  EXPECT_EQ(host.Ask("W21?"), "03E8\r");
  EXPECT_EQ(host.Ask("Y2G?"), "?");
}

TEST(Program, SpeaksThePluginSyntaxWhenTold) {
  Program program({"--mode", "plugin", "--inet", "2"});
  const HostPort host(program.Path("COM1"));
  EXPECT_EQ(host.Ask("\x1Bn1p1=3E8\r"), ".");
  EXPECT_EQ(host.Ask("n1p1?"), "03E8\r");
}

TEST(Program, EndsCleanlyAtATerminationSignal) {
  Program program({});
  program.Signal(SIGTERM);
  EXPECT_EQ(program.Wait(), 0);
  EXPECT_FALSE(std::filesystem::exists(program.Path("COM1")));
  EXPECT_FALSE(std::filesystem::is_symlink(program.Path("COM1")));
  EXPECT_FALSE(std::filesystem::exists(program.Path("ctl")));
}

TEST(Program, EndsAtTheCommandQuit) {
  Program program({});
  EXPECT_EQ(program.Command("quit"), "ok");
  EXPECT_EQ(program.Wait(), 0);
}

TEST(Program, LeavesALinkThatPointsElsewhere) {
  Program program({});
  std::filesystem::remove(program.Path("COM1"));
  std::filesystem::create_symlink("/dev/null", program.Path("COM1"));
  program.Signal(SIGINT);
  EXPECT_EQ(program.Wait(), 0);
  EXPECT_TRUE(std::filesystem::is_symlink(program.Path("COM1")));
}

TEST(Program, LineIsRawBeforeAnyHostSetsIt) {
  Program program({});
  const FileDescriptor port(::open(program.Path("COM1").c_str(), O_RDWR | O_NOCTTY));
  termios settings{};
  ASSERT_EQ(::tcgetattr(port.Get(), &settings), 0);
  EXPECT_EQ(settings.c_lflag & (ECHO | ICANON | ISIG), 0U);
  EXPECT_EQ(settings.c_iflag & (ICRNL | IXON), 0U);
  EXPECT_EQ(settings.c_oflag & OPOST, 0U);
}

TEST(Program, HostMayCloseAndOpenItsPort) {
  Program program({"--line-speed", "none"});
  EXPECT_EQ(HostPort(program.Path("COM1")).Ask("W01=3E8\r"), ".");
  EXPECT_EQ(HostPort(program.Path("COM1")).Ask("W01?"), "03E8\r");
}

TEST(Program, CharactersTakeTheirTimeOnTheLine) {
  Program program({});
  const HostPort host(program.Path("COM1"));
  host.Ask("W01?");
  const auto start = Clock::now();
  constexpr int kExchanges = 20;
  for (int i = 0; i < kExchanges; ++i) {
    ASSERT_EQ(host.Ask("W01?"), "0000\r");
  }
  // 4 + 5 characters of 11 bits at 4800 baud are 20.6 ms.
  EXPECT_GE(Since(start), milliseconds(412));
  EXPECT_LT(Since(start), milliseconds(4 * 412));
}

TEST(Program, LineSpeedNoneTakesNoTime) {
  Program program({"--line-speed", "none"});
  const HostPort host(program.Path("COM1"));
  const auto start = Clock::now();
  for (int i = 0; i < 50; ++i) {
    ASSERT_EQ(host.Ask("W01?"), "0000\r");
  }
  EXPECT_LT(Since(start), milliseconds(500));
}

TEST(Program, LateReplyComesAfterItsDelay) {
  Program program({"--line-speed", "none"});
  const HostPort host(program.Path("COM1"));
  ASSERT_EQ(program.Command("fault 1 late-reply 300 times 1"), "ok");
  const auto start = Clock::now();
  EXPECT_EQ(host.Ask("W01?"), "0000\r");
  EXPECT_GE(Since(start), milliseconds(300));
  EXPECT_LT(Since(start), milliseconds(1500));
}

TEST(Program, UnplugHangsUpAndPlugBringsTheLineBack) {
  Program program({"--line-speed", "none"});
  const HostPort host(program.Path("COM1"));
  ASSERT_EQ(host.Ask("W01=3E8\r"), ".");
  ASSERT_EQ(program.Command("unplug"), "ok");
  EXPECT_TRUE(host.HangsUp());
  EXPECT_FALSE(std::filesystem::is_symlink(program.Path("COM1")));
  ASSERT_EQ(program.Command("plug"), "ok");
  const HostPort again(program.Path("COM1"));
  ASSERT_TRUE(again.IsOpen());
  EXPECT_EQ(again.Ask("W01?"), "03E8\r");
}

TEST(Program, HalfACommandDoesNotOutliveTheUnplugging) {
  Program program({"--line-speed", "none"});
  HostPort(program.Path("COM1")).Send("W0");
  // The second answer comes from a later round of the program, which has read the line by then.
  ASSERT_NE(program.Command("status"), "");
  ASSERT_NE(program.Command("status"), "");
  ASSERT_EQ(program.Command("unplug"), "ok");
  ASSERT_EQ(program.Command("plug"), "ok");
  EXPECT_EQ(HostPort(program.Path("COM1")).Ask("W01?"), "0000\r");
}

TEST(Program, LineMayBeginUnplugged) {
  Program program({"--line-speed", "none", "--unplugged"});
  EXPECT_EQ(program.FirstLine(), "ready unplugged");
  EXPECT_FALSE(std::filesystem::is_symlink(program.Path("COM1")));
  ASSERT_EQ(program.Command("plug"), "ok");
  EXPECT_EQ(HostPort(program.Path("COM1")).Ask("W01?"), "0000\r");
}

TEST(Program, SilenceAtStartEndsByCommand) {
  Program program({"--line-speed", "none", "--fault", "silence"});
  const HostPort host(program.Path("COM1"));
  host.Send("W01?");
  EXPECT_EQ(host.Receive(milliseconds(200)), "");
  ASSERT_EQ(program.Command("fault all none"), "ok");
  EXPECT_EQ(host.Ask("W01?"), "0000\r");
}

TEST(Program, BacklogStandsInTheTruthBeforeTheLineIsUp) {
  Program program({"--line-speed", "none", "--sample", "1=10", "--backlog", "1=500"});
  const HostPort host(program.Path("COM1"));
  EXPECT_EQ(host.Ask("R05?"), "01F4\r");
  EXPECT_NE(program.Content("truth").find(" 1 5 500 "), std::string::npos);
  EXPECT_EQ(host.Ask("X05?").size(), 5U);
  EXPECT_NE(program.Content("truth").find("1 5 1 "), std::string::npos);
  EXPECT_NE(program.Content("truth").find(" good\n"), std::string::npos);
}

TEST(Program, InputsAreSampledOneAfterAnotherInTheTruth) {
  Program program({"--line-speed", "none", "--sampling-order", "descending", "--sampling-distance",
                   "200", "--sample", "1=10", "--backlog", "1=2"});
  const std::string truth = program.Content("truth");
  EXPECT_TRUE(truth.starts_with("sample 10.00 1 15 1 ")) << truth;
  EXPECT_NE(truth.find("\nsample 12.80 1 1 1 "), std::string::npos) << truth;
  EXPECT_NE(truth.find("\nsample 20.20 1 14 2 "), std::string::npos) << truth;
  EXPECT_NE(truth.find("\nsample 22.80 1 1 2 "), std::string::npos) << truth;
}

TEST(Program, TimeOfAStoppedProcessIsMadeUp) {
  Program program({"--line-speed", "none", "--speedup", "1000", "--sample", "1=60"});
  const HostPort host(program.Path("COM1"));
  program.Signal(SIGSTOP);
  const auto start = Clock::now();
  // The line stands still for half a second of real time: 500 s are to be made up.
  host.Send("R01?");
  EXPECT_EQ(host.Receive(milliseconds(500)), "");
  program.Signal(SIGCONT);
  const int first = std::stoi(host.Receive(), nullptr, 16);
  const auto passed = Since(start);
  EXPECT_GE(first, 0);
  int stored = first;
  while (stored < passed.count() / 60 && Since(start) < kPatience) {
    stored = std::stoi(host.Ask("R01?"), nullptr, 16);
  }
  EXPECT_GE(stored, passed.count() / 60);
}

TEST(Program, LogShowsTheTelegrams) {
  Program program({});
  const HostPort host(program.Path("COM1"));
  ASSERT_EQ(host.Ask("W01?"), "0000\r");
  EXPECT_NE(program.Content("log").find(" > W01? 57+0 30+2291"), std::string::npos);
}

TEST(Program, MistypedOptionEndsWithAStatus) {
  Program program({"--mode", "usb"});
  EXPECT_EQ(program.FirstLine(), "");
  EXPECT_EQ(program.Wait(), 1);
}

TEST(ControlSocket, ReplacesASocketButNoOtherFile) {
  std::string pattern = std::filesystem::temp_directory_path() / "instrument_ctl_XXXXXX";
  const std::string directory = ::mkdtemp(pattern.data());
  const std::string path = directory + "/ctl";
  std::ofstream(path) << "precious";
  std::string error;
  {
    ControlSocket socket;
    EXPECT_FALSE(socket.Listen(path, error));
    EXPECT_FALSE(error.empty());
  }
  EXPECT_TRUE(std::filesystem::is_regular_file(path));
  std::filesystem::remove_all(directory);
}

}  // namespace
}  // namespace instrument
