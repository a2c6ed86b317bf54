#include "tests/fuzz/settings_fixture.h"

// TAVREL.USR holds any bytes.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace tavrel;
  SettingsFixture fixture;
  const std::string bytes = TextOf(data, size);
  fixture.home.Write(kSettingsFile, bytes);
  fixture.store.SettingsLoad();
  Require(fixture.home.Read(kSettingsFile) == bytes, "reading changes no file");
  Require(fixture.state.FirstRun != fixture.state.SettingsRead,
          "settings are read or made, not both");
  const auto lines = SettingsLines(bytes);
  Require(fixture.state.SettingsRead == (!lines.empty() && IsKeyFile(lines.front())),
          "only the mark in the first line makes a file of keys");
  fixture.CheckLoaded();
  fixture.CheckRoundTrip();
  return 0;
}
