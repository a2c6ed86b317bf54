#include "files/recording_format.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>

#include "base/file_names.h"
#include "base/number.h"
#include "base/text.h"
#include "base/units.h"

namespace tavrel {

namespace {

constexpr std::size_t kLetterPlace = 7;  // place 8 of a name, counted from 0
constexpr std::size_t kExtensionLength = 3;
constexpr std::string_view kUndefinedCodes = "\x81\x8D\x8F\x90\x9D";  // of Windows-1252
constexpr char kLastLetter = '~';  // the codes above it are no letters of a name

// Minutes of a new X axis, for one channel at one row a second. The constant is fixed.
constexpr double kAxisMinutes = 60 * 8.944;
constexpr double kMaxAxisMinutes = 32000;

// "yymmdd".
std::string DateDigits(const WallTime& now) {
  std::array<char, 40> digits{};
  std::snprintf(digits.data(), digits.size(), "%02d%02d%02d", now.Year % 100, now.Month, now.Day);
  return digits.data();
}

// Characters that separate directories or that some disk refuses, and control characters.
bool IsUnfit(char character) {
  const std::string_view reserved = "/\\:*?\"<>|";
  const auto code = static_cast<unsigned char>(character);
  return code < ' ' || reserved.find(character) != std::string_view::npos;
}

bool IsUnfitInExtension(char character) {
  return IsUnfit(character) || character == '.' || character == ' ';
}

// Also what would end the text in quotes that the settings hold, and the codes that control a
// printer or are none.
bool IsUnfitInNewExtension(char character) {
  const auto code = static_cast<unsigned char>(character);
  const bool is_undefined = kUndefinedCodes.find(character) != std::string_view::npos;
  return IsUnfitInExtension(character) || character == '\'' || code == 0x7F || is_undefined;
}

// The first three letters of the designation in capitals. A designation comes from a file and
// may hold anything; it must not lead out of the directory.
std::string ExtensionOf(std::string_view designation) {
  std::string letters = ToWindows1252(UpperCase(FirstCharacters(designation, kExtensionLength)));
  letters.resize(kExtensionLength, '_');
  std::replace_if(letters.begin(), letters.end(), IsUnfitInExtension, '_');
  return FromWindows1252(letters);
}

// The letter after `letter`; 0 if there is none.
char NextLetter(char letter) {
  const int next = static_cast<unsigned char>(letter) + 1;
  return next > kLastLetter ? '\0' : static_cast<char>(next);
}

// The letter for a new file, 0 if there is none.
char NewLetter(std::string_view old_name, const std::string& date) {
  const std::string old_bytes = ToWindows1252(UpperCase(old_name));
  const bool is_of_today = old_bytes.size() > kLetterPlace && old_bytes.compare(1, 6, date) == 0;
  if (!is_of_today) {
    return 'A';
  }
  const auto old_code = static_cast<unsigned char>(old_bytes[kLetterPlace]);
  return old_code < 'A' ? 'A' : NextLetter(old_bytes[kLetterPlace]);
}

}  // namespace

std::int32_t SampleCountOf(std::int64_t length, int channels) {
  if (channels < 1 || length < kHeaderBytes) {
    return 0;
  }
  const std::int64_t rows = (length - kHeaderBytes) / (std::int64_t{kWordBytes} * channels);
  return static_cast<std::int32_t>(std::min<std::int64_t>(rows, kMaxSampleCount));
}

std::int32_t RecIntervalOf(const UnitRecord& unit) {
  const std::int32_t seconds = unit.UnitFast == 1 ? unit.UnitInterval : unit.UnitInterval * 10;
  return std::max(seconds, 1);
}

std::int32_t SampleLimitOf(const UnitRecord& unit) {
  if (unit.UnitChannels < 1) {
    return 0;
  }
  const std::int32_t most = kMaxSampleWords / unit.UnitChannels;
  if (unit.UnitMaxMinutes <= 0) {
    return most;
  }
  const double rows = std::nearbyint(unit.UnitMaxMinutes * kSecondsPerMinute / RecIntervalOf(unit));
  return rows > most ? most : static_cast<std::int32_t>(rows);
}

double MaxFileHours(int channels, double seconds) {
  return channels < 1 ? 0 : double{kMaxSampleWords} / channels * seconds / kSecondsPerHour;
}

double AutonomyHours(double seconds) {
  return seconds * kBufferSets / kSecondsPerHour;
}

double RecordedHours(std::int32_t sample_count, std::int32_t rec_interval) {
  return std::max(0.0, (sample_count - 2.0) * rec_interval / kSecondsPerHour);
}

std::int16_t NewFileXmax(std::int16_t unit_xmax, std::int32_t rec_interval, int channels) {
  const double most =
      std::min(kAxisMinutes * rec_interval / std::max(channels, 1), kMaxAxisMinutes);
  return unit_xmax == 0 || unit_xmax > most ? ToWord(most) : unit_xmax;
}

std::string NewFileName(std::string_view old_name, const WallTime& now,
                        std::string_view designation) {
  const std::string date = DateDigits(now);
  const char letter = NewLetter(old_name, date);
  if (letter == '\0') {
    return "";
  }
  return "M" + date + letter + "." + ExtensionOf(designation);
}

std::string NextFileName(std::string_view name) {
  std::string bytes = ToWindows1252(name);
  if (bytes.size() <= kLetterPlace) {
    return "";
  }
  bytes[kLetterPlace] = NextLetter(bytes[kLetterPlace]);
  return bytes[kLetterPlace] == '\0' ? "" : FromWindows1252(bytes);
}

bool IsNameForNewFile(std::string_view name) {
  return !name.empty() && std::none_of(name.begin(), name.end(), IsUnfit) &&
         UpperCase(name) == name;
}

bool IsExtensionForNewFile(std::string_view extension) {
  const std::string bytes = ToWindows1252(UpperCase(Trim(extension)));
  return !bytes.empty() && bytes.size() <= kExtensionLength &&
         std::none_of(bytes.begin(), bytes.end(), IsUnfitInNewExtension) &&
         IsDataFileName("x." + FromWindows1252(bytes));
}

std::string DateText(const WallTime& now) {
  std::array<char, 80> text{};
  std::snprintf(text.data(), text.size(), "%02d-%02d-%04d / %02d:%02d", now.Month, now.Day,
                now.Year, now.Hour, now.Minute);
  return text.data();
}

}  // namespace tavrel
