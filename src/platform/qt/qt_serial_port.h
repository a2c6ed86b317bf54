#ifndef TAVREL_PLATFORM_QT_QT_SERIAL_PORT_H_
#define TAVREL_PLATFORM_QT_QT_SERIAL_PORT_H_

#include <QSerialPort>
#include <chrono>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include "base/language.h"
#include "platform/known_device.h"
#include "platform/qt/serial_settings.h"
#include "platform/serial_port.h"

namespace tavrel {

// The serial port of the machine. Used from the thread of the user interface; the port is
// locked against other programs while it is open.
//
// Events: 1000 + the QSerialPort error that closed the port.
class QtSerialPort : public SerialPort {
 public:
  // `program_directory` may hold a file or link COMn that names the device of port n.
  explicit QtSerialPort(std::string program_directory, SerialPlaces places = {});

  // The language in which the user is told why a port does not open; English without it.
  void SpeakIn(std::function<Language()> language) { language_ = std::move(language); }

  // The file in which the adapter in use is kept for the next run (platform/known_device_file.h),
  // asked for at each opening; none while it is empty.
  void RememberIn(std::function<std::string()> file) { memory_ = std::move(file); }

  // A settings text that is empty or broken is refused like a port that does not exist.
  [[nodiscard]] PortOpening Open(int number, std::string_view settings) override;
  [[nodiscard]] PortOpening Reopen() override;
  void Close() override;
  [[nodiscard]] bool IsOpen() const override { return port_.isOpen(); }
  [[nodiscard]] std::string Settings() const override;
  [[nodiscard]] std::string Device() const override;
  bool Write(std::string_view bytes) override;
  [[nodiscard]] std::string ReadAll() override;
  void WaitForData(std::chrono::nanoseconds limit) override;
  [[nodiscard]] int TakeEvent() override;

 private:
  void OnError(QSerialPort::SerialPortError error);
  void Apply(const SerialSettings& settings);
  [[nodiscard]] std::optional<KnownDevice> Remembered(int number) const;
  void Remember() const;
  [[nodiscard]] std::string DeviceToOpen(const std::optional<KnownDevice>& before) const;
  [[nodiscard]] PortOpening OpenAt(const std::string& device);
  [[nodiscard]] PortOpening LockedByOthers(const std::string& device) const;
  [[nodiscard]] PortOpening Refused(const std::string& device) const;
  [[nodiscard]] bool OpenDevice();
  [[nodiscard]] dev_t DeviceNumber() const;
  [[nodiscard]] PortOpening Gone() const;
  void Vanish();
  [[nodiscard]] bool WaitOnce(std::chrono::milliseconds limit);
  [[nodiscard]] bool HandOver(std::string_view bytes);

  std::string program_directory_;
  std::function<Language()> language_ = [] { return Language::kEnglish; };
  std::function<std::string()> memory_ = [] { return std::string(); };
  SerialPlaces places_;
  QSerialPort port_;
  int number_ = 0;                    // of the last Open
  std::optional<KnownDevice> known_;  // what the last Open has opened
  // One of our own calls into port_ is running: an error is noted and the port closed when the
  // call is back, never beneath it.
  bool in_call_ = false;
  QSerialPort::SerialPortError failure_ = QSerialPort::NoError;
  int event_ = 0;
};

}  // namespace tavrel

#endif  // TAVREL_PLATFORM_QT_QT_SERIAL_PORT_H_
