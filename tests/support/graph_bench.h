#ifndef TAVREL_TESTS_SUPPORT_GRAPH_BENCH_H_
#define TAVREL_TESTS_SUPPORT_GRAPH_BENCH_H_

#include <filesystem>
#include <string>
#include <utility>
#include <vector>

#include "files/journal_text.h"
#include "graph/graph.h"
#include "tests/support/bench_program.h"
#include "tests/support/stroke_surface.h"

namespace tavrel {

// The graph of slot 1 over a real recording file, on surfaces that keep their strokes. As made:
// inputs 1..3, reference 2, rows of 60 s (so a row is a minute), colours 1, 2 and 3 (black, light
// red, light green), overview 0..100 minutes and 0..1000 degrees, high resolution.
class GraphBench {
 public:
  static constexpr int kSlot = 1;
  static constexpr const char* kName = "M260314A.OVN";

  GraphBench() {
    header.UnitInterval = 6;
    header.UnitXmax = 100;
    header.UnitYmax = 1000;
    header.UnitYmin = 0;
    header.UnitRes = 0;
    header.UnitDesignation.Set("OVN:Furnace 7");
    for (std::size_t input = 0; input < kInputs; ++input) {
      header.UnitColour[input + 1] = static_cast<std::int16_t>(input < 3 ? input + 1 : 0);
      header.UnitInputName[input + 1].Set("input " + std::to_string(input + 1));
    }
  }
  ~GraphBench() { graph.Attach(nullptr); }
  GraphBench(const GraphBench&) = delete;
  GraphBench& operator=(const GraphBench&) = delete;

  // Degrees for words: one row after the other.
  static std::vector<std::int16_t> Words(const std::vector<double>& degrees) {
    std::vector<std::int16_t> words;
    words.reserve(degrees.size());
    for (const double value : degrees) {
      words.push_back(static_cast<std::int16_t>(std::lround(value * 20)));
    }
    return words;
  }

  // Rows in which column c of row r is 100 c + r degrees.
  std::vector<std::int16_t> Slopes(int rows) const {
    std::vector<std::int16_t> words;
    for (int row = 0; row < rows; ++row) {
      for (int column = 1; column <= header.UnitChannels; ++column) {
        words.push_back(static_cast<std::int16_t>(20 * (100 * column + row)));
      }
    }
    return words;
  }

  void Load(const std::vector<std::int16_t>& words) {
    program.Install(kSlot, kName, header, words);
    program.state.SlotPath[kSlot] = program.home.File("tavdat") + "/";
    program.state.SlotFile[kSlot] = kName;
    program.files.OpenRecordingFile(kSlot);
    program.state.SelSlot = kSlot;
    graph.Attach(&surfaces);
  }
  // A journal of the recording, before Load.
  void WriteJournal(const std::vector<std::pair<std::string, JsonValue::Members>>& lines) {
    JournalChain chain;
    std::string text;
    for (const auto& [kind, fields] : lines) {
      text += chain.Line(JournalStamp{}, kind, fields);
    }
    std::filesystem::create_directories(program.home.File("tavdat/journal"));
    program.home.Write(std::string("tavdat/journal/") + kName, text);
  }
  void LoadAndOpen(const std::vector<std::int16_t>& words) {
    Load(words);
    graph.Open();
  }
  void Tick() { graph.Timer_Graph_Timer(); }

  // The overview painted, the part range chosen by the mouse, and the part view painted.
  void ShowPart(PlotPoint from, PlotPoint to) {
    Tick();
    Drag(from, to);
    graph.cmdPart_Click();
    Tick();
  }
  void Drag(PlotPoint from, PlotPoint to) {
    graph.PicC_MouseDown(from);
    graph.PicC_MouseMove(to);
    graph.PicC_MouseUp(to);
  }
  void Click(PlotPoint at) { Drag(at, at); }

  UnitRecord& Unit() { return program.state.Unit[kSlot]; }
  const GraphValues& Shown() const { return graph.Values(); }
  const ViewFrame& View(int view) const { return graph.State().Views[view]; }
  Tool ToolState() const { return graph.State().ToolState; }
  StrokeSurface& PicC(int view) { return pic_c.at(static_cast<std::size_t>(view)); }
  StrokeSurface& ImgC(int view) { return img_c.at(static_cast<std::size_t>(view)); }
  StrokeSurface& PicX(int view) { return pic_x.at(static_cast<std::size_t>(view)); }
  StrokeSurface& PicY(int view) { return pic_y.at(static_cast<std::size_t>(view)); }

  BenchProgram program;
  UnitRecord header = BenchProgram::Header(2, 3, 3, false);
  std::array<StrokeSurface, kViews> pic_c;
  std::array<StrokeSurface, kViews> img_c;
  std::array<StrokeSurface, kViews> pic_x;
  std::array<StrokeSurface, kViews> pic_y;
  StrokeSurface legend;
  StrokeSurface names;
  GraphSurfaces surfaces{
      {{{{pic_c[0], img_c[0], pic_x[0], pic_y[0]}, {pic_c[1], img_c[1], pic_x[1], pic_y[1]}}}},
      legend,
      names};
  Graph& graph = program.graph;
};

}  // namespace tavrel

#endif  // TAVREL_TESTS_SUPPORT_GRAPH_BENCH_H_
