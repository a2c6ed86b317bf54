#ifndef TAVREL_FILES_STOP_ORDERS_H_
#define TAVREL_FILES_STOP_ORDERS_H_

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "link/link.h"
#include "state/messages.h"
#include "state/run_state.h"

namespace tavrel {

inline constexpr const char* kStopOrdersFile = "TAVREL.OFF";

// A controller that an end action has to switch off.
struct StopOrder {
  int Slot = 0;                 // 1..12, whose recording has come to its end
  std::int16_t Inet = 0;        // 1..6
  std::int16_t Controller = 0;  // 1..4
  bool IsDue = false;           // to be sent at the next step of the pump

  [[nodiscard]] bool operator==(const StopOrder&) const = default;
};

// What stands in the file of the orders.
struct StopOrdersText {
  std::vector<StopOrder> Orders;  // one for each controller at most, none of them due
  bool IsWhole = true;            // false: the file held something else, too
};

// The file: a line for each order, such as "Z=0 slot 3 inet 2 controller 1" CR LF, and a last line
// "end" CR LF. A text that is cut short is not whole; the orders before the cut are taken.
[[nodiscard]] std::string EncodeStopOrders(const std::vector<StopOrder>& orders);
[[nodiscard]] StopOrdersText DecodeStopOrders(std::string_view text);

// The orders of end actions to switch a controller off, Z = 0, until an instrument has acknowledged
// them. An oven must not stay on because its instrument did not answer just then: an order is on
// the disk, beside the settings, before it is sent for the first time, and stays there until it is
// acknowledged or void, whatever becomes of the process. It is kept apart from the slot's header,
// for the slot may be given to another controller meanwhile. StopPending(slot) follows it.
//
// In simulation nothing reaches an instrument: orders that wait are neither sent nor void then.
class StopOrders {
 public:
  // All outlive the orders.
  struct Parts {
    RunState& state;
    Link& link;
    Messages& messages;
  };
  explicit StopOrders(const Parts& parts) : parts_(parts) {}

  // At the start, once DataHome is known: takes what the program before has left, all of it due.
  // A file that is damaged is told through Messages. So is one that cannot be read now: it is tried
  // again with each Repeat, and nothing takes its place before.
  void Load();

  // Gives an order, and puts it on the disk. It is due.
  void Give(int slot, std::int16_t inet, std::int16_t controller);

  // All orders become due; what could not be put on the disk is tried again.
  void Repeat();

  [[nodiscard]] bool HasDue() const;

  // Sends the first order that is due, one exchange; the waits for several silent instruments must
  // not add up in one step. False if there is none. Without an acknowledge the order goes on
  // waiting, and is no longer due.
  bool SendDue();

  // Somebody else has switched that controller with success: an order for it is void.
  void Drop(int inet, int controller);

  // The instrument with this number is another one from now on: all orders for it are void.
  void DropInstrument(int inet);

  // The instrument has got a new number, and its orders with it: its ovens are still to be off.
  // What waited under the new number was for another one.
  void Renumber(int from_inet, int to_inet);

  [[nodiscard]] bool IsWaiting(int inet, int controller) const;

  // How often an order for that controller was given or sent since the program runs. A
  // memory of what the controller does, or is to do, is void when this changes.
  [[nodiscard]] std::uint32_t Count(int inet, int controller) const;

  // At least one order waits, and there is a line to send it on.
  [[nodiscard]] bool CanSend() const;

  [[nodiscard]] const std::vector<StopOrder>& All() const { return orders_; }

  // Puts the orders on the disk if they have changed since. Empty text on success, else the
  // system's error text.
  [[nodiscard]] std::string Save();

 private:
  void TakeLeft(const StopOrdersText& left);
  void TellOfFile(const std::string& what);
  void ShowWaiting();
  template <typename Predicate>
  void DropIf(Predicate is_void);
  [[nodiscard]] bool Send(const StopOrder& order);
  void Count(const StopOrder& order);
  void Changed();
  void TellIfUnsaved();
  [[nodiscard]] std::string Path() const;

  Parts parts_;
  std::vector<StopOrder> orders_;
  ByInet<ByController<std::uint32_t>> counts_{};
  std::vector<StopOrder> void_unread_;  // controllers that were switched while it was unread
  bool is_unread_ = false;              // the file of the program before could not be read
  bool is_saved_ = true;                // the disk holds what orders_ holds
  bool was_told_ = false;               // that it does not
};

}  // namespace tavrel

#endif  // TAVREL_FILES_STOP_ORDERS_H_
