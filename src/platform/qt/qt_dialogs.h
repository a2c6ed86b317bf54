#ifndef TAVREL_PLATFORM_QT_QT_DIALOGS_H_
#define TAVREL_PLATFORM_QT_QT_DIALOGS_H_

#include <QMessageBox>
#include <memory>

#include "platform/dialogs.h"
#include "platform/qt/qt_events.h"

namespace tavrel {

class NoticesWindow;

// Boxes of the toolkit, on top of the window in front. Texts are shown as they are, without a
// markup language.
class QtDialogs : public Dialogs {
 public:
  // `events` outlives this.
  explicit QtDialogs(QtEvents& events);
  ~QtDialogs() override;

  void Message(const Notice& notice) override;
  [[nodiscard]] bool AskOk(const Notice& notice) override;
  [[nodiscard]] bool AskRetry(const Notice& notice) override;
  [[nodiscard]] bool AskYes(const Notice& notice) override;

  // All announced notices stand in one window, until the user closes it.
  void Announce(const Notice& notice) override;

  void FileDialog(FileChoice& choice) override;
  [[nodiscard]] bool FontDialog(FontChoice& choice) override;

 private:
  // Returns true if the user chose `yes`.
  bool Ask(const Notice& notice, QMessageBox::StandardButton yes, QMessageBox::StandardButton no);

  QtEvents& events_;
  std::unique_ptr<NoticesWindow> notices_;  // made with the first notice
};

}  // namespace tavrel

#endif  // TAVREL_PLATFORM_QT_QT_DIALOGS_H_
