#include "files/stop_orders.h"
#include "tests/fuzz/fuzz_input.h"

// The file of the orders holds any bytes.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace tavrel;
  const std::string bytes = TextOf(data, size);
  const StopOrdersText text = DecodeStopOrders(bytes);
  Require(text.Orders.size() <= kInets * kControllers, "one order for each controller at most");
  for (const StopOrder& order : text.Orders) {
    Require(IsSlot(order.Slot) && order.Inet >= 1 && order.Inet <= kInets &&
                order.Controller >= 1 && order.Controller <= kControllers && !order.IsDue,
            "an order is for a slot and a controller that exist");
  }
  const StopOrdersText again = DecodeStopOrders(EncodeStopOrders(text.Orders));
  Require(again.IsWhole && again.Orders == text.Orders, "what is written is read as it was");
  return 0;
}
