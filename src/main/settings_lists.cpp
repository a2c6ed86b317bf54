#include "main/settings_lists.h"

#include <algorithm>

#include "base/text.h"
#include "platform/serial_names.h"

namespace tavrel {
namespace {

constexpr int kDefaultWidthIndex = 1;
constexpr std::size_t kLongestName = 32;  // characters of what an adapter says of itself

}  // namespace

std::vector<std::string> PortItems() {
  std::vector<std::string> items;
  for (int index = 0; index <= kSerialPorts; ++index) {
    items.push_back(" " + PortAt(index));
  }
  return items;
}

std::string PortItem(int number, const PortDescription& port, Language language) {
  constexpr BothLanguages kMissing{"(not present)", "(nicht vorhanden)"};
  std::string item = " " + PortAt(number) + "   " + port.Device;
  if (!port.IsThere) {
    return item + "  " + std::string(kMissing.In(language));
  }
  for (const std::string& text : {port.Maker, port.Name, port.Serial}) {
    if (!text.empty()) {
      item += ",  " + FirstCharacters(text, kLongestName);
    }
  }
  return item;
}

int PortIndex(std::string_view comm_port) {
  for (int number = 1; number <= kSerialPorts; ++number) {
    if (comm_port.find(std::to_string(number)) != std::string_view::npos) {
      return number;
    }
  }
  return 0;
}

std::string PortAt(int index) {
  const bool is_port = index >= 1 && index <= kSerialPorts;
  return is_port ? "COM" + std::to_string(index) : kNoPort;
}

int HelpIndex(std::string_view help_language) {
  return UpperCase(help_language).starts_with('E') ? 0 : 1;
}

std::string HelpAt(int index) {
  return Trim(index == 0 ? kHelpItems.front() : kHelpItems.back());
}

int ModeIndex(int com_mode) {
  return com_mode >= 0 && com_mode < static_cast<int>(kModeItems.size()) ? com_mode : 0;
}

int WidthIndex(int points) {
  return points < 1 ? kDefaultWidthIndex
                    : std::min(points, static_cast<int>(kWidthItems.size())) - 1;
}

}  // namespace tavrel
