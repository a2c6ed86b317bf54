#ifndef TAVREL_GRAPH_PAGE_LAYOUT_H_
#define TAVREL_GRAPH_PAGE_LAYOUT_H_

#include <string>
#include <string_view>

#include "graph/view_frame.h"
#include "platform/surface.h"

// The report's page in logical units: columns and rows that stretch with the paper. Y grows
// downwards.
namespace tavrel {

// Where things stand. The rows of the legend follow each other by one unit.
struct PageLayout {
  double Width = 0;
  double Height = 0;
  double PlotLeft = 0;
  double PlotRight = 0;
  double PlotTop = 0;
  double PlotBottom = 0;
  double Left = 0;  // of the header box and the lines
  double Right = 0;
  bool HasHeader = false;
  bool HasTable = false;  // of all inputs, beneath the plot; else the curves left of it
  double FootLine = 0;    // 0: there is no foot
  double FootText = 0;
};

inline constexpr PageLayout kPortrait{96, 52, 10, 78, 5, 27, 10, 85, true, true, 45, 46};
inline constexpr PageLayout kLandscape{100, 34, 27, 84, 5, 27, 5, 90, true, false, 29, 30};
inline constexpr PageLayout kPicture{100, 30, 25, 90, 1, 27, 5, 90, false, false, 0, 0};

// Portrait for a page that is narrower than high.
[[nodiscard]] const PageLayout& LayoutOf(const Scale& extent);

// A surface with the page on it. Its scale is such that the rectangle of the plot has the extent
// of the view, so that curves are drawn in minutes and degrees; texts are placed by the layout.
// Widths and heights of texts here are in logical units, never negative.
class Page {
 public:
  // Sets the scale of `surface`. All outlive this.
  Page(const PageLayout& layout, const ViewFrame& view, Surface& surface);

  // The place of a logical position in the scale of the surface.
  [[nodiscard]] double X(double x) const { return view_.XLeft + (x - layout_.PlotLeft) * per_x_; }
  [[nodiscard]] double Y(double y) const { return view_.YTop - (y - layout_.PlotTop) * per_y_; }

  void Line(double x1, double y1, double x2, double y2);  // black
  void Fill(double x1, double y1, double x2, double y2, Colour ink);

  // A text with its middle at height `y`: its left end at `x`, its middle between x1 and x2, or its
  // right end at `x`.
  void PrintLeft(double x, double y, std::string_view text);
  void PrintCentred(double x1, double x2, double y, std::string_view text);
  void PrintRight(double x, double y, std::string_view text);

  [[nodiscard]] double WidthOf(std::string_view text) const;
  [[nodiscard]] double LineHeight() const;

  // The lengths of the surface's scale for one logical unit.
  [[nodiscard]] double PerX() const { return per_x_; }
  [[nodiscard]] double PerY() const { return per_y_; }

  [[nodiscard]] const PageLayout& Layout() const { return layout_; }
  [[nodiscard]] const ViewFrame& View() const { return view_; }
  [[nodiscard]] Surface& On() { return surface_; }

 private:
  const PageLayout& layout_;
  const ViewFrame& view_;
  Surface& surface_;
  double per_x_;
  double per_y_;
};

// The size of the font on a page, which gets smaller where a text has too little room, so that
// nothing is cut and nothing overlaps.
class PageFont {
 public:
  // The font of the settings, or the surface's own where they are empty; smaller if a line of it is
  // higher than a row of the page. A size that fits no page is held, see HeldFontSize.
  PageFont(Page& page, const std::string& family, double points);

  // For the texts that follow: the usual size, times `factor` if that is below 1.
  void Shrink(double factor);
  void Restore() { Shrink(1); }

  // Shrinks so that what is `width` wide in the usual size takes at most `room`.
  void Fit(double width, double room);

 private:
  [[nodiscard]] double SizeOfSurface();

  Page& page_;
  double points_;
};

}  // namespace tavrel

#endif  // TAVREL_GRAPH_PAGE_LAYOUT_H_
