#ifndef TAVREL_INSTRUMENT_REGISTERS_H_
#define TAVREL_INSTRUMENT_REGISTERS_H_

namespace instrument {

// The register space is 20 groups, lettered G to Z, of 16 registers each. Inside the program
// a register is one number 0..319: group times 16 plus index. Bank V holds the groups G to V,
// bank P the groups W to Z, so that a V address is the register number itself and a P address
// lies kBankVSize above.
inline constexpr int kGroupSize = 16;
inline constexpr int kBankVSize = 256;
inline constexpr int kBankPSize = 64;
inline constexpr int kRegisterCount = kBankVSize + kBankPSize;
static_assert(kRegisterCount == ('Z' - 'G' + 1) * kGroupSize);

inline constexpr int kMemorySize = 65536;
inline constexpr int kPortCount = 128;
// The memory word that holds the instrument's number on the line minus 1.
inline constexpr int kUnitNumberAddress = 0x8000;
inline constexpr int kHighestInet = 6;

inline constexpr int kInputCount = 16;  // input 0 is the reference sensor
inline constexpr int kControllerCount = 4;

// The number of register `letter` (G..Z) `index` (0..15).
constexpr int RegisterNumber(char letter, int index) {
  return (letter - 'G') * kGroupSize + index;
}
constexpr char LetterOf(int reg) {
  return static_cast<char>('G' + reg / kGroupSize);
}
constexpr int IndexOf(int reg) {
  return reg % kGroupSize;
}

}  // namespace instrument

#endif  // TAVREL_INSTRUMENT_REGISTERS_H_
