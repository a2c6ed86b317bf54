#include "instrument/truth_log.h"

#include <iomanip>

namespace instrument {
namespace {

const char* FateName(Fate fate) {
  switch (fate) {
    case Fate::kGood:
      return "good";
    case Fate::kLost:
      return "lost";
    case Fate::kSpoiled:
      return "spoiled";
    case Fate::kLate:
      return "late";
    case Fate::kDoubtful:
      return "doubtful";
  }
  return "good";
}

std::ostream& operator<<(std::ostream& out, const SamplePlace& place) {
  return out << place.inet << ' ' << place.input << ' ' << place.number;
}

}  // namespace

bool TruthFile::Open(const std::string& path) {
  if (path.empty()) {
    return true;
  }
  file_.open(path, std::ios::trunc);
  file_ << std::fixed << std::setprecision(2);
  return file_.good();
}

void TruthFile::Flush() {
  if (file_.is_open()) {
    file_.flush();
  }
}

void TruthFile::Sample(double seconds, const SamplePlace& place, std::int16_t word) {
  if (file_.is_open()) {
    file_ << "sample " << seconds << ' ' << place << ' ' << word << '\n';
  }
}

void TruthFile::Overrun(double seconds, const SamplePlace& place) {
  if (file_.is_open()) {
    file_ << "overrun " << seconds << ' ' << place << '\n';
  }
}

void TruthFile::Handed(const HandedSample& handed) {
  if (file_.is_open()) {
    file_ << "handed " << handed.seconds << ' ' << handed.place << ' ' << handed.word << ' '
          << FateName(handed.fate) << '\n';
  }
}

void TruthFile::Clear(double seconds, int inet, int input) {
  if (file_.is_open()) {
    file_ << "clear " << seconds << ' ' << inet << ' ' << input << '\n';
  }
}

void TruthFile::Restart(double seconds, int inet) {
  if (file_.is_open()) {
    file_ << "restart " << seconds << ' ' << inet << '\n';
  }
}

void TruthFile::Renumber(double seconds, int old_inet, int new_inet) {
  if (file_.is_open()) {
    file_ << "renumber " << seconds << ' ' << old_inet << ' ' << new_inet << '\n';
  }
}

}  // namespace instrument
