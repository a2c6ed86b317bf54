#include "files/reasons.h"

#include <array>
#include <optional>

#include "base/text.h"

namespace tavrel {
namespace {

constexpr std::array kReasons = {
    &reason::kLostNextStands,
    &reason::kLostValueBeforeStands,
    &reason::kMayBeLost,
    &reason::kSamplingChanged,
    &reason::kMoreMayBeDropped,
    &reason::kClearedNextStands,
    &reason::kClearedValueBeforeStands,
    &reason::kFullWrongRow,
    &reason::kClearedWrongRow,
    &reason::kRestartedWrongRow,
    &reason::kClearedTooEarly,
    &reason::kRestartedTooEarly,
    &reason::kFull,
    &reason::kCleared,
    &reason::kRestarted,
    &reason::kPowerOff,
    &reason::kFewerCame,
    &reason::kNoFile,
    &reason::kAnotherFile,
    &reason::kRecordedElsewhere,
    &reason::kShorter,
    &reason::kSetDoesNotFit,
    &reason::kFileFull,
    &reason::kNoFreeNextName,
    &reason::kNoJournalDirectory,
    &reason::kJournalInTheWay,
    &reason::kTooLong,
    &reason::kUnread,
    &reason::kHeaderNotAsSealed,
    &reason::kRowNotAsSealed,
    &reason::kRowsNotAsSealed,
    &reason::kRowMissing,
    &reason::kRowsMissing,
    &reason::kRowNotJudged,
    &reason::kRowsNotJudged,
    &reason::kNoSeal,
    &reason::kRowBehindSeal,
    &reason::kRowsBehindSeal,
    &reason::kJournalTorn,
    &reason::kLineBehindSeal,
    &reason::kLinesBehindSeal,
    &reason::kTornByte,
    &reason::kTornBytes,
    &reason::kJournalLine,
    &reason::kJournalBegin,
    &reason::kNoJournal,
    &reason::kPart,
    &reason::kSimulated,
};

constexpr std::size_t kMostNumbers = 2;
using Numbers = std::array<std::string_view, kMostNumbers>;

// The numbers that stand at "%1" and "%2" of the pattern, in this order.
std::optional<Numbers> NumbersOf(std::string_view pattern, std::string_view text) {
  Numbers numbers;
  std::size_t count = 0;
  while (!pattern.empty()) {
    if (pattern.front() == '%' && count < kMostNumbers) {
      std::size_t length = 0;
      while (length < text.size() && IsDigit(text[length])) {
        ++length;
      }
      if (length == 0) {
        return std::nullopt;
      }
      numbers.at(count) = text.substr(0, length);
      ++count;
      text.remove_prefix(length);
      pattern.remove_prefix(2);
      continue;
    }
    if (text.empty() || text.front() != pattern.front()) {
      return std::nullopt;
    }
    text.remove_prefix(1);
    pattern.remove_prefix(1);
  }
  return text.empty() ? std::optional(numbers) : std::nullopt;
}

}  // namespace

std::string ReasonIn(Language language, std::string_view english) {
  const std::string_view its_journal = reason::kItsJournal.English;
  if (english.starts_with(its_journal)) {
    return reason::kItsJournal.Text(language) +
           ReasonIn(language, english.substr(its_journal.size()));
  }
  for (const BothLanguages* each : kReasons) {
    if (const auto numbers = NumbersOf(each->English, english)) {
      return each->Text(language, {numbers->at(0), numbers->at(1)});
    }
  }
  return std::string(english);
}

}  // namespace tavrel
