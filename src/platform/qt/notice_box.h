#ifndef TAVREL_PLATFORM_QT_NOTICE_BOX_H_
#define TAVREL_PLATFORM_QT_NOTICE_BOX_H_

#include <QMessageBox>
#include <QProxyStyle>

#include "base/language.h"
#include "platform/dialogs.h"

namespace tavrel {

// A box of the toolkit with the program's own signs. What follows the first empty line of the
// notice is its advice and stands in a paragraph of its own. The text is shown as it is, without
// a markup language; a path or a command in it can be marked and copied. The box is never too
// narrow for its title, and a path or a command of usual length stands on one line.
class NoticeBox : public QMessageBox {
  Q_OBJECT
 public:
  // `no` is QMessageBox::NoButton for a box with one answer, which Escape gives as well.
  NoticeBox(const Notice& notice, StandardButton yes, StandardButton no, QWidget* parent);

  // Gives the sign, and the answers that the box has by now, their words in that language.
  void SpeakIn(Language language);

 protected:
  void showEvent(QShowEvent* event) override;

 private:
  // Gives the box its sign wherever it asks its style for one.
  class Signs : public QProxyStyle {
   public:
    [[nodiscard]] QIcon standardIcon(StandardPixmap picture, const QStyleOption* option,
                                     const QWidget* widget) const override;
  };

  void ShowText(const std::string& text);
  void KeepWide();
  [[nodiscard]] int TitleWidth() const;
  [[nodiscard]] int AdviceWidth() const;

  Signs signs_;
};

}  // namespace tavrel

#endif  // TAVREL_PLATFORM_QT_NOTICE_BOX_H_
