#include "instrument/faults.h"

#include <sstream>

#include "instrument/numbers.h"

namespace instrument {
namespace {

constexpr std::array<const char*, kFaultCount> kNames{
    "silence",   "lost-request", "lost-reply", "late-reply", "byte-by-byte", "wrong-length",
    "cut-value", "non-hex",      "refusal",    "stale",      "garbage",      "no-value"};

// A host waits 110 ms for a reply: this one comes into its next exchange.
constexpr std::chrono::milliseconds kUsualLateness{150};
// Five characters with this pause still arrive in time.
constexpr std::chrono::milliseconds kUsualPause{8};
constexpr int kLongestTime = 60'000;  // milliseconds

std::chrono::milliseconds UsualTime(Fault fault) {
  return fault == Fault::kByteByByte ? kUsualPause : kUsualLateness;
}

bool IsATime(Fault fault) {
  return fault == Fault::kLateReply || fault == Fault::kByteByByte;
}

// "MILLISECONDS" or "MILLISECONDS/PROBABILITY".
std::optional<FaultLevel> ParseTimeLevel(std::string_view text) {
  const auto slash = text.find('/');
  const auto time = ParseNumber<int>(text.substr(0, slash), 0, kLongestTime);
  const auto probability = slash == std::string_view::npos
                               ? std::optional(1.0)
                               : ParseNumber<double>(text.substr(slash + 1), 0.0, 1.0);
  if (!time || !probability) {
    return std::nullopt;
  }
  FaultLevel level;
  level.time = std::chrono::milliseconds(*time);
  level.probability = *time > 0 ? *probability : 0.0;
  return level;
}

}  // namespace

const char* NameOf(Fault fault) {
  return kNames.at(static_cast<std::size_t>(fault));
}

std::optional<Fault> FaultNamed(std::string_view name) {
  for (std::size_t i = 0; i < kNames.size(); ++i) {
    if (name == kNames.at(i)) {
      return static_cast<Fault>(i);
    }
  }
  return std::nullopt;
}

std::optional<FaultLevel> ParseLevel(Fault fault, std::string_view text) {
  FaultLevel level;
  if (IsATime(fault)) {
    level.time = UsualTime(fault);
  }
  if (text == "on" || text == "off") {
    level.probability = text == "on" ? 1.0 : 0.0;
    return level;
  }
  if (!IsATime(fault)) {
    const auto probability = ParseNumber<double>(text, 0.0, 1.0);
    level.probability = probability.value_or(0.0);
    return probability ? std::optional(level) : std::nullopt;
  }
  return ParseTimeLevel(text);
}

bool FaultBook::Strikes(Fault fault) {
  FaultLevel& level = At(fault);
  if (level.probability <= 0.0) {
    return false;
  }
  if (level.probability < 1.0 &&
      std::uniform_real_distribution<double>(0.0, 1.0)(random_) >= level.probability) {
    return false;
  }
  if (level.times && --*level.times <= 0) {
    level.probability = 0.0;
  }
  return true;
}

int FaultBook::Draw(int below) {
  return std::uniform_int_distribution<int>(0, below - 1)(random_);
}

std::string FaultBook::Text() const {
  std::ostringstream text;
  for (int i = 0; i < kFaultCount; ++i) {
    const auto fault = static_cast<Fault>(i);
    const FaultLevel& level = At(fault);
    if (level.probability <= 0.0) {
      continue;
    }
    text << (text.tellp() > 0 ? " " : "") << NameOf(fault) << '=';
    if (IsATime(fault)) {
      text << level.time.count();
      if (level.probability < 1.0) {
        text << '/' << level.probability;
      }
    } else {
      text << level.probability;
    }
  }
  return text.str();
}

}  // namespace instrument
