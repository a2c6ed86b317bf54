#include <cstdio>

#include "main/key_table.h"

// Prints the table of all keys as Markdown, for the manual.
// usage: print_keys LANGUAGE     (German, or anything else for English)
int main(int count, char** arguments) {
  const tavrel::Language language = tavrel::LanguageOf(count > 1 ? arguments[1] : "");
  return std::fputs(tavrel::KeyTableMarkdown(language).c_str(), stdout) >= 0 ? 0 : 1;
}
