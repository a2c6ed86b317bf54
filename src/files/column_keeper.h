#ifndef TAVREL_FILES_COLUMN_KEEPER_H_
#define TAVREL_FILES_COLUMN_KEEPER_H_

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "files/column_evidence.h"
#include "files/full_buffer.h"
#include "files/recording_file.h"
#include "platform/clock.h"
#include "state/messages.h"
#include "state/run_state.h"

namespace tavrel {

// Keeps the columns of the recordings side by side. The instrument hands each value over once; a
// reply that does not arrive takes its value with it, and its column would run one set ahead of
// the others from then on. So every value and every count is told to the evidence of its slot,
// and what the evidence says is done here: a lost value is filled in, what nobody can know is told
// and left alone, and what a full buffer has pushed out of some inputs is taken out of the others.
//
// Makes no exchange itself: it says which one is to be made, and is told how it went.
class ColumnKeeper {
 public:
  using Exchange = ColumnEvidence::Exchange;
  using Time = ColumnEvidence::Time;

  // What is to be done next for a slot.
  struct Action {
    enum Kind {
      kWait,     // nothing now
      kCount,    // read R of `input`
      kDiscard,  // read X of `input`: its oldest value is given up
      kDecide,   // call Decide(); no exchange
    };
    Kind kind = kWait;
    int input = 0;
  };

  // All outlive this.
  ColumnKeeper(RunState& state, RecordingFiles& files, Messages& messages, const Clock& clock);

  // The series of the slot have just been cleared: their first samples are watched.
  void StartSeries(int slot);

  // The recording is over.
  void Stop(int slot);

  // How the reading of a sample went. A failed one begins a doubt.
  void Taken(int slot, int input, const Exchange& when);
  void Empty(int slot, int input, const Exchange& when);
  void Failed(int slot, int input);

  // The instrument has thrown away what it held, so many sets at least. It is as after a restart
  // of the instrument.
  void NoteCleared(int slot, std::int64_t sets);

  // The user has made the instrument drop values of an input, or start its series anew: between
  // `least` and `most` of its samples are gone. Nothing is decided before its next sample is there.
  // What is missing afterwards is filled in and told.
  void Dropped(int slot, int input, int least, int most);

  // The user has changed how an input is sampled: its place among the others is not known.
  void Unsettle(int slot, int input);

  // Called on the ten-second tick for a slot that reads.
  void Watch(int slot);

  // Register R of an input of the slot, read for another reason: a buffer that is full begins a
  // doubt of all columns.
  void NoteStored(int slot, int input, int count);

  // True if a full buffer was settled without making room, and no value was taken since: to count
  // again before the next one would say the same again.
  [[nodiscard]] bool IsStillFull(int slot) const { return columns_[slot].is_still_full; }

  // While the columns of a slot are in doubt: what to do for it, and how it went. `refused` is an
  // answer too, but a useless one.
  [[nodiscard]] Action Next(int slot);
  void Counted(int slot, int input, int count, const Exchange& when);
  void Discarded(int slot, int input, bool had_value, const Exchange& when);
  void NotCounted(int slot, bool refused);
  // False if there is no value to fill a place with now.
  [[nodiscard]] bool Decide(int slot);

  // A slot whose series are watched and for which a count is due, 0 for none; and how it went.
  [[nodiscard]] int SlotToLearn();
  [[nodiscard]] int InputToLearn(int slot);
  void NotLearned(int slot) { columns_[slot].rests = true; }

  // The set in hand of a slot has been written: what was lost before the first value is repeated
  // in the next set.
  void SetWritten(int slot);

  // Samples of an input that are gone by the user's wish.
  struct DroppedSeries {
    int input = 0;
    int least = 0;
    int most = 0;
    Time since{};
    bool is_doubted = false;  // its next sample has been seen, or will not come
  };

  // All that is known of a slot.
  struct Column {
    ColumnEvidence evidence;
    FullBuffer full;
    std::vector<int> doubted;   // inputs whose verdict is not carried out yet
    bool is_suspicion = false;  // nothing failed; what stays open is no doubt
    std::vector<DroppedSeries> dropped;
    Time look_at_dropped{};  // not before
    int refusals = 0;        // in a row
    bool rests = false;      // no learning before the next ten-second tick
    // An input had no data while others had theirs; then, since when it is suspected.
    std::optional<Time> misses_since;
    // What was known before the buffer was full, or the instrument was switched off and on; what
    // was made since then, and what was counted.
    std::optional<ColumnEvidence> before;
    std::optional<ColumnEvidence::Range> lost;
    std::optional<int> stored;
    Time counted{};            // when `stored` was
    int restarts = 0;          // seen since the columns were not in doubt
    std::int64_t cleared = 0;  // sets that are known to be lost by them
    // Rows until which there was none: as it seems, and as the looks before that have said. What a
    // look finds possible may still be a restart that came at a moment like it.
    std::array<std::int32_t, 3> proven{};
    bool is_still_full = false;            // no value was taken since
    bool may_make_room = false;            // compared anew, and no room was made in this run
    std::optional<std::int32_t> told_row;  // to be written next when lost sets were told last
  };

