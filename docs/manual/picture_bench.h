#ifndef TAVREL_DOCS_MANUAL_PICTURE_BENCH_H_
#define TAVREL_DOCS_MANUAL_PICTURE_BENCH_H_

#include <chrono>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "app/program_logic.h"
#include "app/program_screens.h"
#include "main/forms/tavrel.h"
#include "platform/qt/qt_events.h"
#include "platform/qt/qt_screens.h"
#include "tests/support/fake_clock.h"
#include "tests/support/fake_output.h"
#include "tests/support/fake_port.h"
#include "tests/support/fake_screen.h"
#include "tests/support/instruments_here.h"
#include "tests/support/temporary_directory.h"

namespace tavrel {

// Two virtual instruments in this process, at the far end of a port and on its clock: what the
// pictures show is measured, and is the same in each run.
class PictureLine {
 public:
  // Both outlive the line.
  PictureLine(FakeClock& clock, FakePort& port);

  // Lets the instruments' own time run, as while the program was away.
  void Pass(std::chrono::seconds time);

 private:
  InstrumentsHere instruments_;
};

class NoShell : public Shell {
 public:
  void OpenDocument(const std::string& /*path*/, std::function<void()> /*failed*/) override {}
};

// What a lab has that the pictures show: names of its ovens and of what is in them.
struct LabWords {
  const char* language;  // HELPLANG
  const char* plant;
  const char* user;
  const char* tube_oven;
  const char* chamber_oven;
  const char* autoclave;
  const char* small_oven;
  const char* controller;
  const char* reference;
  const char* sample;
  const char* note;
  const char* date_form;
};

// The program with all its forms over recordings in a directory of its own, on a clock that
// stands still unless Pass moves it. Boxes are answered with OK or Yes.
class PictureBench {
 public:
  // "English" or "German".
  explicit PictureBench(const LabWords& words);

  // The settings, while the title page is shown. Empty: they cannot be loaded.
  [[nodiscard]] std::optional<SplashValues> Load();

  // From there to the sheet; the recordings are read up to date. False: it did not come up.
  [[nodiscard]] bool Start();

  // The cycle for a while, without waiting.
  void Pass(std::chrono::seconds time);

  // Opens a form by `open`, which returns when it has closed, and does `action` as soon as the form
  // of that name is in front. The form is closed afterwards. False: it never came.
  [[nodiscard]] bool Inside(const char* form, const std::function<void()>& open,
                            const std::function<void(QWidget& form)>& action);

  // The same for a form that the program opens by its number.
  [[nodiscard]] bool Inside(const char* form, View view,
                            const std::function<void(QWidget& form)>& action);

  [[nodiscard]] Tavrel& MainForm() { return *main_form_; }
  [[nodiscard]] ProgramLogic& Logic() { return logic_; }
  [[nodiscard]] FakeDialogs& Dialogs() { return dialogs_; }
  [[nodiscard]] std::string File(const std::string& name) const { return home_ + name; }
  // Stands before all paths that a form shows, and would be another one in each run.
  [[nodiscard]] const std::string& OwnDirectory() const { return directory_.Path(); }

 private:
  struct Test {
    int slot;
    int inet;
    int ctrl;
    int ref;
    std::vector<int> inputs;
    bool is_on;
    const char* ext;
    const char* name;
  };

  void MakeSettings();
  void MakeRecording(const Test& test);
  void MakeOldRecordings();
  void MakeProgramFile() const;
  void Leave(QWidget& form);

  const LabWords& words_;
  TemporaryDirectory directory_;
  std::string home_;  // ends with a separator
  FakeClock clock_;
  FakePort port_{clock_};
  FakeDialogs dialogs_;
  QtScreens screens_;
  FakeEvents events_;
  NoShell shell_;
  FakePrinter printer_;
  FakeClipboard clipboard_;
  FakeRegional regional_;
  QtEvents pointers_;
  PictureLine line_{clock_, port_};
  ProgramLogic logic_;
  std::unique_ptr<Tavrel> main_form_;
  ProgramScreens forms_;  // their parent is main_form_: they go before it
};

}  // namespace tavrel

#endif  // TAVREL_DOCS_MANUAL_PICTURE_BENCH_H_
