#ifndef TAVREL_BENCH_QT_MACHINE_H_
#define TAVREL_BENCH_QT_MACHINE_H_

#include <string>

#include "bench/live_program.h"
#include "platform/qt/qt_clipboard.h"
#include "platform/qt/qt_dialogs.h"
#include "platform/qt/qt_events.h"
#include "platform/qt/qt_printer.h"
#include "platform/qt/qt_regional.h"
#include "platform/qt/qt_screens.h"
#include "platform/qt/qt_serial_port.h"
#include "platform/qt/qt_shell.h"
#include "platform/system_clock.h"

namespace tavrel {

// The machine as the program uses it, with its serial ports named by links in `home`.
struct QtMachine {
  explicit QtMachine(const std::string& home) : port(home) {}

  [[nodiscard]] Machine All() {
    return {port, clock, dialogs, screens, events, shell, printer, clipboard, regional};
  }

  SystemClock clock;
  QtEvents events;
  QtDialogs dialogs{events};
  QtScreens screens;
  QtShell shell;
  QtSerialPort port;
  QtPrinter printer{events};
  QtClipboard clipboard;
  QtRegional regional;
};

}  // namespace tavrel

#endif  // TAVREL_BENCH_QT_MACHINE_H_
