#ifndef TAVREL_MAIN_MAIN_TEXTS_H_
#define TAVREL_MAIN_MAIN_TEXTS_H_

#include "base/language.h"

// What boxes of the start, of the settings and of the cycle say.
namespace tavrel::main_text {

// The start. %1 is a place, %2 the system's words.
inline constexpr BothLanguages kUnknownDirectory{
    "Cannot tell whether the program's directory can be written:\n%1\n\n%2",
    "Es ist nicht festzustellen, ob im Verzeichnis des Programms geschrieben werden "
    "kann:\n%1\n\n%2"};
inline constexpr BothLanguages kUnknownCopy{
    "Cannot tell whether the program is already running:\n%1\n\n%2",
    "Es ist nicht festzustellen, ob das Programm schon läuft:\n%1\n\n%2"};
inline constexpr BothLanguages kUnreadSettings{
    "The settings are there, but cannot be read:\n%1\n\nThey name all tests. Nothing is saved as "
    "long as they cannot be read.",
    "Die Einstellungen sind da, lassen sich aber nicht lesen:\n%1\n\nSie nennen alle Versuche. "
    "Solange sie nicht gelesen werden können, wird nichts gesichert."};

// %1 is the controller, %2 the instrument.
inline constexpr BothLanguages kControllerTitle{"controller", "Regler"};
inline constexpr BothLanguages kStopWaits{
    "Controller %1 of Tavrel %2 was not switched off at the end of its recording.\nTavrel does not "
    "acknowledge it yet; it is tried again.",
    "Regler %1 von Tavrel %2 wurde am Ende seiner Aufzeichnung nicht ausgeschaltet.\nTavrel "
    "bestätigt es noch nicht; es wird neu versucht."};
inline constexpr BothLanguages kStopIsDone{
    "Controller %1 of Tavrel %2 was not switched off at the end of its recording.\nIt is off now.",
    "Regler %1 von Tavrel %2 wurde am Ende seiner Aufzeichnung nicht ausgeschaltet.\nJetzt ist er "
    "aus."};

// What was found while the program ended; %1 is that time, %2 what was found.
inline constexpr BothLanguages kAtTheEnd{"When the program ended, %1:\n%2",
                                         "Beim Ende des Programms, %1:\n%2"};

// %1 are the tests, %2 the file with the old settings.
inline constexpr BothLanguages kDropped{
    "These tests are no longer on the sheet:\n%1\nThe settings that name them are kept in\n%2\nThe "
    "manual tells how to go back to them.",
    "Diese Versuche sind nicht mehr auf dem Blatt:\n%1\nDie Einstellungen, die sie nennen, liegen "
    "in\n%2\nWie man zu ihnen zurückkommt, steht im Handbuch."};

// After the programs stood still.
inline constexpr BothLanguages kProgramTitle{"controller  program", "Regler-Programm"};
inline constexpr BothLanguages kStoodStillMinute{
    "The controller programs stood still for 1 minute.\nThey make up for it now: their steps "
    "follow at once.",
    "Die Regler-Programme standen 1 Minute still.\nSie holen es jetzt nach: ihre Schritte folgen "
    "sofort."};
inline constexpr BothLanguages kStoodStillMinutes{
    "The controller programs stood still for %1 minutes.\nThey make up for it now: their steps "
    "follow at once.",
    "Die Regler-Programme standen %1 Minuten still.\nSie holen es jetzt nach: ihre Schritte folgen "
    "sofort."};

// The settings. %1 is the directory of the tests, %2 the new one.
inline constexpr BothLanguages kTestsRun{
    "Tests are running in\n%1\n\nThey stay there until the end of the program. At the next start "
    "they are looked for in\n%2\nand are not found, unless their files are moved there.\n\nUse the "
    "new directory ?",
    "Versuche laufen in\n%1\n\nSie bleiben dort bis zum Ende des Programms. Beim nächsten Start "
    "werden "
    "sie gesucht in\n%2\nund nicht gefunden, wenn ihre Dateien nicht dorthin verschoben "
    "werden.\n\nDas neue Verzeichnis verwenden ?"};
inline constexpr BothLanguages kTestsWait{
    "The files of the tests are in\n%1\n\nFrom now on they are looked for in\n%2\nand are not "
    "found, unless they are moved there.\n\nUse the new directory ?",
    "Die Dateien der Versuche liegen in\n%1\n\nVon jetzt an werden sie gesucht in\n%2\nund nicht "
    "gefunden, wenn sie nicht dorthin verschoben werden.\n\nDas neue Verzeichnis verwenden ?"};
inline constexpr BothLanguages kSimulate{
    "A recording is on.\n\nWithout a port the instruments are simulated, and simulated values are "
    "written into its file.\n\nSimulate anyway ?",
    "Eine Aufzeichnung läuft.\n\nOhne Schnittstelle werden die Geräte simuliert, und simulierte "
    "Werte werden in ihre Datei geschrieben.\n\nTrotzdem simulieren ?"};
inline constexpr BothLanguages kNoSuchName{
    "The settings file cannot hold the name of this directory:\n%1\n\nIt holds the letters of "
    "Western European languages only, and no quotation marks and line ends in a name and no blank "
    "at its end.\n\nThe directory stays as it was.",
    "Die Einstellungsdatei kann den Namen dieses Verzeichnisses nicht aufnehmen:\n%1\n\nSie kennt "
    "nur die Buchstaben westeuropäischer Sprachen, in einem Namen keine Anführungszeichen und "
    "Zeilenenden und an seinem Ende kein Leerzeichen.\n\nDas Verzeichnis bleibt, wie es war."};

// The sheet.
inline constexpr BothLanguages kNoFileOpened{"no file opened", "keine Datei geöffnet"};
inline constexpr BothLanguages kNoAnswer{"no answer", "keine Antwort"};

}  // namespace tavrel::main_text

#endif  // TAVREL_MAIN_MAIN_TEXTS_H_
