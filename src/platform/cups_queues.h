#ifndef TAVREL_PLATFORM_CUPS_QUEUES_H_
#define TAVREL_PLATFORM_CUPS_QUEUES_H_

#include <string>

#include "platform/print_queues.h"

namespace tavrel {

// The queues of CUPS. Its library is the one that the toolkit prints with; it is looked for when it
// is needed first, so that the program also runs where there is none.
class CupsQueues : public PrintQueues {
 public:
  [[nodiscard]] std::optional<PrintQueue> Find(const std::string& name) override;
  [[nodiscard]] bool HasTakenLast() override;
};

}  // namespace tavrel

#endif  // TAVREL_PLATFORM_CUPS_QUEUES_H_
