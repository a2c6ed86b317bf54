#ifndef TAVREL_FILES_HEADER_CHANGES_H_
#define TAVREL_FILES_HEADER_CHANGES_H_

#include "platform/json.h"
#include "state/unit_record.h"

namespace tavrel {

// What differs between two headers, for the journal: a list of objects {field, index, old, new}.
// `field` is the name in unit_record.h, or "Word" for a word that has none; `index` counts from 1
// and is there only where the field is a row of words or texts, for "Word" from 0 in the header.
[[nodiscard]] JsonValue::List HeaderChanges(const UnitRecord& before, const UnitRecord& after);

}  // namespace tavrel

#endif  // TAVREL_FILES_HEADER_CHANGES_H_
