#ifndef TAVREL_WORK_COORDINATES_H_
#define TAVREL_WORK_COORDINATES_H_

#include <array>
#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

#include "dialogs/checks.h"
#include "platform/dialogs.h"
#include "platform/screens.h"
#include "state/modal_screen.h"
#include "state/run_state.h"

namespace tavrel {

// Rows of CboRes.
inline constexpr std::array<std::string_view, 2> kResolutionItems = {"  high", "  low"};

// The longest time axis in hours, with one decimal: a file cannot hold more, and the minutes of
// the axis are a word of the header.
[[nodiscard]] double LongestXmaxHours(std::int32_t rec_interval, int channels);

// TavCoord, the coordinates of the graph of the selected slot. One instance for the life of the
// program; its form is open at most once. A box that still shows what it showed at opening
// changes nothing.
class Coordinates : public ModalScreen {
 public:
  enum Box : std::size_t { kYmax = 0, kYmin = 1, kXmax = 2, kBoxes = 3 };

  // All outlive this.
  Coordinates(RunState& state, Dialogs& dialogs, Screens& screens)
      : ModalScreen(state, View::kTavCoord), state_(state), dialogs_(dialogs), screens_(screens) {}

  // Shows the form for SelSlot and returns when it has closed.
  void Run();

  [[nodiscard]] const std::string& TBox(std::size_t box) const { return boxes_.at(box); }
  [[nodiscard]] int CboRes() const { return low_ ? 1 : 0; }

  // What a box takes.
  [[nodiscard]] Limits LimitsOf(std::size_t box) const;

  void TBox_Change(std::size_t box, const std::string& text);
  void CboRes_Click(int row);

  // Takes all values over, or none of them: the first that lies out of its range is told in a
  // box, and the form stays open.
  void CmdOK_Click();

 private:
  // What the header is going to hold.
  struct Wanted {
    std::int16_t y_max = 0;
    std::int16_t y_min = 0;
    std::int16_t x_max = 0;  // minutes
    std::int16_t resolution = 0;
  };

  void ReadHeader();
  [[nodiscard]] bool IsTouched(Box box) const { return boxes_[box] != at_opening_[box]; }
  [[nodiscard]] std::optional<double> Examine(Box box, const char* name);
  [[nodiscard]] bool ExamineAll(Wanted& wanted);
  [[nodiscard]] std::int16_t WantedResolution() const;
  void Store(const Wanted& wanted);

  RunState& state_;
  Dialogs& dialogs_;
  Screens& screens_;
  int slot_ = 0;
  std::array<std::string, kBoxes> boxes_;
  std::array<std::string, kBoxes> at_opening_;
  bool low_ = false;
};

}  // namespace tavrel

#endif  // TAVREL_WORK_COORDINATES_H_
