#include "platform/instance_lock.h"

#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/sysmacros.h>
#include <sys/un.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <filesystem>

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

// Takes the lock in a process of a user who has no special rights; false if it is refused.
bool IsTakenByAnotherUser(const std::string& path) {
  constexpr uid_t kNobody = 65534;
  const pid_t child = fork();
  if (child == 0) {
    const bool is_other = geteuid() != 0 || setuid(kNobody) == 0;
    InstanceLock lock(path);
    _exit(is_other && lock.Take() ? 0 : 1);
  }
  int status = 0;
  return waitpid(child, &status, 0) == child && WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

// What stands in the place of the lock file and is none.
class NoLockFile : public Lock, public testing::WithParamInterface<const char*> {
 protected:
  void SetUp() override {
    const std::string kind = GetParam();
    home.Write("other", kLikeALock);
    if (kind == "pipe") {
      ASSERT_EQ(mkfifo(path.c_str(), 0644), 0);
    } else if (kind == "device") {
      MakeDevice();
    } else if (kind == "directory") {
      std::filesystem::create_directory(path);
    } else if (kind == "hard_link") {
      std::filesystem::create_hard_link(home.File("other"), path);
    } else if (kind == "file") {
      home.Write("tavrel.lock", kOther);
    } else {
      const std::string target = kind == "link" ? home.File("other") : home.File("nothing");
      std::filesystem::create_symlink(kind == "device_link" ? "/dev/zero" : target, path);
    }
    ASSERT_EQ(lstat(path.c_str(), &before), 0);
  }
  // Only a privileged user can make a device; a socket is as little a file.
  void MakeDevice() {
    if (mknod(path.c_str(), S_IFCHR | 0666, makedev(1, 5)) == 0) {
      return;
    }
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    path.copy(address.sun_path, sizeof address.sun_path - 1);
    const int end = socket(AF_UNIX, SOCK_STREAM, 0);
    ASSERT_EQ(bind(end, reinterpret_cast<const sockaddr*>(&address), sizeof address), 0);
    close(end);
  }
  void ExpectUntouched() const {
    struct stat after {};
    ASSERT_EQ(lstat(path.c_str(), &after), 0);
    EXPECT_EQ(after.st_ino, before.st_ino);
    EXPECT_EQ(after.st_mode, before.st_mode);
    EXPECT_EQ(home.Read("other"), kLikeALock);
    if (GetParam() == std::string("file")) {
      EXPECT_EQ(home.Read("tavrel.lock"), kOther);
    }
    EXPECT_FALSE(home.Exists("nothing"));
  }

  static constexpr const char* kOther = "kept as it is";
  static constexpr const char* kLikeALock = "1234\nkept as it is";
  struct stat before {};
};

TEST_P(NoLockFile, NeitherHangsTheProgramNorLetsTwoRun) {
  {
    const OtherProcess other(path);
    EXPECT_TRUE(other.HasLock());
    InstanceLock lock(path);
    EXPECT_FALSE(lock.Take());
    EXPECT_EQ(lock.Problem(), "");
    ExpectUntouched();
  }
  InstanceLock lock(path);
  EXPECT_TRUE(lock.Take());
  ExpectUntouched();
}

TEST_P(NoLockFile, IsLeftAloneAtTheEnd) {
  { EXPECT_TRUE(InstanceLock(path).Take()); }
  ExpectUntouched();
}

INSTANTIATE_TEST_SUITE_P(Things, NoLockFile,
                         testing::Values("pipe", "device", "directory", "link", "dangling_link",
                                         "device_link", "hard_link", "file"),
                         [](const auto& thing) { return std::string(thing.param); });

TEST_F(Lock, OfAnotherUserIsTakenOverIfItIsStale) {
  std::filesystem::permissions(home.Path(), std::filesystem::perms::all);
  for (const mode_t mode : {0644, 0600, 0444, 0000}) {
    home.Write("tavrel.lock", "999999999\nTAVREL\nhost\n");
    chmod(path.c_str(), mode);
    EXPECT_TRUE(IsTakenByAnotherUser(path)) << std::oct << mode;
    std::filesystem::remove(path);
  }
}

TEST_F(Lock, OfAnotherUserIsRespectedWhileItsProcessLives) {
  std::filesystem::permissions(home.Path(), std::filesystem::perms::all);
  const OtherProcess other(path);
  ASSERT_TRUE(other.HasLock());
  for (const mode_t mode : {0644, 0600, 0444, 0000}) {
    chmod(path.c_str(), mode);
    EXPECT_FALSE(IsTakenByAnotherUser(path)) << std::oct << mode;
  }
}

// As on a full disk: the file is made, but nothing can be written into it.
TEST_F(Lock, IsKeptThoughNothingCanBeWritten) {
  rlimit usual{};
  getrlimit(RLIMIT_FSIZE, &usual);
  const auto before = signal(SIGXFSZ, SIG_IGN);
  const rlimit none{0, usual.rlim_max};
  setrlimit(RLIMIT_FSIZE, &none);
  {
    const OtherProcess other(path);
    EXPECT_TRUE(other.HasLock());
    InstanceLock lock(path);
    EXPECT_FALSE(lock.Take());
  }
  EXPECT_TRUE(InstanceLock(path).Take());
  setrlimit(RLIMIT_FSIZE, &usual);
  signal(SIGXFSZ, before);
}

// As on a disk that has no room for one more file: its name is too long to be made.
TEST_F(Lock, IsKeptWhereItsFileCannotBeMade) {
  const std::string too_long = home.File(std::string(300, 'x'));
  const OtherProcess other(too_long);
  EXPECT_TRUE(other.HasLock());
  InstanceLock lock(too_long);
  EXPECT_FALSE(lock.Take());
  EXPECT_EQ(lock.Problem(), "");
}

TEST_F(Lock, IsKeptThoughItsFileIsDeleted) {
  const OtherProcess other(path);
  ASSERT_TRUE(other.HasLock());
  std::filesystem::remove(path);
  InstanceLock lock(path);
  EXPECT_FALSE(lock.Take());
}

TEST_F(Lock, ThatCannotBeLookedAtIsNotTaken) {
  rlimit usual{};
  getrlimit(RLIMIT_NOFILE, &usual);
  const rlimit none{0, usual.rlim_max};
  setrlimit(RLIMIT_NOFILE, &none);
  InstanceLock lock(path);
  const bool is_taken = lock.Take();
  setrlimit(RLIMIT_NOFILE, &usual);
  EXPECT_FALSE(is_taken);
  EXPECT_NE(lock.Problem().find("Too many open files"), std::string::npos) << lock.Problem();
  EXPECT_TRUE(lock.Take());
  EXPECT_EQ(lock.Problem(), "");
}

TEST_F(Lock, GoesWithItsHolderAndItsFileToo) {
  {
    InstanceLock lock(path);
    ASSERT_TRUE(lock.Take());
    EXPECT_EQ(home.Read("tavrel.lock").find(std::to_string(getpid()) + "\n"), 0U);
  }
  EXPECT_FALSE(home.Exists("tavrel.lock"));
}

TEST_F(Lock, LeavesAFileThatAnotherHasPutInItsPlace) {
  {
    InstanceLock lock(path);
    ASSERT_TRUE(lock.Take());
    std::filesystem::remove(path);
    home.Write("tavrel.lock", "1\nTAVREL\n");
  }
  EXPECT_TRUE(home.Exists("tavrel.lock"));
}

TEST_F(Lock, DoesNotKeepTheProgramFromRunningWhereNoFileCanBeMade) {
  InstanceLock lock(home.File("missing/tavrel.lock"));
  EXPECT_TRUE(lock.Take());
}

}  // namespace
}  // namespace tavrel
