#ifndef TAVREL_PLATFORM_QT_QT_CHOOSERS_H_
#define TAVREL_PLATFORM_QT_QT_CHOOSERS_H_

#include <functional>
#include <string>

#include "platform/file_choice.h"

class QString;

// The toolkit's dialogs for files and fonts, on top of the window in front.
namespace tavrel {

// `may_replace` is asked, with the path as the disk spells it, before an existing file is chosen
// for saving; after false the dialog comes again.
void RunFileDialog(FileChoice& choice,
                   const std::function<bool(const std::string& path)>& may_replace);

// A dialog called `title`. False: `choice` is as it was.
[[nodiscard]] bool RunFontDialog(FontChoice& choice, const QString& title);

// The filters of `filter` in the toolkit's notation: "program (*.prg)".
[[nodiscard]] QString QtFilter(const std::string& filter);

}  // namespace tavrel

#endif  // TAVREL_PLATFORM_QT_QT_CHOOSERS_H_
