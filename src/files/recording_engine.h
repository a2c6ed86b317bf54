#ifndef TAVREL_FILES_RECORDING_ENGINE_H_
#define TAVREL_FILES_RECORDING_ENGINE_H_

#include <chrono>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "files/column_keeper.h"
#include "files/controller_journal.h"
#include "files/held_set.h"
#include "files/pump_order.h"
#include "files/recording_file.h"
#include "files/stop_orders.h"
#include "link/link.h"
#include "link/register_access.h"
#include "platform/clock.h"
#include "platform/dialogs.h"
#include "platform/screens.h"
#include "state/messages.h"
#include "state/run_state.h"
#include "state/settings_store.h"

namespace tavrel {

// What moves samples from the instruments into the recording files, with the start and stop of
// a recording and what happens when a file is full. One call of PumpOnce makes at most one
// exchange on the line.
class RecordingEngine {
 public:
  struct Parts {  // all outlive the engine
    RunState& state;
    Link& link;
    RecordingFiles& files;
    SettingsStore& settings;
    Messages& messages;
    Dialogs& dialogs;
    Screens& screens;
    const Clock& clock;
  };
  explicit RecordingEngine(const Parts& parts);

  // One step of the pump: repeats one order to switch a controller off that is due; if there is
  // none, serves a recording whose buffer is in danger, one set in turn; if there is none either,
  // finds the wanted slot and channel, downward, and reads one register. A set that is complete
  // but could not be written is tried again without an exchange.
  void PumpOnce();

  // True from the moment when a recording in danger was served until the pump has found nothing
  // to do: it is to go on at once then, without waiting for the next tick.
  [[nodiscard]] bool IsPressed() const { return is_pressed_; }

  // A recording that was on already is taken up. `stored` is what R of the slot's UnitRef has said
  // just now, empty if the instrument did not answer. Where that says nothing of the recorded
  // inputs, the pump reads the count of one of them first. `asked`: when the question went out, not
  // later, by the clock's Elapsed().
  void TakeUp(int slot, std::optional<std::int16_t> stored, std::chrono::nanoseconds asked = {});

  // Every ten seconds: waiting slots read again, a file that could not be opened again or be
  // written is opened once more, one that others have deleted or moved is put to the disk again,
  // and the orders to switch a controller off that wait become due; the pump then sends them.
  // Makes no exchange itself.
  void TenSecondTick();

  // Every 1200 seconds: closes and opens the files of recording slots again, and of those whose
  // header in memory differs from the file's.
  void FlushFiles();

  // Starts recording on a slot by the user's wish; says in a box why it did not. What the
  // instrument had stored is cleared. Returns after the wait bar.
  void StartRecording(int slot);

  // Asks, then stops. The instrument is not told. A complete set that could not be written is
  // tried once more; if that fails it stays beside the file, and the user is told.
  void StopRecording(int slot);

  // The slot is about to be given to another test: its recording ends without a question, and a
  // file that others have taken away is put to the disk again first. A complete set in hand is
  // written or, if that fails, left beside the file; nothing else of a set or a doubt survives.
  // The file is still open afterwards, unless its header could not be written: SlotFile is empty
  // then. True if nothing was left beside the file. An order to switch the controller off stays:
  // it is the instrument's and not the test's.
  bool GiveUpTest(int slot);

  // The file of the slot is full: stops the recording and carries out UnitEndAction. If the
  // recording goes on in a next file, ReadState is kReading afterwards; if that file cannot be made
  // now, kWaiting: the recording stays on in the full file, WriteFailed says so, and every
  // ten-second tick tries again, also after a restart. Else it is kIdle. Where the
  // controller is switched off, the program of the slot ends.
  void EndOfRecording(int slot);

  // ---- What a user reads and writes past the cursor of the pump. `takers` are slots.

  // Reads X of an input that the recordings of `takers` use: takes its oldest value as the pump
  // would, for the recording that would read it next. The value is in the set in hand afterwards, a
  // failure begins the doubt of the pump. Empty, and nothing is read, while no value of the input
  // can be taken: one is in hand already, or the recording counts or compares first, or its file
  // does not take sets. The pump is woken then to go on with what is in the way.
  [[nodiscard]] std::optional<Reading> ReadSample(const std::vector<int>& takers, int input);

  // A write of X, R or S of an input that the recordings of `takers` use.
  struct SeriesWrite {
    std::vector<int> takers;
    Register to;
    std::int16_t word = 0;
    int stored = 0;  // values of the input that wait in the instrument, before a write of R
  };

  // A series that is cleared while more values wait cannot be made up for.
  static constexpr int kMostToClear = 200;

  // False while a recording compares or makes up for such a write, or its file does not take sets:
  // another write would leave more in doubt than can be decided.
  [[nodiscard]] bool MayWriteSeries(const std::vector<int>& takers, int input) const;

  // Carries it out. What the instrument may have dropped is in doubt afterwards, so that no later
  // value comes into a wrong row, and the user learns what became of each recording.
  [[nodiscard]] LinkResult WriteSeries(const SeriesWrite& write);

  // ---- Orders and holds.

  // What end actions have still to switch off. A successful switch of a controller drops the
  // order for it.
  [[nodiscard]] StopOrders& Orders() { return stop_orders_; }

  // Writes down what is done to the controllers of the recordings.
  [[nodiscard]] ControllerJournal& Controllers() { return controllers_; }

  // The program ends: a file that others have taken away is put to the disk again, and a complete
  // set that could not be written is tried once more. If that fails it stays beside the file for
  // the next start. Returns what is to be told to the user; empty if nothing is. The settings are
  // to be saved afterwards.
  [[nodiscard]] std::string SaveSetInHand(int slot);

