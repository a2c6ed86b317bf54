#ifndef TAVREL_PLATFORM_APPEND_FILE_H_
#define TAVREL_PLATFORM_APPEND_FILE_H_

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "platform/random_file.h"

namespace tavrel {

// A text file to which lines are only ever added. What a failed Append has left behind the end is
// written over by the next one; else nothing is written over and nothing is taken away.
class AppendFile {
 public:
  // Opens the file at the full path, which is made if nothing has that name; its directory has to
  // be there. A symbolic link is refused. False, with Error(), on failure.
  [[nodiscard]] bool Open(const std::string& path);
  void Close() { file_.Close(); }
  [[nodiscard]] bool IsOpen() const { return file_.IsOpen(); }

  // Bytes that the file held when it was opened, and what was added since.
  [[nodiscard]] std::int64_t Size() const { return size_; }

  // True if the last byte is no line feed: the program that wrote there was killed meanwhile.
  [[nodiscard]] bool EndsInsideLine();

  // All of it; empty if it cannot be read or is longer than `limit_bytes`.
  [[nodiscard]] std::optional<std::string> ReadAll(std::int64_t limit_bytes);

  // Puts `text` behind the end, in one write.
  [[nodiscard]] bool Append(std::string_view text);

  // Returns once all that was added is on the disk; behind the making of the file its name as well.
  [[nodiscard]] bool Sync();

  [[nodiscard]] std::optional<FileIdentity> Identity() const { return file_.Identity(); }
  [[nodiscard]] const std::string& Error() const { return file_.Error(); }

 private:
  RandomFile file_;
  std::string path_;
  std::int64_t size_ = 0;
  bool is_new_ = false;
};

}  // namespace tavrel

#endif  // TAVREL_PLATFORM_APPEND_FILE_H_
