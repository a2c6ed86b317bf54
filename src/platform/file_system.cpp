#include "platform/file_system.h"

#include <fcntl.h>
#include <pwd.h>
#include <signal.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <charconv>
#include <cstdlib>
#include <filesystem>
#include <functional>
#include <span>
#include <system_error>

#include "base/text.h"
#include "platform/error_text.h"

namespace tavrel {
namespace {

namespace fs = std::filesystem;

constexpr char kSeparator = '/';
constexpr int kTemporaryNames = 100;              // leftovers of crashes that are stepped over
constexpr std::size_t kCopyBlock{1024 * 1024UL};  // bytes
// What is copied goes to the disk in pieces: the system would keep back much of it, and the end of
// a copy to a slow medium would take minutes in which nothing else is served.
constexpr std::int64_t kSyncBytes{4L * 1024 * 1024};
constexpr std::string_view kTemporaryStart = ".tavrel-";
constexpr std::string_view kTemporaryEnd = ".tmp";

// A path that the system would cut at a zero byte leads nowhere instead of elsewhere.
fs::path ToPath(const std::string& path) {
  return path.find('\0') == std::string::npos ? fs::path(path) : fs::path();
}

// That nothing is there is an answer; all else that goes wrong is none.
void NoteError(const std::error_code& error, NoAnswer& no_answer) {
  const Failure why = FailureOf(error.value());
  if (why != Failure::kNone && why != Failure::kMissing) {
    no_answer = {why, ErrorText(error.value())};
  }
}

bool IsPlainFile(const std::string& path, NoAnswer& no_answer) {
  std::error_code error;
  const bool is_plain = fs::is_regular_file(ToPath(path), error);
  NoteError(error, no_answer);
  return is_plain;
}

// Hands the names in `directory` to `visit` until it returns false. A directory that cannot be
// read has none.
void ForEachName(const std::string& directory,
                 const std::function<bool(const std::string& name)>& visit, NoAnswer& no_answer) {
  std::error_code error;
  fs::directory_iterator entry(ToPath(directory.empty() ? "." : directory), error);
  for (; !error && entry != fs::directory_iterator(); entry.increment(error)) {
    if (!visit(entry->path().filename().string())) {
      return;
    }
  }
  NoteError(error, no_answer);
}

// A hidden name, so that a leftover is in nobody's list of files; short, so that it fits
// wherever the target's own name fits.
std::string TemporaryName(int number) {
  return std::string(kTemporaryStart) + std::to_string(getpid()) + "-" + std::to_string(number) +
         std::string(kTemporaryEnd);
}

// The number at the start of `text`, which loses it; empty if there is none.
std::optional<int> TakeNumber(std::string_view& text) {
  int number = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  if (error != std::errc() || number < 0) {
    return std::nullopt;
  }
  text.remove_prefix(static_cast<std::size_t>(end - text.data()));
  return number;
}

// True for the name of a temporary file whose process is dead. One of this process's own number is
// of another life, too, for nothing is being written when this is asked.
bool IsLeftover(std::string_view name) {
  if (!name.starts_with(kTemporaryStart)) {
    return false;
  }
  name.remove_prefix(kTemporaryStart.size());
  const std::optional<int> process = TakeNumber(name);
  if (!process || *process == 0 || !name.starts_with('-')) {
    return false;
  }
  name.remove_prefix(1);
  const bool is_ours = TakeNumber(name) && name == kTemporaryEnd;
  const bool is_dead = *process == getpid() || (kill(*process, 0) != 0 && errno == ESRCH);
  return is_ours && is_dead;
}

// A new file in `directory` under a name that nobody uses. Empty if none can be made; `file`
// then knows why.
std::string MakeTemporary(const std::string& directory, RandomFile& file) {
  for (int number = 0; number < kTemporaryNames; ++number) {
    std::string path = JoinPath(directory, TemporaryName(number));
    std::error_code error;
    if (fs::exists(fs::symlink_status(ToPath(path), error))) {
      continue;
    }
    return file.Open(path, FileAccess::kCreateNew) ? path : std::string();
  }
  return "";
}

// What becomes of a link in the place of a new content.
enum class Links {
  kFollow,   // it stays, and the file that it leads to is replaced
  kReplace,  // it is replaced itself
};

// The place that a new content goes to.
std::string TargetOf(const std::string& path, Links links) {
  if (links == Links::kReplace) {
    return path;
  }
  std::error_code error;
  const fs::path target = fs::canonical(ToPath(path), error);
  return error ? path : target.string();
}

// 0 if `path` may be replaced, else the error number. Only plain files are replaced, and none
// that the user has write-protected, although a rename would get by.
int ReplaceRefusal(const std::string& path) {
  if (ToPath(path).empty()) {
    return ENOENT;
  }
  std::error_code error;
  const fs::file_status status = fs::status(ToPath(path), error);
  if (!fs::exists(status)) {
    return 0;
  }
  if (fs::is_directory(status)) {
    return EISDIR;
  }
  if (fs::is_symlink(fs::symlink_status(ToPath(path), error))) {
    return 0;  // only the link goes
  }
  if (!fs::is_regular_file(status)) {
    return EOPNOTSUPP;
  }
  return access(path.c_str(), W_OK) == 0 ? 0 : errno;
}

// A new content of a file that takes the place of the old one at once, or never: until Commit
// it lives under a temporary name beside its target.
class Replacement {
 public:
  Replacement(const std::string& path, Links links) : target_(TargetOf(path, links)) {
    const int refusal = ReplaceRefusal(target_);
    if (refusal != 0) {
      error_ = ErrorText(refusal);
      return;
    }
    directory_ = fs::path(target_).parent_path().string();
    temporary_ = MakeTemporary(directory_, file_);
    if (temporary_.empty()) {
      error_ = file_.Error().empty() ? ErrorText(EEXIST) : file_.Error();
    }
  }
  ~Replacement() {
    if (!temporary_.empty()) {
      unlink(temporary_.c_str());
    }
  }
  Replacement(const Replacement&) = delete;
  Replacement& operator=(const Replacement&) = delete;

