#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QTimer>
#include <array>

#include "platform/qt/plot_surface.h"
#include "tests/e2e/process.h"
#include "tests/wire/wire_program.h"

namespace tavrel {
namespace {

using std::chrono::seconds;

constexpr int kSpeedUp = 60;  // ten minutes of the instrument pass in ten seconds
constexpr int kRows = 60;     // ten minutes at 10 s

// The pictures of the graph as the form has them.
struct Pictures {
  Pictures() {
    for (std::size_t view = 0; view < kViews; ++view) {
      pic_c.at(view).Resize({640, 400}, 1);
      img_c.at(view).Resize({640, 400}, 1);
      pic_x.at(view).Resize({640, 40}, 1);
      pic_y.at(view).Resize({60, 400}, 1);
    }
    legend.Resize({60, 400}, 1);
    names.Resize({200, 400}, 1);
  }

  std::array<PlotSurface, kViews> pic_c;
  std::array<PlotSurface, kViews> img_c;
  std::array<PlotSurface, kViews> pic_x;
  std::array<PlotSurface, kViews> pic_y;
  PlotSurface legend;
  PlotSurface names;
  GraphSurfaces surfaces{
      {{{{pic_c[0], img_c[0], pic_x[0], pic_y[0]}, {pic_c[1], img_c[1], pic_x[1], pic_y[1]}}}},
      legend,
      names};
};

// The program on a real port against a virtual instrument, with the graph in front.
class GraphLive : public testing::Test {
 protected:
  void SetUp() override {
    on.home.Write(kGermanManual, "manual");
    std::filesystem::create_directory(on.home.File("tavdat"));
    instrument = Process({TAVREL_BUILD_DIRECTORY "/instrument/tavrel-instrument", "--link",
                          on.home.File("COM1"), "--sample", "1=10", "--line-speed", "none",
                          "--speedup", std::to_string(kSpeedUp)});
    ASSERT_NE(instrument.ReadLine(seconds(20)).find("ready"), std::string::npos);
    logic.state.AppPath = on.home.Path() + "/";
    logic.state.DataHome = logic.state.AppPath;
    logic.state.Settings.CommPort = "COM1";
    logic.state.Settings.TypeSel = 4;
    logic.state.Settings.ActiveFiles[0] = kOvenFile;
    logic.state.SettingsRead = true;
    WriteRecording();
    ASSERT_TRUE(logic.start_up.MainFormLoad());
    logic.start_up.MainFormShow();
    logic.state.SelSlot = 1;
    logic.graph.Attach(&live.surfaces);
    on.events.on_pump = [] { QCoreApplication::processEvents(); };
  }
  void TearDown() override { logic.graph.Attach(nullptr); }

  void WriteRecording() const {
    UnitRecord unit = BenchProgram::Header(1, 1, 3, true);
    unit.UnitInterval = 1;
    unit.UnitXmax = 12;
    unit.UnitYmax = 100;
    unit.UnitYmin = 0;
    unit.UnitRes = 0;
    unit.UnitColour = {2, 3, 4};
    unit.UnitView = {7689, 4692, 25000, 20000};
    std::string bytes(sizeof unit, '\0');
    std::memcpy(bytes.data(), &unit, sizeof unit);
    on.home.Write(std::string("tavdat/") + kOvenFile, bytes);
  }

  // Runs the timers of both forms and changes the view every second.
  void Watch() {
    QTimer timer_main;
    timer_main.callOnTimeout([this] { logic.cycle.Tick(); });
    timer_main.start(kTickMilliseconds);
    QTimer timer_graph;
    timer_graph.callOnTimeout([this] { logic.graph.Timer_Graph_Timer(); });
    timer_graph.start(100);
    QTimer other_view;
    other_view.callOnTimeout([this] { logic.graph.KeyEnter(); });
    other_view.start(1000);
    const QDeadlineTimer limit(seconds(60));
    while (logic.state.SampleCount[1] < kRows && !limit.hasExpired()) {
      QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents, 50);
    }
  }

  // Both views drawn to the end of the file as it is now.
  void FinishViews() {
    for (int view = 0; view < kViews; ++view) {
      logic.graph.Timer_Graph_Timer();
      logic.graph.KeyEnter();
    }
    logic.graph.Timer_Graph_Timer();
  }

  WireMachine on{1};
  Process instrument;
  ProgramLogic logic{on.All()};
  Pictures live;
  Pictures anew;
};

TEST_F(GraphLive, WatchedInBothViewsIsThePictureOfTheFinishedFile) {
  logic.graph.Open();
  ASSERT_TRUE(logic.graph.IsOpen());
  Watch();
  ASSERT_GE(logic.state.SampleCount[1], kRows);
  FinishViews();
  logic.graph.Attach(&anew.surfaces);
  logic.graph.Resized();
  FinishViews();
  for (std::size_t view = 0; view < kViews; ++view) {
    EXPECT_EQ(live.img_c.at(view).Picture(), anew.img_c.at(view).Picture()) << "view " << view;
    EXPECT_EQ(live.pic_c.at(view).Picture(), anew.pic_c.at(view).Picture()) << "view " << view;
    EXPECT_EQ(live.pic_c.at(view).Picture(), live.img_c.at(view).Picture()) << "view " << view;
  }
  QImage blank(640, 400, QImage::Format_RGB32);
  blank.fill(Qt::white);
  EXPECT_NE(live.img_c[kPartView].Picture(), blank);
}

}  // namespace
}  // namespace tavrel
