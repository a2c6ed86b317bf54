#ifndef TAVREL_FILES_REASONS_H_
#define TAVREL_FILES_REASONS_H_

#include <string>
#include <string_view>

#include "base/language.h"

// Reasons and findings. The journal keeps them in English; whoever shows them to the user shows
// them in the user's language.
namespace tavrel {

namespace reason {
// Of values.
inline constexpr BothLanguages kLostNextStands{
    "lost on the line; the next value stands in its place",
    "auf der Leitung verloren; der nächste Wert steht an seiner Stelle"};
inline constexpr BothLanguages kLostValueBeforeStands{
    "lost on the line; the value before it stands in its place",
    "auf der Leitung verloren; der Wert davor steht an seiner Stelle"};
inline constexpr BothLanguages kMayBeLost{
    "nobody can know whether a value was lost on the line; nothing was filled in, from here on the "
    "values may stand one row too early",
    "niemand kann wissen, ob auf der Leitung ein Wert verloren ging; es wurde nichts ersetzt, von "
    "hier an stehen die Werte vielleicht eine Zeile zu früh"};
inline constexpr BothLanguages kSamplingChanged{
    "its sampling time was changed by hand; from here on the values may stand in a wrong row",
    "seine Abtastzeit wurde von Hand geändert; von hier an stehen die Werte vielleicht in einer "
    "falschen Zeile"};
inline constexpr BothLanguages kMoreMayBeDropped{
    "nobody can know whether more values were dropped by hand, from here on the values may stand "
    "one row too early",
    "niemand kann wissen, ob von Hand noch mehr Werte verworfen wurden, von hier an stehen die "
    "Werte vielleicht eine Zeile zu früh"};
inline constexpr BothLanguages kClearedNextStands{
    "cleared by hand; the next value stands in its place",
    "von Hand gelöscht; der nächste Wert steht an seiner Stelle"};
inline constexpr BothLanguages kClearedValueBeforeStands{
    "cleared by hand; the value before it stands in its place",
    "von Hand gelöscht; der Wert davor steht an seiner Stelle"};
inline constexpr BothLanguages kFullWrongRow{
    "the buffer of the instrument was full; from here on the values may stand in a wrong row",
    "der Puffer des Geräts war voll; von hier an stehen die Werte vielleicht in einer falschen "
    "Zeile"};
inline constexpr BothLanguages kClearedWrongRow{
    "the instrument has cleared its buffers; from here on the values may stand in a wrong row",
    "das Gerät hat seine Puffer gelöscht; von hier an stehen die Werte vielleicht in einer "
    "falschen Zeile"};
inline constexpr BothLanguages kRestartedWrongRow{
    "the instrument was switched off and on; from here on the values may stand in a wrong row",
    "das Gerät wurde aus- und eingeschaltet; von hier an stehen die Werte vielleicht in einer "
    "falschen Zeile"};
inline constexpr BothLanguages kClearedTooEarly{
    "the instrument has cleared its buffers; the values may stand one row too early",
    "das Gerät hat seine Puffer gelöscht; die Werte stehen vielleicht eine Zeile zu früh"};
inline constexpr BothLanguages kRestartedTooEarly{
    "the instrument was switched off and on; the values may stand one row too early",
    "das Gerät wurde aus- und eingeschaltet; die Werte stehen vielleicht eine Zeile zu früh"};

// Of sets that are lost.
inline constexpr BothLanguages kFull{"the buffer of the instrument was full",
                                     "der Puffer des Geräts war voll"};
inline constexpr BothLanguages kCleared{"the instrument has cleared its buffers",
                                        "das Gerät hat seine Puffer gelöscht"};
inline constexpr BothLanguages kRestarted{"the instrument was switched off and on",
                                          "das Gerät wurde aus- und eingeschaltet"};
inline constexpr BothLanguages kPowerOff{
    "the power went off before they were on the disk",
    "der Strom ist ausgefallen, bevor sie auf der Platte waren"};
inline constexpr BothLanguages kFewerCame{"fewer sets have come than were made",
                                          "es sind weniger Sätze gekommen, als gemacht wurden"};

// Why a file was not written.
inline constexpr BothLanguages kNoFile{"no file", "keine Datei"};
inline constexpr BothLanguages kAnotherFile{"another file has taken its place",
                                            "an ihrer Stelle steht eine andere Datei"};
inline constexpr BothLanguages kRecordedElsewhere{"another program records it",
                                                  "ein anderes Programm zeichnet sie auf"};
inline constexpr BothLanguages kShorter{"the file has become shorter",
                                        "die Datei ist kürzer geworden"};
inline constexpr BothLanguages kSetDoesNotFit{"the set does not fit the file",
                                              "der Satz passt nicht zur Datei"};
inline constexpr BothLanguages kFileFull{"the file is full", "die Datei ist voll"};
inline constexpr BothLanguages kNoFreeNextName{"no free name for the next file",
                                               "für die nächste Datei ist kein Name frei"};
inline constexpr BothLanguages kNoJournalDirectory{
    "the directory journal cannot be made", "das Verzeichnis journal kann nicht angelegt werden"};
inline constexpr BothLanguages kJournalInTheWay{"an older one cannot be put aside",
                                                "ein älteres lässt sich nicht beiseite legen"};
inline constexpr BothLanguages kTooLong{"too long", "zu lang"};
inline constexpr BothLanguages kUnread{"what it holds could not be read yet",
                                       "was darin steht, konnte noch nicht gelesen werden"};

// What was found of a recording and its journal.
inline constexpr BothLanguages kHeaderNotAsSealed{"the header is not as it was sealed",
                                                  "der Kopf ist nicht so, wie er versiegelt wurde"};
inline constexpr BothLanguages kRowNotAsSealed{"row %1 is not as sealed",
                                               "Zeile %1 ist nicht so, wie sie versiegelt wurde"};
inline constexpr BothLanguages kRowsNotAsSealed{
    "between rows %1 to %2 not as sealed",
    "zwischen den Zeilen %1 bis %2 nicht so, wie versiegelt wurde"};
inline constexpr BothLanguages kRowMissing{"row %1 is missing", "Zeile %1 fehlt"};
inline constexpr BothLanguages kRowsMissing{"between rows %1 to %2 missing",
                                            "zwischen den Zeilen %1 bis %2 fehlt etwas"};
inline constexpr BothLanguages kRowNotJudged{
    "row %1 cannot be judged without those that are missing",
    "Zeile %1 lässt sich ohne die fehlenden nicht beurteilen"};
inline constexpr BothLanguages kRowsNotJudged{
    "rows %1 to %2 cannot be judged without those that are missing",
    "Zeilen %1 bis %2 lassen sich ohne die fehlenden nicht beurteilen"};
inline constexpr BothLanguages kNoSeal{"the journal holds no seal",
                                       "das Journal enthält kein Siegel"};
inline constexpr BothLanguages kRowBehindSeal{"row %1 behind the last seal",
                                              "Zeile %1 steht hinter dem letzten Siegel"};
inline constexpr BothLanguages kRowsBehindSeal{"rows %1 to %2 behind the last seal",
                                               "Zeilen %1 bis %2 stehen hinter dem letzten Siegel"};
inline constexpr BothLanguages kJournalTorn{"the journal ends inside a line",
                                            "das Journal endet mitten in einer Zeile"};
inline constexpr BothLanguages kLineBehindSeal{
    "1 line of the journal behind the last seal",
    "1 Zeile des Journals steht hinter dem letzten Siegel"};
inline constexpr BothLanguages kLinesBehindSeal{
    "%1 lines of the journal behind the last seal",
    "%1 Zeilen des Journals stehen hinter dem letzten Siegel"};
inline constexpr BothLanguages kTornByte{"1 byte of a torn row at the end",
                                         "1 Byte einer abgerissenen Zeile am Ende"};
inline constexpr BothLanguages kTornBytes{"%1 bytes of a torn row at the end",
                                          "%1 Bytes einer abgerissenen Zeile am Ende"};
inline constexpr BothLanguages kJournalLine{
    "the journal: line %1 is not as it was written",
    "das Journal: Zeile %1 ist nicht so, wie sie geschrieben wurde"};
inline constexpr BothLanguages kJournalBegin{"the journal: its beginning is missing",
                                             "das Journal: sein Anfang fehlt"};
// Why there is no ledger.
inline constexpr BothLanguages kNoJournal{"there is no journal", "es gibt kein Journal"};
inline constexpr BothLanguages kPart{"it is a part of another recording",
                                     "sie ist ein Teil einer anderen Aufzeichnung"};
inline constexpr BothLanguages kSimulated{"no instrument was on the line",
                                          "an der Leitung war kein Gerät"};

// Begins what keeps the journal of a file from being read.
inline constexpr BothLanguages kItsJournal{"its journal: ", "ihr Journal: "};
}  // namespace reason

// `english`, as the journal or a rule gives it, in `language`. What is none of the reasons above,
// such as the system's own words, stays as it is.
[[nodiscard]] std::string ReasonIn(Language language, std::string_view english);

}  // namespace tavrel

#endif  // TAVREL_FILES_REASONS_H_
