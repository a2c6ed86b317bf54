#ifndef TAVREL_SERVICE_PROCESSOR_REGISTERS_H_
#define TAVREL_SERVICE_PROCESSOR_REGISTERS_H_

#include <cstdint>
#include <string>
#include <string_view>

namespace tavrel {

inline constexpr int kProcessorRegisters = 128;

// The name that the processor's manual gives to the input/output register at `address` 0..127;
// empty for one without a name.
[[nodiscard]] std::string_view SymbolOf(int address);

// The lower eight bits from the highest on, each as " 1 " or " 0 ", with a gap in the middle.
[[nodiscard]] std::string BitsOf(std::int16_t word);

}  // namespace tavrel

#endif  // TAVREL_SERVICE_PROCESSOR_REGISTERS_H_
