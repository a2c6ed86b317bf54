#ifndef TAVREL_PLATFORM_QT_QT_SHELL_H_
#define TAVREL_PLATFORM_QT_QT_SHELL_H_

#include "platform/shell.h"

namespace tavrel {

// The desktop that the program runs on.
class QtShell : public Shell {
 public:
  void OpenDocument(const std::string& path, std::function<void()> failed) override;
};

}  // namespace tavrel

#endif  // TAVREL_PLATFORM_QT_QT_SHELL_H_
