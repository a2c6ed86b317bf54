#include "platform/known_device_file.h"

#include <gtest/gtest.h>

#include "platform/file_system.h"
#include "tests/support/temporary_directory.h"

namespace tavrel {
namespace {

constexpr int kPort = 5;

KnownDevice KnownAdapter() {
  return {"/dev/serial/by-id/usb-adapter", true, Adapter{"0403:6001", "A1", "1-2", "1.0/0"}, true};
}

// The file beside the settings, and what is read from it.
struct KeptDevice {
  [[nodiscard]] std::string Path() const { return home.File(kKnownDeviceFile); }
  [[nodiscard]] std::optional<KnownDevice> Read(int number = kPort) const {
    return ReadKnownDevice(Path(), number);
  }
  void Keep(const KnownDevice& known) const { KeepKnownDevice(Path(), kPort, known); }
  void Put(const std::string& text) const { home.Write(kKnownDeviceFile, text); }
  [[nodiscard]] std::string Text() const { return home.Read(kKnownDeviceFile); }

  TemporaryDirectory home;
};

TEST(KnownDeviceFile, KeepsAllThatAnAdapterIsKnownBy) {
  const KeptDevice kept;
  kept.Keep(KnownAdapter());
  EXPECT_EQ(kept.Read(), KnownAdapter());
  const KnownDevice plain{"/dev/ttyUSB3", false, Adapter{"1A86:7523", "", "1-4", ""}, false};
  kept.Keep(plain);
  EXPECT_EQ(kept.Read(), plain);
}

TEST(KnownDeviceFile, TellsOfNoOtherNumber) {
  const KeptDevice kept;
  kept.Keep(KnownAdapter());
  EXPECT_EQ(kept.Read(kPort - 1), std::nullopt);
}

TEST(KnownDeviceFile, IsTakenAwayForWhatIsNoAdapter) {
  const KeptDevice kept;
  kept.Keep(KnownAdapter());
  kept.Keep({"/dev/ttyS0", false, std::nullopt, false});
  EXPECT_FALSE(kept.home.Exists(kKnownDeviceFile));
  kept.Keep({"/dev/ttyS0", false, std::nullopt, false});
  EXPECT_EQ(kept.Read(), std::nullopt);
}

TEST(KnownDeviceFile, IsWrittenOnlyIfItSaysSomethingElse) {
  const KeptDevice kept;
  kept.Keep(KnownAdapter());
  const auto first = IdentityOf(kept.Path());
  kept.Keep(KnownAdapter());
  EXPECT_EQ(IdentityOf(kept.Path()), first);
  KnownDevice moved = KnownAdapter();
  moved.Plugged->Place = "1-3";
  kept.Keep(moved);
  EXPECT_EQ(kept.Read(), moved);
}

TEST(KnownDeviceFile, TellsNothingWhereItIsMissingOrSpoilt) {
  const KeptDevice kept;
  EXPECT_EQ(kept.Read(), std::nullopt);
  kept.Keep(KnownAdapter());
  const std::string whole = kept.Text();
  for (std::size_t length = 0; length + 1 < whole.size(); ++length) {
    kept.Put(whole.substr(0, length));
    EXPECT_EQ(kept.Read(), std::nullopt) << length;
  }
  kept.Put(whole + std::string(4096, ' '));
  EXPECT_EQ(kept.Read(), std::nullopt) << "longer than any that was written";
}

TEST(KnownDeviceFile, TellsNothingWithoutPathModelAndPlace) {
  const KeptDevice kept;
  const auto tells = [&kept](const std::string& members) {
    kept.Put("{\"port\":5" + members + "}\n");
    return kept.Read().has_value();
  };
  const std::string path = ",\"path\":\"/dev/ttyUSB0\"";
  const std::string model = ",\"model\":\"0403:6001\"";
  const std::string place = ",\"place\":\"1-2\"";
  EXPECT_TRUE(tells(path + model + place));
  EXPECT_FALSE(tells(model + place));
  EXPECT_FALSE(tells(path + place));
  EXPECT_FALSE(tells(path + model));
  EXPECT_FALSE(tells(",\"path\":7" + model + place)) << "a number is no path";
}

}  // namespace
}  // namespace tavrel
