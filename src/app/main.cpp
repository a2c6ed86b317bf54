#include <QApplication>
#include <QSize>
#include <QTimer>
#include <chrono>
#include <cstdio>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include "app/program_logic.h"
#include "app/program_screens.h"
#include "base/version.h"
#include "main/forms/all_load.h"
#include "main/forms/tavrel.h"
#include "platform/checked_printer.h"
#include "platform/cups_queues.h"
#include "platform/file_system.h"
#include "platform/instance_lock.h"
#include "platform/known_device_file.h"
#include "platform/places.h"
#include "platform/qt/file_wishes.h"
#include "platform/qt/logind_guard.h"
#include "platform/qt/qt_clipboard.h"
#include "platform/qt/qt_dialogs.h"
#include "platform/qt/qt_events.h"
#include "platform/qt/qt_printer.h"
#include "platform/qt/qt_regional.h"
#include "platform/qt/qt_screens.h"
#include "platform/qt/qt_serial_port.h"
#include "platform/qt/qt_shell.h"
#include "platform/qt/qt_signals.h"
#include "platform/qt/toolkit_texts.h"
#include "platform/system_clock.h"
#include "state/recording_on.h"
#include "state/user_language.h"
#include "widgets/legible_colours.h"

namespace tavrel {
namespace {

// All objects of the program, joined. One instance lives as long as the process.
class Program {
 public:
  // `file` is a recording to look at, its path from the root; may be empty.
  explicit Program(std::string file) : wished_file_(std::move(file)) {
    show_file_.callOnTimeout([this] { ShowWishedFile(); });
    QObject::connect(&wishes_, &FileWishes::Wished, [this](const std::string& path) {
      wished_file_ = path;
      show_file_.start(kTickMilliseconds);
    });
    events_.BeforeRepaint([this] {
      if (form_ != nullptr) {
        form_->UpdateWidgets();
      }
    });
    events_.WatchEnd([this] { return is_ending_ || signals_.HasRequest(); });
    QObject::connect(&signals_, &QtSignals::EndRequested, [this] { End(); });
    end_again_.setSingleShot(true);
    end_again_.callOnTimeout([this] { End(); });
    QObject::connect(qApp, &QGuiApplication::commitDataRequest, [this] { EndSession(); });
    logic_.cycle.SetHandlers(forms_.Handlers());
    sleep_watch_.callOnTimeout([this] { sleep_guard_.StayAwake(IsAnyRecordingOn(logic_.state)); });
    const auto language = [this] { return UserLanguage(logic_.state); };
    port_.SpeakIn(language);
    dialogs_.SpeakIn(language);
    qt_printer_.SpeakIn(language);
    qt_printer_.RememberPaper([this] { return LastPaper(); },
                              [this](QSize sheet) {
                                logic_.form_sizes.Keep(kPaper, {sheet.width(), sheet.height()});
                              });
    port_.RememberIn([this] {
      const std::string& home = logic_.state.DataHome;
      return home.empty() ? "" : JoinPath(home, kKnownDeviceFile);
    });
  }

  ~Program() {
    if (form_ != nullptr && form_->HasUsersSize()) {
      logic_.form_sizes.Keep(kMainForm, {form_->width(), form_->height()});
    }
  }
  Program(const Program&) = delete;
  Program& operator=(const Program&) = delete;

  // Shows the splash form; the main form follows when it is left. False: the process ends.
  bool Start() {
    const auto take_lock = [this](const std::string& path) { return TakeLock(path); };
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
    splash_->UpdateWidgets(*splash_values);
    return true;
  }

 private:
  LockTaking TakeLock(const std::string& path) {
    lock_ = std::make_unique<InstanceLock>(path);
    const bool is_taken = lock_->Take();
    LockTaking taking(is_taken, lock_->Problem());
    if (is_taken) {
      wishes_.Listen(path);
    } else if (taking.Problem.empty() && !wished_file_.empty()) {
      taking.IsHandedOver = FileWishes::Send(path, wished_file_);
    }
    return taking;
  }

  // As soon as no form, box or menu is open that the user works in; of several files the last one.
  void ShowWishedFile() {
    const bool is_in_the_way = QApplication::activeModalWidget() != nullptr ||
                               QApplication::activePopupWidget() != nullptr ||
                               !logic_.sheet.MayShowFile();
    if (form_ == nullptr || is_ending_ || is_in_the_way) {
      return;
    }
    show_file_.stop();
    form_->raise();
    form_->activateWindow();
    logic_.sheet.ShowFile(std::exchange(wished_file_, {}));
    form_->UpdateWidgets();
  }

  void ShowMainForm() {
    has_settings_ = true;
    events_.SetPointer(Pointer::kHourglass);
    const int top = splash_->y();
    // From here on only the main form ends the program: a box may be the only window for a while.
    QApplication::setQuitOnLastWindowClosed(false);
    splash_->hide();
    splash_.release()->deleteLater();
    if (!logic_.LoadMainForm()) {
      QCoreApplication::quit();
      return;
    }
    form_ = std::make_unique<Tavrel>(
        Tavrel::Parts{logic_.sheet, logic_.commands, logic_.cycle, logic_.start_up},
        ExpectedRows());
    if (const auto size = logic_.form_sizes.Of(kMainForm)) {
      form_->resize(size->Width, size->Height);
    }
    form_->PlaceAt(top);
    form_->show();
    sleep_watch_.start(kSleepWatch);
    if (!wished_file_.empty()) {
      show_file_.start(kTickMilliseconds);
    }
  }

