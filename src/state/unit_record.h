#ifndef TAVREL_STATE_UNIT_RECORD_H_
#define TAVREL_STATE_UNIT_RECORD_H_

#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <type_traits>

#include "state/numbers.h"

namespace tavrel {

static_assert(std::endian::native == std::endian::little,
              "The header and the samples are little-endian on the disk and are used as they "
              "stand in memory.");

inline constexpr int kMarks = 5;        // marks that a header has room for
inline constexpr int kTextLength = 20;  // bytes of a text in the header

// What happens when the file of a recording is full. Another number stands for nothing.
enum EndAction : std::int16_t { kEndOnly = 0, kSwitchControllerOff = 1, kGoOnInNextFile = 2 };

// A text of the header: 20 bytes of Windows-1252, padded at the right with blanks. A text that
// was never set is 20 zero bytes.
struct HeaderText {
  std::array<char, kTextLength> Bytes{};

  // UTF-8, without blanks and zero bytes at the right end.
  [[nodiscard]] std::string Get() const;

  // Takes UTF-8, cuts it at 20 characters and pads it with blanks.
  void Set(std::string_view utf8);
};

// What an input does in a test. Files of other origin hold higher numbers for measuring inputs,
// and numbers below 0 for inputs that are not used.
enum class Role : int { kNotUsed = 0, kController = 1, kReference = 2, kMeasuring = 3 };

// The header of a recording file, field by field as it lies in the file, and at the same time
// a slot's installation in memory: reading a file into a slot fills this record, writing the
// header saves it. Any 1000 bytes are a record; IsTavrelHeader says whether they make sense.
//
// Raw temperatures are words in steps of 0.05 degrees. Input numbers count from 1.
struct UnitRecord {
  std::int16_t UnitInet{};           // number of the instrument on the line, 1..6 in a valid file
  std::int16_t UnitChannels{};       // recorded inputs, 1..15: the words of one row
  std::int16_t UnitCtrl{};           // controller of the instrument, 1..4
  std::int16_t UnitRef{};            // reference input, 1..15
  ByInput<std::int16_t> UnitRole{};  // see Role; 1 or more: the input is recorded
  std::array<std::int16_t, 1> Unnamed19{};
  std::int16_t UnitRecOn{};       // 1 while the recording runs, 0 when it is stopped
  std::int16_t UnitMaxMinutes{};  // length limit of the file; 0 or less: all that it can hold
  std::int16_t UnitInterval{};    // sampling: tens of seconds, seconds if UnitFast is 1; 1..3600
  std::int16_t UnitCtrlState{};   // only ever set to 0; nothing reads it
  std::array<std::int16_t, 1> Unnamed24{};
  std::int16_t UnitSetpoint{};   // raw temperature, register W
  std::int16_t UnitUpper{};      // raw temperature, register H
  std::int16_t UnitLower{};      // raw temperature, register G
  std::int16_t UnitIncrement{};  // ramp as register I holds it
  std::int16_t UnitFinal{};      // raw temperature, register M
  std::array<std::int16_t, 2> Unnamed30{};
  ByInput<std::int16_t> UnitColour{};  // below 1: the curve is left out
  std::array<std::int16_t, 1> Unnamed47{};
  std::int16_t UnitEndAction{};  // an EndAction, or another number
  std::int16_t UnitYmax{};       // top of the Y axis, whole degrees
  std::int16_t UnitXmax{};       // length of the X axis, minutes
  std::array<std::int16_t, 4> UnitView{};
  std::array<std::int16_t, 20> UnitMarkPos{};
  std::int16_t UnitMarks{};  // marks in use, 0..5
  std::int16_t UnitGraphMode{};
  std::array<std::int16_t, 12> Unnamed77{};
  std::int16_t UnitYmin{};  // bottom of the Y axis, whole degrees
  std::int16_t UnitFast{};  // 1: fast instrument, UnitInterval is in seconds
  std::array<std::int16_t, 1> Unnamed91{};
  std::int16_t UnitRes{};  // graph resolution: below 53 high, else low
  std::array<std::int16_t, 5> Unnamed93{};
  std::int16_t UnitProgWait{};  // minutes until the next step of the running program
  std::int16_t UnitProgStep{};  // number of the running program step

