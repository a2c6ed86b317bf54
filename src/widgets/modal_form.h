#ifndef TAVREL_WIDGETS_MODAL_FORM_H_
#define TAVREL_WIDGETS_MODAL_FORM_H_

#include <QDialog>
#include <span>
#include <string_view>

#include "base/tool_tips.h"

namespace tavrel {

// A modal form on top of the window in front, of the size that its contents need. Enter presses
// its default button from anywhere, Escape and the close box are the same event; neither key
// reaches anything else. A form that its logic still calls open stays open whatever the user
// does.
class ModalForm : public QDialog {
  Q_OBJECT
 public:
  ModalForm(const char* name, std::string_view caption);

  // Shows the form and returns when its logic has closed it, or the program ends.
  void Run();

  // Escape and the close box.
  void reject() override;

 protected:
  // Copies what the logic says to the widgets.
  virtual void Show() = 0;
  [[nodiscard]] virtual bool IsOpen() const = 0;
  virtual void Leave() = 0;

  // Gives the form's controls their tips, by their names.
  void ShowTips(std::span<const ToolTip> tips, Language language);

  // After each event: closes the form, or shows what has changed.
  void AfterEvent();

  void keyPressEvent(QKeyEvent* event) override;
};

// A text of the logic for a button or the title of a frame, which take a single "&" for the mark of
// a key.
[[nodiscard]] QString QtCaption(std::string_view utf8);

// A text of the logic for the toolkit.
[[nodiscard]] QString QtText(std::string_view utf8);

}  // namespace tavrel

#endif  // TAVREL_WIDGETS_MODAL_FORM_H_
