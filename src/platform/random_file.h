#ifndef TAVREL_PLATFORM_RANDOM_FILE_H_
#define TAVREL_PLATFORM_RANDOM_FILE_H_

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>

namespace tavrel {

// Why an operation on a file or a directory failed.
enum class Failure {
  kNone,
  kMissing,      // nothing has that name, or nothing can have it
  kNoPlainFile,  // a directory, a device or the like has it
  kNotAllowed,   // the user has no right to it, or the medium cannot be written at all
  kOther,        // all else: nobody can tell what is there, and the next try may succeed
};

// The kind of an error number of the system; kNone for 0.
[[nodiscard]] Failure FailureOf(int error_number);

// How a file is opened. Nothing here ever truncates a file.
enum class FileAccess {
  kRead,       // must exist
  kUpdate,     // must exist, read and write
  kCreate,     // made if missing, read and write; a symbolic link is refused, not followed
  kCreateNew,  // made, read and write; an existing file is refused
};

// Which file it is, for all its names and handles alike. The number of a file that was deleted may
// be given to another one later: it tells only while the file is open or has a name.
struct FileIdentity {
  std::uint64_t Device = 0;
  std::uint64_t Number = 0;

  [[nodiscard]] bool operator==(const FileIdentity&) const = default;
};

// An open file that is read and written at any place. Owns the operating system's handle and
// closes it when it goes. Movable, not copyable. A closed file answers every operation with
// failure and an error text, never with a crash.
//
// Operations that can fail return true on success; on failure Error() holds the system's own
// words ("No space left on device") until the next failure.
class RandomFile {
 public:
  RandomFile() = default;
  ~RandomFile();
  RandomFile(RandomFile&& other) noexcept;
  RandomFile& operator=(RandomFile&& other) noexcept;
  RandomFile(const RandomFile&) = delete;
  RandomFile& operator=(const RandomFile&) = delete;

  // `path` is UTF-8. An already open handle is closed first, also when opening then fails.
  // Directories and other things that are no plain files are refused.
  [[nodiscard]] bool Open(const std::string& path, FileAccess access);
  void Close();
  [[nodiscard]] bool IsOpen() const { return handle_ >= 0; }

  // Empty while it is closed.
  [[nodiscard]] std::optional<FileIdentity> Identity() const;

  // True if the file is open but its last name has been deleted: it lives as long as this handle.
  [[nodiscard]] bool IsNameless() const;

  // Reserves the file as long as this handle is open. False if another handle, of this program or
  // of another one, has reserved it. Where the medium cannot do that it is true.
  [[nodiscard]] bool Lock();

  // Length in bytes, -1 on failure.
  [[nodiscard]] std::int64_t Size();

  // Reads up to bytes.size() bytes from `offset` on. Returns how many came (fewer at the end
  // of the file), -1 on failure.
  [[nodiscard]] std::int64_t ReadAt(std::int64_t offset, std::span<std::byte> bytes);

  // Writes all bytes at `offset`, in one call to the system where it takes them at once. A
  // part that was written before the failure stays in the file.
  [[nodiscard]] bool WriteAt(std::int64_t offset, std::span<const std::byte> bytes);

  // Returns once everything written so far is on the disk.
  [[nodiscard]] bool Sync();

  [[nodiscard]] const std::string& Error() const { return error_; }

  // The kind of that failure; kNone before the first.
  [[nodiscard]] Failure Why() const { return why_; }

 private:
  bool Fail(int error_number);

  int handle_ = -1;
  std::string error_;
  Failure why_ = Failure::kNone;
};

}  // namespace tavrel

#endif  // TAVREL_PLATFORM_RANDOM_FILE_H_
