#ifndef TAVREL_WORK_FORMS_TAV_PROG_H_
#define TAVREL_WORK_FORMS_TAV_PROG_H_

#include <QLabel>
#include <QMenu>

#include "widgets/modal_form.h"
#include "work/forms/program_grid.h"
#include "work/program_editor.h"

class QPushButton;

namespace tavrel {

// TavProg, the form of the program editor.
class TavProg : public ModalForm {
  Q_OBJECT
 public:
  // `editor` outlives the form.
  explicit TavProg(ProgramEditor& editor);

 protected:
  void Show() override;
  [[nodiscard]] bool IsOpen() const override { return editor_.IsOpen(); }
  void Leave() override { editor_.Quit(); }

 private:
  using Press = void (ProgramEditor::*)();

  void ConnectGrid();
  void Arrange();
  void MakeEntry(QMenu& menu, const char* name, const char* caption,
                 QKeySequence::StandardKey shortcut, Press press);
  QPushButton* MakeButton(const char* name, const char* caption, Press press);

  ProgramEditor& editor_;
  ProgramGrid* grid_ = nullptr;
  QLabel* lb_changed_ = nullptr;
};

}  // namespace tavrel

#endif  // TAVREL_WORK_FORMS_TAV_PROG_H_
