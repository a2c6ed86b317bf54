#ifndef TAVREL_GRAPH_GRAPH_MARKS_H_
#define TAVREL_GRAPH_GRAPH_MARKS_H_

#include <functional>
#include <string>

#include "frame/run_state.h"
#include "graph/graph_plotter.h"
#include "graph/graph_state.h"
#include "graph/graph_values.h"
#include "graph/measure.h"
#include "platform/dialogs.h"

namespace tavrel {

// The marks of the part view: up to five crosses with their coordinates, and comments. They are
// kept in the header of the recording and are written with it when the graph closes.
class GraphMarks {
 public:
  struct Parts {  // all outlive this
    RunState& state;
    GraphState& graph;
    GraphValues& values;
    GraphPlotter& plotter;
    Dialogs& dialogs;
    std::function<void()> cancel_tool;  // GraphTools::CancelTool
    std::function<void()> show_part;    // what cmdPart does
  };
  explicit GraphMarks(Parts parts) : parts_(std::move(parts)) {}

  // PbMark, after GraphTools::BeginTool: 0 deletes the last mark, 1 begins a coordinate mark,
  // 2 a comment.
  void Start(int index);

  // Releases of the mouse in kMarkPoint, and in kMarkLocation and kCommentLocation.
  void TakePoint(PlotPoint at);
  void TakeLocation();

  // Enter in kComment.
  void TakeComment();

  // All marks of the header, on ImgC of the part view.
  void ShowMarks();

 private:
  Parts parts_;
};

}  // namespace tavrel

#endif  // TAVREL_GRAPH_GRAPH_MARKS_H_
