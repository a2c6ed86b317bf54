#ifndef TAVREL_FILES_CONTROLLER_JOURNAL_H_
#define TAVREL_FILES_CONTROLLER_JOURNAL_H_

#include <array>
#include <cstdint>
#include <optional>
#include <string>

#include "files/recording_file.h"
#include "link/link.h"
#include "state/run_state.h"

namespace tavrel {

// Writes into the journals of the recordings what was done to their controllers: every register of
// a controller that is written by value, by whatever part of the program, with the value that it
// had as far as that is known. It looks on at the exchanges and makes none.
class ControllerJournal {
 public:
  // All outlive this, which looks on at the link from here on; one at a time.
  ControllerJournal(RunState& state, Link& link, RecordingFiles& files);
  ~ControllerJournal();
  ControllerJournal(const ControllerJournal&) = delete;
  ControllerJournal& operator=(const ControllerJournal&) = delete;

  // While it lives, somebody else than the user acts.
  class Actor {
   public:
    Actor(ControllerJournal& journal, const char* name) : journal_(journal), old_(journal.actor_) {
      journal_.actor_ = name;
    }
    ~Actor() { journal_.actor_ = old_; }
    Actor(const Actor&) = delete;
    Actor& operator=(const Actor&) = delete;

   private:
    ControllerJournal& journal_;
    const char* old_;
  };

  // The programs make up for minutes in which the cycle stood still.
  void CaughtUp(int minutes);

 private:
  static constexpr int kLetters = 20;  // G to Z
  using Known = std::array<std::optional<std::int16_t>, kLetters>;

  void Take(const Link::Exchange& exchange);
  void Note(const Link::Exchange& exchange, const char* what,
            const std::optional<std::int16_t>& old_word);

  RunState& state_;
  Link& link_;
  RecordingFiles& files_;
  const char* actor_ = "user";
  ByInet<ByController<Known>> known_{};  // words that were read or acknowledged last
};

}  // namespace tavrel

#endif  // TAVREL_FILES_CONTROLLER_JOURNAL_H_