  // A signal from outside ends the program as its close box does, later if a rule has to finish
  // something on an instrument first. Before the settings are loaded there is nothing to shut down.
  // All boxes and forms are left at once: a box that would have to agree could refuse.
  void End() {
    is_ending_ = true;
    if (has_settings_) {
      logic_.commands.Close();
      if (!logic_.commands.HasEnded()) {
        end_again_.start(kTickMilliseconds);
        return;
      }
    }
    if (form_ != nullptr) {
      form_->close();
    }
    QCoreApplication::exit(0);
  }

  // The end of the session quits the program afterwards.
  void EndSession() {
    is_ending_ = true;
    logic_.commands.Close();
    if (!logic_.commands.HasEnded()) {
      End();
    }
  }

  static constexpr const char* kMainForm = "Tavrel";
  static constexpr const char* kPaper = "Paper";  // the sheet that was printed last, as it lies

  [[nodiscard]] std::optional<QSize> LastPaper() {
    const auto sheet = logic_.form_sizes.Of(kPaper);
    return sheet ? std::optional(QSize(sheet->Width, sheet->Height)) : std::nullopt;
  }

  static constexpr std::chrono::seconds kSleepWatch{5};

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
  QtSerialPort port_{PortLinkDirectory()};
  QtPrinter qt_printer_{events_};
  CupsQueues queues_;
  CheckedPrinter printer_{qt_printer_, queues_};
  QtClipboard clipboard_;
  QtRegional regional_;
  ProgramLogic logic_{{port_, clock_, dialogs_, screens_, events_, shell_, printer_, clipboard_,
                       regional_, [this] { return MountedPlacesIn(UserLanguage(logic_.state)); }}};
  ToolkitTexts toolkit_texts_{[this] { return UserLanguage(logic_.state); }};
  std::unique_ptr<InstanceLock> lock_;
  std::unique_ptr<AllLoad> splash_;
  std::unique_ptr<Tavrel> form_;
  ProgramScreens forms_{logic_, screens_, events_};  // their parent is form_: they go before it
  LogindGuard sleep_guard_;
  QTimer sleep_watch_;
  QTimer end_again_;  // until no rule is at work on an instrument
  FileWishes wishes_;
  std::string wished_file_;    // a recording to show, when nothing is in the way
  QTimer show_file_;           // while there is one
  bool has_settings_ = false;  // the start is past its splash
  bool is_ending_ = false;     // somebody outside wants the end
};

constexpr const char* kUsage =
    "usage: tavrel [--help | --version | FILE]\n"
    "\n"
    "Records, controls and evaluates furnaces and autoclaves. Port, directories and language\n"
    "are chosen in the program's settings. FILE is a recording to look at; it is shown in the\n"
    "program that runs already, if there is one.\n";
constexpr int kWrongUsage = 2;

// What is asked for on the command line needs no display. Empty: the program is to start; the
// options of the toolkit, which begin with a single "-", are its own.
std::optional<int> AnswerCommandLine(int count, char** arguments) {
  for (int place = 1; place < count; ++place) {
    const std::string_view argument(arguments[place]);
    if (argument == "--version") {
      return std::printf("tavrel %s\n", kVersion) > 0 ? 0 : 1;
    }
    if (argument == "--help") {
      return std::fputs(kUsage, stdout) >= 0 ? 0 : 1;
    }
    if (argument.starts_with("--")) {
      static_cast<void>(
          std::fprintf(stderr, "tavrel: unknown option %s\n%s", arguments[place], kUsage));
      return kWrongUsage;
    }
  }
  return std::nullopt;
}

// The path from the root of the one file that may be named, of what the toolkit has left of the
// command line; empty if there is none. Nothing: this is no use of the program.
std::optional<std::string> FileToShow(int count, char** arguments) {
  if (count > 2 || (count == 2 && arguments[1][0] == '-')) {
    static_cast<void>(std::fprintf(stderr, "tavrel: one FILE at most\n%s", kUsage));
    return std::nullopt;
  }
  std::error_code error;
  return count < 2 ? std::string() : std::filesystem::absolute(arguments[1], error).string();
}

}  // namespace
}  // namespace tavrel

int main(int count, char** arguments) {
  if (const auto status = tavrel::AnswerCommandLine(count, arguments)) {
    return *status;
  }
  QApplication application(count, arguments);
  QApplication::setApplicationName(QStringLiteral("TAVREL"));
  const tavrel::LegibleColours colours;
  QApplication::setApplicationVersion(QLatin1String(tavrel::kVersion));
  const auto file = tavrel::FileToShow(count, arguments);
  if (!file) {
    return tavrel::kWrongUsage;
  }
  tavrel::Program program(*file);
  // The start has boxes of its own. A signal ends the program beneath them only if its loop of
  // events runs already, and none of them is the last window.
  QApplication::setQuitOnLastWindowClosed(false);
  QTimer start;
  start.setSingleShot(true);
  start.callOnTimeout([&program] {
    if (program.Start()) {
      QApplication::setQuitOnLastWindowClosed(true);
    } else {
      QCoreApplication::quit();
    }
  });
  start.start(0);
  return QApplication::exec();
}
