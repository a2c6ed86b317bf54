#include "files/stop_orders.h"

#include <algorithm>
#include <charconv>
#include <iterator>
#include <optional>

#include "files/reasons.h"
#include "link/register_access.h"
#include "link/registers.h"
#include "platform/file_system.h"
#include "state/box_titles.h"

namespace tavrel {
namespace {

constexpr std::size_t kLargestFile = 10'000;  // bytes; 24 lines of less than 50
constexpr std::string_view kEndOfLine = "\r\n";
constexpr std::string_view kLastLine = "end";

std::string LineOf(const StopOrder& order) {
  return "Z=0 slot " + std::to_string(order.Slot) + " inet " + std::to_string(order.Inet) +
         " controller " + std::to_string(order.Controller);
}

// Takes the line that ends at `place` or behind it; empty if none is complete.
std::optional<std::string_view> NextLine(std::string_view text, std::size_t& place) {
  const std::size_t end = text.find(kEndOfLine, place);
  if (end == std::string_view::npos) {
    return std::nullopt;
  }
  const std::string_view line = text.substr(place, end - place);
  place = end + kEndOfLine.size();
  return line;
}

// The number behind `name` in the line, 0 if there is none.
int NumberBehind(std::string_view line, std::string_view name) {
  const std::size_t place = line.find(name);
  int number = 0;
  if (place != std::string_view::npos) {
    const std::string_view digits = line.substr(place + name.size());
    std::from_chars(digits.data(), digits.data() + digits.size(), number);
  }
  return number;
}

// Empty for anything that LineOf does not make, and for numbers that no recording has.
std::optional<StopOrder> OrderOf(std::string_view line) {
  const int inet = NumberBehind(line, "inet ");
  const int controller = NumberBehind(line, "controller ");
  const StopOrder order{NumberBehind(line, "slot "), static_cast<std::int16_t>(inet),
                        static_cast<std::int16_t>(controller), false};
  const bool exists = IsSlot(order.Slot) && inet >= 1 && inet <= kInets && controller >= 1 &&
                      controller <= kControllers;
  return exists && LineOf(order) == line ? std::optional(order) : std::nullopt;
}

// The order for that controller, the end if there is none.
template <typename Orders>
auto Find(Orders& orders, int inet, int controller) {
  return std::find_if(orders.begin(), orders.end(), [=](const StopOrder& order) {
    return order.Inet == inet && order.Controller == controller;
  });
}

std::vector<StopOrder> OrderForEachController() {
  std::vector<StopOrder> orders;
  for (int inet = 1; inet <= kInets; ++inet) {
    for (int controller = 1; controller <= kControllers; ++controller) {
      orders.push_back(
          {0, static_cast<std::int16_t>(inet), static_cast<std::int16_t>(controller), false});
    }
  }
  return orders;
}

bool IsOrderDue(const StopOrder& order) {
  return order.IsDue;
}

// One order for each controller: the later one is about the later recording.
void Put(std::vector<StopOrder>& orders, const StopOrder& order) {
  const auto older = Find(orders, order.Inet, order.Controller);
  if (older == orders.end()) {
    orders.push_back(order);
  } else {
    *older = order;
  }
}

}  // namespace

std::string EncodeStopOrders(const std::vector<StopOrder>& orders) {
  std::string text;
  for (const StopOrder& order : orders) {
    text.append(LineOf(order)).append(kEndOfLine);
  }
  return text.append(kLastLine).append(kEndOfLine);
}

StopOrdersText DecodeStopOrders(std::string_view text) {
  StopOrdersText result;
  std::size_t place = 0;
  std::optional<std::string_view> line = NextLine(text, place);
  for (; line && *line != kLastLine; line = NextLine(text, place)) {
    const std::optional<StopOrder> order = OrderOf(*line);
    if (order) {
      Put(result.Orders, *order);
    } else {
      result.IsWhole = false;
    }
  }
  result.IsWhole = result.IsWhole && line && place == text.size();
  return result;
}

void StopOrders::Load() {
  NoAnswer no_answer;
  const std::optional<std::string> text = ReadWholeFile(Path(), kLargestFile, no_answer);
  const bool was_unread = is_unread_;
  is_unread_ = no_answer.Why != Failure::kNone;
  if (is_unread_) {
    if (!was_unread) {
      TellOfFile(": " + no_answer.Text);
    }
    return;
  }
  if (text) {
    TakeLeft(DecodeStopOrders(*text));
  } else if (FindFile(parts_.state.DataHome, kStopOrdersFile)) {
    TellOfFile("  is damaged !");  // it is far too large
  }
}

// What was given or made void meanwhile is newer.
void StopOrders::TakeLeft(const StopOrdersText& left) {
  if (!left.IsWhole) {
    TellOfFile("  is damaged !");
  }
  for (StopOrder order : left.Orders) {
    if (Find(void_unread_, order.Inet, order.Controller) != void_unread_.end()) {
      is_saved_ = false;
    } else if (!IsWaiting(order.Inet, order.Controller)) {
      order.IsDue = true;
      orders_.push_back(order);
    }
  }
  void_unread_.clear();
  ShowWaiting();
}

void StopOrders::TellOfFile(const std::string& what) {
  parts_.messages.Report(0, {kStopOrdersFile + what, kReadTitle});
}

void StopOrders::Give(int slot, std::int16_t inet, std::int16_t controller) {
  const StopOrder order{slot, inet, controller, true};
  Count(order);
  if (parts_.link.Simulated) {
    static_cast<void>(Send(order));
    return;
  }
  Put(orders_, order);
  Changed();
}

void StopOrders::Repeat() {
  if (is_unread_) {
    Load();
  }
  for (StopOrder& order : orders_) {
    order.IsDue = true;
  }
  static_cast<void>(Save());
  TellIfUnsaved();
}

bool StopOrders::HasDue() const {
  return !parts_.link.Simulated && std::any_of(orders_.begin(), orders_.end(), IsOrderDue);
}

bool StopOrders::SendDue() {
  if (!HasDue()) {
    return false;
  }
  const auto due = std::find_if(orders_.begin(), orders_.end(), IsOrderDue);
  due->IsDue = false;
  const StopOrder order = *due;
  if (Send(order)) {
    Drop(order.Inet, order.Controller);
  } else {
    TellIfUnsaved();
  }
  return true;
}

bool StopOrders::Send(const StopOrder& order) {
  Count(order);
  const Register state{order.Inet, reg::kControllerState, order.Controller};
  return IsGood(Write(parts_.link, state, controller::kOff));
}

void StopOrders::Drop(int inet, int controller) {
  DropIf(
      [=](const StopOrder& order) { return order.Inet == inet && order.Controller == controller; });
}

void StopOrders::DropInstrument(int inet) {
  DropIf([=](const StopOrder& order) { return order.Inet == inet; });
}

void StopOrders::Renumber(int from_inet, int to_inet) {
  if (from_inet == to_inet || parts_.link.Simulated) {
    return;
  }
  DropInstrument(to_inet);
  bool is_any = false;
  for (StopOrder& order : orders_) {
    if (order.Inet == from_inet) {
      order.Inet = static_cast<std::int16_t>(to_inet);
      order.IsDue = true;
      is_any = true;
    }
  }
  if (is_any) {
    Changed();
  }
}

template <typename Predicate>
void StopOrders::DropIf(Predicate is_void) {
  if (parts_.link.Simulated) {
    return;
  }
  if (is_unread_) {
    const std::vector<StopOrder> each = OrderForEachController();
    std::copy_if(each.begin(), each.end(), std::back_inserter(void_unread_), is_void);
  }
  if (std::erase_if(orders_, is_void) > 0) {
    Changed();
  }
}

// A header may name a controller that is none.
void StopOrders::Count(const StopOrder& order) {
  if (IsInet(order.Inet) && IsController(order.Controller)) {
    ++counts_[order.Inet][order.Controller];
  }
}

std::uint32_t StopOrders::Count(int inet, int controller) const {
  return IsInet(inet) && IsController(controller) ? counts_[inet][controller] : 0;
}

bool StopOrders::IsWaiting(int inet, int controller) const {
  return Find(orders_, inet, controller) != orders_.end();
}

bool StopOrders::CanSend() const {
  return !orders_.empty() && !parts_.link.Simulated && parts_.link.PortOpen;
}

// What cannot be put on the disk now is told, if it is still the case, on the ten-second tick.
void StopOrders::Changed() {
  ShowWaiting();
  is_saved_ = false;
  static_cast<void>(Save());
}

void StopOrders::ShowWaiting() {
  parts_.state.StopPending.Fill(false);
  for (const StopOrder& order : orders_) {
    parts_.state.StopPending[order.Slot] = true;
  }
}

std::string StopOrders::Save() {
  if (is_saved_) {
    return {};
  }
  if (is_unread_) {
    return std::string(reason::kUnread.English);
  }
  std::string problem;
  if (orders_.empty()) {
    problem = DeleteFile(Path());
    SyncDirectory(parts_.state.DataHome);
  } else {
    problem = ReplaceFile(Path(), EncodeStopOrders(orders_));
  }
  is_saved_ = problem.empty();
  was_told_ = was_told_ && !is_saved_;
  return problem;
}

// Once, until it could be saved.
void StopOrders::TellIfUnsaved() {
  if (!is_saved_ && !was_told_) {
    was_told_ = true;
    parts_.messages.Report(0, {"Cannot write file.", kStopOrdersFile});
  }
}

std::string StopOrders::Path() const {
  return JoinPath(parts_.state.DataHome, kStopOrdersFile);
}

}  // namespace tavrel
