#include "graph/graph_output.h"
#include "graph/output_pause.h"
#include "graph/output_texts.h"
#include "state/open_slots.h"
#include "state/user_language.h"

namespace tavrel {
namespace {

constexpr const char* kTitle = "Printer";
constexpr int kBlackPrinter = 1;  // PCOLORTYPE
constexpr int kColourPrinter = 2;

// Some printers that make a file say of themselves that they print black only.
bool IsColour(const PrintChoice& choice) {
  return choice.IsColour || choice.PrinterName.find("Acro") != std::string::npos;
}

}  // namespace

void GraphOutput::MnuPrint_Click() {
  if (is_at_work_ || !parts_.graph.HasOutput()) {
    return;
  }
  const ScopedFlag at_work(is_at_work_, true);
  parts_.graph.CancelTool();
  const DisabledButton button(parts_.graph, &GraphValues::PbPrintEnabled);
  Print();
}

void GraphOutput::Print() {
  const std::string file = File();
  PrintChoice choice;
  choice.Document = file;
  choice.PrinterName = parts_.state.Settings.PrintName;
  if (!parts_.printer.Choose(choice)) {
    return;
  }
  KeepPrinter(choice);
  if (!choice.OutputFile.empty() && IsOpenInSlot(parts_.state, choice.OutputFile)) {
    Warn(kTitle, output_text::kInUse.Text(UserLanguage(parts_.state), {choice.OutputFile}));
    return;
  }
  bool is_still = true;
  bool is_printed = true;
  {
    const OutputPause pause(parts_.state, parts_.graph, parts_.events);
    parts_.events.Pump();
    is_still = IsStill(file);
    is_printed = !is_still || PrintPages(choice);
    is_printed = parts_.printer.EndJob() && is_printed;
  }
  if (!is_printed) {
    Warn(kTitle, "There was a problem printing to your printer.");
  } else if (is_still && !choice.OutputFile.empty()) {
    TellWritten(kTitle, choice.OutputFile);
  }
}

void GraphOutput::KeepPrinter(const PrintChoice& choice) {
  SettingsValues& settings = parts_.state.Settings;
  const int type = IsColour(choice) ? kColourPrinter : kBlackPrinter;
  if (settings.PrintName == choice.PrinterName && settings.PColorType == type) {
    return;
  }
  settings.PrintName = choice.PrinterName;
  settings.PColorType = type;
  parts_.state.SettingsChanged = true;
}

// Every copy is drawn afresh.
bool GraphOutput::PrintPages(const PrintChoice& choice) {
  for (int copy = 0; copy < choice.Copies; ++copy) {
    Surface* page = parts_.printer.BeginPage();
    if (page == nullptr) {
      return false;
    }
    DrawReport(Content(), Style(IsColour(choice)), LayoutOf(page->GetScale()), *page);
    if (!parts_.printer.EndPage()) {
      return false;
    }
  }
  return true;
}

}  // namespace tavrel
