#include "platform/qt/notice_box.h"

#include <QAbstractButton>
#include <QGridLayout>
#include <QLabel>
#include <QScreen>
#include <QShowEvent>
#include <QSpacerItem>
#include <algorithm>

#include "platform/qt/box_icons.h"
#include "platform/qt/box_texts.h"
#include "platform/qt/qt_text.h"

namespace tavrel {
namespace {

constexpr int kCalmCharacters = 64;  // of a line of advice
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

const BothLanguages& NameOf(QMessageBox::Icon icon) {
  switch (icon) {
    case QMessageBox::Question:
      return box_text::kQuestion;
    case QMessageBox::Warning:
      return box_text::kWarning;
    case QMessageBox::Critical:
      return box_text::kError;
    default:
      return box_text::kInformation;
  }
}

// In English the toolkit's own words stay. Close stands for the end of the program.
std::string_view GermanAnswer(QMessageBox::StandardButton button) {
  switch (button) {
    case QMessageBox::Cancel:
      return box_text::kCancel.German;
    case QMessageBox::Retry:
      return box_text::kRetry.German;
    case QMessageBox::Close:
      return box_text::kExit.German;
    case QMessageBox::Yes:
      return box_text::kYes.German;
    case QMessageBox::No:
      return box_text::kNo.German;
    default:
      return "";
  }
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

void NoticeBox::SpeakIn(Language language) {
  for (QAbstractButton* each : buttons()) {
    const std::string_view german = GermanAnswer(standardButton(each));
    if (language == Language::kGerman && !german.empty()) {
      each->setText(QtText(german));
    }
  }
  if (auto* sign = findChild<QLabel*>("qt_msgboxex_icon_label"); sign != nullptr) {
    sign->setAccessibleName(QtText(NameOf(icon()).In(language)));
  }
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
    KeepWide();
    for (QAbstractButton* button : buttons()) {
      button->setIcon({});
    }
  }
  QMessageBox::showEvent(event);
}

// A window manager shortens what does not fit, and the title often is the first word of the
// sentence. Its font is not ours to know; a bold one of the form's size is the widest in use.
int NoticeBox::TitleWidth() const {
  QFont title = font();
  title.setBold(true);
  const QFontMetrics metrics(title);
  return metrics.horizontalAdvance(windowTitle()) + kTitleBarButtons * metrics.height();
}

// Of its longest line beside the sign, as far as a calm box goes.
int NoticeBox::AdviceWidth() const {
  int widest = 0;
  for (const QString& line : informativeText().split('\n')) {
    widest = std::max(widest, fontMetrics().horizontalAdvance(line));
  }
  const int beside = style()->pixelMetric(QStyle::PM_MessageBoxIconSize, nullptr, this) * 2;
  const int calm = fontMetrics().averageCharWidth() * kCalmCharacters;
  return widest == 0 ? 0 : std::min(widest, calm) + beside;
}

void NoticeBox::KeepWide() {
  auto* grid = qobject_cast<QGridLayout*>(layout());
  if (grid == nullptr) {
    return;
  }
  const int screen_width = screen()->availableGeometry().width();
  const int width = std::min(std::max(TitleWidth(), AdviceWidth()), screen_width * 9 / 10);
  grid->addItem(new QSpacerItem(width, 0, QSizePolicy::Minimum, QSizePolicy::Fixed),
                grid->rowCount(), 0, 1, grid->columnCount());
}

}  // namespace tavrel
