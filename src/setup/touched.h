#ifndef TAVREL_SETUP_TOUCHED_H_
#define TAVREL_SETUP_TOUCHED_H_

#include <string>
#include <string_view>
#include <vector>

#include "base/language.h"
#include "link/link.h"
#include "platform/dialogs.h"
#include "setup/channel_values.h"
#include "state/run_state.h"

// The controllers and recordings that use inputs whose calibration is about to change. The user
// decides whether it may change now.
namespace tavrel {

// The inputs concerned.
using Rows = ByRow<bool>;

// The controllers 1..4 of instrument `inet` that use one of `rows` and are on, a line of text each.
// Controller n uses input n. They are asked in turn; behind the first that does not answer the
// others are not asked any more, and all of these are named, for they may be on.
[[nodiscard]] std::vector<std::string> ControllersAtWork(Link& link, int inet, const Rows& rows,
                                                         Language language);

// The recordings that are on and take one of `rows` of instrument `inet`, a line of text each.
[[nodiscard]] std::vector<std::string> RecordingsAtWork(const RunState& state, int inet,
                                                        const Rows& rows);

// What a variable file would switch by itself: the values of Z01..Z04 and G00 that are not 0, up to
// where the file can be read.
[[nodiscard]] std::vector<std::string> OrdersInFile(std::string_view bytes, Language language);

// True if nothing uses them, or if the user agrees to the change. The preset answer is No.
[[nodiscard]] bool MayTouch(Dialogs& dialogs, const std::vector<std::string>& lines,
                            const std::string& title, Language language);

}  // namespace tavrel

#endif  // TAVREL_SETUP_TOUCHED_H_
