#include "platform/qt/qt_serial_port.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <algorithm>

#include <fcntl.h>
#include <sys/ioctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <QElapsedTimer>
#include <QEventLoop>
#include <QFile>
#include <QTimer>
#include <csignal>
#include <ctime>
#include <filesystem>
#include <fstream>
#include <memory>

#include "platform/qt/serial_device.h"
#include "tests/support/later.h"
#include "tests/support/pseudo_terminal.h"
#include "tests/support/temporary_directory.h"
#include "tests/support/wait_until.h"

namespace tavrel {
namespace {

using std::chrono::milliseconds;
using testing::HasSubstr;

constexpr const char* kPlugin = "9600,e,8,1";

// Milliseconds of processor time that the whole process has used.
double CpuMilliseconds() {
  timespec used{};
  clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &used);
  return static_cast<double>(used.tv_sec) * 1e3 + static_cast<double>(used.tv_nsec) / 1e6;
}

class Port : public testing::Test {
 protected:
  Port() { PlugIn(); }

  // A new far end, which the user's link COM1 leads to.
  void PlugIn() {
    far = std::make_unique<PseudoTerminal>();
    std::filesystem::remove(home.File("COM1"));
    std::filesystem::create_symlink(far->Device(), home.File("COM1"));
  }
  // The user's link then leads to nothing: the number of the terminal that has gone may be given to
  // a test that runs beside this one.
  void PullOut() {
    far->Vanish();
    std::filesystem::remove(home.File("COM1"));
    std::filesystem::create_symlink(home.File("gone"), home.File("COM1"));
  }
  void Open() {
    const PortOpening opening = port.Open(1, kDirect);
    ASSERT_EQ(opening.Error, 0) << opening.Text;
  }

  void KillAProgramThatHasItOpen(const char* settings) const {
    int ends[2];
    ASSERT_EQ(pipe(ends), 0);
    const pid_t program = fork();
    if (program == 0) {
      QtSerialPort own(home.Path());
      const char mark = own.Open(1, settings).Error == 0 ? 'y' : 'n';
      if (write(ends[1], &mark, 1) == 1) {
        pause();
      }
      _exit(0);
    }
    char mark = 'n';
    EXPECT_EQ(read(ends[0], &mark, 1), 1);
    EXPECT_EQ(mark, 'y') << settings;
    kill(program, SIGKILL);
    waitpid(program, nullptr, 0);
    close(ends[0]);
    close(ends[1]);
  }

