// Puts settings and recording files into the directory of an installed program:
//
//   prepare_installation DIR KEY=VALUE... SLOT...
//
// KEY is COMMPORT, COMMODE, HELPLANG, PLANT or LAB. SLOT is "slot:" and fields with commas between
// them, such as
//   slot:number=1,name=Tube oven,ext=TUB,inet=1,ctrl=1,ref=5,inputs=1/5/9,interval=1
// with, if wanted, fast=1, rec=0 (default 1: the recording runs), minutes=60 (length limit),
// end=1 or 2 (end action). Files get the date of 14 March 2026 and letters by slot.

#include <cstdio>
#include <cstdlib>
#include <functional>
#include <map>
#include <sstream>
#include <string>
#include <vector>

#include "base/text.h"
#include "files/recording_file.h"
#include "files/recording_format.h"
#include "platform/file_system.h"
#include "platform/system_clock.h"
#include "state/messages.h"
#include "state/run_state.h"
#include "state/settings_store.h"

namespace tavrel {
namespace {

using Fields = std::map<std::string, std::string>;

// Boxes on the console.
class ConsoleDialogs : public Dialogs {
 public:
  void Message(const Notice& notice) override { Announce(notice); }
  [[nodiscard]] bool AskOk(const Notice& notice) override { return Announce(notice), true; }
  [[nodiscard]] bool AskRetry(const Notice& notice) override { return Announce(notice), false; }
  [[nodiscard]] bool AskRetryOrExit(const Notice& notice) override {
    return Announce(notice), false;
  }
  [[nodiscard]] bool AskYes(const Notice& notice) override { return Announce(notice), true; }
  void AskBeside(const Notice& notice, const std::function<void(bool yes)>& answer) override {
    Announce(notice);
    answer(false);
  }
  void Announce(const Notice& notice) override {
    std::fprintf(stderr, "%s: %s\n", notice.Title.c_str(), notice.Text.c_str());
  }
};

std::vector<std::string> Split(const std::string& text, char separator) {
  std::vector<std::string> parts;
  std::istringstream stream(text);
  for (std::string part; std::getline(stream, part, separator);) {
    parts.push_back(part);
  }
  return parts;
}

Fields ReadFields(const std::string& text) {
  Fields fields;
  for (const std::string& field : Split(text, ',')) {
    const std::size_t equals = field.find('=');
    if (equals != std::string::npos) {
      fields[field.substr(0, equals)] = field.substr(equals + 1);
    }
  }
  return fields;
}

std::int16_t Number(const Fields& fields, const std::string& name, int otherwise) {
  const auto found = fields.find(name);
  return static_cast<std::int16_t>(found == fields.end() ? otherwise
                                                         : std::atoi(found->second.c_str()));
}

std::string Text(const Fields& fields, const std::string& name) {
  const auto found = fields.find(name);
  return found == fields.end() ? std::string() : found->second;
}

UnitRecord HeaderOf(const Fields& fields) {
  constexpr std::int16_t kFirstColour = 2;
  UnitRecord unit = DefaultUnitRecord();
  unit.UnitInet = Number(fields, "inet", 1);
  unit.UnitCtrl = Number(fields, "ctrl", 1);
  unit.UnitRef = Number(fields, "ref", 2);
  unit.UnitInterval = Number(fields, "interval", 1);
  unit.UnitFast = Number(fields, "fast", 0);
  unit.UnitRecOn = Number(fields, "rec", 1);
  unit.UnitMaxMinutes = Number(fields, "minutes", 0);
  unit.UnitEndAction = Number(fields, "end", 0);
  unit.UnitRole = {};
  unit.UnitColour = {};
  unit.UnitInputName = {};
  std::int16_t role = 0;
  for (const std::string& text : Split(Text(fields, "inputs"), '/')) {
    const int input = std::atoi(text.c_str());
    if (input < 1 || input > kInputs) {
      continue;
    }
    unit.UnitRole[input] = ++role;
    unit.UnitColour[input] = static_cast<std::int16_t>(kFirstColour + role - 1);
    const bool is_ctrl = input == unit.UnitCtrl;
    const bool is_ref = input == unit.UnitRef;
    unit.UnitInputName[input].Set(is_ctrl ? "controller" : is_ref ? "reference" : "sample");
  }
  unit.UnitChannels = role;
  unit.UnitDesignation.Set(Text(fields, "ext") + ":" + Text(fields, "name"));
  unit.UnitDate.Set(DateText(SystemClock().Now()));
  return unit;
}

class Preparation {
 public:
  explicit Preparation(const std::string& directory) {
    state_.AppPath = AddSeparator(directory);
    state_.DataHome = state_.AppPath;
    settings_.SettingsDefaults();
    state_.Settings.TypeSel = 4;
  }

  void Take(const std::string& key, const std::string& value) {
    SettingsValues& settings = state_.Settings;
    const std::map<std::string, std::string*> texts = {{"COMMPORT", &settings.CommPort},
                                                       {"HELPLANG", &settings.HelpLang},
                                                       {"PLANT", &settings.Plant},
                                                       {"LAB", &settings.Lab}};
    if (const auto found = texts.find(key); found != texts.end()) {
      *found->second = value;
    } else if (key == "COMMODE") {
      settings.ComMode = std::atoi(value.c_str());
    }
  }

  bool MakeSlot(const Fields& fields) {
    const int slot = Number(fields, "number", 1);
    if (!IsSlot(slot)) {
      return false;
    }
    const auto place = static_cast<std::size_t>(slot);
    const char letter = static_cast<char>('A' + slot - 1);
    state_.Unit[place] = HeaderOf(fields);
    state_.SlotPath[place] = DataDirectory(state_);
    state_.SlotFile[place] = "M260314" + std::string(1, letter) + "." + Text(fields, "ext");
    files_.WriteHeader(slot);
    files_.CloseRecordingFile(slot);
    state_.Settings.ActiveFiles[place - 1] = state_.SlotFile[place];
    return !state_.SlotFile[place].empty();
  }

  bool Save() { return settings_.SettingsSave().empty(); }

 private:
  RunState state_;
  SystemClock clock_;
  ConsoleDialogs dialogs_;
  Messages messages_{dialogs_};
  SettingsStore settings_{state_};
  RecordingFiles files_{state_, clock_, messages_};
};

bool Prepare(const std::vector<std::string>& arguments) {
  Preparation preparation(arguments.front());
  for (std::size_t place = 1; place < arguments.size(); ++place) {
    const std::string& argument = arguments[place];
    if (argument.rfind("slot:", 0) == 0) {
      if (!preparation.MakeSlot(ReadFields(argument.substr(5)))) {
        return false;
      }
      continue;
    }
    const std::size_t equals = argument.find('=');
    if (equals == std::string::npos) {
      return false;
    }
    preparation.Take(argument.substr(0, equals), argument.substr(equals + 1));
  }
  return preparation.Save();
}

}  // namespace
}  // namespace tavrel

int main(int count, char** arguments) {
  if (count < 2) {
    std::fputs("usage: prepare_installation DIR KEY=VALUE... SLOT...\n", stderr);
    return 2;
  }
  return tavrel::Prepare({arguments + 1, arguments + count}) ? 0 : 1;
}
