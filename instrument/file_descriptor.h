#ifndef TAVREL_INSTRUMENT_FILE_DESCRIPTOR_H_
#define TAVREL_INSTRUMENT_FILE_DESCRIPTOR_H_

#include <unistd.h>

#include <utility>

namespace instrument {

// Owns a file descriptor and closes it. -1 stands for none.
class FileDescriptor {
 public:
  FileDescriptor() = default;
  explicit FileDescriptor(int fd) : fd_(fd) {}
  ~FileDescriptor() { Close(); }
  FileDescriptor(const FileDescriptor&) = delete;
  FileDescriptor& operator=(const FileDescriptor&) = delete;
  FileDescriptor(FileDescriptor&& other) noexcept : fd_(std::exchange(other.fd_, -1)) {}
  FileDescriptor& operator=(FileDescriptor&& other) noexcept {
    if (this != &other) {
      Close();
      fd_ = std::exchange(other.fd_, -1);
    }
    return *this;
  }

  [[nodiscard]] int Get() const { return fd_; }
  [[nodiscard]] bool IsOpen() const { return fd_ >= 0; }
  void Close() {
    if (fd_ >= 0) {
      ::close(std::exchange(fd_, -1));
    }
  }

 private:
  int fd_ = -1;
};

}  // namespace instrument

#endif  // TAVREL_INSTRUMENT_FILE_DESCRIPTOR_H_
