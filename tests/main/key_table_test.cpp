#include "main/key_table.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <set>

namespace tavrel {
namespace {

TEST(KeyTable, IsThereInBothLanguages) {
  for (const KeyEntry& entry : kKeyTable) {
    for (const BothLanguages* text : {&entry.Where, &entry.Keys, &entry.Does}) {
      EXPECT_FALSE(text->English.empty());
      EXPECT_FALSE(text->German.empty());
    }
    EXPECT_EQ(entry.Keys.German.find("Ctrl"), std::string_view::npos) << entry.Keys.German;
    EXPECT_EQ(entry.Keys.German.find("Shift"), std::string_view::npos) << entry.Keys.German;
  }
}

TEST(KeyTable, NamesEachKeyOnceForEachPlace) {
  std::set<std::string> seen;
  for (const KeyEntry& entry : kKeyTable) {
    const std::string key = std::string(entry.Where.English) + ":" +
                            std::string(entry.Keys.English) + ":" + std::string(entry.Does.English);
    EXPECT_TRUE(seen.insert(key).second) << key;
  }
}

TEST(KeyTable, ComesAsMarkdown) {
  const std::string german = KeyTableMarkdown(Language::kGerman);
  EXPECT_EQ(german.substr(0, german.find('\n')), "| wo | Tasten | was sie tun |");
  EXPECT_NE(german.find("\n|---|---|---|\n"), std::string::npos);
  EXPECT_NE(german.find("| Strg+Q |"), std::string::npos);
  EXPECT_EQ(std::count(german.begin(), german.end(), '\n'),
            static_cast<std::ptrdiff_t>(kKeyTable.size()) + 2);
  EXPECT_NE(KeyTableMarkdown(Language::kEnglish).find("| Ctrl+Q |"), std::string::npos);
}

}  // namespace
}  // namespace tavrel
