#ifndef TAVREL_MAIN_MAIN_CYCLE_H_
#define TAVREL_MAIN_MAIN_CYCLE_H_

#include <chrono>
#include <functional>
#include <optional>

#include "files/recording_engine.h"
#include "link/link.h"
#include "main/attachment.h"
#include "main/main_sheet.h"
#include "main/simulation_question.h"
#include "platform/clock.h"
#include "platform/events.h"
#include "state/messages.h"
#include "state/run_state.h"
#include "state/stepped_screen.h"

namespace tavrel {

inline constexpr int kTickMilliseconds = 50;

// All traffic that the system starts by itself. Each tick decides who may use the line in it:
// the screen in front first, the sample pump and the work of the minute on what that leaves.
// While recordings are in danger the pump also runs between the ticks, one exchange after the
// other, and after each of them the user's events are served.
class MainCycle {
 public:
  struct Parts {  // all outlive the cycle
    RunState& state;
    Link& link;
    RecordingEngine& engine;
    MainSheet& sheet;
    Attachment& attachment;
    SimulationQuestion& simulation;
    Messages& messages;
    Events& events;
    const SteppedScreens& stepped;
    const Clock& clock;
  };

  // What other screens and the controller programs do on a tick. A part that the program does
  // not have stays empty.
  struct TickHandlers {
    std::function<void()> refresh_worksheet;
    std::function<void()> advance_wait_bar;
    std::function<void(int slot)> step_program;  // once a minute, slots 1..12 in that order, one
                                                 // that uses the line in a tick
    std::function<bool()> read_back{};           // on a free tick; true: it has used the line
  };

  explicit MainCycle(const Parts& parts) : parts_(parts) {}

  void SetHandlers(TickHandlers handlers) { handlers_ = std::move(handlers); }

  // Timer_Main. A tick that comes while one runs, or while the cycle is stopped, is dropped.
  void Tick();

  void Start() { enabled_ = true; }
  void Stop() { enabled_ = false; }
  [[nodiscard]] bool IsEnabled() const { return enabled_; }

  // The cycle stands still for a form that has the line to itself, and goes on afterwards if it
  // ran before.
  class Pause {
   public:
    explicit Pause(MainCycle& cycle) : cycle_(cycle), was_enabled_(cycle.enabled_) {
      cycle_.enabled_ = false;
    }
    ~Pause() { cycle_.enabled_ = was_enabled_; }
    Pause(const Pause&) = delete;
    Pause& operator=(const Pause&) = delete;

   private:
    MainCycle& cycle_;
    bool was_enabled_;
  };

 private:
  struct Moment {
    double timer = 0;  // seconds since midnight
    std::chrono::nanoseconds elapsed{};
  };

  [[nodiscard]] float Timer() const { return static_cast<float>(parts_.clock.Timer()); }

  void RunTick();
  void PumpBetweenTicks();
  void GoOnIfPressed();
  [[nodiscard]] bool StandsAtMidnight();
  void ArmAfterMidnight(float midnights, bool was_away);
  void ArmAll();
  [[nodiscard]] bool ServeScreen();
  void StepNumbering();
  void StepServiceScreen();
  void StepScreenInFront();
  void DoFreeWork();
  void BeginMinute();
  void TellCatchUp();
  void StepPrograms();
  void ServeAtMidnight();

  Parts parts_;
  TickHandlers handlers_;
  bool enabled_ = false;
  bool in_tick_ = false;
  int next_program_ = kSlots + 1;    // slot whose program is stepped next; none is beyond the slots
  bool is_catching_up_ = false;      // more than one minute of the programs was due
  std::optional<Moment> last_tick_;  // the last one that did not stand still, else the first one
};

}  // namespace tavrel

#endif  // TAVREL_MAIN_MAIN_CYCLE_H_
