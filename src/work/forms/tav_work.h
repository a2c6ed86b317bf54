#ifndef TAVREL_WORK_FORMS_TAV_WORK_H_
#define TAVREL_WORK_FORMS_TAV_WORK_H_

#include <QLabel>
#include <array>

#include "widgets/colour_cell.h"
#include "widgets/glyph_button.h"
#include "widgets/modal_form.h"
#include "widgets/unit_label.h"
#include "work/forms/work_table.h"
#include "work/worksheet.h"

class QGroupBox;
class QHBoxLayout;
class QVBoxLayout;

namespace tavrel {

// TavWork, the worksheet. One instance, shown again for each slot.
class TavWork : public ModalForm {
  Q_OBJECT
 public:
  // `worksheet` outlives the form and is open when Run is called.
  explicit TavWork(Worksheet& worksheet);

  // After a tick of the cycle has refreshed the worksheet.
  void ShowRefresh();

 protected:
  void UpdateWidgets() override;
  void keyPressEvent(QKeyEvent* event) override;
  void showEvent(QShowEvent* event) override;

 private:
  // A value in large type with the words that tell what it is.
  struct Reading {
    QLabel* value = nullptr;
    UnitLabel* words = nullptr;
  };

  void MakeHead();
  void MakeTable();
  void MakeRecording();
  void MakeController();
  void MakeProgram();
  void MakeExits();
  void Arrange();
  void Tighten(QVBoxLayout& left, QVBoxLayout& side);
  [[nodiscard]] Reading MakeReading(const char* name, const char* words);
  static void Speak(const Reading& reading);
  static void AddReading(QVBoxLayout& column, const Reading& reading, QWidget* behind = nullptr);
  void ShowHead(const WorksheetValues& now);
  void ShowRecording(const WorksheetValues& now);
  void KeepRoomForLedger();
  void ShowController(const WorksheetValues& now);
  void ShowProgram(const WorksheetValues& now);

  Worksheet& worksheet_;
  ColourCell* tavc_cell_ = nullptr;
  QLabel* tavc_no_ = nullptr;
  QLabel* tav_file_ = nullptr;
  WorkTable* sheet_ = nullptr;
  QGroupBox* fr_recording_ = nullptr;
  QWidget* rec_buttons_ = nullptr;
  std::array<GlyphButton*, 2> cmd_rec_{};
  ColourCell* rec_state_cell_ = nullptr;
  QLabel* rec_state_ = nullptr;
  Reading rec_;
  Reading sampl_;
  QLabel* ledger_ = nullptr;
  QGroupBox* fr_controller_ = nullptr;
  std::array<GlyphButton*, 3> cmd_ctrl_{};
  GlyphButton* cmd_prog_on_ = nullptr;
  GlyphButton* cmd_set_ctrl_ = nullptr;
  Reading setpoint_;
  QGroupBox* fr_prog_ = nullptr;
  GlyphButton* cmd_prog_off_ = nullptr;
  Reading step_;
  Reading time_;
  QLabel* prog_text_ = nullptr;
  GlyphButton* cmd_coord_ = nullptr;
  GlyphButton* cmd_ok_ = nullptr;
  GlyphButton* cmd_exit_ = nullptr;
  int focus_calls_ = 0;  // of the worksheet, that have been followed
};

}  // namespace tavrel

#endif  // TAVREL_WORK_FORMS_TAV_WORK_H_
