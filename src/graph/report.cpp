#include "graph/report.h"

#include <algorithm>
#include <optional>
#include <vector>

#include "base/number.h"
#include "base/text.h"
#include "graph/graph_plotter.h"
#include "graph/mark_drawing.h"
#include "graph/sample_reader.h"

namespace tavrel {
namespace {

constexpr Colour kBar{0xE0, 0xE0, 0xE0};
constexpr Colour kShadow{0xC0, 0xC0, 0xC0};
constexpr int kUsualWidth = 2;  // points
constexpr const char* kDegrees = "°C";

// Logical units, see PageLayout.
constexpr double kHeaderText = 3;
constexpr double kHeaderMargin = 2;
constexpr double kHeaderGap = 2;     // between the texts of the header
constexpr double kLedgerText = 4.5;  // between the header and the plot
constexpr double kLedgerHeight = 0.8;
constexpr double kTickLong = 0.3;      // beneath the plot
constexpr double kTickWide = 0.7;      // left of it
constexpr double kAxisLabelAway = 1;   // from the plot to the labels of both axes
constexpr double kUnitAway = 0.5;      // from the plot to the unit of the X axis
constexpr double kGap = 0.5;           // between texts
constexpr double kPageSampleLeft = 5;  // of the legend left of the plot
constexpr double kPageSampleRight = 10;
constexpr double kNameLeft = 12;
constexpr double kTableTop = 29;  // row 0 of the table
constexpr double kTableNumber = 12;
constexpr double kTableSampleLeft = 18;
constexpr double kTableSampleRight = 25;
constexpr double kTableName = 28;
constexpr double kTableNote = 56;

// One drawing.
class Report {
 public:
  Report(const ReportContent& content, const ReportStyle& style, const PageLayout& layout,
         Surface& surface)
      : content_(content),
        style_(style),
        page_(layout, content.View, surface),
        font_(page_, style.FontName, style.FontSize) {}

  void Draw() {
    page_.On().SetPen(Pen());
    DrawHeader();
    DrawAxes();
    DrawLegend();
    DrawFoot();
    ShowMarksOf(content_.Unit, content_.View, page_.On());
    DrawCurves();
  }

 private:
  void DrawHeader();
  void PrintHeaderTexts();
  void PrintLedger(double right);
  void DrawAxes();
  void DrawTimeTicks();
  void DrawReferenceTicks();
  void DrawValueTicks();
  void GridLineAt(double x);
  void PrintBelow(double x, const std::string& text);
  void DrawLegend();
  void DrawLegendBeside();
  void DrawLegendTable();
  void DrawTableRow(int input);
  void DrawSample(const Curve& curve, double left, double right, double y);
  void DrawFoot();
  void PrintSeal(const std::string& instrument);
  void DrawCurves();
  [[nodiscard]] std::vector<Segment> SegmentsOf(const Curve& curve, SampleReader& reader) const;
  [[nodiscard]] double MinutesOf(double record) const;
  [[nodiscard]] bool IsInRange(double y) const;

  [[nodiscard]] const Curve* CurveOf(int input) const;
  [[nodiscard]] Pen PenOf(const Curve& curve) const;
  [[nodiscard]] Colour InkOf(const Curve& curve) const {
    return style_.IsColour ? curve.CurveColor : kBlack;
  }
  [[nodiscard]] std::string NameOf(int input) const {
    return content_.Unit.UnitInputName[input].Get();
  }
  [[nodiscard]] std::string NoteOf(int input) const {
    return content_.Unit.UnitInputNote[input].Get();
  }
  [[nodiscard]] const PageLayout& Layout() const { return page_.Layout(); }

