// Makes the pictures of the manual: form_pictures German|English DIRECTORY
//
// Runs during the build, without a screen. Every form is opened over two virtual instruments in
// this process and four recordings, so that its picture is always that of the form as it is, and
// shows what a user sees. The clock is made: each run shows the same values.

#include <QApplication>
#include <QDir>
#include <QLabel>
#include <QPainter>
#include <QTest>
#include <QTreeWidget>
#include <cstdio>
#include <string>

#include "docs/manual/picture_bench.h"
#include "graph/forms/plot_view.h"
#include "main/forms/all_load.h"
#include "platform/qt/qt_dialogs.h"
#include "service/forms/terminal_text.h"
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

// A picture of each form, in the order of the manual.
class FormPictures {
 public:
  FormPictures(const LabWords& words, QDir target) : bench_(words), target_(std::move(target)) {}

  // False: a form is missing, or its picture cannot be written.
  [[nodiscard]] bool Make() {
    if (!TakeSplash() || !bench_.Start()) {
      return false;
    }
    Save(bench_.MainForm(), "Tavrel");
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

 private:
  using Deed = std::function<void(QWidget& form)>;

  void Require(bool is_good, const char* what) {
    if (!is_good) {
      std::fprintf(stderr, "form_pictures: %s\n", what);
      is_whole_ = false;
    }
  }

  // Paths begin where the directory of the pictures ends.
  void ShortenPaths(QWidget& form) const {
    const QString own = QString::fromStdString(bench_.OwnDirectory());
    for (auto* label : form.findChildren<QLabel*>()) {
      if (label->accessibleName().startsWith(own)) {
        label->setText(label->accessibleName().mid(own.size()));
      }
    }
    if (auto* tree = form.findChild<QTreeWidget*>("DirList")) {
      QTreeWidgetItem* top = tree->topLevelItem(0);
      top->setText(0, top->text(0).remove(own));
    }
  }

  // The form with its title over it, as a window shows it.
  void Save(QWidget& form, const QString& name) {
    QCoreApplication::processEvents();
    ShortenPaths(form);
    const QPixmap content = form.grab();
    const qreal ratio = content.devicePixelRatio();
    const QSizeF size = content.deviceIndependentSize();
    QPixmap picture((QSizeF(size.width() + 2, size.height() + kTitleBar + 1) * ratio).toSize());
    picture.setDevicePixelRatio(ratio);
    picture.fill(QColor(0x70, 0x78, 0x80));
    QPainter painter(&picture);
    QFont bold = form.font();
    bold.setBold(true);
    painter.setFont(bold);
    painter.setPen(Qt::white);
    painter.drawText(QRectF(8, 0, size.width() - 16, kTitleBar), Qt::AlignVCenter,
                     form.windowTitle().trimmed());
    painter.drawPixmap(QPointF(1, kTitleBar), content);
    painter.end();
    Require(picture.save(target_.filePath(name + ".png")), qPrintable(name));
  }

  void Take(const char* form, View view, const Deed& deed = {}) {
    Require(bench_.Inside(form, view,
                          [this, form, &deed](QWidget& front) {
                            if (deed) {
                              deed(front);
                            }
                            Save(front, form);
                          }),
            form);
  }

  // A form that a button of another one opens.
  void TakeBehind(QWidget& parent, const char* button, const char* form, const Deed& deed = {}) {
    TakeBehindAs(parent, button, form, form, deed);
  }
  void TakeBehindAs(QWidget& parent, const char* button, const char* form, const char* picture,
                    const Deed& deed = {}) {
    Require(bench_.Inside(
                form, [&] { Click(parent, button); },
                [this, picture, &deed](QWidget& front) {
                  if (deed) {
                    deed(front);
                  }
                  Save(front, picture);
                }),
            picture);
  }

  void Click(QWidget& form, const char* name) {
    auto* widget = form.findChild<QWidget*>(name);
    Require(widget != nullptr, name);
    if (widget != nullptr) {
      QTest::mouseClick(widget, Qt::LeftButton);
    }
  }

  static void Drag(QWidget& form, const char* plot_name, QPointF from, QPointF to) {
    auto* plot = dynamic_cast<PlotView*>(form.findChild<QWidget*>(plot_name));
    QTest::mousePress(plot, Qt::LeftButton, {}, plot->PositionOf(from));
    QTest::mouseMove(plot, plot->PositionOf(to));
    QTest::mouseRelease(plot, Qt::LeftButton, {}, plot->PositionOf(to));
  }

  [[nodiscard]] bool TakeSplash() {
    const auto values = bench_.Load();
    if (!values) {
      return false;
    }
    AllLoad splash;
    splash.UpdateWidgets(*values);
    splash.setWindowTitle("TAVREL");
    splash.show();
    Save(splash, "ALL_LOAD");
    return true;
  }

  void TakeSettings() {
    // By its command, which opens the line again behind it.
    Require(bench_.Inside(
                "TAVSETT", [this] { bench_.Logic().commands.MnuSettings(); },
                [this](QWidget& form) {
                  Save(form, "TAVSETT");
                  TakeBehind(form, "cmdPath", "ALL_DIR");
                }),
            "TAVSETT");
  }

  void TakeSetup() {
    Take("TavInst", View::kTavInst);
    Take("TavNum", View::kTavNum, [this](QWidget&) { bench_.Pass(seconds(4)); });
    Take("TavChann", View::kTavChann, [this](QWidget&) {
      Require(WaitUntil([this] { return bench_.Logic().channels.State() == AdjState::kIdle; }),
              "the channels are not read");
    });
  }

  // Shows the worksheet of a slot, which stays open for the deed.
  void OnWorksheet(int slot, const Deed& deed) {
    Require(bench_.Inside(
                "TavWork", [this, slot] { bench_.Logic().sheet.cmd_Work_Click(slot); },
                [this, &deed](QWidget& form) {
                  bench_.Pass(seconds(8));
                  deed(form);
                }),
            "TavWork");
  }

  void TakeWorksheet() {
    OnWorksheet(1, [this](QWidget& form) {
      Save(form, "TavWork");
      TakeBehindAs(form, "cmd_New", "TavRec", "TavRec-new");
      TakeBehind(form, "cmd_SetRec", "TavRec");
      TakeBehind(form, "cmd_Coord", "TavCoord");
      TakeBehind(form, "Color_5", "TavColor");
    });
  }

  void TakeController() {
    OnWorksheet(2, [this](QWidget& form) {
      TakeBehind(form, "cmd_setCtrl", "TavCtrl",
                 [this](QWidget& control) { TakeBehind(control, "cmdPID", "TavPid"); });
    });
    // The bar of a recording that begins.
    OnWorksheet(4, [this](QWidget& form) {
      TakeBehind(form, "cmd_Rec_1", "TavWait", [this](QWidget&) { bench_.Pass(seconds(5)); });
    });
  }

  void TakeProgram() {
    bench_.Dialogs().chosen_file = bench_.File("ANNEAL.PRG");
    Take("TavProg", View::kTavProg, [this](QWidget& form) { Click(form, "cmdOpen"); });
    OnWorksheet(4, [this](QWidget& form) {
      Click(form, "cmd_ProgOn");
      bench_.Pass(seconds(130));
      Save(form, "TavWork-program");
      Click(form, "cmd_ProgOff");
    });
  }

  [[nodiscard]] bool IsDrawn(int view) {
    const GraphState& graph = bench_.Logic().graph.State();
    return (view == kPartView ? graph.PartPainted : graph.OverPainted) && !graph.GraphBusy;
  }

  void TakeGraph() {
    OnWorksheet(1, [this](QWidget& form) {
      Require(bench_.Inside(
                  "TavGraph", [this, &form] { Click(form, "CmdOK"); },
                  [this](QWidget& graph) { TakeViews(graph); }),
              "TavGraph");
    });
  }

  void TakeViews(QWidget& graph) {
    Require(WaitUntil([this] { return IsDrawn(kOverview); }), "the overview is not drawn");
    Drag(graph, "PicC_0", {5, 20}, {48, 280});
    Save(graph, "TavGraph");
    Click(graph, "cmdPart");
    Require(WaitUntil([this] { return IsDrawn(kPartView); }), "the part view is not drawn");
    Click(graph, "PbMark_1");
    Drag(graph, "PicC_1", {28.5, 224}, {28.5, 224});
    Drag(graph, "PicC_1", {31, 195}, {31, 195});
    Save(graph, "TavGraph-part");
    TakeDifference(graph);
  }

  void TakeDifference(QWidget& graph) {
    Click(graph, "PbEval_0");
    Drag(graph, "PicC_1", {10, 91}, {10, 91});
    Drag(graph, "PicC_1", {24, 193}, {24, 193});
    Save(graph, "TavGraph-difference");
  }

  void TakeFiles() {
    Require(bench_.Inside("ALL_OPEN", View::kAllOpen,
                          [this](QWidget& form) {
                            Save(form, "ALL_OPEN");
                            TakeBehind(form, "cmdCopy", "ALL_COPY");
                          }),
            "ALL_OPEN");
  }

  // A screen that reads or measures is given the time that it takes.
  void TakeAfter(const char* form, View view, seconds time) {
    Take(form, view, [this, time](QWidget&) { bench_.Pass(time); });
  }

  void TakeService() {
    TakeAfter("ALL_QS", View::kAllQs, seconds(3));
    TakeAfter("ALL_RAM", View::kAllRam, seconds(40));
    TakeAfter("ALL_REGS", View::kAllRegs, seconds(25));
    Take("ALL_TERM", View::kAllTerm, [this](QWidget& form) {
      AskOnTerminal(form, "np21?");
      AskOnTerminal(form, "n1p21?");
    });
  }

  // Each answer ends with the end of a line.
  void AskOnTerminal(QWidget& form, const char* command) {
    const auto length = [this] { return bench_.Logic().terminal.Term().size(); };
    QTest::keyClicks(form.findChild<QWidget*>("Term"), command);
    const auto asked = length();
    Require(WaitUntil(
                [&] { return length() > asked && bench_.Logic().terminal.Term().back() == '\n'; }),
            "the terminal has no answer");
  }

  void TakeTests() {
    TakeAfter("ALL_COM", View::kAllCom, seconds(20));
    TakeAfter("ALL_MEM", View::kAllMem, seconds(30));
    TakeAfter("All_Wdog", View::kAllWdog, seconds(5));
    Take("SP_TavHS", View::kSpTavHs, [this](QWidget& form) {
      bench_.Pass(seconds(3));
      Click(form, "Opt3_1");
      bench_.Pass(seconds(3));
    });
  }

  void TakeBoxes() {
    const MessageRequest request{"create a new file", "recording", false, true, true};
    Require(bench_.Inside(
                "ALL_MSG", [&] { bench_.Logic().message.Ask(request); },
                [this](QWidget& form) { Save(form, "ALL_MSG"); }),
            "ALL_MSG");
  }

  static constexpr int kTitleBar = 26;  // points

  PictureBench bench_;
  QDir target_;
  bool is_whole_ = true;
};

}  // namespace
}  // namespace tavrel

int main(int count, char** arguments) {
  if (count != 3) {
    std::fputs("usage: form_pictures German|English DIRECTORY\n", stderr);
    return 2;
  }
  QApplication application(count, arguments);
  QApplication::setCursorFlashTime(0);
  const bool is_german = std::string(arguments[1]) == "German";
  const QDir target = QDir(QDir::current().absoluteFilePath(QString::fromLocal8Bit(arguments[2])));
  tavrel::FormPictures pictures(is_german ? tavrel::kGerman : tavrel::kEnglish, target);
  return pictures.Make() ? 0 : 1;
}
