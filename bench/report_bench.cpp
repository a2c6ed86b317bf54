// The picture for the clipboard and the printed page of a full recording of noise, beside those
// of the same recording of slow waves. Each is drawn in one go while nothing else is served.
#include <QBuffer>
#include <QPdfWriter>
#include <cmath>
#include <cstring>
#include <random>
#include <vector>

#include "bench/promise.h"
#include "files/recording_format.h"
#include "graph/report.h"
#include "platform/qt/painter_surface.h"
#include "platform/qt/qt_clipboard.h"
#include "tests/support/temporary_directory.h"

namespace tavrel {
namespace {

constexpr int kRounds = 5;
constexpr int kMost = 500;  // ms that a picture or a page may take
constexpr int kTop = 1000;  // degrees
constexpr int kStepsToTheDegree = 20;
constexpr int kPaperResolution = 1200;
constexpr double kPointsPerInch = 72;

enum class Data { kWaves, kNoise, kFlatNoise };

int Degrees(Data data, int row, int input, std::mt19937& random) {
  if (data == Data::kNoise) {
    return static_cast<int>(random() % kTop);
  }
  if (data == Data::kFlatNoise) {
    return kTop / 2 + static_cast<int>(random() % 5);
  }
  return static_cast<int>(500 + 30 * input * std::sin(row / 150.0 + input));
}

// A recording as full as one can be, with a row to each minute, all of it in the part view.
struct FullRecording {
  FullRecording(Data data, int inputs) : rows(kMaxSampleWords / inputs) {
    unit.UnitChannels = static_cast<std::int16_t>(inputs);
    unit.UnitRes = 0;
    unit.UnitRole.Fill(0);
    unit.UnitColour.Fill(0);
    for (std::size_t input = 0; input < static_cast<std::size_t>(inputs); ++input) {
      unit.UnitRole[input + 1] = 1;
      unit.UnitColour[input + 1] = static_cast<std::int16_t>(input % 14 + 1);
    }
    home.Write("M260314A.OVE", FileBytes(data));
    benchmark::DoNotOptimize(file.Open(home.File("M260314A.OVE"), FileAccess::kRead));
    BuildCurveList(unit, curves);
    view.XRight = rows;
    view.YTop = kTop;
    SetFactors(view);
    SetRecords(view, unit, 60, rows);
  }
  std::string FileBytes(Data data) const {
    std::mt19937 random(1);
    std::string bytes(sizeof unit, '\0');
    std::memcpy(bytes.data(), &unit, sizeof unit);
    for (int row = 0; row < rows; ++row) {
      for (int input = 0; input < unit.UnitChannels; ++input) {
        const auto word =
            static_cast<std::int16_t>(kStepsToTheDegree * Degrees(data, row, input, random));
        bytes.append(reinterpret_cast<const char*>(&word), sizeof word);
      }
    }
    return bytes;
  }
  void Draw(const PageLayout& layout, bool is_colour, Surface& to) {
    const ReportStyle style{"Ofenbau", "DejaVu Sans", 11, is_colour, 2, "14.03.2026"};
    DrawReport({unit, curves, view, ticks, file, "M260314A.OVE", "", ""}, style, layout, to);
  }

  int rows;
  TemporaryDirectory home;
  UnitRecord unit = DefaultUnitRecord();
  CurveList curves;
  ViewFrame view;
  ReferenceTicks ticks;
  RandomFile file;
};

void CopyPicture(FullRecording& recording) {
  QtClipboard clipboard;
  clipboard.SetPicture([&](Surface& to) { recording.Draw(kPicture, true, to); });
}

void PrintPage(FullRecording& recording, bool is_colour) {
  QBuffer bytes;
  bytes.open(QIODevice::WriteOnly);
  QPdfWriter writer(&bytes);
  writer.setResolution(kPaperResolution);
  QPainter painter(&writer);
  const QRectF area(0, 0, writer.width(), writer.height());
  PainterSurface surface(painter, area, kPaperResolution / kPointsPerInch);
  recording.Draw(kPortrait, is_colour, surface);
}

template <typename Work>
void Compare(benchmark::State& state, int inputs, Work work, Data data = Data::kNoise) {
  FullRecording noise(data, inputs);
  FullRecording waves(Data::kWaves, inputs);
  Promise promise("ms");
  for (auto unused : state) {
    promise.Measured(TimeOf<std::milli>([&] { work(noise); }));
    promise.Limit(TimeOf<std::milli>([&] { work(waves); }));
  }
  promise.MustBeAtMost(kMost);
  promise.Report(state);
}

void Picture(benchmark::State& state, int inputs) {
  Compare(state, inputs, CopyPicture);
}
BENCHMARK_CAPTURE(Picture, fifteen, 15)
    ->Name("picture of noise, 15 inputs of 2133 rows")
    ->Iterations(kRounds);
BENCHMARK_CAPTURE(Picture, four, 4)
    ->Name("picture of noise, 4 inputs of 8000 rows")
    ->Iterations(kRounds);
BENCHMARK_CAPTURE(Picture, one, 1)
    ->Name("picture of noise, 1 input of 32000 rows")
    ->Iterations(kRounds);

void FlatPicture(benchmark::State& state) {
  Compare(state, kInputs, CopyPicture, Data::kFlatNoise);
}
BENCHMARK(FlatPicture)->Name("picture of flat noise, 15 inputs")->Iterations(kRounds);

void Page(benchmark::State& state, int inputs, bool is_colour) {
  Compare(state, inputs, [is_colour](FullRecording& of) { PrintPage(of, is_colour); });
}
BENCHMARK_CAPTURE(Page, fifteen, 15, true)
    ->Name("page of noise, 15 inputs of 2133 rows")
    ->Iterations(kRounds);
BENCHMARK_CAPTURE(Page, fifteen_black, 15, false)
    ->Name("the same on a black printer")
    ->Iterations(kRounds);
BENCHMARK_CAPTURE(Page, one, 1, true)
    ->Name("page of noise, 1 input of 32000 rows")
    ->Iterations(kRounds);

}  // namespace
}  // namespace tavrel
