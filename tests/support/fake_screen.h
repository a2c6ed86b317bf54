#ifndef TAVREL_TESTS_SUPPORT_FAKE_SCREEN_H_
#define TAVREL_TESTS_SUPPORT_FAKE_SCREEN_H_

#include <functional>
#include <optional>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "platform/dialogs.h"
#include "platform/events.h"
#include "platform/screens.h"

namespace tavrel {

// Boxes that answer at once and remember what they said.
// Levers: ok, retry, yes are the answers (retry also to Retry and Exit), stays is Cancel to a
// question whether to save; on_box runs while a box is open, on_file_dialog while the file dialog
// is; chosen_file is the full path that the file dialog gives (empty: Cancel), chosen_font the font
// (none: Cancel).
class FakeDialogs : public Dialogs {
 public:
  bool ok = true;
  bool retry = false;
  bool yes = true;
  bool stays = false;
  std::function<void()> on_box = [] {};
  std::vector<Notice> boxes;      // blocking ones, in their order
  std::vector<Notice> announced;  // those that do not block
  struct Offered {
    Notice notice;
    std::string action;
  };
  std::vector<Offered> offers;  // boxes with OK and a button for an action; takes_offer: the button
  bool takes_offer = false;
  struct Question {
    Notice notice;
    std::function<void(bool)> answer;
  };
  std::vector<Question> asked_beside;  // questions that do not block; nobody has answered them
  std::string chosen_file;
  std::optional<FontChoice> chosen_font;
  std::function<void()> on_file_dialog = [] {};
  std::vector<FileChoice> file_dialogs;  // what was asked for
  std::vector<FontChoice> font_dialogs;

  void Message(const Notice& notice) override { Open(notice); }
  [[nodiscard]] bool AskOk(const Notice& notice) override { return Open(notice), ok; }
  [[nodiscard]] bool AskRetry(const Notice& notice) override { return Open(notice), retry; }
  [[nodiscard]] bool AskYes(const Notice& notice) override { return Open(notice), yes; }
  [[nodiscard]] bool AskRetryOrExit(const Notice& notice) override { return Open(notice), retry; }
  [[nodiscard]] SaveAnswer AskSave(const Notice& notice) override {
    Open(notice);
    const SaveAnswer answer = yes ? SaveAnswer::kSave : SaveAnswer::kDiscard;
    return stays ? SaveAnswer::kStay : answer;
  }
  [[nodiscard]] bool Offer(const Notice& notice, const std::string& action) override {
    offers.push_back({notice, action});
    return takes_offer;
  }
  void Announce(const Notice& notice) override { announced.push_back(notice); }
  void AskBeside(const Notice& notice, const std::function<void(bool)>& answer) override {
    asked_beside.push_back({notice, answer});
  }
  void FileDialog(FileChoice& choice) override {
    file_dialogs.push_back(choice);
    on_file_dialog();
    if (chosen_file.empty()) {
      choice.Cancel();
    } else {
      choice.Take(chosen_file);
    }
  }
  [[nodiscard]] bool FontDialog(FontChoice& choice) override {
    font_dialogs.push_back(choice);
    choice = chosen_font.value_or(choice);
    return chosen_font.has_value();
  }

 private:
  void Open(const Notice& notice) {
    boxes.push_back(notice);
    on_box();
  }
};

// Levers: built are the forms that exist; on_show runs in place of a form.
class FakeScreens : public Screens {
 public:
  std::set<View> built;
  std::function<void(View)> on_show = [](View) {};
  std::vector<View> shown;

  [[nodiscard]] bool Has(View view) const override { return built.count(view) != 0; }
  void Show(View view) override {
    if (!Has(view)) {
      return;
    }
    shown.push_back(view);
    on_show(view);
  }
};

// Levers: on_rest runs in place of a sleep, to move a clock; on_pump is what the user does while
// events are served; on_repaint runs while the screen is painted; end_is_wanted is somebody outside
// who wants the end; RunIdle() is a moment in which nothing else waits.
class FakeEvents : public Events {
 public:
  std::function<void()> on_pump = [] {};
  std::function<void(std::chrono::milliseconds)> on_rest = [](std::chrono::milliseconds) {};
  std::function<void()> on_repaint = [] {};
  std::function<void()> when_idle;
  bool end_is_wanted = false;
  int pumps = 0;
  int repaints = 0;
  int beeps = 0;
  std::vector<Pointer> pointers;  // every pointer that was set, in its order

  void Pump() override {
    ++pumps;
    on_pump();
  }
  void Repaint() override {
    ++repaints;
    on_repaint();
  }
  void Rest(std::chrono::milliseconds time) override { on_rest(time); }
  void WhenIdle(std::function<void()> work) override { when_idle = std::move(work); }

  // What the event loop does with nothing else waiting; false if there is nothing to do.
  bool RunIdle() {
    if (!when_idle) {
      return false;
    }
    std::exchange(when_idle, nullptr)();
    return true;
  }
  [[nodiscard]] bool EndIsWanted() const override { return end_is_wanted; }
  void SetPointer(Pointer pointer) override { pointers.push_back(pointer); }
  void Beep() override { ++beeps; }
};

}  // namespace tavrel

#endif  // TAVREL_TESTS_SUPPORT_FAKE_SCREEN_H_
