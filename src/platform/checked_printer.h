#ifndef TAVREL_PLATFORM_CHECKED_PRINTER_H_
#define TAVREL_PLATFORM_CHECKED_PRINTER_H_

#include <string>

#include "platform/print_queues.h"
#include "platform/printer.h"

namespace tavrel {

// A printer whose pages are asked after: a page for paper begins only if its queue takes pages, and
// it has ended only if the print server has taken it. What becomes a file is left alone.
class CheckedPrinter : public Printer {
 public:
  // Both outlive this.
  CheckedPrinter(Printer& printer, PrintQueues& queues) : printer_(printer), queues_(queues) {}

  [[nodiscard]] bool Choose(PrintChoice& choice) override;
  [[nodiscard]] Surface* BeginPage() override;
  [[nodiscard]] bool EndPage() override;
  [[nodiscard]] bool EndJob() override { return printer_.EndJob(); }

 private:
  Printer& printer_;
  PrintQueues& queues_;
  std::string queue_;       // of the job that is on; empty: a file is made
  bool has_server_ = true;  // of the page that is on
};

}  // namespace tavrel

#endif  // TAVREL_PLATFORM_CHECKED_PRINTER_H_
