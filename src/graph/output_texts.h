#ifndef TAVREL_GRAPH_OUTPUT_TEXTS_H_
#define TAVREL_GRAPH_OUTPUT_TEXTS_H_

#include "base/language.h"

// What boxes say of files that the graph writes. "%1" is the file.
namespace tavrel::output_text {

inline constexpr BothLanguages kInUse{"%1\nFile is in use", "%1\nDie Datei ist in Gebrauch"};
inline constexpr BothLanguages kUnreadable{"%1 cannot be read to its end.",
                                           "%1 lässt sich nicht bis zum Ende lesen."};
inline constexpr BothLanguages kNoJournal{
    "%1: the journal cannot be written (%2); the subfile is without it",
    "%1: das Journal kann nicht geschrieben werden (%2); die Teildatei hat keines"};

}  // namespace tavrel::output_text

#endif  // TAVREL_GRAPH_OUTPUT_TEXTS_H_
