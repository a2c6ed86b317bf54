#ifndef TAVREL_SERVICE_FORMS_REGISTER_SHEET_FORM_H_
#define TAVREL_SERVICE_FORMS_REGISTER_SHEET_FORM_H_

#include <QLabel>
#include <QProgressBar>

#include "service/forms/register_grid.h"
#include "service/forms/service_form.h"

namespace tavrel {

// A form of a RegisterSheet: the grid, how far the reading is, and the button that reads all again.
class RegisterSheetForm : public ServiceForm {
  Q_OBJECT
 public:
  // Both outlive the form; `sheet` is open when Run is called.
  RegisterSheetForm(RegisterSheet& sheet, SteppedScreens& stepped, const char* name);

 protected:
  void UpdateWidgets() override;
  void keyPressEvent(QKeyEvent* event) override;
  void closeEvent(QCloseEvent* event) override;

 private:
  void Arrange();
  void MakeCounter();
  void Commit(const QString& text);

  RegisterSheet& sheet_;
  RegisterGrid* grid_ = nullptr;
  QLabel* cnt_ = nullptr;
  QProgressBar* progress_ = nullptr;
  QLabel* lbl_note_ = nullptr;
};

// ALL_RAM, all registers of the instrument.
class AllRam : public RegisterSheetForm {
  Q_OBJECT
 public:
  AllRam(RegisterSheet& sheet, SteppedScreens& stepped)
      : RegisterSheetForm(sheet, stepped, "ALL_RAM") {}
};

// ALL_REGS, the registers of its processor.
class AllRegs : public RegisterSheetForm {
  Q_OBJECT
 public:
  AllRegs(RegisterSheet& sheet, SteppedScreens& stepped)
      : RegisterSheetForm(sheet, stepped, "ALL_REGS") {}
};

}  // namespace tavrel

#endif  // TAVREL_SERVICE_FORMS_REGISTER_SHEET_FORM_H_
