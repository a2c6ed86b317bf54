#ifndef TAVREL_TESTS_PLATFORM_CALLS_OF_FILES_H_
#define TAVREL_TESTS_PLATFORM_CALLS_OF_FILES_H_

#include <cstddef>
#include <functional>
#include <limits>

namespace tavrel {

// While it lives the system reads and writes files at a place (pread, pwrite) and puts them to the
// disk (fsync) as a bad medium does. One at a time.
// Levers: longest (bytes that one call moves at most), good_reads and good_syncs (calls of either
// kind until one fails with EIO; below 0: none fails), kill_at (writes until the process ends at
// once with status 9, below 0: never; it ends before that write, in the middle of it or behind it
// for kill_after_parts 0, 1 and 2).
class CallsOfFiles {
 public:
  struct Levers {
    std::size_t longest = std::numeric_limits<std::size_t>::max();
    int good_reads = -1;
    int good_syncs = -1;
    int kill_at = -1;
    int kill_after_parts = 0;
  };
  explicit CallsOfFiles(Levers levers);
  ~CallsOfFiles();
  CallsOfFiles(const CallsOfFiles&) = delete;
  CallsOfFiles& operator=(const CallsOfFiles&) = delete;

  // Calls of fsync so far.
  [[nodiscard]] static int Syncs();

  // Names of directories that were read so far, the two of each one itself included.
  [[nodiscard]] static int NamesListed();

  // Called before each reading of a file, but not by one within itself; empty for no more.
  static void BeforeRead(std::function<void()> call);
};

}  // namespace tavrel

#endif  // TAVREL_TESTS_PLATFORM_CALLS_OF_FILES_H_
