#ifndef TAVREL_MAIN_FORMS_TAVSETT_H_
#define TAVREL_MAIN_FORMS_TAVSETT_H_

#include <QComboBox>
#include <QStringList>

#include "main/settings_dialog.h"
#include "widgets/modal_form.h"
#include "widgets/selecting_edit.h"

class QGridLayout;
class QPushButton;

namespace tavrel {

// TAVSETT, the form of the settings.
class TavSett : public ModalForm {
  Q_OBJECT
 public:
  // `dialog` outlives the form.
  explicit TavSett(SettingsDialog& dialog);

 protected:
  void UpdateWidgets() override;

 private:
  using TakeIndex = void (SettingsDialog::*)(int index);
  using TakeText = void (SettingsDialog::*)(const std::string& text);

  void MakeMenu();
  void MakeControls();
  void Arrange();
  void AddHeading(QGridLayout& grid, const char* text);
  void AddLine(QGridLayout& grid, const char* text, QWidget* control);
  [[nodiscard]] QComboBox* MakeList(const char* name, const QStringList& items, TakeIndex take);
  void FillList(QComboBox* list, const char* name, const QStringList& items, TakeIndex take);
  void MakePorts();
  void ShowPorts();
  [[nodiscard]] SelectingEdit* MakeText(const char* name, TakeText take);
  static void ShowChoice(QPushButton& button, const char* what, std::string_view chosen);
  void ShowTipsAndDevice();

  SettingsDialog& dialog_;
  QComboBox* cbo_com_ = nullptr;
  QComboBox* cbo_help_ = nullptr;
  QComboBox* cbo_mode_ = nullptr;
  QComboBox* cbo_dia_ = nullptr;
  QComboBox* cbo_width_ = nullptr;
  SelectingEdit* txt_plant_ = nullptr;
  SelectingEdit* txt_lab_ = nullptr;
  QPushButton* cmd_font_ = nullptr;
  QPushButton* cmd_path_ = nullptr;
  QPushButton* cmd_ok_ = nullptr;
};

}  // namespace tavrel

#endif  // TAVREL_MAIN_FORMS_TAVSETT_H_