  // After a failure further calls do nothing, so that a caller may ask for Error() at the end.
  void Append(std::span<const std::byte> bytes) {
    if (error_.empty() && !file_.WriteAt(length_, bytes)) {
      error_ = file_.Error();
    }
    length_ += static_cast<std::int64_t>(bytes.size());
  }

  void Sync() {
    if (error_.empty() && !file_.Sync()) {
      error_ = file_.Error();
    }
  }

  void Commit() {
    Sync();
    if (!error_.empty()) {
      return;
    }
    file_.Close();
    KeepPermissions();
    if (rename(temporary_.c_str(), target_.c_str()) != 0) {
      error_ = ErrorText(errno);
      return;
    }
    temporary_.clear();
    SyncDirectory(directory_);
  }

  [[nodiscard]] const std::string& Error() const { return error_; }

 private:
  void KeepPermissions() const {
    std::error_code error;
    const fs::file_status old = fs::symlink_status(target_, error);
    if (fs::is_regular_file(old)) {
      fs::permissions(temporary_, old.permissions(), error);
    }
  }

  std::string target_;
  std::string directory_;
  std::string temporary_;  // empty: nothing is left to be removed
  RandomFile file_;
  std::int64_t length_ = 0;
  std::string error_;
};

}  // namespace

std::string JoinPath(std::string_view directory, std::string_view name) {
  if (directory.empty()) {
    return std::string(name);
  }
  const std::size_t kept = directory.find_last_not_of(kSeparator) + 1;
  const std::size_t skipped = std::min(name.find_first_not_of(kSeparator), name.size());
  return std::string(directory.substr(0, kept)) + kSeparator + std::string(name.substr(skipped));
}

std::string AddSeparator(std::string_view path) {
  std::string result = Trim(path);
  if (!result.empty() && !result.ends_with(kSeparator)) {
    result += kSeparator;
  }
  return result;
}

std::string StripSeparator(std::string_view path) {
  std::string result = Trim(path);
  while (result.size() > 1 && result.ends_with(kSeparator)) {
    result.pop_back();
  }
  return result;
}

std::optional<std::string> FindFile(const std::string& directory, std::string_view name) {
  NoAnswer unused;
  return FindFile(directory, name, unused);
}

std::optional<std::string> FindFile(const std::string& directory, std::string_view name,
                                    NoAnswer& no_answer) {
  no_answer = {};
  if (name.empty() || name.find(kSeparator) != std::string_view::npos) {
    return std::nullopt;
  }
  std::string exact = JoinPath(directory, name);
  if (IsPlainFile(exact, no_answer)) {
    return exact;
  }
  // Several spellings may stand side by side; the least one is taken, so that the answer does
  // not depend on the order of the directory.
  std::optional<std::string> found;
  const auto visit = [&](const std::string& other) {
    const std::string path = JoinPath(directory, other);
    const bool is_it = EqualNoCase(other, name) && IsPlainFile(path, no_answer);
    if (is_it && (!found || path < *found)) {
      found = path;
    }
    return true;
  };
  ForEachName(directory, visit, no_answer);
  if (found) {
    no_answer = {};
  }
  return found;
}

std::optional<std::string> FindPath(const std::string& path) {
  const std::size_t name = path.rfind(kSeparator) + 1;  // without a separator the sum wraps to 0
  return FindFile(StripSeparator(path.substr(0, name)), path.substr(name));
}

bool HoldsName(const std::string& directory, const std::string& name) {
  std::error_code error;
  if (fs::exists(fs::symlink_status(ToPath(JoinPath(directory, name)), error))) {
    return true;
  }
  bool is_taken = false;
  const auto visit = [&](const std::string& other) {
    is_taken = EqualNoCase(other, name);
    return !is_taken;
  };
  NoAnswer unused;
  ForEachName(directory, visit, unused);
  return is_taken;
}

bool HoldsAnyFile(const std::string& directory) {
  NoAnswer unused;
  return HoldsAnyFile(directory, unused);
}

bool HoldsAnyFile(const std::string& directory, NoAnswer& no_answer) {
  no_answer = {};
  bool holds = false;
  const auto visit = [&](const std::string& name) {
    holds = !name.starts_with('.') && IsPlainFile(JoinPath(directory, name), no_answer);
    return !holds;
  };
  ForEachName(directory, visit, no_answer);
  if (holds) {
    no_answer = {};
  }
  return holds;
}

bool DirectoryExists(const std::string& directory) {
  std::error_code error;
  return fs::is_directory(ToPath(directory), error);
}

bool MakeDirectory(const std::string& directory) {
  std::error_code error;
  fs::create_directories(ToPath(directory), error);
  return DirectoryExists(directory);
}

bool IsWritable(const std::string& directory) {
  NoAnswer unused;
  return IsWritable(directory, unused);
}

bool IsWritable(const std::string& directory, NoAnswer& no_answer) {
  no_answer = {};
  RandomFile probe;
  const std::string path = MakeTemporary(directory, probe);
  if (path.empty()) {
    if (probe.Why() != Failure::kNotAllowed) {
      no_answer = {Failure::kOther, probe.Error().empty() ? ErrorText(EEXIST) : probe.Error()};
    }
    return false;
  }
  probe.Close();
  const std::string not_deleted = DeleteFile(path);
  if (!not_deleted.empty()) {
    no_answer = {Failure::kOther, not_deleted};
  }
  return not_deleted.empty();
}

std::optional<std::string> ReadWholeFile(const std::string& path, std::size_t limit_bytes) {
  NoAnswer unused;
  return ReadWholeFile(path, limit_bytes, unused);
}

std::optional<std::string> ReadWholeFile(const std::string& path, std::size_t limit_bytes,
                                         NoAnswer& no_answer) {
  no_answer = {};
  RandomFile file;
  if (!file.Open(path, FileAccess::kRead)) {
    const bool is_there = file.Why() != Failure::kMissing && file.Why() != Failure::kNoPlainFile;
    no_answer = is_there ? NoAnswer{file.Why(), file.Error()} : NoAnswer();
    return std::nullopt;
  }
  const std::int64_t size = file.Size();
  if (size > 0 && static_cast<std::uint64_t>(size) > limit_bytes) {
    return std::nullopt;
  }
  std::string content(static_cast<std::size_t>(std::max<std::int64_t>(size, 0)), '\0');
  const std::int64_t got =
      size < 0 ? -1 : file.ReadAt(0, std::as_writable_bytes(std::span(content)));
  if (got < 0) {
    no_answer = {Failure::kOther, file.Error()};
    return std::nullopt;
  }
  content.resize(static_cast<std::size_t>(got));
  return content;
}

std::string ReplaceFile(const std::string& path, std::string_view bytes) {
  Replacement replacement(path, Links::kFollow);
  replacement.Append(std::as_bytes(std::span(bytes)));
  replacement.Commit();
  return replacement.Error();
}

std::string WhyNotReplaceable(const std::string& path) {
  return Replacement(path, Links::kFollow).Error();
}

std::string CopyFileTo(const std::string& from, const std::string& to) {
  return CopyFileTo(from, to, [] { return true; });
}

std::string CopyFileTo(const std::string& from, const std::string& to,
                       const std::function<bool()>& goes_on) {
  RandomFile source;
  if (!source.Open(from, FileAccess::kRead)) {
    return source.Error();
  }
  if (IsSameFile(from, to)) {
    return ErrorText(EEXIST);
  }
  Replacement replacement(to, Links::kReplace);
  std::vector<std::byte> block(kCopyBlock);
  std::int64_t place = 0;
  std::int64_t got = source.ReadAt(place, block);
  while (got > 0 && replacement.Error().empty()) {
    replacement.Append(std::span(block).first(static_cast<std::size_t>(got)));
    place += got;
    got = source.ReadAt(place, block);
    if (got > 0 && !goes_on()) {
      return ErrorText(ECANCELED);
    }
    if (place % kSyncBytes == 0) {
      replacement.Sync();
    }
  }
  if (got < 0) {
    return source.Error();
  }
  replacement.Commit();
  return replacement.Error();
}

std::string WriteCopy(const std::string& path, std::string_view bytes,
                      const std::function<bool()>& goes_on) {
  Replacement replacement(path, Links::kReplace);
  while (!bytes.empty() && replacement.Error().empty()) {
    const std::string_view block = bytes.substr(0, kCopyBlock);
    replacement.Append(std::as_bytes(std::span(block)));
    bytes.remove_prefix(block.size());
    if (!bytes.empty() && !goes_on()) {
      return ErrorText(ECANCELED);
    }
  }
  replacement.Commit();
  return replacement.Error();
}

void RemoveLeftovers(const std::string& directory) {
  std::vector<std::string> left;
  const auto visit = [&left](const std::string& name) {
    if (IsLeftover(name)) {
      left.push_back(name);
    }
    return true;
  };
  NoAnswer unused;
  ForEachName(directory, visit, unused);
  for (const std::string& name : left) {
    const std::string path = JoinPath(directory, name);
    std::error_code error;
    if (fs::is_regular_file(fs::symlink_status(ToPath(path), error))) {
      static_cast<void>(DeleteFile(path));
    }
  }
}

std::string DeleteFile(const std::string& path) {
  if (path.find('\0') != std::string::npos) {
    return ErrorText(EINVAL);
  }
  const bool gone = unlink(path.c_str()) == 0 || errno == ENOENT || errno == ENOTDIR;
  return gone ? "" : ErrorText(errno);
}

void DeleteLink(const std::string& path) {
  std::error_code error;
  if (fs::is_symlink(fs::symlink_status(ToPath(path), error))) {
    static_cast<void>(DeleteFile(path));
  }
}

bool IsSameFile(const std::string& left, const std::string& right) {
  std::error_code error;
  return fs::equivalent(ToPath(left), ToPath(right), error) && !error;
}

bool IsLink(const std::string& path) {
  std::error_code error;
  return fs::is_symlink(fs::symlink_status(ToPath(path), error));
}

std::optional<FileIdentity> IdentityOf(const std::string& path) {
  struct stat status {};
  if (path.find('\0') != std::string::npos || stat(path.c_str(), &status) != 0) {
    return std::nullopt;
  }
  return FileIdentity{status.st_dev, status.st_ino};
}

void SyncDirectory(const std::string& directory) {
  const fs::path path = ToPath(directory.empty() ? "." : directory);
  const int handle = open(path.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
  if (handle >= 0) {
    fsync(handle);
    close(handle);
  }
}

void WorkIn(const std::string& directory) {
  std::error_code no_matter;
  fs::current_path(directory, no_matter);
}

std::string ProgramDirectory() {
  std::error_code error;
  const fs::path program = fs::read_symlink("/proc/self/exe", error);
  return error ? fs::current_path(error).string() : program.parent_path().string();
}

std::string HomeDirectory() {
  const char* const home = std::getenv("HOME");
  if (home != nullptr && *home == kSeparator) {
    return home;
  }
  const passwd* const user = getpwuid(getuid());
  return user != nullptr ? user->pw_dir : "/";
}

std::string UserDataDirectory() {
  // A relative path in this variable is invalid by its own rules.
  const char* const data_home = std::getenv("XDG_DATA_HOME");
  if (data_home != nullptr && *data_home == kSeparator) {
    return JoinPath(data_home, "tavrel");
  }
  return JoinPath(HomeDirectory(), ".local/share/tavrel");
}

bool IsInstalledByPackage(const std::string& program_directory) {
  std::error_code error;
  return fs::exists(JoinPath(program_directory, "installed-by-package"), error);
}

std::string PortLinkDirectory() {
  const std::string program = ProgramDirectory();
  return IsInstalledByPackage(program) ? UserDataDirectory() : program;
}

}  // namespace tavrel
