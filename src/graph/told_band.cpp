#include "graph/told_band.h"

#include <algorithm>
#include <array>
#include <optional>

#include "files/ledger_text.h"
#include "files/reasons.h"

namespace tavrel {
namespace {

constexpr int kLeastColumns = 3;
constexpr std::size_t kMostLines = 5;

constexpr BothLanguages kRow{"row ", "Zeile "};
constexpr BothLanguages kRows{"rows ", "Zeilen "};
constexpr BothLanguages kInput{", input ", ", Eingang "};
constexpr BothLanguages kInputList{", inputs ", ", Eingänge "};
constexpr BothLanguages kTo{" to ", " bis "};
constexpr BothLanguages kBefore{"before row ", "vor Zeile "};
constexpr BothLanguages kLater{": fetched later from the instrument's buffer",
                               ": später aus dem Puffer des Geräts geholt"};
constexpr BothLanguages kFilled{": a value stands in place of a lost one",
                                ": ein Wert steht anstelle eines verlorenen"};
constexpr BothLanguages kQuestioned{": values may stand in a wrong row",
                                    ": Werte stehen vielleicht in einer falschen Zeile"};
constexpr BothLanguages kSetMissing{" set is missing", " Satz fehlt"};
constexpr BothLanguages kSetsMissing{" sets are missing", " Sätze fehlen"};
constexpr BothLanguages kMore{" more places", " weitere Stellen"};

std::string In(const BothLanguages& text, Language language) {
  return std::string(text.In(language));
}

BandKind KindOf(const ToldRows& told) {
  switch (told.What) {
    case ToldRows::Kind::kLater:
      return BandKind::kLater;
    case ToldRows::Kind::kFilled:
    case ToldRows::Kind::kQuestioned:
      return BandKind::kFilled;
    case ToldRows::Kind::kMissing:
      break;
  }
  return BandKind::kMissing;
}

// The column of a row; a row between two rows is the middle between their columns.
double ColumnOf(const BandView& in, double row) {
  const double record = row * in.Channels + RecordOfRow(0, in.Channels);
  const int records = std::max(in.View.RecLast - in.View.RecFirst, 1);
  return (record - in.View.RecFirst) * (in.Columns - 1) / records;
}

struct Columns {
  int first = 0;
  int last = 0;
};

// Empty for rows that the view does not show. A place between two rows belongs to both of them.
std::optional<Columns> ColumnsOf(const ToldRows& told, const BandView& in) {
  constexpr double kHalf = 0.5;
  const bool is_place = told.What == ToldRows::Kind::kMissing;
  const auto first = static_cast<double>(told.First);
  const auto last = static_cast<double>(told.Last);
  const double right = in.Columns - 1;
  if (ColumnOf(in, last) < 0 || ColumnOf(in, is_place ? first - 1 : first) > right) {
    return std::nullopt;
  }
  const auto held = [right](double column) { return std::clamp(column, 0.0, right); };
  const double from = held(ColumnOf(in, first - kHalf));
  const double to = held(ColumnOf(in, is_place ? first - kHalf : last + kHalf));
  const double lacking = std::max(kLeastColumns - 1 - (to - from), 0.0);
  const int least = static_cast<int>(held(from - lacking / 2));
  const int wide = std::max(static_cast<int>(to - from), kLeastColumns - 1);
  const int most = static_cast<int>(right);
  const int begin = std::max(std::min(least, most - wide), 0);
  return Columns{begin, std::min(begin + wide, most)};
}

std::string RowsText(const ToldRows& told, Language language) {
  const std::string first = std::to_string(told.First);
  if (told.First == told.Last) {
    return In(kRow, language) + first;
  }
  return In(kRows, language) + first + In(kTo, language) + std::to_string(told.Last);
}

// ", input 3", ", inputs 3, 5".
std::string InputsText(const std::vector<int>& inputs, Language language) {
  std::string text;
  for (const int input : inputs) {
    text += (text.empty() ? In(inputs.size() == 1 ? kInput : kInputList, language) : ", ") +
            std::to_string(input);
  }
  return text;
}

std::string TextOf(const ToldRows& told, Language language) {
  const std::string why = told.Why.empty() ? "" : " (" + ReasonIn(language, told.Why) + ")";
  const std::string rows = RowsText(told, language) + InputsText(told.Inputs, language);
  switch (told.What) {
    case ToldRows::Kind::kLater:
      return rows + In(kLater, language) + why;
    case ToldRows::Kind::kFilled:
      return rows + In(kFilled, language) + why;
    case ToldRows::Kind::kQuestioned:
      return rows + In(kQuestioned, language) + why;
    case ToldRows::Kind::kMissing:
      break;
  }
  const bool is_one = told.Missing == SetBounds{1, 1};
  return In(kBefore, language) + std::to_string(told.First) + ": " +
         BoundsText(told.Missing, language) + In(is_one ? kSetMissing : kSetsMissing, language) +
         why;
}

}  // namespace

Colour BandColour(BandKind kind) {
  constexpr std::array<Colour, kBandKinds> kColours = {
      {{0xA8, 0xD0, 0xF8}, {0xD8, 0x78, 0x00}, {0x80, 0x00, 0x10}}};
  return kColours.at(static_cast<std::size_t>(kind));
}

double BandHeight(BandKind kind) {
  constexpr std::array<double, kBandKinds> kHeights = {0.6, 0.8, 1};
  return kHeights.at(static_cast<std::size_t>(kind));
}

std::vector<BandRun> BandRuns(std::span<const ToldRows> told, const BandView& in) {
  // How many places of a kind begin in a column, less those that have ended in front of it.
  using Steps = std::array<int, kBandKinds>;
  std::vector<Steps> steps(static_cast<std::size_t>(std::max(in.Columns, 0)) + 1, Steps{});
  if (in.Columns < 1) {
    return {};
  }
  for (const ToldRows& place : told) {
    if (const auto columns = ColumnsOf(place, in)) {
      const auto kind = static_cast<std::size_t>(KindOf(place));
      ++steps.at(static_cast<std::size_t>(columns->first)).at(kind);
      --steps.at(static_cast<std::size_t>(columns->last) + 1).at(kind);
    }
  }
  std::vector<BandRun> runs;
  Steps open{};
  for (int column = 0; column < in.Columns; ++column) {
    std::optional<BandKind> top;
    for (std::size_t kind = 0; kind < open.size(); ++kind) {
      open.at(kind) += steps.at(static_cast<std::size_t>(column)).at(kind);
      top = open.at(kind) > 0 ? std::optional(static_cast<BandKind>(kind)) : top;
    }
    if (!top) {
      continue;
    }
    const bool goes_on =
        !runs.empty() && runs.back().What == *top && runs.back().Last == column - 1;
    if (!goes_on) {
      runs.push_back({*top, column, column});
    }
    runs.back().Last = column;
  }
  return runs;
}

std::string BandTip(std::span<const ToldRows> told, const BandView& in, int column,
                    Language language) {
  std::vector<const ToldRows*> here;
  for (const ToldRows& place : told) {
    const auto columns = ColumnsOf(place, in);
    if (columns && column >= columns->first && column <= columns->last) {
      here.push_back(&place);
    }
  }
  std::stable_sort(here.begin(), here.end(), [](const ToldRows* left, const ToldRows* right) {
    return KindOf(*left) > KindOf(*right);
  });
  const std::size_t shown = here.size() > kMostLines ? kMostLines - 1 : here.size();
  std::string text;
  for (std::size_t place = 0; place < shown; ++place) {
    text += (text.empty() ? "" : "\n") + TextOf(*here[place], language);
  }
  return shown == here.size()
             ? text
             : text + "\n" + std::to_string(here.size() - shown) + In(kMore, language);
}

}  // namespace tavrel
