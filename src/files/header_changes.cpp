#include "files/header_changes.h"

#include <array>
#include <bit>
#include <utility>

namespace tavrel {
namespace {

constexpr std::size_t kWords = 100;
constexpr std::size_t kTexts = 40;

// A field of the header: `Count` words or texts from `First` on, in the order of the file.
struct Field {
  const char* Name = nullptr;
  std::size_t First = 0;
  std::size_t Count = 1;
};

constexpr Field kWordFields[] = {
    {"UnitInet", 0},       {"UnitChannels", 1},   {"UnitCtrl", 2},        {"UnitRef", 3},
    {"UnitRole", 4, 15},   {"UnitRecOn", 20},     {"UnitMaxMinutes", 21}, {"UnitInterval", 22},
    {"UnitCtrlState", 23}, {"UnitSetpoint", 25},  {"UnitUpper", 26},      {"UnitLower", 27},
    {"UnitIncrement", 28}, {"UnitFinal", 29},     {"UnitColour", 32, 15}, {"UnitEndAction", 48},
    {"UnitYmax", 49},      {"UnitXmax", 50},      {"UnitView", 51, 4},    {"UnitMarkPos", 55, 20},
    {"UnitMarks", 75},     {"UnitGraphMode", 76}, {"UnitYmin", 89},       {"UnitFast", 90},
    {"UnitRes", 92},       {"UnitProgWait", 98},  {"UnitProgStep", 99},
};
constexpr Field kTextFields[] = {
    {"UnitDesignation", 0}, {"UnitInputName", 1, 15}, {"UnitInputNote", 16, 15},
    {"UnitDate", 31},       {"UnitMarkText", 32, 5},  {"UnitSpareText", 37},
    {"UnitProgName", 38},   {"UnitOrigin", 39},
};

// A header as the words and texts that it consists of.
struct Parts {
  std::array<std::int16_t, kWords> Words{};
  std::array<HeaderText, kTexts> Texts{};
};
static_assert(sizeof(Parts) == sizeof(UnitRecord));

template <std::size_t kCount>
JsonValue::Members NameOf(const Field (&fields)[kCount], std::size_t place) {
  for (const Field& field : fields) {
    if (place < field.First || place >= field.First + field.Count) {
      continue;
    }
    JsonValue::Members name{{"field", field.Name}};
    if (field.Count > 1) {
      name.emplace_back("index", static_cast<std::int64_t>(place - field.First + 1));
    }
    return name;
  }
  return {{"field", "Word"}, {"index", static_cast<std::int64_t>(place)}};
}

void AddChange(JsonValue::List& changes, JsonValue::Members name, JsonValue before,
               JsonValue after) {
  name.emplace_back("old", std::move(before));
  name.emplace_back("new", std::move(after));
  changes.emplace_back(std::move(name));
}

}  // namespace

JsonValue::List HeaderChanges(const UnitRecord& before, const UnitRecord& after) {
  const Parts from = std::bit_cast<Parts>(before);
  const Parts to = std::bit_cast<Parts>(after);
  JsonValue::List changes;
  for (std::size_t place = 0; place < kWords; ++place) {
    const int old_word = from.Words.at(place);
    const int new_word = to.Words.at(place);
    if (old_word != new_word) {
      AddChange(changes, NameOf(kWordFields, place), old_word, new_word);
    }
  }
  for (std::size_t place = 0; place < kTexts; ++place) {
    if (from.Texts.at(place).Bytes != to.Texts.at(place).Bytes) {
      AddChange(changes, NameOf(kTextFields, place), from.Texts.at(place).Get(),
                to.Texts.at(place).Get());
    }
  }
  return changes;
}

}  // namespace tavrel
