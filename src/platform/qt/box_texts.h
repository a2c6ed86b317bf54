#ifndef TAVREL_PLATFORM_QT_BOX_TEXTS_H_
#define TAVREL_PLATFORM_QT_BOX_TEXTS_H_

#include "base/language.h"

// What the boxes themselves say, whoever opens them.
namespace tavrel::box_text {

// The answers.
inline constexpr BothLanguages kCancel{"Cancel", "Abbrechen"};
inline constexpr BothLanguages kRetry{"Retry", "&Wiederholen"};
inline constexpr BothLanguages kExit{"Exit", "&Beenden"};
inline constexpr BothLanguages kYes{"Yes", "&Ja"};
inline constexpr BothLanguages kNo{"No", "&Nein"};

// What the sign of a box stands for.
inline constexpr BothLanguages kInformation{"information", "Hinweis"};
inline constexpr BothLanguages kQuestion{"question", "Frage"};
inline constexpr BothLanguages kWarning{"warning", "Warnung"};
inline constexpr BothLanguages kError{"error", "Fehler"};

inline constexpr BothLanguages kReplace{"%1\n\nThis file exists already. Replace it ?",
                                        "%1\n\nDiese Datei gibt es schon. Ersetzen ?"};
inline constexpr BothLanguages kFont{"Font", "Schriftart"};
inline constexpr BothLanguages kNotices{"notices", "Meldungen"};
inline constexpr BothLanguages kNoticesTitle{"TAVREL   notices", "TAVREL   Meldungen"};
inline constexpr BothLanguages kClose{"Close", "Schließen"};

}  // namespace tavrel::box_text

#endif  // TAVREL_PLATFORM_QT_BOX_TEXTS_H_
