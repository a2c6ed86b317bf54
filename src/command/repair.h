#ifndef TAVREL_COMMAND_REPAIR_H_
#define TAVREL_COMMAND_REPAIR_H_

#include <optional>
#include <string>
#include <vector>

#include "files/stored_recording.h"

namespace tavrel {

// What can be made of a recording that is torn or damaged.
struct RepairedRecording {
  std::optional<std::string> Bytes;  // a whole recording; empty if nobody knows what its rows are
  std::vector<std::string> Remarks;  // what was kept, mended and left out, one a line
};

// Keeps the header and all whole rows. A header that no longer says what it has to is mended from
// the journal, as far as that tells it. Samples are never changed, also where they are not as they
// were sealed.
[[nodiscard]] RepairedRecording Repair(const StoredRecording& recording);

}  // namespace tavrel

#endif  // TAVREL_COMMAND_REPAIR_H_
