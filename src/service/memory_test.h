#ifndef TAVREL_SERVICE_MEMORY_TEST_H_
#define TAVREL_SERVICE_MEMORY_TEST_H_

#include <array>
#include <string>

#include "service/firmware_test.h"

namespace tavrel {

// The result of the last test of one of the memories.
struct MemoryVerdict {
  enum class Kind { kUnknown, kPassed, kFailed };
  Kind kind = Kind::kUnknown;
  std::string text = "?";  // "passed", or the address that failed
};

// What the form shows; the numbers are those of Label2.
struct MemoryTestValues {
  MemoryVerdict ram;          // 0
  MemoryVerdict eprom;        // 1
  std::string version = "?";  // 2: of the firmware
  std::string tests = "?";    // 3: rounds that are finished
};

// ALL_MEM: the firmware tests its RAM and its EPROM, again and again until the screen closes.
class MemoryTest : public FirmwareTest {
 public:
  explicit MemoryTest(const ServiceParts& parts)
      : FirmwareTest(parts, View::kAllMem, "test  of  memory") {}

  [[nodiscard]] std::string Caption() const override {
    return InstrumentName() + "  /  Test  of  Memory";
  }
  [[nodiscard]] const MemoryTestValues& Values() const { return values_; }

  // The firmware ends a test that runs by itself.
  void CloseNow() override;

 protected:
  void Clear() override;
  void TakeStep() override;

 private:
  enum class MemStep {
    kOrderRam,
    kWaitForRam,
    kRamResult,
    kOrderEprom,
    kWaitForEprom,
    kEpromResult,
    kVersion,
  };

  [[nodiscard]] LinkResult Exchange();
  [[nodiscard]] LinkResult GoOnIfGood(LinkResult result, MemStep next);
  [[nodiscard]] LinkResult WaitForEnd(MemStep next);
  [[nodiscard]] LinkResult TakeVerdict(MemoryVerdict& verdict, MemStep next);
  [[nodiscard]] LinkResult TakeVersion();

  MemoryTestValues values_;
  MemStep mem_step_ = MemStep::kOrderRam;
  int mem_tests_ = 0;
};

}  // namespace tavrel

#endif  // TAVREL_SERVICE_MEMORY_TEST_H_
