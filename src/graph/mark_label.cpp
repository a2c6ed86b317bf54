#include "graph/mark_label.h"

namespace tavrel {
namespace {

constexpr double kHoursAbove = 60;  // minutes

std::string TimeText(double minutes) {
  if (minutes < kSecondsBelow) {
    return ValueText(minutes * kSecondsOfMinute) + " sec";
  }
  return minutes < kHoursAbove ? ValueText(minutes) + " min"
                               : ValueText(minutes / kMinutesOfHour) + " h";
}

}  // namespace

std::string MarkLabel(const MarkedPoint& point) {
  std::string value = ValueText(point.At.Y);
  if (!IsRelativeMode(point.GraphMode)) {
    return value + " / " + TimeText(point.At.X);
  }
  if (!point.Reference) {
    return value;
  }
  const double in_bracket =
      IsReferenceMode(point.GraphMode) ? *point.Reference : *point.Reference + point.At.Y;
  return value + " (" + ValueText(in_bracket) + ")";
}

std::optional<int> RecordAt(const ViewFrame& view, double minutes, int rec_interval, int channels) {
  const double row = RowAt(minutes, rec_interval, channels);
  if (row >= MaxRow(channels)) {
    return std::nullopt;
  }
  const int record = RecordOfRow(row, channels);
  return record < view.RecEnd ? std::optional<int>(record) : std::nullopt;
}

}  // namespace tavrel
