#ifndef TAVREL_SERVICE_FORMS_ALL_MEM_H_
#define TAVREL_SERVICE_FORMS_ALL_MEM_H_

#include <array>

#include "service/forms/service_form.h"
#include "service/memory_test.h"

namespace tavrel {

// ALL_MEM, the form of the memory test.
class AllMem : public ServiceForm {
  Q_OBJECT
 public:
  // Both outlive the form; `test` is open when Run is called.
  AllMem(MemoryTest& test, SteppedScreens& stepped);

 protected:
  void UpdateWidgets() override;
  void changeEvent(QEvent* event) override;

 private:
  static void ShowVerdict(QLabel& label, const MemoryVerdict& verdict);

  MemoryTest& test_;
  std::array<QLabel*, 4> label2_{};
};

}  // namespace tavrel

#endif  // TAVREL_SERVICE_FORMS_ALL_MEM_H_
