// The drawing of curves beside what the toolkit needs for the same strokes.
#include <QPainter>
#include <array>
#include <cmath>
#include <cstring>
#include <functional>
#include <random>
#include <vector>

#include "bench/promise.h"
#include "files/recording_format.h"
#include "graph/forms/plot_view.h"
#include "graph/graph.h"
#include "platform/qt/qt_events.h"
#include "state/messages.h"
#include "tests/support/fake_clock.h"
#include "tests/support/fake_screen.h"
#include "tests/support/temporary_directory.h"

namespace tavrel {
namespace {

constexpr int kSlot = 1;
constexpr int kRounds = 101;
constexpr int kMinute = 60;                           // seconds
constexpr QSize kPlot(1100, 600);                     // dots
constexpr int kFullRows = kMaxSampleWords / kInputs;  // 2133
constexpr double kTop = 1000;                         // degrees
const char* const kName = "M260314A.OVE";

// Degrees of an input in a row: a slow wave, as of an oven.
double Smooth(int row, int input) {
  return 500 + 30 * input * std::sin(row / 150.0 + input);
}

// Degrees of a broken sensor.
double Noise(int /*row*/, int /*input*/) {
  static std::mt19937 random(1);
  return static_cast<double>(random() % static_cast<unsigned>(kTop));
}

using Curve = double (*)(int row, int input);

class NoShell : public Shell {
 public:
  void OpenDocument(const std::string& /*path*/, std::function<void()> /*failed*/) override {}
};

// The graph of one full recording with a row to each minute, on pictures of a usual size.
struct DrawingBench {
  DrawingBench(int inputs, Events& served, Curve drawn = Smooth)
      : channels(inputs), curve(drawn), graph({state, files, dialogs, served, shell}) {
    home.Write(kName, FileBytes());
    state.SlotPath[kSlot] = home.Path() + "/";
    state.SlotFile[kSlot] = kName;
    files.OpenRecordingFile(kSlot);
    state.SelSlot = kSlot;
    for (PlotSurface* surface : {&pic_c[0], &pic_c[1], &img_c[0], &img_c[1], &strip, &legend}) {
      surface->Resize(kPlot, 1);
    }
    graph.Attach(&surfaces);
    graph.Open();
    graph.Timer_Graph_Timer();
  }
  ~DrawingBench() {
    graph.CloseNow();
    graph.Attach(nullptr);
  }
  DrawingBench(const DrawingBench&) = delete;
  DrawingBench& operator=(const DrawingBench&) = delete;

  [[nodiscard]] int Rows() const { return kMaxSampleWords / channels; }
  [[nodiscard]] bool IsDrawn() const {
    const ViewFrame& view = graph.State().Views[kOverview];
    return view.RecDrawn >= view.RecEnd && view.RecEnd > Rows();
  }

  std::string FileBytes() const {
    UnitRecord unit = DefaultUnitRecord();
    unit.UnitChannels = static_cast<std::int16_t>(channels);
    unit.UnitInterval = 6;
    unit.UnitXmax = static_cast<std::int16_t>(Rows());
    unit.UnitYmax = static_cast<std::int16_t>(kTop);
    unit.UnitYmin = 0;
    unit.UnitRes = 0;
    unit.UnitRole.Fill(0);
    std::vector<std::int16_t> words;
    for (int row = 0; row < Rows(); ++row) {
      for (int input = 0; input < channels; ++input) {
        unit.UnitRole[input + 1] = 1;
        unit.UnitColour[input + 1] = static_cast<std::int16_t>(input % 14 + 1);
        words.push_back(static_cast<std::int16_t>(std::lround(curve(row, input) * 20)));
      }
    }
    std::string bytes(sizeof unit + 2 * words.size(), '\0');
    std::memcpy(bytes.data(), &unit, sizeof unit);
    std::memcpy(bytes.data() + sizeof unit, words.data(), 2 * words.size());
    return bytes;
  }

  int channels;
  Curve curve;
  TemporaryDirectory home;
  FakeClock clock;
  FakeDialogs dialogs;
  NoShell shell;
  RunState state;
  Messages messages{dialogs};
  RecordingFiles files{state, clock, messages};
  std::array<PlotSurface, kViews> pic_c;
  std::array<PlotSurface, kViews> img_c;
  PlotSurface strip;
  PlotSurface legend;
  GraphSurfaces surfaces{
      {{{{pic_c[0], img_c[0], strip, strip}, {pic_c[1], img_c[1], strip, strip}}}}, legend, legend};
  Graph graph;
};

// The drawing without the events: what the overview gains from nothing to the full file.
struct PlotterBench : DrawingBench {
  PlotterBench(int inputs, Events& served, Curve drawn = Smooth)
      : DrawingBench(inputs, served, drawn), plotter({state, inside, values, served}) {
    BuildCurveList(state.Unit[kSlot], inside.Curves);
    plotter.Attach(&surfaces);
  }
  void Prepare() {
    state.OverPrepared = false;
    plotter.PrepareView();
  }
  [[nodiscard]] bool IsDrawn() const {
    return inside.Views[kOverview].RecDrawn >= (kFullRows - 1) * kInputs + 500;
  }

