#ifndef TAVREL_MAIN_KEY_TABLE_H_
#define TAVREL_MAIN_KEY_TABLE_H_

#include <array>
#include <string>

#include "base/language.h"

namespace tavrel {

// What a key does and where.
struct KeyEntry {
  BothLanguages Where;
  BothLanguages Keys;
  BothLanguages Does;
};

namespace key_place {
inline constexpr BothLanguages kEverywhere{"everywhere", "überall"};
inline constexpr BothLanguages kSheet{"sheet", "Blatt"};
inline constexpr BothLanguages kName{"name on the sheet", "Name auf dem Blatt"};
inline constexpr BothLanguages kWork{"worksheet", "Arbeitsblatt"};
inline constexpr BothLanguages kGraph{"graph", "Graphik"};
inline constexpr BothLanguages kGrid{"installation, program", "Installation, Programm"};
inline constexpr BothLanguages kChannels{"adjust channels", "Kanäle abgleichen"};
inline constexpr BothLanguages kProgram{"controller program", "Reglerprogramm"};
inline constexpr BothLanguages kBrowsers{"variables, registers", "Variablen, Register"};
}  // namespace key_place

// All keys of the program, form by form. The table of the form "Keys" and that of the manual.
inline constexpr std::array kKeyTable = {
    KeyEntry{key_place::kEverywhere, BothLanguages::Same("F1"), {"the manual", "das Handbuch"}},
    KeyEntry{key_place::kEverywhere,
             {"Alt + letter", "Alt + Buchstabe"},
             {"the button or menu with that letter underlined",
              "Knopf oder Menü, in dem der Buchstabe unterstrichen ist"}},
    KeyEntry{key_place::kEverywhere,
             {"Tab, Shift+Tab", "Tab, Umschalt+Tab"},
             {"next or previous control", "nächstes oder voriges Element"}},
    KeyEntry{key_place::kEverywhere,
             {"Enter", "Eingabe"},
             {"the default button of a form", "der Standardknopf eines Fensters"}},
    KeyEntry{key_place::kEverywhere,
             BothLanguages::Same("Esc"),
             {"leave a form without taking anything over", "Fenster verlassen, ohne etwas zu tun"}},
    KeyEntry{key_place::kEverywhere,
             {"letters, digits", "Buchstaben, Ziffern"},
             {"in a list: the next entry that begins so",
              "in einer Liste: der Eintrag, der so beginnt"}},
    KeyEntry{key_place::kSheet,
             {"Ctrl+1 ... Ctrl+9", "Strg+1 ... Strg+9"},
             {"worksheet of row 1 ... 9", "Arbeitsblatt der Zeile 1 ... 9"}},
    KeyEntry{key_place::kSheet,
             BothLanguages::Same("Alt+0, Alt+1, Alt+2"),
             {"worksheet of row 10, 11, 12", "Arbeitsblatt der Zeile 10, 11, 12"}},
    KeyEntry{key_place::kSheet,
             {"Ctrl+0", "Strg+0"},
             {"worksheet of the opened file", "Arbeitsblatt der geöffneten Datei"}},
    KeyEntry{key_place::kSheet, {"Ctrl+O", "Strg+O"}, {"open a file", "Datei öffnen"}},
    KeyEntry{key_place::kSheet, {"Ctrl+,", "Strg+,"}, {"settings", "Einstellungen"}},
    KeyEntry{key_place::kSheet,
             BothLanguages::Same("F5"),
             {"read all rows again at once", "alle Zeilen sofort neu lesen"}},
    KeyEntry{key_place::kSheet,
             {"Ctrl+Q", "Strg+Q"},
             {"exit, after a question", "Programm beenden, nach Rückfrage"}},
    KeyEntry{key_place::kName, {"Enter, F2", "Eingabe, F2"}, {"edit the name", "Namen bearbeiten"}},
    KeyEntry{key_place::kName,
             {"Enter, Tab", "Eingabe, Tab"},
             {"while editing: keep the new name", "beim Bearbeiten: neuen Namen behalten"}},
    KeyEntry{key_place::kName,
             BothLanguages::Same("Esc"),
             {"while editing: the old name again", "beim Bearbeiten: wieder der alte Name"}},
    KeyEntry{key_place::kWork, {"Enter", "Eingabe"}, {"show the graph", "Graphik zeigen"}},
    KeyEntry{
        key_place::kWork, BothLanguages::Same("F5"), {"read again at once", "sofort neu lesen"}},
    KeyEntry{key_place::kGraph, {"Ctrl+P", "Strg+P"}, {"print", "drucken"}},
    KeyEntry{
        key_place::kGraph,
        {"arrow keys", "Pfeiltasten"},
        {"move the cursor, with Shift by 10 steps", "Cursor bewegen, mit Umschalt um 10 Schritte"}},
    KeyEntry{key_place::kGrid,
             {"arrow keys", "Pfeiltasten"},
             {"move from cell to cell", "von Feld zu Feld gehen"}},
    KeyEntry{key_place::kGrid,
             {"Space, F2", "Leertaste, F2"},
             {"choices of a cell", "Auswahl eines Feldes"}},
    KeyEntry{key_place::kChannels, BothLanguages::Same("F10"), {"to the menus", "zu den Menüs"}},
    KeyEntry{key_place::kChannels,
             {"Ctrl+S, Ctrl+O", "Strg+S, Strg+O"},
             {"save or load variables", "Variablen sichern oder laden"}},
    KeyEntry{key_place::kProgram,
             {"Ctrl+N, Ctrl+O, Ctrl+S", "Strg+N, Strg+O, Strg+S"},
             {"new program, open, save", "neues Programm, öffnen, sichern"}},
    KeyEntry{key_place::kBrowsers, BothLanguages::Same("F5"), {"read again", "neu lesen"}},
};

inline constexpr std::array kKeyHeads = {BothLanguages{"where", "wo"},
                                         BothLanguages{"keys", "Tasten"},
                                         BothLanguages{"what they do", "was sie tun"}};

// The table as Markdown: a line for the heads, one for the rule below, one for each entry.
[[nodiscard]] std::string KeyTableMarkdown(Language language);

}  // namespace tavrel

#endif  // TAVREL_MAIN_KEY_TABLE_H_
