#include "platform/known_device.h"

#include <sys/stat.h>
#include <sys/sysmacros.h>

#include <algorithm>
#include <array>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <system_error>
#include <vector>

#include "base/text.h"
#include "platform/file_system.h"

namespace tavrel {
namespace {

namespace fs = std::filesystem;

constexpr int kLongestAttribute = 256;  // characters; serial numbers have at most 126

constexpr const char* kNoElectronics = "0";  // the type of a port that was not found

// A terminal of the machine: the name of its device and the adapter it belongs to.
struct Terminal {
  std::string Name;
  Adapter Plugged;
};

// The text of a file that stands for one property of a device; empty if there is none.
std::string Attribute(const fs::path& directory, const char* name) {
  std::ifstream file(directory / name, std::ios::binary);
  std::array<char, kLongestAttribute> text{};
  file.read(text.data(), text.size());
  const std::string all(text.data(), static_cast<std::size_t>(file.gcount()));
  return Trim(all.substr(0, all.find('\n')));
}

bool IsThere(const fs::path& path) {
  std::error_code error;
  return fs::exists(path, error);
}

// The nearest directory that stands for an adapter, from `directory` upwards to the root, and
// the name of the interface on the way; both empty if there is none.
struct OnTheBus {
  fs::path Device;
  std::string Interface;
};
OnTheBus FindOnTheBus(fs::path directory) {
  std::string interface;
  while (directory.has_relative_path()) {
    if (IsThere(directory / "idVendor")) {
      return {directory, interface};
    }
    interface = directory.filename().string();
    directory = directory.parent_path();
  }
  return {};
}

// `terminal` is the directory that stands for the terminal. The name of an interface is that of
// the place, a colon and what tells it from the other interfaces of the adapter: "1-2:1.0".
std::optional<Adapter> AdapterAt(const fs::path& terminal) {
  std::error_code error;
  const fs::path real = fs::canonical(terminal, error);
  const OnTheBus found = error ? OnTheBus{} : FindOnTheBus(real);
  if (found.Device.empty()) {
    return std::nullopt;
  }
  return Adapter{Attribute(found.Device, "idVendor") + ":" + Attribute(found.Device, "idProduct"),
                 Attribute(found.Device, "serial"), found.Device.string(),
                 found.Interface.substr(found.Interface.find(':') + 1) + "/" +
                     Attribute(real / "device", "port_number")};
}

// The directory that stands for the terminal with that device number.
fs::path DirectoryOf(dev_t device, const SerialPlaces& places) {
  const std::string number = std::to_string(major(device)) + ":" + std::to_string(minor(device));
  return fs::path(places.SystemRoot) / "dev/char" / number;
}

std::vector<Terminal> AllTerminals(const SerialPlaces& places) {
  std::vector<Terminal> terminals;
  std::error_code error;
  fs::directory_iterator entry(fs::path(places.SystemRoot) / "class/tty", error);
  for (; !error && entry != fs::directory_iterator(); entry.increment(error)) {
    if (auto adapter = AdapterAt(entry->path())) {
      terminals.push_back({entry->path().filename().string(), std::move(*adapter)});
    }
  }
  return terminals;
}

bool HasSameNumber(const Adapter& one, const Adapter& other) {
  return one.Model == other.Model && one.Serial == other.Serial && one.Outlet == other.Outlet;
}

bool IsSameAdapter(const KnownDevice& known, const Adapter& adapter) {
  return known.HasItsOwnSerial ? HasSameNumber(*known.Plugged, adapter) : *known.Plugged == adapter;
}

bool IsOwnSerial(const Adapter& adapter, const SerialPlaces& places) {
  const std::vector<Terminal> all = AllTerminals(places);
  return !adapter.Serial.empty() &&
         std::none_of(all.begin(), all.end(), [&adapter](const Terminal& terminal) {
           return HasSameNumber(adapter, terminal.Plugged) &&
                  terminal.Plugged.Place != adapter.Place;
         });
}

bool IsLinkAt(const std::string& path) {
  std::error_code error;
  return fs::is_symlink(fs::symlink_status(path, error));
}

// Of several adapters with the number of the known one, only that at its place can be it.
std::string NameOfAdapter(const KnownDevice& known, const SerialPlaces& places) {
  std::vector<Terminal> same = AllTerminals(places);
  std::erase_if(
      same, [&known](const Terminal& terminal) { return !IsSameAdapter(known, terminal.Plugged); });
  if (same.size() > 1) {
    std::erase_if(same,
                  [&known](const Terminal& terminal) { return terminal.Plugged != known.Plugged; });
  }
  return same.size() == 1 ? same.front().Name : "";
}

}  // namespace

std::optional<Adapter> AdapterOf(dev_t device, const SerialPlaces& places) {
  return AdapterAt(DirectoryOf(device, places));
}

AdapterNames NamesOf(const Adapter& adapter) {
  return {Attribute(adapter.Place, "manufacturer"), Attribute(adapter.Place, "product")};
}

bool HasElectronics(dev_t device, const SerialPlaces& places) {
  return Attribute(DirectoryOf(device, places), "type") != kNoElectronics;
}

KnownDevice Recognise(const std::string& path, dev_t device, const SerialPlaces& places) {
  KnownDevice known{path, IsLinkAt(path), AdapterOf(device, places), false};
  known.HasItsOwnSerial = known.Plugged && IsOwnSerial(*known.Plugged, places);
  return known;
}

bool IsSameDevice(const KnownDevice& known, dev_t device, const SerialPlaces& places) {
  const auto adapter = AdapterOf(device, places);
  if (!known.Plugged || !adapter) {
    return !known.Plugged && !adapter;
  }
  return IsSameAdapter(known, *adapter);
}

std::string WhereItIsNow(const KnownDevice& known, const SerialPlaces& places) {
  if (known.Plugged) {
    const std::string name = NameOfAdapter(known, places);
    return name.empty() ? "" : JoinPath(places.DeviceDirectory, name);
  }
  struct stat status {};
  const bool is_there = stat(known.Path.c_str(), &status) == 0;
  const bool is_same = is_there && IsLinkAt(known.Path) == known.IsLink &&
                       IsSameDevice(known, status.st_rdev, places);
  return is_same ? known.Path : "";
}

}  // namespace tavrel
