#include "link/line_mode.h"

#include <array>
#include <optional>

namespace tavrel {
namespace {

constexpr std::string_view kFastDirect = "9600,n,8,2";
constexpr std::string_view kSlowDirect = "4800,n,8,2";
constexpr std::string_view kPluginLine = "9600,e,8,1";

struct Row {
  int type_sel;
  int com_mode;
  std::string_view port_settings;
  bool link_direct;
  std::optional<bool> link_plugin;  // empty: stays as it was
};

constexpr std::array kRows = {
    Row{1, 0, kPluginLine, false, std::nullopt}, Row{1, 1, kPluginLine, false, std::nullopt},
    Row{1, 2, kPluginLine, false, std::nullopt}, Row{2, 0, kFastDirect, true, false},
    Row{2, 1, kPluginLine, false, false},        Row{2, 2, kPluginLine, false, true},
    Row{3, 0, kSlowDirect, true, false},         Row{3, 1, kPluginLine, false, false},
    Row{3, 2, kPluginLine, false, true},         Row{4, 0, kSlowDirect, true, true},
    Row{4, 1, kPluginLine, false, true},         Row{4, 2, kPluginLine, false, true},
};

}  // namespace

LineMode ChooseLineMode(const LineMode& before, int type_sel, int com_mode) {
  LineMode mode = before;
  mode.TypeSel = type_sel;
  for (const Row& row : kRows) {
    if (row.type_sel == type_sel && row.com_mode == com_mode) {
      mode.PortSettings = row.port_settings;
      mode.LinkDirect = row.link_direct;
      mode.LinkPlugin = row.link_plugin.value_or(before.LinkPlugin);
    }
  }
  return mode;
}

}  // namespace tavrel
