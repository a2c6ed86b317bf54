#include "files/ledger_text.h"

#include <algorithm>
#include <iterator>

#include "files/reasons.h"

namespace tavrel {
namespace {

constexpr BothLanguages kTo{" to ", " bis "};
constexpr BothLanguages kOrMore{" or more", " oder mehr"};
constexpr BothLanguages kSets{" sets", " Sätze"};
constexpr BothLanguages kSet{" set", " Satz"};
constexpr BothLanguages kComplete{", complete", ", vollständig"};
constexpr BothLanguages kLost{" lost", " verloren"};
constexpr BothLanguages kOn{" on ", " am "};
constexpr BothLanguages kAt{" at ", " um "};
constexpr BothLanguages kPlaces{" in several places", " an mehreren Stellen"};
constexpr BothLanguages kFilled{" filled in", " ersetzt"};
constexpr BothLanguages kQuestioned{" in question", " fraglich"};
constexpr BothLanguages kUnwatched{" rows without a journal", " Zeilen ohne Journal"};
constexpr BothLanguages kNoLedger{"no ledger: ", "keine Bilanz: "};

std::string In(const BothLanguages& text, Language language) {
  return std::string(text.In(language));
}

// " on 14.03. at 02:10" of "2026-03-14T02:10:00+01:00".
std::string MomentText(const std::string& time, Language language) {
  constexpr std::size_t kMinutesEnd = 16;
  if (time.size() < kMinutesEnd) {
    return "";
  }
  return In(kOn, language) + time.substr(8, 2) + "." + time.substr(5, 2) + "." + In(kAt, language) +
         time.substr(11, 5);
}

std::string LostText(const LedgerFigures& figures, Language language) {
  const std::string text = ", " + BoundsText(figures.Lost, language) + In(kLost, language);
  if (figures.Losses.size() > 1) {
    return text + In(kPlaces, language);
  }
  return figures.Losses.empty() ? text : text + MomentText(figures.Losses.front().Time, language);
}

std::string CountText(std::int64_t count, const BothLanguages& what, Language language) {
  return count == 0 ? "" : ", " + std::to_string(count) + In(what, language);
}

}  // namespace

std::string BoundsText(const SetBounds& sets, Language language) {
  const std::string least = std::to_string(sets.Least);
  if (!sets.Most) {
    return least + In(kOrMore, language);
  }
  return sets.IsExact() ? least : least + In(kTo, language) + std::to_string(*sets.Most);
}

std::string LedgerSummary(const LedgerFigures& figures, Language language) {
  if (!figures.IsKnown) {
    return In(kNoLedger, language) + ReasonIn(language, figures.Why);
  }
  const std::string text =
      std::to_string(figures.Recorded) + In(figures.Recorded == 1 ? kSet : kSets, language);
  if (figures.IsComplete()) {
    return text + In(kComplete, language);
  }
  return text + (figures.Lost.IsNone() ? "" : LostText(figures, language)) +
         CountText(figures.Filled, kFilled, language) +
         CountText(figures.Questioned, kQuestioned, language) +
         CountText(figures.Unwatched, kUnwatched, language);
}

}  // namespace tavrel
