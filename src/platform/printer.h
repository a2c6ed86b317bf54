#ifndef TAVREL_PLATFORM_PRINTER_H_
#define TAVREL_PLATFORM_PRINTER_H_

#include <string>

#include "platform/surface.h"

namespace tavrel {

// What a print dialog begins with, and what the user chose in it.
struct PrintChoice {
  std::string Document;     // name of what is printed
  std::string PrinterName;  // as the system calls it
  int Copies = 1;
  bool IsColour = true;    // what the printer says of itself
  std::string OutputFile;  // full path, if a file is made instead of paper
};

// The system's printing. A job is: Choose, any number of pages, EndJob.
class Printer {
 public:
  virtual ~Printer() = default;

  // Lets the user choose a printer and a number of copies by the system's print dialog. False: the
  // user left it, and there is no job. The printer itself makes one copy of each page; who prints
  // repeats it.
  [[nodiscard]] virtual bool Choose(PrintChoice& choice) = 0;

  // Begins a page, white, in points: its scale is the printable area. It has the printer's own
  // font. The surface lives until EndPage; null if the printer fails.
  [[nodiscard]] virtual Surface* BeginPage() = 0;

  // Hands the page to the printer. False if that failed.
  [[nodiscard]] virtual bool EndPage() = 0;

  // The job is over, also after a page that failed: what was printed comes out. False if it cannot.
  [[nodiscard]] virtual bool EndJob() = 0;
};

}  // namespace tavrel

#endif  // TAVREL_PLATFORM_PRINTER_H_
