#include "dialogs/forms/directory_view.h"

#include <QKeyEvent>
#include <QSignalBlocker>
#include <QStyle>
#include <QVBoxLayout>

#include "widgets/modal_form.h"
#include "widgets/spoken.h"

namespace tavrel {
namespace {

constexpr int kLineRole = Qt::UserRole;
constexpr int kShownLines = 14;
constexpr int kShownCharacters = 62;
constexpr int kFewestLines = 4;  // on a small screen
constexpr int kFewestCharacters = 20;

int LineOf(const QTreeWidgetItem* item) {
  return item == nullptr ? -1 : item->data(0, kLineRole).toInt();
}

}  // namespace

void DriveList::showPopup() {
  emit AboutToDrop();
  QComboBox::showPopup();
}

DirectoryTree::DirectoryTree(QWidget* parent) : QTreeWidget(parent) {
  setObjectName("DirList");
  setAccessibleName("directories");
  setHeaderHidden(true);
  setRootIsDecorated(false);
  setItemsExpandable(false);
  setExpandsOnDoubleClick(false);
  setUniformRowHeights(true);
  setIndentation(fontMetrics().averageCharWidth() * 2);
  setTextElideMode(Qt::ElideMiddle);
  setMinimumSize(SizeOf(kFewestCharacters, kFewestLines));
  connect(this, &QTreeWidget::itemDoubleClicked, this,
          [this](const QTreeWidgetItem* item) { emit Opened(LineOf(item)); });
}

QSize DirectoryTree::SizeOf(int characters, int lines) const {
  return {fontMetrics().averageCharWidth() * characters, (fontMetrics().height() + 4) * lines};
}

QSize DirectoryTree::sizeHint() const {
  return SizeOf(kShownCharacters, kShownLines);
}

void DirectoryTree::keyPressEvent(QKeyEvent* event) {
  if (event->key() == Qt::Key_Right) {
    emit Opened(LineOf(currentItem()));
  } else if (event->key() == Qt::Key_Left) {
    emit ParentWanted();
  } else {
    QTreeWidget::keyPressEvent(event);
  }
}

DirectoryView::DirectoryView(DirectoryLists& lists, QWidget* parent)
    : QWidget(parent), lists_(lists) {
  drv_list_ = new DriveList(this);
  drv_list_->setObjectName("DrvList");
  NameList(*drv_list_, "drives");
  drv_list_->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
  dir_list_ = new DirectoryTree(this);
  auto* column = new QVBoxLayout(this);
  column->setContentsMargins(0, 0, 0, 0);
  column->addWidget(drv_list_);
  column->addWidget(dir_list_, 1);
  ConnectLists();
}

void DirectoryView::ConnectLists() {
  connect(drv_list_, &DriveList::AboutToDrop, this, [this] {
    lists_.RefreshPlaces();
    UpdateWidgets();
  });
  connect(drv_list_, &QComboBox::currentIndexChanged, this, [this](int index) {
    lists_.ChooseDrive(index);
    emit Changed();
  });
  connect(dir_list_, &QTreeWidget::currentItemChanged, this, [this](const QTreeWidgetItem* item) {
    lists_.SelectLine(LineOf(item));
    emit Changed();
  });
  connect(dir_list_, &DirectoryTree::Opened, this, [this](int line) {
    lists_.OpenLine(line);
    emit Changed();
  });
  connect(dir_list_, &DirectoryTree::ParentWanted, this, [this] {
    lists_.OpenParent();
    emit Changed();
  });
}

void DirectoryView::UpdateWidgets() {
  ShowPlaces();
  ShowLines();
}

void DirectoryView::ShowPlaces() {
  const QSignalBlocker quiet(drv_list_);
  std::vector<std::string> places;
  for (const Place& place : lists_.Places()) {
    places.push_back(place.Name);
  }
  if (places != shown_places_) {
    shown_places_ = places;
    drv_list_->clear();
    for (const std::string& name : places) {
      drv_list_->addItem(QtText(name));
    }
  }
  drv_list_->setCurrentIndex(lists_.DriveIndex());
}

void DirectoryView::ShowLines() {
  const QSignalBlocker quiet(dir_list_);
  std::vector<std::string> paths;
  for (const DirectoryLine& line : lists_.Lines()) {
    paths.push_back(line.Path);
  }
  if (paths != shown_paths_) {
    shown_paths_ = paths;
    dir_list_->clear();
    const QIcon open = style()->standardIcon(QStyle::SP_DirOpenIcon);
    const QIcon closed = style()->standardIcon(QStyle::SP_DirClosedIcon);
    QTreeWidgetItem* above = dir_list_->invisibleRootItem();
    for (std::size_t index = 0; index < lists_.Lines().size(); ++index) {
      const DirectoryLine& line = lists_.Lines()[index];
      auto* item = new QTreeWidgetItem(above, {QtText(line.Name)});
      item->setData(0, kLineRole, static_cast<int>(index));
      item->setIcon(0, line.IsOpen ? open : closed);
      item->setExpanded(true);
      above = line.IsOpen ? item : above;
    }
  }
  for (QTreeWidgetItemIterator item(dir_list_); *item != nullptr; ++item) {
    if (LineOf(*item) == lists_.SelectedLine()) {
      dir_list_->setCurrentItem(*item);
    }
  }
}

}  // namespace tavrel