  HeaderText UnitDesignation{};  // three letters (the file extension), a colon, the apparatus
  ByInput<HeaderText> UnitInputName{};
  ByInput<HeaderText> UnitInputNote{};
  HeaderText UnitDate{};  // "mm-dd-yyyy / hh:nn"
  std::array<HeaderText, kMarks> UnitMarkText{};
  HeaderText UnitSpareText{};
  HeaderText UnitProgName{};
  HeaderText UnitOrigin{};  // a subfile's source

  [[nodiscard]] bool IsRecorded(int input) const { return UnitRole[input] >= 1; }

  // Inputs with a role of 1 or more.
  [[nodiscard]] int RecordedInputs() const;

  // True if a row has one word for each recorded input. A file where they disagree may be shown,
  // but rows written to it would come out of step.
  [[nodiscard]] bool CanBeRecorded() const {
    return RecordedInputs() >= 1 && RecordedInputs() == UnitChannels;
  }

  // What the apparatus is called: the designation from its fifth character on, trimmed.
  [[nodiscard]] std::string ApparatusName() const;

  // Keeps the first four characters of the designation and puts the trimmed name behind them.
  void SetApparatusName(std::string_view utf8);
};

inline constexpr std::size_t kHeaderWord = 2;  // bytes of a header word

static_assert(std::is_trivially_copyable_v<UnitRecord>);
static_assert(sizeof(UnitRecord) == 1000);
static_assert(offsetof(UnitRecord, UnitRole) == kHeaderWord * 4);
static_assert(offsetof(UnitRecord, UnitRecOn) == kHeaderWord * 20);
static_assert(offsetof(UnitRecord, UnitCtrlState) == kHeaderWord * 23);
static_assert(offsetof(UnitRecord, UnitSetpoint) == kHeaderWord * 25);
static_assert(offsetof(UnitRecord, UnitColour) == kHeaderWord * 32);
static_assert(offsetof(UnitRecord, UnitEndAction) == kHeaderWord * 48);
static_assert(offsetof(UnitRecord, UnitView) == kHeaderWord * 51);
static_assert(offsetof(UnitRecord, UnitMarkPos) == kHeaderWord * 55);
static_assert(offsetof(UnitRecord, UnitMarks) == kHeaderWord * 75);
static_assert(offsetof(UnitRecord, UnitYmin) == kHeaderWord * 89);
static_assert(offsetof(UnitRecord, UnitRes) == kHeaderWord * 92);
static_assert(offsetof(UnitRecord, UnitProgWait) == kHeaderWord * 98);
static_assert(offsetof(UnitRecord, UnitDesignation) == 200);
static_assert(offsetof(UnitRecord, UnitInputName) == 220);
static_assert(offsetof(UnitRecord, UnitInputNote) == 520);
static_assert(offsetof(UnitRecord, UnitDate) == 820);
static_assert(offsetof(UnitRecord, UnitMarkText) == 840);
static_assert(offsetof(UnitRecord, UnitProgName) == 960);
static_assert(offsetof(UnitRecord, UnitOrigin) == 980);

[[nodiscard]] Role RoleOf(const UnitRecord& unit, int input);
void SetRole(UnitRecord& unit, int input, Role role);

// The first input of the role, 0 if there is none. A controller is one of the inputs 1..4.
[[nodiscard]] int InputWith(const UnitRecord& unit, Role role);

// True if instrument, channels, controller, reference and interval all lie in the ranges of a
// recording file of this system.
[[nodiscard]] bool IsTavrelHeader(const UnitRecord& unit);

// The header of the file that the program makes when it starts with no file at all.
[[nodiscard]] UnitRecord DefaultUnitRecord();

}  // namespace tavrel

#endif  // TAVREL_STATE_UNIT_RECORD_H_
