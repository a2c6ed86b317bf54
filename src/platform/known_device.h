#ifndef TAVREL_PLATFORM_KNOWN_DEVICE_H_
#define TAVREL_PLATFORM_KNOWN_DEVICE_H_

#include <sys/types.h>

#include <optional>
#include <string>

// By what the device of a serial port is known again when it comes back: an adapter that was
// pulled out may come back under another name, and its name may meanwhile belong to another.
namespace tavrel {

// Where the system keeps what is known here; tests lay out trees of their own.
struct SerialPlaces {
  std::string DeviceDirectory = "/dev";
  std::string SystemRoot = "/sys";
};

// A serial port of an adapter on the bus, as the system describes it.
struct Adapter {
  std::string Model;   // vendor and product: "0403:6001"
  std::string Serial;  // its serial number; many cheap adapters have none
  std::string Place;   // the place on the bus, as the directory that stands for it
  std::string Outlet;  // which one of its ports: "1.0/0", interface and number on it

  bool operator==(const Adapter& other) const = default;
};

// The adapter that the terminal with the device number `device` belongs to. Empty: it belongs to
// none, as a port of the machine itself or a pseudo-terminal does.
[[nodiscard]] std::optional<Adapter> AdapterOf(dev_t device, const SerialPlaces& places);

// What the adapter calls itself; empty: it does not say.
struct AdapterNames {
  std::string Maker;    // "FTDI"
  std::string Product;  // "FT232R USB UART"
};
[[nodiscard]] AdapterNames NamesOf(const Adapter& adapter);

// False if the system knows that nothing is behind the terminal with the device number `device`:
// it keeps names for ports that a machine could have.
[[nodiscard]] bool HasElectronics(dev_t device, const SerialPlaces& places);

// A device that was open once.
struct KnownDevice {
  std::string Path;     // by which it was found
  bool IsLink = false;  // that path is a link
  std::optional<Adapter> Plugged;
  // No other adapter in the machine had the same serial number: the number alone tells it.
  bool HasItsOwnSerial = false;

  bool operator==(const KnownDevice& other) const = default;
};

// The device that was found by `path` and is open as number `device`.
[[nodiscard]] KnownDevice Recognise(const std::string& path, dev_t device,
                                    const SerialPlaces& places);

// Whether the device with the number `device` is the known one: for an adapter the same model and
// port, and the same serial number if that was its own, else the same place too. For all other
// devices whatever its name leads to is the device, unless that is an adapter.
[[nodiscard]] bool IsSameDevice(const KnownDevice& known, dev_t device, const SerialPlaces& places);

// The path by which the known device can be opened now; empty if it is not there. An adapter is
// looked for under all names. Other devices have to be there by the same path, and by a link
// again if it was one.
[[nodiscard]] std::string WhereItIsNow(const KnownDevice& known, const SerialPlaces& places);

}  // namespace tavrel

#endif  // TAVREL_PLATFORM_KNOWN_DEVICE_H_
