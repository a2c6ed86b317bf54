#include "state/form_sizes.h"

#include <algorithm>
#include <functional>
#include <sstream>

#include "platform/file_system.h"

namespace tavrel {
namespace {

constexpr std::size_t kLargestFile = 4096;  // bytes; 25 windows take 500
constexpr std::size_t kMostForms = 64;
constexpr std::size_t kLongestName = 32;
constexpr int kLeastSide = 50;
constexpr int kLargestSide = 16384;

bool IsNameCharacter(char character) {
  return (character >= '0' && character <= '9') || (character >= 'A' && character <= 'Z') ||
         (character >= 'a' && character <= 'z') || character == '_';
}

bool IsName(std::string_view name) {
  return !name.empty() && name.size() <= kLongestName &&
         std::all_of(name.begin(), name.end(), IsNameCharacter);
}

bool IsSide(int side) {
  return side >= kLeastSide && side <= kLargestSide;
}

bool IsSize(FormSize size) {
  return IsSide(size.Width) && IsSide(size.Height);
}

}  // namespace

std::optional<FormSize> FormSizes::Of(std::string_view form) {
  const Sizes& known = Known();
  const auto found = known.find(form);
  return found != known.end() ? std::optional(found->second) : std::nullopt;
}

void FormSizes::Keep(std::string_view form, FormSize size) {
  Sizes& known = Known();
  const std::optional<FormSize> before = Of(form);
  const bool has_room = before || known.size() < kMostForms;
  if (!IsName(form) || !IsSize(size) || before == size || !has_room) {
    return;
  }
  known[std::string(form)] = size;
  std::string lines;
  for (const auto& [name, kept] : known) {
    lines += name + " " + std::to_string(kept.Width) + " " + std::to_string(kept.Height) + "\n";
  }
  static_cast<void>(ReplaceFile(Path(), lines));
}

// A line that is not a name with two numbers is left out.
FormSizes::Sizes& FormSizes::Known() {
  if (sizes_) {
    return *sizes_;
  }
  sizes_.emplace();
  std::istringstream lines(ReadWholeFile(Path(), kLargestFile).value_or(""));
  for (std::string line; sizes_->size() < kMostForms && std::getline(lines, line);) {
    std::istringstream words(line);
    std::string name;
    FormSize size;
    if (words >> name >> size.Width >> size.Height && IsName(name) && IsSize(size)) {
      (*sizes_)[name] = size;
    }
  }
  return *sizes_;
}

std::string FormSizes::Path() const {
  return JoinPath(state_.DataHome, kFormSizesFile);
}

}  // namespace tavrel
