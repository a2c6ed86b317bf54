#ifndef TAVREL_SERVICE_SERVICE_TEXTS_H_
#define TAVREL_SERVICE_SERVICE_TEXTS_H_

#include "base/language.h"

// What boxes and lines of the service screens say.
namespace tavrel::service_text {

// The tests of an instrument.
inline constexpr BothLanguages kTest{"row %1:  %2", "Zeile %1:  %2"};
inline constexpr BothLanguages kTestInput{"%1,  input %2", "%1,  Eingang %2"};
inline constexpr BothLanguages kRow{"row %1", "Zeile %1"};
inline constexpr BothLanguages kRecords{"records", "zeichnet auf"};
inline constexpr BothLanguages kControls{"controls", "regelt"};
inline constexpr BothLanguages kRecordsAndControls{"records, controls", "zeichnet auf, regelt"};
inline constexpr BothLanguages kAtWork{
    "%1 is at work:\n\n%2\n\nDuring the test its firmware may do with samples and controllers what "
    "it likes.\nSamples may be lost.\n\nGo on ?",
    "%1 arbeitet:\n\n%2\n\nWährend der Prüfung kann seine Firmware mit Messwerten und Reglern tun, "
    "was sie will.\nMesswerte können verloren gehen.\n\nWeiter ?"};

// The test of outputs; %1 is the instrument.
inline constexpr BothLanguages kStillOn{
    "The outputs of Tavrel-%1 are still to be switched off after an earlier test.\nThat is done as "
    "soon as it answers.",
    "Die Ausgänge von Tavrel-%1 sind nach einer früheren Prüfung noch auszuschalten.\nDas "
    "geschieht, sobald es antwortet."};
inline constexpr BothLanguages kNoRecord{
    "%1: %2\nWithout this record the outputs cannot be tested.",
    "%1: %2\nOhne diese Aufzeichnung können die Ausgänge nicht geprüft werden."};
inline constexpr BothLanguages kMayBeOn{
    "Tavrel-%1 does not answer: its outputs may be on.\nThey are switched off as soon as it "
    "answers again, also after the next start of the program.",
    "Tavrel-%1 antwortet nicht: seine Ausgänge sind vielleicht ein.\nSie werden ausgeschaltet, "
    "sobald es wieder antwortet, auch nach dem nächsten Start des Programms."};
inline constexpr BothLanguages kNotEnded{
    "The test of outputs on Tavrel-%1 was not ended.\nIts outputs have been switched off now.",
    "Die Prüfung der Ausgänge von Tavrel-%1 wurde nicht beendet.\nSeine Ausgänge sind jetzt "
    "ausgeschaltet."};
inline constexpr BothLanguages kWereOn{
    "\n\nThese controllers were on before the test, and are off:%1\n\nShall they return to that "
    "status ?",
    "\n\nDiese Regler waren vor der Prüfung ein und sind aus:%1\n\nSollen sie in diesen Zustand "
    "zurückkehren ?"};
inline constexpr BothLanguages kStatus{"\ncontroller %1:  %2", "\nRegler %1:  %2"};
inline constexpr BothLanguages kRefuses{"Tavrel-%1 refuses:  controller %2 stays off.",
                                        "Tavrel-%1 lehnt ab:  Regler %2 bleibt aus."};

// The terminal; %1 are the recordings.
inline constexpr BothLanguages kTakesValue{
    "This command takes a value out of the buffer of a recording:%1\n\nThe recording misses what "
    "is taken. Send it all the same ?",
    "Dieser Befehl nimmt einen Wert aus dem Puffer einer Aufzeichnung:%1\n\nDer Aufzeichnung "
    "fehlt, "
    "was genommen wird. Trotzdem senden ?"};
inline constexpr BothLanguages kClearsBuffer{
    "This command clears the buffer of a recording:%1\n\nThe recording misses what is taken. Send "
    "it all the same ?",
    "Dieser Befehl löscht den Puffer einer Aufzeichnung:%1\n\nDer Aufzeichnung fehlt, was genommen "
    "wird. Trotzdem senden ?"};

// The variables of a recorded input; %1 is the register, %2 the instrument.
inline constexpr BothLanguages kSeriesTitle{"recorded input", "aufgezeichneter Eingang"};
inline constexpr BothLanguages kClearsSeries{
    "R = 0 clears the buffer of this input. What it holds is lost for the recording: the value "
    "before stands in its place, so that no later value comes into a wrong row.",
    "R = 0 löscht den Puffer dieses Eingangs. Was er enthält, ist für die Aufzeichnung verloren: "
    "der Wert davor steht an seiner Stelle, damit kein späterer Wert in eine falsche Zeile kommt."};
inline constexpr BothLanguages kSampling{
    "S is the sampling time of this input. With another one its values no longer fit those of the "
    "other inputs: from then on they stand in wrong rows of the recording.",
    "S ist die Abtastzeit dieses Eingangs. Mit einer anderen passen seine Werte nicht mehr zu "
    "denen "
    "der anderen Eingänge: von da an stehen sie in falschen Zeilen der Aufzeichnung."};
inline constexpr BothLanguages kHandsOver{
    "X hands the stored values over. If the instrument drops one by this, the value before stands "
    "in its place in the recording.",
    "X gibt die gespeicherten Werte heraus. Verwirft das Gerät dabei einen, so steht in der "
    "Aufzeichnung der Wert davor an seiner Stelle."};
inline constexpr BothLanguages kWriteSeries{
    "%1 of%2:\n%3\n\nThis input is recorded by%4\n\nWrite it all the same ?",
    "%1 von%2:\n%3\n\nDieser Eingang wird aufgezeichnet von%4\n\nTrotzdem schreiben ?"};
inline constexpr BothLanguages kReadFirst{
    "The recording has to read first what waits in the instrument, and what is in doubt.\nNothing "
    "was written. Try again later.",
    "Die Aufzeichnung muss zuerst lesen, was im Gerät wartet und was zweifelhaft ist.\nEs wurde "
    "nichts geschrieben. Später noch einmal versuchen."};

// The quality data.
inline constexpr BothLanguages kLetters{"%1\n\nOnly letters A to Z, figures and signs.",
                                        "%1\n\nNur Buchstaben A bis Z, Ziffern und Zeichen."};
inline constexpr BothLanguages kHalfWritten{
    "%1 has acknowledged %2 of %3 values.\nIt may hold only a part of the new quality data.",
    "%1 hat %2 von %3 Werten bestätigt.\nEs enthält vielleicht nur einen Teil der neuen "
    "Qualitätsdaten."};

}  // namespace tavrel::service_text

#endif  // TAVREL_SERVICE_SERVICE_TEXTS_H_
