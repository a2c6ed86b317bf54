#ifndef TAVREL_SETUP_NUMBERING_H_
#define TAVREL_SETUP_NUMBERING_H_

#include <array>
#include <chrono>
#include <functional>
#include <string>
#include <vector>

#include "base/language.h"
#include "base/tool_tips.h"
#include "files/recording_engine.h"
#include "link/link.h"
#include "link/register_access.h"
#include "platform/clock.h"
#include "platform/dialogs.h"
#include "state/modal_screen.h"
#include "state/run_state.h"

namespace tavrel {

inline constexpr const char* kNumberingCaption = " assign Tavrel-number";

// What the form shows.
struct NumberingValues {
  std::vector<int> cboTavNo;   // the numbers that answer
  int Selected = -1;           // the line that is selected, -1: none
  bool IsListEnabled = false;  // locked while it is searched and assigned
  ByInet<bool> cmd_TavNo{};    // by number 1..6: it can be given
  bool ComIcon = false;        // no connection
  std::string lbl_State;       // what goes on; empty: nothing but watching
  std::string lbl_Buffer;      // how long recordings last; empty: none runs
  std::string lbl_Note;        // why nothing can be assigned; empty: it can
};

// TavNum: finds the numbers that answer on the line, and gives one instrument a new number. The
// cycle leaves the line to it and calls Step; each step is one exchange.
//
// An instrument that has not acknowledged its new number may have it nevertheless. The write is
// only repeated when the new number is silent and the old one still answers: the next fresh
// instrument that is put to the line has the number that all begin with, and would take the new one
// as well.
class Numbering : public ModalScreen {
 public:
  struct Parts {  // all outlive this
    RunState& state;
    Link& link;
    RecordingEngine& engine;
    Dialogs& dialogs;
    const Clock& clock;
    std::function<void(int from, int to)> renumbered;  // an instrument has got another number
  };
  explicit Numbering(const Parts& parts);

  void Open();

  [[nodiscard]] const NumberingValues& Values() const { return values_; }
  [[nodiscard]] Language TipLanguage() const;

  // One pulse of the cycle.
  void Step();

  // The user selects a line of the list, from 0.
  void cboTavNo_Click(int line);

  // Gives the selected instrument the number n, 1..6. Asks first if a test uses either number.
  void cmd_TavNo_Click(int number);

  // Escape and the close box, at any time. Says so if an instrument may have either number.
  void Quit() override;

 private:
  enum class NumStep { kScan = 0, kWatch = 1, kAssign = 10 };
  enum class Assignment { kWrite, kLookForNew, kLookForOld };

  [[nodiscard]] bool IsDirectLine() const;
  [[nodiscard]] int SelectedInet() const;
  [[nodiscard]] LinkResult Probe(int inet);
  void ReopenPort();
  void Scan();
  void TakeScan();
  void Assign();
  void WriteNumber();
  void LookForNew();
  void LookForOld();
  void Assigned();
  void GoOnWith(Assignment phase);
  void WatchLink(LinkResult result);
  void ShowState();
  void ShowBuffer();
  [[nodiscard]] bool MayAssign(int from, int to);

  Parts parts_;
  NumberingValues values_;
  NumStep num_step_ = NumStep::kScan;
  int num_target_ = 1;
  int num_misses_ = 0;
  int scanned_ = 0;  // numbers of the scan that have been asked
  ByInet<bool> found_{};
  Assignment phase_ = Assignment::kWrite;
  int silences_ = 0;       // in a row, of the number that is looked for
  int from_inet_ = 0;      // the instrument that is given a number
  bool was_sent_ = false;  // and the number has been sent to it
  std::chrono::nanoseconds reopen_at_{};
};

inline constexpr std::array kNumberingTips = {
    ToolTip{"cboTavNo", {" actual Tavrel number ", " aktuelle Tavrel-Nummer "}},
    ToolTip{"cmd_TavNo_1", {" new Tavrel number = 1 ", " neue Tavrel-Nummer = 1 "}},
    ToolTip{"cmd_TavNo_2", {" new Tavrel number = 2 ", " neue Tavrel-Nummer = 2 "}},
    ToolTip{"cmd_TavNo_3", {" new Tavrel number = 3 ", " neue Tavrel-Nummer = 3 "}},
    ToolTip{"cmd_TavNo_4", {" new Tavrel number = 4 ", " neue Tavrel-Nummer = 4 "}},
    ToolTip{"cmd_TavNo_5", {" new Tavrel number = 5 ", " neue Tavrel-Nummer = 5 "}},
    ToolTip{"cmd_TavNo_6", {" new Tavrel number = 6 ", " neue Tavrel-Nummer = 6 "}},
    ToolTip{"ComIcon", {" no connection ... ", " keine Verbindung "}},
};

}  // namespace tavrel

#endif  // TAVREL_SETUP_NUMBERING_H_
