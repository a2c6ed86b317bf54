#include "platform/known_device_file.h"

#include <string_view>
#include <utility>

#include "platform/file_system.h"
#include "platform/json.h"

namespace tavrel {
namespace {

constexpr std::size_t kLargestFile = 4096;  // bytes

std::string TextOf(const JsonValue& value, std::string_view name) {
  const JsonValue* member = value.Find(name);
  const std::string* text = member != nullptr ? member->Text() : nullptr;
  return text != nullptr ? *text : "";
}

bool IsTrue(const JsonValue& value, std::string_view name) {
  const JsonValue* member = value.Find(name);
  return member != nullptr && member->Truth().value_or(false);
}

std::string FileText(int number, const KnownDevice& known) {
  const Adapter& adapter = *known.Plugged;
  return JsonText(JsonValue::Members{{"port", number},
                                     {"path", known.Path},
                                     {"link", known.IsLink},
                                     {"model", adapter.Model},
                                     {"serial", adapter.Serial},
                                     {"place", adapter.Place},
                                     {"outlet", adapter.Outlet},
                                     {"own_serial", known.HasItsOwnSerial}}) +
         "\n";
}

}  // namespace

std::optional<KnownDevice> ReadKnownDevice(const std::string& path, int number) {
  const auto value = ReadJson(ReadWholeFile(path, kLargestFile).value_or(""));
  const JsonValue* port = value ? value->Find("port") : nullptr;
  if (port == nullptr || port->Whole() != number) {
    return std::nullopt;
  }
  Adapter adapter{TextOf(*value, "model"), TextOf(*value, "serial"), TextOf(*value, "place"),
                  TextOf(*value, "outlet")};
  KnownDevice known{TextOf(*value, "path"), IsTrue(*value, "link"), std::move(adapter),
                    IsTrue(*value, "own_serial")};
  const bool is_whole =
      !known.Path.empty() && !known.Plugged->Model.empty() && !known.Plugged->Place.empty();
  return is_whole ? std::optional(std::move(known)) : std::nullopt;
}

void KeepKnownDevice(const std::string& path, int number, const KnownDevice& known) {
  const auto before = ReadWholeFile(path, kLargestFile);
  if (!known.Plugged) {
    if (before) {
      static_cast<void>(DeleteFile(path));
    }
    return;
  }
  const std::string text = FileText(number, known);
  if (before != text) {
    static_cast<void>(ReplaceFile(path, text));
  }
}

}  // namespace tavrel
