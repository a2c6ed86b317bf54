#ifndef TAVREL_SETUP_FORMS_TAV_INST_H_
#define TAVREL_SETUP_FORMS_TAV_INST_H_

#include <QFrame>
#include <QPlainTextEdit>
#include <QTimer>

#include "setup/installation.h"
#include "widgets/edit_grid.h"
#include "widgets/modal_form.h"

namespace tavrel {

// TavInst, the form of the installation: the grid of the tests, its two pop-ups, and what OK would
// do.
class TavInst : public ModalForm {
  Q_OBJECT
 public:
  // `installation` outlives the form and is open when Run is called.
  explicit TavInst(Installation& installation);

 protected:
  void UpdateWidgets() override;
  void keyPressEvent(QKeyEvent* event) override;

 private:
  void MakeGrid();
  void MakeHeads();
  void AddRow(int row);
  void Arrange();
  [[nodiscard]] QFrame* MakePopup(const char* name, const char* spoken);
  void MakeInputPopup();
  void MakeNumberPopup();
  void ShowRow(int row);
  void ShowPopups();
  void ShowPopup(QFrame& popup, bool is_shown, int column);
  void TypeOnCell(int row, int column, const QString& text);

  Installation& installation_;
  EditGrid* sheet_ = nullptr;
  QWidget* heads_ = nullptr;
  QFrame* pic_input_ = nullptr;
  QFrame* pic_tav_no_ = nullptr;
  QPlainTextEdit* lbl_effect_ = nullptr;
  QWidget* cmd_ok_ = nullptr;
  QTimer refresh_;
};

}  // namespace tavrel

#endif  // TAVREL_SETUP_FORMS_TAV_INST_H_
