#ifndef TAVREL_PLATFORM_JSON_H_
#define TAVREL_PLATFORM_JSON_H_

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

namespace tavrel {

// A value of a JSON text. Texts are UTF-8. The members of an object keep their order.
class JsonValue {
 public:
  using List = std::vector<JsonValue>;
  using Members = std::vector<std::pair<std::string, JsonValue>>;

  JsonValue() = default;  // null
  JsonValue(bool value) : value_(value) {}
  JsonValue(int value) : value_(std::int64_t{value}) {}
  JsonValue(std::int64_t value) : value_(value) {}
  JsonValue(double value) : value_(value) {}
  JsonValue(const char* value) : value_(std::string(value)) {}
  JsonValue(std::string value) : value_(std::move(value)) {}
  JsonValue(List value) : value_(std::move(value)) {}
  JsonValue(Members value) : value_(std::move(value)) {}

  // The member of that name; nothing if there is none, or this is no object.
  [[nodiscard]] const JsonValue* Find(std::string_view name) const;

  // What the value is, if it is of that kind. A whole number is a Number too.
  [[nodiscard]] std::optional<std::int64_t> Whole() const;
  [[nodiscard]] std::optional<double> Number() const;
  [[nodiscard]] std::optional<bool> Truth() const;
  [[nodiscard]] const std::string* Text() const;
  [[nodiscard]] const List* Elements() const;
  [[nodiscard]] const Members* Object() const;
  [[nodiscard]] bool IsNull() const;

  [[nodiscard]] bool operator==(const JsonValue&) const = default;

 private:
  std::variant<std::monostate, bool, std::int64_t, double, std::string, List, Members> value_;
};

inline constexpr int kJsonDepth = 8;  // objects and lists inside each other that are read

// One line without blanks. What is no UTF-8 in a text becomes the replacement character; a number
// that is none becomes null.
[[nodiscard]] std::string JsonText(const JsonValue& value);

// Empty for anything that is no JSON, that is nested deeper than kJsonDepth, or that holds a whole
// number beyond 64 bits signed.
[[nodiscard]] std::optional<JsonValue> ReadJson(std::string_view text);

}  // namespace tavrel

#endif  // TAVREL_PLATFORM_JSON_H_
