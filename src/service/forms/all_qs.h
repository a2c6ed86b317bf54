#ifndef TAVREL_SERVICE_FORMS_ALL_QS_H_
#define TAVREL_SERVICE_FORMS_ALL_QS_H_

#include <QList>
#include <functional>

#include "service/forms/service_form.h"
#include "service/quality_data.h"

class QGridLayout;
class QLineEdit;
class QPushButton;

namespace tavrel {

// ALL_QS, the form of the quality data.
class AllQs : public ServiceForm {
  Q_OBJECT
 public:
  // Both outlive the form; `quality` is open when Run is called.
  AllQs(QualityData& quality, SteppedScreens& stepped);

 protected:
  void UpdateWidgets() override;

 private:
  using Changed = std::function<void(const std::string& text)>;

  [[nodiscard]] QLineEdit* MakeEdit(const char* name, const QString& spoken, int characters,
                                    Changed changed);
  [[nodiscard]] QLabel* MakeCaption(const char* text, QLineEdit* buddy);
  [[nodiscard]] QLayout* MakeHead();
  [[nodiscard]] QGridLayout* MakeBoxes();
  void AddSignature(QGridLayout& grid, int index, const char* caption);
  void Update();
  void ShowEditable(bool is_editable, bool is_update_next);

  QualityData& data_;
  QLineEdit* text_serial_ = nullptr;
  QLineEdit* text_unit_ = nullptr;
  struct Signature {
    QLineEdit* text_date = nullptr;
    QLineEdit* text_name = nullptr;
  };
  Signature setup_;
  Signature check_;
  QList<QWidget*> check_row_;
  QPushButton* cmd_today_ = nullptr;
  QPushButton* cmd_update_ = nullptr;
  QLabel* lbl_state_ = nullptr;
};

}  // namespace tavrel

#endif  // TAVREL_SERVICE_FORMS_ALL_QS_H_
