#ifndef TAVREL_MAIN_FORMS_TAVREL_H_
#define TAVREL_MAIN_FORMS_TAVREL_H_

#include <QDeadlineTimer>
#include <QMainWindow>
#include <QTimer>

#include "main/forms/sheet_table.h"
#include "main/main_commands.h"
#include "main/main_cycle.h"
#include "main/main_sheet.h"
#include "main/start_up.h"

class QAction;
class QLabel;
class QMenu;
class QScrollArea;

namespace tavrel {

// The main form: the sheet of all slots and the menu. It hands events to the logic and copies
// its values to the widgets after each of them; it runs Timer_Main, and from its first display
// on it is open until the program ends.
class Tavrel : public QMainWindow {
  Q_OBJECT
 public:
  struct Parts {  // all outlive the form
    MainSheet& sheet;
    MainCommands& commands;
    MainCycle& cycle;
    StartUp& start_up;
  };

  // The window is made high enough for `expected_rows` rows, so that it keeps its size when the
  // slots are attached.
  Tavrel(const Parts& parts, int expected_rows);

  // Copies what the logic says to the widgets. Cheap while nothing has changed.
  void UpdateWidgets();

  // The user has given it another size than it came with.
  [[nodiscard]] bool HasUsersSize() const;

  // At that height of the screen, in its horizontal middle, but nowhere outside of it.
  void PlaceAt(int top);

 protected:
  void showEvent(QShowEvent* event) override;
  void paintEvent(QPaintEvent* event) override;
  void closeEvent(QCloseEvent* event) override;

 private:
  void MakeMenu();
  QAction* MakeEntry(const MenuEntry& entry);
  void MakeStatusLine();
  void ShowState(const QString& state);
  void ShowLanguage(Language language);
  void ConnectSheet();
  void WatchFront();
  void FirstDisplay();
  void RunTick();
  void AfterEvent();
  void GrowToRows();

  Parts parts_;
  SheetTable* table_ = nullptr;
  QScrollArea* scroll_ = nullptr;
  QLabel* lbl_state_ = nullptr;
  QLabel* lbl_info_ = nullptr;
  QWidget* indicator_ = nullptr;
  QTimer timer_main_{this};
  QTimer first_display_{this};
  QDeadlineTimer state_due_{0};  // when the line of state is told anew
  std::string caption_;
  std::string info_;
  Language language_ = Language::kEnglish;  // of the menu
  QSize came_with_;                         // the size that the program has given it last
  int table_height_ = 0;                    // that the window has been made high enough for
};

}  // namespace tavrel

#endif  // TAVREL_MAIN_FORMS_TAVREL_H_
