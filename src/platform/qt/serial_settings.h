#ifndef TAVREL_PLATFORM_QT_SERIAL_SETTINGS_H_
#define TAVREL_PLATFORM_QT_SERIAL_SETTINGS_H_

#include <QSerialPort>
#include <optional>
#include <string>
#include <string_view>

namespace tavrel {

// What a settings text such as "4800,n,8,2" says: speed in baud, parity, data and stop bits.
struct SerialSettings {
  qint32 Speed = 0;
  QSerialPort::Parity Parity = QSerialPort::NoParity;
  QSerialPort::DataBits DataBits = QSerialPort::Data8;
  QSerialPort::StopBits StopBits = QSerialPort::OneStop;
};

// Nothing unless all four parts are there and each of them is known: a speed of 1 or more,
// parity n, e or o in either case, 5 to 8 data bits, 1 or 2 stop bits.
[[nodiscard]] std::optional<SerialSettings> ReadSerialSettings(std::string_view text);

// The settings that an open port has now, as a text of the same form.
[[nodiscard]] std::string SerialSettingsText(const QSerialPort& port);

}  // namespace tavrel

#endif  // TAVREL_PLATFORM_QT_SERIAL_SETTINGS_H_
