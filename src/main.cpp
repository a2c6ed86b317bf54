#include <QApplication>
#include <memory>
#include <utility>

#include "common/choose_directory.h"
#include "common/forms/all_dir.h"
#include "common/forms/all_msg.h"
#include "common/message_form.h"
#include "common/messages.h"
#include "files/recording_engine.h"
#include "files/recording_file.h"
#include "frame/forms/all_load.h"
#include "frame/forms/tavrel.h"
#include "frame/forms/tavsett.h"
#include "frame/main_cycle.h"
#include "frame/main_sheet.h"
#include "frame/main_window.h"
#include "frame/run_state.h"
#include "frame/settings_dialog.h"
#include "frame/settings_store.h"
#include "frame/start_up.h"
#include "link/link.h"
#include "platform/file_system.h"
#include "platform/qt/instance_lock.h"
#include "platform/qt/qt_dialogs.h"
#include "platform/qt/qt_events.h"
#include "platform/qt/qt_screens.h"
#include "platform/qt/qt_serial_port.h"
#include "platform/qt/qt_shell.h"
#include "platform/qt/qt_signals.h"
#include "platform/system_clock.h"
#include "work/colour_choice.h"
#include "work/controller_settings.h"
#include "work/coordinates.h"
#include "work/forms/tav_color.h"
#include "work/forms/tav_coord.h"
#include "work/forms/tav_ctrl.h"
#include "work/forms/tav_pid.h"
#include "work/forms/tav_prog.h"
#include "work/forms/tav_rec.h"
#include "work/forms/tav_wait.h"
#include "work/forms/tav_work.h"
#include "work/pid_parameters.h"
#include "work/program_editor.h"
#include "work/program_runner.h"
#include "work/recording_settings.h"
#include "work/wait_bar.h"
#include "work/worksheet.h"

namespace tavrel {
namespace {

// All objects of the program, joined. One instance lives as long as the process.
class Program {
 public:
  Program() {
    events_.BeforeRepaint([this] {
      if (form_ != nullptr) {
        form_->Show();
      }
    });
    QObject::connect(&signals_, &QtSignals::EndRequested, [this] { End(); });
    QObject::connect(qApp, &QGuiApplication::commitDataRequest, [this] { window_.Close(); });
    AddForms();
    AddWorkForms();
    AddControlForms();
    cycle_.SetGuests({[this] { RefreshWorksheet(); }, [this] { AdvanceWaitBar(); },
                      [this](int slot) { runner_.StepProgram(slot); }});
  }

  // Shows the splash form; the main form follows when it is left. False: the process ends.
  bool Start() {
    const auto take_lock = [this](const std::string& path) {
      lock_ = std::make_unique<InstanceLock>(path);
      return lock_->Take();
    };
    if (!start_up_.SplashLoad(ProgramDirectory(), take_lock)) {
      return false;
    }
    splash_ = std::make_unique<AllLoad>();
    QObject::connect(splash_.get(), &AllLoad::Left, [this] { ShowMainForm(); });
    splash_->show();
    splash_->Show(start_up_.SplashShow());
    return true;
  }

 private:
  // The modal forms that the program has. Each waits for the user, so the pointer is the normal
  // one, whatever the rule has set that opens it.
  void AddForms() {
    screens_.Add(View::kTavSett, [this] {
      const QtEvents::NormalPointer normal_pointer(events_);
      SettingsDialog dialog({state_, link_, settings_, window_, directory_, dialogs_, shell_});
      TavSett(dialog).Run();
    });
    screens_.Add(View::kAllDir, [this] {
      const QtEvents::NormalPointer normal_pointer(events_);
      AllDir(directory_).Run();
    });
    screens_.Add(View::kAllMsg, [this] {
      const QtEvents::NormalPointer normal_pointer(events_);
      AllMsg(message_).Run();
    });
  }

  // The worksheet and its dialogs. The wait bar keeps the pointer that its rule has set.
  void AddWorkForms() {
    screens_.Add(View::kTavWork, [this] { ShowWorksheet(); });
    screens_.Add(View::kTavRec, [this] { TavRec(recording_settings_).Run(); });
    screens_.Add(View::kTavCoord, [this] { TavCoord(coordinates_).Run(); });
    screens_.Add(View::kTavColor, [this] { TavColor(colours_).Run(); });
    screens_.Add(View::kTavWait, [this] {
      wait_bar_.Open();
      TavWait form(wait_bar_);
      wait_form_ = &form;
      form.Run();
      wait_form_ = nullptr;
    });
  }

