#ifndef TAVREL_FILES_JOURNAL_BEGIN_H_
#define TAVREL_FILES_JOURNAL_BEGIN_H_

#include <string>

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

// What a subfile was cut out of. Rows from 0, of the source.
struct SubfileOrigin {
  std::string Directory;
  std::string Name;
  int FirstRow = 0;
  int LastRow = 0;
};

// Begins the journal of a subfile that has been written as `bytes` to the full path. An older one
// of that name is put aside. A medium that refuses it costs the journal only.
void BeginSubfileJournal(const std::string& path, const std::string& bytes,
                         const SubfileOrigin& origin, const SettingsValues& settings,
                         const Clock& clock);

}  // namespace tavrel

#endif  // TAVREL_FILES_JOURNAL_BEGIN_H_
