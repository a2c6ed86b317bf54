#include "platform/append_file.h"

#include <cstddef>
#include <span>

#include "platform/file_system.h"

namespace tavrel {

bool AppendFile::Open(const std::string& path) {
  path_ = path;
  is_new_ = !IdentityOf(path);
  if (!file_.Open(path, FileAccess::kCreate)) {
    return false;
  }
  size_ = file_.Size();
  if (size_ < 0) {
    file_.Close();
    return false;
  }
  return true;
}

bool AppendFile::EndsInsideLine() {
  std::byte last{};
  return size_ > 0 && file_.ReadAt(size_ - 1, std::span(&last, 1)) == 1 && last != std::byte{'\n'};
}

std::optional<std::string> AppendFile::ReadAll(std::int64_t limit_bytes) {
  if (size_ > limit_bytes) {
    return std::nullopt;
  }
  std::string text(static_cast<std::size_t>(size_), '\0');
  const bool is_read =
      size_ == 0 || file_.ReadAt(0, std::as_writable_bytes(std::span(text))) == size_;
  return is_read ? std::optional(text) : std::nullopt;
}

bool AppendFile::Append(std::string_view text) {
  if (!file_.WriteAt(size_, std::as_bytes(std::span(text)))) {
    return false;
  }
  size_ += static_cast<std::int64_t>(text.size());
  return true;
}

bool AppendFile::Sync() {
  if (!file_.Sync()) {
    return false;
  }
  if (is_new_) {
    SyncDirectory(path_.substr(0, path_.rfind('/') + 1));
    is_new_ = false;
  }
  return true;
}

}  // namespace tavrel
