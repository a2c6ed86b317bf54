// Makes the pictures of the manual: form_pictures German|English DIRECTORY [dark]
//
// Runs during the build, without a screen. A picture of each form of the tour, so that it is always
// that of the form as it is. In dark colours for whoever looks at all forms; the manual's are
// light.

#include <QApplication>
#include <QDir>
#include <QLabel>
#include <QPainter>
#include <QTreeWidget>
#include <cstdio>
#include <string>

#include "docs/manual/form_tour.h"
#include "tests/support/dark_colours.h"
#include "widgets/legible_colours.h"

namespace tavrel {
namespace {

constexpr int kTitleBar = 26;  // points

// Paths begin where the directory of the pictures ends.
void ShortenPaths(QWidget& form, const QString& own) {
  for (auto* label : form.findChildren<QLabel*>()) {
    if (label->accessibleName().startsWith(own)) {
      label->setText(label->accessibleName().mid(own.size()));
    }
  }
  if (auto* tree = form.findChild<QTreeWidget*>("DirList")) {
    QTreeWidgetItem* top = tree->topLevelItem(0);
    top->setText(0, top->text(0).remove(own));
  }
}

// The form with its title over it, as a window shows it: the place of a text that has just come is
// given behind the events that wait.
QPixmap PictureOf(QWidget& form) {
  QCoreApplication::sendPostedEvents(nullptr, QEvent::LayoutRequest);
  const QPixmap content = form.grab();
  const qreal ratio = content.devicePixelRatio();
  const QSizeF size = content.deviceIndependentSize();
  QPixmap picture((QSizeF(size.width() + 2, size.height() + kTitleBar + 1) * ratio).toSize());
  picture.setDevicePixelRatio(ratio);
  picture.fill(QColor(0x70, 0x78, 0x80));
  QPainter painter(&picture);
  QFont bold = form.font();
  bold.setBold(true);
  painter.setFont(bold);
  painter.setPen(Qt::white);
  painter.drawText(QRectF(8, 0, size.width() - 16, kTitleBar), Qt::AlignVCenter,
                   form.windowTitle().trimmed());
  painter.drawPixmap(QPointF(1, kTitleBar), content);
  return picture;
}

bool MakePictures(bool is_german, const QDir& target) {
  QString own;
  FormTour tour(LabWordsOf(is_german), [&target, &own](QWidget& form, const QString& name) {
    ShortenPaths(form, own);
    return PictureOf(form).save(target.filePath(name + ".png"));
  });
  own = QString::fromStdString(tour.Bench().OwnDirectory());
  return tour.Make();
}

}  // namespace
}  // namespace tavrel

int main(int count, char** arguments) {
  const bool is_dark = count == 4 && std::string(arguments[3]) == "dark";
  if (count != 3 && !is_dark) {
    std::fputs("usage: form_pictures German|English DIRECTORY [dark]\n", stderr);
    return 2;
  }
  QApplication application(count, arguments);
  QApplication::setCursorFlashTime(0);
  if (is_dark) {
    tavrel::UseDarkColours();
  }
  const tavrel::LegibleColours colours;
  const bool is_german = std::string(arguments[1]) == "German";
  const QDir target = QDir(QDir::current().absoluteFilePath(QString::fromLocal8Bit(arguments[2])));
  return tavrel::MakePictures(is_german, target) ? 0 : 1;
}
