#ifndef TAVREL_TESTS_TRUTH_LEDGER_VERDICT_H_
#define TAVREL_TESTS_TRUTH_LEDGER_VERDICT_H_

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "files/ledger.h"
#include "tests/truth/comparison.h"

namespace tavrel {

// Whether the ledgers of recordings say what the instruments did; of several recordings all are
// added.
struct LedgerVerdict {
  // Sets apart that the bounds of one loss may be, see docs/recording_journal.md; of a restart of
  // the instrument the phase of the new series is not known either.
  static constexpr std::int64_t kWidest = 2;
  static constexpr std::int64_t kWidestOfRestart = 3;

  std::int64_t width = 0;             // by which bounds of losses are apart at the most
  std::vector<std::string> problems;  // in words; none: the figures are the truth's

  [[nodiscard]] bool Agrees() const { return problems.empty(); }
  void Add(const LedgerVerdict& other);

  // For a table: "same", "in 2" where bounds hold the truth, "OTHER".
  [[nodiscard]] std::string Text() const;
};

// `found`: what the comparison of this recording with the truth says. `made`: sets that the
// instrument has made of it. `told`: what the program told its user.
[[nodiscard]] LedgerVerdict CompareLedger(const RecordedSlot& slot, const LedgerFigures& figures,
                                          const Findings& found, int made, const Told& told);

}  // namespace tavrel

#endif  // TAVREL_TESTS_TRUTH_LEDGER_VERDICT_H_
