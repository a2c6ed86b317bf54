#include "setup/variable_file.h"

#include <algorithm>
#include <charconv>

namespace tavrel {
namespace {

constexpr std::string_view kEndOfVariable = "\r\n";
constexpr std::string_view kByteOrderMark =
    "\xEF\xBB\xBF";  // editors put it before the first letter
constexpr char kLastGroup = 'Z';

std::string_view WithoutBlanks(std::string_view item) {
  constexpr std::string_view kBlanks{" \t\0", 3};
  const std::size_t begin = item.find_first_not_of(kBlanks);
  if (begin == std::string_view::npos) {
    return {};
  }
  return item.substr(begin, item.find_last_not_of(kBlanks) - begin + 1);
}

// Empty for all that is no whole number of 16 bits.
std::optional<std::int16_t> WordOf(std::string_view item) {
  const bool has_plus = item.size() > 1 && item[0] == '+' && item[1] != '-';
  const std::string_view digits = item.substr(has_plus ? 1 : 0);
  std::int16_t word = 0;
  const char* const end = digits.data() + digits.size();
  const auto [stop, error] = std::from_chars(digits.data(), end, word);
  return error == std::errc() && stop == end ? std::optional(word) : std::nullopt;
}

}  // namespace

std::string VariableFileBytes(const VariableWords& words) {
  std::string bytes;
  for (std::size_t group = 0; group < words.size(); ++group) {
    bytes += kVariableLetters[group];
    bytes += kEndOfVariable;
    std::string_view before;
    for (const std::int16_t word : words[group]) {
      bytes += before;
      bytes += std::to_string(word);
      before = ",";
    }
    bytes += kEndOfVariable;
  }
  return bytes;
}

bool IsLoadable(const Variable& variable) {
  const bool is_firmware_date = variable.letter == 'I' && variable.row == 0;
  return variable.letter != 'R' && variable.letter != 'S' && !is_firmware_date;
}

std::string VariableName(char letter, int row) {
  const std::string digits = std::to_string(row);
  return std::string(1, letter) + (row < 10 ? "0" : "") + digits;
}

VariableReader::VariableReader(std::string_view bytes)
    : left_(bytes.substr(bytes.starts_with(kByteOrderMark) ? kByteOrderMark.size() : 0)),
      row_(kRegistersPerLetter) {}

// Empty at the end of the file. A line end behind the last item begins none.
std::optional<std::string_view> VariableReader::NextItem() {
  if (left_.empty()) {
    return std::nullopt;
  }
  const std::size_t end = std::min(left_.find_first_of(",\r\n"), left_.size());
  const std::string_view item = left_.substr(0, end);
  left_.remove_prefix(end);
  const bool two_marks = left_.starts_with(kEndOfVariable);
  left_.remove_prefix(std::min<std::size_t>(two_marks ? 2 : 1, left_.size()));
  return WithoutBlanks(item);
}

bool VariableReader::FindGroup() {
  while (const auto item = NextItem()) {
    if (item->size() == 1 && kVariableLetters.find(item->front()) != std::string_view::npos) {
      letter_ = item->front();
      row_ = 0;
      return true;
    }
  }
  return false;
}

VariableReader::Place VariableReader::End(Place place) {
  place_ = place;
  left_ = {};
  return place;
}

VariableReader::Place VariableReader::Next(Variable& variable) {
  if (place_ != Place::kReading) {
    return place_;
  }
  if (row_ == kRegistersPerLetter) {
    if (letter_ == kLastGroup) {
      return End(Place::kWhole);
    }
    if (!FindGroup()) {
      return End(Place::kBroken);
    }
  }
  const auto item = NextItem();
  const auto word = item ? WordOf(*item) : std::nullopt;
  if (!word) {
    return End(Place::kBroken);
  }
  variable = {letter_, row_, *word};
  ++row_;
  return Place::kReading;
}

}  // namespace tavrel
