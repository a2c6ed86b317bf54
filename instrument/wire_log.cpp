#include "instrument/wire_log.h"

#include <iomanip>

namespace instrument {
namespace {

constexpr std::chrono::milliseconds kLongestPause{50};
constexpr std::size_t kLongestRow = 32;

// Printable characters as they are, all others as "\0D".
void WriteText(std::ostream& out, char byte) {
  const auto code = static_cast<unsigned char>(byte);
  if (code > ' ' && code < 0x7F && byte != '\\') {
    out << byte;
    return;
  }
  out << '\\' << std::hex << std::uppercase << std::setw(2) << std::setfill('0')
      << static_cast<int>(code) << std::dec << std::setfill(' ');
}

}  // namespace

bool WireLog::Open(const std::string& path, Moment start) {
  if (path.empty()) {
    return true;
  }
  start_ = start;
  file_.open(path, std::ios::trunc);
  return file_.good();
}

void WireLog::Byte(Direction direction, const TimedByte& byte) {
  if (!file_.is_open()) {
    return;
  }
  const bool belongs = !row_.empty() && direction == direction_ && row_.size() < kLongestRow &&
                       byte.when - row_.back().when <= kLongestPause;
  if (!belongs) {
    EndRow();
  }
  direction_ = direction;
  row_.push_back(byte);
  if (byte.byte == '\r' || byte.byte == '?' || byte.byte == '.') {
    EndRow();
  }
}

std::optional<Moment> WireLog::NextDue() const {
  return row_.empty() ? std::nullopt : std::optional(row_.back().when + kLongestPause);
}

void WireLog::EndStaleRow(Moment now) {
  if (!row_.empty() && row_.back().when + kLongestPause <= now) {
    EndRow();
  }
}

void WireLog::EndRow() {
  if (row_.empty()) {
    return;
  }
  const std::chrono::duration<double> first = row_.front().when - start_;
  file_ << std::fixed << std::setprecision(6) << first.count() << ' '
        << static_cast<char>(direction_) << ' ';
  for (const TimedByte& byte : row_) {
    WriteText(file_, byte.byte);
  }
  for (const TimedByte& byte : row_) {
    const auto behind =
        std::chrono::duration_cast<std::chrono::microseconds>(byte.when - row_.front().when);
    file_ << ' ' << std::hex << std::uppercase << std::setw(2) << std::setfill('0')
          << static_cast<int>(static_cast<unsigned char>(byte.byte)) << std::dec
          << std::setfill(' ') << '+' << behind.count();
  }
  file_ << '\n' << std::flush;
  row_.clear();
}

}  // namespace instrument
