#ifndef TAVREL_WORK_FORMS_TAV_PROG_H_
#define TAVREL_WORK_FORMS_TAV_PROG_H_

#include <QLabel>
#include <QMenu>

#include "widgets/modal_form.h"
#include "work/forms/program_curve.h"
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
  void UpdateWidgets() override;

 private:
  void ConnectGrid();
  void Arrange();

  ProgramEditor& editor_;
  ProgramGrid* grid_ = nullptr;
  ProgramCurve* profile_ = nullptr;
  QLabel* lb_changed_ = nullptr;
};

}  // namespace tavrel

#endif  // TAVREL_WORK_FORMS_TAV_PROG_H_
