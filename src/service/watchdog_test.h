#ifndef TAVREL_SERVICE_WATCHDOG_TEST_H_
#define TAVREL_SERVICE_WATCHDOG_TEST_H_

#include <array>
#include <chrono>
#include <string>

#include "service/firmware_test.h"

namespace tavrel {

// What the form shows.
struct WatchdogTestValues {
  std::string Lbl_delay = "?";  // the period in milliseconds
  bool Lbl_error = false;       // it is out of its limits
  bool Cmd_again = false;       // enabled: a measurement has ended
};

// All_Wdog: the firmware measures the period of its watchdog, once and then on demand.
class WatchdogTest : public FirmwareTest {
 public:
  // Both limits are good.
  static constexpr int kShortest = 1000;  // milliseconds
  static constexpr int kTypical = 1600;
  static constexpr int kLongest = 2250;

  explicit WatchdogTest(const ServiceParts& parts)
      : FirmwareTest(parts, View::kAllWdog, "test  of  watchdog") {}

  [[nodiscard]] std::string Caption() const override {
    return InstrumentName() + "  /  Test  of  Watchdog";
  }
  [[nodiscard]] const WatchdogTestValues& Values() const { return values_; }

  // Measures again. No effect while a measurement runs.
  void Cmd_again_Click();

  // The firmware ends a measurement that runs by itself.
  void CloseNow() override;

 protected:
  void Clear() override;
  void TakeStep() override;

 private:
  enum class WdogStep { kOrder, kWait, kResult, kEnded };

  [[nodiscard]] LinkResult Exchange();
  [[nodiscard]] LinkResult Begin();
  [[nodiscard]] LinkResult WaitForEnd();
  [[nodiscard]] LinkResult GiveUp();
  [[nodiscard]] LinkResult TakePeriod();
  void End();

  WatchdogTestValues values_;
  WdogStep wdog_step_ = WdogStep::kOrder;
  std::chrono::nanoseconds wdog_deadline_{};  // by Clock::Elapsed()
};

}  // namespace tavrel

#endif  // TAVREL_SERVICE_WATCHDOG_TEST_H_
