#include "service/forms/all_mem.h"

#include <QEvent>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QVBoxLayout>

#include "widgets/muted_label.h"
#include "widgets/shades.h"

namespace tavrel {
namespace {

constexpr std::array kCaptions = {"RAM:", "EPROM:", "Version:", "Tests:"};
constexpr int kLineGap = 8;
constexpr const char* kWidest = "Failure at DDDD";
constexpr QRgb kDarkRed = 0xFF800000;
constexpr QRgb kDarkGreen = 0xFF008000;

}  // namespace

AllMem::AllMem(MemoryTest& test, SteppedScreens& stepped)
    : ServiceForm(test, stepped, "ALL_MEM"), test_(test) {
  auto* grid = new QGridLayout;
  grid->setHorizontalSpacing(kWideMargin);
  grid->setVerticalSpacing(kLineGap);
  for (std::size_t place = 0; place < label2_.size(); ++place) {
    const int row = static_cast<int>(place);
    QLabel* value = MakeValue(QString("Label2_%1").arg(row), kCaptions.at(place), kWidest);
    value->setAlignment(Qt::AlignLeft | Qt::AlignVCenter);
    grid->addWidget(new MutedLabel(kCaptions.at(place), this), row, 0);
    grid->addWidget(value, row, 1);
    label2_.at(place) = value;
  }
  grid->setColumnStretch(1, 1);
  QBoxLayout* foot = MakeFoot();
  foot->addStretch(1);
  QVBoxLayout* column = MakeFixedColumn(kWideMargin);
  column->addLayout(grid);
  column->addLayout(foot);
}

void AllMem::ShowVerdict(QLabel& label, const MemoryVerdict& verdict) {
  const QPalette window = label.parentWidget()->palette();
  QColor ink = window.color(QPalette::WindowText);
  if (verdict.kind != MemoryVerdict::Kind::kUnknown) {
    const bool is_passed = verdict.kind == MemoryVerdict::Kind::kPassed;
    ink = InkOf(window, QColor(is_passed ? kDarkGreen : kDarkRed));
  }
  QPalette palette = window;
  palette.setColor(QPalette::WindowText, ink);
  label.setPalette(palette);
  ShowValue(label, verdict.text);
}

// The desktop may change between light and dark.
void AllMem::changeEvent(QEvent* event) {
  ServiceForm::changeEvent(event);
  if (event->type() == QEvent::PaletteChange && label2_.back() != nullptr) {
    UpdateWidgets();
  }
}

void AllMem::UpdateWidgets() {
  ServiceForm::UpdateWidgets();
  const MemoryTestValues& now = test_.Values();
  ShowVerdict(*label2_[0], now.ram);
  ShowVerdict(*label2_[1], now.eprom);
  ShowValue(*label2_[2], now.version);
  ShowValue(*label2_[3], now.tests);
}

}  // namespace tavrel
