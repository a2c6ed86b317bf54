#include "app/program_screens.h"

#include <QApplication>

#include "dialogs/forms/all_copy.h"
#include "dialogs/forms/all_dir.h"
#include "dialogs/forms/all_msg.h"
#include "dialogs/forms/all_open.h"
#include "dialogs/help.h"
#include "graph/forms/tav_graph.h"
#include "main/forms/emblem.h"
#include "main/forms/tav_keys.h"
#include "main/forms/tavsett.h"
#include "service/forms/all_com.h"
#include "service/forms/all_mem.h"
#include "service/forms/all_qs.h"
#include "service/forms/all_term.h"
#include "service/forms/all_wdog.h"
#include "service/forms/register_sheet_form.h"
#include "service/forms/sp_tavhs.h"
#include "setup/forms/tav_chann.h"
#include "setup/forms/tav_inst.h"
#include "setup/forms/tav_num.h"
#include "work/forms/tav_color.h"
#include "work/forms/tav_coord.h"
#include "work/forms/tav_ctrl.h"
#include "work/forms/tav_pid.h"
#include "work/forms/tav_prog.h"
#include "work/forms/tav_rec.h"
#include "work/forms/tav_wait.h"
#include "work/forms/tav_work.h"

namespace tavrel {

ProgramScreens::ProgramScreens(ProgramLogic& logic, QtScreens& screens, QtEvents& events)
    : logic_(logic), screens_(screens), events_(events) {
  QApplication::setWindowIcon(EmblemIcon());
  AddForm<AllDir>(View::kAllDir, logic.directory);
  AddForm<AllMsg>(View::kAllMsg, logic.message);
  AddForm<TavRec>(View::kTavRec, logic.recording_settings);
  AddForm<TavCoord>(View::kTavCoord, logic.coordinates);
  AddForm<TavColor>(View::kTavColor, logic.colours);
  AddFormToOpen<TavSett>(View::kTavSett, logic.settings_dialog);
  AddFormToOpen<TavCtrl>(View::kTavCtrl, logic.controller_settings);
  AddFormToOpen<TavPid>(View::kTavPid, logic.pid_parameters);
  AddFormToOpen<TavProg>(View::kTavProg, logic.program_editor);
  AddFormToOpen<TavInst>(View::kTavInst, logic.installation);
  AddFormToOpen<TavKeys>(View::kTavKeys, logic.keys);
  AddFormToOpen<AllTerm>(View::kAllTerm, logic.terminal);
  AddFileForms();
  screens_.Add(View::kTavNum, [this] { ShowNumbering(); });
  AddChannels();
  AddServiceForms();
  screens_.Add(View::kTavWork, [this] { ShowWorksheet(); });
  screens_.Add(View::kTavGraph, [this] { ShowGraph(); });
  screens_.Add(View::kTavWait, [this] { ShowWaitBar(); });
}

ProgramScreens::~ProgramScreens() = default;

// As large as the user has left it the last time, and with the key of the manual.
void ProgramScreens::Run(ModalForm& form) {
  const std::string name = form.objectName().toStdString();
  if (const auto size = logic_.form_sizes.Of(name)) {
    form.PreferSize({size->Width, size->Height});
  }
  const auto help = QObject::connect(&form, &ModalForm::HelpAsked, [this] {
    ShowHelp(logic_.machine.dialogs, logic_.machine.shell, logic_.state.AppPath,
             logic_.state.Settings.HelpLang);
  });
  form.Run();
  QObject::disconnect(help);
  if (form.HasUsersSize()) {
    logic_.form_sizes.Keep(name, {form.width(), form.height()});
  }
}

// The program may end under the form: then nobody has chosen.
template <typename Form, typename Screen>
void ProgramScreens::RunForm(Screen& screen) {
  Form form(screen);
  Run(form);
  if (screen.IsOpen()) {
    screen.CloseNow();
  }
}

// For a screen that its rules have opened.
template <typename Form, typename Screen>
void ProgramScreens::AddForm(View view, Screen& screen) {
  screens_.Add(view, [this, &screen] {
    const QtEvents::NormalPointer normal_pointer(events_);
    RunForm<Form>(screen);
  });
}

// For a screen that opens when its number is shown.
template <typename Form, typename Screen>
void ProgramScreens::AddFormToOpen(View view, Screen& screen) {
  screens_.Add(view, [this, &screen] {
    const QtEvents::NormalPointer normal_pointer(events_);
    screen.Open();
    RunForm<Form>(screen);
  });
}

// For a screen that takes its turns from the cycle, shows the hourglass itself while it reads, and
// may stay closed by the user's wish.
template <typename Form, typename Screen>
void ProgramScreens::AddServiceForm(Screen& screen) {
  screens_.Add(screen.Number(), [this, &screen] {
    screen.Open();
    if (screen.IsOpen()) {
      Form form(screen, logic_.stepped);
      Run(form);
    }
    screen.CloseNow();
  });
}

void ProgramScreens::AddServiceForms() {
  AddServiceForm<AllRam>(logic_.variable_browser);
  AddServiceForm<AllRegs>(logic_.port_browser);
  AddServiceForm<SpTavHs>(logic_.output_test);
  AddServiceForm<AllCom>(logic_.communication_test);
  AddServiceForm<AllMem>(logic_.memory_test);
  AddServiceForm<AllWdog>(logic_.watchdog_test);
  AddServiceForm<AllQs>(logic_.quality_data);
}

// These show the hourglass themselves while they search and copy.
void ProgramScreens::AddFileForms() {
  screens_.Add(View::kAllOpen, [this] {
    logic_.open_file.Open();
    RunForm<AllOpen>(logic_.open_file);
  });
  screens_.Add(View::kAllCopy, [this] {
    logic_.copy_files.Open();
    RunForm<AllCopy>(logic_.copy_files);
  });
}

// The form also takes its turns from the cycle.
void ProgramScreens::ShowNumbering() {
  const QtEvents::NormalPointer normal_pointer(events_);
  logic_.numbering.Open();
  TavNum form(logic_.numbering, logic_.stepped);
  Run(form);
  logic_.numbering.CloseNow();
}

// Shows the hourglass itself while it reads its sheet.
void ProgramScreens::AddChannels() {
  screens_.Add(View::kTavChann, [this] {
    logic_.channels.Open();
    RunForm<TavChann>(logic_.channels);
  });
}

void ProgramScreens::ShowWorksheet() {
  logic_.worksheet.Open();
  if (work_form_ == nullptr) {
    work_form_ = std::make_unique<TavWork>(logic_.worksheet);
  }
  Run(*work_form_);
}

// The graph keeps its pictures while it is hidden.
void ProgramScreens::ShowGraph() {
  if (graph_form_ == nullptr) {
    graph_form_ = std::make_unique<TavGraph>(logic_.graph, logic_.graph_output);
  }
  logic_.graph.Open();
  Run(*graph_form_);
  logic_.graph.CloseNow();
}

// The pointer stays as the rule has set it that waits.
void ProgramScreens::ShowWaitBar() {
  logic_.wait_bar.Open();
  TavWait form(logic_.wait_bar);
  wait_form_ = &form;
  Run(form);
  wait_form_ = nullptr;
}

MainCycle::TickHandlers ProgramScreens::Handlers() {
  return {[this] { RefreshWorksheet(); }, [this] { AdvanceWaitBar(); },
          [this](int slot) { logic_.runner.StepProgram(slot); },
          [this] { return logic_.ReadBack(); }};
}

void ProgramScreens::RefreshWorksheet() {
  logic_.worksheet.Refresh();
  if (work_form_ != nullptr) {
    work_form_->ShowRefresh();
  }
}

void ProgramScreens::AdvanceWaitBar() {
  logic_.wait_bar.Advance();
  if (wait_form_ != nullptr) {
    wait_form_->ShowStep();
  }
}

}  // namespace tavrel