  TemporaryDirectory home;
  std::unique_ptr<PseudoTerminal> far;
  QtSerialPort port{home.Path()};
};

TEST_F(Port, OpensByTheLinkOfTheUser) {
  Open();
  EXPECT_TRUE(port.IsOpen());
  EXPECT_EQ(port.Settings(), "4800,n,8,2");
  EXPECT_EQ(port.TakeEvent(), 0);
}

TEST_F(Port, TakesTheSettingsOfThePluginInterfacesToo) {
  EXPECT_EQ(port.Open(1, "9600,e,8,1").Error, 0);
  EXPECT_EQ(port.Settings(), "9600,e,8,1");
}

TEST_F(Port, ChangesItsSettingsWhenItIsOpenedAgain) {
  Open();
  EXPECT_EQ(port.Open(1, "9600,e,8,1").Error, 0);
  EXPECT_EQ(port.Settings(), "9600,e,8,1");
}

TEST_F(Port, ExchangesACommandAndAReply) {
  Open();
  EXPECT_TRUE(port.Write("Y01?"));
  EXPECT_EQ(far->Receive(4), "Y01?");
  far->Send("0BB8\r");
  port.WaitForData(milliseconds(2000));
  EXPECT_EQ(port.ReadAll(), "0BB8\r");
  EXPECT_EQ(port.ReadAll(), "");
}

TEST_F(Port, SendsWithoutAnEventLoopAndEveryByteAsItIs) {
  Open();
  std::string all;
  for (int byte = 0; byte < 256; ++byte) {
    all.push_back(static_cast<char>(byte));
  }
  EXPECT_TRUE(port.Write(all));
  EXPECT_EQ(far->Receive(256), all);
  far->Send(all);
  std::string back;
  while (back.size() < all.size()) {
    port.WaitForData(milliseconds(2000));
    const std::string part = port.ReadAll();
    ASSERT_FALSE(part.empty());
    back += part;
  }
  EXPECT_EQ(back, all);
}

TEST_F(Port, HandsOverWhatCameWithoutAWait) {
  Open();
  far->Send("1234\r");
  EXPECT_TRUE(WaitUntil([this, all = std::string()]() mutable {
    all += port.ReadAll();
    return all == "1234\r";
  }));
}

TEST_F(Port, SleepsWhileItWaitsAndKeepsTheLimit) {
  Open();
  const double cpu_before = CpuMilliseconds();
  double shortest = 1e9;  // what the machine has to do beside this makes a wait longer, not shorter
  for (int wait = 0; wait < 5; ++wait) {
    QElapsedTimer passed;
    passed.start();
    port.WaitForData(std::chrono::microseconds(100300));
    shortest = std::min(shortest, static_cast<double>(passed.nsecsElapsed()) / 1e6);
  }
  EXPECT_GE(shortest, 100.3);
  EXPECT_LE(shortest, 100.3 + 4);
  EXPECT_LT(CpuMilliseconds() - cpu_before, 50);
  EXPECT_EQ(port.TakeEvent(), 0);
}

TEST_F(Port, WakesAtTheFirstCharacter) {
  Open();
  const Later answer(milliseconds(30), [this] { far->Send("."); });
  QElapsedTimer passed;
  passed.start();
  port.WaitForData(milliseconds(5000));
  EXPECT_LT(passed.elapsed(), 2500);
  EXPECT_EQ(port.ReadAll(), ".");
}

TEST_F(Port, ReportsAndClosesWhenTheDeviceVanishesDuringAWait) {
  Open();
  const Later hand(milliseconds(30), [this] { far->Vanish(); });
  QElapsedTimer passed;
  passed.start();
  port.WaitForData(milliseconds(5000));
  EXPECT_LT(passed.elapsed(), 2500);
  EXPECT_FALSE(port.IsOpen());
  EXPECT_GT(port.TakeEvent(), kLastHarmlessPortEvent);
  EXPECT_EQ(port.TakeEvent(), 0);
}

TEST_F(Port, ReportsAndClosesWhenTheDeviceHasVanishedAtAWrite) {
  Open();
  far->Vanish();
  EXPECT_FALSE(port.Write("Y01?"));
  EXPECT_FALSE(port.IsOpen());
  EXPECT_GT(port.TakeEvent(), kLastHarmlessPortEvent);
}

TEST_F(Port, ReportsAndClosesWhenTheDeviceHasVanishedAtARead) {
  Open();
  far->Vanish();
  EXPECT_EQ(port.ReadAll(), "");
  EXPECT_FALSE(port.IsOpen());
  EXPECT_GT(port.TakeEvent(), kLastHarmlessPortEvent);
}

TEST_F(Port, DoesNotSpinWhenTheDeviceVanishesWhileTheProgramIsIdle) {
  Open();
  far->Vanish();
  EXPECT_TRUE(WaitUntil([this] { return !port.IsOpen(); }));
  EXPECT_GT(port.TakeEvent(), kLastHarmlessPortEvent);
  const double cpu_before = CpuMilliseconds();
  QEventLoop idle;
  QTimer::singleShot(300, &idle, &QEventLoop::quit);
  idle.exec();
  EXPECT_LT(CpuMilliseconds() - cpu_before, 100);
  EXPECT_EQ(port.TakeEvent(), 0);
}

TEST_F(Port, IsQuietlyClosedAfterItVanished) {
  Open();
  far->Vanish();
  EXPECT_FALSE(port.Write("Y01?"));
  QElapsedTimer passed;
  passed.start();
  EXPECT_FALSE(port.Write("Y01?"));
  port.WaitForData(milliseconds(5000));
  EXPECT_EQ(port.ReadAll(), "");
  EXPECT_EQ(port.Settings(), "");
  EXPECT_LT(passed.elapsed(), 2500);
}

TEST_F(Port, OpensAgainWhenTheDeviceIsBack) {
  Open();
  PullOut();
  EXPECT_FALSE(port.Write("Y01?"));
  EXPECT_EQ(port.Open(1, kDirect).Error, QSerialPort::DeviceNotFoundError);
  PlugIn();
  Open();
  EXPECT_EQ(port.TakeEvent(), 0);
  EXPECT_TRUE(port.Write("Y01?"));
  EXPECT_EQ(far->Receive(4), "Y01?");
}

// A program that is killed with its port open cleans nothing up.
TEST_F(Port, OpensAfterAProgramThatWasKilledOnEveryKindOfLine) {
  for (const char* settings : {kDirect, kPlugin, kPlugin, kDirect}) {
    KillAProgramThatHasItOpen(settings);
    const PortOpening opening = port.Open(1, settings);
    EXPECT_EQ(opening.Error, 0) << settings << ": " << opening.Text;
    EXPECT_EQ(port.Settings(), settings);
    port.Close();
  }
}

TEST_F(Port, OpensAlthoughAProgramWasKilledWhileItWroteItsLock) {
  const QString lock = SerialLockFile(QString::fromStdString(far->Device()));
  std::ofstream(lock.toStdString()).flush();  // empty
  Open();
  EXPECT_TRUE(QFile::exists(lock)) << "the lock stands in another place";
  port.Close();
  EXPECT_FALSE(QFile::exists(lock));
}

// Whoever has no special rights cannot open a terminal that is marked as exclusive; the mark
// outlives a program that is killed.
TEST_F(Port, LeavesNoMarkOnAPseudoTerminalThatKeepsOthersOut) {
  KillAProgramThatHasItOpen(kDirect);
  const int device = open(far->Device().c_str(), O_RDWR | O_NOCTTY | O_CLOEXEC);
  int is_exclusive = -1;
  EXPECT_EQ(ioctl(device, TIOCGEXCL, &is_exclusive), 0);
  EXPECT_EQ(is_exclusive, 0);
  close(device);
}

TEST_F(Port, SaysThatADeviceIsMissing) {
  std::filesystem::remove(home.File("COM1"));
  std::filesystem::create_symlink(home.File("nowhere"), home.File("COM1"));
  const PortOpening opening = port.Open(1, kDirect);
  EXPECT_EQ(opening.Error, QSerialPort::DeviceNotFoundError);
  EXPECT_THAT(opening.Text, HasSubstr("COM1 does not exist"));
  EXPECT_FALSE(opening.InUse);
  EXPECT_FALSE(port.IsOpen());
  EXPECT_EQ(port.TakeEvent(), 0);
}

TEST_F(Port, SaysThatAnotherHasThePortOpen) {
  Open();
  QtSerialPort second(home.Path());
  const PortOpening opening = second.Open(1, kDirect);
  EXPECT_EQ(opening.Error, QSerialPort::PermissionError);
  EXPECT_THAT(opening.Text, HasSubstr("is in use"));
  EXPECT_TRUE(opening.InUse);
  EXPECT_TRUE(port.IsOpen());
}

TEST_F(Port, IsOnePortUnderAllItsNames) {
  std::filesystem::create_symlink(far->Device(), home.File("COM2"));
  Open();
  QtSerialPort second(home.Path());
  EXPECT_EQ(second.Open(2, kDirect).Error, QSerialPort::PermissionError);
}

TEST_F(Port, RefusesSettingsThatItCannotRead) {
  const PortOpening opening = port.Open(1, "");
  EXPECT_NE(opening.Error, 0);
  EXPECT_FALSE(opening.Text.empty());
  EXPECT_FALSE(port.IsOpen());
}

TEST_F(Port, RefusesANumberThatNoPortHas) {
  EXPECT_NE(port.Open(31, kDirect).Error, 0);
  EXPECT_NE(port.Open(0, kDirect).Error, 0);
}

TEST_F(Port, RefusesAFileThatIsNoDevice) {
  std::filesystem::remove(home.File("COM1"));
  home.Write("COM1", "not a device");
  const PortOpening opening = port.Open(1, kDirect);
  EXPECT_NE(opening.Error, 0);
  EXPECT_FALSE(opening.Text.empty());
}

}  // namespace
}  // namespace tavrel
