#include "platform/qt/notice_box.h"

#include <QAbstractButton>
#include <QGridLayout>
#include <QShowEvent>
#include <QSpacerItem>

#include "platform/qt/box_icons.h"

namespace tavrel {
namespace {

constexpr int kTitleBarButtons = 9;  // their room and that of the icon, in heights of the font

QMessageBox::Icon IconOf(BoxIcon icon) {
  switch (icon) {
    case BoxIcon::kInformation:
      return QMessageBox::Information;
    case BoxIcon::kQuestion:
      return QMessageBox::Question;
    case BoxIcon::kWarning:
      return QMessageBox::Warning;
    case BoxIcon::kCritical:
      return QMessageBox::Critical;
    case BoxIcon::kNone:
      break;
  }
  return QMessageBox::NoIcon;
}

}  // namespace

QIcon NoticeBox::Signs::standardIcon(StandardPixmap picture, const QStyleOption* option,
                                     const QWidget* widget) const {
  switch (picture) {
    case SP_MessageBoxInformation:
      return BoxSign(BoxIcon::kInformation);
    case SP_MessageBoxQuestion:
      return BoxSign(BoxIcon::kQuestion);
    case SP_MessageBoxWarning:
      return BoxSign(BoxIcon::kWarning);
    case SP_MessageBoxCritical:
      return BoxSign(BoxIcon::kCritical);
    default:
      return QProxyStyle::standardIcon(picture, option, widget);
  }
}

NoticeBox::NoticeBox(const Notice& notice, StandardButton yes, StandardButton no, QWidget* parent)
    : QMessageBox(parent) {
  setStyle(&signs_);
  setWindowTitle(QString::fromStdString(notice.Title));
  setTextFormat(Qt::PlainText);
  setTextInteractionFlags(Qt::TextSelectableByMouse);
  ShowText(notice.Text);
  setIcon(IconOf(notice.Icon));
  setStandardButtons(no == NoButton ? yes : yes | no);
  setDefaultButton(notice.PresetIsNo && no != NoButton ? no : yes);
  setEscapeButton(no == NoButton ? yes : no);
}

void NoticeBox::ShowText(const std::string& text) {
  const std::size_t end = text.find("\n\n");
  setText(QString::fromStdString(text.substr(0, end)));
  if (end != std::string::npos) {
    setInformativeText(QString::fromStdString(text.substr(text.find_first_not_of('\n', end))));
  }
}

// Only now nothing more is laid out anew: the toolkit drops what it has not put there itself. The
// pictures that some desktops put on buttons are made for one scale.
void NoticeBox::showEvent(QShowEvent* event) {
  if (!event->spontaneous()) {
    KeepTitleWhole();
    for (QAbstractButton* button : buttons()) {
      button->setIcon({});
    }
  }
  QMessageBox::showEvent(event);
}

// A window manager shortens what does not fit, and the title often is the first word of the
// sentence. Its font is not ours to know; a bold one of the form's size is the widest in use.
void NoticeBox::KeepTitleWhole() {
  auto* grid = qobject_cast<QGridLayout*>(layout());
  if (grid == nullptr) {
    return;
  }
  QFont title = font();
  title.setBold(true);
  const QFontMetrics metrics(title);
  const int width = metrics.horizontalAdvance(windowTitle()) + kTitleBarButtons * metrics.height();
  grid->addItem(new QSpacerItem(width, 0, QSizePolicy::Minimum, QSizePolicy::Fixed),
                grid->rowCount(), 0, 1, grid->columnCount());
}

}  // namespace tavrel
