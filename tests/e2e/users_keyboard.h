#ifndef TAVREL_TESTS_E2E_USERS_KEYBOARD_H_
#define TAVREL_TESTS_E2E_USERS_KEYBOARD_H_

#include <string>
#include <vector>

#include "tests/e2e/installed_program.h"

namespace tavrel {

// A user who has a keyboard and no mouse: real keys of the screen, which go to the window in front
// as a window manager would give it to the user. The program has to watch its forms.
//
// What returns a bool says whether it came to pass in time.
class UsersKeyboard {
 public:
  explicit UsersKeyboard(const InstalledProgram& program) : program_(program) {}  // outlives this

  // Keys in the words of xdotool: "ctrl+q", "Return".
  void Press(const std::vector<std::string>& keys) const;
  void Type(const std::string& text) const;

  // A window with exactly this title, blanks at both ends aside, has come to the front.
  [[nodiscard]] bool Opens(const std::string& title);
  // The window in front has gone, and others with it, down to the one with this title, which was in
  // front before and has the keyboard again.
  [[nodiscard]] bool ReturnsTo(const std::string& title);

  // Presses the tab key until that control has the keyboard.
  [[nodiscard]] bool TabTo(const std::string& control) const;
  // That control has the keyboard now.
  [[nodiscard]] bool IsAt(const std::string& control) const;
  // That is the newest prompt, or begins so.
  [[nodiscard]] bool IsPrompted(const std::string& text) const;

  [[nodiscard]] std::string Place() const;   // the control that has the keyboard
  [[nodiscard]] std::string Prompt() const;  // the newest one
  // The titles of all windows, the newest last.
  [[nodiscard]] std::vector<std::string> Titles() const;

 private:
  struct Window {
    std::string Number;
    std::string Title;
  };
  [[nodiscard]] std::vector<Window> Windows() const;
  [[nodiscard]] std::string Newest(const std::string& kind) const;
  static void Focus(const std::string& window);

  const InstalledProgram& program_;
  std::vector<std::string> in_front_;  // the last one is
};

}  // namespace tavrel

#endif  // TAVREL_TESTS_E2E_USERS_KEYBOARD_H_
