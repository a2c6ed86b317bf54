#include "main/line_state.h"

#include <array>
#include <cstdio>

namespace tavrel {
namespace {

constexpr const char* kBetween = "  ·  ";

constexpr BothLanguages kSimulated{"simulated  ·  no port, no instrument",
                                   "simuliert  ·  keine Schnittstelle, kein Gerät"};
constexpr BothLanguages kBaud{" baud", " Baud"};
constexpr BothLanguages kOneAnswered{"1 exchange answered in the last minute",
                                     "1 Abfrage in der letzten Minute beantwortet"};
constexpr BothLanguages kAnswered{" exchanges answered in the last minute",
                                  " Abfragen in der letzten Minute beantwortet"};
constexpr BothLanguages kNotOpen{"the port is not open", "die Schnittstelle ist nicht offen"};
constexpr BothLanguages kGone{"line gone since ", "Leitung weg seit "};
constexpr BothLanguages kSilent{"no answer since ", "keine Antwort seit "};
constexpr BothLanguages kNextTry{"next try in ", "nächster Versuch in "};

std::string Part(std::string_view text) {
  return kBetween + std::string(text);
}

std::string MomentText(const WallTime& moment, const WallTime& now) {
  const bool is_today =
      moment.Year == now.Year && moment.Month == now.Month && moment.Day == now.Day;
  std::array<char, 80> text{};
  const int skipped = is_today ? 11 : 0;  // "2026-03-14 "
  static_cast<void>(std::snprintf(text.data(), text.size(), "%04d-%02d-%02d %02d:%02d:%02d",
                                  moment.Year, moment.Month, moment.Day, moment.Hour, moment.Minute,
                                  moment.Second));
  return std::string(text.data()).substr(static_cast<std::size_t>(skipped));
}

std::string AnsweredText(int answered, Language language) {
  return answered == 1 ? std::string(kOneAnswered.In(language))
                       : std::to_string(answered) + std::string(kAnswered.In(language));
}

std::string GoneText(const LineState& line, const WallTime& now, Language language) {
  std::string text = Part(kGone.In(language)) + MomentText(*line.GoneSince, now);
  if (line.NextTry) {
    text += Part(kNextTry.In(language)) + std::to_string(*line.NextTry) + " s";
  }
  return text;
}

std::string BuffersText(const LineState& line) {
  return line.Buffers.empty() ? "" : Part(line.Buffers);
}

}  // namespace

std::string LineStateText(const LineState& line, const WallTime& now, Language language) {
  if (line.Simulated) {
    return std::string(kSimulated.In(language));
  }
  std::string text = line.Port + (line.Device.empty() ? "" : " = " + line.Device);
  if (line.GoneSince) {
    return text + GoneText(line, now, language) + BuffersText(line);
  }
  if (!line.PortOpen) {
    return text + Part(kNotOpen.In(language));
  }
  if (!line.Speed.empty()) {
    text += Part(line.Speed) + std::string(kBaud.In(language));
  }
  text += Part(AnsweredText(line.Answered, language));
  if (line.SilentSince) {
    text += Part(kSilent.In(language)) + MomentText(*line.SilentSince, now) + BuffersText(line);
  }
  return text;
}

}  // namespace tavrel
