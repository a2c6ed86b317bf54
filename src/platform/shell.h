#ifndef TAVREL_PLATFORM_SHELL_H_
#define TAVREL_PLATFORM_SHELL_H_

#include <string>

namespace tavrel {

// The operating system's shell.
class Shell {
 public:
  virtual ~Shell() = default;

  // Opens a document with the program registered for it. Whether that worked is not known.
  virtual void OpenDocument(const std::string& path) = 0;
};

}  // namespace tavrel

#endif  // TAVREL_PLATFORM_SHELL_H_
