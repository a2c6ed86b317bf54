#ifndef TAVREL_LINK_SIMULATED_STORE_H_
#define TAVREL_LINK_SIMULATED_STORE_H_

#include <array>
#include <cstdint>
#include <string_view>

namespace tavrel {

// What answers in place of the instruments when no port is configured. No model of a process: a
// word reads what was last written to it, 0 before that. Lives as long as the program and is
// saved nowhere.
//
// Each function returns the word, owned by the store, or nullptr where the store has none.
class SimulatedStore {
 public:
  // Who and where: ComInet 0..7, ComSnet and ComIndex as the caller gave them.
  struct Place {
    int Inet = 0;
    int Snet = 0;
    std::string_view Letter;
    int Index = 0;
  };

  // Variants 3 and 4 choose the record by (Inet, Index) and the word by the letter, G first;
  // variants 1 and 2 choose it by (Inet, Snet) and the word by Index, in one table for letter V
  // and one for letter P.
  [[nodiscard]] std::int16_t* Register(int type_sel, const Place& place);

  // `address` is hexadecimal text. Addresses below the simulated part fall on its first word,
  // those above on its last.
  [[nodiscard]] std::int16_t* Memory(int type_sel, std::string_view address);

  // `address` is hexadecimal text, held to 0..127.
  [[nodiscard]] std::int16_t* Port(std::string_view address);

 private:
  struct Record {
    std::array<std::int16_t, 64> SimV{};
    std::array<std::int16_t, 64> SimP{};
  };

  std::array<std::array<Record, 16>, 8> SimReg{};
  std::array<std::int16_t, 321> SimMem{};
  std::array<std::int16_t, 128> SimPort{};
};

}  // namespace tavrel

#endif  // TAVREL_LINK_SIMULATED_STORE_H_
