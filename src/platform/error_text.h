#ifndef TAVREL_PLATFORM_ERROR_TEXT_H_
#define TAVREL_PLATFORM_ERROR_TEXT_H_

#include <string>
#include <system_error>

namespace tavrel {

// The system's words for a value of errno.
[[nodiscard]] inline std::string ErrorText(int error_number) {
  return std::generic_category().message(error_number);
}

}  // namespace tavrel

#endif  // TAVREL_PLATFORM_ERROR_TEXT_H_
