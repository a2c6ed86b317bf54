#ifndef TAVREL_TESTS_SUPPORT_FAKE_OUTPUT_H_
#define TAVREL_TESTS_SUPPORT_FAKE_OUTPUT_H_

#include <functional>
#include <list>
#include <optional>
#include <string>
#include <vector>

#include "platform/clipboard.h"
#include "platform/printer.h"
#include "platform/regional.h"
#include "tests/support/stroke_surface.h"

namespace tavrel {

// A text on paper, in points from the upper left corner of the sheet.
struct PrintedText {
  std::string Text;
  double Left = 0;
  double Top = 0;
  double Right = 0;
  double Bottom = 0;
  bool IsBold = false;
  double Points = 0;

  [[nodiscard]] bool Overlaps(const PrintedText& other) const {
    constexpr double kTouch = 0.001;  // points
    return Left + kTouch < other.Right && other.Left + kTouch < Right &&
           Top + kTouch < other.Bottom && other.Top + kTouch < Bottom;
  }
};

// A sheet of paper, a dot to the point. Texts grow with their font: at 11 points a character is 7
// points wide, a line 14 high; a font that was never set is one of 11 points.
class PaperSurface : public StrokeSurface {
 public:
  PaperSurface(double width, double height) {
    dots_wide = width;
    dots_high = height;
    SetScale({0, 0, width, height});
  }
  std::vector<PrintedText> printed;
  double largest_asked = 0;  // points of all fonts that were set

  // In points from the left and the upper edge.
  [[nodiscard]] double PointsX(double x) const {
    return (x - GetScale().Left) / (GetScale().Right - GetScale().Left) * dots_wide;
  }
  [[nodiscard]] double PointsY(double y) const {
    return (y - GetScale().Top) / (GetScale().Bottom - GetScale().Top) * dots_high;
  }
  void Print(double x, double y, std::string_view text) override {
    StrokeSurface::Print(x, y, text);
    const double width = std::abs(TextWidth(text) / (GetScale().Right - GetScale().Left));
    const double height = std::abs(TextHeight() / (GetScale().Bottom - GetScale().Top));
    printed.push_back({std::string(text), PointsX(x), PointsY(y), PointsX(x) + width * dots_wide,
                       PointsY(y) + height * dots_high, is_bold, points});
  }
  void SetFont(const std::string& new_family, double new_points) override {
    largest_asked = std::max(largest_asked, new_points);
    StrokeSurface::SetFont(new_family, new_points);
  }
  [[nodiscard]] double TextWidth(std::string_view text) const override {
    return StrokeSurface::TextWidth(text) * Growth();
  }
  [[nodiscard]] double TextHeight() const override {
    return StrokeSurface::TextHeight() * Growth();
  }

 private:
  [[nodiscard]] double Growth() const { return points == 0 ? 1 : points / 11; }
};

// A printer that keeps its pages.
// Levers: chosen is what the user chooses in the dialog (none: leaves it), on_choose runs while
// it is open, on_page when a page begins, fail_page the page, from 1, that cannot be ended, no_page
// the one that cannot be begun, fail_job the end of the job; paper is the size of the printable
// area in points.
class FakePrinter : public Printer {
 public:
  std::optional<PrintChoice> chosen = PrintChoice();
  std::function<void()> on_choose = [] {};
  std::function<void()> on_page = [] {};
  std::size_t fail_page = 0;
  std::size_t no_page = 0;
  bool fail_job = false;
  std::pair<double, double> paper{570, 820};
  std::vector<PrintChoice> offered;
  std::list<PaperSurface> pages;
  int jobs = 0;

  [[nodiscard]] bool Choose(PrintChoice& choice) override {
    offered.push_back(choice);
    on_choose();
    choice = chosen.value_or(choice);
    return chosen.has_value();
  }
  [[nodiscard]] Surface* BeginPage() override {
    on_page();
    if (pages.size() + 1 == no_page) {
      return nullptr;
    }
    return &pages.emplace_back(paper.first, paper.second);
  }
  [[nodiscard]] bool EndPage() override { return pages.size() != fail_page; }
  [[nodiscard]] bool EndJob() override {
    ++jobs;
    return !fail_job;
  }
};

// A clipboard for text and pictures.
class FakeClipboard : public Clipboard {
 public:
  std::string text;
  std::optional<PaperSurface> picture;

  void SetText(std::string_view utf8) override { text = utf8; }
  void SetPicture(const std::function<void(Surface& to)>& draw) override {
    picture.emplace(1200, 675);
    draw(*picture);
  }
};

// Levers: mark; date, how every date is written; without it each is written by `form`, of which
// dd, d, MM, M, yyyy and yy are replaced.
class FakeRegional : public Regional {
 public:
  std::string mark = ".";
  std::string date = "14/03/2026";
  std::string form = "dd/MM/yyyy";

  [[nodiscard]] std::string DecimalMark() const override { return mark; }
  [[nodiscard]] std::string ShortDate(const WallTime& time) const override {
    if (!date.empty()) {
      return date;
    }
    std::string text;
    for (std::size_t place = 0, end = 0; place < form.size(); place = end) {
      end = std::min(form.find_first_not_of(form[place], place), form.size());
      text += Part(form[place], end - place, time);
    }
    return text;
  }
  [[nodiscard]] std::string ShortDateForm() const override { return form; }

 private:
  static std::string Part(char letter, std::size_t length, const WallTime& time) {
    const std::string year = std::to_string(time.Year);
    switch (letter) {
      case 'd':
        return Padded(std::to_string(time.Day), length);
      case 'M':
        return Padded(std::to_string(time.Month), length);
      case 'y':
        return length == 2 ? year.substr(2) : year;
      default:
        return std::string(length, letter);
    }
  }
  static std::string Padded(const std::string& number, std::size_t length) {
    return std::string(length - std::min(length, number.size()), '0') + number;
  }
};

}  // namespace tavrel

#endif  // TAVREL_TESTS_SUPPORT_FAKE_OUTPUT_H_
