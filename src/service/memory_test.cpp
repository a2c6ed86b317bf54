#include "service/memory_test.h"

#include "base/number.h"

namespace tavrel {
namespace {

constexpr std::int16_t kTestRam = 6;
constexpr std::int16_t kTestEprom = 9;
constexpr int kFailedAddress = 8;  // index of the result; 0: none has failed
constexpr int kFirmwareVersion = 9;
constexpr std::int16_t kSimulatedVersion = 0x0115;
constexpr std::chrono::milliseconds kBetweenRounds{200};  // between two rounds

MemoryVerdict VerdictOf(std::int16_t failed_address) {
  if (failed_address != 0) {
    return {MemoryVerdict::Kind::kFailed, "Failure at " + Hex(failed_address)};
  }
  return {MemoryVerdict::Kind::kPassed, "passed"};
}

std::string FourDigits(std::int16_t word) {
  const std::string digits = Hex(word);
  return std::string(4 - digits.size(), '0') + digits;
}

}  // namespace

void MemoryTest::Clear() {
  values_ = MemoryTestValues();
  mem_step_ = MemStep::kOrderRam;
  mem_tests_ = 0;
}

void MemoryTest::CloseNow() {
  ServiceScreen::CloseNow();
  Clear();
}

void MemoryTest::TakeStep() {
  if (MissesAnswer(Exchange())) {
    mem_step_ = MemStep::kOrderRam;
  }
}

LinkResult MemoryTest::Exchange() {
  switch (mem_step_) {
    case MemStep::kOrderRam:
      Parts().link.LinkAbort();
      return GoOnIfGood(Order(kTestRam), MemStep::kWaitForRam);
    case MemStep::kWaitForRam:
      return WaitForEnd(MemStep::kRamResult);
    case MemStep::kRamResult:
      return TakeVerdict(values_.ram, MemStep::kOrderEprom);
    case MemStep::kOrderEprom:
      return GoOnIfGood(Order(kTestEprom), MemStep::kWaitForEprom);
    case MemStep::kWaitForEprom:
      return WaitForEnd(MemStep::kEpromResult);
    case MemStep::kEpromResult:
      return TakeVerdict(values_.eprom, MemStep::kVersion);
    case MemStep::kVersion:
      break;
  }
  return TakeVersion();
}

LinkResult MemoryTest::GoOnIfGood(LinkResult result, MemStep next) {
  mem_step_ = IsGood(result) ? next : mem_step_;
  return result;
}

LinkResult MemoryTest::WaitForEnd(MemStep next) {
  const Progress progress = LookForEnd();
  mem_step_ = progress.is_done ? next : mem_step_;
  return progress.status;
}

LinkResult MemoryTest::TakeVerdict(MemoryVerdict& verdict, MemStep next) {
  const Reading result = Result(kFailedAddress, 0);
  verdict = result.IsGood() ? VerdictOf(result.word) : verdict;
  return GoOnIfGood(result.status, next);
}

LinkResult MemoryTest::TakeVersion() {
  const Reading version = Result(kFirmwareVersion, kSimulatedVersion);
  if (version.IsGood()) {
    ++mem_tests_;
    values_.version = FourDigits(version.word);
    values_.tests = std::to_string(mem_tests_);
    Parts().state.TickBlink = Parts().clock.Elapsed() + kBetweenRounds;
  }
  return GoOnIfGood(version.status, MemStep::kOrderRam);
}

}  // namespace tavrel
