#include "graph/view_frame.h"

#include <algorithm>
#include <cmath>

#include "base/number.h"

namespace tavrel {
namespace {

constexpr int kHeader = 500;            // words of the header
constexpr int kLowResolutionFrom = 53;  // UnitRes
constexpr int kLowResolutionPoints = 100;

double FactorOf(double code_span, double span) {
  return span == 0 ? 0 : code_span / span;
}

// A view may be upside down.
double Held(double value, double edge, double other_edge) {
  return std::clamp(value, std::min(edge, other_edge), std::max(edge, other_edge));
}

double Decoded(double code, double factor, double edge) {
  return factor == 0 ? edge : code / factor + edge;
}

}  // namespace

void SetFactors(ViewFrame& view) {
  view.XFactor = FactorOf(kCodeWidth, view.XRight - view.XLeft);
  view.YFactor = FactorOf(kCodeHeight, view.YTop - view.YBottom);
}

std::int16_t CodeX(const ViewFrame& view, double x) {
  return ToWord((x - view.XLeft) * view.XFactor + kCodeLeft);
}

std::int16_t CodeY(const ViewFrame& view, double y) {
  return ToWord((y - view.YBottom) * view.YFactor + kCodeBottom);
}

double DecodeX(const ViewFrame& view, std::int16_t code) {
  return Held(Decoded(code - kCodeLeft, view.XFactor, view.XLeft), view.XLeft, view.XRight);
}

double DecodeY(const ViewFrame& view, std::int16_t code) {
  return Held(Decoded(code - kCodeBottom, view.YFactor, view.YBottom), view.YBottom, view.YTop);
}

double RowAt(double minutes, int rec_interval, int channels) {
  const double row = kSecondsOfMinute * minutes / rec_interval;
  return std::min(row == 0 ? 1.0 : row, static_cast<double>(MaxRow(channels)));
}

int RecordOfRow(double row, int channels) {
  return static_cast<int>(std::lrint(row)) * channels + kHeader;
}

double MinutesOfRecord(int record, int rec_interval, int channels) {
  return (record - kHeader) * (rec_interval / kSecondsOfMinute) / channels;
}

int RecEndOf(const ViewFrame& view, std::int32_t sample_count, int channels) {
  return std::min((sample_count - 1) * channels + kHeader, view.RecLast);
}

bool SetRecords(ViewFrame& view, const UnitRecord& unit, int rec_interval,
                std::int32_t sample_count) {
  const int channels = unit.UnitChannels;
  const double first = RowAt(view.XLeft, rec_interval, channels);
  const double last = RowAt(view.XRight, rec_interval, channels);
  view.RecFirst = RecordOfRow(first, channels);
  view.RecLast = RecordOfRow(last, channels);
  view.RecEnd = RecEndOf(view, sample_count, channels);
  view.RecDrawn = view.RecFirst;
  view.RecNow = view.RecFirst;
  view.HasCurve = false;
  const bool is_high = unit.UnitRes < kLowResolutionFrom;
  const int rows = static_cast<int>(std::lrint(last - first));
  const int step = is_high ? 1 : std::max(rows / kLowResolutionPoints, 1);
  view.RecStep = channels * step;
  return is_high;
}

}  // namespace tavrel
