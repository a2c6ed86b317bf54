#ifndef TAVREL_LINK_LINE_MODE_H_
#define TAVREL_LINK_LINE_MODE_H_

#include <string_view>

namespace tavrel {

// The kind of line in force: how the port is set and how commands are framed.
struct LineMode {
  int TypeSel = 4;                // link variant 1..4
  std::string_view PortSettings;  // speed, parity, data bits, stop bits; empty: never chosen
  bool LinkDirect = false;        // letters instead of addresses; memory and port writes are not
                                  // acknowledged; no ESC is ever sent
  bool LinkPlugin = false;        // the instrument's address goes into the command
};

// The mode that follows on `before` when `type_sel` and `com_mode` come into force. A pair that
// names no mode changes nothing but TypeSel.
[[nodiscard]] LineMode ChooseLineMode(const LineMode& before, int type_sel, int com_mode);

}  // namespace tavrel

#endif  // TAVREL_LINK_LINE_MODE_H_
