#include "platform/checked_printer.h"

namespace tavrel {

bool CheckedPrinter::Choose(PrintChoice& choice) {
  if (!printer_.Choose(choice)) {
    return false;
  }
  queue_ = choice.OutputFile.empty() ? choice.PrinterName : "";
  return true;
}

Surface* CheckedPrinter::BeginPage() {
  has_server_ = false;
  if (!queue_.empty()) {
    const std::optional<PrintQueue> queue = queues_.Find(queue_);
    if (queue && !TakesPages(*queue)) {
      return nullptr;
    }
    has_server_ = queue.has_value();
  }
  return printer_.BeginPage();
}

// The page is handed over by its end.
bool CheckedPrinter::EndPage() {
  const bool is_ended = printer_.EndPage();
  return is_ended && (!has_server_ || queues_.HasTakenLast());
}

}  // namespace tavrel
