#include "docs/manual/form_tour.h"

#include <QApplication>
#include <QTest>
#include <cstdio>

#include "graph/forms/plot_view.h"
#include "main/forms/all_load.h"
#include "tests/support/wait_until.h"

namespace tavrel {
namespace {

using std::chrono::seconds;

constexpr LabWords kEnglish = {
    "English",    "Ceramics Laboratory", "M. Miller", "Tube oven", "Chamber oven", "Autoclave",
    "Small oven", "controller",          "reference", "sample",    "batch 17",     "dd/MM/yyyy"};
constexpr LabWords kGerman = {"German",     "Keramiklabor", "M. Müller", "Rohrofen",
                              "Kammerofen", "Autoklav",     "Kleinofen", "Regler",
                              "Referenz",   "Probe",        "Charge 17", "dd.MM.yyyy"};

}  // namespace

const LabWords& LabWordsOf(bool is_german) {
  return is_german ? kGerman : kEnglish;
}

bool FormTour::Make() {
  if (!TakeSplash() || !bench_.Start()) {
    return false;
  }
  StopAt(bench_.MainForm(), "Tavrel");
  Take("TavKeys", View::kTavKeys);
  TakeSettings();
  TakeSetup();
  TakeWorksheet();
  TakeController();
  TakeProgram();
  TakeGraph();
  TakeFiles();
  TakeService();
  TakeTests();
  TakeBoxes();
  return is_whole_;
}

void FormTour::Require(bool is_good, const char* what) {
  if (!is_good) {
    std::fprintf(stderr, "form tour: %s\n", what);
    is_whole_ = false;
  }
}

void FormTour::StopAt(QWidget& form, const char* name) {
  QCoreApplication::processEvents();
  Require(stop_(form, name), name);
}

void FormTour::Take(const char* form, View view, const Action& action) {
  Require(bench_.Inside(form, view,
                        [this, form, &action](QWidget& front) {
                          if (action) {
                            action(front);
                          }
                          StopAt(front, form);
                        }),
          form);
}

void FormTour::TakeBehind(QWidget& parent, const char* button, const char* form,
                          const Action& action) {
  TakeBehindAs(parent, button, form, form, action);
}

void FormTour::TakeBehindAs(QWidget& parent, const char* button, const char* form, const char* name,
                            const Action& action) {
  Require(bench_.Inside(
              form, [&] { Click(parent, button); },
              [this, name, &action](QWidget& front) {
                if (action) {
                  action(front);
                }
                StopAt(front, name);
              }),
          name);
}

void FormTour::Click(QWidget& form, const char* name) {
  auto* widget = form.findChild<QWidget*>(name);
  Require(widget != nullptr, name);
  if (widget != nullptr) {
    QTest::mouseClick(widget, Qt::LeftButton);
  }
}

void FormTour::Drag(QWidget& form, const char* plot_name, QPointF from, QPointF to) {
  auto* plot = dynamic_cast<PlotView*>(form.findChild<QWidget*>(plot_name));
  QTest::mousePress(plot, Qt::LeftButton, {}, plot->PositionOf(from));
  QTest::mouseMove(plot, plot->PositionOf(to));
  QTest::mouseRelease(plot, Qt::LeftButton, {}, plot->PositionOf(to));
}

bool FormTour::TakeSplash() {
  const auto values = bench_.Load();
  if (!values) {
    return false;
  }
  AllLoad splash;
  splash.UpdateWidgets(*values);
  splash.setWindowTitle("TAVREL");
  splash.show();
  StopAt(splash, "ALL_LOAD");
  return true;
}

void FormTour::TakeSettings() {
  // By its command, which opens the line again behind it.
  Require(bench_.Inside(
              "TAVSETT", [this] { bench_.Logic().commands.MnuSettings(); },
              [this](QWidget& form) {
                StopAt(form, "TAVSETT");
                TakeBehind(form, "cmdPath", "ALL_DIR");
              }),
          "TAVSETT");
}

void FormTour::TakeSetup() {
  Take("TavInst", View::kTavInst);
  Take("TavNum", View::kTavNum, [this](QWidget&) { bench_.Pass(seconds(4)); });
  Take("TavChann", View::kTavChann, [this](QWidget&) {
    Require(WaitUntil([this] { return bench_.Logic().channels.State() == AdjState::kIdle; }),
            "the channels are not read");
  });
}

void FormTour::OnWorksheet(int slot, const Action& action) {
  Require(bench_.Inside(
              "TavWork", [this, slot] { bench_.Logic().sheet.cmd_Work_Click(slot); },
              [this, &action](QWidget& form) {
                bench_.Pass(seconds(8));
                action(form);
              }),
          "TavWork");
}

void FormTour::TakeWorksheet() {
  OnWorksheet(1, [this](QWidget& form) {
    StopAt(form, "TavWork");
    TakeBehindAs(form, "cmd_New", "TavRec", "TavRec-new");
    TakeBehind(form, "cmd_SetRec", "TavRec");
    TakeBehind(form, "cmd_Coord", "TavCoord");
    TakeBehind(form, "Color_5", "TavColor");
  });
}

void FormTour::TakeController() {
  OnWorksheet(2, [this](QWidget& form) {
    TakeBehind(form, "cmd_setCtrl", "TavCtrl",
               [this](QWidget& control) { TakeBehind(control, "cmdPID", "TavPid"); });
  });
  // The bar of a recording that begins.
  OnWorksheet(4, [this](QWidget& form) {
    TakeBehind(form, "cmd_Rec_1", "TavWait", [this](QWidget&) { bench_.Pass(seconds(5)); });
  });
}

void FormTour::TakeProgram() {
  bench_.Dialogs().chosen_file = bench_.File("ANNEAL.PRG");
  Take("TavProg", View::kTavProg, [this](QWidget& form) { Click(form, "cmdOpen"); });
  OnWorksheet(4, [this](QWidget& form) {
    Click(form, "cmd_ProgOn");
    bench_.Pass(seconds(130));
    StopAt(form, "TavWork-program");
    Click(form, "cmd_ProgOff");
  });
}

bool FormTour::IsDrawn(int view) {
  const GraphState& graph = bench_.Logic().graph.State();
  return (view == kPartView ? graph.PartPainted : graph.OverPainted) && !graph.GraphBusy;
}

void FormTour::TakeGraph() {
  OnWorksheet(1, [this](QWidget& form) {
    Require(bench_.Inside(
                "TavGraph", [this, &form] { Click(form, "CmdOK"); },
                [this](QWidget& graph) { TakeViews(graph); }),
            "TavGraph");
  });
}

void FormTour::TakeViews(QWidget& graph) {
  Require(WaitUntil([this] { return IsDrawn(kOverview); }), "the overview is not drawn");
  Drag(graph, "PicC_0", {5, 20}, {48, 280});
  StopAt(graph, "TavGraph");
  Click(graph, "cmdPart");
  Require(WaitUntil([this] { return IsDrawn(kPartView); }), "the part view is not drawn");
  Click(graph, "PbMark_1");
  Drag(graph, "PicC_1", {28.5, 224}, {28.5, 224});
  Drag(graph, "PicC_1", {31, 195}, {31, 195});
  StopAt(graph, "TavGraph-part");
  TakeDifference(graph);
}

void FormTour::TakeDifference(QWidget& graph) {
  Click(graph, "PbEval_0");
  Drag(graph, "PicC_1", {10, 91}, {10, 91});
  Drag(graph, "PicC_1", {24, 193}, {24, 193});
  StopAt(graph, "TavGraph-difference");
}

void FormTour::TakeFiles() {
  Require(bench_.Inside("ALL_OPEN", View::kAllOpen,
                        [this](QWidget& form) {
                          StopAt(form, "ALL_OPEN");
                          TakeBehind(form, "cmdCopy", "ALL_COPY");
                        }),
          "ALL_OPEN");
}

void FormTour::TakeAfter(const char* form, View view, seconds time) {
  Take(form, view, [this, time](QWidget&) { bench_.Pass(time); });
}

void FormTour::TakeService() {
  TakeAfter("ALL_QS", View::kAllQs, seconds(3));
  TakeAfter("ALL_RAM", View::kAllRam, seconds(40));
  TakeAfter("ALL_REGS", View::kAllRegs, seconds(25));
  Take("ALL_TERM", View::kAllTerm, [this](QWidget& form) {
    AskOnTerminal(form, "np21?");
    AskOnTerminal(form, "n1p21?");
  });
}

void FormTour::AskOnTerminal(QWidget& form, const char* command) {
  const auto length = [this] { return bench_.Logic().terminal.Term().size(); };
  QTest::keyClicks(form.findChild<QWidget*>("Term"), command);
  const auto asked = length();
  Require(
      WaitUntil([&] { return length() > asked && bench_.Logic().terminal.Term().back() == '\n'; }),
      "the terminal has no answer");
}

void FormTour::TakeTests() {
  TakeAfter("ALL_COM", View::kAllCom, seconds(20));
  TakeAfter("ALL_MEM", View::kAllMem, seconds(30));
  TakeAfter("All_Wdog", View::kAllWdog, seconds(5));
  Take("SP_TavHS", View::kSpTavHs, [this](QWidget& form) {
    bench_.Pass(seconds(3));
    Click(form, "Opt3_1");
    bench_.Pass(seconds(3));
  });
}

void FormTour::TakeBoxes() {
  const MessageRequest request{"create a new file", "recording", false, true, true};
  Require(bench_.Inside(
              "ALL_MSG", [&] { bench_.Logic().message.Ask(request); },
              [this](QWidget& form) { StopAt(form, "ALL_MSG"); }),
          "ALL_MSG");
}

}  // namespace tavrel
