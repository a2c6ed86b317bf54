#ifndef TAVREL_PLATFORM_OPEN_DESCRIPTOR_H_
#define TAVREL_PLATFORM_OPEN_DESCRIPTOR_H_

#include <sys/stat.h>
#include <unistd.h>

#include <string>
#include <utility>

namespace tavrel {

// A descriptor of the system, or none; closed when it goes.
class OpenDescriptor {
 public:
  OpenDescriptor() = default;
  explicit OpenDescriptor(int number) : number_(number) {}
  ~OpenDescriptor() { Close(); }
  OpenDescriptor(OpenDescriptor&& other) noexcept : number_(std::exchange(other.number_, -1)) {}
  OpenDescriptor& operator=(OpenDescriptor&& other) noexcept {
    if (this != &other) {
      Close();
      number_ = std::exchange(other.number_, -1);
    }
    return *this;
  }
  OpenDescriptor(const OpenDescriptor&) = delete;
  OpenDescriptor& operator=(const OpenDescriptor&) = delete;

  [[nodiscard]] bool IsOpen() const { return number_ >= 0; }
  [[nodiscard]] int Number() const { return number_; }
  // Whether `path` itself, and not what a link there leads to, is the file that is open.
  [[nodiscard]] bool IsStillAt(const std::string& path) const {
    struct stat named {};
    struct stat opened {};
    return lstat(path.c_str(), &named) == 0 && fstat(number_, &opened) == 0 &&
           named.st_dev == opened.st_dev && named.st_ino == opened.st_ino;
  }
  void Close() {
    if (IsOpen()) {
      close(std::exchange(number_, -1));
    }
  }

 private:
  int number_ = -1;
};

}  // namespace tavrel

#endif  // TAVREL_PLATFORM_OPEN_DESCRIPTOR_H_