  const ReportContent& content_;
  const ReportStyle& style_;
  Page page_;
  PageFont font_;
  double labels_left_ = 0;  // left end of the longest label of the Y axis
};

// A grey bar with a shadow.
void Report::DrawHeader() {
  constexpr double kTop = 2;
  constexpr double kBottom = 3.85;
  constexpr double kShadowBottom = 4;
  constexpr double kShadowWide = 0.3;
  if (!Layout().HasHeader) {
    return;
  }
  const double left = Layout().Left;
  const double right = Layout().Right;
  page_.Fill(left, kTop, right - kShadowWide, kBottom, kBar);
  page_.Fill(left, kShadowBottom, right - kShadowWide, kBottom, kShadow);
  page_.Fill(right, kTop, right - kShadowWide, kShadowBottom, kShadow);
  PrintHeaderTexts();
}

// Each gets smaller by itself where it would run into another one. The middle one has half of the
// header, the outer ones what it leaves on both sides.
void Report::PrintHeaderTexts() {
  const double left = Layout().Left + kHeaderMargin;
  const double right = Layout().Right - kHeaderMargin;
  const std::string name = content_.Unit.ApparatusName();
  const std::string file = LowerCase(content_.FileName);
  page_.On().SetBold(true);
  font_.Fit(page_.WidthOf(name), (right - left) / 2);
  const double room = (right - left - page_.WidthOf(name)) / 2 - kHeaderGap;
  page_.PrintCentred(left, right, kHeaderText, name);
  page_.On().SetBold(false);
  font_.Restore();
  font_.Fit(page_.WidthOf(style_.Plant), room);
  page_.PrintLeft(left, kHeaderText, style_.Plant);
  font_.Restore();
  font_.Fit(page_.WidthOf(file), room);
  page_.PrintRight(right, kHeaderText, file);
  font_.Restore();
  PrintLedger(right);
}

// Beneath the file name, between the header and the plot; on its left ends the unit of the Y axis.
void Report::PrintLedger(double right) {
  if (content_.Ledger.empty()) {
    return;
  }
  const double room = right - Layout().PlotLeft;
  font_.Shrink(std::min(kLedgerHeight / page_.LineHeight(), room / page_.WidthOf(content_.Ledger)));
  page_.PrintRight(right, kLedgerText, content_.Ledger);
  font_.Restore();
}

// The frame comes last, so that no grid line lies on it.
void Report::DrawAxes() {
  const ViewFrame& view = content_.View;
  const bool is_reference_axis = IsReferenceMode(content_.Unit.UnitGraphMode);
  if (is_reference_axis) {
    DrawReferenceTicks();
  } else {
    DrawTimeTicks();
  }
  DrawValueTicks();
  page_.PrintLeft(Layout().PlotRight + kUnitAway, Layout().PlotBottom + kAxisLabelAway,
                  TrimRight(AxisUnit(view, is_reference_axis)));
  if (IsRelativeMode(content_.Unit.UnitGraphMode)) {
    page_.On().Line({view.XLeft, 0, view.XRight, 0, kBlack});
  }
  page_.On().Box({view.XLeft, view.YTop, view.XRight, view.YBottom, kBlack});
}

void Report::GridLineAt(double x) {
  page_.On().Line({x, content_.View.YBottom, x, content_.View.YTop, kShadow});
}

// A label beneath the plot with its tick.
void Report::PrintBelow(double x, const std::string& text) {
  const double logical = Layout().PlotLeft + (x - content_.View.XLeft) / page_.PerX();
  const double bottom = Layout().PlotBottom;
  page_.Line(logical, bottom, logical, bottom + kTickLong);
  page_.PrintCentred(logical, logical, bottom + kAxisLabelAway, text);
}

void Report::DrawTimeTicks() {
  const ViewFrame& view = content_.View;
  const auto width_of = [this](std::string_view text) { return page_.On().TextWidth(text); };
  for (const AxisTick& tick : TimeTicks(view, width_of)) {
    if (tick.At < view.XLeft || tick.At > view.XRight) {
      continue;
    }
    GridLineAt(tick.At);
    if (!tick.Text.empty()) {
      PrintBelow(tick.At, tick.Text);
    }
  }
}

// The ticks are those of the screen. Which labels have room depends on the page.
void Report::DrawReferenceTicks() {
  const ViewFrame& view = content_.View;
  const ReferenceTicks& ticks = content_.AxisTicks;
  double last_right = view.XLeft;
  for (int place = 0; place < ticks.AxisTickCount; ++place) {
    const double x = MinutesOf(ticks.AxisTickX[place]);
    const std::string text = Trim(ticks.AxisTickText[place]);
    const double half = page_.On().TextWidth(text) / 2;
    if (x < view.XLeft || x > view.XRight) {
      continue;
    }
    GridLineAt(x);
    if (x - half > last_right && x + half < view.XRight) {
      PrintBelow(x, text);
      last_right = x + half + kGap * page_.PerX();
    }
  }
}

void Report::DrawValueTicks() {
  const ViewFrame& view = content_.View;
  const double height = page_.LineHeight() * page_.PerY();
  const double labels_right = Layout().PlotLeft - kAxisLabelAway;
  labels_left_ = labels_right;
  const auto width_of = [this](std::string_view text) { return page_.WidthOf(text); };
  for (const AxisTick& tick : ValueTicks(view, height, width_of)) {
    if (tick.At < view.YBottom || tick.At > view.YTop) {
      continue;
    }
    page_.On().Line({view.XLeft, tick.At, view.XRight, tick.At, kShadow});
    if (tick.Text.empty()) {
      continue;
    }
    const double y = Layout().PlotTop + (view.YTop - tick.At) / page_.PerY();
    page_.PrintRight(labels_right, y, tick.Text);
    page_.Line(Layout().PlotLeft - kTickWide, y, Layout().PlotLeft, y);
    labels_left_ = std::min(labels_left_, labels_right - tick.Width);
  }
  // The highest label ends beneath it.
  page_.PrintRight(labels_right, Layout().PlotTop, kDegrees);
  labels_left_ = std::min(labels_left_, labels_right - page_.WidthOf(kDegrees));
}

void Report::DrawLegend() {
  if (Layout().HasTable) {
    DrawLegendTable();
  } else {
    DrawLegendBeside();
  }
  font_.Restore();
}

// All names in one size, so that the longest ends left of the labels of the Y axis.
void Report::DrawLegendBeside() {
  const CurveList& curves = content_.Curves;
  double longest = 0;
  for (int k = 0; k < curves.CurveCount; ++k) {
    longest = std::max(longest, page_.WidthOf(NameOf(curves.At(k).CurveInput)));
  }
  font_.Fit(longest, labels_left_ - kGap - kNameLeft);
  for (int k = 0; k < curves.CurveCount; ++k) {
    const double y = Layout().PlotTop + k + 1;
    DrawSample(curves.At(k), kPageSampleLeft, kPageSampleRight, y);
    page_.PrintLeft(kNameLeft, y, NameOf(curves.At(k).CurveInput));
  }
}

void Report::DrawLegendTable() {
  page_.Line(Layout().Left, kTableTop, Layout().Right, kTableTop);
  for (int input = 1; input <= kInputs; ++input) {
    DrawTableRow(input);
  }
}

void Report::DrawTableRow(int input) {
  const double y = kTableTop + input;
  page_.PrintLeft(kTableNumber, y, Hex(static_cast<std::int16_t>(input)));
  const Curve* curve = CurveOf(input);
  if (curve != nullptr) {
    DrawSample(*curve, kTableSampleLeft, kTableSampleRight, y);
    font_.Fit(page_.WidthOf(NameOf(input)), kTableNote - kGap - kTableName);
    page_.PrintLeft(kTableName, y, NameOf(input));
    font_.Restore();
  }
  font_.Fit(page_.WidthOf(NoteOf(input)), Layout().Right - kTableNote);
  page_.PrintLeft(kTableNote, y, NoteOf(input));
  font_.Restore();
}

void Report::DrawSample(const Curve& curve, double left, double right, double y) {
  page_.On().SetPen(PenOf(curve));
  page_.On().Line({page_.X(left), page_.Y(y), page_.X(right), page_.Y(y), InkOf(curve)});
  page_.On().SetPen(Pen());
}

void Report::DrawFoot() {
  if (Layout().FootLine <= 0) {
    return;
  }
  const UnitRecord& unit = content_.Unit;
  const std::string instrument =
      "Tavrel-" + FormatMask(unit.UnitInet, "0") + (unit.UnitFast == 1 ? "F" : "");
  page_.Line(Layout().Left, Layout().FootLine, Layout().Right, Layout().FootLine);
  page_.PrintLeft(Layout().Left, Layout().FootText, instrument);
  page_.PrintRight(Layout().Right, Layout().FootText, style_.Date);
  PrintSeal(instrument);
}

// In the middle of what the texts beside it leave.
void Report::PrintSeal(const std::string& instrument) {
  if (content_.Seal.empty()) {
    return;
  }
  const double left = Layout().Left + page_.WidthOf(instrument) + kHeaderGap;
  const double right = Layout().Right - page_.WidthOf(style_.Date) - kHeaderGap;
  font_.Fit(page_.WidthOf(content_.Seal), right - left);
  page_.PrintCentred(left, right, Layout().FootText, content_.Seal);
  font_.Restore();
}

void Report::DrawCurves() {
  SampleReader reader(content_.File);
  for (int k = 0; k < content_.Curves.CurveCount; ++k) {
    const Curve& curve = content_.Curves.At(k);
    page_.On().SetPen(PenOf(curve));
    page_.On().Lines(SegmentsOf(curve, reader));
  }
  page_.On().SetPen(Pen());
}

// A point outside of the range of the plot is left out: the line goes from the last one inside to
// the next. Where a word cannot be read the line ends, and the next point begins another.
std::vector<Segment> Report::SegmentsOf(const Curve& curve, SampleReader& reader) const {
  const ViewFrame& view = content_.View;
  const bool is_relative = IsRelativeMode(content_.Unit.UnitGraphMode);
  std::vector<Segment> segments;
  PlotPoint last;
  bool has_last = false;
  for (int record = view.RecFirst; record < view.RecEnd; record += view.RecStep) {
    const std::optional<double> value = reader.Degrees(record + curve.CurveColumn);
    const std::optional<double> reference =
        is_relative ? reader.Degrees(record + content_.Curves.RefColumn) : 0;
    if (!value || !reference) {
      has_last = false;
      continue;
    }
    const PlotPoint point{MinutesOf(record), *value - *reference};
    if (!IsInRange(point.Y)) {
      continue;
    }
    if (has_last) {
      segments.push_back({last.X, last.Y, point.X, point.Y, InkOf(curve)});
    }
    last = point;
    has_last = true;
  }
  return segments;
}

double Report::MinutesOf(double record) const {
  const ViewFrame& view = content_.View;
  const int records = view.RecLast - view.RecFirst;
  if (records == 0) {
    return view.XLeft;
  }
  return (record - view.RecFirst) * (view.XRight - view.XLeft) / records + view.XLeft;
}

bool Report::IsInRange(double y) const {
  return y >= content_.View.YBottom && y <= content_.View.YTop;
}

const Curve* Report::CurveOf(int input) const {
  const auto end = content_.Curves.Curves.begin() + content_.Curves.CurveCount;
  const auto found = std::find_if(content_.Curves.Curves.begin(), end, [input](const Curve& curve) {
    return curve.CurveInput == input;
  });
  return found == end ? nullptr : &*found;
}

Pen Report::PenOf(const Curve& curve) const {
  return PenOfCurve(content_.Unit.UnitColour[curve.CurveInput], style_);
}

}  // namespace

Pen PenOfCurve(int colour_code, const ReportStyle& style) {
  if (style.IsColour) {
    const int width = style.DrawWidth < 1 ? kUsualWidth : style.DrawWidth;
    return {PenMode::kCopy, PenStyle::kSolid, static_cast<double>(width)};
  }
  constexpr int kFirstPattern = 2;  // colour codes 2 to 13
  constexpr int kLastPattern = 13;
  if (colour_code < kFirstPattern || colour_code > kLastPattern) {
    return {};
  }
  constexpr std::array<PenStyle, 4> kPatterns = {PenStyle::kDash, PenStyle::kDot,
                                                 PenStyle::kDashDot, PenStyle::kDashDotDot};
  const auto turn = static_cast<std::size_t>(colour_code - kFirstPattern) % kPatterns.size();
  return {PenMode::kCopy, kPatterns.at(turn), 1};
}

void DrawReport(const ReportContent& content, const ReportStyle& style, const PageLayout& layout,
                Surface& surface) {
  Report(content, style, layout, surface).Draw();
}

}  // namespace tavrel
