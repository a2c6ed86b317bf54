#ifndef TAVREL_PLATFORM_SHELL_H_
#define TAVREL_PLATFORM_SHELL_H_

#include <functional>
#include <string>

namespace tavrel {

// The operating system's shell.
class Shell {
 public:
  virtual ~Shell() = default;

  // Opens a document, or shows a directory, with the program registered for it. `failed` is called
  // if there is none or it did not start, at once or later, but not once the program has ended;
  // whether what came up shows the document is not known.
  virtual void OpenDocument(const std::string& path, std::function<void()> failed) = 0;
};

}  // namespace tavrel

#endif  // TAVREL_PLATFORM_SHELL_H_
