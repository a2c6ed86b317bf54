#ifndef TAVREL_STATE_BOX_TITLES_H_
#define TAVREL_STATE_BOX_TITLES_H_

namespace tavrel {

// Titles of boxes about files.
inline constexpr const char* kReadTitle = "Read  file";
inline constexpr const char* kWriteTitle = "Write  file";

}  // namespace tavrel

#endif  // TAVREL_STATE_BOX_TITLES_H_