  GraphState inside;
  GraphValues values;
  GraphPlotter plotter;
};

// The same curves as the toolkit draws them fastest: one polyline each, on one picture, with a
// clip rectangle.
class Polylines {
 public:
  explicit Polylines(int device_scale)
      : image_(kPlot * device_scale, QImage::Format_RGB32), pen_(Qt::red, device_scale) {
    for (int input = 0; input < kInputs; ++input) {
      QPolygonF& curve = curves_.at(static_cast<std::size_t>(input));
      for (int row = 0; row < kFullRows; ++row) {
        curve << QPointF(row * (image_.width() - 1.0) / kFullRows,
                         (kTop - Smooth(row, input)) * (image_.height() - 1) / kTop);
      }
    }
  }
  void Draw() {
    QPainter painter(&image_);
    painter.setClipRect(image_.rect());
    for (const QPolygonF& curve : curves_) {
      painter.setPen(pen_);
      painter.drawPolyline(curve);
    }
  }

 private:
  QImage image_;
  QPen pen_;
  std::array<QPolygonF, kInputs> curves_;
};

void FullFileAt(benchmark::State& state, int device_scale) {
  FakeEvents events;
  PlotterBench bench(kInputs, events);
  for (PlotSurface* surface : {&bench.pic_c[kOverview], &bench.img_c[kOverview]}) {
    surface->Resize(kPlot * device_scale, device_scale);
  }
  Polylines polylines(device_scale);
  Promise promise("ms");
  for (auto unused : state) {
    bench.Prepare();
    promise.Measured(TimeOf<std::milli>([&] { bench.plotter.DrawCurves(); }));
    promise.Limit(TimeOf<std::milli>([&] { polylines.Draw(); }));
  }
  if (!bench.IsDrawn()) {
    state.SkipWithError("the file was not drawn");
    return;
  }
  promise.MustBeWithin(2);
  promise.Report(state);
}

void FullFile(benchmark::State& state) {
  FullFileAt(state, 1);
}
BENCHMARK(FullFile)->Name("full file onto both images")->Iterations(kRounds);

// Four times the dots, and strokes of two of them.
void FullFileFine(benchmark::State& state) {
  FullFileAt(state, 2);
}
BENCHMARK(FullFileFine)->Name("the same on a screen of twice the scale")->Iterations(kRounds);

// The worst that there is to draw: a stroke over half the plot for each word. Events are served
// in between, but the later ones wait.
void FullFileOfNoise(benchmark::State& state) {
  FakeEvents events;
  PlotterBench bench(kInputs, events, Noise);
  PlotterBench smooth(kInputs, events);
  Promise promise("ms");
  for (auto unused : state) {
    bench.Prepare();
    promise.Measured(TimeOf<std::milli>([&] { bench.plotter.DrawCurves(); }));
    smooth.Prepare();
    promise.Limit(TimeOf<std::milli>([&] { smooth.plotter.DrawCurves(); }));
  }
  if (!bench.IsDrawn()) {
    state.SkipWithError("the file was not drawn");
    return;
  }
  promise.MustBeAtMost(500);
  promise.Report(state);
}
BENCHMARK(FullFileOfNoise)->Name("noise onto both images, 15 inputs")->Iterations(kRounds);

// Four points to a column of dots, as the reading of a long recording gives them.
PlotView::Stroke StrongCurve(Curve curve) {
  PlotView::Stroke stroke{{StrokePoints()}, Colour{0, 0, 0xFF}};
  for (int point = 0; point < 4 * kPlot.width(); ++point) {
    stroke.Pieces.back().push_back({point / 4.0, curve(point, 1)});
  }
  return stroke;
}

// The view painted with the broad stroke of a curve that stands out, on a screen of twice the
// scale.
void StrongCurveOfNoise(benchmark::State& state) {
  PlotSurface surface;
  surface.Resize(kPlot * 2, 2);
  surface.SetScale({0, kTop, static_cast<double>(kPlot.width()), 0});
  PlotView view(surface, nullptr);
  view.resize(kPlot);
  QImage screen(kPlot * 2, QImage::Format_ARGB32_Premultiplied);
  screen.setDevicePixelRatio(2);
  Promise promise("ms");
  for (auto unused : state) {
    view.ShowStroke(StrongCurve(Noise));
    promise.Measured(TimeOf<std::milli>([&] { view.render(&screen); }));
    view.ShowStroke(StrongCurve(Smooth));
    promise.Limit(TimeOf<std::milli>([&] { view.render(&screen); }));
  }
  promise.MustBeAtMost(500);
  promise.Report(state);
}
BENCHMARK(StrongCurveOfNoise)->Name("curve of noise that stands out")->Iterations(11);

// The strokes of one row by a painter for each tick and picture.
void DrawRowBare(QImage& image, int row) {
  QPainter painter(&image);
  painter.setClipRect(image.rect());
  for (int input = 0; input < kInputs; ++input) {
    painter.setPen(Qt::red);
    const auto at = [&](int place) {
      return QPoint(place * (kPlot.width() - 1) / kFullRows,
                    static_cast<int>((kTop - Smooth(0, input)) * (kPlot.height() - 1) / kTop));
    };
    painter.drawLine(at(row - 1), at(row));
  }
}

void OneRow(benchmark::State& state) {
  FakeEvents events;
  PlotterBench bench(kInputs, events);
  std::array<QImage, 2> images = {QImage(kPlot, QImage::Format_RGB32),
                                  QImage(kPlot, QImage::Format_RGB32)};
  Promise promise("us");
  for (auto unused : state) {
    bench.state.SampleCount[kSlot] = 2;
    bench.Prepare();
    const double product = TimeOf<std::micro>([&] {
      for (int rows = 3; rows <= kFullRows; ++rows) {
        bench.state.SampleCount[kSlot] = rows;
        bench.plotter.DrawCurves();
      }
    });
    const double bare = TimeOf<std::micro>([&] {
      for (int row = 3; row <= kFullRows; ++row) {
        DrawRowBare(images[0], row);
        DrawRowBare(images[1], row);
      }
    });
    promise.Measured(product / (kFullRows - 2));
    promise.Limit(bare / (kFullRows - 2));
  }
  if (!bench.IsDrawn()) {
    state.SkipWithError("the rows were not drawn");
    return;
  }
  promise.MustBeWithin(1.5);
  promise.Report(state);
}
BENCHMARK(OneRow)->Name("one new row, both images")->Iterations(kRounds);

// With a window on the screen that shows the picture while it grows.
void PumpedDrawing(benchmark::State& state) {
  QtEvents events;
  PlotterBench bench(kInputs, events);
  PlotView view(bench.pic_c[kOverview], nullptr);
  view.resize(kPlot);
  view.show();
  Polylines polylines(1);
  Promise promise("ms");
  for (auto unused : state) {
    bench.Prepare();
    promise.Measured(TimeOf<std::milli>([&] {
      bench.plotter.DrawCurves();
      events.Pump();
    }));
    promise.Limit(TimeOf<std::milli>([&] { polylines.Draw(); }));
  }
  if (!bench.IsDrawn()) {
    state.SkipWithError("the file was not drawn");
    return;
  }
  promise.MustBeWithin(4);
  promise.Report(state);
}
BENCHMARK(PumpedDrawing)->Name("drawing with pump every 5 rows")->Iterations(kRounds);

// The last stroke of the baseline, with which a curve of 32000 words is summed and hatched.
void Drag(Graph& graph, double from, double to) {
  graph.PicC_MouseDown({from, 1});
  graph.PicC_MouseUp({to, 1});
}

double TimeOfIntegral(Graph& graph, double right) {
  graph.PbEval_Click(1);
  graph.PicColor_MouseUp(1.0 / kInputs);
  Drag(graph, 1, right / 4);
  Drag(graph, right / 4, right / 2);
  Drag(graph, right / 2, right * 3 / 4);
  graph.PicC_MouseDown({right * 3 / 4, 1});
  return TimeOf<std::milli>([&] { graph.PicC_MouseUp({right, 1}); });
}

void Integral(benchmark::State& state) {
  FakeEvents events;
  DrawingBench bench(1, events);
  Graph& graph = bench.graph;
  graph.PicC_MouseDown({0, 0});
  graph.PicC_MouseMove({kMaxSampleWords, kTop});
  graph.PicC_MouseUp({kMaxSampleWords, kTop});
  graph.cmdPart_Click();
  graph.Timer_Graph_Timer();
  std::vector<std::int16_t> words(kMaxSampleWords);
  Promise promise("ms");
  for (auto unused : state) {
    promise.Measured(TimeOfIntegral(graph, kMaxSampleWords));
    promise.Limit(TimeOf<std::milli>([&] {
      RandomFile& file = bench.state.SlotFileNo[kSlot];
      benchmark::DoNotOptimize(file.ReadAt(kHeaderBytes, std::as_writable_bytes(std::span(words))));
      double sum = 0;
      for (const std::int16_t word : words) {
        sum += std::abs(word / 20.0 - 1);
      }
      benchmark::DoNotOptimize(sum);
    }));
  }
  if (!graph.Values().Lbl_Instr.starts_with("Integral") ||
      graph.Values().Lbl_Instr.find("  0 ") != std::string::npos) {
    state.SkipWithError("nothing was summed");
    return;
  }
  promise.MustBeAtMost(2);
  promise.Report(state);
}
BENCHMARK(Integral)->Name("integral of 32000 words")->Iterations(kRounds);

}  // namespace
}  // namespace tavrel
