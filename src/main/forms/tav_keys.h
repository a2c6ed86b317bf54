#ifndef TAVREL_MAIN_FORMS_TAV_KEYS_H_
#define TAVREL_MAIN_FORMS_TAV_KEYS_H_

#include "main/keys_screen.h"
#include "widgets/modal_form.h"

class QTableWidget;

namespace tavrel {

// The form "TavKeys": a table of all keys.
class TavKeys : public ModalForm {
  Q_OBJECT
 public:
  explicit TavKeys(KeysScreen& keys);

 protected:
  void UpdateWidgets() override {}

 private:
  [[nodiscard]] QTableWidget* MakeTable(Language language);
};

}  // namespace tavrel

#endif  // TAVREL_MAIN_FORMS_TAV_KEYS_H_
