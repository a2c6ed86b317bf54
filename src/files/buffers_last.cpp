#include "files/buffers_last.h"

#include <chrono>
#include <cstdint>

namespace tavrel {
namespace {

constexpr BothLanguages kLasts{"recordings wait in the instruments, at least for:  ",
                               "Aufzeichnungen warten in den Geräten, mindestens noch:  "};

constexpr BothLanguages kSilent{"no answer: its buffer lasts for  ",
                                "keine Antwort: sein Puffer reicht noch  "};
constexpr BothLanguages kMayBeFull{"no answer: its buffer may be full, sets may be lost",
                                   "keine Antwort: sein Puffer ist vielleicht voll, Sätze gehen "
                                   "vielleicht verloren"};

std::string Duration(std::chrono::seconds time) {
  constexpr std::int64_t kMinute = 60;
  constexpr std::int64_t kHour = 60 * kMinute;
  constexpr std::int64_t kHoursFrom = 2 * kHour;
  if (time.count() >= kHoursFrom) {
    return std::to_string(time.count() / kHour) + " h";
  }
  return time.count() >= 2 * kMinute ? std::to_string(time.count() / kMinute) + " min"
                                     : std::to_string(time.count()) + " s";
}

}  // namespace

std::string BuffersLastText(const RecordingEngine& engine, Language language) {
  const auto time = engine.BuffersLast();
  return time ? std::string(kLasts.In(language)) + Duration(*time) : "";
}

std::string SilentBufferText(const RecordingEngine& engine, int slot, Language language) {
  const auto time = engine.SilentBufferLasts(slot);
  if (!time) {
    return "";
  }
  return time->count() == 0 ? std::string(kMayBeFull.In(language))
                            : std::string(kSilent.In(language)) + Duration(*time);
}

}  // namespace tavrel
