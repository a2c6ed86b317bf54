#ifndef TAVREL_DIALOGS_FORMS_DIRECTORY_VIEW_H_
#define TAVREL_DIALOGS_FORMS_DIRECTORY_VIEW_H_

#include <QComboBox>
#include <QTreeWidget>
#include <QWidget>
#include <string>
#include <vector>

#include "platform/directory_lists.h"

namespace tavrel {

// DrvList: the list of places, looked up anew each time it drops down.
class DriveList : public QComboBox {
  Q_OBJECT
 public:
  using QComboBox::QComboBox;
  void showPopup() override;

 signals:
  void AboutToDrop();
};

// DirList: a line is selected by a click or the arrows, and opened by a double click or the right
// arrow; the left arrow opens the directory above.
class DirectoryTree : public QTreeWidget {
  Q_OBJECT
 public:
  explicit DirectoryTree(QWidget* parent);

  [[nodiscard]] QSize sizeHint() const override;

 signals:
  void Opened(int line);
  void ParentWanted();

 protected:
  void keyPressEvent(QKeyEvent* event) override;

 private:
  [[nodiscard]] QSize SizeOf(int characters, int lines) const;
};

// The two lists of directories, one above the other. `lists` outlives the view.
class DirectoryView : public QWidget {
  Q_OBJECT
 public:
  DirectoryView(DirectoryLists& lists, QWidget* parent);

  // The keyboard goes to the directories. (A focus proxy would hide DrvList from the Tab key.)
  void FocusDirectories() { dir_list_->setFocus(); }

  // Copies what the lists say to the widgets. Cheap while nothing has changed.
  void UpdateWidgets();

 signals:
  // The path of the lists may be another one.
  void Changed();

 private:
  void ConnectLists();
  void ShowPlaces();
  void ShowLines();

  DirectoryLists& lists_;
  DriveList* drv_list_ = nullptr;
  DirectoryTree* dir_list_ = nullptr;
  std::vector<std::string> shown_places_;
  std::vector<std::string> shown_paths_;
};

}  // namespace tavrel

#endif  // TAVREL_DIALOGS_FORMS_DIRECTORY_VIEW_H_
