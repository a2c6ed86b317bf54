#include "platform/qt/qt_serial_port.h"

#include <sys/stat.h>

#include <QDeadlineTimer>
#include <QFileInfo>
#include <thread>
#include <utility>

#include "platform/known_device_file.h"
#include "platform/port_lock.h"
#include "platform/qt/serial_advice.h"
#include "platform/qt/serial_device.h"
#include "platform/serial_names.h"

namespace tavrel {
namespace {

using std::chrono::milliseconds;
using std::chrono::nanoseconds;

// A frame has at most some twenty characters and always fits the system's buffer; only a line
// that is stuck keeps a write waiting.
constexpr milliseconds kStuckLine{100};

// Fetches of one ReadAll: enough for all that can wait, and an end under a flood.
constexpr int kFetches = 8;

// Neither a wait that is over nor a device without control lines is a fault of the port.
bool IsHarmless(QSerialPort::SerialPortError error) {
  return error == QSerialPort::NoError || error == QSerialPort::TimeoutError ||
         error == QSerialPort::UnsupportedOperationError;
}

// The lock is on the device: two links to one device are one port. A device that is not there
// keeps its name.
QString WithoutLinks(const std::string& device) {
  const QString path = QString::fromStdString(device);
  const QString real = QFileInfo(path).canonicalFilePath();
  return real.isEmpty() ? path : real;
}

}  // namespace

QtSerialPort::QtSerialPort(std::string program_directory, SerialPlaces places)
    : program_directory_(std::move(program_directory)), places_(std::move(places)) {
  QObject::connect(&port_, &QSerialPort::errorOccurred, &port_,
                   [this](QSerialPort::SerialPortError error) { OnError(error); });
}

PortOpening QtSerialPort::Open(int number, std::string_view settings) {
  Close();
  event_ = 0;
  const auto before = number == number_ ? known_ : Remembered(number);
  known_.reset();
  number_ = number;
  const auto wanted = ReadSerialSettings(settings);
  if (!wanted) {
    return {QSerialPort::UnsupportedOperationError, BadSettingsAdvice(settings, language_())};
  }
  const std::string device = DeviceToOpen(before);
  if (device.empty()) {
    return {QSerialPort::DeviceNotFoundError, before ? StillGoneAdvice(number, *before, language_())
                                                     : NoPortAdvice(number, language_())};
  }
  // A change of parity fails on an open port, so everything is set before.
  Apply(*wanted);
  PortOpening opening = OpenAt(device);
  if (opening.Error == 0) {
    known_ = Recognise(device, DeviceNumber(), places_);
    Remember();
  } else {
    known_ = before;
  }
  return opening;
}

std::optional<KnownDevice> QtSerialPort::Remembered(int number) const {
  const std::string file = memory_();
  return file.empty() ? std::nullopt : ReadKnownDevice(file, number);
}

void QtSerialPort::Remember() const {
  const std::string file = memory_();
  if (!file.empty()) {
    KeepKnownDevice(file, number_, *known_);
  }
}

// A port that was open before under the same number, be it in an earlier run, stays the same
// device: the settings may have been confirmed for another reason while its adapter was out. A link
// that the user has laid anew meanwhile counts.
std::string QtSerialPort::DeviceToOpen(const std::optional<KnownDevice>& before) const {
  std::string named = SerialDevice(number_, program_directory_, places_.DeviceDirectory);
  if (!before) {
    return named;
  }
  std::string now = WhereItIsNow(*before, places_);
  const bool is_same_link = named == before->Path && before->IsLink &&
                            IsLaidByHand(number_, named, places_.DeviceDirectory);
  return is_same_link && !now.empty() ? named : now;
}

// Which device it is, is looked at once more when it is open: until then the name may have gone
// over to another.
PortOpening QtSerialPort::Reopen() {
  Close();
  event_ = 0;
  const std::string device = known_ ? WhereItIsNow(*known_, places_) : "";
  if (device.empty()) {
    return Gone();
  }
  PortOpening opening = OpenAt(device);
  if (opening.Error == 0 && !IsSameDevice(*known_, DeviceNumber(), places_)) {
    Close();
    return Gone();
  }
  return opening;
}

PortOpening QtSerialPort::Gone() const {
  return {QSerialPort::DeviceNotFoundError,
          GoneAdvice(number_, known_.value_or(KnownDevice{}), language_())};
}

PortOpening QtSerialPort::OpenAt(const std::string& device) {
  PortOpening locked = LockedByOthers(device);
  if (locked.Error != 0) {
    return locked;
  }
  const QString path = WithoutLinks(device);
  port_.setPortName(path);
  const bool is_open = OpenDevice() || (port_.error() == QSerialPort::UnsupportedOperationError &&
                                        UnsettleDevice(path) && OpenDevice());
  if (!is_open) {
    return Refused(device);
  }
  ShareIfPseudoTerminal(path, port_.handle());
  return {};
}

// The toolkit deletes every lock file that has no program's name in it, and every other that is
// older than half a minute and not locked by the kernel, whether its process lives or not. So the
// port is opened only where nothing stands that it could take away from a living program.
PortOpening QtSerialPort::LockedByOthers(const std::string& device) const {
  const std::string own = SerialLockFile(WithoutLinks(device)).toStdString();
  for (const std::string& file : PortLockFiles(DeviceNames(device), places_.DeviceDirectory)) {
    const PortLock lock = LookAtPortLock(file);
    const bool is_out_of_the_way =
        lock.State == LockState::kFree ||
        (lock.State == LockState::kLeft && (RemovePortLock(file) || file != own));
    if (!is_out_of_the_way) {
      return {QSerialPort::PermissionError, LockAdvice(number_, device, file, lock, language_()),
              lock.State == LockState::kHeld};
    }
  }
  return {};
}

PortOpening QtSerialPort::Refused(const std::string& device) const {
  const auto error = port_.error();
  const bool is_forbidden = error == QSerialPort::PermissionError && MayBeOpened(device);
  if (is_forbidden) {
    const std::string lock = SerialLockFile(WithoutLinks(device)).toStdString();
    const std::string reason = WhyNoPortLock(lock);
    if (!reason.empty()) {
      return {error, NoLockAdvice(number_, device, lock, reason, language_())};
    }
  }
  return {error, AdviceFor(number_, device, error, port_.errorString().toStdString(), language_()),
          is_forbidden};
}

dev_t QtSerialPort::DeviceNumber() const {
  struct stat status {};
  return fstat(port_.handle(), &status) == 0 ? status.st_rdev : dev_t{};
}

bool QtSerialPort::OpenDevice() {
  in_call_ = true;
  const bool opened = port_.open(QIODevice::ReadWrite);
  in_call_ = false;
  failure_ = QSerialPort::NoError;
  return opened;
}

void QtSerialPort::Apply(const SerialSettings& settings) {
  port_.setBaudRate(settings.Speed);
  port_.setParity(settings.Parity);
  port_.setDataBits(settings.DataBits);
  port_.setStopBits(settings.StopBits);
  port_.setFlowControl(QSerialPort::NoFlowControl);
}

void QtSerialPort::Close() {
  if (port_.isOpen()) {
    port_.close();
  }
  failure_ = QSerialPort::NoError;
}

std::string QtSerialPort::Settings() const {
  return port_.isOpen() ? SerialSettingsText(port_) : "";
}

std::string QtSerialPort::Device() const {
  return known_ ? known_->Path : std::string();
}

bool QtSerialPort::Write(std::string_view bytes) {
  if (!port_.isOpen()) {
    return false;
  }
  in_call_ = true;
  const bool written = HandOver(bytes);
  in_call_ = false;
  Vanish();
  return written && port_.isOpen();
}

// write() alone sends nothing before the event loop runs; flush() sends at once.
bool QtSerialPort::HandOver(std::string_view bytes) {
  const auto size = static_cast<qint64>(bytes.size());
  if (port_.write(bytes.data(), size) != size) {
    return false;
  }
  port_.flush();
  if (failure_ != QSerialPort::NoError) {
    return false;
  }
  while (port_.bytesToWrite() > 0) {
    if (!port_.waitForBytesWritten(static_cast<int>(kStuckLine.count()))) {
      // What is left must not go out in the middle of a later exchange.
      port_.clear(QSerialPort::Output);
      return false;
    }
  }
  return true;
}

// Characters reach the port's buffer only in a wait, so the taking of them is one, of no length.
std::string QtSerialPort::ReadAll() {
  for (int fetch = 0; fetch < kFetches && port_.isOpen() && WaitOnce(milliseconds(0)); ++fetch) {
  }
  return port_.isOpen() ? port_.readAll().toStdString() : "";
}

void QtSerialPort::WaitForData(nanoseconds limit) {
  const QDeadlineTimer end(limit, Qt::PreciseTimer);
  while (port_.isOpen() && port_.bytesAvailable() == 0) {
    const nanoseconds left = end.remainingTimeAsDuration();
    const auto whole = std::chrono::duration_cast<milliseconds>(left);
    if (WaitOnce(whole) || end.hasExpired()) {
      return;
    }
    if (whole.count() == 0) {
      // The port counts whole milliseconds; the rest of the last one is slept without it.
      std::this_thread::sleep_for(end.remainingTimeAsDuration());
    }
  }
}

// True if characters came. Runs no timers and serves no events.
bool QtSerialPort::WaitOnce(milliseconds limit) {
  in_call_ = true;
  const bool came = port_.waitForReadyRead(static_cast<int>(limit.count()));
  in_call_ = false;
  Vanish();
  return came;
}

int QtSerialPort::TakeEvent() {
  return std::exchange(event_, 0);
}

// A device that went away reports its error without end as long as the port stays open and the
// event loop runs, and takes a whole core for it: it is closed at once.
void QtSerialPort::OnError(QSerialPort::SerialPortError error) {
  if (IsHarmless(error)) {
    return;
  }
  failure_ = error;
  if (!in_call_) {
    Vanish();
  }
}

void QtSerialPort::Vanish() {
  if (failure_ == QSerialPort::NoError) {
    return;
  }
  event_ = kLastHarmlessPortEvent + static_cast<int>(failure_);
  Close();
}

}  // namespace tavrel
