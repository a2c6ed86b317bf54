#include "instrument/instrument_line.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace instrument {
namespace {

constexpr char kAcknowledge = '.';
constexpr char kRefused = '?';
// Noise never looks like a carriage return, an ESC, a "." or a "?".
constexpr std::string_view kNoise = "\x01\x7F\xF0\xFE\x55~#U";
constexpr int kNoiseBytes = 2;
constexpr std::uint16_t kNoValue = 0x8000;
constexpr char kCollision = '~';
constexpr std::size_t kMostInstruments = 16;

// A reply is told worse, never better.
void Worsen(Reply& reply, Fate fate) {
  if (reply.handed && reply.handed->fate != Fate::kSpoiled) {
    reply.handed->fate = fate;
  }
}

// What becomes of the digits of a value.
void SpoilDigits(FaultBook& faults, Reply& reply) {
  if (faults.Strikes(Fault::kWrongLength)) {
    if (reply.bytes.size() > 4) {
      reply.bytes.erase(0, 1);
    } else {
      reply.bytes.insert(0, 1, '0');
    }
    Worsen(reply, Fate::kSpoiled);
  }
  if (faults.Strikes(Fault::kCutValue)) {
    reply.bytes.erase(0, reply.bytes.size() / 2);
    Worsen(reply, Fate::kSpoiled);
  }
  if (faults.Strikes(Fault::kNonHex)) {
    reply.bytes.at(static_cast<std::size_t>(faults.Draw(2))) = 'G';
    Worsen(reply, Fate::kSpoiled);
  }
}

}  // namespace

InstrumentLine::Station::Station(const InstrumentSettings& settings, TruthLog& truth)
    : instrument(settings, truth),
      faults(settings.seed * 16U + static_cast<std::uint64_t>(settings.inet)) {}

void InstrumentLine::Add(const InstrumentSettings& settings) {
  stations_.emplace_back(settings, truth_);
  first_ = first_.value_or(settings);
}

bool InstrumentLine::Attach(int inet, bool fast) {
  if (stations_.size() >= kMostInstruments) {
    return false;
  }
  InstrumentSettings settings = first_.value_or(InstrumentSettings{});
  ++attached_;
  settings.inet = inet;
  settings.fast = fast;
  settings.seed += attached_;
  Add(settings);
  return true;
}

bool InstrumentLine::Detach(int inet) {
  const auto has_number = [inet](const Station& s) { return s.instrument.Inet() == inet; };
  const auto last = std::find_if(stations_.rbegin(), stations_.rend(), has_number);
  if (last == stations_.rend()) {
    return false;
  }
  stations_.erase(std::next(last).base());
  return true;
}

InstrumentLine::Station* InstrumentLine::FindStation(int inet) {
  const auto has_number = [inet](const Station& s) { return s.instrument.Inet() == inet; };
  const auto by_number = [](const Station& a, const Station& b) {
    return a.instrument.Inet() < b.instrument.Inet();
  };
  const auto found = inet == 0 ? std::min_element(stations_.begin(), stations_.end(), by_number)
                               : std::find_if(stations_.begin(), stations_.end(), has_number);
  return found == stations_.end() ? nullptr : &*found;
}

Instrument* InstrumentLine::Find(int inet) {
  Station* station = FindStation(inet);
  return station == nullptr ? nullptr : &station->instrument;
}

FaultBook* InstrumentLine::FaultsOf(int inet) {
  Station* station = FindStation(inet);
  return station == nullptr ? nullptr : &station->faults;
}

std::vector<int> InstrumentLine::Numbers() const {
  std::vector<int> numbers;
  for (const Station& station : stations_) {
    numbers.push_back(station.instrument.Inet());
  }
  std::sort(numbers.begin(), numbers.end());
  return numbers;
}

void InstrumentLine::Advance(Instrument::Time time, Instrument::Pace pace) {
  for (Station& station : stations_) {
    station.instrument.Advance(time, pace);
  }
}

// All instruments of the number that is meant hear the command and answer at the same time.
std::optional<Reply> InstrumentLine::Answer(const Command& command) {
  const Station* meant = FindStation(command.inet);
  if (meant == nullptr) {
    return std::nullopt;
  }
  const int inet = meant->instrument.Inet();
  is_number_taken_ = TakesNumberOfAnother(inet, command);
  std::vector<Station*> hearing;
  for (Station& station : stations_) {
    if (station.instrument.Inet() == inet) {
      hearing.push_back(&station);
    }
  }
  std::optional<Reply> together;
  for (Station* station : hearing) {
    std::optional<Reply> reply = AnswerOf(*station, command);
    if (together && reply) {
      TalkOver(*together, *reply);
    } else if (reply) {
      together = std::move(reply);
    }
  }
  return together;
}

std::optional<Reply> InstrumentLine::AnswerOf(Station& station, const Command& command) {
  if (station.faults.Strikes(Fault::kSilence) || station.faults.Strikes(Fault::kLostRequest)) {
    return std::nullopt;
  }
  Reply reply = Obey(station, command);
  if (reply.bytes.empty()) {
    return std::nullopt;
  }
  if (station.faults.Strikes(Fault::kLostReply)) {
    if (reply.handed) {
      reply.handed->fate = Fate::kLost;
      truth_.Handed(*reply.handed);
    }
    return std::nullopt;
  }
  const std::string clean = reply.bytes;
  Spoil(station, reply);
  station.last_reply = clean;
  return reply;
}

