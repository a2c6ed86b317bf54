#ifndef TAVREL_INSTRUMENT_TRUTH_LOG_H_
#define TAVREL_INSTRUMENT_TRUTH_LOG_H_

#include <cstdint>
#include <fstream>
#include <string>

namespace instrument {

// What became of the reply that handed a sample over.
enum class Fate : std::uint8_t {
  kGood,      // went out whole
  kLost,      // never reached the line
  kSpoiled,   // reached the line with a fault in it
  kLate,      // went out whole, but held back
  kDoubtful,  // went out whole, in time or late: when its command came is not known well enough
};

// Where a sample lies: instrument, input and running number since the last clear.
struct SamplePlace {
  int inet = 0;
  int input = 0;
  int number = 0;
};

// A sample that was handed over, at `seconds` of the instrument's own time.
struct HandedSample {
  double seconds = 0.0;
  SamplePlace place;
  std::int16_t word = 0;
  Fate fate = Fate::kGood;
};

// Is told what really happened to every sample. `seconds` is the instrument's own time.
class TruthLog {
 public:
  virtual ~TruthLog() = default;
  virtual void Sample(double seconds, const SamplePlace& place, std::int16_t word) = 0;
  virtual void Overrun(double seconds, const SamplePlace& place) = 0;
  virtual void Handed(const HandedSample& handed) = 0;
  virtual void Clear(double seconds, int inet, int input) = 0;
  virtual void Restart(double seconds, int inet) = 0;
  virtual void Renumber(double seconds, int old_inet, int new_inet) = 0;
};

// Writes one row of text for each event; the rows are told in README.md. Without a file it
// forgets everything. Rows reach the file at the latest with `Flush`.
class TruthFile : public TruthLog {
 public:
  // False: the file cannot be written. An empty path means no file and is good.
  [[nodiscard]] bool Open(const std::string& path);
  void Flush();

  void Sample(double seconds, const SamplePlace& place, std::int16_t word) override;
  void Overrun(double seconds, const SamplePlace& place) override;
  void Handed(const HandedSample& handed) override;
  void Clear(double seconds, int inet, int input) override;
  void Restart(double seconds, int inet) override;
  void Renumber(double seconds, int old_inet, int new_inet) override;

 private:
  std::ofstream file_;
};

}  // namespace instrument

#endif  // TAVREL_INSTRUMENT_TRUTH_LOG_H_
