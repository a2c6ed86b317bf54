#include "tests/fuzz/settings_room.h"

// TAVREL.USR holds any bytes.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace tavrel;
  SettingsRoom room;
  const std::string bytes = TextOf(data, size);
  room.home.Write(kSettingsFile, bytes);
  room.store.SettingsLoad();
  Require(room.home.Read(kSettingsFile) == bytes, "reading changes no file");
  Require(room.state.FirstRun != room.state.SettingsRead, "settings are read or made, not both");
  const auto lines = SettingsLines(bytes);
  Require(room.state.SettingsRead == (!lines.empty() && IsKeyFile(lines.front())),
          "only the mark in the first line makes a file of keys");
  room.CheckLoaded();
  room.CheckRoundTrip();
  return 0;
}
