#ifndef TAVREL_TESTS_SETUP_SETUP_BENCH_H_
#define TAVREL_TESTS_SETUP_SETUP_BENCH_H_

#include <initializer_list>
#include <memory>
#include <string>

#include "setup/installation.h"
#include "tests/support/bench_program.h"

namespace tavrel {

// A header of a test that the installation accepts.
inline UnitRecord TestHeader(int inet, int controller, int reference,
                             std::initializer_list<int> measuring = {}, bool rec_on = false) {
  UnitRecord unit = DefaultUnitRecord();
  unit.UnitDesignation.Set("OVN:Oven");
  unit.UnitInet = static_cast<std::int16_t>(inet);
  unit.UnitRole = {};
  SetRole(unit, controller, Role::kController);
  SetRole(unit, reference, Role::kReference);
  for (const int input : measuring) {
    SetRole(unit, input, Role::kMeasuring);
  }
  unit.UnitCtrl = static_cast<std::int16_t>(controller);
  unit.UnitRef = static_cast<std::int16_t>(reference);
  unit.UnitChannels = static_cast<std::int16_t>(unit.RecordedInputs());
  unit.UnitRecOn = rec_on ? 1 : 0;
  return unit;
}

}  // namespace tavrel

#endif  // TAVREL_TESTS_SETUP_SETUP_BENCH_H_
