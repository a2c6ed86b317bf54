#ifndef TAVREL_FILES_JOURNAL_BEGIN_H_
#define TAVREL_FILES_JOURNAL_BEGIN_H_

#include <string>

#include "files/journal_text.h"
#include "platform/clock.h"
#include "platform/json.h"
#include "state/settings_values.h"
#include "state/unit_record.h"

// How a journal begins: what its first line says, and the whole journal of a file that is made in
// one piece.
namespace tavrel {

// Who goes on from here, and with what: computer, login, program, line.
[[nodiscard]] JsonValue::Members SessionFields(const SettingsValues& settings);

// The members of the line begin that every journal has.
[[nodiscard]] JsonValue::Members BeginFields(const std::string& id, const std::string& name,
                                             const UnitRecord& unit,
                                             const SettingsValues& settings);

// The file in which a recording was before, as the journal of the next one tells of it.
struct FileBefore {
  std::string Directory;
  std::string Name;
  std::string Id;               // empty: it has no journal that can be used
  bool HasWholeJournal = true;  // no line of it waits for the disk
  std::int32_t Rows = 0;        // of it
  std::int32_t Taken = 0;  // of these, the next file begins with so many, from the first one on
  int Interval = 0;        // seconds between two rows
};

// The member `before` of the line begin: file and id, and from which time of day on the rows count.
[[nodiscard]] JsonValue::Members BeforeFields(const FileBefore& before);

// What a subfile was cut out of. Rows from 0, of the source.
struct SubfileOrigin {
  std::string Directory;
  std::string Name;
  int FirstRow = 0;
  int LastRow = 0;
  int Interval = 0;  // seconds between two rows
};

// Begins the journal of a subfile that has been written as `bytes` to the full path. An older one
// of that name is put aside. A medium that refuses it costs the journal only: then what to tell the
// user, else the empty text.
[[nodiscard]] std::string BeginSubfileJournal(const std::string& path, const std::string& bytes,
                                              const SubfileOrigin& origin,
                                              const SettingsValues& settings, const Clock& clock);

}  // namespace tavrel

#endif  // TAVREL_FILES_JOURNAL_BEGIN_H_
