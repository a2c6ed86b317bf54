#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <csignal>
#include <cstring>

#include "platform/qt/qt_serial_port.h"
#include "platform/qt/serial_device.h"
#include "tests/support/later.h"
#include "tests/support/pseudo_terminal.h"
#include "tests/support/temporary_directory.h"

namespace tavrel {
namespace {

using testing::HasSubstr;
using testing::Not;

// Another program, by the name of "linewatch", that has nothing but a number.
class OtherProgram {
 public:
  OtherProgram() {
    int ends[2];
    if (pipe(ends) != 0) {
      return;
    }
    process_ = fork();
    if (process_ == 0) {
      prctl(PR_SET_NAME, "linewatch");
      if (write(ends[1], "y", 1) == 1) {
        pause();
      }
      _exit(0);
    }
    char mark = 'n';
    EXPECT_EQ(read(ends[0], &mark, 1), 1);
    close(ends[0]);
    close(ends[1]);
  }
  ~OtherProgram() { End(); }
  OtherProgram(const OtherProgram&) = delete;
  OtherProgram& operator=(const OtherProgram&) = delete;

  [[nodiscard]] pid_t Number() const { return process_; }
  void End() {
    if (process_ > 0) {
      kill(process_, SIGKILL);
      waitpid(process_, nullptr, 0);
      process_ = -1;
    }
  }
  // Dead, but its number stays taken until somebody asks for its end.
  void EndUnnoticed() const {
    kill(process_, SIGKILL);
    siginfo_t info{};
    waitid(P_PID, static_cast<id_t>(process_), &info, WEXITED | WNOWAIT);
  }

 private:
  pid_t process_ = -1;
};

// What programs write into the lock file of a port.
struct LockForm {
  const char* name;
  std::string (*text)(pid_t);
};

std::string Padded(pid_t process) {
  std::string digits = std::to_string(process);
  return std::string(10 - digits.size(), ' ') + digits;
}
std::string Raw(pid_t process) {
  std::string bytes(sizeof process, '\0');
  std::memcpy(bytes.data(), &process, sizeof process);
  return bytes;
}

const std::vector<LockForm> kForms = {
    {"ten characters", [](pid_t process) { return Padded(process) + "\n"; }},
    {"with zeros", [](pid_t process) { return "0000" + std::to_string(process) + "\n"; }},
    {"digits", [](pid_t process) { return std::to_string(process); }},
    {"with names", [](pid_t process) { return Padded(process) + " linewatch maria\n"; }},
    {"binary", Raw},
};

class LockedPort : public testing::Test {
 protected:
  LockedPort() { std::filesystem::create_symlink(far.Device(), home.File("COM1")); }
  ~LockedPort() override { std::filesystem::remove_all(lock); }

