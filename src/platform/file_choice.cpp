#include "platform/file_choice.h"

#include <algorithm>

#include "base/text.h"

namespace tavrel {
namespace {

std::vector<std::string> Split(const std::string& text, char mark) {
  std::vector<std::string> pieces;
  std::size_t begin = 0;
  while (begin <= text.size()) {
    const std::size_t end = std::min(text.find(mark, begin), text.size());
    pieces.push_back(Trim(text.substr(begin, end - begin)));
    begin = end + 1;
  }
  return pieces;
}

std::string WithoutBrackets(const std::string& text) {
  return text.ends_with(')') ? Trim(text.substr(0, text.rfind('('))) : text;
}

}  // namespace

void FileChoice::Take(const std::string& full_name) {
  const std::size_t name = full_name.rfind('/') + 1;  // without a separator the sum wraps to 0
  FullName = full_name;
  Directory = full_name.substr(0, name);
  FileName = full_name.substr(name);
}

void FileChoice::Cancel() {
  FileName.clear();
  FullName.clear();
}

std::vector<FileKind> FileKinds(const std::string& filter) {
  const std::vector<std::string> pieces = Split(filter, '|');
  std::vector<FileKind> kinds;
  for (std::size_t place = 0; place + 1 < pieces.size(); place += 2) {
    kinds.push_back({WithoutBrackets(pieces[place]), Split(pieces[place + 1], ';')});
  }
  return kinds;
}

}  // namespace tavrel
