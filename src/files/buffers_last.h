#ifndef TAVREL_FILES_BUFFERS_LAST_H_
#define TAVREL_FILES_BUFFERS_LAST_H_

#include <string>

#include "base/language.h"
#include "files/recording_engine.h"

namespace tavrel {

// What a screen says beneath which nobody reads the instruments: "recordings wait in the
// instruments, at least for:  12 min". Empty while no recording runs.
[[nodiscard]] std::string BuffersLastText(const RecordingEngine& engine, Language language);

}  // namespace tavrel

#endif  // TAVREL_FILES_BUFFERS_LAST_H_
