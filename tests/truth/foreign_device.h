#ifndef TAVREL_TESTS_TRUTH_FOREIGN_DEVICE_H_
#define TAVREL_TESTS_TRUTH_FOREIGN_DEVICE_H_

#include <string>
#include <vector>

#include "tests/e2e/process.h"

namespace tavrel {

// Another device at the name to which a port falls through when its own device is gone: an
// instrument line of its own behind /dev/COMn, which answers like the right one. The name is
// there as long as this lives.
class ForeignDevice {
 public:
  ForeignDevice() = default;
  ~ForeignDevice();
  ForeignDevice(const ForeignDevice&) = delete;
  ForeignDevice& operator=(const ForeignDevice&) = delete;

  // Takes the first number n from 1 for which there is no /dev/COMn; the program of the line
  // stands in `directory`. False if the rights are missing or the line does not come up.
  [[nodiscard]] bool LayDown(const std::string& directory, const std::vector<std::string>& options);

  [[nodiscard]] int Port() const { return port_; }

  // Telegrams that were sent to it.
  [[nodiscard]] int Heard() const;

 private:
  int port_ = 0;
  std::string log_;
  Process line_;
};

}  // namespace tavrel

#endif  // TAVREL_TESTS_TRUTH_FOREIGN_DEVICE_H_
