#include "platform/qt/serial_settings.h"

#include <QString>
#include <QStringList>

namespace tavrel {
namespace {

std::optional<QSerialPort::Parity> ReadParity(const QString& text) {
  if (text == "n") {
    return QSerialPort::NoParity;
  }
  if (text == "e") {
    return QSerialPort::EvenParity;
  }
  if (text == "o") {
    return QSerialPort::OddParity;
  }
  return std::nullopt;
}

QString ParityText(QSerialPort::Parity parity) {
  switch (parity) {
    case QSerialPort::NoParity:
      return "n";
    case QSerialPort::EvenParity:
      return "e";
    case QSerialPort::OddParity:
      return "o";
    default:
      return "?";
  }
}

}  // namespace

std::optional<SerialSettings> ReadSerialSettings(std::string_view text) {
  const QStringList parts =
      QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size())).toLower().split(',');
  if (parts.size() != 4) {
    return std::nullopt;
  }
  const int speed = parts[0].toInt();
  const auto parity = ReadParity(parts[1]);
  const int data_bits = parts[2].toInt();
  const int stop_bits = parts[3].toInt();
  const bool known = speed >= 1 && parity && data_bits >= 5 && data_bits <= 8 &&
                     (stop_bits == 1 || stop_bits == 2);
  if (!known) {
    return std::nullopt;
  }
  return SerialSettings{speed, *parity, static_cast<QSerialPort::DataBits>(data_bits),
                        static_cast<QSerialPort::StopBits>(stop_bits)};
}

std::string SerialSettingsText(const QSerialPort& port) {
  return QString("%1,%2,%3,%4")
      .arg(port.baudRate())
      .arg(ParityText(port.parity()))
      .arg(static_cast<int>(port.dataBits()))
      .arg(static_cast<int>(port.stopBits()))
      .toStdString();
}

}  // namespace tavrel
