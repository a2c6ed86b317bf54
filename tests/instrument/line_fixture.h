#ifndef TAVREL_TESTS_INSTRUMENT_LINE_FIXTURE_H_
#define TAVREL_TESTS_INSTRUMENT_LINE_FIXTURE_H_

#include <optional>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

#include "instrument/instrument_line.h"

namespace instrument {

// Keeps the truth as short rows without times, such as "sample 1 2 3 440".
class KeptTruth : public TruthLog {
 public:
  std::vector<std::string> rows;

  void Sample(double, const SamplePlace& place, std::int16_t word) override {
    Add("sample", place.inet, place.input, place.number, word);
  }
  void Overrun(double, const SamplePlace& place) override {
    Add("overrun", place.inet, place.input, place.number);
  }
  void Handed(const HandedSample& handed) override {
    const SamplePlace& place = handed.place;
    Add("handed", place.inet, place.input, place.number, "fate", static_cast<int>(handed.fate));
  }
  void Clear(double, int inet, int input) override { Add("clear", inet, input); }
  void Restart(double, int inet) override { Add("restart", inet); }
  void Renumber(double, int old_inet, int new_inet) override {
    Add("renumber", old_inet, new_inet);
  }
  [[nodiscard]] int Count(std::string_view prefix) const {
    int count = 0;
    for (const std::string& row : rows) {
      count += row.starts_with(prefix) ? 1 : 0;
    }
    return count;
  }

 private:
  template <typename... Fields>
  void Add(const char* kind, const Fields&... fields) {
    std::ostringstream row;
    row << kind;
    ((row << ' ' << fields), ...);
    rows.push_back(row.str());
  }
};

// A line without a port: bytes in, the reply's bytes out. Levers: `truth`, `line`, `last`.
class LineBench {
 public:
  explicit LineBench(LineMode mode, const std::vector<int>& inets = {1, 2, 3}, Scan scan = {})
      : line(mode, truth), reader_(mode) {
    for (const int inet : inets) {
      InstrumentSettings settings;
      settings.inet = inet;
      settings.fast = inet == 2;
      settings.scan = scan;
      line.Add(settings);
    }
  }

  // All replies to `bytes`, one behind the other; empty if nothing answers.
  std::string Say(std::string_view bytes) {
    std::string replies;
    for (const char byte : bytes) {
      const auto command = reader_.Take(byte);
      last = command ? line.Answer(*command) : std::nullopt;
      if (last && last->handed) {
        truth.Handed(*last->handed);
      }
      replies += last ? last->bytes : "";
    }
    return replies;
  }

  void Pass(std::int64_t seconds) { PassMilliseconds(seconds * 1000); }

  void PassMilliseconds(std::int64_t time) {
    line.Advance(Instrument::Time(time), Instrument::Pace::kFine);
  }

  KeptTruth truth;
  InstrumentLine line;
  std::optional<Reply> last;

 private:
  TelegramReader reader_;
};

// The number in a reply of four digits and a carriage return; -99999 for anything else.
inline int WordOf(const std::string& reply) {
  if (reply.size() != 5 || reply.back() != '\r' ||
      reply.find_first_not_of("0123456789ABCDEF") != 4) {
    return -99999;
  }
  return static_cast<std::int16_t>(std::stoi(reply, nullptr, 16));
}

}  // namespace instrument

#endif  // TAVREL_TESTS_INSTRUMENT_LINE_FIXTURE_H_
