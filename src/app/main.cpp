#include <QApplication>
#include <QTimer>
#include <memory>

#include "app/program_logic.h"
#include "dialogs/forms/all_copy.h"
#include "dialogs/forms/all_dir.h"
#include "dialogs/forms/all_msg.h"
#include "dialogs/forms/all_open.h"
#include "graph/forms/tav_graph.h"
#include "main/forms/all_load.h"
#include "main/forms/tavrel.h"
#include "main/forms/tavsett.h"
#include "main/settings_dialog.h"
#include "platform/checked_printer.h"
#include "platform/cups_queues.h"
#include "platform/file_system.h"
#include "platform/instance_lock.h"
#include "platform/qt/qt_clipboard.h"
#include "platform/qt/qt_dialogs.h"
#include "platform/qt/qt_events.h"
#include "platform/qt/qt_printer.h"
#include "platform/qt/qt_regional.h"
#include "platform/qt/qt_screens.h"
#include "platform/qt/qt_serial_port.h"
#include "platform/qt/qt_shell.h"
#include "platform/qt/qt_signals.h"
#include "platform/system_clock.h"
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
    events_.WatchEnd([this] { return is_ending_ || signals_.HasRequest(); });
    QObject::connect(&signals_, &QtSignals::EndRequested, [this] { End(); });
    end_again_.setSingleShot(true);
    end_again_.callOnTimeout([this] { End(); });
    QObject::connect(qApp, &QGuiApplication::commitDataRequest, [this] { EndSession(); });
    AddForms();
    AddWorkForms();
    screens_.Add(View::kTavGraph, [this] { ShowGraph(); });
    AddControlForms();
    logic_.cycle.SetHandlers({[this] { RefreshWorksheet(); }, [this] { AdvanceWaitBar(); },
                              [this](int slot) { logic_.runner.StepProgram(slot); },
                              [this] { return logic_.unsure.ReadBack(); }});
  }

  // Shows the splash form; the main form follows when it is left. False: the process ends.
  bool Start() {
    const auto take_lock = [this](const std::string& path) -> LockTaking {
      lock_ = std::make_unique<InstanceLock>(path);
      const bool is_taken = lock_->Take();
      return LockTaking(is_taken, lock_->Problem());
    };
    if (!logic_.start_up.SplashLoad(ProgramDirectory(), take_lock)) {
      return false;
    }
    splash_ = std::make_unique<AllLoad>();
    QObject::connect(splash_.get(), &AllLoad::Left, [this] { ShowMainForm(); });
    splash_->show();
    const auto splash_values = logic_.start_up.SplashShow();
    if (!splash_values) {
      return false;
    }
    splash_->Show(*splash_values);
    return true;
  }

 private:
  // The modal forms that the program has. Each waits for the user, so the pointer is the normal
  // one, whatever the rule has set that opens it.
  void AddForms() {
    screens_.Add(View::kTavSett, [this] {
      const QtEvents::NormalPointer normal_pointer(events_);
      SettingsDialog dialog({logic_.state, logic_.link, logic_.settings, logic_.window,
                             logic_.directory, dialogs_, shell_});
      TavSett(dialog).Run();
    });
    screens_.Add(View::kAllDir, [this] {
      const QtEvents::NormalPointer normal_pointer(events_);
      AllDir(logic_.directory).Run();
    });
    screens_.Add(View::kAllMsg, [this] {
      const QtEvents::NormalPointer normal_pointer(events_);
      AllMsg(logic_.message).Run();
    });
    AddFileForms();
  }

  // These show the hourglass themselves while they search and copy.
  void AddFileForms() {
    screens_.Add(View::kAllOpen, [this] {
      logic_.open_file.Load();
      AllOpen(logic_.open_file).Run();
      if (logic_.open_file.IsOpen()) {
        logic_.open_file.cmdBack_Click();  // the program ends, nobody has chosen
      }
    });
    screens_.Add(View::kAllCopy, [this] {
      logic_.copy_files.Load();
      AllCopy(logic_.copy_files).Run();
    });
  }

  // The worksheet and its dialogs. The wait bar keeps the pointer that its rule has set.
  void AddWorkForms() {
    screens_.Add(View::kTavWork, [this] { ShowWorksheet(); });
    screens_.Add(View::kTavRec, [this] { TavRec(logic_.recording_settings).Run(); });
    screens_.Add(View::kTavCoord, [this] { TavCoord(logic_.coordinates).Run(); });
    screens_.Add(View::kTavColor, [this] { TavColor(logic_.colours).Run(); });
    screens_.Add(View::kTavWait, [this] {
      logic_.wait_bar.Open();
      TavWait form(logic_.wait_bar);
      wait_form_ = &form;
      form.Run();
      wait_form_ = nullptr;
    });
  }

  void ShowWorksheet() {
    logic_.worksheet.Open();
    if (work_form_ == nullptr) {
      work_form_ = std::make_unique<TavWork>(logic_.worksheet);
    }
    work_form_->Run();
  }

  // The graph keeps its pictures while it is hidden.
  void ShowGraph() {
    if (graph_form_ == nullptr) {
      graph_form_ = std::make_unique<TavGraph>(logic_.graph, logic_.graph_output);
    }
    logic_.graph.Open();
    graph_form_->Run();
    logic_.graph.CloseNow();
  }

  void RefreshWorksheet() {
    logic_.worksheet.Refresh();
    if (work_form_ != nullptr) {
      work_form_->ShowRefresh();
    }
  }

  void AdvanceWaitBar() {
    logic_.wait_bar.Advance();
    if (wait_form_ != nullptr) {
      wait_form_->ShowStep();
    }
  }

  // The forms that drive a controller.
  void AddControlForms() {
    screens_.Add(View::kTavCtrl, [this] {
      const QtEvents::NormalPointer normal_pointer(events_);
      ControllerSettings settings({logic_.state, logic_.link, dialogs_, screens_, logic_.unsure});
      TavCtrl(settings).Run();
    });
    screens_.Add(View::kTavPid, [this] {
      const QtEvents::NormalPointer normal_pointer(events_);
      PidParameters parameters(
          {logic_.state, logic_.link, dialogs_, screens_, logic_.unsure, logic_.engine.Orders()});
      TavPid(parameters).Run();
    });
    screens_.Add(View::kTavProg, [this] {
      const QtEvents::NormalPointer normal_pointer(events_);
      ProgramEditor editor({logic_.state, dialogs_});
      TavProg(editor).Run();
    });
  }

  void ShowMainForm() {
    has_settings_ = true;
    events_.SetPointer(Pointer::kHourglass);
    const int top = splash_->y();
    // From here on only the main form ends the program: a box may be the only window for a while.
    QApplication::setQuitOnLastWindowClosed(false);
    splash_->hide();
    splash_.release()->deleteLater();
    if (!logic_.start_up.MainFormLoad()) {
      QCoreApplication::quit();
      return;
    }
    form_ = std::make_unique<Tavrel>(
        Tavrel::Parts{logic_.sheet, logic_.window, logic_.cycle, logic_.start_up}, ExpectedRows());
    form_->PlaceAt(top);
    form_->show();
  }

  // A signal from outside ends the program as its close box does, later if a rule has to finish
  // something on an instrument first. Before the settings are loaded there is nothing to shut down.
  // All boxes and forms are left at once: a box that would have to agree could refuse.
  void End() {
    is_ending_ = true;
    if (has_settings_) {
      logic_.window.Close();
      if (!logic_.window.HasEnded()) {
        end_again_.start(kTickMilliseconds);
        return;
      }
    }
    if (form_ != nullptr) {
      form_->close();
    }
    QCoreApplication::exit(0);
  }

  // Whoever ends the session tells the program afterwards to quit.
  void EndSession() {
    is_ending_ = true;
    logic_.window.Close();
    if (!logic_.window.HasEnded()) {
      End();
    }
  }

  [[nodiscard]] int ExpectedRows() const {
    int rows = 0;
    for (const std::string& file : logic_.state.Settings.ActiveFiles) {
      rows += file.empty() ? 0 : 1;
    }
    return rows;
  }

  SystemClock clock_;
  QtEvents events_;
  QtDialogs dialogs_{events_};
  QtScreens screens_;
  QtShell shell_;
  QtSignals signals_;
  QtSerialPort port_{ProgramDirectory()};
  QtPrinter qt_printer_{events_};
  CupsQueues queues_;
  CheckedPrinter printer_{qt_printer_, queues_};
  QtClipboard clipboard_;
  QtRegional regional_;
  ProgramLogic logic_{
      {port_, clock_, dialogs_, screens_, events_, shell_, printer_, clipboard_, regional_}};
  std::unique_ptr<InstanceLock> lock_;
  std::unique_ptr<AllLoad> splash_;
  std::unique_ptr<Tavrel> form_;
  std::unique_ptr<TavWork> work_form_;    // a child of form_: goes before it
  std::unique_ptr<TavGraph> graph_form_;  // a child of work_form_: goes before that
  QTimer end_again_;                      // until no rule is at work on an instrument
  TavWait* wait_form_ = nullptr;          // while it is shown
  bool has_settings_ = false;             // the start is past its splash
  bool is_ending_ = false;                // somebody outside wants the end
};

}  // namespace
}  // namespace tavrel

int main(int count, char** arguments) {
  QApplication application(count, arguments);
  QApplication::setApplicationName(QStringLiteral("TAVREL"));
  QApplication::setApplicationVersion(QStringLiteral("6.1"));
  tavrel::Program program;
  // The start has boxes of its own. A signal ends the program beneath them only if its loop of
  // events runs already, and none of them is the last window.
  QApplication::setQuitOnLastWindowClosed(false);
  QTimer::singleShot(0, &application, [&program] {
    if (program.Start()) {
      QApplication::setQuitOnLastWindowClosed(true);
    } else {
      QCoreApplication::quit();
    }
  });
  return QApplication::exec();
}
