#include "service/service_screen.h"

#include <algorithm>

namespace tavrel {

void ServiceScreen::Step() {
  if (!IsOpen()) {
    return;
  }
  if (parts_.link.PortOpen) {
    TakeStep();
  } else {
    StepWithoutPort();
  }
}

int ServiceScreen::SelectedInet() const {
  return std::max(parts_.state.ActiveInet, 1);
}

void ServiceScreen::OpenScreen(int inet) {
  ModalScreen::OpenScreen();
  inet_ = inet;
  com_icon_ = false;
}

// A screen may have shown the hourglass while it read.
void ServiceScreen::CloseNow() {
  CloseScreen();
  parts_.events.SetPointer(Pointer::kNormal);
}

std::string ServiceScreen::InstrumentName(int inet) {
  return " Tavrel-" + std::to_string(inet);
}

bool ServiceScreen::MissesAnswer(LinkResult result, int set_back) {
  const bool is_silent = parts_.watch.MissesAnswer(result, set_back);
  com_icon_ = is_silent || (com_icon_ && result == LinkResult::kTimeOut);
  return is_silent;
}

}  // namespace tavrel
