#ifndef TAVREL_BASE_VERSION_H_
#define TAVREL_BASE_VERSION_H_

namespace tavrel {

inline constexpr const char* kVersion = "6.1";

}  // namespace tavrel

#endif  // TAVREL_BASE_VERSION_H_
