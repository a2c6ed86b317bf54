#include "dialogs/forms/all_msg.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QStyle>
#include <QVBoxLayout>

#include "platform/qt/box_icons.h"

namespace tavrel {
namespace {

constexpr int kLeastTextWidth = 28;  // characters: the box of a short text is not too narrow

QLabel* MakePicture(const char* name, BoxIcon sign, QWidget* parent) {
  auto* label = new QLabel(parent);
  label->setObjectName(name);
  const int side = parent->style()->pixelMetric(QStyle::PM_MessageBoxIconSize, nullptr, parent);
  label->setPixmap(BoxSign(sign).pixmap(QSize(side, side), parent->devicePixelRatio()));
  return label;
}

}  // namespace

AllMsg::AllMsg(MessageBoxLogic& message)
    : ModalForm(message, "ALL_MSG", message.Request().Title), message_(message) {
  MakePictures();
  MakeLines();
  MakeButtons();
  Arrange();
}

void AllMsg::MakePictures() {
  img_attention_ = MakePicture("Img_Attention", BoxIcon::kWarning, this);
  img_attention_->setAccessibleName("attention");
  img_question_ = MakePicture("Img_Question", BoxIcon::kQuestion, this);
  img_question_->setAccessibleName("question");
}

void AllMsg::MakeLines() {
  for (std::size_t line = 0; line < msg_.size(); ++line) {
    msg_.at(line) = new QLabel(this);
    msg_.at(line)->setObjectName(QString("Msg_%1").arg(line));
    msg_.at(line)->setTextFormat(Qt::PlainText);
    msg_.at(line)->setTextInteractionFlags(Qt::TextSelectableByMouse);
  }
  msg_.front()->setMinimumWidth(fontMetrics().averageCharWidth() * kLeastTextWidth);
}

void AllMsg::MakeButtons() {
  cmd_ok_ = MakeOk([this] { message_.CmdOK_Click(); });
  cmd_cancel_ = MakeCancel();
}

void AllMsg::Arrange() {
  auto* lines = new QVBoxLayout;
  lines->setSpacing(2);
  lines->addStretch(1);
  for (QLabel* line : msg_) {
    lines->addWidget(line);
  }
  lines->addStretch(1);
  auto* head = new QHBoxLayout;
  head->setSpacing(kListMargin);
  head->addWidget(img_attention_, 0, Qt::AlignTop);
  head->addWidget(img_question_, 0, Qt::AlignTop);
  head->addLayout(lines, 1);
  auto* foot = new QHBoxLayout;
  foot->addStretch(1);
  foot->addWidget(cmd_ok_);
  foot->addWidget(cmd_cancel_);
  QVBoxLayout* column = MakeFixedColumn(kListMargin);
  column->addLayout(head);
  column->addLayout(foot);
}

void AllMsg::UpdateWidgets() {
  const Language language = message_.TipLanguage();
  for (std::size_t line = 0; line < msg_.size(); ++line) {
    const std::string& text = message_.Msg().at(line);
    msg_.at(line)->setText(QtText(text));
    msg_.at(line)->setVisible(!text.empty());
  }
  img_attention_->setVisible(message_.Request().Img_Attention);
  img_question_->setVisible(message_.Request().Img_Question);
  cmd_cancel_->setVisible(message_.Request().CmdCancel);
  cmd_ok_->setToolTip(QtText(MessageBoxLogic::kOkTip.In(language)));
  cmd_cancel_->setToolTip(QtText(MessageBoxLogic::kCancelTip.In(language)));
}

}  // namespace tavrel
