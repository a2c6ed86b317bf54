#include "platform/directory_scan.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <memory>
#include <optional>
#include <system_error>
#include <vector>

#include "platform/error_text.h"

namespace tavrel {
namespace {

struct CloseDirectory {
  void operator()(DIR* directory) const { closedir(directory); }
};
using OpenDirectory = std::unique_ptr<DIR, CloseDirectory>;

// A path that the system would cut at a zero byte leads nowhere instead of elsewhere.
OpenDirectory Open(const std::string& path) {
  if (path.find('\0') != std::string::npos) {
    errno = ENOENT;
    return nullptr;
  }
  return OpenDirectory(opendir(path.empty() ? "." : path.c_str()));
}

// What the directory itself says of an entry. A link or an entry of a file system that does not
// tell is looked at when it is open.
bool MayBePlainFile(const dirent& entry) {
  return entry.d_type == DT_REG || entry.d_type == DT_LNK || entry.d_type == DT_UNKNOWN;
}

// Names one behind the other, each with a zero byte at its end: ten thousand of them cost no
// more than a few blocks of memory.
class NameList {
 public:
  void Add(const char* name) {
    places_.push_back(bytes_.size());
    bytes_.append(name);
    bytes_.push_back('\0');
  }
  [[nodiscard]] std::size_t Size() const { return places_.size(); }
  [[nodiscard]] const char* At(std::size_t index) const { return bytes_.data() + places_[index]; }

 private:
  std::string bytes_;
  std::vector<std::size_t> places_;
};

// Fills `names` with the wanted ones. 0, or the error number.
int ListNames(DIR* directory, const ScanRequest& request, NameList& names) {
  errno = 0;
  for (const dirent* entry = readdir(directory); entry != nullptr; entry = readdir(directory)) {
    const bool wanted = entry->d_name[0] != '.' && MayBePlainFile(*entry) &&
                        (!request.Wants || request.Wants(entry->d_name));
    if (wanted) {
      names.Add(entry->d_name);
    }
    errno = 0;
  }
  return errno;
}

using Piece = std::array<char, kMaxScanBytes>;

// How many bytes of the wanted piece came, and of how many.
struct Got {
  std::size_t Bytes = 0;
  std::int64_t Length = 0;
};

// Empty for what is no readable plain file or too short.
std::optional<Got> ReadPiece(int handle, const ScanRequest& request, Piece& piece) {
  struct stat status {};
  const bool fits = fstat(handle, &status) == 0 && S_ISREG(status.st_mode) &&
                    status.st_size >= request.LeastBytes;
  if (!fits) {
    return std::nullopt;
  }
  const ssize_t got =
      pread(handle, piece.data(), std::min(request.Bytes, piece.size()), request.Offset);
  return got < 0 ? std::nullopt : std::optional(Got{static_cast<std::size_t>(got), status.st_size});
}

// O_NONBLOCK: a link may lead to a pipe, and opening that would wait for its other end.
void ReadFile(int directory, const char* name, const ScanRequest& request) {
  const int handle = openat(directory, name, O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC);
  if (handle < 0) {
    return;
  }
  Piece piece;
  const std::optional<Got> got = ReadPiece(handle, request, piece);
  close(handle);
  if (got) {
    request.Found(name, std::string_view(piece.data(), got->Bytes), got->Length);
  }
}

}  // namespace

std::string ScanDirectory(const ScanRequest& request) {
  const OpenDirectory directory = Open(request.Directory);
  if (directory == nullptr) {
    return ErrorText(errno);
  }
  NameList names;
  const int problem = ListNames(directory.get(), request, names);
  for (std::size_t index = 0; index < names.Size(); ++index) {
    ReadFile(dirfd(directory.get()), names.At(index), request);
    if (request.Progress) {
      request.Progress(index + 1, names.Size());
    }
  }
  return problem == 0 ? "" : ErrorText(problem);
}

}  // namespace tavrel
