#include "tests/truth/told_texts.h"

#include <regex>

// The only place that knows by which texts the program tells of values and sets.
namespace tavrel {
namespace {

// "FILE: row 17, inputs 3, 5: what" or "FILE: rows 0 and 1, input 3: what", or "rows 4 to 7".
constexpr const char* kDoubt =
    R"((?:^|\\n)([^\s\\]+\.\S+): rows? (\d+)(?: (?:and|to) (\d+))?, inputs? ([0-9, ]+): (.*))";
// "FILE: row 17: ... before this row about 12 sets were lost".
constexpr const char* kLoss =
    R"((?:^|\\n)([^\s\\]+\.\S+): row \d+: .*before this row (about |perhaps )?(?:(\d+) sets? w|an unknown number).*lost)";
// Of all rows from the one that is named on.
constexpr const char* kFromHereOn = "from here on";
// A value is not known whose place had to be filled.
constexpr const char* kInItsPlace = "in its place";

std::vector<int> NumbersIn(const std::string& text) {
  std::vector<int> numbers;
  const std::regex number("[0-9]+");
  for (std::sregex_iterator found(text.begin(), text.end(), number), end; found != end; ++found) {
    numbers.push_back(std::stoi(found->str()));
  }
  return numbers;
}

ToldDoubt DoubtOf(const std::smatch& found) {
  ToldDoubt doubt;
  doubt.file = found[1];
  doubt.first_row = std::stoi(found[2]);
  doubt.inputs = NumbersIn(found[4]);
  const std::string what = found[5];
  const bool is_open = what.find(kFromHereOn) != std::string::npos;
  const int last = found[3].matched ? std::stoi(found[3]) : doubt.first_row;
  doubt.last_row = is_open ? ToldDoubt::kOpen : last;
  doubt.kind = what.find(kInItsPlace) != std::string::npos ? ToldDoubt::Kind::kFilled
                                                           : ToldDoubt::Kind::kUncertain;
  return doubt;
}

}  // namespace

Told ReadTold(const std::vector<std::string>& texts) {
  Told told;
  const std::regex doubt(kDoubt);
  const std::regex loss(kLoss);
  for (const std::string& text : texts) {
    std::smatch found;
    if (std::regex_search(text, found, doubt)) {
      told.doubts.push_back(DoubtOf(found));
    } else if (std::regex_search(text, found, loss)) {
      const bool is_known = found[3].matched;
      told.losses.push_back({found[1], is_known ? std::optional(std::stoi(found[3])) : std::nullopt,
                             !is_known || found[2].matched});
    }
  }
  return told;
}

}  // namespace tavrel
