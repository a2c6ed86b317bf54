#include "link/simulated_store.h"

#include <algorithm>

#include "base/element.h"
#include "base/number.h"

namespace tavrel {
namespace {

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
  return ElementAt(table, std::clamp(index, 0, last));
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
  auto* const records = ElementAt(SimReg, place.Inet);
  Record* const record = records != nullptr ? ElementAt(*records, column) : nullptr;
  if (record == nullptr) {
    return nullptr;
  }
  if (lettered || letter == 'V') {
    return ElementAt(record->SimV, word);
  }
  return letter == 'P' ? ElementAt(record->SimP, word) : nullptr;
}

std::int16_t* SimulatedStore::Memory(int type_sel, std::string_view address) {
  return Held(SimMem, ReadHex(address) + MemoryBase(type_sel));
}

std::int16_t* SimulatedStore::Port(std::string_view address) {
  return Held(SimPort, ReadHex(address));
}

}  // namespace tavrel
