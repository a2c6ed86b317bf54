#ifndef TAVREL_WORK_FORMS_TAV_COORD_H_
#define TAVREL_WORK_FORMS_TAV_COORD_H_

#include "widgets/modal_form.h"
#include "work/coordinates.h"

class QGridLayout;

namespace tavrel {

// TavCoord, the form of the graph's coordinates.
class TavCoord : public ModalForm {
  Q_OBJECT
 public:
  // `coordinates` outlives the form and is open when Run is called.
  explicit TavCoord(Coordinates& coordinates);

 protected:
  void UpdateWidgets() override {}  // the values change by the user's own typing only

 private:
  void AddBox(QGridLayout& grid, const char* text, std::size_t box);
  void AddResolution(QGridLayout& grid);

  Coordinates& coordinates_;
};

}  // namespace tavrel

#endif  // TAVREL_WORK_FORMS_TAV_COORD_H_
