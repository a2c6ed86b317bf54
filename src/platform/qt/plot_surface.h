#ifndef TAVREL_PLATFORM_QT_PLOT_SURFACE_H_
#define TAVREL_PLATFORM_QT_PLOT_SURFACE_H_

#include <QFont>
#include <QFontMetricsF>
#include <QImage>
#include <QRect>
#include <functional>
#include <vector>

#include "platform/dot_canvas.h"
#include "platform/scale_map.h"
#include "platform/surface.h"

namespace tavrel {

// A white picture in memory at the resolution of the screen. Strokes are of whole dots, so a curve
// that grew by pieces is the curve drawn at once. It tells what changed, so that only this needs
// to be painted again.
class PlotSurface : public Surface {
 public:
  // Which edge of the picture the Bottom of the scale stands for.
  enum class Upright { kYes, kUpsideDown };

  explicit PlotSurface(Upright upright = Upright::kYes);

  // A new white picture of so many dots of the device (at least one each way), `device_scale` of
  // which make 1/96 inch. Scale, pen and font stay.
  void Resize(QSize dots, qreal device_scale);

  // To keep the picture, make a copy() of it: it changes in place.
  [[nodiscard]] const QImage& Picture() const { return picture_; }

  // The picture with the inverting strokes, which lie over it and never become part of it: what
  // is drawn beneath such a stroke would not come back from the second one.
  [[nodiscard]] QImage Seen() const;

  [[nodiscard]] const ScaleMap& Map() const { return map_; }
  [[nodiscard]] qreal DeviceScale() const { return picture_.devicePixelRatio(); }

  // `changed` is called when the first dots change after TakeChanges, `refresh` when what was
  // drawn shall be seen at once.
  void Watch(std::function<void()> changed, std::function<void()> refresh);

  // Where the picture changed since the last call, in dots; empty if it did not.
  [[nodiscard]] QRect TakeChanges();

  void Clear() override;
  void SetScale(const Scale& scale) override;
  [[nodiscard]] const Scale& GetScale() const override { return scale_; }
  void SetPen(const Pen& pen) override { pen_ = pen; }
  void Line(const Segment& line) override;
  void Lines(std::span<const Segment> lines) override;
  void Box(const Segment& diagonal) override;
  void FillBox(const Segment& diagonal) override;
  void SetFont(const std::string& family, double points) override;
  void SetBold(bool is_bold) override { font_.setBold(is_bold); }
  void Print(double x, double y, std::string_view text) override;
  [[nodiscard]] double TextWidth(std::string_view text) const override;
  [[nodiscard]] double TextHeight() const override;
  void TakePicture(const Surface& other) override;
  void Refresh() override;

 private:
  // An inverting stroke over the picture.
  struct OverStroke {
    bool is_box = false;
    Dot from;
    Dot to;
    DotStroke stroke;

    [[nodiscard]] bool operator==(const OverStroke&) const = default;
  };

  [[nodiscard]] DotCanvas Canvas();
  [[nodiscard]] DotStroke StrokeIn(Colour ink) const;
  [[nodiscard]] bool FindDots(const Segment& line, Dot& from, Dot& to) const;
  [[nodiscard]] bool FindCorners(const Segment& diagonal, Dot& corner, Dot& opposite) const;
  void InvertLines(std::span<const Segment> lines);
  void Invert(const OverStroke& over);
  void FindMap();
  void Whiten();
  void Change(const QRect& dots);
  void ChangeBox(Dot from, Dot to);
  [[nodiscard]] QFontMetricsF Metrics() const;

  Upright upright_;
  QImage picture_;
  std::vector<OverStroke> over_;
  QRect changes_;
  std::function<void()> changed_ = [] {};
  std::function<void()> refresh_ = [] {};
  QFont font_;
  Pen pen_;
  Scale scale_;
  ScaleMap map_;
  DotBox edges_;
};

}  // namespace tavrel

#endif  // TAVREL_PLATFORM_QT_PLOT_SURFACE_H_
