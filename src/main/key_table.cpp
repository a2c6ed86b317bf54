#include "main/key_table.h"

namespace tavrel {
namespace {

std::string Line(std::string_view first, std::string_view second, std::string_view third) {
  return "| " + std::string(first) + " | " + std::string(second) + " | " + std::string(third) +
         " |\n";
}

}  // namespace

std::string KeyTableMarkdown(Language language) {
  std::string text =
      Line(kKeyHeads[0].In(language), kKeyHeads[1].In(language), kKeyHeads[2].In(language)) +
      "|---|---|---|\n";
  for (const KeyEntry& entry : kKeyTable) {
    text += Line(entry.Where.In(language), entry.Keys.In(language), entry.Does.In(language));
  }
  return text;
}

}  // namespace tavrel
