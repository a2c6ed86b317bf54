#include "work/forms/tav_wait.h"

#include <QLabel>
#include <QProgressBar>
#include <QVBoxLayout>

#include "widgets/form_texts.h"
#include "work/work_texts.h"

namespace tavrel {
namespace {

constexpr int kBarCharacters = 50;

}  // namespace

TavWait::TavWait(WaitBar& bar) : ModalForm(bar, "TavWait", "Tavrel"), bar_(bar) {
  setWindowFlag(Qt::WindowCloseButtonHint, false);
  setCursor(Qt::WaitCursor);
  auto* text = new QLabel(QtText(work_text::kTakesIn.In(bar.TextLanguage())), this);
  prg_wait_ = new QProgressBar(this);
  prg_wait_->setObjectName("prgWait");
  prg_wait_->setAccessibleName("wait");
  prg_wait_->setRange(0, WaitBar::kFull);
  prg_wait_->setTextVisible(false);
  prg_wait_->setMinimumWidth(fontMetrics().averageCharWidth() * kBarCharacters);
  QVBoxLayout* column = MakeFixedColumn(kWideMargin);
  column->addWidget(text);
  column->addWidget(prg_wait_);
}

void TavWait::UpdateWidgets() {
  prg_wait_->setValue(bar_.prgWait());
}

}  // namespace tavrel
