#include "tests/truth/truth_file.h"

#include <algorithm>
#include <sstream>

namespace tavrel {
namespace {

class TruthReader {
 public:
  explicit TruthReader(const std::vector<int>& cuts) : cuts_(cuts) {}

  void TakeLine(const std::string& line) {
    std::istringstream fields(line);
    std::string kind;
    double seconds = 0;
    InputKey key;
    fields >> kind >> seconds >> key.first >> key.second;
    int number = 0;
    int word = 0;
    std::string fate;
    fields >> number >> word >> fate;
    if (kind == "sample") {
      truth_.inputs[key].push_back(
          {seconds, static_cast<std::int16_t>(word), SampleFate::kWaiting, epochs_[key], number});
    } else if (kind == "handed") {
      TakeHanded(key, seconds, number, fate);
    } else if (kind == "overrun") {
      ++truth_.overruns;
      Mark(key, number, SampleFate::kOverrun, cleared_[key]);
    } else if (kind == "clear") {
      Forget(key, SampleFate::kCleared);
    } else if (kind == "restart") {
      ForgetAll(key.first, seconds);
    }
  }

  [[nodiscard]] const LineTruth& Truth() const { return truth_; }

 private:
  // A reply that was under way while its instrument was restarted is told after the restart.
  void TakeHanded(const InputKey& key, double seconds, int number, const std::string& fate) {
    ++truth_.handed;
    const SampleFate became = FateOf(fate);
    truth_.lost += became == SampleFate::kLost ? 1 : 0;
    const bool is_older = seconds < restarted_[key.first];
    Mark(key, number, became, is_older ? before_restart_[key] : cleared_[key]);
  }

  // Of the sample that was handed over last.
  [[nodiscard]] SampleFate FateOf(const std::string& told) const {
    if (told != "good" && told != "doubtful") {
      return SampleFate::kLost;
    }
    const bool is_cut = std::find(cuts_.begin(), cuts_.end(), truth_.handed) != cuts_.end();
    return is_cut || told == "doubtful" ? SampleFate::kCut : SampleFate::kGood;
  }

  // `first` is the number of samples before number 1.
  void Mark(const InputKey& key, int number, SampleFate fate, std::size_t first) {
    auto& samples = truth_.inputs[key];
    const std::size_t place = first + static_cast<std::size_t>(number) - 1;
    if (number >= 1 && place < samples.size()) {
      samples[place].fate = fate;
    }
  }

  // Numbers begin at 1 again.
  void Forget(const InputKey& key, SampleFate fate) {
    auto& samples = truth_.inputs[key];
    for (std::size_t place = cleared_[key]; place < samples.size(); ++place) {
      if (samples[place].fate == SampleFate::kWaiting) {
        samples[place].fate = fate;
      }
    }
    cleared_[key] = samples.size();
    ++epochs_[key];
  }

  void ForgetAll(int inet, double seconds) {
    restarted_[inet] = seconds;
    for (const auto& [key, samples] : truth_.inputs) {
      if (key.first == inet) {
        before_restart_[key] = cleared_[key];
        Forget(key, SampleFate::kForgotten);
      }
    }
  }

  const std::vector<int>& cuts_;
  LineTruth truth_;
  std::map<InputKey, std::size_t> cleared_;         // samples taken before numbers began at 1
  std::map<InputKey, int> epochs_;                  // how often numbers began at 1 again
  std::map<InputKey, std::size_t> before_restart_;  // the same before the last restart
  std::map<int, double> restarted_;                 // seconds of the last restart
};

}  // namespace

LineTruth ReadLineTruth(std::istream& file, const std::vector<int>& cuts) {
  TruthReader reader(cuts);
  for (std::string line; std::getline(file, line);) {
    reader.TakeLine(line);
  }
  return reader.Truth();
}

}  // namespace tavrel
