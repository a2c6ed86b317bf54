#include <gtest/gtest.h>

#include <limits>
#include <string>

#include "platform/json.h"
#include "platform/sha256.h"
#include "platform/whoami.h"

namespace tavrel {
namespace {

// The examples of the standard.
TEST(Sha256, KnownTexts) {
  EXPECT_EQ(Sha256Of(""), "e3b0c44298fc1c149afbf4c8996fb92427ae41e4649b934ca495991b7852b855");
  EXPECT_EQ(Sha256Of("abc"), "ba7816bf8f01cfea414140de5dae2223b00361a396177a9cb410ff61f20015ad");
}

TEST(Sha256, IsCarriedOnPieceByPiece) {
  const std::string text(200, 'x');
  for (std::size_t cut = 0; cut <= text.size(); ++cut) {
    Sha256 hash;
    hash.Add(text.substr(0, cut));
    EXPECT_EQ(hash.Hex(), Sha256Of(text.substr(0, cut)));
    Sha256 copy = hash;
    hash.Add(text.substr(cut));
    EXPECT_EQ(hash.Hex(), Sha256Of(text));
    copy.Add("y");
    EXPECT_EQ(copy.Hex(), Sha256Of(text.substr(0, cut) + "y"));
  }
}

TEST(Json, AnObjectKeepsTheOrderOfItsMembers) {
  const JsonValue value(
      JsonValue::Members{{"z", 1},
                         {"a", JsonValue::List{true, 1.5, "\"ü\"\n", JsonValue()}},
                         {"big", std::numeric_limits<std::int64_t>::min()}});
  const std::string text =
      "{\"z\":1,\"a\":[true,1.5,\"\\\"ü\\\"\\n\",null],\"big\":-9223372036854775808}";
  EXPECT_EQ(JsonText(value), text);
  const auto read = ReadJson(text);
  ASSERT_TRUE(read);
  EXPECT_EQ(JsonText(*read), text);
  EXPECT_EQ(read->Find("z")->Whole(), 1);
  EXPECT_EQ(read->Find("a")->Elements()->at(1).Number(), 1.5);
  EXPECT_EQ(read->Find("missing"), nullptr);
}

TEST(Json, WhatIsNoneIsRefused) {
  for (const std::string text :
       {"", "{", "{\"a\":1}x", "nul", "{\"a\":18446744073709551615}", "\"\xFF\"", "[1,]"}) {
    EXPECT_FALSE(ReadJson(text)) << text;
  }
}

TEST(Json, DepthIsBounded) {
  EXPECT_TRUE(ReadJson(std::string(kJsonDepth, '[') + std::string(kJsonDepth, ']')));
  EXPECT_FALSE(ReadJson(std::string(100000, '[') + std::string(100000, ']')));
  EXPECT_TRUE(ReadJson("[\"" + std::string(20, '[') + "\\\"[\"]"));
}

TEST(Json, BytesThatAreNoTextAreReplaced) {
  EXPECT_EQ(JsonText("a\xFF"), "\"a\xEF\xBF\xBD\"");
}

TEST(Whoami, TheSystemKnowsAllOfIt) {
  EXPECT_NE(ComputerName(), "?");
  EXPECT_NE(LoginName(), "?");
  EXPECT_EQ(BootId().size(), 36U);
  EXPECT_EQ(BootId(), BootId());
  EXPECT_EQ(RandomId().size(), 32U);
  EXPECT_NE(RandomId(), RandomId());
}

}  // namespace
}  // namespace tavrel
