#ifndef TAVREL_INSTRUMENT_INSTRUMENT_LINE_H_
#define TAVREL_INSTRUMENT_INSTRUMENT_LINE_H_

#include <chrono>
#include <list>
#include <optional>
#include <string>
#include <vector>

#include "instrument/faults.h"
#include "instrument/instrument.h"
#include "instrument/telegram.h"
#include "instrument/truth_log.h"

namespace instrument {

// What goes back over the line.
struct Reply {
  std::string bytes;
  std::chrono::milliseconds delay{0};  // before the first byte, beyond the line's own time
  std::chrono::milliseconds pause{0};  // before each further byte
  // Set when the reply hands a stored sample over; to be told when the reply has gone out.
  std::optional<HandedSample> handed;
};

// The instruments that hang on one line, each with its faults.
class InstrumentLine {
 public:
  // `truth` outlives the line.
  InstrumentLine(LineMode mode, TruthLog& truth) : mode_(mode), truth_(truth) {}

  // The instrument with the lowest number answers what names none.
  void Add(const InstrumentSettings& settings);

  // A fresh instrument of that number is put to the line, beside those that have it already: it is
  // built as the first of all was, with amplifiers of its own. False: there is no room for more.
  [[nodiscard]] bool Attach(int inet, bool fast);

  // Takes the instrument of that number off the line, of several the one that came last, with all
  // that it holds. False: there is none.
  [[nodiscard]] bool Detach(int inet);

  // Lets the meant instrument carry the command out. Nothing: no answer comes, because nobody
  // has that number, the command needs none, or a fault swallowed it.
  [[nodiscard]] std::optional<Reply> Answer(const Command& command);

  // `time` of the instruments' own, for all of them.
  void Advance(Instrument::Time time, Instrument::Pace pace);

  // The instrument of that number, or nullptr.
  [[nodiscard]] Instrument* Find(int inet);
  [[nodiscard]] FaultBook* FaultsOf(int inet);
  [[nodiscard]] std::vector<int> Numbers() const;

 private:
  struct Station {
    Station(const InstrumentSettings& settings, TruthLog& truth);
    Instrument instrument;
    FaultBook faults;
    std::string last_reply;
  };
  [[nodiscard]] Station* FindStation(int inet);
  [[nodiscard]] std::optional<Reply> AnswerOf(Station& station, const Command& command);
  [[nodiscard]] bool TakesNumberOfAnother(int inet, const Command& command) const;
  void TalkOver(Reply& reply, const Reply& other);
  [[nodiscard]] Reply Obey(Station& station, const Command& command);
  [[nodiscard]] static bool MissesValue(Station& station, const Command& command);
  [[nodiscard]] Reply ReadValue(Instrument& instrument, const Command& command);
  [[nodiscard]] bool Write(Instrument& instrument, const Command& command) const;
  static void Spoil(Station& station, Reply& reply);

  LineMode mode_;
  TruthLog& truth_;
  std::list<Station> stations_;
  std::optional<InstrumentSettings> first_;  // as the first instrument was built
  std::uint64_t attached_ = 0;               // instruments that came while the line ran
  bool is_number_taken_ = false;             // the command in work would give a number twice
};

}  // namespace instrument

#endif  // TAVREL_INSTRUMENT_INSTRUMENT_LINE_H_
