#ifndef TAVREL_FILES_RECORDING_FORMAT_H_
#define TAVREL_FILES_RECORDING_FORMAT_H_

#include <cstdint>
#include <string>
#include <string_view>

#include "platform/clock.h"
#include "state/unit_record.h"

// The recording file in numbers and names: pure rules, no file is touched here.
//
//   bytes 0..199    100 header words of 16 bits
//   bytes 200..999  40 header texts of 20 bytes
//   bytes 1000..    samples, rows of UnitChannels words
//
// Three counts that are easily mixed up and are therefore never named alike: a *row* counts
// from 0, a *record* counts 2-byte words of the whole file from 1 (so the first sample is record
// 501), a *byte* is an offset in the file.
namespace tavrel {

inline constexpr int kHeaderBytes = 1000;
inline constexpr int kWordBytes = 2;
inline constexpr int kHeaderRecords = kHeaderBytes / kWordBytes;  // 500
inline constexpr int kMaxSampleWords = 32000;  // record numbers are 16 bits signed
inline constexpr int kMaxSampleCount = 32767;
inline constexpr int kBufferSets = 896;  // sample sets that an instrument holds by itself

// Byte offset of the word of `column` (from 1) in `row` (from 0).
[[nodiscard]] constexpr std::int64_t SampleByte(int channels, std::int64_t row, int column) {
  return kHeaderBytes + kWordBytes * (channels * row + column - 1);
}

// Whole rows in a file of `length` bytes; a torn last row does not count. 0..32767; 0 when
// `channels` is below 1.
[[nodiscard]] std::int32_t SampleCountOf(std::int64_t length, int channels);

// Seconds between rows: UnitInterval times 10, or UnitInterval itself on a fast instrument;
// never below 1.
[[nodiscard]] std::int32_t RecIntervalOf(const UnitRecord& unit);

// Rows that the file may hold: UnitMaxMinutes at the interval, to the nearest; without a limit,
// and at the most, 32000 words.
[[nodiscard]] std::int32_t SampleLimitOf(const UnitRecord& unit);

// Hours that a file can hold at one row in `seconds`.
[[nodiscard]] double MaxFileHours(int channels, double seconds);

// Hours that the instrument records by itself at one set in `seconds`.
[[nodiscard]] double AutonomyHours(double seconds);

// Hours of recording in `sample_count` rows; the first set stands in the file twice and the
// time counts from it, so two rows are 0 hours. Never below 0.
[[nodiscard]] double RecordedHours(std::int32_t sample_count, std::int32_t rec_interval);

// The length of the X axis, minutes, that a new file starts with if the present one is 0 or
// longer than what the file can show.
[[nodiscard]] std::int16_t NewFileXmax(std::int16_t unit_xmax, std::int32_t rec_interval,
                                       int channels);

// "Myymmdd" + letter + "." + extension for a new file of a slot whose old file was `old_name`:
// the letter is A for the first file of the day, else the old one plus one in the character
// code ("[" follows "Z"); a letter below A counts as none. The empty text when no letter is left
// after "~". The extension is the first three letters of the designation in capitals; what
// cannot stand in a file name, or is missing, becomes "_".
[[nodiscard]] std::string NewFileName(std::string_view old_name, const WallTime& now,
                                      std::string_view designation);

// The name with the character at place 8 raised by one in the character code, whatever the
// date. A name shorter than 8 characters, or one whose place 8 cannot be raised, gives the
// empty text.
[[nodiscard]] std::string NextFileName(std::string_view name);

// True if a new file may have the name: it is in capitals (or two names that raising takes for
// different would be one to the disk) and holds nothing that a file name cannot hold.
[[nodiscard]] bool IsNameForNewFile(std::string_view name);

// True if the trimmed text may be the extension of recordings: one to three characters that can
// stand in a file name and between the quotes of the settings, and that Windows-1252 has; not one
// of the extensions that belong to other kinds of files.
[[nodiscard]] bool IsExtensionForNewFile(std::string_view extension);

// "mm-dd-yyyy / hh:nn".
[[nodiscard]] std::string DateText(const WallTime& now);

}  // namespace tavrel

#endif  // TAVREL_FILES_RECORDING_FORMAT_H_
