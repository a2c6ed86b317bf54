#ifndef TAVREL_WIDGETS_MODAL_FORM_H_
#define TAVREL_WIDGETS_MODAL_FORM_H_

#include <QDialog>
#include <QKeySequence>
#include <functional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "base/tool_tips.h"
#include "state/modal_screen.h"
#include "widgets/form_texts.h"
#include "widgets/glyph_button.h"

class QBoxLayout;
class QComboBox;
class QGridLayout;
class QHBoxLayout;
class QMenu;
class QPushButton;
class QVBoxLayout;

namespace tavrel {

class NumberEdit;

// Space around the contents of a form and between its parts, in points.
inline constexpr int kWideMargin = 20;    // of a form with a few values
inline constexpr int kListMargin = 16;    // of a form with lists, and of a box
inline constexpr int kNarrowMargin = 12;  // of a form that is a table or a picture

// A modal form on top of the window in front, for a screen of the logic. Enter presses its default
// button from anywhere, Escape and the close box are the same event; neither key reaches anything
// else. A form that its logic still calls open stays open whatever the user does.
//
// A form is never larger than the free area of its screen (widgets/form_room.h).
//
// Its menus and buttons have letters that choose them together with Alt.
//
// A control made here carries its name as its object name, by which tips and tests find it. What
// it is given to run is followed by AfterEvent().
class ModalForm : public QDialog {
  Q_OBJECT
 public:
  // `screen` outlives the form and is open when Run is called.
  ModalForm(ModalScreen& screen, const char* name, std::string_view caption);

  // Shows the form and returns when its logic has closed it, or the program ends.
  void Run();

  // Escape and the close box.
  void reject() override;

  // The size that the user has given it before; no effect on a form of a fixed size. Call it before
  // Run.
  void PreferSize(QSize size) { preferred_ = size; }

  // The user has given it another size than it came with.
  [[nodiscard]] bool HasUsersSize() const;

 signals:
  // F1.
  void HelpAsked();

 protected:
  // Copies what the logic says to the widgets.
  virtual void UpdateWidgets() = 0;

  // Gives the form's controls their tips, by their names.
  void ShowTips(std::span<const ToolTip> tips, Language language);

  // After each event: closes the form, or shows what has changed.
  void AfterEvent();

  using Press = std::function<void()>;

  // A button with a caption, which is also its accessible name. It is never the default by itself.
  [[nodiscard]] QPushButton* MakeButton(const char* name, const char* caption, Press press);

  // "CmdOK": the default button.
  [[nodiscard]] QPushButton* MakeOk(Press press);

  // "CmdCancel": leaves as the Escape key does.
  [[nodiscard]] QPushButton* MakeCancel();

  // OK and Cancel at the right of a line.
  [[nodiscard]] QHBoxLayout* MakeOkAndCancel(Press ok);

  // A button with a picture; `spoken` is its accessible name.
  [[nodiscard]] GlyphButton* MakeGlyphButton(const QString& name, const char* spoken, Glyph glyph,
                                             Press press);

  void AddEntry(QMenu& menu, const char* name, const char* caption, Press press,
                const QKeySequence& shortcut = {});

  // The number box "TBox_<index>" in a new row of `grid`, behind `caption`, which also is its
  // accessible name. `changed` gets each text that the user types.
  using Changed = std::function<void(const std::string& text)>;
  NumberEdit* AddNumberBox(QGridLayout& grid, int index, const QString& caption,
                           Qt::Alignment alignment, Changed changed);

  // The layout of the form, with that margin all around and between its parts. A form of a fixed
  // column has the size of its contents.
  QVBoxLayout* MakeColumn(int margin);
  QVBoxLayout* MakeFixedColumn(int margin);

  void keyPressEvent(QKeyEvent* event) override;
  void showEvent(QShowEvent* event) override;
  bool event(QEvent* event) override;

 private:
  void FitToScreen();
  void MarkLetters();
  void TakePreferredSize();
  [[nodiscard]] bool IsFixed() const { return minimumSize() == maximumSize(); }

  ModalScreen& screen_;
  std::vector<QPushButton*> buttons_;  // with captions that stay
  QSize preferred_;
  QSize fitted_;  // the size that it came with
};

}  // namespace tavrel

#endif  // TAVREL_WIDGETS_MODAL_FORM_H_
