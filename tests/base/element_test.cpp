#include "base/element.h"

#include <gtest/gtest.h>

#include <array>
#include <cstdint>
#include <vector>

namespace tavrel {
namespace {

TEST(ElementAt, IsTheElementAtThePlace) {
  std::vector<int> list = {10, 11, 12};
  for (int place = 0; place < 3; ++place) {
    ASSERT_NE(ElementAt(list, place), nullptr);
    EXPECT_EQ(*ElementAt(list, place), 10 + place);
  }
  *ElementAt(list, std::int16_t{1}) = 5;
  EXPECT_EQ(list[1], 5);
}

TEST(ElementAt, IsNullBesideTheList) {
  const std::array list = {10, 11, 12};
  for (const std::int64_t place : {std::int64_t{-1}, std::int64_t{3}, INT64_MIN, INT64_MAX}) {
    EXPECT_EQ(ElementAt(list, place), nullptr) << place;
  }
  const std::vector<int> none;
  EXPECT_EQ(ElementAt(none, 0), nullptr);
}

}  // namespace
}  // namespace tavrel
