#ifndef TAVREL_BENCH_BARE_LINE_H_
#define TAVREL_BENCH_BARE_LINE_H_

#include <string>
#include <string_view>

namespace tavrel {

// A serial line by nothing but the calls of the system: what the wire itself takes.
class BareLine {
 public:
  explicit BareLine(const std::string& device);
  ~BareLine();
  BareLine(const BareLine&) = delete;
  BareLine& operator=(const BareLine&) = delete;

  // Sends a command and sleeps until its reply ends with a carriage return. False if none came
  // within a second.
  bool Exchange(std::string_view command);

 private:
  int handle_ = -1;
};

}  // namespace tavrel

#endif  // TAVREL_BENCH_BARE_LINE_H_
