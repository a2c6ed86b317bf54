#ifndef TAVREL_TESTS_FORMS_GRAPH_FORM_BENCH_H_
#define TAVREL_TESTS_FORMS_GRAPH_FORM_BENCH_H_

#include <memory>
#include <vector>

#include "graph/forms/tav_graph.h"
#include "tests/forms/modal_bench.h"
#include "tests/support/graph_bench.h"
#include "tests/support/wait_until.h"

namespace tavrel {

// TavGraph on the graph's bench, joined as the program joins it: events that a drawing serves are
// those of the application.
class GraphFormBench : public ModalDeeds, public GraphBench {
 protected:
  using ModalDeeds::Click;

  GraphFormBench() {
    program.events.on_pump = [] { QCoreApplication::processEvents(); };
  }

  // The form over the recording, until it closes. The actions that were told run in it.
  void Run(const std::vector<std::int16_t>& samples) {
    Load(samples);
    Run();
  }
  void Run() {
    if (form == nullptr) {
      form = std::make_unique<TavGraph>(graph, program.graph_output);
    }
    graph.Open();
    form->Run();
    graph.CloseNow();
  }

  [[nodiscard]] bool WaitForOverview() {
    return WaitUntil([this] { return graph.State().OverPainted && !graph.State().GraphBusy; });
  }
  [[nodiscard]] bool WaitForPart() {
    return WaitUntil([this] { return graph.State().PartPainted && !graph.State().GraphBusy; });
  }

  static QPoint PlaceOn(QWidget* plot, PlotPoint user) {
    return dynamic_cast<PlotView*>(plot)->PositionOf({user.X, user.Y});
  }
  static void DragOn(const char* name, PlotPoint from, PlotPoint to) {
    QWidget* plot = Find(name);
    QTest::mousePress(plot, Qt::LeftButton, {}, PlaceOn(plot, from));
    QTest::mouseMove(plot, PlaceOn(plot, to));
    QTest::mouseRelease(plot, Qt::LeftButton, {}, PlaceOn(plot, to));
  }
  static void ClickOn(const char* name, PlotPoint at) { DragOn(name, at, at); }

  // A part range by the mouse, and the part view in front.
  [[nodiscard]] bool GoToPart(PlotPoint from, PlotPoint to) {
    const bool is_over = WaitForOverview();
    DragOn("PicC_0", from, to);
    Click("cmdPart");
    return is_over && WaitForPart();
  }

  static QImage PictureOf(const char* name) { return Find(name)->grab().toImage(); }
  static bool IsShown(const char* name) { return Find(name)->isVisible(); }

  std::unique_ptr<TavGraph> form;
};

}  // namespace tavrel

#endif  // TAVREL_TESTS_FORMS_GRAPH_FORM_BENCH_H_
