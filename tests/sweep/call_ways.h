#ifndef TAVREL_TESTS_SWEEP_CALL_WAYS_H_
#define TAVREL_TESTS_SWEEP_CALL_WAYS_H_

#include <array>
#include <string_view>
#include <utility>

namespace tavrel {

// In which ways a call to the system can end, other than well: errors by their names, or with
// half of its bytes.
inline constexpr std::string_view kShortCount = "SHORT";

constexpr std::string_view WaysOf(std::string_view call) {
  constexpr std::string_view kOpening = "ENOSPC EIO EMFILE EINTR";
  constexpr std::string_view kWriting = "ENOSPC EIO EINTR SHORT";
  constexpr std::string_view kReading = "EIO EINTR SHORT";
  constexpr std::string_view kSyncing = "ENOSPC EIO EINTR";
  constexpr std::string_view kNaming = "ENOSPC EIO";
  constexpr std::array<std::pair<std::string_view, std::string_view>, 13> kWays{
      {{"open", kOpening},
       {"openat", kOpening},
       {"opendir", kOpening},
       {"read", kReading},
       {"pread", kReading},
       {"write", kWriting},
       {"pwrite", kWriting},
       {"fsync", kSyncing},
       {"fdatasync", kSyncing},
       {"ftruncate", kNaming},
       {"rename", kNaming},
       {"link", kNaming},
       {"mkdir", kNaming}}};
  for (const auto& [name, ways] : kWays) {
    if (name == call) {
      return ways;
    }
  }
  return "EIO";  // stat, unlink, access, lseek and the like
}

constexpr bool CanEndIn(std::string_view call, std::string_view way) {
  return WaysOf(call).find(way) != std::string_view::npos;
}

}  // namespace tavrel

#endif  // TAVREL_TESTS_SWEEP_CALL_WAYS_H_
