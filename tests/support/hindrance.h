#ifndef TAVREL_TESTS_SUPPORT_HINDRANCE_H_
#define TAVREL_TESTS_SUPPORT_HINDRANCE_H_

#include <fcntl.h>
#include <sys/resource.h>
#include <unistd.h>

#include <filesystem>
#include <stdexcept>
#include <string>

// What keeps a program from its files, as the system itself does it.
namespace tavrel {

// As long as it lives the process can open no further file: "Too many open files".
class NoHandlesLeft {
 public:
  NoHandlesLeft() {
    getrlimit(RLIMIT_NOFILE, &before_);
    const int lowest_free = fcntl(0, F_DUPFD, 0);
    close(lowest_free);
    rlimit none = before_;
    none.rlim_cur = static_cast<rlim_t>(lowest_free);
    if (lowest_free < 0 || setrlimit(RLIMIT_NOFILE, &none) != 0) {
      throw std::runtime_error("the limit of open files cannot be set");
    }
  }
  ~NoHandlesLeft() { setrlimit(RLIMIT_NOFILE, &before_); }
  NoHandlesLeft(const NoHandlesLeft&) = delete;
  NoHandlesLeft& operator=(const NoHandlesLeft&) = delete;

 private:
  rlimit before_{};
};

// As long as it lives the process has the rights of nobody, if it has those of the system's owner
// otherwise; a user's own rights are as small.
class WithoutRights {
 public:
  WithoutRights() : before_(geteuid()) {
    if (before_ == 0 && seteuid(kNobody) != 0) {
      throw std::runtime_error("the rights cannot be given up");
    }
  }
  ~WithoutRights() { static_cast<void>(seteuid(before_)); }
  WithoutRights(const WithoutRights&) = delete;
  WithoutRights& operator=(const WithoutRights&) = delete;

 private:
  static constexpr uid_t kNobody = 65534;
  uid_t before_;
};

// Puts a link that leads to itself at `path`: asking for the file is an error that is neither "not
// there" nor "not allowed".
inline void MakeUnreadable(const std::string& path) {
  std::filesystem::remove(path);
  std::filesystem::create_symlink(path, path);
}

}  // namespace tavrel

#endif  // TAVREL_TESTS_SUPPORT_HINDRANCE_H_
