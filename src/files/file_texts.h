#ifndef TAVREL_FILES_FILE_TEXTS_H_
#define TAVREL_FILES_FILE_TEXTS_H_

#include "base/language.h"

// What boxes say of recordings, their files and the instruments behind them. "%1" is the file where
// nothing else is said.
namespace tavrel::file_text {

inline constexpr BothLanguages kReadTavrel{"Read  Tavrel", "Tavrel lesen"};  // a title

// Of values: %2 are the rows, %3 the inputs, %4 what became of them.
inline constexpr BothLanguages kValues = BothLanguages::Same("%1: %2, %3: %4");
inline constexpr BothLanguages kRow{"row %1", "Zeile %1"};
inline constexpr BothLanguages kRows{"rows %1 to %2", "Zeilen %1 bis %2"};
inline constexpr BothLanguages kRowsZeroAndOne{"rows 0 and 1", "Zeilen 0 und 1"};
inline constexpr BothLanguages kInput{"input %1", "Eingang %1"};
inline constexpr BothLanguages kInputs{"inputs %1", "Eingänge %1"};

// Of sets: %2 is the row behind them, %3 what happened, %4 how many.
inline constexpr BothLanguages kSetsLost{"%1: row %2: %3; before this row %4 lost",
                                         "%1: Zeile %2: %3; vor dieser Zeile %4 verloren"};
inline constexpr BothLanguages kUnknownSets{"an unknown number of sets was",
                                            "ist eine unbekannte Zahl von Sätzen"};
inline constexpr BothLanguages kOneSet{"1 set was", "ist 1 Satz"};
inline constexpr BothLanguages kSets{"%1 sets were", "sind %1 Sätze"};
inline constexpr BothLanguages kAboutOneSet{"about 1 set was", "ist etwa 1 Satz"};
inline constexpr BothLanguages kAboutSets{"about %1 sets were", "sind etwa %1 Sätze"};
inline constexpr BothLanguages kPerhapsOneSet{"perhaps 1 set was", "ist vielleicht 1 Satz"};
inline constexpr BothLanguages kPerhapsSets{"perhaps %1 sets were", "sind vielleicht %1 Sätze"};

// Of rows that were lost with the power.
inline constexpr BothLanguages kRowLost{"%1: 1 row was lost with the power, before row %2",
                                        "%1: 1 Zeile ging mit dem Strom verloren, vor Zeile %2"};
inline constexpr BothLanguages kRowsLost{
    "%1: %3 rows were lost with the power, before row %2",
    "%1: %3 Zeilen gingen mit dem Strom verloren, vor Zeile %2"};

// Before a recording begins.
inline constexpr BothLanguages kOtherColumns{
    "This file has another number of columns than there are recorded inputs.",
    "Diese Datei hat eine andere Zahl von Spalten, als Eingänge aufgezeichnet werden."};
inline constexpr BothLanguages kFileInSeconds{
    "This file counts its sampling time in seconds, the instrument in tens of seconds.",
    "Diese Datei zählt ihre Abtastzeit in Sekunden, das Gerät in Schritten von zehn "
    "Sekunden."};
inline constexpr BothLanguages kFileInTens{
    "This file counts its sampling time in tens of seconds, the instrument in seconds.",
    "Diese Datei zählt ihre Abtastzeit in Schritten von zehn Sekunden, das Gerät in Sekunden."};

// Of a recording's file.
inline constexpr BothLanguages kStandsStill{
    "%1: the recording stands still, for the file has another number of columns than there are "
    "recorded inputs.",
    "%1: die Aufzeichnung steht still, denn die Datei hat eine andere Zahl von Spalten, als "
    "Eingänge aufgezeichnet werden."};
// Behind the name of the file.
inline constexpr BothLanguages kInUseInRow{"  is in use in row %1 !",
                                           "  ist in Zeile %1 in Gebrauch !"};
inline constexpr BothLanguages kInUseElsewhere{"  is recorded by another program !",
                                               "  wird von einem anderen Programm aufgezeichnet !"};
inline constexpr BothLanguages kHeaderOfRow{
    "%1 is recorded in row %2: what was changed in its header is not kept",
    "%1 wird in Zeile %2 aufgezeichnet: die Änderung am Dateikopf wird nicht gespeichert"};
inline constexpr BothLanguages kHeaderElsewhere{
    "%1 is recorded by another program: what was changed in its header is not kept",
    "%1 wird von einem anderen Programm aufgezeichnet: die Änderung am Dateikopf wird nicht "
    "gespeichert"};
inline constexpr BothLanguages kNoNameToday{"%1: no free file name is left today",
                                            "%1: für heute ist kein Dateiname mehr frei"};
inline constexpr BothLanguages kNoNextName{"%1: no free name for the next file",
                                           "%1: für die nächste Datei ist kein Name frei"};
inline constexpr BothLanguages kJournalRefused{
    "%1: the journal cannot be written (%2); the recording goes on without it",
    "%1: das Journal kann nicht geschrieben werden (%2); die Aufzeichnung geht ohne es weiter"};
inline constexpr BothLanguages kSetKept{
    "%1: the last set could not be written (%2); it stays beside the file and is written when the "
    "file is opened again",
    "%1: der letzte Satz konnte nicht geschrieben werden (%2); er bleibt neben der Datei und wird "
    "geschrieben, wenn sie wieder geöffnet wird"};
inline constexpr BothLanguages kSetLost{
    "%1: the last set could not be written (%2) and is lost",
    "%1: der letzte Satz konnte nicht geschrieben werden (%2) und ist verloren"};

// Of a file that others have taken away: %2 is where the recording goes on, %3 its rows.
inline constexpr BothLanguages kTakenAway{
    "%1: the file has been deleted or moved by others; %2 %3",
    "%1: die Datei wurde von anderen gelöscht oder verschoben; %2 %3"};
inline constexpr BothLanguages kThereAgain{"it stands there again", "sie steht wieder dort,"};
inline constexpr BothLanguages kGoesOnIn{"the recording goes on in %1",
                                         "die Aufzeichnung geht weiter in %1,"};
inline constexpr BothLanguages kWithAllRows{"with all its rows", "mit allen ihren Zeilen"};
inline constexpr BothLanguages kWithoutRows{"without its rows, which are lost",
                                            "ohne ihre Zeilen, die verloren sind"};
inline constexpr BothLanguages kWithSomeRows{"with those of its rows that were left",
                                             "mit denen ihrer Zeilen, die noch da waren"};

// The question about simulated rows; %1 are the files.
inline constexpr BothLanguages kConsent{
    "The instruments are simulated.\n\nThese files hold rows already:\n%1\nTheir recording stands "
    "still. Write simulated values behind their rows ?",
    "Die Geräte werden simuliert.\n\nDiese Dateien enthalten schon Zeilen:\n%1\nIhre Aufzeichnung "
    "steht still. Simulierte Werte hinter ihre Zeilen schreiben ?"};

}  // namespace tavrel::file_text

#endif  // TAVREL_FILES_FILE_TEXTS_H_
