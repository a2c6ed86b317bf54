#ifndef TAVREL_SETUP_SETUP_TEXTS_H_
#define TAVREL_SETUP_SETUP_TEXTS_H_

#include "base/language.h"

// What boxes and lines of the set-up say: adjustment, variable files, numbers.
namespace tavrel::setup_text {

// What a change would touch, a line each.
inline constexpr BothLanguages kAffects{"This affects:\n%1\n\nGo on ?",
                                        "Das betrifft:\n%1\n\nWeiter ?"};
inline constexpr BothLanguages kMayBeOn{"controller %1, which may be on: it did not answer",
                                        "Regler %1, der ein sein kann: er hat nicht geantwortet"};
inline constexpr BothLanguages kIsOn{"controller %1, which is on (%2)",
                                     "Regler %1, der ein ist (%2)"};
inline constexpr BothLanguages kRecording{"the recording %1 of row %2",
                                          "die Aufzeichnung %1 der Zeile %2"};
inline constexpr BothLanguages kSwitches{"the file's %1 = %2, which switches a controller",
                                         "%1 = %2 der Datei, das einen Regler schaltet"};
inline constexpr BothLanguages kCommands{"the file's %1 = %2, which is a command to the instrument",
                                         "%1 = %2 der Datei, ein Befehl an das Gerät"};

// The record of an adjustment; %1 is its file, %2 the system's words.
inline constexpr BothLanguages kNoRecord{
    "Cannot write file  %1: %2\n\nAdjust without a record of it ?",
    "Die Datei lässt sich nicht schreiben:  %1: %2\n\nOhne Protokoll abgleichen ?"};
inline constexpr BothLanguages kNotRecorded{"Cannot write file  %1: %2",
                                            "Die Datei lässt sich nicht schreiben:  %1: %2"};

// Behind an instruction.
inline constexpr BothLanguages kReadingFailed{"     (1 reading failed)",
                                              "     (1 Messwert nicht erhalten)"};
inline constexpr BothLanguages kReadingsFailed{"     (%1 readings failed)",
                                               "     (%1 Messwerte nicht erhalten)"};

// What an instrument did not acknowledge. %1 is a row or rows.
inline constexpr BothLanguages kStillLinear{
    "The instrument did not acknowledge that row %1 gives raw readings (L = 0).\nThe adjustment "
    "ends.",
    "Das Gerät hat nicht bestätigt, dass Zeile %1 Rohwerte liefert (L = 0).\nDer Abgleich endet."};
inline constexpr BothLanguages kWithoutSensor{
    "\n\nThese rows have no sensor code now (L = 0):%1",
    "\n\nDiese Zeilen haben jetzt keinen Sensorcode (L = 0):%1"};
inline constexpr BothLanguages kNotAcknowledged{
    "The instrument did not acknowledge:\n%1\n\nAdjust these rows again.",
    "Das Gerät hat nicht bestätigt:\n%1\n\nDiese Zeilen neu abgleichen."};
inline constexpr BothLanguages kSensorUnknown{
    "row %1, register %2: it is not known whether the row has its sensor code",
    "Zeile %1, Register %2: unbekannt, ob die Zeile ihren Sensorcode hat"};
inline constexpr BothLanguages kSensorMissing{
    "row %1, register %2: the row stays without a sensor code (L = 0)",
    "Zeile %1, Register %2: die Zeile bleibt ohne Sensorcode (L = 0)"};

// What a dropped adjustment leaves. %1 is a register, %2 what it has, %3 what it had.
inline constexpr BothLanguages kWord{"%1 = %2 (was %3)", "%1 = %2 (vorher %3)"};
inline constexpr BothLanguages kChangedRow{"row %1:  %2", "Zeile %1:  %2"};
inline constexpr BothLanguages kDropped{
    "The adjustment is dropped. What it has written stays:\n%1",
    "Der Abgleich ist abgebrochen. Was er geschrieben hat, bleibt:\n%1"};
inline constexpr BothLanguages kUnknown{
    "\n\n? is not known, for the instrument did not answer.",
    "\n\n? ist unbekannt, denn das Gerät hat nicht geantwortet."};
inline constexpr BothLanguages kAdjustAgain{
    "\n\nWith L = 0 a row gives raw readings. Adjust these rows again, or load a variable file.",
    "\n\nMit L = 0 liefert eine Zeile Rohwerte. Diese Zeilen neu abgleichen oder eine "
    "Variablendatei "
    "laden."};
inline constexpr BothLanguages kOldValues{"\n\nThe old values stand in %1",
                                          "\n\nDie alten Werte stehen in %1"};

// After a start: %1 is the begin of the run, %2 its rows, %3 the file of the record.
inline constexpr BothLanguages kUnfinished{
    "This adjustment ended with the program before it was complete:\n%1\n\nIts rows may have no "
    "sensor or wrong values until they are adjusted anew. As far as it is known they had before "
    "and have now:%2\n\nThe record stands in %3",
    "Dieser Abgleich endete mit dem Programm, bevor er fertig war:\n%1\n\nSeine Zeilen haben "
    "vielleicht keinen Sensor oder falsche Werte, bis sie neu abgeglichen werden. Soweit bekannt, "
    "hatten sie vorher und haben jetzt:%2\n\nDas Protokoll steht in %3"};

// The numbers of instruments. %1 becomes %2.
inline constexpr BothLanguages kTestLine{"\nrow %1:  %2  (Tavrel %3)",
                                         "\nZeile %1:  %2  (Tavrel %3)"};
inline constexpr BothLanguages kBecomes{
    "Tavrel %1 becomes Tavrel %2.\n\nInstalled tests use these numbers:%3\n\nThey keep them: the "
    "tests have to be installed anew.\nAssign the number all the same ?",
    "Aus Tavrel %1 wird Tavrel %2.\n\nInstallierte Versuche benutzen diese Nummern:%3\n\nSie "
    "behalten "
    "sie: die Versuche müssen neu installiert werden.\nDie Nummer trotzdem zuweisen ?"};
inline constexpr BothLanguages kNumberUnsure{
    "Tavrel %1 has not acknowledged its new number %2.\nIt may have either of them.",
    "Tavrel %1 hat seine neue Nummer %2 nicht bestätigt.\nEs kann die eine oder die andere haben."};

}  // namespace tavrel::setup_text

#endif  // TAVREL_SETUP_SETUP_TEXTS_H_
