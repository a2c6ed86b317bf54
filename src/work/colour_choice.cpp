#include "work/colour_choice.h"

namespace tavrel {

std::optional<int> ColourChoice::Ask(int input, int code) {
  input_ = input;
  present_code_ = code;
  chosen_.reset();
  OpenScreen();
  screens_.Show(View::kTavColor);
  CloseScreen();
  return chosen_;
}

void ColourChoice::PicColor_Click(double y) {
  if (!IsOpen() || !(y >= 0 && y < kRows)) {
    return;
  }
  const int code = static_cast<int>(y) + 1;
  chosen_ = code == kRows ? 0 : code;
  CloseScreen();
}

}  // namespace tavrel
