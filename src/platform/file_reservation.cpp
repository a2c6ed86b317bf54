#include "platform/file_reservation.h"

#include <utility>

#include "platform/file_system.h"

namespace tavrel {

bool FileReservation::Take(const std::string& path) {
  error_.clear();
  if (file_.IsOpen() && file_.Identity() == IdentityOf(path)) {
    return true;
  }
  RandomFile file;
  if (!file.Open(path, FileAccess::kUpdate)) {
    error_ = file.Error();
    return false;
  }
  if (!file.Lock()) {
    return false;
  }
  file_ = std::move(file);
  return true;
}

}  // namespace tavrel
