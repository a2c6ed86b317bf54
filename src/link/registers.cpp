#include "link/registers.h"

namespace tavrel {

RegisterPlace RegisterPlaceOf(int type_sel, std::string_view letter, int index) {
  constexpr int kLettersInBankV = 'V' - 'G' + 1;
  const char name = letter.empty() ? ' ' : letter.front();
  const bool translated = type_sel == 3 || type_sel == 4;
  if (!translated || name < 'G' || name > 'Z') {
    return {name, index};
  }
  const int group = name - 'G';
  if (group < kLettersInBankV) {
    return {'V', group * kRegistersPerLetter + index};
  }
  return {'P', (group - kLettersInBankV) * kRegistersPerLetter + index};
}

}  // namespace tavrel
