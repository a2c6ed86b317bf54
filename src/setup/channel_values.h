#ifndef TAVREL_SETUP_CHANNEL_VALUES_H_
#define TAVREL_SETUP_CHANNEL_VALUES_H_

#include <array>
#include <cstdint>
#include <string>

#include "base/numbered.h"
#include "link/registers.h"

// What TavChann shows, as plain values: its rules write them, the form copies them to its widgets,
// and a test reads what the user sees. All texts are UTF-8.
namespace tavrel {

// Row 0 is the reference sensor of the instrument, rows 1..15 are its inputs.
inline constexpr int kChannelRows = kRegistersPerLetter;
inline constexpr int kReferenceRow = 0;

template <typename T>
using ByRow = Numbered<T, 0, kChannelRows - 1>;

// The step in which the dialog is.
enum class AdjState : std::int16_t {
  kNoLink = -2,  // opened without a link: nothing is read, the sheet stays empty
  kEmptySheet = 2,
  // The sheet is read column by column.
  kReadSensors = 10,
  kReadSampling = 11,
  kReadOffsets = 12,
  kReadDivisors = 13,
  // Idle: what changes by itself is read every five seconds.
  kReadActual = 20,
  kReadBuffers = 21,
  kIdle = 22,
  // Inputs: offset, gain, final value.
  kBeginInputs = 30,
  kSelect = 31,
  kShort = 32,  // the sensor code of the selected rows becomes 0
  kAwaitShorted = 33,
  kCollectOffset = 34,
  kRaise = 35,
  kAwaitRaised = 36,
  kCollectGain = 37,
  kAwaitFinal = 38,
  kCompute = 39,
  // The reference sensor: 0 and 100 degrees.
  kBeginReference = 40,
  kAwaitZero = 41,
  kCollectZero = 42,
  kSetSpan = 43,
  kAwaitSpan = 44,
  kCollectSpan = 45,
  // Variable files.
  kSaving = 50,
  kLoading = 51,
  kLoaded = 52,
  kFailed = 53,
  kCancelled = 54,
};

// One row of the sheet. An empty text is an empty cell.
struct ChannelRow {
  std::string sensor;
  std::string actual;     // degrees
  std::string buffer;     // values waiting
  std::string sampling;   // seconds
  std::string offset;     // raw counts
  std::string gain;       // the divisor, which is one by the gain
  bool selected = false;  // chosen for the run
};

// The columns of the sheet from left to right.
inline constexpr std::array kChannelHeads = {"no",       "sensor", "actual",  "buffer",
                                             "sampling", "offset", "1 / gain"};

// The whole form.
struct ChannelValues {
  std::string Caption;
  ByRow<ChannelRow> Sheet;
  std::string Lbl_Instr;
  bool Lbl_InstrShown = false;
  std::string txt_Final;
  bool txt_FinalShown = false;
  int FinalAsked = 0;  // counts up each time the user is asked for it: the keyboard belongs there
  int pBar = 0;        // 0..100
  bool pBarShown = false;
  bool CmdOKShown = false;
  bool MenusEnabled = false;
  bool ComIcon = false;  // the instrument does not answer
};

// The number of a row as the sheet has it: 0..9, then A..F.
[[nodiscard]] inline std::string RowName(int row) {
  return std::string(1, "0123456789ABCDEF"[static_cast<std::size_t>(row) % kChannelRows]);
}

}  // namespace tavrel

#endif  // TAVREL_SETUP_CHANNEL_VALUES_H_
