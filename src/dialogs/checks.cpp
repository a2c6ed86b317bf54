#include "dialogs/checks.h"

#include "base/number.h"
#include "link/register_access.h"
#include "link/registers.h"

namespace tavrel {
namespace {

constexpr const char* kCheckTitle = "check";
constexpr int kQuestionKind = 1;
constexpr int kWarningKind = 2;
constexpr int kProbeTries = 2;

BoxIcon IconOf(int kind) {
  switch (kind) {
    case kQuestionKind:
      return BoxIcon::kQuestion;
    case kWarningKind:
      return BoxIcon::kWarning;
    default:
      return BoxIcon::kInformation;
  }
}

}  // namespace

void ShowMessage(Dialogs& dialogs, const std::string& text, const std::string& title, int kind) {
  dialogs.Message({text, title, IconOf(kind)});
}

std::string RangeText(const Limits& limits) {
  return ShortestNumber(limits.Lower) + " ... " + ShortestNumber(limits.Upper);
}

bool CheckRange(Dialogs& dialogs, const std::string& name, double value, double lower,
                double upper) {
  // Both comparisons are false for what is no number.
  if (lower <= value && value <= upper) {
    return true;
  }
  ShowMessage(dialogs, name + ":\n" + RangeText({lower, upper}), kCheckTitle, kWarningKind);
  return false;
}

Notice NotConnectedNotice() {
  return {"Tavrel connected ?", kCheckTitle, IconOf(kQuestionKind)};
}

void ShowNotConnected(Dialogs& dialogs) {
  dialogs.Message(NotConnectedNotice());
}

bool CheckConnected(Dialogs& dialogs, const Link& link, int inet) {
  if (link.IsGood(inet)) {
    return true;
  }
  ShowNotConnected(dialogs);
  return false;
}

bool CheckAnswers(Dialogs& dialogs, Link& link, std::int16_t inet) {
  for (int tries = 0; tries < kProbeTries && !link.IsGood(inet); ++tries) {
    static_cast<void>(Read(link, Register{inet, reg::kKind, 0}));
  }
  return CheckConnected(dialogs, link, inet);
}

}  // namespace tavrel
