#ifndef TAVREL_TESTS_SUPPORT_INSTRUMENTS_HERE_H_
#define TAVREL_TESTS_SUPPORT_INSTRUMENTS_HERE_H_

#include <chrono>
#include <optional>
#include <string>

#include "instrument/instrument_line.h"
#include "instrument/truth_log.h"
#include "tests/support/fake_clock.h"
#include "tests/support/fake_port.h"

namespace tavrel {

// Virtual instruments in this process, at the far end of a port and on its clock.
class InstrumentsHere {
 public:
  // Both outlive this. Nothing is written down before Truth() has been opened.
  InstrumentsHere(FakeClock& clock, FakePort& port, instrument::LineMode mode)
      : clock_(clock), line_(mode, truth_), reader_(mode) {
    port.answer = [this](const std::string& command) { return Answer(command); };
  }
  InstrumentsHere(const InstrumentsHere&) = delete;
  InstrumentsHere& operator=(const InstrumentsHere&) = delete;

  [[nodiscard]] instrument::InstrumentLine& Line() { return line_; }
  [[nodiscard]] instrument::TruthFile& Truth() { return truth_; }

 private:
  std::string Answer(const std::string& bytes) {
    const auto now = std::chrono::floor<std::chrono::milliseconds>(clock_.Elapsed());
    line_.Advance(now - passed_, instrument::Instrument::Pace::kFine);
    passed_ = now;
    std::string replies;
    for (const char byte : bytes) {
      const auto command = reader_.Take(byte);
      const auto reply = command ? line_.Answer(*command) : std::nullopt;
      if (reply && reply->handed) {
        truth_.Handed(*reply->handed);
      }
      replies += reply ? reply->bytes : "";
    }
    truth_.Flush();
    return replies;
  }

  FakeClock& clock_;
  instrument::TruthFile truth_;
  instrument::InstrumentLine line_;
  instrument::TelegramReader reader_;
  std::chrono::milliseconds passed_{0};
};

}  // namespace tavrel

#endif  // TAVREL_TESTS_SUPPORT_INSTRUMENTS_HERE_H_
