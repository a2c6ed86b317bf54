#ifndef TAVREL_PLATFORM_QT_QT_CLIPBOARD_H_
#define TAVREL_PLATFORM_QT_QT_CLIPBOARD_H_

#include "platform/clipboard.h"

namespace tavrel {

// The clipboard of the desktop. A picture is 1600 x 900 dots of 1/96 inch, as an image and as
// image/svg+xml.
class QtClipboard : public Clipboard {
 public:
  void SetText(std::string_view utf8) override;
  void SetPicture(const std::function<void(Surface& to)>& draw) override;
};

}  // namespace tavrel

#endif  // TAVREL_PLATFORM_QT_QT_CLIPBOARD_H_
