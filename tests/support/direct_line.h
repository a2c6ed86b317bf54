#ifndef TAVREL_TESTS_SUPPORT_DIRECT_LINE_H_
#define TAVREL_TESTS_SUPPORT_DIRECT_LINE_H_

#include <cstdint>
#include <deque>
#include <map>
#include <set>
#include <string>
#include <tuple>

namespace tavrel {

// Instruments on a direct line, as far as registers go, in the words of the wire: "Y01?" and
// "W01=3E8" CR. Handed to FakePort::answer.
// Levers: silent (numbers that do not answer), refused (letters answered by "?"), registers,
// buffers (what X hands over; R counts it).
class DirectLine {
 public:
  using Place = std::tuple<int, char, int>;  // number, letter, index

  std::set<int> silent;
  std::set<char> refused;
  std::map<Place, std::int16_t> registers;
  std::map<std::pair<int, int>, std::deque<std::int16_t>> buffers;  // by number and input

  std::string Answer(const std::string& command) {
    if (command.size() < 4) {
      return "?";
    }
    const char letter = command[0];
    const int inet = std::stoi(command.substr(1, 1), nullptr, 16) + 1;
    const int index = std::stoi(command.substr(2, 1), nullptr, 16);
    if (silent.count(inet) != 0) {
      return "";
    }
    if (refused.count(letter) != 0) {
      return "?";
    }
    if (command[3] == '?') {
      return Digits(Read(inet, letter, index));
    }
    Write(inet, letter, index, std::stoi(command.substr(4), nullptr, 16));
    return ".";
  }

 private:
  std::int16_t Read(int inet, char letter, int index) {
    std::deque<std::int16_t>& buffer = buffers[{inet, index}];
    if (letter == 'R') {
      return static_cast<std::int16_t>(buffer.size());
    }
    if (letter != 'X') {
      return registers[{inet, letter, index}];
    }
    if (buffer.empty()) {
      return -32768;
    }
    const std::int16_t oldest = buffer.front();
    buffer.pop_front();
    return oldest;
  }
  void Write(int inet, char letter, int index, int value) {
    registers[{inet, letter, index}] = static_cast<std::int16_t>(value);
    if (letter == 'R') {
      buffers[{inet, index}].clear();
    }
  }
  static std::string Digits(std::int16_t value) {
    char text[6];
    const unsigned word = static_cast<std::uint16_t>(value);
    std::snprintf(text, sizeof text, "%04X\r", word);
    return text;
  }
};

}  // namespace tavrel

#endif  // TAVREL_TESTS_SUPPORT_DIRECT_LINE_H_
