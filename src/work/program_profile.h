#ifndef TAVREL_WORK_PROGRAM_PROFILE_H_
#define TAVREL_WORK_PROGRAM_PROFILE_H_

#include <vector>

#include "work/program.h"

namespace tavrel {

// A straight piece of what a program wants of its oven, minutes from its start and degrees.
struct ProfilePiece {
  double FromMinutes = 0;
  double FromDegrees = 0;
  double ToMinutes = 0;
  double ToDegrees = 0;
  bool IsAim = false;  // the end of a ramp of which nobody knows where it begins

  [[nodiscard]] bool operator==(const ProfilePiece&) const = default;
};

// The setpoint over the time of a program as far as its rows tell it. A ramp begins where the step
// before has ended and holds its final value for the rest of its time; behind a controller that is
// off nobody knows the temperature, so such a ramp is shown by its final value only. A step that
// switches off leaves a gap. Rows without a status, a setpoint or a time are passed over.
[[nodiscard]] std::vector<ProfilePiece> ProgramProfile(const ProgramRows& rows);

}  // namespace tavrel

#endif  // TAVREL_WORK_PROGRAM_PROFILE_H_
