#ifndef TAVREL_TESTS_SUPPORT_START_TELEGRAMS_H_
#define TAVREL_TESTS_SUPPORT_START_TELEGRAMS_H_

#include <string>
#include <vector>

namespace tavrel {

// A read of register R, as a direct line ("R12?") or a plug-in line ("n1vB2?") has it.
inline bool IsCount(const std::string& telegram) {
  const bool is_read = telegram.ends_with("?");
  return is_read && (telegram.starts_with("R") || telegram.find("vB") != std::string::npos);
}

// What a start of a recording has sent. The counts behind it, by which the order of the inputs is
// learned while the wait bar runs, are no part of it.
inline std::vector<std::string> WithoutCounts(std::vector<std::string> sent) {
  while (!sent.empty() && IsCount(sent.back())) {
    sent.pop_back();
  }
  return sent;
}

}  // namespace tavrel

#endif  // TAVREL_TESTS_SUPPORT_START_TELEGRAMS_H_
