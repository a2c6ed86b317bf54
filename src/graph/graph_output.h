#ifndef TAVREL_GRAPH_GRAPH_OUTPUT_H_
#define TAVREL_GRAPH_GRAPH_OUTPUT_H_

#include <optional>
#include <string>

#include "files/journal_begin.h"
#include "graph/export_text.h"
#include "graph/graph.h"
#include "graph/report.h"
#include "graph/subfile.h"
#include "platform/clipboard.h"
#include "platform/clock.h"
#include "platform/dialogs.h"
#include "platform/events.h"
#include "platform/printer.h"
#include "platform/regional.h"
#include "platform/shell.h"

namespace tavrel {

// The menu "Output" of TavGraph and its three buttons: what leaves the program of the part view,
// on paper, in files and through the clipboard. The recording is only read. Every command does
// nothing while the part view is not in front or another one runs.
class GraphOutput {
 public:
  struct Parts {  // all outlive this
    RunState& state;
    Graph& graph;
    RecordingJournals& journals;
    Dialogs& dialogs;
    Events& events;
    Printer& printer;
    Clipboard& clipboard;
    const Regional& regional;
    const Clock& clock;
    Shell& shell;
  };
  explicit GraphOutput(const Parts& parts) : parts_(parts) {}

  void MnuPrint_Click();    // also PbPrint
  void MnuSubFile_Click();  // also PbSave
  void MnuASCII_Click();
  void MnuData_Click();
  void MnuGraph_Click();  // also PbCopy

 private:
  void Print();
  [[nodiscard]] bool PrintPages(const PrintChoice& choice);
  void KeepPrinter(const PrintChoice& choice);
  void SaveSubfile();
  void WriteSubfile(const FileChoice& choice);
  void SaveText();
  void CopyText();
  void CopyPicture();

  [[nodiscard]] bool HasCurves(const char* title);
  // The file that a dialog's choice means, as the disk spells it; empty, after a box of that
  // title, if a slot has it open.
  [[nodiscard]] std::string Target(const FileChoice& choice, const char* title);
  void Warn(const char* title, const std::string& text);
  void TellWritten(const char* title, const std::string& path);
  // What is told of a file that was cut by others, or whose medium fails: half of its rows would
  // pass for all of them.
  [[nodiscard]] std::string UnreadableText() const;

  // True if the part view is still in front with that file. The recording goes on beneath a
  // dialog: the file may be full by now and the graph closed.
  [[nodiscard]] bool IsStill(const std::string& file) const;
  [[nodiscard]] ExportTable Table() const;
  [[nodiscard]] SubfileCut Cut() const;
  [[nodiscard]] SubfileOrigin Origin() const;
  [[nodiscard]] ReportContent Content() const;
  [[nodiscard]] ReportStyle Style(bool is_colour) const;
  [[nodiscard]] const ViewFrame& View() const { return parts_.graph.State().Views[kPartView]; }
  [[nodiscard]] int Slot() const { return parts_.state.SelSlot; }
  [[nodiscard]] const UnitRecord& Unit() const { return parts_.state.Unit[Slot()]; }
  [[nodiscard]] const std::string& File() const { return parts_.state.SlotFile[Slot()]; }

  Parts parts_;
  bool is_at_work_ = false;
};

}  // namespace tavrel

#endif  // TAVREL_GRAPH_GRAPH_OUTPUT_H_
