#ifndef TAVREL_SERVICE_FORMS_ALL_COM_H_
#define TAVREL_SERVICE_FORMS_ALL_COM_H_

#include <array>
#include <span>

#include "service/communication_test.h"
#include "service/forms/service_form.h"

class QGridLayout;

namespace tavrel {

// ALL_COM, the form of the communication test.
class AllCom : public ServiceForm {
  Q_OBJECT
 public:
  // Both outlive the form; `test` is open when Run is called.
  AllCom(CommunicationTest& test, SteppedScreens& stepped);

 protected:
  void UpdateWidgets() override;

 private:
  void AddCounters(QGridLayout& grid, int column, const char* name,
                   std::span<const char* const> captions, std::span<QLabel*> values);
  [[nodiscard]] QGridLayout* MakeCounters();
  [[nodiscard]] QLabel* AddValue(QGridLayout& grid, int row, int column, const char* name,
                                 const char* caption);
  void AddFaults(QGridLayout& grid, int row);

  CommunicationTest& test_;
  std::array<QLabel*, kWriteCaptions.size()> lbl_w_{};
  std::array<QLabel*, kReadCaptions.size()> lbl_r_{};
  QLabel* lbl_f_ = nullptr;
  QLabel* lbl_is_ = nullptr;
  QLabel* lbl_should_ = nullptr;
  QLabel* lbl_reply_ = nullptr;
};

}  // namespace tavrel

#endif  // TAVREL_SERVICE_FORMS_ALL_COM_H_
