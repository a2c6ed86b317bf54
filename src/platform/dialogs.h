#ifndef TAVREL_PLATFORM_DIALOGS_H_
#define TAVREL_PLATFORM_DIALOGS_H_

#include <functional>
#include <string>

#include "platform/file_choice.h"

namespace tavrel {

enum class BoxIcon { kNone, kInformation, kQuestion, kWarning, kCritical };

// A text to show to the user, as a box shows it.
struct Notice {
  std::string Text;  // what is the matter and, behind an empty line, what can be done about it
  std::string Title;
  BoxIcon Icon = BoxIcon::kWarning;
  bool PresetIsNo = false;  // the Enter key means Cancel or No, where the other answer does harm
};

// What is to become of a work that is not saved.
enum class SaveAnswer {
  kSave,
  kDiscard,
  kStay,  // the user goes on with it
};

// Boxes and common dialogs. The asking ones return when the user has answered; timers go on beneath
// them. All texts are UTF-8.
class Dialogs {
 public:
  virtual ~Dialogs() = default;

  // One OK button.
  virtual void Message(const Notice& notice) = 0;

  // OK and Cancel; true for OK. Escape and the close box mean Cancel.
  [[nodiscard]] virtual bool AskOk(const Notice& notice) = 0;

  // Retry and Cancel; true for Retry.
  [[nodiscard]] virtual bool AskRetry(const Notice& notice) = 0;

  // Retry and Exit; true for Retry. Escape and the close box mean Exit, and so does the end of the
  // program while the box is open. Where there is nobody to ask it is as after Exit.
  [[nodiscard]] virtual bool AskRetryOrExit(const Notice& /*notice*/) { return false; }

  // Yes and No; true for Yes.
  [[nodiscard]] virtual bool AskYes(const Notice& notice) = 0;

  // Yes, No and Cancel for a work that would be lost. Escape and the close box mean Cancel, and so
  // does the end of the program; where there is nobody to ask it is as after Cancel.
  [[nodiscard]] virtual SaveAnswer AskSave(const Notice& /*notice*/) { return SaveAnswer::kStay; }

  // OK and a button that offers something to do with what the notice tells; `action` is its
  // caption. True if that button was chosen. Where there is nobody to ask it is as after OK.
  [[nodiscard]] virtual bool Offer(const Notice& /*notice*/, const std::string& /*action*/) {
    return false;
  }

  // Shows the notice without waiting for an answer and without taking the keyboard: the way
  // in which the measuring cycle, which must never stop, speaks to the user.
  virtual void Announce(const Notice& notice) = 0;

  // Asks in the same way: the box has Yes and No, Enter and Escape mean No, nothing waits for it.
  // `answer` is called with true for Yes, with false for all else, or never if the program ends or
  // where there is nobody to ask.
  virtual void AskBeside(const Notice& /*notice*/,
                         const std::function<void(bool yes)>& /*answer*/) {}

  // Lets the user choose a file: one that exists, or the name of one to save, where a name that
  // exists already in any case is asked about and given as the disk spells it. Nothing is opened
  // and the current directory stays. Where there is nobody to ask it is as after Cancel.
  virtual void FileDialog(FileChoice& choice) { choice.Cancel(); }

  // Lets the user choose a font. True: `choice` is the new one; false: it is as it was.
  [[nodiscard]] virtual bool FontDialog(FontChoice& /*choice*/) { return false; }
};

}  // namespace tavrel

#endif  // TAVREL_PLATFORM_DIALOGS_H_
