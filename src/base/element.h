#ifndef TAVREL_BASE_ELEMENT_H_
#define TAVREL_BASE_ELEMENT_H_

#include <concepts>
#include <utility>

namespace tavrel {

// The element of a list at a place that is counted from 0 and may come from outside (a row of the
// screen, a number in a file, an address); null where the list has no such place.
template <typename List, std::integral Place>
[[nodiscard]] constexpr auto ElementAt(List& list, Place place) -> decltype(list.data()) {
  const bool exists = std::cmp_greater_equal(place, 0) && std::cmp_less(place, list.size());
  return exists ? list.data() + place : nullptr;
}

}  // namespace tavrel

#endif  // TAVREL_BASE_ELEMENT_H_
