#ifndef TAVREL_WORK_WORK_TEXTS_H_
#define TAVREL_WORK_WORK_TEXTS_H_

#include "base/language.h"

// What boxes and lines of the worksheet and its dialogs say.
namespace tavrel::work_text {

inline constexpr BothLanguages kController{"controller", "Regler"};  // a title
inline constexpr BothLanguages kOldSetpoint{"controller is on,\nthe setpoint is still the old one",
                                            "Regler ist ein,\nder Sollwert ist noch der alte"};
inline constexpr BothLanguages kUnsureSetpoint{
    "controller is on,\nthe setpoint was not acknowledged",
    "Regler ist ein,\nder Sollwert wurde nicht bestätigt"};
inline constexpr BothLanguages kIsOff{"controller is off", "Regler ist aus"};
inline constexpr BothLanguages kInUse{"The file is in use as a recording file.",
                                      "Die Datei ist als Aufzeichnung in Gebrauch."};

// %1 is the field, %2 what was sent, %3 what the instrument has.
inline constexpr BothLanguages kNotAcknowledged{"%1:\n%2 was not acknowledged, Tavrel has %3",
                                                "%1:\n%2 wurde nicht bestätigt, Tavrel hat %3"};
inline constexpr BothLanguages kTakesIn{"The instrument takes in its new settings.",
                                        "Das Gerät übernimmt seine neuen Einstellungen."};
inline constexpr BothLanguages kNoAnswer{"no answer", "keine Antwort"};

}  // namespace tavrel::work_text

#endif  // TAVREL_WORK_WORK_TEXTS_H_
