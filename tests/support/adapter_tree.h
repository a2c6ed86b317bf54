#ifndef TAVREL_TESTS_SUPPORT_ADAPTER_TREE_H_
#define TAVREL_TESTS_SUPPORT_ADAPTER_TREE_H_

#include <sys/stat.h>
#include <sys/sysmacros.h>

#include <filesystem>
#include <string>

#include "platform/known_device.h"
#include "tests/support/temporary_directory.h"

namespace tavrel {

// An adapter as the system tells of it.
struct TestAdapter {
  std::string Serial;         // empty: it has none
  std::string Place = "1-2";  // on the bus
  std::string Interface = "1.0";
  std::string Product = "6001";
  std::string PortNumber = "0";
  std::string Maker = "";  // as it calls itself; empty: it does not say
  std::string Name = "";
};

// A device directory and a tree of what the system knows of its devices, laid out in a directory
// of the test.
class AdapterTree {
 public:
  [[nodiscard]] SerialPlaces Places() const { return {home_.File("dev"), home_.File("sys")}; }
  [[nodiscard]] std::string Device(const std::string& name) const {
    return home_.File("dev/" + name);
  }

  // The terminal `name` of that adapter is there, with the device number `device`.
  void Plug(const std::string& name, dev_t device, const TestAdapter& adapter) {
    const std::string place = "sys/devices/pci0/usb1/" + adapter.Place + "/";
    const std::string port = place + adapter.Place + ":" + adapter.Interface + "/" + name + "/";
    const std::string terminal = port + "tty/" + name;
    std::filesystem::create_directories(home_.File(terminal));
    home_.Write(place + "idVendor", "0403\n");
    home_.Write(place + "idProduct", adapter.Product + "\n");
    WriteIfTold(place + "serial", adapter.Serial);
    WriteIfTold(place + "manufacturer", adapter.Maker);
    WriteIfTold(place + "product", adapter.Name);
    home_.Write(port + "port_number", adapter.PortNumber + "\n");
    Link(terminal + "/device", home_.File(port));
    Link("sys/class/tty/" + name, home_.File(terminal));
    Link("sys/dev/char/" + Number(device), home_.File(terminal));
  }
  // The same for a terminal that leads to the device `node`, such as that of a pseudo-terminal.
  void Plug(const std::string& name, const std::string& node, const TestAdapter& adapter) {
    Plug(name, NumberOf(node), adapter);
    Link("dev/" + name, node);
  }

  // The adapter at that place is pulled out; its terminal `name` goes with it.
  void PullOut(const std::string& name, const std::string& place = "1-2") {
    const std::filesystem::path numbers = home_.File("sys/dev/char");
    for (const auto& entry : std::filesystem::directory_iterator(numbers)) {
      if (std::filesystem::read_symlink(entry.path()).filename() == name) {
        std::filesystem::remove(entry.path());
        break;
      }
    }
    std::filesystem::remove(home_.File("sys/class/tty/" + name));
    std::filesystem::remove_all(home_.File("sys/devices/pci0/usb1/" + place));
    std::filesystem::remove(Device(name));
  }

  static dev_t NumberOf(const std::string& node) {
    struct stat status {};
    return stat(node.c_str(), &status) == 0 ? status.st_rdev : dev_t{};
  }

  // A port of the machine, of the type that the system has found; "0" where it has found nothing.
  void BuildIn(const std::string& name, const std::string& node, const std::string& type) {
    const std::string terminal = "sys/devices/platform/serial8250/tty/" + name;
    std::filesystem::create_directories(home_.File(terminal));
    home_.Write(terminal + "/type", type + "\n");
    Link("sys/class/tty/" + name, home_.File(terminal));
    Link("sys/dev/char/" + Number(NumberOf(node)), home_.File(terminal));
    Link("dev/" + name, node);
  }

 private:
  void WriteIfTold(const std::string& name, const std::string& text) const {
    if (!text.empty()) {
      home_.Write(name, text + "\n");
    }
  }
  static std::string Number(dev_t device) {
    return std::to_string(major(device)) + ":" + std::to_string(minor(device));
  }
  void Link(const std::string& name, const std::string& target) const {
    const std::filesystem::path path = home_.File(name);
    std::filesystem::create_directories(path.parent_path());
    std::filesystem::remove(path);
    std::filesystem::create_symlink(target, path);
  }

  TemporaryDirectory home_;
};

}  // namespace tavrel

#endif  // TAVREL_TESTS_SUPPORT_ADAPTER_TREE_H_
