#ifndef TAVREL_PLATFORM_CLIPBOARD_H_
#define TAVREL_PLATFORM_CLIPBOARD_H_

#include <functional>
#include <string_view>

#include "platform/surface.h"

namespace tavrel {

// The system's clipboard. What is put there takes the place of all that was there.
class Clipboard {
 public:
  virtual ~Clipboard() = default;

  // UTF-8; line ends stay as they are.
  virtual void SetText(std::string_view utf8) = 0;

  // A picture, as dots and as strokes (SVG). `draw` is called for each of both with a white
  // surface of the same size, in points, and draws the same on it.
  virtual void SetPicture(const std::function<void(Surface& to)>& draw) = 0;
};

}  // namespace tavrel

#endif  // TAVREL_PLATFORM_CLIPBOARD_H_
