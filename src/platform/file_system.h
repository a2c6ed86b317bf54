#ifndef TAVREL_PLATFORM_FILE_SYSTEM_H_
#define TAVREL_PLATFORM_FILE_SYSTEM_H_

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/random_file.h"

// What the program asks of directories and whole files. Paths are UTF-8; nothing throws.
// File names compare without regard to case, also where the disk does not.
namespace tavrel {

// Why the system gave no answer to a question. Functions that take one set it anew: Why is kNone
// if the answer can be relied on, also if it is "no".
struct NoAnswer {
  Failure Why = Failure::kNone;
  std::string Text;  // the system's words
};

// `directory` and `name` with exactly one separator between them; an empty directory gives the
// name alone.
[[nodiscard]] std::string JoinPath(std::string_view directory, std::string_view name);

// `path` trimmed of blanks and with a separator at its end; an empty path stays empty.
[[nodiscard]] std::string AddSeparator(std::string_view path);

// `path` trimmed of blanks and without a separator at its end; the root stays as it is.
[[nodiscard]] std::string StripSeparator(std::string_view path);

// The full path of the plain file `name` in `directory`, spelled as it is on the disk whatever
// the case of `name`; empty if there is none. The exact spelling wins over others.
[[nodiscard]] std::optional<std::string> FindFile(const std::string& directory,
                                                  std::string_view name);
[[nodiscard]] std::optional<std::string> FindFile(const std::string& directory,
                                                  std::string_view name, NoAnswer& no_answer);

// The same of a full path.
[[nodiscard]] std::optional<std::string> FindPath(const std::string& path);

// True if something in `directory` has the name `name`, whatever its case and whatever it is: a
// file, a directory, a device, a link that leads nowhere. A directory that cannot be read holds
// none.
[[nodiscard]] bool HoldsName(const std::string& directory, const std::string& name);

// True if `directory` holds at least one plain file (hidden ones do not count).
[[nodiscard]] bool HoldsAnyFile(const std::string& directory);
[[nodiscard]] bool HoldsAnyFile(const std::string& directory, NoAnswer& no_answer);

[[nodiscard]] bool DirectoryExists(const std::string& directory);

// Makes the directory and those above it. True if it is there afterwards.
[[nodiscard]] bool MakeDirectory(const std::string& directory);

// True if a file can be made in `directory` (it is tried, so that read-only media count too).
// Where it is the user's right or the medium that keeps him from it, `no_answer` stays empty.
[[nodiscard]] bool IsWritable(const std::string& directory);
[[nodiscard]] bool IsWritable(const std::string& directory, NoAnswer& no_answer);

// Whole content of a plain file as bytes; empty if it cannot be read or is larger than
// `limit_bytes`. That there is no plain file, and that it is too large, are answers.
[[nodiscard]] std::optional<std::string> ReadWholeFile(const std::string& path,
                                                       std::size_t limit_bytes);
[[nodiscard]] std::optional<std::string> ReadWholeFile(const std::string& path,
                                                       std::size_t limit_bytes,
                                                       NoAnswer& no_answer);

// Puts `bytes` in place of whatever `path` held: a temporary file beside it, synced, then
// renamed, so that a crash leaves the old file or the new one. Returns the empty text on
// success, else the system's error text; the old file is then untouched. A link stays a link and
// the file it leads to is replaced; a link that leads nowhere becomes the file. Directories,
// devices and write-protected files are refused. The permissions of the old file are kept.
[[nodiscard]] std::string ReplaceFile(const std::string& path, std::string_view bytes);

// Why ReplaceFile cannot even begin with `path`: it is tried, and nothing is left of it. Empty
// text if it can; the disk may be full nevertheless.
[[nodiscard]] std::string WhyNotReplaceable(const std::string& path);

// Puts `bytes` in place of whatever `path` held as ReplaceFile does, but a link is replaced and not
// followed. `goes_on` as of CopyFileTo.
[[nodiscard]] std::string WriteCopy(const std::string& path, std::string_view bytes,
                                    const std::function<bool()>& goes_on);

// Copies a plain file with the same care. A file is never copied onto itself, by whatever name. A
// link at `to` is replaced and what it leads to stays as it is; a link to a directory is refused.
// Empty text on success.
[[nodiscard]] std::string CopyFileTo(const std::string& from, const std::string& to);

// The same for a file that may be large: `goes_on` is called behind each 1 MB if more follows, and
// ends the copying by false. The old file is then untouched, and the text is not empty.
[[nodiscard]] std::string CopyFileTo(const std::string& from, const std::string& to,
                                     const std::function<bool()>& goes_on);

// Takes away from `directory` what ReplaceFile and CopyFileTo have left there of processes that
// were killed meanwhile. What a living process is about to write stays.
void RemoveLeftovers(const std::string& directory);

// Empty text on success; a file that is not there counts as deleted.
[[nodiscard]] std::string DeleteFile(const std::string& path);

// Takes a symbolic link away; what it leads to, and whatever is no link, stays.
void DeleteLink(const std::string& path);

// True if both paths lead to the same file, through links and other spellings.
[[nodiscard]] bool IsSameFile(const std::string& left, const std::string& right);

// True if `path` itself is a symbolic link, wherever it leads.
[[nodiscard]] bool IsLink(const std::string& path);

// Of the file or directory that `path` leads to; empty if there is none.
[[nodiscard]] std::optional<FileIdentity> IdentityOf(const std::string& path);

// Makes what happened to the names in `directory` (creation, renaming) durable.
void SyncDirectory(const std::string& directory);

// The directory in which paths begin that do not begin at the root. One that is not there leaves
// the process where it is.
void WorkIn(const std::string& directory);

// The directory of the running program, without a separator at its end.
[[nodiscard]] std::string ProgramDirectory();

// The user's home directory by the environment, else by the list of users.
[[nodiscard]] std::string HomeDirectory();

// Where a user's own files of this program belong if the program's directory cannot be
// written: $XDG_DATA_HOME/tavrel or ~/.local/share/tavrel. It need not exist.
[[nodiscard]] std::string UserDataDirectory();

// True if a package has laid the program into that directory. Then it belongs to the package, and
// nobody's own files are laid there, also where root could.
[[nodiscard]] bool IsInstalledByPackage(const std::string& program_directory);

// Where links COMn stand that say which device a serial port is: beside the program, or, where a
// package has installed it, among the user's own files.
[[nodiscard]] std::string PortLinkDirectory();

}  // namespace tavrel

#endif  // TAVREL_PLATFORM_FILE_SYSTEM_H_
