// The main job of the program in one go, for a sweep over failing calls: two recordings are read
// from instruments in the same process, one of them goes on in a next file, a header and the
// settings are written, the program ends and is started again. All logic and files are real; the
// line and the clock are made, so that every run makes the same calls in the same order.
//
//   sweep_job prepare HOME          an installation with two recordings that run
//   sweep_job run HOME TRUTH TOLD   the job; the instruments' truth and what the user was told
//
// The last start is for the comparison: no call fails any more, and what waits in the instruments
// is read out.

#include <dlfcn.h>

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <memory>
#include <string>

#include "app/program_logic.h"
#include "dialogs/help.h"
#include "instrument/instrument_line.h"
#include "tests/support/fake_clock.h"
#include "tests/support/fake_output.h"
#include "tests/support/fake_port.h"
#include "tests/support/fake_screen.h"
#include "tests/support/instruments_here.h"
#include "tests/sweep/sweep_bench.h"

namespace tavrel {
namespace {

using std::chrono::milliseconds;
using std::chrono::seconds;

// Instruments on the clock of the program, at the far end of its port.
class SweptLine {
 public:
  SweptLine(FakeClock& clock, FakePort& port, const std::string& truth)
      : instruments_(clock, port, instrument::LineMode::kDirect) {
    static_cast<void>(instruments_.Truth().Open(truth));
    instrument::InstrumentSettings settings;
    settings.fast = true;
    instruments_.Line().Add(settings);
    instrument::Instrument& first = *instruments_.Line().Find(1);
    for (int oven = 1; oven <= 4; ++oven) {
      first.StartOven({oven, instrument::OvenStart::Kind::kRamp, 450, 1.0 / kSweepInterval, true});
    }
    for (const int input : {1, 5, 2, 6, 9}) {
      static_cast<void>(first.StartSampling(input, kSweepInterval));
    }
    static_cast<void>(first.Fill(kSweepBacklog));
  }

 private:
  InstrumentsHere instruments_;
};

// Boxes that answer at once: the user tries again a few times, and leaves then.
class PatientDialogs : public FakeDialogs {
 public:
  [[nodiscard]] bool AskRetry(const Notice& notice) override {
    boxes.push_back(notice);
    return ++retries_ < 5;
  }
  [[nodiscard]] bool AskRetryOrExit(const Notice& notice) override { return AskRetry(notice); }

 private:
  int retries_ = 0;
};

class NoShell : public Shell {
 public:
  void OpenDocument(const std::string&, std::function<void()>) override {}
};

class Job {
 public:
  Job(std::string home, const std::string& truth, std::string told)
      : home_(std::move(home)), told_(std::move(told)), line_(clock_, port_, truth) {
    events_.on_rest = [this](milliseconds time) { clock_.Advance(time); };
  }

  void Run() {
    Start();
    Pass(seconds(25));
    if (logic_ != nullptr && IsUp()) {
      ChangeHeaderAndSettings();
      Pass(seconds(35));
    }
    End();
    Start();
    Pass(seconds(25));
    End();
    if (auto* ends = reinterpret_cast<void (*)()>(dlsym(RTLD_DEFAULT, "SweepEnds"))) {
      ends();
    }
    Start();
    Pass(seconds(60));
    End();
  }

 private:
  void Start() {
    logic_ = std::make_unique<ProgramLogic>(Machine{port_, clock_, dialogs_, screens_, events_,
                                                    shell_, printer_, clipboard_, regional_});
    const bool is_up = logic_->start_up.SplashLoad(home_, [](const std::string&) { return true; });
    is_up_ = is_up && logic_->start_up.SplashShow() && logic_->start_up.MainFormLoad();
    if (is_up_) {
      logic_->start_up.MainFormShow();
    }
    Tell(is_up_ ? "start" : "no start");
  }

  [[nodiscard]] bool IsUp() const { return is_up_ && !logic_->commands.HasEnded(); }

  void Pass(seconds time) {
    for (const auto end = clock_.Elapsed() + time; IsUp() && clock_.Elapsed() < end;
         clock_.Advance(milliseconds(kTickMilliseconds))) {
      logic_->cycle.Tick();
      for (int slot = 1; slot <= kSlots; ++slot) {
        sees_trouble_ = sees_trouble_ || logic_->state.WriteFailed[slot];
      }
    }
  }

