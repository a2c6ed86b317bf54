#ifndef TAVREL_PLATFORM_FILE_RESERVATION_H_
#define TAVREL_PLATFORM_FILE_RESERVATION_H_

#include <string>

#include "platform/random_file.h"

namespace tavrel {

// Keeps a file for one part of one program, among all that reserve files in this way, until it is
// released: whatever other handles of the file are opened and closed meanwhile. It keeps nobody
// from reading or writing who does not ask. Where the medium cannot do that, everybody may have it.
class FileReservation {
 public:
  // Reserves the file at `path`; what was reserved before is released if it is another one. False,
  // and nothing has changed, if somebody else has it or it cannot be opened for writing.
  [[nodiscard]] bool Take(const std::string& path);

  void Release() { file_.Close(); }

  // The system's words for the last failure of Take; empty if somebody else has the file.
  [[nodiscard]] const std::string& Error() const { return error_; }

 private:
  RandomFile file_;
  std::string error_;
};

}  // namespace tavrel

#endif  // TAVREL_PLATFORM_FILE_RESERVATION_H_
