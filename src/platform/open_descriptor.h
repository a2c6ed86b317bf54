#ifndef TAVREL_PLATFORM_OPEN_DESCRIPTOR_H_
#define TAVREL_PLATFORM_OPEN_DESCRIPTOR_H_

#include <unistd.h>

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
