#ifndef TAVREL_INSTRUMENT_APP_H_
#define TAVREL_INSTRUMENT_APP_H_

#include <string>

#include "instrument/control_commands.h"
#include "instrument/control_socket.h"
#include "instrument/instrument_line.h"
#include "instrument/line_timing.h"
#include "instrument/model_clock.h"
#include "instrument/options.h"
#include "instrument/pty.h"
#include "instrument/truth_log.h"
#include "instrument/wire_log.h"

namespace instrument {

// The running line: one thread that waits for bytes, commands, signals and time, and serves
// them in turn.
class App : private Switchboard {
 public:
  explicit App(const Options& options);

  // Opens files, control socket and pseudo-terminal, builds the instruments and lets their
  // backlog grow. False and a sentence in `error` on failure.
  [[nodiscard]] bool Start(std::string& error);

  // Serves until SIGTERM, SIGINT or the command "quit".
  void Run();

  // The pseudo-terminal's name, empty while unplugged.
  [[nodiscard]] std::string PortPath() const override { return pty_.Path(); }

 private:
  [[nodiscard]] bool Plug(std::string& error) override;
  void Unplug() override;
  [[nodiscard]] bool IsAtRest() const override;
  void Quit() override { quit_ = true; }

  [[nodiscard]] bool PrepareInstruments(std::string& error);
  [[nodiscard]] bool CatchSignals(std::string& error);
  void Wait();
  void ReadLine(Moment now, std::chrono::nanoseconds unseen);
  void AnswerCommands(Moment now);
  void SendReplies(Moment now);
  [[nodiscard]] Moment NextMoment(Moment now) const;

  Options options_;
  TruthFile truth_;
  WireLog wire_log_;
  InstrumentLine line_;
  TelegramReader reader_;
  IncomingBytes incoming_;
  OutgoingBytes outgoing_;
  ModelClock clock_;
  Pty pty_;
  ControlSocket control_;
  ControlCommands commands_;
  FileDescriptor signals_;
  Moment looked_{};  // at the line, for bytes that wait
  bool quit_ = false;
};

}  // namespace instrument

#endif  // TAVREL_INSTRUMENT_APP_H_
