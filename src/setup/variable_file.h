#ifndef TAVREL_SETUP_VARIABLE_FILE_H_
#define TAVREL_SETUP_VARIABLE_FILE_H_

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "link/registers.h"

// Variable files: the parameters of an instrument as text. 17 groups of two lines each, the letter
// of the registers and their sixteen values in decimal with commas between them; lines end with
// carriage return and line feed. No header, no checksum.
namespace tavrel {

// The groups in the order of the file. U, X and Y have live values and are not among them.
inline constexpr std::string_view kVariableLetters = "GHIJKLMNOPQRSTVWZ";
inline constexpr int kVariableGroups = static_cast<int>(kVariableLetters.size());
inline constexpr int kVariables = kVariableGroups * kRegistersPerLetter;  // registers of a file

inline constexpr std::size_t kLargestVariableFile = 10'000;  // bytes; a whole one has 2 kB at most

// Words by group and row 0..15.
using VariableWords = std::array<std::array<std::int16_t, kRegistersPerLetter>, kVariableGroups>;

// One register that a file gives a value to.
struct Variable {
  char letter = 0;
  int row = 0;  // 0..15
  std::int16_t word = 0;

  [[nodiscard]] bool operator==(const Variable&) const = default;
};

// The bytes of the file.
[[nodiscard]] std::string VariableFileBytes(const VariableWords& words);

// False for what a load passes over: buffer contents, sampling times, and the date of the firmware.
[[nodiscard]] bool IsLoadable(const Variable& variable);

// "G00": the letter and the row in two digits.
[[nodiscard]] std::string VariableName(char letter, int row);

// Reads a file register by register, whatever its bytes. An item is what stands up to a comma or a
// line end, without the blanks at its ends. Where a letter is expected, an item that is not the
// letter of a group is skipped; where a number is expected, anything but a number of 16 bits ends
// the reading.
class VariableReader {
 public:
  // How far the reading is.
  enum class Place {
    kReading,  // the next register has been read
    kWhole,    // group Z has been read; nothing behind it is looked at
    kBroken,   // no number where one should be, or the file ended before group Z
  };

  // `bytes` outlives the reader.
  explicit VariableReader(std::string_view bytes);

  // The next register into `variable`. Once it has answered kWhole or kBroken it does so for good.
  [[nodiscard]] Place Next(Variable& variable);

 private:
  [[nodiscard]] std::optional<std::string_view> NextItem();
  [[nodiscard]] bool FindGroup();
  [[nodiscard]] Place End(Place place);

  std::string_view left_;
  char letter_ = 0;  // of the group that is being read
  int row_ = 0;      // of it that comes next; kRegistersPerLetter: the group is over
  Place place_ = Place::kReading;
};

}  // namespace tavrel

#endif  // TAVREL_SETUP_VARIABLE_FILE_H_
