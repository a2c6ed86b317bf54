#include "base/text.h"
#include "tests/fuzz/settings_fixture.h"

namespace tavrel {
namespace {

void CheckCompleted(const SettingsValues& values) {
  for (const std::string& name : values.ActiveFiles) {
    Require(ToWindows1252(name).size() <= 12, "a file name has at most 12 characters");
    Require(Trim(name) == name, "a file name is trimmed");
  }
  for (const std::string& value : {values.Plant, values.Lab, values.DestPath, values.CommPort,
                                   values.HelpLang, values.SortKey, values.VerType}) {
    Require(!value.empty(), "what the old file leaves open has a default");
  }
  Require(values.ComMode == 0, "the old file's line mode is never taken");
  Require(!values.Diagnostic, "the old file knows no diagnostic");
}

}  // namespace
}  // namespace tavrel

// TAVREL.USR is no file of keys and TAVDEF.USR holds any bytes.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace tavrel;
  SettingsFixture fixture;
  const std::string bytes = TextOf(data, size);
  fixture.home.Write(kSettingsFile, "\"not of keys\"\r\n");
  fixture.home.Write(kLegacySettingsFile, bytes);
  fixture.store.SettingsLoad();
  Require(fixture.home.Read(kLegacySettingsFile) == bytes, "reading changes no file");
  Require(fixture.state.FirstRun && fixture.state.SettingsChanged && !fixture.state.SettingsRead,
          "the key file comes to exist at the next exit");
  CheckCompleted(fixture.state.Settings);
  fixture.CheckLoaded();
  fixture.CheckRoundTrip();
  Require(fixture.home.Read(kLegacySettingsFile) == bytes, "the old file stays");
  return 0;
}
