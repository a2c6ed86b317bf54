#ifndef TAVREL_GRAPH_GRAPH_MARKS_H_
#define TAVREL_GRAPH_GRAPH_MARKS_H_

#include <array>
#include <cstdint>
#include <functional>
#include <string>

#include "graph/graph_plotter.h"
#include "graph/graph_state.h"
#include "graph/graph_values.h"
#include "graph/measure.h"
#include "platform/dialogs.h"
#include "state/run_state.h"

namespace tavrel {

inline constexpr std::size_t kMarkCodes = 4;  // X and Y of the cross, X and Y of the text

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
  void DeleteLast();
  void BeginPoint();
  void BeginComment();
  void Refuse();
  void LabelFollowsFrom(PlotPoint at, const std::string& text);
  void Keep(const std::array<std::int16_t, kMarkCodes>& codes, const std::string& text);
  [[nodiscard]] PlotPoint TextPlace() const;
  [[nodiscard]] std::string LabelOfPoint() const;
  [[nodiscard]] const ViewFrame& View() const;
  [[nodiscard]] int Slot() const;
  [[nodiscard]] UnitRecord& Unit() const;
  [[nodiscard]] Surface& ImgC() const;

  Parts parts_;
  PlotPoint first_;  // of the coordinate mark that is being made
};

}  // namespace tavrel

#endif  // TAVREL_GRAPH_GRAPH_MARKS_H_