  void ShowWorksheet() {
    worksheet_.Open();
    if (work_form_ == nullptr) {
      work_form_ = std::make_unique<TavWork>(worksheet_);
    }
    work_form_->Run();
  }

  void RefreshWorksheet() {
    worksheet_.Refresh();
    if (work_form_ != nullptr) {
      work_form_->ShowRefresh();
    }
  }

  void AdvanceWaitBar() {
    wait_bar_.Advance();
    if (wait_form_ != nullptr) {
      wait_form_->ShowStep();
    }
  }

  // The forms that drive a controller.
  void AddControlForms() {
    screens_.Add(View::kTavCtrl, [this] {
      const QtEvents::NormalPointer normal_pointer(events_);
      ControllerSettings settings({state_, link_, dialogs_, screens_});
      TavCtrl(settings).Run();
    });
    screens_.Add(View::kTavPid, [this] {
      const QtEvents::NormalPointer normal_pointer(events_);
      PidParameters parameters({state_, link_, dialogs_, screens_});
      TavPid(parameters).Run();
    });
    screens_.Add(View::kTavProg, [this] {
      const QtEvents::NormalPointer normal_pointer(events_);
      ProgramEditor editor({state_, dialogs_});
      TavProg(editor).Run();
    });
  }

  void ShowMainForm() {
    events_.SetPointer(Pointer::kHourglass);
    const int top = splash_->y();
    // From here on only the main form ends the program: a box may be the only window for a while.
    QApplication::setQuitOnLastWindowClosed(false);
    splash_->hide();
    splash_.release()->deleteLater();
    if (!start_up_.MainFormLoad()) {
      QCoreApplication::quit();
      return;
    }
    form_ =
        std::make_unique<Tavrel>(Tavrel::Parts{sheet_, window_, cycle_, start_up_}, ExpectedRows());
    form_->PlaceAt(top);
    form_->show();
  }

  // A signal from outside ends the program as its close box does.
  void End() {
    if (form_ != nullptr) {
      form_->close();
    }
    QCoreApplication::quit();
  }

  [[nodiscard]] int ExpectedRows() const {
    int rows = 0;
    for (const std::string& file : state_.Settings.ActiveFiles) {
      rows += file.empty() ? 0 : 1;
    }
    return rows;
  }

  RunState state_;
  SystemClock clock_;
  QtEvents events_;
  QtDialogs dialogs_{events_};
  QtScreens screens_;
  QtShell shell_;
  QtSignals signals_;
  QtSerialPort port_{ProgramDirectory()};
  Link link_{port_, clock_};
  Messages messages_{dialogs_};
  SettingsStore settings_{state_};
  RecordingFiles files_{state_, clock_, messages_};
  RecordingEngine engine_{
      {state_, link_, files_, settings_, messages_, dialogs_, screens_, clock_}};
  MainSheet sheet_{{state_, link_, clock_, screens_, events_}};
  MainCycle cycle_{{state_, link_, engine_, sheet_, messages_, clock_}};
  MainWindow window_{{state_, link_, files_, engine_, settings_, sheet_, cycle_, dialogs_, screens_,
                      events_, shell_, clock_}};
  StartUp start_up_{{state_, link_, files_, settings_, sheet_, cycle_, window_, messages_, dialogs_,
                     screens_, events_, clock_}};
  ProgramRunner runner_{{state_, link_, engine_, dialogs_, events_, clock_}};
  DirectoryChoice directory_{state_, screens_};
  MessageForm message_{state_, screens_};
  RecordingSettings recording_settings_{{state_, files_, settings_, messages_, dialogs_, screens_}};
  Coordinates coordinates_{state_, dialogs_, screens_};
  ColourChoice colours_{state_, screens_};
  WaitBar wait_bar_{state_, events_, clock_};
  Worksheet worksheet_{{state_, link_, engine_, runner_, recording_settings_, coordinates_,
                        colours_, dialogs_, screens_, events_, clock_}};
  std::unique_ptr<InstanceLock> lock_;
  std::unique_ptr<AllLoad> splash_;
  std::unique_ptr<Tavrel> form_;
  std::unique_ptr<TavWork> work_form_;  // a child of form_: goes before it
  TavWait* wait_form_ = nullptr;        // while it is shown
};

}  // namespace
}  // namespace tavrel

int main(int count, char** arguments) {
  QApplication application(count, arguments);
  QApplication::setApplicationName(QStringLiteral("TAVREL"));
  QApplication::setApplicationVersion(QStringLiteral("6.1"));
  tavrel::Program program;
  return program.Start() ? QApplication::exec() : 0;
}
