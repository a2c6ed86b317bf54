#include "graph/page_layout.h"

#include <algorithm>
#include <cmath>

#include "graph/graph_plotter.h"
#include "platform/font_size.h"

namespace tavrel {
namespace {

constexpr double kPageRow = 1;       // height of a row of the page
constexpr double kProbePoints = 10;  // any size that is known

double Ratio(double span, double logical_span) {
  return span == 0 ? 1 / logical_span : span / logical_span;
}

}  // namespace

const PageLayout& LayoutOf(const Scale& extent) {
  const double width = std::abs(extent.Right - extent.Left);
  const double height = std::abs(extent.Bottom - extent.Top);
  return width < height ? kPortrait : kLandscape;
}

Page::Page(const PageLayout& layout, const ViewFrame& view, Surface& surface)
    : layout_(layout),
      view_(view),
      surface_(surface),
      per_x_(Ratio(view.XRight - view.XLeft, layout.PlotRight - layout.PlotLeft)),
      per_y_(Ratio(view.YTop - view.YBottom, layout.PlotBottom - layout.PlotTop)) {
  surface_.SetScale({X(0), Y(0), X(layout.Width), Y(layout.Height)});
}

void Page::Line(double x1, double y1, double x2, double y2) {
  surface_.Line({X(x1), Y(y1), X(x2), Y(y2), kBlack});
}

void Page::Fill(double x1, double y1, double x2, double y2, Colour ink) {
  surface_.FillBox({X(x1), Y(y1), X(x2), Y(y2), ink});
}

void Page::PrintLeft(double x, double y, std::string_view text) {
  surface_.Print(X(x), Y(y - LineHeight() / 2), text);
}

void Page::PrintCentred(double x1, double x2, double y, std::string_view text) {
  PrintLeft((x1 + x2) / 2 - WidthOf(text) / 2, y, text);
}

void Page::PrintRight(double x, double y, std::string_view text) {
  PrintLeft(x - WidthOf(text), y, text);
}

double Page::WidthOf(std::string_view text) const {
  return surface_.TextWidth(text) / std::abs(per_x_);
}

double Page::LineHeight() const {
  return std::abs(surface_.TextHeight() / per_y_);
}

PageFont::PageFont(Page& page, const std::string& family, double points)
    : page_(page), points_(HeldFontSize(points)) {
  page_.On().SetFont(family, points_);
  page_.On().SetBold(false);
  if (points_ <= 0) {
    points_ = SizeOfSurface();
  }
  points_ *= std::min(1.0, kPageRow / page_.LineHeight());
  Restore();
}

// A surface does not tell the size of its font, but heights are as sizes.
double PageFont::SizeOfSurface() {
  const double height = page_.LineHeight();
  page_.On().SetFont("", kProbePoints);
  const double size = kProbePoints * height / page_.LineHeight();
  page_.On().SetFont("", size);
  return size;
}

void PageFont::Shrink(double factor) {
  page_.On().SetFont("", points_ * std::min(factor, 1.0));
}

void PageFont::Fit(double width, double room) {
  Shrink(width <= 0 ? 1 : room / width);
}

}  // namespace tavrel