  void ChangeHeaderAndSettings() {
    RunState& state = logic_->state;
    state.Unit[2].UnitInputName[1].Set("changed");
    state.SlotDirty[2] = true;
    logic_->files.WriteHeader(2);
    state.Settings.Lab = "changed";
    const std::string error = logic_->settings.SettingsSave();
    if (!error.empty()) {
      Tell("settings: " + error);
    }
    logic_->engine.FlushFiles();
  }

  void End() {
    for (int tries = 0; IsUp() && tries < 1000; ++tries) {
      logic_->commands.Close();
      clock_.Advance(milliseconds(kTickMilliseconds));
    }
    logic_.reset();
    Tell("end");
  }

  // What came up to now, then a row for the stage.
  void Tell(const std::string& stage) {
    std::ofstream file(told_, std::ios::app);
    for (const FakeDialogs::Question& question : dialogs_.asked_beside) {
      dialogs_.announced.push_back(question.notice);
    }
    dialogs_.asked_beside.clear();
    for (auto* notices : {&dialogs_.boxes, &dialogs_.announced}) {
      for (const Notice& notice : *notices) {
        file << notice.Title << "\\n" << notice.Text << '\n';
      }
      notices->clear();
    }
    file << (std::exchange(sees_trouble_, false) ? "[row shows trouble]\n" : "") << '[' << stage
         << "]\n";
  }

  std::string home_;
  std::string told_;
  FakeClock clock_;
  FakePort port_{clock_};
  PatientDialogs dialogs_;
  FakeScreens screens_;
  FakeEvents events_;
  NoShell shell_;
  FakePrinter printer_;
  FakeClipboard clipboard_;
  FakeRegional regional_;
  SweptLine line_;
  std::unique_ptr<ProgramLogic> logic_;
  bool is_up_ = false;
  bool sees_trouble_ = false;
};

UnitRecord HeaderOf(const SweptSlot& slot) {
  UnitRecord unit = DefaultUnitRecord();
  unit.UnitInet = 1;
  unit.UnitCtrl = static_cast<std::int16_t>(slot.inputs.front());
  unit.UnitRef = static_cast<std::int16_t>(slot.inputs.back());
  unit.UnitInterval = kSweepInterval;
  unit.UnitFast = 1;
  unit.UnitRecOn = 1;
  unit.UnitMaxMinutes = slot.goes_on ? 1 : 0;
  unit.UnitEndAction = slot.goes_on ? 2 : 0;
  unit.UnitRole = {};
  std::int16_t role = 0;
  for (const int input : slot.inputs) {
    unit.UnitRole[input] = ++role;
  }
  unit.UnitChannels = role;
  unit.UnitDesignation.Set(slot.ext + ":oven");
  return unit;
}

int Prepare(const std::string& home) {
  std::filesystem::create_directories(home + "/tavdat");
  std::ofstream(home + "/" + kGermanManual) << "manual";
  FakeClock clock;
  FakeDialogs dialogs;
  RunState state;
  state.AppPath = home + "/";
  state.DataHome = state.AppPath;
  Messages messages(dialogs);
  SettingsStore settings(state);
  RecordingFiles files(state, clock, messages);
  settings.SettingsDefaults();
  state.Settings.TypeSel = 4;
  state.Settings.CommPort = "COM1";
  int number = 0;
  for (const SweptSlot& slot : SweptSlots()) {
    ++number;
    state.Unit[number] = HeaderOf(slot);
    state.SlotPath[number] = home + "/tavdat";
    state.SlotFile[number] = slot.first_file;
    files.WriteHeader(number);
    files.CloseRecordingFile(number);
    state.Settings.ActiveFiles[static_cast<std::size_t>(number - 1)] = slot.first_file;
  }
  return settings.SettingsSave().empty() && dialogs.boxes.empty() ? 0 : 1;
}

}  // namespace
}  // namespace tavrel

int main(int count, char** values) {
  const std::string what = count > 2 ? values[1] : "";
  if (what == "prepare") {
    return tavrel::Prepare(values[2]);
  }
  if (what != "run" || count != 5) {
    std::fputs("usage: sweep_job prepare HOME | run HOME TRUTH TOLD\n", stderr);
    return 2;
  }
  tavrel::Job(values[2], values[3], values[4]).Run();
  return 0;
}
