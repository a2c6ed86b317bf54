#include "link/simulated_store.h"

#include <algorithm>

#include "base/number.h"

namespace tavrel {
namespace {

template <typename Table>
bool IsIndex(const Table& table, int index) {
  return index >= 0 && index < static_cast<int>(table.size());
}

// What is added to an address, read as 16 bits signed, to give the place in the table.
int MemoryBase(int type_sel) {
  switch (type_sel) {
    case 3:
      return 31568;  // the table starts at 84B0
    case 4:
      return 31168;  // at 8640
    default:
      return 384;  // at FE80
  }
}

template <typename Table>
std::int16_t* Held(Table& table, int index) {
  const int last = static_cast<int>(table.size()) - 1;
  return &table[static_cast<std::size_t>(std::clamp(index, 0, last))];
}

}  // namespace

std::int16_t* SimulatedStore::Register(int type_sel, const Place& place) {
  if (place.Letter.empty()) {
    return nullptr;
  }
  const bool lettered = type_sel == 3 || type_sel == 4;
  const char letter = place.Letter.front();
  const int column = lettered ? place.Index : place.Snet;
  const int word = lettered ? letter - 'G' : place.Index;
  const auto inet = static_cast<std::size_t>(place.Inet);
  if (!IsIndex(SimReg, place.Inet) || !IsIndex(SimReg[inet], column)) {
    return nullptr;
  }
  Record& record = SimReg[inet][static_cast<std::size_t>(column)];
  if (!IsIndex(record.SimV, word)) {
    return nullptr;
  }
  if (lettered || letter == 'V') {
    return &record.SimV[static_cast<std::size_t>(word)];
  }
  return letter == 'P' ? &record.SimP[static_cast<std::size_t>(word)] : nullptr;
}

std::int16_t* SimulatedStore::Memory(int type_sel, std::string_view address) {
  return Held(SimMem, ReadHex(address) + MemoryBase(type_sel));
}

std::int16_t* SimulatedStore::Port(std::string_view address) {
  return Held(SimPort, ReadHex(address));
}

}  // namespace tavrel
