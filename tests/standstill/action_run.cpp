#include "tests/standstill/action_run.h"

#include <QAction>
#include <QApplication>
#include <QDialog>
#include <QPrinter>
#include <algorithm>
#include <string_view>

#include "tests/support/wait_until.h"

namespace tavrel {
namespace {

using std::chrono::milliseconds;

constexpr milliseconds kExchange{20};  // a read of 4 and 5 characters at 4800 baud
constexpr int kPatience = 3000;        // turns until a form that does not come is given up
constexpr int kTurnsBetween = 5;       // of two steps
constexpr int kTurnsBehind = 15;       // of an action, before it is judged
constexpr int kTurnsOfTimers = 130;    // the same where the form works by timers of its own
constexpr int kSampling = 10;          // seconds between two sets
constexpr std::string_view kAwait = "await ";

// A form that draws or moves on by a timer of up to a tenth of a second.
bool HasSlowTimer(const QWidget& form) {
  const auto timers = form.findChildren<QTimer*>();
  return std::any_of(timers.begin(), timers.end(), [](const QTimer* timer) {
    return timer->isActive() && timer->interval() > 1 && timer->interval() <= 100;
  });
}

}  // namespace

ActionRun::ActionRun(const WorstData& data, LineIs line, std::vector<ActionIn> steps,
                     const std::vector<ActionIn>& actions)
    : data_(data),
      line_is_(line),
      steps_(std::move(steps)),
      ways_(steps_.size()),
      printer_(events_,
               [this](QPrinter& printer) {
                 printer.setOutputFormat(QPrinter::PdfFormat);
                 printer.setOutputFileName(QString::fromStdString(data_.File("page.pdf")));
                 return true;
               }),
      logic_({port_, clock_, dialogs_, screens_, events_, shell_, printer_, clipboard_, regional_,
              [this] {
                return std::vector<Place>{{"home", data_.Home()}};
              }}),
      forms_(logic_, screens_, events_) {
  steps_.insert(steps_.end(), actions.begin(), actions.end());
  logic_.cycle.SetHandlers(forms_.Handlers());
  dialogs_.on_file_dialog = [this] {
    const FileChoice& asked = dialogs_.file_dialogs.back();
    const bool saves = asked.Mode == FileMode::kSave && !asked.FileName.empty();
    dialogs_.chosen_file = data_.File(saves ? asked.FileName : "CHOSEN.TXT");
  };
  dialogs_.on_box = [this] { spans_.Served(); };
  for (int inet = 1; inet <= kInets; ++inet) {
    instrument::InstrumentSettings settings;
    settings.inet = inet;
    instruments_.Line().Add(settings);
    static_cast<void>(instruments_.Line().Find(inet)->StartSampling({}, kSampling));
  }
  port_.answer = [this, answer = port_.answer](const std::string& command) {
    const std::string reply = is_silent_ ? "" : answer(command);
    if (!reply.empty()) {
      port_.Arrive(kExchange, reply);
    }
    return std::string();
  };
  look_.callOnTimeout([this] { Look(); });
}

ActionRun::~ActionRun() = default;

bool ActionRun::Start() {
  data_.Restore();
  is_silent_ = line_is_ == LineIs::kSilent;
  const auto take_lock = [](const std::string&) { return LockTaking(true); };
  if (!logic_.start_up.SplashLoad(data_.Home(), take_lock) || !logic_.start_up.SplashShow() ||
      !logic_.start_up.MainFormLoad()) {
    return false;
  }
  main_form_ = std::make_unique<Tavrel>(
      Tavrel::Parts{logic_.sheet, logic_.commands, logic_.cycle, logic_.start_up}, kSlots);
  main_form_->show();
  if (!WaitUntil([this] { return logic_.cycle.IsEnabled(); })) {
    return false;
  }
  // The program's seconds are milliseconds here.
  main_form_->findChild<QTimer*>("Timer_Main")->setInterval(1);
  return true;
}

std::vector<ActionResult> ActionRun::Run() {
  if (Start()) {
    look_.start(1);
    QApplication::exec();
  }
  return results_;
}

// The form in which a user can do something now.
QWidget* ActionRun::Front() {
  QWidget* modal = QApplication::activeModalWidget();
  return modal != nullptr ? modal : main_form_.get();
}

void ActionRun::Look() {
  clock_.Advance(milliseconds(kTickMilliseconds));
  if (events_.IsInRule() && ++turns_in_rules_ < kPatience) {
    return;
  }
  ++turns_;
  if (is_over_) {
    Leave();
  } else if (is_judged_) {
    Judge();
  } else if (done_ == steps_.size() || turns_ > kPatience) {
    is_over_ = true;
  } else if (!is_under_way_ && turns_ > kTurnsBetween && !logic_.graph.State().GraphBusy) {
    Begin(steps_.at(done_));
  }
}

// Not inside the timer's own event: an action may open a form that waits for the next one.
void ActionRun::Begin(const ActionIn& step) {
  QWidget* front = Front();
  const bool is_in_front = front->objectName().toStdString() == step.form;
  if (is_in_front && step.action.starts_with(kAwait)) {
    Await(*front, step.action.substr(kAwait.size()));
  } else if (is_in_front) {
    is_under_way_ = true;
    QTimer::singleShot(0, front, [this, front, step] { Do(*front, step); });
  } else if (done_ > ways_) {
    is_over_ = true;  // the action before has left the form
  }
}

void ActionRun::Await(const QWidget& form, const std::string& entry) {
  const auto* action = form.findChild<QAction*>(QString::fromStdString(entry));
  if (action != nullptr && action->isEnabled()) {
    ++done_;
    turns_ = 0;
  }
}

void ActionRun::Do(QWidget& form, const ActionIn& step) {
  const auto actions = ActionsOf(form);
  const auto action = std::find_if(actions.begin(), actions.end(), [&step](const FormAction& it) {
    return it.name == step.action;
  });
  is_judged_ = ++done_ > ways_;
  is_under_way_ = false;
  turns_ = 0;
  if (is_judged_) {
    is_silent_ = line_is_ != LineIs::kAnswering;
    results_.emplace_back().has_come = action != actions.end();
    spans_.Begin();
  }
  if (action != actions.end()) {
    action->action(form);
  }
}

void ActionRun::Judge() {
  const int turns = HasSlowTimer(*Front()) ? kTurnsOfTimers : kTurnsBehind;
  if (turns_ < turns) {
    return;
  }
  ActionResult& result = results_.back();
  result.longest = spans_.End();
  QWidget* front = Front();
  result.front = front->objectName().toStdString();
  for (const FormAction& action : ActionsOf(*front)) {
    result.actions.push_back(action.name);
  }
  is_judged_ = false;
  turns_ = 0;
}

// A form that has something to finish on the instrument is given its turns.
void ActionRun::Leave() {
  if (QWidget* menu = QApplication::activePopupWidget()) {
    menu->close();
  }
  if (QWidget* modal = QApplication::activeModalWidget()) {
    QMetaObject::invokeMethod(modal, "reject");
    if (turns_ > kPatience) {
      qobject_cast<QDialog*>(modal)->done(0);
    }
    return;
  }
  look_.stop();
  QCoreApplication::exit(0);
}

}  // namespace tavrel
