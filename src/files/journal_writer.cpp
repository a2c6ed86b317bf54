#include "files/journal_writer.h"

#include <chrono>
#include <cstdio>
#include <utility>

#include "files/reasons.h"
#include "platform/file_system.h"
#include "platform/whoami.h"

namespace tavrel {
namespace {

// Makes the directory of the journals, but never that of the recordings, which may be a medium that
// is away.
bool HasDirectory(const std::string& directory) {
  if (DirectoryExists(directory)) {
    return true;
  }
  const std::string recordings = directory.substr(0, directory.rfind('/'));
  if (!DirectoryExists(recordings) || !MakeDirectory(directory)) {
    return false;
  }
  SyncDirectory(recordings);
  return true;
}

}  // namespace

bool JournalWriter::Open(const std::string& path) {
  chain_ = JournalChain();
  unsaved_.clear();
  error_.clear();
  if (!HasDirectory(path.substr(0, path.rfind('/')))) {
    error_ = reason::kNoJournalDirectory.English;
    return false;
  }
  if (!file_.Open(path)) {
    error_ = file_.Error();
    return false;
  }
  return true;
}

void JournalWriter::Close() {
  file_.Close();
  unsaved_.clear();
  error_.clear();
}

void JournalWriter::GoOnBehind(JournalReading reading) {
  chain_ = std::move(reading.Chain);
  if (reading.LacksLineFeed) {
    chain_.AddRaw("\n");
    unsaved_ = "\n";
  }
  if (reading.LacksLineFeed || reading.TornBytes) {
    Add(journal::kTorn, {{"bytes", reading.TornBytes.value_or(0)}});
  }
}

JournalStamp JournalWriter::Stamp() {
  if (boot_.empty()) {
    boot_ = BootId();
  }
  return {clock_->Now(), std::chrono::duration<double>(clock_->Elapsed()).count(), boot_};
}

JournalStamp JournalWriter::Add(const std::string& kind, const JsonValue::Members& fields) {
  JournalStamp stamp = Stamp();
  if (!IsOpen()) {
    return stamp;
  }
  unsaved_ += chain_.Line(stamp, kind, fields);
  if (!Save() && unsaved_.size() > kMostUnsaved) {
    file_.Close();
  }
  return stamp;
}

bool JournalWriter::Save() {
  if (!unsaved_.empty() && !file_.Append(unsaved_)) {
    error_ = file_.Error();
    return false;
  }
  unsaved_.clear();
  error_.clear();
  return true;
}

bool JournalWriter::Sync() {
  if (!IsOpen() || !Save()) {
    return false;
  }
  if (!file_.Sync()) {
    error_ = file_.Error();
    return false;
  }
  return true;
}

std::string PutJournalAside(const std::string& path) {
  constexpr int kMostNames = 1000;
  const std::size_t name = path.rfind('/') + 1;
  for (int number = 1; number < kMostNames; ++number) {
    const std::string aside = path + "." + std::to_string(number);
    if (!HoldsName(path.substr(0, name), aside.substr(name))) {
      return std::rename(path.c_str(), aside.c_str()) == 0 ? aside : "";
    }
  }
  return "";
}

}  // namespace tavrel