  // Somebody else is about to read X of an input that the recordings of `slots` use, or to clear
  // its series, and nobody will hear what the instrument said: the pump compares the columns before
  // it takes the next value. On the disk before this returns.
  void DoubtInput(const std::vector<int>& slots, int input);

  // How long all recordings that run can do without the pump at least, until the first of their
  // buffers is full. 0 where nobody knows how full one is. Empty: none runs.
  [[nodiscard]] std::optional<std::chrono::seconds> BuffersLast() const;

  // The same of one recording whose instrument has not answered for five seconds; empty of any
  // other.
  [[nodiscard]] std::optional<std::chrono::seconds> SilentBufferLasts(int slot) const;

  // The instrument of the slot has thrown away what its buffers held, `sets` of the slot or one or
  // two more. Nothing more is read for the slot before its columns have been compared.
  void NoteCleared(int slot, std::int64_t sets) { columns_.NoteCleared(slot, sets); }

  // A line has been opened, in place of one that `was_simulated` or not. What was said of simulated
  // rows holds no longer once an instrument answers, and a half-read set of it goes on.
  void LineOpened(bool was_simulated);

  // True if at least one channel of the next set has arrived: a half-read set, or a whole one
  // that could not be written yet.
  [[nodiscard]] bool HoldsSet(int slot) const;

 private:
  [[nodiscard]] std::optional<std::chrono::seconds> BufferLasts(int slot) const;

  // The pump.
  [[nodiscard]] bool SendStopOrders();
  [[nodiscard]] bool ServeFirst();
  void WakeThoseInDanger();
  [[nodiscard]] bool FindWork();
  [[nodiscard]] bool SlotHasWork();
  void ServeSlot();
  [[nodiscard]] bool IsSetComplete(int slot) const;
  void EndFullSlot(int slot);
  void ReadOneSample();
  [[nodiscard]] Reading ReadSampleOf(int slot, int channel);
  [[nodiscard]] bool MayReadSample(int slot, int input) const;
  [[nodiscard]] bool IsHeldUp(int slot) const;
  void Wake(int slot);
  void NoteSeriesWrite(int slot, const SeriesWrite& write, bool is_certain);
  void NoteExchange(int slot, std::chrono::nanoseconds asked);
  void NoteSilence(int slot, std::chrono::nanoseconds asked);
  void NoteBack(int slot, std::optional<int> held);
  void ReadBufferCount(int slot);
  [[nodiscard]] int InputToCount(int slot) const;
  [[nodiscard]] int SetsOf(int slot, int input, int count) const;
  void TakeBufferCount(int slot, int sets, std::chrono::nanoseconds asked);
  void TakeSample(int slot, int channel, std::int16_t word);
  void WriteSet(int slot);
  [[nodiscard]] bool AppendSet(int slot);
  void CountBacklogDown(int slot);
  void HideBacklog(int slot);
  void ReopenFile(int slot);
  void TellOfReopening(int slot);
  void RestoreFile(int slot);

  // The columns: what to do about values that were lost on the line.
  using Time = std::chrono::nanoseconds;
  void NoteSample(int slot, int channel, std::int16_t word, Time asked);
  void NoteDrained(int slot, int channel, const ColumnKeeper::Exchange& when);
  [[nodiscard]] bool IsReadFirst(int slot, int channel) const;
  void NoteWaiting(int slot, int input, int count, Time asked);
  void NoteFailure(int slot, int channel);
  void MendColumns(int slot);
  // A word and when it was read.
  struct TimedWord {
    std::int16_t word = 0;
    ColumnKeeper::Exchange when{};
  };
  [[nodiscard]] std::optional<TimedWord> ReadForColumns(int slot, const char* letter, int input);
  void CountForColumns(int slot, int input);
  void DiscardForColumns(int slot, int input);
  void LearnOrder();

  // A simulated line.
  void BeginSimulatedRows(int slot);
  void TakeSetBack(int slot);
  void EmptyHand(int slot);

  // Start, stop and end.
  [[nodiscard]] std::optional<Notice> WhyNotToStart(int slot);
  [[nodiscard]] std::optional<Notice> WhyNotOnInstrument(const UnitRecord& unit);
  [[nodiscard]] bool MaySimulate(int slot);
  [[nodiscard]] bool PrepareInstrument(const UnitRecord& unit);
  void SwitchControllerOff(int slot);
  void GoOnInNextFile(int slot);
  [[nodiscard]] bool WaitsForNextFile(int slot) const;
  [[nodiscard]] bool SaveSettings(int slot);
  void CloseGraphOf(int slot);
  [[nodiscard]] std::string RestoreIfLost(int slot);
  void StopInFile(int slot);
  void EndInFile(int slot);

  RunState& state_;
  Link& link_;
  RecordingFiles& files_;
  SettingsStore& settings_;
  Messages& messages_;
  Dialogs& dialogs_;
  Screens& screens_;
  const Clock& clock_;

  // What was held of a set of the instrument when simulated rows began.
  struct SetAside {
    std::string file;
    HeldSet held;
  };

  BySlot<std::optional<SetAside>> set_aside_;
  PumpOrder order_;
  bool is_pressed_ = false;
  ColumnKeeper columns_;
  StopOrders stop_orders_;
  ControllerJournal controllers_;
  BySlot<std::optional<std::chrono::nanoseconds>> silent_since_;
  BySlot<bool> is_silence_noted_{};
};

}  // namespace tavrel

#endif  // TAVREL_FILES_RECORDING_ENGINE_H_
