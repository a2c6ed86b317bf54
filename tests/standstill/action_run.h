#ifndef TAVREL_TESTS_STANDSTILL_ACTION_RUN_H_
#define TAVREL_TESTS_STANDSTILL_ACTION_RUN_H_

#include <QTimer>
#include <memory>
#include <string>
#include <vector>

#include "app/program_logic.h"
#include "app/program_screens.h"
#include "main/forms/tavrel.h"
#include "platform/qt/qt_clipboard.h"
#include "platform/qt/qt_printer.h"
#include "platform/qt/qt_screens.h"
#include "tests/standstill/form_actions.h"
#include "tests/standstill/served_spans.h"
#include "tests/standstill/worst_data.h"
#include "tests/support/fake_output.h"
#include "tests/support/fake_screen.h"
#include "tests/support/instruments_here.h"

namespace tavrel {

// How the line is: it never answers, it falls silent when the action begins, or it answers at
// 4800 baud.
enum class LineIs { kSilent, kFallsSilent, kAnswering };

// An action in a form: "TavGraph" and "cmdPart click". "await Mnu_Save" does nothing until that
// entry of a menu can be chosen, which a form's own reading on the line may hinder for a while.
struct ActionIn {
  std::string form;
  std::string action;
};

// What came of an action.
struct ActionResult {
  bool has_come = false;             // it was found in its form
  LongestSpans longest;              // of the action and of what it leads to
  std::string front;                 // the form that is in front behind it
  std::vector<std::string> actions;  // what can be done there
};

// The whole program with its forms over the worst data, from its start to the end of an action.
class ActionRun : public QObject {
 public:
  // `data` outlives this. `steps` lead to a form, in which the `actions` are done as long as it
  // stays in front.
  ActionRun(const WorstData& data, LineIs line, std::vector<ActionIn> steps,
            const std::vector<ActionIn>& actions);
  ~ActionRun() override;

  // A result for each action that was tried.
  [[nodiscard]] std::vector<ActionResult> Run();

 private:
  [[nodiscard]] bool Start();
  [[nodiscard]] QWidget* Front();
  void Look();
  void Begin(const ActionIn& step);
  void Await(const QWidget& form, const std::string& entry);
  void Do(QWidget& form, const ActionIn& step);
  void Judge();
  void Leave();
  std::string Answer(const std::string& command);

  const WorstData& data_;
  LineIs line_is_;
  std::vector<ActionIn> steps_;
  std::size_t ways_;           // steps that lead to the form
  std::size_t done_ = 0;       // steps
  bool is_under_way_ = false;  // a step is about to begin
  bool is_judged_ = false;     // the last step is an action
  bool is_over_ = false;       // what is open is left
  bool is_silent_ = false;
  int turns_ = 0;
  int turns_in_rules_ = 0;
  std::vector<ActionResult> results_;

  FakeClock clock_;
  CountedPort port_{clock_};
  ServedSpans spans_{port_};
  CountedEvents events_{clock_, spans_};
  FakeDialogs dialogs_;
  QtScreens screens_;
  class NoShell : public Shell {
    void OpenDocument(const std::string& /*path*/, std::function<void()> /*failed*/) override {}
  } shell_;
  QtPrinter printer_;
  QtClipboard clipboard_;
  FakeRegional regional_;
  InstrumentsHere instruments_{clock_, port_, instrument::LineMode::kPlugin};
  ProgramLogic logic_;
  std::unique_ptr<Tavrel> main_form_;
  ProgramScreens forms_;  // their parent is main_form_: they go before it
  QTimer look_;
};

}  // namespace tavrel

#endif  // TAVREL_TESTS_STANDSTILL_ACTION_RUN_H_
