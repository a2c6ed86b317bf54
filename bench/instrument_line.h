#ifndef TAVREL_BENCH_INSTRUMENT_LINE_H_
#define TAVREL_BENCH_INSTRUMENT_LINE_H_

#include <string>
#include <vector>

#include "tests/e2e/process.h"

namespace tavrel {

inline constexpr int kDirect = 0;
inline constexpr int kPlugin = 1;

// Virtual instruments on a line at its true speed, linked as `device`.
class InstrumentLine {
 public:
  InstrumentLine(int mode, std::string device, const std::vector<std::string>& options = {})
      : mode_(mode), device_(std::move(device)), instrument_(Command(options)) {
    is_up_ = instrument_.ReadLine(std::chrono::seconds(20)).starts_with("ready");
  }

  [[nodiscard]] bool IsUp() const { return is_up_; }
  [[nodiscard]] const std::string& Device() const { return device_; }
  // The read of register Y with index 1 of instrument 1, in the words of the line.
  [[nodiscard]] const char* Read() const { return mode_ == kDirect ? "Y01?" : "np21?"; }

 private:
  [[nodiscard]] std::vector<std::string> Command(const std::vector<std::string>& more) const {
    std::vector<std::string> command = {TAVREL_INSTRUMENT,
                                        "--mode",
                                        mode_ == kDirect ? "direct" : "plugin",
                                        "--line-speed",
                                        mode_ == kDirect ? "4800" : "9600",
                                        "--link",
                                        device_};
    command.insert(command.end(), more.begin(), more.end());
    return command;
  }

  int mode_;
  std::string device_;
  Process instrument_;
  bool is_up_ = false;
};

}  // namespace tavrel

#endif  // TAVREL_BENCH_INSTRUMENT_LINE_H_
