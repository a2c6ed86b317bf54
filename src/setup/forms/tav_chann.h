#ifndef TAVREL_SETUP_FORMS_TAV_CHANN_H_
#define TAVREL_SETUP_FORMS_TAV_CHANN_H_

#include <QTimer>

#include "setup/channel_adjustment.h"
#include "setup/forms/channel_grid.h"
#include "widgets/modal_form.h"

class QAction;
class QLabel;
class QLineEdit;
class QMenuBar;
class QProgressBar;

namespace tavrel {

// TavChann, the form of the channels and their adjustment. It runs Timer_chann.
class TavChann : public ModalForm {
  Q_OBJECT
 public:
  // `channels` outlives the form.
  explicit TavChann(ChannelAdjustment& channels);

 protected:
  void UpdateWidgets() override;

 private:
  [[nodiscard]] QMenuBar* MakeMenus();
  void AddAdjustment(const char* name, const char* caption, Press press);
  void MakeParts();
  [[nodiscard]] QLayout* ArrangeFoot();
  void FocusFinalValue();

  ChannelAdjustment& channels_;
  ChannelGrid* sheet_ = nullptr;
  QMenuBar* menus_ = nullptr;
  QMenu* mnu_adjust_ = nullptr;
  QMenu* mnu_var_ = nullptr;
  QWidget* com_icon_ = nullptr;
  QLabel* lbl_instr_ = nullptr;
  QLineEdit* txt_final_ = nullptr;
  QProgressBar* p_bar_ = nullptr;
  QPushButton* cmd_ok_ = nullptr;
  int final_asked_ = 0;  // how often the keyboard has gone to the final value
  QTimer timer_chann_{this};
};

}  // namespace tavrel

#endif  // TAVREL_SETUP_FORMS_TAV_CHANN_H_
