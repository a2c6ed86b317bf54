#ifndef TAVREL_FILES_BUFFERS_LAST_H_
#define TAVREL_FILES_BUFFERS_LAST_H_

#include <string>

#include "base/language.h"
#include "files/recording_engine.h"

namespace tavrel {

// What a screen says beneath which nobody reads the instruments: "recordings wait in the
// instruments, at least for:  12 min". Empty while no recording runs.
[[nodiscard]] std::string BuffersLastText(const RecordingEngine& engine, Language language);

// Of one recording whose instrument is silent: "no answer: its buffer lasts for  12 min", and once
// it may be full that sets may be lost. Empty for any other.
[[nodiscard]] std::string SilentBufferText(const RecordingEngine& engine, int slot,
                                           Language language);

}  // namespace tavrel

#endif  // TAVREL_FILES_BUFFERS_LAST_H_