  // Taken along where a recording goes on in a next file.
  [[nodiscard]] Column Of(int slot) const { return columns_[slot]; }
  void GoOn(int slot, const Column& column) { columns_[slot] = column; }

 private:
  // Sets that a full buffer or a restart has cost.
  struct LostSets {
    std::optional<std::int64_t> count;  // empty if nothing tells how many
    std::int64_t least = 0;             // so many are certain
    std::int64_t most = 0;              // so many are possible
    bool is_exact = false;
    bool is_steady = false;  // counted by the clock that nobody sets
  };

  [[nodiscard]] ColumnEvidence& EvidenceOf(int slot);
  void Renew(int slot);
  void TakeUpDoubt(int slot);
  void TakeUpDropped(int slot);
  void CompareAgain(int slot);
  void KeepComparison(int slot, ColumnMemory::Comparison compared);
  [[nodiscard]] std::vector<int> RecordedInputs(int slot) const;
  [[nodiscard]] std::vector<int> MissingInputs(int slot) const;
  [[nodiscard]] bool IsHalfRead(int slot) const;
  [[nodiscard]] bool HasWaitedLong(int slot) const;
  [[nodiscard]] bool IsSuspicionOver(int slot) const;
  [[nodiscard]] bool MayBeFull(int slot, int input, int count) const;
  void Doubt(int slot, int input);
  void Suspect(int slot);
  void EndDoubt(int slot);
  [[nodiscard]] bool CarryOut(int slot);
  [[nodiscard]] const DroppedSeries* AwaitedSeries(int slot) const;
  void CountDropped(int slot, int input, int count, Time now);
  [[nodiscard]] bool CarryOutDropped(int slot);
  void GiveUpDropped(int slot);
  [[nodiscard]] RowRange RowsOfSets(int slot, int first, int count) const;
  [[nodiscard]] bool MakeUp(int slot, int input, int gone);
  void TakeRestart(int slot);
  void KeepRestart(int slot);
  [[nodiscard]] bool CarryOutRestart(int slot);
  [[nodiscard]] BothLanguages WhatHappened(int slot) const;
  void TellForgottenSets(int slot, std::int32_t row);
  void NoteConflict(int slot);
  void NoteProof(int slot);
  void BeginFull(int slot, int input);
  [[nodiscard]] int SetsOfRoom(int slot) const;
  [[nodiscard]] Action NextOfFull(int slot);
  void CompareFull(int slot);
  void CountFull(int slot, int input);
  void ForgetFallsOfOthers(int slot, int input);
  [[nodiscard]] bool IsToCountLost(int slot, int input) const;
  void NoteLost(int slot, int input, int count, Time when);
  void NoteStillFull(int slot, int input);
  [[nodiscard]] bool CarryOutFull(int slot);
  [[nodiscard]] bool Fill(int slot, const std::vector<int>& inputs);
  [[nodiscard]] std::optional<std::int16_t> ValueBefore(int slot, int input);
  // What is told of values: another stands in place of a lost one, those of these rows may stand
  // in a wrong row, or those of the rows from there on.
  enum class Mark { kFilled, kFilledForUser, kQuestioned, kOnward };
  void Tell(int slot, const std::vector<int>& inputs, const BothLanguages& what, Mark mark);
  void Tell(int slot, const RowRange& rows, const std::vector<int>& inputs,
            const BothLanguages& what, Mark mark);
  // Why the instrument has lost sets, as the journal names it.
  struct Cause {
    const char* name = "";
    BothLanguages what = {};
  };
  void NoteLostSets(int slot, std::int32_t before, const LostSets& lost, const Cause& cause);
  [[nodiscard]] LostSets CountLostSets(int slot) const;
  [[nodiscard]] static std::string TextOf(const LostSets& lost, Language language);
  void TellSets(int slot, std::int32_t row, const BothLanguages& what, const LostSets& lost);
  [[nodiscard]] std::int64_t WallTimeOfCount(int slot) const;
  [[nodiscard]] bool SaysMoreLost(int slot, const std::optional<ColumnEvidence::Range>& lost,
                                  int stored, Time when) const;
  void CountFromNow(int slot);
  void TellLostSets(int slot, std::int32_t row);
  [[nodiscard]] std::int64_t TimeOfSet(int slot);  // by the wall clock; of the one in hand

  RunState& state_;
  RecordingFiles& files_;
  Messages& messages_;
  const Clock& clock_;
  BySlot<Column> columns_;
};

}  // namespace tavrel

#endif  // TAVREL_FILES_COLUMN_KEEPER_H_
