#ifndef TAVREL_GRAPH_VIEW_FRAME_H_
#define TAVREL_GRAPH_VIEW_FRAME_H_

#include <array>
#include <cstdint>
#include <optional>

#include "base/numbered.h"
#include "platform/surface.h"
#include "state/unit_record.h"

// A view of the graph in numbers: its extent, which rows it shows, and the code in which places
// on it are kept in a header.
//
// Records are 2-byte words of the recording file counted from 1. What is called the record *of
// row r* is 500 + r x UnitChannels; the word of column c (from 1) of that row lies c further.
namespace tavrel {

inline constexpr int kOverview = 0;
inline constexpr int kPartView = 1;
inline constexpr int kViews = 2;

// A table by the view, kOverview or kPartView.
template <typename T>
using ByView = Numbered<T, kOverview, kPartView>;

// UnitGraphMode, the display mode of the part view. A header may hold any number: what lies
// beyond the list counts as the nearest mode.
inline constexpr int kRelativeMode = 1;   // Y is the difference from the reference input
inline constexpr int kReferenceMode = 2;  // and the X axis has the values of that input

[[nodiscard]] constexpr bool IsRelativeMode(int mode) {
  return mode >= kRelativeMode;
}
[[nodiscard]] constexpr bool IsReferenceMode(int mode) {
  return mode >= kReferenceMode;
}

// Most words of samples that are ever shown. More than a recording holds (32000), and with the
// 500 of the header still a record number of 16 bits.
inline constexpr int kMaxShownWords = 32200;

inline constexpr double kSecondsOfMinute = 60;
inline constexpr double kMinutesOfHour = 60;

// From this right edge on, minutes, the X axis is labelled in hours.
inline constexpr double kHoursFrom = 300;

// One view: its extent and its rows.
struct ViewFrame {
  double XLeft = 0;  // minutes
  double XRight = 0;
  double YTop = 0;  // degrees Celsius
  double YBottom = 0;
  double XFactor = 0;  // of the code of places
  double YFactor = 0;

  int RecFirst = 0;  // records of the first and the last row that the view may show
  int RecLast = 0;
  int RecEnd = 1;    // record of the row at which drawing stops now; moves with the recording
  int RecDrawn = 0;  // where the last drawing stopped
  int RecNow = 0;    // row being drawn
  int RecStep = 1;   // from one drawn row to the next
  int RecPrev = 0;   // row of the last drawn point
  // Something that is drawn lies between YBottom and YTop.
  bool HasCurve = false;
  // The last drawn point of each curve, by its place; nothing where its word could not be read.
  Numbered<std::optional<double>, 0, kInputs - 1> CurveLastY;

  [[nodiscard]] bool IsInHours() const { return XRight >= kHoursFrom; }

  // Minutes across, degrees up.
  [[nodiscard]] Scale RestingScale() const { return {XLeft, YTop, XRight, YBottom}; }

  // Record numbers across, degrees up. For a view inside one row it has no width.
  [[nodiscard]] Scale RecordScale() const {
    return {static_cast<double>(RecFirst), YTop, static_cast<double>(RecLast), YBottom};
  }
};

// The code of places. Its numbers are those of all files ever written.
inline constexpr int kCodeLeft = 7689;
inline constexpr int kCodeWidth = 21522;
inline constexpr int kCodeRight = kCodeLeft + kCodeWidth;  // 29211
inline constexpr int kCodeBottom = 4692;
inline constexpr int kCodeHeight = 23391;  // the top is 28083

// Sets both factors from the extent. An extent without width gives a factor of 0.
void SetFactors(ViewFrame& view);

// Held at the limits of 16 bits.
[[nodiscard]] std::int16_t CodeX(const ViewFrame& view, double x);
[[nodiscard]] std::int16_t CodeY(const ViewFrame& view, double y);

// Held inside the view.
[[nodiscard]] double DecodeX(const ViewFrame& view, std::int16_t code);
[[nodiscard]] double DecodeY(const ViewFrame& view, std::int16_t code);

// The last row that is shown of a file with `channels` (1..15) words to the row.
[[nodiscard]] constexpr int MaxRow(int channels) {
  return kMaxShownWords / channels;
}

// The row at `minutes`, not rounded: exactly 0 becomes 1, for row 0 is never drawn, and none is
// beyond the maximal row.
[[nodiscard]] double RowAt(double minutes, int rec_interval, int channels);

// The record of the row next to `row`.
[[nodiscard]] int RecordOfRow(double row, int channels);

// Minutes of the row of a record.
[[nodiscard]] double MinutesOfRecord(int record, int rec_interval, int channels);

// The record of the last row of a file of `sample_count` rows, held down to RecLast.
[[nodiscard]] int RecEndOf(const ViewFrame& view, std::int32_t sample_count, int channels);

// Sets the row bounds and the step from the extent, and the read position to the start. Returns
// true for high resolution.
bool SetRecords(ViewFrame& view, const UnitRecord& unit, int rec_interval,
                std::int32_t sample_count);

}  // namespace tavrel

#endif  // TAVREL_GRAPH_VIEW_FRAME_H_
