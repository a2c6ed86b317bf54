#ifndef TAVREL_STATE_RUN_STATE_H_
#define TAVREL_STATE_RUN_STATE_H_

#include <array>
#include <chrono>
#include <cstdint>
#include <string>

#include "base/active_view.h"
#include "platform/file_reservation.h"
#include "platform/random_file.h"
#include "state/column_memory.h"
#include "state/deadline.h"
#include "state/settings_values.h"
#include "state/unit_record.h"

namespace tavrel {

inline constexpr int kWorkHeader = kSlots + 1;   // number of the header for cutting subfiles
inline constexpr std::int16_t kNoData = -32768;  // "no value" in all register tables

// What the pump does for a slot.
enum class ReadState : int {
  kIdle = 0,     // nothing to fetch
  kWaiting = 1,  // the instrument had nothing new, or the set in hand could not be written
  kReading = 2,  // fetch samples now
  kLastSet = 3,  // fetch one last complete set, then stop
};

// The shared block of the program: which files and instruments are attached, what each slot is
// doing, which screen is in front. Plain data, one instance for the life of the process, used
// by the one thread of the program; every reader sees the last write at once.
//
// A slot with an empty SlotFile is not in use and is touched by no cycle.
struct RunState {
  // Headers: 1..12 the slots, 0 the viewed file, 13 a work header for cutting subfiles.
  Numbered<UnitRecord, kViewedFile, kWorkHeader> Unit{};

  // Tables by slot.
  BySlot<std::string> SlotFile;   // file name; empty: the row is not in use
  BySlot<std::string> SlotPath;   // its directory
  BySlot<RandomFile> SlotFileNo;  // its open file; closed while there is none
  // Two users may have one data directory: what is written to belongs to one program, also while
  // its file is opened anew.
  BySlot<FileReservation> Reserved;
  BySlot<bool> SlotDirty{};            // the header in memory differs from the file's
  BySlot<std::int32_t> SampleLimit{};  // rows that the file may hold
  BySlot<std::int32_t> SampleCount{};  // rows in the file, 0..32767
  BySlot<std::int32_t> RecInterval{};  // seconds between rows, never 0 for a slot in use
  BySlot<tavrel::ReadState> ReadState{};
  BySlot<bool> ProgRunning{};                   // a controller program runs on this slot
  BySlot<ByInput<bool>> SampleSeen{};           // by input 1..15: arrived
  BySlot<ByInput<std::int16_t>> SampleValue{};  // and its word
  BySlot<bool> ColumnsInDoubt{};  // a value of the next set may be lost: compare the columns first
  BySlot<int> AskedInput{};       // input whose reading was cut off, 0 for none
  BySlot<ColumnMemory> Columns;   // what is known of the order of the inputs, and what is owed
  BySlot<bool> WriteFailed{};     // the set in hand could not be written yet
  BySlot<bool> StopPending{};     // Z = 0 of the end action is not acknowledged yet

  // Simulated rows. Both are forgotten when a line is opened that is not simulated.
  bool SimulatedRowsAllowed = false;  // the user wants them behind rows of an instrument
  BySlot<bool> BegunInSimulation{};   // the slot's file held no row before the simulation

  // Controllers that the output test has in its hands, by INET and controller 1..4. It sets the
  // flag of a controller when it takes it and clears it when it gives it back; programs leave a
  // held controller alone.
  ByInet<ByController<bool>> OutputTestHolds{};

  // True for a controller that is held; false for numbers that are none.
  [[nodiscard]] bool IsHeld(int inet, int ctrl) const {
    return IsInet(inet) && IsController(ctrl) && OutputTestHolds[inet][ctrl];
  }

  // Selection and screen.
  int SelSlot = 0;     // slot on the worksheet and graph, 0 the viewed file
  int ActiveInet = 0;  // instrument selected for service, 0 before the first refresh
  View ActiveView = View::kNone;
  int Unfinished = 0;  // rules that have to finish something on an instrument before the end

  // Cursors of the cycle.
  int PumpSlot = 0;
  int PumpChannel = 0;
  int BacklogSlot = 0;        // slot with the greatest backlog at start
  int BacklogCount = 0;       // sets still to be read of it
  int SheetSlot = 0;          // row being refreshed, 0 between two passes
  bool SheetReset = false;    // false: rebuild what the main sheet remembers as shown
  bool WorkReset = false;     // the same for the worksheet
  bool OverPrepared = false;  // the graph's overview still fits the slot
  bool PartPrepared = false;  // the graph's part view still fits the slot

  // The curves of SelSlot are drawn anew.
  void ForgetCurves() {
    OverPrepared = false;
    PartPrepared = false;
  }
  // All that worksheet and graph remember of SelSlot is built anew.
  void ForgetShownSlot() {
    WorkReset = false;
    ForgetCurves();
  }

  bool GraphIdle = true;        // the graph does nothing with the slot's file now
  bool GraphMustClose = false;  // the slot in the graph went on in a next file: close the graph
  bool IndexValid = false;      // the open dialog's list still fits the directory

  Deadline TickTen;
  Deadline TickMinute;
  Deadline TickRefresh;
  Deadline TickFlush;
  Deadline TickWait;
  std::chrono::nanoseconds TickBlink{};  // by Clock::Elapsed(): no step of a service screen before
  bool Trigger = false;                  // its running light is lit; each change is a step

  // What the line beside the table says ("reading from Tavrel:  12"); empty: hidden.
  std::string lbl_Info;

  SettingsValues Settings;
  bool SettingsChanged = false;  // the settings are written at exit
  bool FirstRun = false;         // the settings were defaulted or taken from the old layout
  bool SettingsRead = false;     // false means the same for the check at start

  std::string AppPath;      // directory of the program, with a separator at its end
  std::string DataHome;     // directory of settings and data, with a separator at its end:
                            // AppPath, or the user's own if AppPath cannot be written
  std::string PendingFile;  // file name handed between the open dialog and the file routines
};

}  // namespace tavrel

#endif  // TAVREL_STATE_RUN_STATE_H_
