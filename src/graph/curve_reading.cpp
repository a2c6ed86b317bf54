#include "graph/curve_reading.h"

#include <algorithm>
#include <cmath>

#include "base/units.h"

namespace tavrel {
namespace {

constexpr double kNearCurve = 0.015;  // of the height of the view
constexpr int kParts = 1000;          // of the width of a view, narrower than the dots of a screen

// What a column of dots shows of a curve: where it comes in and goes out, and how far it reaches.
class PartOfCurve {
 public:
  void Add(const PlotPoint& point) {
    if (count_ == 0) {
      first_ = least_ = most_ = point;
    }
    least_ = point.Y < least_.Y ? point : least_;
    most_ = point.Y > most_.Y ? point : most_;
    last_ = point;
    ++count_;
  }
  void MoveTo(std::vector<std::optional<PlotPoint>>& points) {
    if (count_ > 0) {
      points.emplace_back(first_);
    }
    if (count_ > 2) {
      const bool falls = most_.X < least_.X;
      points.emplace_back(falls ? most_ : least_);
      points.emplace_back(falls ? least_ : most_);
    }
    if (count_ > 1) {
      points.emplace_back(last_);
    }
    count_ = 0;
  }

 private:
  int count_ = 0;
  PlotPoint first_;
  PlotPoint least_;
  PlotPoint most_;
  PlotPoint last_;
};

}  // namespace

// Of the row next to the cursor. Rows that are not recorded yet have none.
CurveReading::RowValues CurveReading::ValuesAt(double minutes) const {
  RowValues row;
  const int slot = parts_.state.SelSlot;
  const int channels = parts_.state.Unit[slot].UnitChannels;
  const int interval = parts_.state.RecInterval[slot];
  const int record = RecordOfRow(RowAt(minutes, interval, channels), channels);
  const CurveList& curves = parts_.graph.Curves;
  SampleReader reader(parts_.state.SlotFileNo[slot]);
  for (int k = 0; k < curves.CurveCount; ++k) {
    const int column = curves.At(k).CurveColumn;
    if (record <= parts_.graph.Shown().RecEnd && reader.Word(record + column) != kNoData) {
      row[k] = parts_.plotter.ValueAt(reader, record, column);
    }
  }
  return row;
}

// -1: none is near.
int CurveReading::CurveAt(PlotPoint at, const RowValues& row) const {
  const ViewFrame& view = parts_.graph.Shown();
  double least = kNearCurve * std::abs(view.YTop - view.YBottom);
  int nearest = -1;
  for (int k = 0; k < kInputs; ++k) {
    const double away = row[k] ? std::abs(*row[k] - at.Y) : least + 1;
    if (away <= least) {
      nearest = k;
      least = away;
    }
  }
  return nearest;
}

void CurveReading::Follow(PlotPoint at) {
  const ViewFrame& view = parts_.graph.Shown();
  const RowValues row = ValuesAt(std::clamp(at.X, view.XLeft, view.XRight));
  for (std::size_t k = 0; k < parts_.values.Legend.size(); ++k) {
    parts_.values.Legend[k].Value = row[k] ? ValueText(*row[k]) : "";
  }
  ShowStrong(parts_.graph.DragOn ? -1 : CurveAt(at, row));
}

void CurveReading::Leave() {
  for (LegendRow& row : parts_.values.Legend) {
    row.Value.clear();
  }
  ShowStrong(-1);
}

void CurveReading::Choose(double height) {
  const int place = LegendRowAt(height, parts_.graph.Curves.CurveCount);
  int& chosen = parts_.values.ChosenCurve;
  chosen = place == chosen ? -1 : place;
  ShowStrong(-1);
}

void CurveReading::ShowStrong(int pointed_at) {
  GraphValues& values = parts_.values;
  values.StrongCurve = pointed_at >= 0 ? pointed_at : values.ChosenCurve;
}

std::vector<std::optional<PlotPoint>> CurveReading::StrongPoints() const {
  std::vector<std::optional<PlotPoint>> points;
  const ViewFrame& view = parts_.graph.Shown();
  const int place = parts_.values.StrongCurve;
  if (place < 0 || place >= parts_.graph.Curves.CurveCount || view.RecLast <= view.RecFirst) {
    return points;
  }
  const int column = parts_.graph.Curves.At(place).CurveColumn;
  const int width = view.RecLast - view.RecFirst;
  SampleReader reader(parts_.state.SlotFileNo[parts_.state.SelSlot]);
  PartOfCurve part;
  int number = 0;
  for (int record = view.RecFirst; record < view.RecDrawn; record += view.RecStep) {
    const std::optional<double> y = parts_.plotter.ValueAt(reader, record, column);
    const int now = static_cast<int>(std::int64_t{kParts} * (record - view.RecFirst) / width);
    if (now != number || !y) {
      part.MoveTo(points);
      number = now;
    }
    if (!y) {
      points.emplace_back(std::nullopt);
      continue;
    }
    const double along = static_cast<double>(record - view.RecFirst) / width;
    part.Add({view.XLeft + along * (view.XRight - view.XLeft), *y});
  }
  part.MoveTo(points);
  return points;
}

}  // namespace tavrel