  void Lay(const std::string& text) const {
    std::filesystem::remove_all(lock);
    std::ofstream(lock, std::ios::binary) << text;
  }
  [[nodiscard]] std::string Text() const {
    std::ifstream file(lock, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
  }
  // Written so long ago that nobody would wait for its process any more.
  void MakeOld() const {
    std::filesystem::last_write_time(
        lock, std::filesystem::file_time_type::clock::now() - std::chrono::hours(5));
  }
  [[nodiscard]] PortOpening Open() { return port.Open(1, kDirect); }
  void ExpectOurs() const {
    EXPECT_EQ(Text().substr(0, Text().find('\n')), std::to_string(getpid()));
  }

  TemporaryDirectory home;
  PseudoTerminal far;
  std::string lock = SerialLockFile(QString::fromStdString(far.Device())).toStdString();
  QtSerialPort port{home.Path()};
};

TEST_F(LockedPort, OfALivingProgramIsLeftAloneInEveryForm) {
  const OtherProgram other;
  for (const LockForm& form : kForms) {
    for (const bool is_old : {false, true}) {
      Lay(form.text(other.Number()));
      if (is_old) {
        MakeOld();
      }
      const PortOpening opening = Open();
      EXPECT_NE(opening.Error, 0) << form.name << is_old;
      EXPECT_TRUE(opening.InUse) << form.name << is_old;
      EXPECT_THAT(opening.Text, HasSubstr("COM1 (" + home.File("COM1") + ") is in use"));
      EXPECT_THAT(opening.Text,
                  HasSubstr("linewatch (process " + std::to_string(other.Number()) + ")"));
      EXPECT_EQ(Text(), form.text(other.Number())) << form.name << is_old;
      port.Close();
      EXPECT_EQ(Text(), form.text(other.Number())) << form.name << is_old;
    }
  }
}

// What the other deletes at its end is its own lock and not ours.
TEST_F(LockedPort, StandsAsLongAsThePortIsOpen) {
  const OtherProgram other;
  Lay(Padded(other.Number()) + "\n");
  MakeOld();
  EXPECT_NE(Open().Error, 0);
  std::filesystem::remove(lock);
  EXPECT_EQ(Open().Error, 0);
  ExpectOurs();
  port.Close();
  EXPECT_FALSE(std::filesystem::exists(lock));
}

TEST_F(LockedPort, OfAProgramThatIsDeadIsTakenOverInEveryForm) {
  for (const LockForm& form : kForms) {
    OtherProgram other;
    Lay(form.text(other.Number()));
    other.End();
    const PortOpening opening = Open();
    EXPECT_EQ(opening.Error, 0) << form.name << opening.Text;
    ExpectOurs();
    port.Close();
  }
}

TEST_F(LockedPort, OfAProgramWhoseEndNobodyHasNoticedIsTakenOver) {
  for (const LockForm& form : kForms) {
    const OtherProgram other;
    Lay(form.text(other.Number()));
    other.EndUnnoticed();
    EXPECT_EQ(Open().Error, 0) << form.name;
    port.Close();
  }
}

// Left by a dead program whose number is ours by now: whatever we have open has another form.
TEST_F(LockedPort, WithOurOwnNumberIsTakenOver) {
  for (const LockForm& form : kForms) {
    Lay(form.text(getpid()));
    const PortOpening opening = Open();
    EXPECT_EQ(opening.Error, 0) << form.name << opening.Text;
    port.Close();
  }
}

TEST_F(LockedPort, ThatSaysNothingIsLeftAloneAndNamed) {
  for (const char* text : {"minicom\n", "-7\n", "0\n", "12x\n", "99999999999999999999\n", "\n"}) {
    Lay(text);
    MakeOld();
    const PortOpening opening = Open();
    EXPECT_NE(opening.Error, 0) << text;
    EXPECT_THAT(opening.Text, HasSubstr(lock)) << text;
    EXPECT_EQ(Text(), text);
    port.Close();
  }
}

TEST_F(LockedPort, ThatIsJustBeingWrittenIsWaitedFor) {
  const OtherProgram other;
  Lay("");
  const Later hand(std::chrono::milliseconds(60),
                   [&] { std::ofstream(lock, std::ios::app) << Padded(other.Number()) << "\n"; });
  EXPECT_TRUE(Open().InUse);
  EXPECT_EQ(Text(), Padded(other.Number()) + "\n");
}

TEST_F(LockedPort, ThatIsNoFileIsLeftAloneAndNamed) {
  const std::vector<std::function<void()>> things = {
      [this] { mkfifo(lock.c_str(), 0644); }, [this] { std::filesystem::create_directory(lock); },
      [this] { std::filesystem::create_symlink(home.File("target"), lock); },
      [this] { std::filesystem::create_symlink("/dev/zero", lock); },
      [this] { std::filesystem::create_symlink("/nowhere", lock); }};
  home.Write("target", std::to_string(getpid()) + "\n");
  for (std::size_t thing = 0; thing < things.size(); ++thing) {
    things[thing]();
    struct stat before {};
    ASSERT_EQ(lstat(lock.c_str(), &before), 0);
    const PortOpening opening = Open();
    EXPECT_NE(opening.Error, 0) << thing;
    EXPECT_THAT(opening.Text, HasSubstr(lock)) << thing;
    struct stat after {};
    EXPECT_EQ(lstat(lock.c_str(), &after), 0) << thing;
    EXPECT_EQ(before.st_ino, after.st_ino) << thing;
    std::filesystem::remove_all(lock);
  }
}

// Others lock the name by which they know the device.
TEST_F(LockedPort, UnderTheNameOfALinkCountsToo) {
  const TemporaryDirectory devices;
  std::filesystem::create_symlink(far.Device(), devices.File("COM29"));
  const std::string by_link = std::filesystem::path(lock).parent_path() / "LCK..COM29";
  const OtherProgram other;
  std::ofstream(by_link) << Padded(other.Number()) << "\n";
  QtSerialPort linked(home.Path(), {devices.Path(), "/sys"});
  const PortOpening opening = linked.Open(29, kDirect);
  EXPECT_TRUE(opening.InUse);
  EXPECT_TRUE(std::filesystem::exists(by_link));
  std::filesystem::remove(by_link);
  EXPECT_EQ(linked.Open(29, kDirect).Error, 0);
}

// As on a full disk; the files of this process may not grow.
TEST_F(LockedPort, ThatCannotBeWrittenIsNotTakenForThatOfAnother) {
  rlimit usual{};
  getrlimit(RLIMIT_FSIZE, &usual);
  const auto before = signal(SIGXFSZ, SIG_IGN);
  const rlimit none{0, usual.rlim_max};
  setrlimit(RLIMIT_FSIZE, &none);
  const PortOpening opening = Open();
  setrlimit(RLIMIT_FSIZE, &usual);
  signal(SIGXFSZ, before);
  EXPECT_NE(opening.Error, 0);
  EXPECT_FALSE(opening.InUse);
  EXPECT_THAT(opening.Text, HasSubstr(lock));
  EXPECT_THAT(opening.Text, HasSubstr("File too large"));
  EXPECT_THAT(opening.Text, Not(HasSubstr("in use")));
}

}  // namespace
}  // namespace tavrel
