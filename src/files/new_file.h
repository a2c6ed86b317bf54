#ifndef TAVREL_FILES_NEW_FILE_H_
#define TAVREL_FILES_NEW_FILE_H_

#include <cstddef>
#include <span>
#include <string>

#include "platform/random_file.h"
#include "state/unit_record.h"

// How a recording file comes to the disk. Both answer with the empty text, or with the system's
// words for what went wrong.
namespace tavrel {

// Writes the header of an open file so that it is on the disk.
[[nodiscard]] std::string SaveHeader(RandomFile& file, const UnitRecord& unit);

// Makes the file with its header and `rows` as they lie in a file, leaves it open, and puts it and
// its name on the disk. Anything that has the name already is left alone. What could not be
// completed is taken away again.
[[nodiscard]] std::string MakeRecordingFile(RandomFile& file, const std::string& directory,
                                            const std::string& name, const UnitRecord& unit,
                                            std::span<const std::byte> rows = {});

}  // namespace tavrel

#endif  // TAVREL_FILES_NEW_FILE_H_
