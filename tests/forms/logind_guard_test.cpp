#include "platform/qt/logind_guard.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <QDBusConnection>
#include <QProcess>
#include <QStringList>
#include <array>

#include "state/recording_on.h"
#include "tests/support/wait_until.h"

namespace tavrel {
namespace {

constexpr const char* kManagerPath = "/org/freedesktop/login1";
constexpr const char* kManagerName = "org.freedesktop.login1";

// The part of the login manager that hands inhibitors out.
class Manager : public QObject {
  Q_OBJECT
  Q_CLASSINFO("D-Bus Interface", "org.freedesktop.login1.Manager")
 public:
  QList<QStringList> asked;
  bool refuses = false;
  std::array<int, 2> pipe{-1, -1};  // the reading end is ours

  ~Manager() override { ForgetPipe(); }

  // True once nobody holds the other end any more.
  [[nodiscard]] bool IsReleased() const {
    char byte = 0;
    return read(pipe[0], &byte, 1) == 0;
  }

 public slots:
  QDBusUnixFileDescriptor Inhibit(const QString& what, const QString& who, const QString& why,
                                  const QString& mode) {
    asked.append({what, who, why, mode});
    if (refuses) {
      return {};
    }
    ForgetPipe();
    EXPECT_EQ(pipe2(pipe.data(), O_NONBLOCK | O_CLOEXEC), 0);
    const QDBusUnixFileDescriptor theirs(pipe[1]);
    close(pipe[1]);
    return theirs;
  }

 private:
  void ForgetPipe() {
    if (pipe[0] >= 0) {
      close(pipe[0]);
    }
    pipe = {-1, -1};
  }
};

// A bus of the test's own.
class SleepOfTheMachine : public testing::Test {
 protected:
  void SetUp() override {
    daemon.start("dbus-daemon", {"--session", "--nofork", "--print-address=1"});
    ASSERT_TRUE(daemon.waitForStarted());
    ASSERT_TRUE(WaitUntil([this] { return daemon.canReadLine() || daemon.waitForReadyRead(50); }));
    address = QString::fromLatin1(daemon.readLine()).trimmed();
    const auto service = QDBusConnection::connectToBus(address, "service");
    ASSERT_TRUE(service.isConnected());
  }
  void TearDown() override {
    QDBusConnection::disconnectFromBus("service");
    QDBusConnection::disconnectFromBus("program");
    daemon.terminate();
    daemon.waitForFinished();
  }
  void StartManager() {
    QDBusConnection service("service");
    ASSERT_TRUE(service.registerObject(kManagerPath, &manager, QDBusConnection::ExportAllSlots));
    ASSERT_TRUE(service.registerService(kManagerName));
  }
  [[nodiscard]] QDBusConnection Bus() const {
    return QDBusConnection::connectToBus(address, "program");
  }

  QProcess daemon;
  QString address;
  Manager manager;
};

TEST_F(SleepOfTheMachine, IsPutOffWhileARecordingIsOn) {
  StartManager();
  LogindGuard guard(Bus());
  guard.StayAwake(true);
  ASSERT_TRUE(WaitUntil([&] { return guard.IsHeld(); }));
  guard.StayAwake(true);
  EXPECT_EQ(manager.asked,
            (QList<QStringList>{{"sleep:idle", "TAVREL", "a recording is on", "block"}}));
  EXPECT_FALSE(manager.IsReleased());
  guard.StayAwake(false);
  EXPECT_TRUE(WaitUntil([&] { return manager.IsReleased(); }));
  guard.StayAwake(true);
  EXPECT_TRUE(WaitUntil([&] { return guard.IsHeld(); }));
  EXPECT_EQ(manager.asked.size(), 2);
}

TEST_F(SleepOfTheMachine, IsNotPutOffByAnAnswerThatComesTooLate) {
  StartManager();
  LogindGuard guard(Bus());
  guard.StayAwake(true);
  guard.StayAwake(false);
  ASSERT_TRUE(WaitUntil([&] { return manager.asked.size() == 1 && manager.IsReleased(); }));
  EXPECT_FALSE(guard.IsHeld());
}

TEST_F(SleepOfTheMachine, IsAskedForAgainWhereNobodyListensYet) {
  LogindGuard guard(Bus());
  guard.StayAwake(true);
  StartManager();
  EXPECT_TRUE(WaitUntil([&] {
    guard.StayAwake(true);
    return guard.IsHeld();
  }));
}

TEST(SleepWithoutABus, ChangesNothing) {
  LogindGuard guard(QDBusConnection::connectToBus("unix:path=/nowhere/bus", "none"));
  guard.StayAwake(true);
  EXPECT_FALSE(guard.IsHeld());
  QDBusConnection::disconnectFromBus("none");
}

TEST(RecordingOn, IsAskedOfTheSlotsInUse) {
  for (int slot = 0; slot <= kSlots; ++slot) {
    RunState state;
    EXPECT_FALSE(IsAnyRecordingOn(state));
    state.Unit[slot].UnitRecOn = 1;
    EXPECT_FALSE(IsAnyRecordingOn(state)) << "not in use: " << slot;
    state.SlotFile[slot] = "M260314A.OVN";
    EXPECT_EQ(IsAnyRecordingOn(state), slot != 0) << slot;
    state.Unit[slot].UnitRecOn = 0;
    EXPECT_FALSE(IsAnyRecordingOn(state));
  }
}

}  // namespace
}  // namespace tavrel

#include "logind_guard_test.moc"
