#include "service/forms/all_term.h"

#include <QHBoxLayout>
#include <QVBoxLayout>

namespace tavrel {
namespace {

constexpr int kPollMilliseconds = 50;

QLabel* MakeText(const char* name, QWidget* parent) {
  auto* label = new QLabel(parent);
  label->setObjectName(name);
  label->setTextFormat(Qt::PlainText);
  return label;
}

}  // namespace

AllTerm::AllTerm(Terminal& terminal)
    : ModalForm(terminal, "ALL_TERM", " Terminal"),
      terminal_(terminal),
      term_(new TerminalText("Term", terminal.TipLanguage(), this)),
      label1_(MakeText("Label1", this)),
      chk_echo_(new QCheckBox("Echo", this)),
      lbl_state_(MakeText("lbl_State", this)) {
  term_->setAccessibleName("Terminal");
  chk_echo_->setObjectName("Chk_Echo");
  lbl_state_->setWordWrap(true);
  connect(term_, &TerminalText::Typed, this, [this](char key) {
    terminal_.KeyPress(key);
    AfterEvent();
  });
  connect(term_, &TerminalText::Pasted, this, [this](const std::string& text) {
    terminal_.Paste(text);
    AfterEvent();
  });
  connect(chk_echo_, &QCheckBox::clicked, this,
          [this](bool is_ticked) { terminal_.Chk_Echo_Click(is_ticked); });
  poll_.callOnTimeout([this] {
    terminal_.Poll();
    AfterEvent();
  });
  poll_.start(kPollMilliseconds);
  auto* head = new QHBoxLayout;
  head->addWidget(label1_);
  head->addStretch();
  head->addWidget(chk_echo_);
  QVBoxLayout* column = MakeColumn(kNarrowMargin);
  column->addLayout(head);
  column->addWidget(term_, 1);
  column->addWidget(lbl_state_);
  ShowTips(kTerminalTips, terminal_.TipLanguage());
  term_->setFocus();
}

void AllTerm::UpdateWidgets() {
  ShowText(*label1_, terminal_.Label1());
  ShowText(*lbl_state_, terminal_.lbl_State());
  chk_echo_->setChecked(terminal_.Chk_Echo());
  term_->ShowBytes(terminal_.Term());
}

}  // namespace tavrel
