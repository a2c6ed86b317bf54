#ifndef TAVREL_PLATFORM_PRINT_QUEUES_H_
#define TAVREL_PLATFORM_PRINT_QUEUES_H_

#include <optional>
#include <string>

namespace tavrel {

// What the print server says of one of its queues, in its own words.
struct PrintQueue {
  bool IsThere = false;  // false also if no server answers
  std::string State;     // "3" idle, "4" at work, "5" stopped
  std::string Accepts;   // "true" or "false"
};

// The queues of the system's print server. The toolkit hands a page over and asks nobody whether
// the server has taken it.
class PrintQueues {
 public:
  virtual ~PrintQueues() = default;

  // Empty: this system has no print server that could be asked.
  [[nodiscard]] virtual std::optional<PrintQueue> Find(const std::string& name) = 0;

  // False if the server has refused the last request of this thread.
  [[nodiscard]] virtual bool HasTakenLast() = 0;
};

// True if a page that is handed to that queue now comes out. A queue that is stopped keeps what it
// takes, and the page would come out days later. A word that nobody knows is no reason to keep a
// page back.
[[nodiscard]] bool TakesPages(const PrintQueue& queue);

// What a printer says of its inks.
struct PrinterInks {
  bool SaysNothing = false;  // the rest means nothing then
  bool KnowsColours = true;
  bool PrefersGrey = false;  // its settings ask for grey, although it knows colours
};

// What a print dialog begins with. A black printer leaves the choice open for the others that the
// user may turn to.
[[nodiscard]] bool BeginsInColour(const PrinterInks& inks);

// Whether a page gets colours if that was chosen in the dialog.
[[nodiscard]] bool GetsColours(const PrinterInks& inks, bool is_colour_chosen);

}  // namespace tavrel

#endif  // TAVREL_PLATFORM_PRINT_QUEUES_H_
