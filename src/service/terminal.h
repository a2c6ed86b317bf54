#ifndef TAVREL_SERVICE_TERMINAL_H_
#define TAVREL_SERVICE_TERMINAL_H_

#include <array>
#include <chrono>
#include <cstddef>
#include <deque>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "base/language.h"
#include "base/tool_tips.h"
#include "link/result.h"
#include "service/service_screen.h"
#include "service/typed_command.h"
#include "state/modal_screen.h"

namespace tavrel {

inline constexpr std::size_t kMostOfTerm = 16384;    // characters that Term holds
inline constexpr std::size_t kDroppedOfTerm = 4096;  // at once, when it is full

// ALL_TERM: a plain terminal on the line. While it is open the measuring cycle stands still and the
// instruments store by themselves; behind it the line settles before the cycle goes on.
class Terminal : public ModalScreen {
 public:
  explicit Terminal(const ServiceParts& parts)
      : ModalScreen(parts.state, View::kAllTerm), parts_(parts) {}

  void Open();

  [[nodiscard]] Language TipLanguage() const;

  // What was typed and what came, lines ended by CR LF. Bytes of Windows-1252.
  [[nodiscard]] const std::string& Term() const { return term_; }
  [[nodiscard]] std::string Label1() const { return parts_.link.PortLabel; }
  [[nodiscard]] bool Chk_Echo() const { return TermEcho; }
  void Chk_Echo_Click(bool is_ticked) { TermEcho = is_ticked; }

  // That the cycle stands still, how long recordings last, which controller programs wait; a line
  // each, the last two only if there is something to say.
  [[nodiscard]] std::string lbl_State() const;

  // A key in Term, as its character. A command is sent with its last character. One that would take
  // samples of a recording away is asked about first; what is typed beneath the box does not count.
  void KeyPress(char key);

  // What is pasted counts as typed; ends of lines are carriage returns. A command waits for the
  // answer to the one before it, or for the time in which it could come.
  void Paste(std::string_view text);

  // On a timer of the form: takes what came, sends what waits, opens a lost port again.
  void Poll();

  // Escape outside of Term, and the close box.
  void CloseNow() override;

 private:
  using Time = std::chrono::nanoseconds;

  // A command as it is sent, and what it writes if it ends the write of a register.
  struct Command {
    std::string text;
    std::optional<RegisterWrite> write;
  };

  void EndLine();
  [[nodiscard]] bool MaySend(const std::string& line);
  [[nodiscard]] bool AskAbout(const BufferCommand& command, const std::vector<int>& slots);
  void SendWaiting();
  void TakeAcknowledge(std::string_view text);
  void EndWrite(LinkResult result);
  [[nodiscard]] bool AnswerMayCome() const;
  void Receive(std::string_view text);
  [[nodiscard]] std::string WaitingPrograms() const;

  ServiceParts parts_;
  bool TermEcho = true;
  std::string TermLine;
  std::string term_;
  std::string begun_;                   // sent of a command whose last character has not been
  std::deque<Command> waiting_;         // commands that are not sent yet
  std::optional<RegisterWrite> write_;  // that was sent and is not answered yet
  std::string write_answer_;
  bool is_asking_ = false;    // a box about a command is open
  bool has_answered_ = true;  // the last command that was sent
  Time answer_until_{};       // its answer may come till then
  Time reopen_at_{};
};

inline constexpr std::array kTerminalTips = {
    ToolTip{"Term",
            {" Escape is sent to the instrument, the tab key leaves the text ",
             " Escape wird an das Gerät gesendet, die Tabulatortaste verlässt den Text "}},
    ToolTip{"Chk_Echo", {" show what is typed ", " Eingaben anzeigen "}},
};

}  // namespace tavrel

#endif  // TAVREL_SERVICE_TERMINAL_H_
