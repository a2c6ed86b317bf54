#ifndef TAVREL_DIALOGS_WRITTEN_FILE_H_
#define TAVREL_DIALOGS_WRITTEN_FILE_H_

#include <string>

#include "base/language.h"
#include "platform/dialogs.h"
#include "platform/shell.h"

namespace tavrel {

// Says under `title` where the file that a command has written is, and shows its directory if the
// user wants to see it. Where nothing shows directories a notice that does not block says so.
// `dialogs` outlives the program's events.
void TellWhereItWent(Dialogs& dialogs, Shell& shell, const std::string& path, const char* title,
                     Language language);

}  // namespace tavrel

#endif  // TAVREL_DIALOGS_WRITTEN_FILE_H_
