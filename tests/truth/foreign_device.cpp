#include "tests/truth/foreign_device.h"

#include <unistd.h>

#include <cerrno>
#include <fstream>

namespace tavrel {
namespace {

constexpr int kPorts = 30;

std::string DeviceName(int port) {
  return "/dev/COM" + std::to_string(port);
}

// The first number whose name could be laid down; 0 if the rights are missing. Two benches may
// look for one at the same time: the link is made in one step.
int LayLink(const std::string& target) {
  for (int port = 1; port <= kPorts; ++port) {
    if (symlink(target.c_str(), DeviceName(port).c_str()) == 0) {
      return port;
    }
    if (errno != EEXIST) {
      return 0;
    }
  }
  return 0;
}

}  // namespace

ForeignDevice::~ForeignDevice() {
  if (port_ > 0) {
    unlink(DeviceName(port_).c_str());
  }
}

bool ForeignDevice::LayDown(const std::string& directory, const std::vector<std::string>& options) {
  const std::string link = directory + "/foreign";
  log_ = directory + "/foreign.log";
  std::vector<std::string> command = {directory + "/tavrel-instrument", "--link", link, "--log",
                                      log_};
  command.insert(command.end(), options.begin(), options.end());
  line_ = Process(command);
  if (line_.ReadLine(std::chrono::seconds(20)).rfind("ready", 0) != 0) {
    return false;
  }
  port_ = LayLink(link);
  return port_ > 0;
}

int ForeignDevice::Heard() const {
  int heard = 0;
  std::ifstream file(log_);
  for (std::string row; std::getline(file, row);) {
    heard += row.find(" > ") != std::string::npos ? 1 : 0;
  }
  return heard;
}

}  // namespace tavrel
