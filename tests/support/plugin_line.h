#ifndef TAVREL_TESTS_SUPPORT_PLUGIN_LINE_H_
#define TAVREL_TESTS_SUPPORT_PLUGIN_LINE_H_

#include <string>

#include "tests/support/direct_line.h"

namespace tavrel {

// The same instruments on a plug-in line. A command such as "n2p2=3E8" CR (instrument 3, bank p,
// address 2) is put into the words of a direct line; "" for what is no register command.
inline std::string InDirectWords(const std::string& command) {
  if (command.size() < 4 || command[0] != 'n') {
    return "";
  }
  const bool numbered = command[1] >= '1' && command[1] <= '5';
  const std::string number = numbered ? command.substr(1, 1) : "0";
  const std::size_t bank = numbered ? 2 : 1;
  const std::size_t end = command.find_first_of("?=");
  if (end == std::string::npos || end <= bank + 1) {
    return "";
  }
  const int address = std::stoi(command.substr(bank + 1, end - bank - 1), nullptr, 16);
  const char first = command[bank] == 'v' ? 'G' : 'W';
  std::string direct(1, static_cast<char>(first + address / 16));
  direct += number;
  direct += "0123456789ABCDEF"[address % 16];
  return direct + command.substr(end);
}

}  // namespace tavrel

#endif  // TAVREL_TESTS_SUPPORT_PLUGIN_LINE_H_
