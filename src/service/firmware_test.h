#ifndef TAVREL_SERVICE_FIRMWARE_TEST_H_
#define TAVREL_SERVICE_FIRMWARE_TEST_H_

#include <cstdint>
#include <optional>
#include <string>

#include "link/register_access.h"
#include "service/service_screen.h"

namespace tavrel {

// A service screen that lets the firmware of an instrument test the instrument. A command goes into
// the mailbox, which reads 0 when the firmware has carried it out; then the result is there. Nobody
// knows what the firmware does with its samples and controllers meanwhile, so the user is asked
// first if the instrument records or controls.
class FirmwareTest : public ServiceScreen {
 public:
  // `title` is that of the question.
  FirmwareTest(const ServiceParts& parts, View view, const char* title)
      : ServiceScreen(parts, view), title_(title) {}

  // Stays closed if the user does not want the test.
  void Open() override;

 protected:
  // Back to the state before the first step, with no measurement. Also when the screen closes.
  virtual void Clear() = 0;

  // Gives the firmware a command; 0 ends the one that runs.
  [[nodiscard]] LinkResult Order(std::int16_t command);

  // Looks whether the command has been carried out; on a simulated link it is at once. `status` is
  // how the exchange ended.
  struct Progress {
    LinkResult status = LinkResult::kNone;
    bool is_done = false;
  };
  [[nodiscard]] Progress LookForEnd();

  // What the command gave; `simulated` on a simulated link.
  [[nodiscard]] Reading Result(int index, std::int16_t simulated);

 private:
  [[nodiscard]] bool MayTest(int inet);

  const char* title_;
};

}  // namespace tavrel

#endif  // TAVREL_SERVICE_FIRMWARE_TEST_H_
