#include "files/new_file.h"

#include "files/recording_format.h"
#include "platform/file_system.h"

namespace tavrel {

std::string SaveHeader(RandomFile& file, const UnitRecord& unit) {
  return file.WriteAt(0, std::as_bytes(std::span(&unit, 1))) && file.Sync() ? "" : file.Error();
}

// The rows come before the header: without it nobody takes the file for a recording.
std::string MakeRecordingFile(RandomFile& file, const std::string& directory,
                              const std::string& name, const UnitRecord& unit,
                              std::span<const std::byte> rows) {
  const std::string path = JoinPath(directory, name);
  if (!file.Open(path, FileAccess::kCreateNew)) {
    return file.Error();
  }
  const bool has_rows = rows.empty() || file.WriteAt(kHeaderBytes, rows);
  std::string problem = has_rows ? SaveHeader(file, unit) : file.Error();
  if (problem.empty()) {
    SyncDirectory(directory);
    return "";
  }
  file.Close();
  const std::string not_deleted = DeleteFile(path);
  return not_deleted.empty() ? problem : problem + ", " + not_deleted;
}

}  // namespace tavrel
