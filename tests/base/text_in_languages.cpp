// A text as it stands in the program, compiled with GERMAN as its German form.
#include "base/language.h"

namespace tavrel {

constexpr BothLanguages kText{"no answer", GERMAN};
static_assert(kText.In(Language::kEnglish) == "no answer");

}  // namespace tavrel
