#include "platform/qt/instance_lock.h"

#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>

#include "tests/support/temporary_directory.h"

namespace tavrel {
namespace {

// Another process that takes the lock, says so and keeps it until it is killed.
class OtherProcess {
 public:
  explicit OtherProcess(const std::string& path) {
    int ends[2];
    if (pipe(ends) != 0) {
      return;
    }
    child_ = fork();
    if (child_ == 0) {
      InstanceLock lock(path);
      const char mark = lock.Take() ? 'y' : 'n';
      if (write(ends[1], &mark, 1) == 1) {
        pause();
      }
      _exit(0);
    }
    char mark = 'n';
    has_lock_ = read(ends[0], &mark, 1) == 1 && mark == 'y';
    close(ends[0]);
    close(ends[1]);
  }
  ~OtherProcess() { Crash(); }
  OtherProcess(const OtherProcess&) = delete;
  OtherProcess& operator=(const OtherProcess&) = delete;

  void Crash() {
    if (child_ > 0) {
      kill(child_, SIGKILL);
      waitpid(child_, nullptr, 0);
      child_ = -1;
    }
  }
  // Dead, but its number stays taken until somebody asks for its end.
  void CrashUnnoticed() const {
    kill(child_, SIGKILL);
    siginfo_t info{};
    waitid(P_PID, static_cast<id_t>(child_), &info, WEXITED | WNOWAIT);
  }
  bool HasLock() const { return has_lock_; }
  pid_t Pid() const { return child_; }

 private:
  pid_t child_ = -1;
  bool has_lock_ = false;
};

class Lock : public testing::Test {
 protected:
  TemporaryDirectory home;
  std::string path = home.File("tavrel.lock");
};

TEST_F(Lock, IsTakenByTheFirst) {
  InstanceLock lock(path);
  EXPECT_TRUE(lock.Take());
  EXPECT_TRUE(lock.Take());
}

TEST_F(Lock, IsRefusedWhileAnotherProcessLives) {
  const OtherProcess other(path);
  ASSERT_TRUE(other.HasLock());
  InstanceLock lock(path);
  EXPECT_FALSE(lock.Take());
}

TEST_F(Lock, IsFreeAfterACrash) {
  OtherProcess other(path);
  ASSERT_TRUE(other.HasLock());
  other.Crash();
  EXPECT_TRUE(home.Exists("tavrel.lock"));
  InstanceLock lock(path);
  EXPECT_TRUE(lock.Take());
}

TEST_F(Lock, IsFreeAfterACrashThatNobodyHasNoticed) {
  const OtherProcess other(path);
  ASSERT_TRUE(other.HasLock());
  other.CrashUnnoticed();
  InstanceLock lock(path);
  EXPECT_TRUE(lock.Take());
}

TEST_F(Lock, IsFreeIfItsFileWasTornByACrash) {
  for (const char* torn : {"", "999999999\nTAVREL\n"}) {
    home.Write("tavrel.lock", torn);
    InstanceLock lock(path);
    EXPECT_TRUE(lock.Take()) << torn;
  }
}

TEST_F(Lock, IsFreeIfAnotherCopyHasTheNumberOfTheOneThatCrashed) {
  OtherProcess crashed(path);
  const OtherProcess living(home.File("another.lock"));
  const std::string number = std::to_string(crashed.Pid());
  crashed.Crash();
  std::string file = home.Read("tavrel.lock");
  ASSERT_EQ(file.compare(0, number.size(), number), 0);
  home.Write("tavrel.lock", file.replace(0, number.size(), std::to_string(living.Pid())));
  InstanceLock lock(path);
  EXPECT_TRUE(lock.Take());
}

TEST_F(Lock, DoesNotKeepTheProgramFromRunningWhereNoFileCanBeMade) {
  InstanceLock lock(home.File("missing/tavrel.lock"));
  EXPECT_TRUE(lock.Take());
}

}  // namespace
}  // namespace tavrel