// An instrument knows nothing of the others; the line keeps them from getting one number by a
// command. Those that share a number change it together.
bool InstrumentLine::TakesNumberOfAnother(int inet, const Command& command) const {
  const bool renumbers =
      command.write && command.access == Access::kMemory && command.address == kUnitNumberAddress;
  const auto has_it = [&](const Station& s) { return s.instrument.Inet() == command.word + 1; };
  return renumbers && command.word + 1 != inet &&
         std::any_of(stations_.begin(), stations_.end(), has_it);
}

// Two talk at the same time: where they say different things nothing can be read.
void InstrumentLine::TalkOver(Reply& reply, const Reply& other) {
  const bool is_same = reply.bytes == other.bytes;
  const std::size_t common = std::min(reply.bytes.size(), other.bytes.size());
  for (std::size_t place = 0; place < common; ++place) {
    reply.bytes[place] = reply.bytes[place] == other.bytes[place] ? reply.bytes[place] : kCollision;
  }
  reply.bytes += other.bytes.substr(std::min(reply.bytes.size(), other.bytes.size()));
  if (!is_same) {
    Worsen(reply, Fate::kSpoiled);
  }
  if (other.handed) {
    HandedSample handed = *other.handed;
    handed.fate = is_same ? handed.fate : Fate::kSpoiled;
    truth_.Handed(handed);
  }
}

Reply InstrumentLine::Obey(Station& station, const Command& command) {
  Reply reply;
  if (!command.valid || station.faults.Strikes(Fault::kRefusal)) {
    reply.bytes = kRefused;
    return reply;
  }
  Instrument& instrument = station.instrument;
  if (!command.write) {
    if (MissesValue(station, command)) {
      reply.bytes = ValueReply(command.access, kNoValue);
      return reply;
    }
    return ReadValue(instrument, command);
  }
  const bool done = Write(instrument, command);
  // A direct line has no answer to a memory or port write, whether it was carried out or not.
  if (mode_ == LineMode::kPlugin || command.access == Access::kRegister) {
    reply.bytes = done ? kAcknowledge : kRefused;
  }
  return reply;
}

Reply InstrumentLine::ReadValue(Instrument& instrument, const Command& command) {
  Reply reply;
  std::uint16_t word = 0;
  switch (command.access) {
    case Access::kMemory:
      word = instrument.ReadMemory(command.address);
      break;
    case Access::kPort:
      word = instrument.ReadPort(command.address);
      break;
    case Access::kRegister: {
      const RegisterReading reading = instrument.ReadRegister(command.address);
      word = static_cast<std::uint16_t>(reading.word);
      if (reading.sample) {
        const SamplePlace place{instrument.Inet(), IndexOf(command.address),
                                reading.sample->number};
        reply.handed = HandedSample{instrument.Seconds(), place, reading.word, Fate::kGood};
      }
      break;
    }
  }
  reply.bytes = ValueReply(command.access, word);
  return reply;
}

bool InstrumentLine::MissesValue(Station& station, const Command& command) {
  const bool is_present_value =
      command.access == Access::kRegister && LetterOf(command.address) == 'Y';
  return is_present_value && station.faults.Strikes(Fault::kNoValue);
}

bool InstrumentLine::Write(Instrument& instrument, const Command& command) const {
  switch (command.access) {
    case Access::kRegister:
      return instrument.WriteRegister(command.address, static_cast<std::int16_t>(command.word));
    case Access::kPort:
      instrument.WritePort(command.address, static_cast<std::uint8_t>(command.word));
      return true;
    case Access::kMemory:
      break;
  }
  // Two instruments of one number would talk at the same time, so a taken one is refused.
  return !is_number_taken_ && instrument.WriteMemory(command.address, command.word);
}

void InstrumentLine::Spoil(Station& station, Reply& reply) {
  FaultBook& faults = station.faults;
  if (reply.bytes.back() == '\r') {
    SpoilDigits(faults, reply);
  }
  if (faults.Strikes(Fault::kGarbage)) {
    for (int i = 0; i < kNoiseBytes; ++i) {
      const int draw = faults.Draw(static_cast<int>(kNoise.size()));
      reply.bytes.insert(0, 1, kNoise.at(static_cast<std::size_t>(draw)));
    }
    Worsen(reply, Fate::kSpoiled);
  }
  if (!station.last_reply.empty() && faults.Strikes(Fault::kStale)) {
    reply.bytes.insert(0, station.last_reply);
    Worsen(reply, Fate::kSpoiled);
  }
  if (faults.Strikes(Fault::kLateReply)) {
    reply.delay = faults.Time(Fault::kLateReply);
    Worsen(reply, Fate::kLate);
  }
  if (faults.Strikes(Fault::kByteByByte)) {
    reply.pause = faults.Time(Fault::kByteByByte);
  }
}

}  // namespace instrument
