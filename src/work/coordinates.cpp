#include "work/coordinates.h"

#include <algorithm>

#include "base/number.h"
#include "base/units.h"
#include "dialogs/checks.h"
#include "state/header_edit.h"

namespace tavrel {
namespace {

constexpr int kMostMinutes = 32000;    // a word of the header
constexpr std::int16_t kLowFrom = 53;  // UnitRes below it is high
constexpr std::int16_t kLowResolution = 54;
constexpr std::int16_t kHighResolution = 0;

bool IsLow(std::int16_t resolution) {
  return resolution >= kLowFrom;
}

}  // namespace

// 32000 words of samples are 8.9 hours at one word in a second: nine tenths of an hour in ten
// minutes. Whole tenths are counted, for 9.0 times a fraction may end just below a tenth.
double LongestXmaxHours(std::int32_t rec_interval, int channels) {
  const std::int64_t tenths = std::int64_t{90} * rec_interval / std::max(channels, 1);
  const std::int64_t most = kMostMinutes / 6;  // a tenth of an hour is 6 minutes
  return static_cast<double>(std::min(tenths, most)) / 10;
}

void Coordinates::Run() {
  slot_ = state_.SelSlot;
  ReadHeader();
  OpenScreen();
  screens_.Show(View::kTavCoord);
  CloseScreen();
}

void Coordinates::ReadHeader() {
  const UnitRecord& unit = state_.Unit[slot_];
  boxes_[kYmax] = FormatMask(unit.UnitYmax, "####0");
  boxes_[kYmin] = FormatMask(unit.UnitYmin, "####0");
  boxes_[kXmax] = FormatMask(unit.UnitXmax / kMinutesPerHour, "###0.00");
  at_opening_ = boxes_;
  low_ = IsLow(unit.UnitRes);
}

void Coordinates::TBox_Change(std::size_t box, const std::string& text) {
  if (box < kBoxes) {
    boxes_.at(box) = text;
  }
}

void Coordinates::CboRes_Click(int row) {
  low_ = row == 1;
}

void Coordinates::CmdOK_Click() {
  Wanted wanted;
  if (!IsOpen() || !ExamineAll(wanted)) {
    return;
  }
  Store(wanted);
  CloseScreen();
}

Limits Coordinates::LimitsOf(std::size_t box) const {
  if (box == kYmax) {
    return {1, 30000};
  }
  if (box == kYmin) {
    return {-10000, 30000};
  }
  return {0.1, LongestXmaxHours(state_.RecInterval[slot_], state_.Unit[slot_].UnitChannels)};
}

bool Coordinates::ExamineAll(Wanted& wanted) {
  const UnitRecord& unit = state_.Unit[slot_];
  wanted = {unit.UnitYmax, unit.UnitYmin, unit.UnitXmax, WantedResolution()};
  if (IsTouched(kYmax)) {
    const auto value = Examine(kYmax, "Ymax");
    if (!value) {
      return false;
    }
    wanted.y_max = ToWord(*value);
  }
  if (IsTouched(kYmin)) {
    const auto value = Examine(kYmin, "Ymin");
    if (!value) {
      return false;
    }
    wanted.y_min = ToWord(*value);
  }
  if (IsTouched(kXmax)) {
    const auto value = Examine(kXmax, "Xmax");
    if (!value) {
      return false;
    }
    wanted.x_max = ToWord(*value * kMinutesPerHour);
  }
  return true;
}

// Nothing, and a box has told it, if the value does not lie in the range.
std::optional<double> Coordinates::Examine(Box box, const char* name) {
  const double value = ReadNumber(boxes_.at(box));
  const Limits limits = LimitsOf(box);
  if (!CheckRange(dialogs_, name, value, limits.Lower, limits.Upper)) {
    return std::nullopt;
  }
  return value;
}

// A resolution of the kind that is chosen stays as it is.
std::int16_t Coordinates::WantedResolution() const {
  const std::int16_t present = state_.Unit[slot_].UnitRes;
  if (low_ == IsLow(present)) {
    return present;
  }
  return low_ ? kLowResolution : kHighResolution;
}

// Marks are stored in coordinates of the view, so they do not survive a change of it.
void Coordinates::Store(const Wanted& wanted) {
  const UnitRecord& unit = state_.Unit[slot_];
  const bool is_same = wanted.y_max == unit.UnitYmax && wanted.y_min == unit.UnitYmin &&
                       wanted.x_max == unit.UnitXmax && wanted.resolution == unit.UnitRes;
  if (is_same) {
    return;
  }
  EditHeader(state_, slot_, [&wanted](UnitRecord& header) {
    header.UnitYmax = wanted.y_max;
    header.UnitYmin = wanted.y_min;
    header.UnitXmax = wanted.x_max;
    header.UnitRes = wanted.resolution;
    header.UnitMarks = 0;
  });
  state_.ForgetCurves();
}

}  // namespace tavrel
