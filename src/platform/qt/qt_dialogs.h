#ifndef TAVREL_PLATFORM_QT_QT_DIALOGS_H_
#define TAVREL_PLATFORM_QT_QT_DIALOGS_H_

#include <QMessageBox>
#include <QPointer>
#include <functional>
#include <memory>
#include <vector>

#include "base/language.h"
#include "platform/dialogs.h"
#include "platform/qt/qt_events.h"

namespace tavrel {

class NoticesWindow;

// Boxes of the toolkit, on top of the window in front. Texts are shown as they are, without a
// markup language. While somebody outside wants the end of the program no box is opened: what it
// would say goes to the standard error output, which the journal of the session keeps, and a
// question is answered by what does no harm.
class QtDialogs : public Dialogs {
 public:
  // `events` outlives this.
  explicit QtDialogs(QtEvents& events);
  ~QtDialogs() override;

  // The language of what the boxes say themselves; English without it.
  void SpeakIn(std::function<Language()> language) { language_ = std::move(language); }

  void Message(const Notice& notice) override;
  [[nodiscard]] bool AskOk(const Notice& notice) override;
  [[nodiscard]] bool AskRetry(const Notice& notice) override;
  [[nodiscard]] bool AskRetryOrExit(const Notice& notice) override;
  [[nodiscard]] bool AskYes(const Notice& notice) override;
  [[nodiscard]] SaveAnswer AskSave(const Notice& notice) override;

  [[nodiscard]] bool Offer(const Notice& notice, const std::string& action) override;

  // All announced notices stand in one window, until the user closes it.
  void Announce(const Notice& notice) override;

  // Each question has a window of its own.
  void AskBeside(const Notice& notice, const std::function<void(bool yes)>& answer) override;

  void FileDialog(FileChoice& choice) override;
  [[nodiscard]] bool FontDialog(FontChoice& choice) override;

 private:
  // Nobody is there to answer. `notice` has been told then.
  [[nodiscard]] bool IsAlone(const Notice& notice) const;

  // Returns true if the user chose `yes`.
  bool Ask(const Notice& notice, QMessageBox::StandardButton yes, QMessageBox::StandardButton no);

  QtEvents& events_;
  std::function<Language()> language_ = [] { return Language::kEnglish; };
  std::unique_ptr<NoticesWindow> notices_;        // made with the first notice
  std::vector<QPointer<QMessageBox>> questions_;  // asked beside, not all of them answered
};

}  // namespace tavrel

#endif  // TAVREL_PLATFORM_QT_QT_DIALOGS_H_
