#include "app/program_logic.h"

namespace tavrel {

// Here and not in the header: what joins all parts is translated once.
ProgramLogic::ProgramLogic(const Machine& on) : machine(on) {}

ProgramLogic::~ProgramLogic() = default;

}  // namespace tavrel
