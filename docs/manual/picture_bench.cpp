#include "docs/manual/picture_bench.h"

#include <QApplication>
#include <QTimer>
#include <cstring>
#include <filesystem>

#include "dialogs/help.h"
#include "files/recording_format.h"
#include "main/forms/all_load.h"
#include "state/settings_keys.h"
#include "tests/support/wait_until.h"
#include "work/program.h"

namespace tavrel {
namespace {

using std::chrono::milliseconds;
using std::chrono::seconds;

constexpr int kInterval = 10;          // seconds between two sets of all recordings
constexpr seconds kRecordedFor{3000};  // before the program starts
constexpr seconds kReadingUp{300};     // of the cycle, until all of that is in the files

instrument::InstrumentSettings SettingsOf(int inet) {
  instrument::InstrumentSettings settings;
  settings.inet = inet;
  return settings;
}

}  // namespace

PictureLine::PictureLine(FakeClock& clock, FakePort& port)
    : instruments_(clock, port, instrument::LineMode::kPlugin) {
  using Kind = instrument::OvenStart::Kind;
  instrument::InstrumentLine& line = instruments_.Line();
  for (const int inet : {1, 2}) {
    line.Add(SettingsOf(inet));
    static_cast<void>(line.Find(inet)->StartSampling({}, kInterval));
  }
  line.Find(1)->StartOven({1, Kind::kRamp, 220, 0.12, false});
  line.Find(1)->StartOven({2, Kind::kHold, 220, 0, false});
  line.Find(2)->StartOven({1, Kind::kHold, 180, 0, true});
}

void PictureLine::Pass(seconds time) {
  for (const int inet : {1, 2}) {
    instruments_.Line().Find(inet)->Pass(time);
  }
}

PictureBench::PictureBench(const LabWords& words)
    : words_(words),
      home_(directory_.File("home/maria/tavrel-lab/")),
      logic_({port_, clock_, dialogs_, screens_, events_, shell_, printer_, clipboard_, regional_,
              [this] {
                return std::vector<Place>{{"home  (maria)", directory_.File("home/maria")},
                                          {"computer  (/)", "/"}};
              }}),
      forms_(logic_, screens_, pointers_) {
  regional_.date.clear();
  regional_.form = words.date_form;
  clock_.wall = {2026, 3, 14, 10, 4, 0};
  events_.on_rest = [this](milliseconds time) { clock_.Advance(time); };
  events_.on_pump = [] { QCoreApplication::processEvents(); };
  logic_.cycle.SetHandlers(forms_.Handlers());
  std::filesystem::create_directories(home_ + "tavdat");
  std::filesystem::create_directories(home_ + "archive");
  directory_.Write("home/maria/tavrel-lab/" + std::string(kGermanManual), "manual");
  MakeSettings();
  MakeOldRecordings();
  MakeProgramFile();
}

void PictureBench::MakeSettings() {
  SettingsValues settings;
  settings.HelpLang = words_.language;
  settings.Plant = words_.plant;
  settings.Lab = words_.user;
  settings.CommPort = "COM5";
  settings.ComMode = 1;  // the plug-in line, on which numbers can be given
  settings.DefPath = home_ + "tavdat";
  settings.OpenPath = settings.DefPath;
  settings.DestPath = home_ + "archive";
  settings.ProgPath = home_;
  settings.PFontName = "DejaVu Sans";
  settings.PFontSize = 11;
  settings.PDrawWidth = 2;
  settings.SortKey = "FD";
  settings.TypeSel = 4;
  const std::vector<Test> tests = {
      {1, 1, 1, 5, {1, 5, 9, 13}, true, "TUB", words_.tube_oven},
      {2, 1, 2, 6, {2, 6, 10}, true, "CHA", words_.chamber_oven},
      {3, 2, 1, 5, {1, 5}, true, "AUT", words_.autoclave},
      {4, 2, 4, 8, {4, 8}, false, "MIC", words_.small_oven},
  };
  for (const Test& test : tests) {
    MakeRecording(test);
    settings.ActiveFiles.at(static_cast<std::size_t>(test.slot - 1)) =
        std::string("M260314A.") + test.ext;
  }
  directory_.Write("home/maria/tavrel-lab/TAVREL.USR", KeyFileBytes(settings));
}

void PictureBench::MakeRecording(const Test& test) {
  UnitRecord unit = DefaultUnitRecord();
  unit.UnitInet = static_cast<std::int16_t>(test.inet);
  unit.UnitCtrl = static_cast<std::int16_t>(test.ctrl);
  unit.UnitRef = static_cast<std::int16_t>(test.ref);
  unit.UnitChannels = static_cast<std::int16_t>(test.inputs.size());
  unit.UnitInterval = kInterval / 10;
  unit.UnitRecOn = test.is_on ? 1 : 0;
  unit.UnitRole.Fill(0);
  unit.UnitColour.Fill(0);
  unit.UnitInputName = {};
  std::int16_t colour = 1;
  for (const int input : test.inputs) {
    const bool is_ctrl = input == test.ctrl;
    const bool is_ref = input == test.ref;
    unit.UnitRole[input] = is_ctrl ? 1 : is_ref ? 2 : 3;
    unit.UnitColour[input] = ++colour;
    unit.UnitInputName[input].Set(is_ctrl  ? words_.controller
                                  : is_ref ? words_.reference
                                           : words_.sample);
  }
  unit.UnitInputNote[test.ref].Set(words_.note);
  unit.UnitDesignation.Set(std::string(test.ext) + ":" + test.name);
  unit.UnitDate.Set("03-14-2026 / 09:14");
  std::string bytes(sizeof unit, '\0');
  std::memcpy(bytes.data(), &unit, sizeof unit);
  directory_.Write(std::string("home/maria/tavrel-lab/tavdat/M260314A.") + test.ext, bytes);
}

// Recordings of other days, for the list of files.
void PictureBench::MakeOldRecordings() {
  const std::string bytes = directory_.Read("home/maria/tavrel-lab/tavdat/M260314A.CHA");
  const std::string tube = directory_.Read("home/maria/tavrel-lab/tavdat/M260314A.TUB");
  const std::string samples(std::size_t{3} * 2 * 400, '\1');
  for (const char* name : {"M260312A.CHA", "M260311B.CHA", "M260227A.CHA", "S260311B.CHA"}) {
    directory_.Write(std::string("home/maria/tavrel-lab/tavdat/") + name, bytes + samples);
  }
  for (const char* name : {"M260313A.TUB", "M260310A.TUB"}) {
    directory_.Write(std::string("home/maria/tavrel-lab/tavdat/") + name, tube + samples);
  }
}

// Heating to 220 degrees, holding, a ramp to 300, holding, off.
void PictureBench::MakeProgramFile() const {
  const std::vector<std::vector<std::int16_t>> records = {{0, 0, 0, 0},       {3, 5, 4400, 70},
                                                          {2, -1, 4400, 120}, {3, 2, 6000, 60},
                                                          {2, -1, 6000, 240}, {0, -1, 400, 1}};
  std::string bytes;
  for (const auto& record : records) {
    for (const std::int16_t word : record) {
      bytes.append(reinterpret_cast<const char*>(&word), sizeof word);
    }
  }
  directory_.Write("home/maria/tavrel-lab/ANNEAL.PRG", bytes);
}

std::optional<SplashValues> PictureBench::Load() {
  line_.Pass(kRecordedFor);
  const auto take_lock = [](const std::string&) { return LockTaking(true); };
  return logic_.start_up.SplashLoad(home_, take_lock) ? logic_.start_up.SplashShow() : std::nullopt;
}

bool PictureBench::Start() {
  if (!logic_.start_up.MainFormLoad()) {
    return false;
  }
  main_form_ = std::make_unique<Tavrel>(
      Tavrel::Parts{logic_.sheet, logic_.commands, logic_.cycle, logic_.start_up}, 4);
  main_form_->show();
  if (!WaitUntil([this] { return logic_.cycle.IsEnabled(); })) {
    return false;
  }
  Pass(kReadingUp);
  return true;
}

void PictureBench::Pass(seconds time) {
  for (const auto end = clock_.Elapsed() + time; clock_.Elapsed() < end;
       clock_.Advance(milliseconds(kTickMilliseconds))) {
    logic_.cycle.Tick();
    static_cast<void>(events_.RunIdle());
  }
  main_form_->UpdateWidgets();
  QCoreApplication::processEvents();
}

bool PictureBench::Inside(const char* form, View view,
                          const std::function<void(QWidget& form)>& action) {
  return Inside(
      form, [this, view] { screens_.Show(view); }, action);
}

bool PictureBench::Inside(const char* form, const std::function<void()>& open,
                          const std::function<void(QWidget& form)>& action) {
  bool has_come = false;
  QTimer look;
  look.callOnTimeout([&] {
    QWidget* front = QApplication::activeModalWidget();
    if (has_come || front == nullptr || front->objectName() != form) {
      return;
    }
    has_come = true;
    // Not inside this timer's own event: an action may open a form that waits for the next one.
    QTimer::singleShot(0, front, [this, front, &action] {
      action(*front);
      Leave(*front);
    });
  });
  look.start(1);
  open();
  return has_come;
}

// A form that has something to finish on the instrument is given its turns.
void PictureBench::Leave(QWidget& form) {
  constexpr int kTurns = 60;
  for (int turn = 0; turn < kTurns && form.isVisible(); ++turn) {
    QMetaObject::invokeMethod(&form, "reject");
    Pass(seconds(1));
  }
}

}  // namespace tavrel
