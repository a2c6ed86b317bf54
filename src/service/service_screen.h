#ifndef TAVREL_SERVICE_SERVICE_SCREEN_H_
#define TAVREL_SERVICE_SERVICE_SCREEN_H_

#include <array>
#include <functional>
#include <string>

#include "base/language.h"
#include "base/tool_tips.h"
#include "files/recording_engine.h"
#include "link/link.h"
#include "platform/clock.h"
#include "platform/dialogs.h"
#include "platform/events.h"
#include "service/buffer_watch.h"
#include "service/link_watch.h"
#include "state/modal_screen.h"
#include "state/run_state.h"

namespace tavrel {

// What the service screens work with. All outlive them.
struct ServiceParts {
  RunState& state;
  Link& link;
  LinkWatch& watch;
  RecordingEngine& engine;
  Dialogs& dialogs;
  Events& events;
  const Clock& clock;
  std::function<bool(int slot)> is_controller_on;  // as far as the sheet knows
  BufferWatch& buffers;
};

// A screen of the service: it works on one instrument, the one that is selected when it opens, and
// makes one step at each turn that the measuring cycle gives it.
class ServiceScreen : public ModalScreen {
 public:
  ServiceScreen(const ServiceParts& parts, View view)
      : ModalScreen(parts.state, view), parts_(parts), number_(view) {}

  // Before the form is shown. The screen may stay closed, if the user says so.
  virtual void Open() = 0;

  // Its number, under which the cycle gives it its turns.
  [[nodiscard]] View Number() const { return number_; }

  // One turn. A screen that is not open does nothing.
  void Step();

  // The title of the form; it says which instrument.
  [[nodiscard]] virtual std::string Caption() const = 0;

  [[nodiscard]] int Inet() const { return inet_; }
  [[nodiscard]] Language TipLanguage() const { return LanguageOf(parts_.state.Settings.HelpLang); }

  // No connection, or no port.
  [[nodiscard]] bool ComIcon() const { return com_icon_ || !parts_.link.PortOpen; }

  // The running light: changes with each turn.
  [[nodiscard]] bool IsLit() const { return parts_.state.Trigger; }

  void CloseNow() override;

 protected:
  // One short step, as SteppedScreens tells, while the port is usable.
  virtual void TakeStep() = 0;

  // In its place while the port is not usable: nothing is sent.
  virtual void StepWithoutPort() {}

  // The instrument that is selected; the first one while none is.
  [[nodiscard]] int SelectedInet() const;

  // ModalScreen's, for that instrument. Without a number it is the selected one; one that has asked
  // its user about an instrument opens for that one, whatever was selected meanwhile.
  void OpenScreen() { OpenScreen(SelectedInet()); }
  void OpenScreen(int inet);

  // " Tavrel-" and the number of an instrument; without a number it is that of the screen.
  [[nodiscard]] std::string InstrumentName() const { return InstrumentName(inet_); }
  [[nodiscard]] static std::string InstrumentName(int inet);

  // Takes the result of an exchange of a step; see LinkWatch. ComIcon follows it.
  bool MissesAnswer(LinkResult result, int set_back = LinkWatch::kMostMisses);

  [[nodiscard]] const ServiceParts& Parts() const { return parts_; }

 private:
  ServiceParts parts_;
  View number_;
  int inet_ = 1;
  bool com_icon_ = false;
};

inline constexpr std::array kServiceTips = {
    ToolTip{"ComIcon", {" no connection ... ", " keine Verbindung "}},
};

}  // namespace tavrel

#endif  // TAVREL_SERVICE_SERVICE_SCREEN_H_
