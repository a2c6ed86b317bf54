#ifndef TAVREL_SERVICE_OUTPUT_TEST_H_
#define TAVREL_SERVICE_OUTPUT_TEST_H_

#include <array>
#include <chrono>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "base/numbered.h"
#include "service/output_records.h"
#include "service/service_screen.h"
#include "state/unfinished_work.h"

namespace tavrel {

inline constexpr int kOutputOptions = 3;

// What the outputs of a controller are switched to.
enum class OutputOption : int {
  kOff = 0,
  kHeater = 1,  // full power, the safety contact open
  kSafety = 2,  // the contact closed, no power
};

inline constexpr Numbered<const char*, 0, kOutputOptions - 1> kOutputOptionNames = {"off", "Heater",
                                                                                    "Safety"};

// A lamp of the form. Nothing is lit before the outputs are known.
enum class OutputLamp { kUnknown, kOff, kOn };

// SP_TavHS: switches the outputs of an instrument's four controllers by hand. It notes their
// status, overrides it and gives it back on leaving.
//
// An oven is heated where its controller has power and its safety contact is closed at the same
// time. No option does that, and no change of one does, wherever between two writes the line dies:
// the contact is opened, and that acknowledged, before power is written.
//
// The program does not end before the outputs are off and the controllers have their status again,
// unless the instrument does not answer for three seconds. What was not finished is in the file of
// the records then.
class OutputTest : public ServiceScreen {
 public:
  // `records` outlives the screen.
  OutputTest(const ServiceParts& parts, OutputRecords& records)
      : ServiceScreen(parts, View::kSpTavHs), records_(records) {}

  // Stays closed, and says why, where no instrument can be reached, or what an earlier test has
  // left on the instrument is still to be switched off.
  void Open() override;

  [[nodiscard]] std::string Caption() const override { return " Test of Outputs"; }

  // "Tavrel-3".
  [[nodiscard]] std::string Instrument() const { return InstrumentName().substr(1); }

  // What the user has chosen for controller 1..4. While the screen closes nothing is taken any
  // more.
  void Opt_Click(int controller, OutputOption option);
  [[nodiscard]] OutputOption Chosen(int controller) const;

  // "LedOn" and "LedOff" of both outputs as one.
  [[nodiscard]] OutputLamp HeaterLamp(int controller) const;
  [[nodiscard]] OutputLamp SafetyLamp(int controller) const;

  // "Please wait ...": the closing steps run.
  [[nodiscard]] bool lbWait() const { return OutStep > kClosing && IsOpen(); }

  // Escape and the close box: the closing steps run, then the screen closes. At once if there is
  // no line to run them on.
  void Quit() override;
  void CloseNow() override;

 protected:
  void TakeStep() override;
  void StepWithoutPort() override;

 private:
  using Time = std::chrono::nanoseconds;

  static constexpr int kFirstStatus = 1;
  static constexpr int kFirstTestPower = 5;
  static constexpr int kFirstPower = 9;
  static constexpr int kFirstTake = 13;
  static constexpr int kFirstLook = 20;  // each controller has ten steps
  static constexpr int kStepsOfLook = 10;
  static constexpr int kClosing = 100;
  static constexpr int kFirstPowerOff = 101;
  static constexpr int kFirstGiveBack = 109;
  static constexpr int kLast = 113;
  static constexpr int kStopped = 65535;

  struct RegisterWrite {
    const char* letter;
    std::int16_t word;
  };
  static constexpr int kWritesOfOption = 3;
  using WritesOfOption = Numbered<RegisterWrite, 0, kWritesOfOption - 1>;
  struct Channel {
    OutputOption chosen = OutputOption::kOff;  // on the form
    OutputOption wanted = OutputOption::kOff;  // what is being written
    std::optional<OutputOption> have;          // in force; empty: not known
    std::optional<OutputOption> shown;         // what the lamps say
    std::int16_t found = 0;                    // its status before the test
    bool has_ended = false;                    // an end action wants it off: so it is given back
    bool is_taken = false;                     // a write of Z was tried: it has to be given back
    int refusals = 0;                          // of the status that is given back
    std::uint32_t orders = 0;                  // StopOrders::Count that was seen last
  };

  [[nodiscard]] static WritesOfOption WritesFor(const Channel& channel);
  [[nodiscard]] static std::int16_t StatusToGiveBack(const Channel& channel);

  void StepEntry();
  void ReadStatus(int ctrl);
  [[nodiscard]] bool KeepRecord();
  void Take(int ctrl);
  void StepLook();
  void WriteOption(int ctrl, int place);
  void GoOnBehind(int ctrl, int place);
  void StepClosing();
  void SwitchPowerOff(int place);
  void GiveBack(int ctrl);
  [[nodiscard]] int StepToGiveBack(int after) const;
  void ContinueIfGood(LinkResult result);
  [[nodiscard]] LinkResult WriteTo(const char* letter, int ctrl, std::int16_t word);
  void NoteResult(LinkResult result);
  void NoteOrders();
  [[nodiscard]] std::vector<OutputRecord> Records() const;
  [[nodiscard]] std::vector<OutputRecord> Unfinished() const;
  void GiveUp();
  void Leave();
  void Hold(bool holds);
  [[nodiscard]] OutputLamp LampOf(int controller, OutputOption option) const;

  OutputRecords& records_;
  int OutStep = kStopped;
  ByController<Channel> channels_{};
  Time out_deadline_{};
  std::optional<UnfinishedWork> unfinished_;
};

}  // namespace tavrel

#endif  // TAVREL_SERVICE_OUTPUT_TEST_H_
