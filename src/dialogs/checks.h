#ifndef TAVREL_DIALOGS_CHECKS_H_
#define TAVREL_DIALOGS_CHECKS_H_

#include <cstdint>
#include <string>

#include "link/link.h"
#include "platform/dialogs.h"

// The questions that a form asks before it acts on what a user typed. Each shows its own box
// when the answer is no; the form then stays open for correction.
namespace tavrel {

// A box with one OK button. `kind` 1 has a question icon, 2 a warning icon, any other an
// information icon.
void ShowMessage(Dialogs& dialogs, const std::string& text, const std::string& title, int kind);

// What a number may be, both ends included.
struct Limits {
  double Lower = 0;
  double Upper = 0;
};

// "10 ... 1100", as CheckRange names them.
[[nodiscard]] std::string RangeText(const Limits& limits);

// True if `value` lies between the limits, both included. What is no number does not. The box
// names the value and both limits.
[[nodiscard]] bool CheckRange(Dialogs& dialogs, const std::string& name, double value, double lower,
                              double upper);

// What to tell the user when an instrument does not answer, and telling it.
[[nodiscard]] Notice NotConnectedNotice();
void ShowNotConnected(Dialogs& dialogs);

// True if the last exchange with instrument `inet` was good.
[[nodiscard]] bool CheckConnected(Dialogs& dialogs, const Link& link, int inet);

// The same for a form beneath which nothing else uses the line: the last exchange may be old. If
// it failed, the instrument is asked for its kind, and once more, for a late reply spoils the
// exchange behind it. The arguments of the link are not kept.
[[nodiscard]] bool CheckAnswers(Dialogs& dialogs, Link& link, std::int16_t inet);

}  // namespace tavrel

#endif  // TAVREL_DIALOGS_CHECKS_H_
