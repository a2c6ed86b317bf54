#ifndef TAVREL_WORK_FORMS_TAV_REC_H_
#define TAVREL_WORK_FORMS_TAV_REC_H_

#include <QComboBox>
#include <QLabel>
#include <QLineEdit>

#include "widgets/modal_form.h"
#include "work/recording_settings.h"

class QGridLayout;

namespace tavrel {

// TavRec, the form of a new recording file or of the end of a recording.
class TavRec : public ModalForm {
  Q_OBJECT
 public:
  // `settings` outlives the form and is open when Run is called.
  explicit TavRec(RecordingSettings& settings);

 protected:
  void UpdateWidgets() override;

 private:
  [[nodiscard]] QWidget* MakeNewFace();
  [[nodiscard]] QWidget* MakeSettingsFace();
  [[nodiscard]] QLabel* MakeHours(const char* name);
  void AddLine(QGridLayout& grid, const char* text, QWidget* control, const char* unit);

  RecordingSettings& settings_;
  QComboBox* cbo_sampl_ = nullptr;
  QLabel* lbl_max_ = nullptr;
  QLabel* lbl_auto_ = nullptr;
  QLineEdit* txt_stop_ = nullptr;
  QComboBox* cbo_func_ = nullptr;
};

}  // namespace tavrel

#endif  // TAVREL_WORK_FORMS_TAV_REC_H_
