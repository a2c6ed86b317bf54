// Does everything that a user can do, over the worst data and on a line that does not answer, and
// tells for how long the window served no event: standstill --count | --measure [PART]
//
// --count looks at the waits for the line alone, which are the same on every machine, and fails if
// an action waits for longer than half a second (two that are one event may take longer). --measure
// adds the work of this machine, which has nothing else to do, and prints a table; PART takes the
// actions whose name has it.

#include <QApplication>
#include <algorithm>
#include <cstdio>
#include <deque>
#include <set>
#include <string_view>

#include "tests/standstill/action_run.h"

namespace tavrel {
namespace {

constexpr double kLongest = 500;  // milliseconds that no event waits
constexpr std::size_t kFewestForms = 20;
constexpr int kManyFiles = 20000;
constexpr int kFewFiles = 200;  // their number has nothing to do with the line

// The worst place of a form that is reached by its own actions.
struct Prepared {
  const char* form;
  std::vector<const char*> actions;
};
const std::vector<Prepared> kPrepared = {{"TavGraph", {"PicC_0 drag", "cmdPart click"}},
                                         {"TavChann", {"await Mnu_Save"}}};

// Nobody may stop these half-way: an instrument with half of its variables would be worse than one
// left as it was. They end within ten seconds on a line that does not answer.
const std::set<std::string> kInOneEvent = {"TavChann: Mnu_Save entry", "TavChann: Mnu_Load entry"};
constexpr double kLongestInOneEvent = 10000;  // milliseconds

// Walks through the forms as they open each other.
class Walk {
 public:
  Walk(bool measures, std::string part)
      : measures_(measures), part_(std::move(part)), data_(measures ? kManyFiles : kFewFiles) {}

  // False: an action held the window.
  [[nodiscard]] bool All() {
    for (const LineIs line : Lines()) {
      line_ = line;
      known_.clear();
      waiting_ = {{{}, {{"Tavrel", "key F12"}}}};  // the first look at the main form
      while (!waiting_.empty()) {
        const Way way = waiting_.front();
        waiting_.pop_front();
        Try(way);
      }
    }
    std::printf("%d actions of %zu forms, %zu too long\n", actions_, forms_.size(), slow_.size());
    const bool is_whole = is_whole_ && (!part_.empty() || in_one_event_ == kInOneEvent);
    return is_whole && slow_.empty() && forms_.size() > kFewestForms;
  }

 private:
  // What may be done while the line falls silent may be done on all others.
  [[nodiscard]] std::vector<LineIs> Lines() const {
    return measures_ ? std::vector{LineIs::kFallsSilent, LineIs::kSilent, LineIs::kAnswering}
                     : std::vector{LineIs::kFallsSilent};
  }

  struct Way {
    std::vector<ActionIn> steps;    // to the form
    std::vector<ActionIn> actions;  // in it
  };

  void Try(const Way& way) {
    for (std::size_t done = 0; done < way.actions.size();) {
      const auto first = way.actions.begin() + static_cast<std::ptrdiff_t>(done);
      const bool is_key = first->action.starts_with("key ");
      const auto last = measures_ && !is_key ? first + 1 : way.actions.end();
      const auto results = ActionRun(data_, line_, way.steps, {first, last}).Run();
      for (const ActionResult& result : results) {
        Take(way, way.actions.at(done), result);
        ++done;
      }
      if (results.empty()) {
        std::printf("%s cannot be reached\n", first->form.c_str());
        is_whole_ = false;
        return;
      }
    }
  }

  void Take(const Way& way, const ActionIn& action, const ActionResult& result) {
    ++actions_;
    if (!result.has_come) {
      return;
    }
    Judge(action, result.longest);
    std::vector<ActionIn> steps = way.steps;
    if (result.front != action.form) {
      steps.push_back(action);
    }
    const bool is_prepared = IsPrepared(steps, result.front);
    if (known_.insert(result.front + (is_prepared ? " prepared" : "")).second) {
      Known(steps, result);
    }
  }

  // A form that nobody has seen yet: its actions come behind those that wait.
  void Known(const std::vector<ActionIn>& steps, const ActionResult& result) {
    forms_.insert(result.front);
    Way next{steps, {}};
    for (const std::string& action : result.actions) {
      if (!measures_ && action.starts_with("key Ctrl+") && result.front != "Tavrel") {
        continue;
      }
      if (part_.empty() || result.front.find(part_) != std::string::npos || Opens(action)) {
        next.actions.push_back({result.front, action});
      }
    }
    waiting_.push_back(next);
    for (const Prepared& prepared : kPrepared) {
      if (result.front == prepared.form && !IsPrepared(steps, prepared.form)) {
        Way behind{steps, {{prepared.form, "key F12"}}};
        for (const char* action : prepared.actions) {
          behind.steps.push_back({prepared.form, action});
        }
        waiting_.push_back(behind);
      }
    }
  }

  // Forms are opened by entries and buttons.
  static bool Opens(const std::string& action) {
    return action.ends_with(" click") || action.ends_with(" entry");
  }
  static bool IsPrepared(const std::vector<ActionIn>& steps, const std::string& form) {
    return !steps.empty() && steps.back().form == form;
  }

  void Judge(const ActionIn& action, const LongestSpans& longest) {
    constexpr const char* kLines[] = {"silent", "falls silent", "answering"};
    const std::string text = action.form + ": " + action.action;
    const bool is_one_event = kInOneEvent.contains(text);
    const double limit = is_one_event ? kLongestInOneEvent : kLongest;
    if (is_one_event) {
      in_one_event_.insert(text);
    }
    const bool is_slow = (measures_ ? longest.work : longest.line) > limit;
    if (is_slow) {
      slow_.insert(text);
    }
    if (is_slow || measures_) {
      std::printf("%-52s %-12s %6.0f ms, of the line %6.0f ms, passed %6.0f ms\n", text.c_str(),
                  kLines[static_cast<int>(line_)], longest.work, longest.line, longest.wall);
      static_cast<void>(std::fflush(stdout));
    }
  }

  bool measures_;
  std::string part_;
  WorstData data_;
  LineIs line_ = LineIs::kSilent;
  std::set<std::string> known_;  // forms on this line
  std::set<std::string> forms_;
  std::set<std::string> slow_;
  std::set<std::string> in_one_event_;  // those that were done
  std::deque<Way> waiting_;
  int actions_ = 0;
  bool is_whole_ = true;  // each form could be reached again
};

}  // namespace
}  // namespace tavrel

int main(int count, char** arguments) {
  qInstallMessageHandler([](QtMsgType, const QMessageLogContext&, const QString&) {});
  const QApplication application(count, arguments);
  QApplication::setStyle("Fusion");
  QApplication::setQuitOnLastWindowClosed(false);
  const bool measures = count > 1 && std::string_view(arguments[1]) == "--measure";
  return tavrel::Walk(measures, count > 2 ? arguments[2] : "").All() ? 0 : 1;
}
