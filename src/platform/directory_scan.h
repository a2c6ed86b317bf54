#ifndef TAVREL_PLATFORM_DIRECTORY_SCAN_H_
#define TAVREL_PLATFORM_DIRECTORY_SCAN_H_

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

namespace tavrel {

// Which files of a directory a scan reads, and what of them.
struct ScanRequest {
  std::string Directory;
  // Decides by the name alone, before anything is opened.
  std::function<bool(std::string_view name)> Wants;
  std::int64_t LeastBytes = 0;  // shorter files are passed over
  std::int64_t Offset = 0;      // where the piece that is read begins
  std::size_t Bytes = 0;        // its length, 0..kMaxScanBytes
  // Takes a file's name, its piece, which is shorter where the file ends, and how many bytes the
  // whole file has. Both texts are gone when the call returns.
  std::function<void(std::string_view name, std::string_view piece, std::int64_t length)> Found;
  // Hears, after each file, how many of the wanted ones are done. May be empty.
  std::function<void(std::size_t done, std::size_t of)> Progress;
};

inline constexpr std::size_t kMaxScanBytes = 1000;

// Goes through a directory once and reads one piece of each wanted file. Directories, hidden
// names, devices, pipes, links to nowhere and files that cannot be read are passed over. The
// order is the directory's own. Empty text on success, else the system's error text, which
// concerns the directory itself; some files may have been found by then.
[[nodiscard]] std::string ScanDirectory(const ScanRequest& request);

}  // namespace tavrel

#endif  // TAVREL_PLATFORM_DIRECTORY_SCAN_H_
