#include "platform/json.h"

#include <algorithm>
#include <limits>
#include <nlohmann/json.hpp>
#include <utility>

namespace tavrel {
namespace {

using LibraryValue = nlohmann::ordered_json;

LibraryValue ToLibrary(const JsonValue& value) {
  if (const auto* const list = value.Elements()) {
    LibraryValue made = LibraryValue::array();
    for (const JsonValue& each : *list) {
      made.push_back(ToLibrary(each));
    }
    return made;
  }
  if (const auto* const members = value.Object()) {
    LibraryValue made = LibraryValue::object();
    for (const auto& [name, each] : *members) {
      made[name] = ToLibrary(each);
    }
    return made;
  }
  if (const std::string* const text = value.Text()) {
    return *text;
  }
  if (const auto truth = value.Truth()) {
    return *truth;
  }
  if (const auto whole = value.Whole()) {
    return *whole;
  }
  const auto number = value.Number();
  return number ? LibraryValue(*number) : LibraryValue();
}

JsonValue FromLibrary(LibraryValue&& value) {
  if (value.is_array()) {
    JsonValue::List list;
    list.reserve(value.size());
    for (LibraryValue& each : value) {
      list.push_back(FromLibrary(std::move(each)));
    }
    return list;
  }
  if (value.is_object()) {
    JsonValue::Members members;
    members.reserve(value.size());
    for (auto& [key, member] : value.get_ref<LibraryValue::object_t&>()) {
      members.emplace_back(key, FromLibrary(std::move(member)));
    }
    return members;
  }
  if (value.is_string()) {
    return std::move(value.get_ref<std::string&>());
  }
  if (value.is_boolean()) {
    return value.get<bool>();
  }
  if (value.is_number_integer()) {
    return value.get<std::int64_t>();
  }
  return value.is_number() ? JsonValue(value.get<double>()) : JsonValue();
}

// What the library makes is nested as the text is, and is walked through by functions that call
// themselves.
bool IsFlat(std::string_view text) {
  int depth = 0;
  bool is_in_text = false;
  for (std::size_t place = 0; place < text.size() && depth <= kJsonDepth; ++place) {
    const char each = text[place];
    if (is_in_text) {
      place += each == '\\' ? 1 : 0;
      is_in_text = each != '"';
    } else if (each == '"') {
      is_in_text = true;
    } else if (each == '[' || each == '{') {
      ++depth;
    } else if (each == ']' || each == '}') {
      --depth;
    }
  }
  return depth <= kJsonDepth;
}

bool HoldsHugeNumber(const LibraryValue& value) {
  if (value.is_number_unsigned()) {
    return value.get<std::uint64_t>() >
           static_cast<std::uint64_t>(std::numeric_limits<std::int64_t>::max());
  }
  return value.is_structured() && std::any_of(value.begin(), value.end(), HoldsHugeNumber);
}

}  // namespace

const JsonValue* JsonValue::Find(std::string_view name) const {
  const Members* const members = Object();
  if (members == nullptr) {
    return nullptr;
  }
  for (const auto& [each, value] : *members) {
    if (each == name) {
      return &value;
    }
  }
  return nullptr;
}

std::optional<std::int64_t> JsonValue::Whole() const {
  const auto* const whole = std::get_if<std::int64_t>(&value_);
  return whole != nullptr ? std::optional(*whole) : std::nullopt;
}

std::optional<double> JsonValue::Number() const {
  if (const auto whole = Whole()) {
    return static_cast<double>(*whole);
  }
  const auto* const number = std::get_if<double>(&value_);
  return number != nullptr ? std::optional(*number) : std::nullopt;
}

std::optional<bool> JsonValue::Truth() const {
  const auto* const truth = std::get_if<bool>(&value_);
  return truth != nullptr ? std::optional(*truth) : std::nullopt;
}

const std::string* JsonValue::Text() const {
  return std::get_if<std::string>(&value_);
}

const JsonValue::List* JsonValue::Elements() const {
  return std::get_if<List>(&value_);
}

const JsonValue::Members* JsonValue::Object() const {
  return std::get_if<Members>(&value_);
}

bool JsonValue::IsNull() const {
  return std::holds_alternative<std::monostate>(value_);
}

std::string JsonText(const JsonValue& value) {
  return ToLibrary(value).dump(-1, ' ', false, LibraryValue::error_handler_t::replace);
}

std::optional<JsonValue> ReadJson(std::string_view text) {
  if (!IsFlat(text)) {
    return std::nullopt;
  }
  LibraryValue read = LibraryValue::parse(text, nullptr, false);
  if (read.is_discarded() || HoldsHugeNumber(read)) {
    return std::nullopt;
  }
  return FromLibrary(std::move(read));
}

}  // namespace tavrel
