#ifndef TAVREL_PLATFORM_QT_BOX_ICONS_H_
#define TAVREL_PLATFORM_QT_BOX_ICONS_H_

#include <QIcon>

#include "platform/dialogs.h"

namespace tavrel {

// The sign of a box, drawn anew for each size that is asked for: it is as sharp at twice the scale
// as at one. BoxIcon::kNone has the null icon.
[[nodiscard]] QIcon BoxSign(BoxIcon icon);

}  // namespace tavrel

#endif  // TAVREL_PLATFORM_QT_BOX_ICONS_H_
