#ifndef TAVREL_TESTS_FORMS_GRAPH_FORMS_H_
#define TAVREL_TESTS_FORMS_GRAPH_FORMS_H_

#include "tests/forms/graph_form_bench.h"

namespace tavrel {

// A part range, minutes and degrees.
inline constexpr PlotPoint kFrom{10, 100};
inline constexpr PlotPoint kTo{60, 700};

class GraphForms : public GraphFormBench {
 protected:
  QAction* Entry(const char* name) { return form->findChild<QAction*>(name); }
  static void KeyOnPlot(Qt::Key key, Qt::KeyboardModifiers modifiers = {}) {
    QTest::keyClick(QApplication::focusWidget(), key, modifiers);
  }
  static bool HasInk(const QImage& picture) {
    for (int y = 0; y < picture.height(); ++y) {
      for (int x = 0; x < picture.width(); ++x) {
        if (picture.pixelColor(x, y) != QColor(Qt::white)) {
          return true;
        }
      }
    }
    return false;
  }
};

}  // namespace tavrel

#endif  // TAVREL_TESTS_FORMS_GRAPH_FORMS_H_
