#ifndef TAVREL_MAIN_SETTINGS_LISTS_H_
#define TAVREL_MAIN_SETTINGS_LISTS_H_

#include <array>
#include <string>
#include <string_view>
#include <vector>

#include "base/language.h"
#include "platform/port_description.h"

// The lists of the settings dialog: their items, and the way from a setting to the index shown
// for it and back. Indices count from 0. Any setting has an index, also one that no list offers;
// leaving the dialog then writes what the list shows.
namespace tavrel {

inline constexpr const char* kNoPort = "----";  // the port that simulates

inline constexpr std::array<const char*, 2> kHelpItems = {" English", " German"};
inline constexpr std::array<const char*, 3> kModeItems = {" direct  (RS-232)", " plug-in  KBL232",
                                                          " plug-in  KBL485"};
inline constexpr std::array<const char*, 2> kDiaItems = {" no", " yes"};
inline constexpr std::array<const char*, 5> kWidthItems = {"   1 pt", "   2 pt", "   3 pt",
                                                           "   4 pt", "   5 pt"};

// " ----", then " COM1" to " COM30".
[[nodiscard]] std::vector<std::string> PortItems();

// The entry of port COM`number` in the list: its name, the device behind it, and the adapter or
// that it is not there.
[[nodiscard]] std::string PortItem(int number, const PortDescription& port, Language language);

// The first number 1..30 whose decimal text occurs anywhere in `comm_port`, else 0. So COM12 is
// shown as COM1: no number above 9 is ever found.
[[nodiscard]] int PortIndex(std::string_view comm_port);

// "COM" and the number for 1..30, "----" for any other index.
[[nodiscard]] std::string PortAt(int index);

// 0 if the first letter is an E of either case, else 1.
[[nodiscard]] int HelpIndex(std::string_view help_language);

// "English" for 0, "German" for any other index.
[[nodiscard]] std::string HelpAt(int index);

// The interface is its own index; one that the list does not know is shown as direct.
[[nodiscard]] int ModeIndex(int com_mode);

// Points less one; 0 and less are shown as 2 points, more than 5 as 5.
[[nodiscard]] int WidthIndex(int points);

}  // namespace tavrel

#endif  // TAVREL_MAIN_SETTINGS_LISTS_H_
