#include "files/header_changes.h"

#include <gtest/gtest.h>

#include <functional>
#include <string>

namespace tavrel {
namespace {

using Word = std::function<std::int16_t&(UnitRecord&)>;
using Text = std::function<HeaderText&(UnitRecord&)>;

// Changes one word of a header, or one text, and expects that the journal calls it by that name,
// and by that index where the field is a row of them.
void ExpectWord(const std::string& name, const Word& word) {
  UnitRecord before{};
  word(before) = 7;
  UnitRecord after = before;
  word(after) = -8;
  EXPECT_EQ(JsonText(HeaderChanges(before, after)),
            "[{\"field\":" + name + ",\"old\":7,\"new\":-8}]");
}

void ExpectText(const std::string& name, const Text& text) {
  UnitRecord before{};
  UnitRecord after{};
  text(after).Set("Öl");
  EXPECT_EQ(JsonText(HeaderChanges(before, after)),
            "[{\"field\":" + name + R"(,"old":"","new":"Öl"}])");
}

std::string OneOf(const std::string& field, int index) {
  return "\"" + field + "\",\"index\":" + std::to_string(index);
}

TEST(HeaderChanges, CallEachSingleWordByItsName) {
  const std::pair<const char*, std::int16_t UnitRecord::*> words[] = {
      {"UnitInet", &UnitRecord::UnitInet},         {"UnitChannels", &UnitRecord::UnitChannels},
      {"UnitCtrl", &UnitRecord::UnitCtrl},         {"UnitRef", &UnitRecord::UnitRef},
      {"UnitRecOn", &UnitRecord::UnitRecOn},       {"UnitMaxMinutes", &UnitRecord::UnitMaxMinutes},
      {"UnitInterval", &UnitRecord::UnitInterval}, {"UnitCtrlState", &UnitRecord::UnitCtrlState},
      {"UnitSetpoint", &UnitRecord::UnitSetpoint}, {"UnitUpper", &UnitRecord::UnitUpper},
      {"UnitLower", &UnitRecord::UnitLower},       {"UnitIncrement", &UnitRecord::UnitIncrement},
      {"UnitFinal", &UnitRecord::UnitFinal},       {"UnitEndAction", &UnitRecord::UnitEndAction},
      {"UnitYmax", &UnitRecord::UnitYmax},         {"UnitXmax", &UnitRecord::UnitXmax},
      {"UnitMarks", &UnitRecord::UnitMarks},       {"UnitGraphMode", &UnitRecord::UnitGraphMode},
      {"UnitYmin", &UnitRecord::UnitYmin},         {"UnitFast", &UnitRecord::UnitFast},
      {"UnitRes", &UnitRecord::UnitRes},           {"UnitProgWait", &UnitRecord::UnitProgWait},
      {"UnitProgStep", &UnitRecord::UnitProgStep},
  };
  for (const auto& [name, member] : words) {
    ExpectWord("\"" + std::string(name) + "\"",
               [place = member](UnitRecord& unit) -> std::int16_t& { return unit.*place; });
  }
}

TEST(HeaderChanges, CountTheWordsOfARowFromOne) {
  for (int input = 1; input <= kInputs; ++input) {
    ExpectWord(OneOf("UnitRole", input),
               [=](UnitRecord& unit) -> std::int16_t& { return unit.UnitRole[input]; });
    ExpectWord(OneOf("UnitColour", input),
               [=](UnitRecord& unit) -> std::int16_t& { return unit.UnitColour[input]; });
  }
  for (std::size_t place = 0; place < std::size(UnitRecord{}.UnitView); ++place) {
    ExpectWord(OneOf("UnitView", static_cast<int>(place) + 1),
               [=](UnitRecord& unit) -> std::int16_t& { return unit.UnitView.at(place); });
  }
  for (std::size_t place = 0; place < std::size(UnitRecord{}.UnitMarkPos); ++place) {
    ExpectWord(OneOf("UnitMarkPos", static_cast<int>(place) + 1),
               [=](UnitRecord& unit) -> std::int16_t& { return unit.UnitMarkPos.at(place); });
  }
}

// By its place in the header, which is counted from 0.
TEST(HeaderChanges, CallAWordWithoutANameByItsPlace) {
  ExpectWord(OneOf("Word", 19),
             [](UnitRecord& unit) -> std::int16_t& { return unit.Unnamed19[0]; });
  ExpectWord(OneOf("Word", 31),
             [](UnitRecord& unit) -> std::int16_t& { return unit.Unnamed30[1]; });
  ExpectWord(OneOf("Word", 77),
             [](UnitRecord& unit) -> std::int16_t& { return unit.Unnamed77[0]; });
  ExpectWord(OneOf("Word", 88),
             [](UnitRecord& unit) -> std::int16_t& { return unit.Unnamed77[11]; });
  ExpectWord(OneOf("Word", 97),
             [](UnitRecord& unit) -> std::int16_t& { return unit.Unnamed93[4]; });
}

TEST(HeaderChanges, CallEachTextByItsName) {
  const std::pair<const char*, HeaderText UnitRecord::*> texts[] = {
      {"UnitDesignation", &UnitRecord::UnitDesignation},
      {"UnitDate", &UnitRecord::UnitDate},
      {"UnitSpareText", &UnitRecord::UnitSpareText},
      {"UnitProgName", &UnitRecord::UnitProgName},
      {"UnitOrigin", &UnitRecord::UnitOrigin},
  };
  for (const auto& [name, member] : texts) {
    ExpectText("\"" + std::string(name) + "\"",
               [place = member](UnitRecord& unit) -> HeaderText& { return unit.*place; });
  }
  for (int input = 1; input <= kInputs; ++input) {
    ExpectText(OneOf("UnitInputName", input),
               [=](UnitRecord& unit) -> HeaderText& { return unit.UnitInputName[input]; });
    ExpectText(OneOf("UnitInputNote", input),
               [=](UnitRecord& unit) -> HeaderText& { return unit.UnitInputNote[input]; });
  }
  for (std::size_t mark = 0; mark < kMarks; ++mark) {
    ExpectText(OneOf("UnitMarkText", static_cast<int>(mark) + 1),
               [=](UnitRecord& unit) -> HeaderText& { return unit.UnitMarkText.at(mark); });
  }
}

TEST(HeaderChanges, AreAllThatDifferAndNothingElse) {
  UnitRecord before{};
  before.UnitYmax = 400;
  before.UnitOrigin.Set("same");
  UnitRecord after = before;
  EXPECT_TRUE(HeaderChanges(before, after).empty());
  after.UnitYmax = 300;
  after.UnitXmax = 60;
  after.UnitDate.Set("03-14-2026 / 10:00");
  EXPECT_EQ(HeaderChanges(before, after).size(), 3U);
}

}  // namespace
}  // namespace tavrel
