#include "tests/e2e/users_keyboard.h"

#include <algorithm>

namespace tavrel {
namespace {

using std::chrono::milliseconds;
using std::chrono::seconds;

constexpr seconds kToOpen{20};     // a form, on a busy machine
constexpr seconds kToClose{30};    // one that waits ten seconds for an instrument among them
constexpr seconds kToFollow{5};    // a key
constexpr int kMostControls = 60;  // of a form
constexpr const char* kBetweenKeys = "15";  // milliseconds

std::vector<std::string> OutputOf(const std::vector<std::string>& command) {
  Process process(command);
  std::vector<std::string> lines;
  for (std::string line = process.ReadLine(kToFollow); !line.empty();
       line = process.ReadLine(kToFollow)) {
    lines.push_back(line);
  }
  return lines;
}

std::string Trimmed(const std::string& text) {
  const std::size_t first = text.find_first_not_of(' ');
  return first == std::string::npos ? ""
                                    : text.substr(first, text.find_last_not_of(' ') - first + 1);
}

}  // namespace

void UsersKeyboard::Press(const std::vector<std::string>& keys) const {
  std::vector<std::string> command = {"xdotool", "key", "--delay", kBetweenKeys};
  command.insert(command.end(), keys.begin(), keys.end());
  RunCommand(command);
}

void UsersKeyboard::Type(const std::string& text) const {
  RunCommand({"xdotool", "type", "--delay", kBetweenKeys, text});
}

// Numbers rise with each window that is made.
std::vector<UsersKeyboard::Window> UsersKeyboard::Windows() const {
  std::vector<Window> windows;
  for (const std::string& number : OutputOf({"xdotool", "search", "--onlyvisible", "--all", "--pid",
                                             std::to_string(program_.Pid()), "--name", "."})) {
    const std::vector<std::string> title = OutputOf({"xdotool", "getwindowname", number});
    windows.push_back({number, title.empty() ? "" : Trimmed(title.front())});
  }
  std::sort(windows.begin(), windows.end(), [](const Window& one, const Window& other) {
    return std::stoll(one.Number) < std::stoll(other.Number);
  });
  return windows;
}

std::vector<std::string> UsersKeyboard::Titles() const {
  std::vector<std::string> titles;
  for (const Window& window : Windows()) {
    titles.push_back(window.Title);
  }
  return titles;
}

void UsersKeyboard::Focus(const std::string& window) {
  RunCommand({"xdotool", "windowfocus", "--sync", window});
}

bool UsersKeyboard::Opens(const std::string& title) {
  std::string opened;
  const auto has_come = [&] {
    const std::vector<Window> windows = Windows();
    const bool is_it = !windows.empty() && windows.back().Title == title;
    opened = is_it ? windows.back().Number : "";
    return is_it && (in_front_.empty() || opened != in_front_.back());
  };
  if (!WaitUntil(has_come, kToOpen)) {
    return false;
  }
  in_front_.push_back(opened);
  Focus(opened);
  return true;
}

bool UsersKeyboard::ReturnsTo(const std::string& title) {
  auto again = in_front_.end();
  const auto has_come = [&] {
    const std::vector<Window> windows = Windows();
    again = windows.empty() ? in_front_.end()
                            : std::find(in_front_.begin(), in_front_.end(), windows.back().Number);
    return again != in_front_.end() && again + 1 != in_front_.end() &&
           windows.back().Title == title;
  };
  if (!WaitUntil(has_come, kToClose)) {
    return false;
  }
  in_front_.erase(again + 1, in_front_.end());
  Focus(in_front_.back());
  return true;
}

std::string UsersKeyboard::Newest(const std::string& kind) const {
  std::string newest;
  for (const std::string& line : program_.SeenForms()) {
    if (line.rfind(kind, 0) == 0) {
      newest = line.substr(kind.size());
    }
  }
  return newest;
}

std::string UsersKeyboard::Place() const {
  return Newest("keyboard ");
}

std::string UsersKeyboard::Prompt() const {
  return Newest("prompt ");
}

bool UsersKeyboard::IsAt(const std::string& control) const {
  return WaitUntil([&] { return Place() == control; }, kToFollow);
}

bool UsersKeyboard::IsPrompted(const std::string& text) const {
  return WaitUntil([&] { return Prompt().rfind(text, 0) == 0; }, kToFollow);
}

bool UsersKeyboard::TabTo(const std::string& control) const {
  for (int step = 0; step < kMostControls && Place() != control; ++step) {
    const std::size_t before = program_.SeenForms().size();
    Press({"Tab"});
    if (!WaitUntil([&] { return program_.SeenForms().size() > before; }, kToFollow)) {
      return false;
    }
  }
  return Place() == control;
}

}  // namespace tavrel
