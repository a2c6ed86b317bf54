#ifndef TAVREL_TESTS_SUPPORT_STROKE_SURFACE_H_
#define TAVREL_TESTS_SUPPORT_STROKE_SURFACE_H_

#include <algorithm>
#include <cmath>
#include <string>
#include <vector>

#include "platform/surface.h"

namespace tavrel {

enum class StrokeKind { kLine, kBox, kFill, kText };

// What was drawn, in the scale that was set then. A text has its corner in X1 and Y1.
struct Stroke {
  StrokeKind Kind = StrokeKind::kLine;
  Segment At;
  Pen With;
  Scale In;
  std::string Text;

  [[nodiscard]] bool operator==(const Stroke&) const = default;
};

// A surface that keeps a list of its strokes. Every character is 7 dots wide and a line of text
// 14 dots high, on a surface of 700 x 400 dots.
// Levers: dots_wide and dots_high.
class StrokeSurface : public Surface {
 public:
  double dots_wide = 700;
  double dots_high = 400;
  std::vector<Stroke> strokes;
  int clears = 0;
  int refreshes = 0;
  std::string family;
  double points = 0;
  bool is_bold = false;

  void Clear() override {
    strokes.clear();
    ++clears;
  }
  void SetScale(const Scale& scale) override { scale_ = scale; }
  [[nodiscard]] const Scale& GetScale() const override { return scale_; }
  void SetPen(const Pen& pen) override { pen_ = pen; }
  void Line(const Segment& line) override { Add(StrokeKind::kLine, line); }
  void Lines(std::span<const Segment> lines) override {
    for (const Segment& line : lines) {
      Line(line);
    }
  }
  void Box(const Segment& diagonal) override { Add(StrokeKind::kBox, diagonal); }
  void FillBox(const Segment& diagonal) override { Add(StrokeKind::kFill, diagonal); }
  void SetFont(const std::string& new_family, double new_points) override {
    family = new_family.empty() ? family : new_family;
    points = new_points == 0 ? points : new_points;
  }
  void SetBold(bool bold) override { is_bold = bold; }
  void Print(double x, double y, std::string_view text) override {
    Add(StrokeKind::kText, {x, y, x, y, {}}, std::string(text));
  }
  [[nodiscard]] double TextWidth(std::string_view text) const override {
    const auto is_start = [](char c) { return (static_cast<unsigned char>(c) & 0xC0U) != 0x80U; };
    const auto characters = std::ranges::count_if(text, is_start);
    return static_cast<double>(characters) * 7 / dots_wide * std::abs(scale_.Right - scale_.Left);
  }
  [[nodiscard]] double TextHeight() const override {
    return 14 / dots_high * (scale_.Bottom - scale_.Top);
  }
  void TakePicture(const Surface& other) override {
    strokes = dynamic_cast<const StrokeSurface&>(other).strokes;
  }
  void Refresh() override { ++refreshes; }

  // What the eye sees: two equal strokes of the inverting pen are none.
  [[nodiscard]] std::vector<Stroke> Seen() const {
    std::vector<Stroke> seen;
    for (const Stroke& stroke : strokes) {
      const auto twin = std::ranges::find(seen, stroke);
      if (stroke.With.Mode == PenMode::kInvert && twin != seen.end()) {
        seen.erase(twin);
      } else {
        seen.push_back(stroke);
      }
    }
    return seen;
  }
  [[nodiscard]] std::vector<Stroke> Of(StrokeKind kind) const {
    std::vector<Stroke> found = Seen();
    std::erase_if(found, [kind](const Stroke& stroke) { return stroke.Kind != kind; });
    return found;
  }
  [[nodiscard]] std::vector<Stroke> LinesOf(Colour ink) const {
    std::vector<Stroke> found = Of(StrokeKind::kLine);
    std::erase_if(found, [ink](const Stroke& stroke) { return !(stroke.At.Ink == ink); });
    return found;
  }
  [[nodiscard]] std::vector<std::string> Texts() const {
    std::vector<std::string> texts;
    for (const Stroke& stroke : Of(StrokeKind::kText)) {
      texts.push_back(stroke.Text);
    }
    return texts;
  }

 private:
  void Add(StrokeKind kind, const Segment& at, std::string text = {}) {
    strokes.push_back({kind, at, pen_, scale_, std::move(text)});
  }

  Scale scale_;
  Pen pen_;
};

}  // namespace tavrel

#endif  // TAVREL_TESTS_SUPPORT_STROKE_SURFACE_H_
