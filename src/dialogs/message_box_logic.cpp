#include "dialogs/message_box_logic.h"

#include <algorithm>
#include <string_view>

namespace tavrel {
namespace {

// Takes the first line off `text`.
std::string TakeLine(std::string_view& text) {
  const std::size_t end = std::min(text.find_first_of("\r\n"), text.size());
  std::string line(text.substr(0, end));
  text.remove_prefix(end);
  const std::size_t mark = text.starts_with("\r\n") ? 2 : 1;
  text.remove_prefix(std::min(mark, text.size()));
  return line;
}

std::array<std::string, 3> ThreeLines(std::string_view text) {
  std::array<std::string, 3> lines;
  lines[0] = TakeLine(text);
  lines[1] = TakeLine(text);
  lines[2] = std::string(text);
  return lines;
}

}  // namespace

bool MessageBoxLogic::Ask(const MessageRequest& request) {
  request_ = request;
  msg_ = ThreeLines(request.Text);
  ask_result_ = false;
  OpenScreen();
  screens_.Show(View::kAllMsg);
  CloseScreen();
  return ask_result_;
}

void MessageBoxLogic::CmdOK_Click() {
  Answer(true);
}

void MessageBoxLogic::CmdCancel_Click() {
  if (request_.CmdCancel) {
    Answer(false);
  }
}

void MessageBoxLogic::Answer(bool result) {
  ask_result_ = result;
  CloseScreen();
}

}  // namespace tavrel
