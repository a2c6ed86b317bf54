#include "main/forms/tavrel.h"

#include <QApplication>
#include <QCloseEvent>
#include <QLabel>
#include <QMenuBar>
#include <QPainter>
#include <QScreen>
#include <QScrollArea>
#include <QShortcut>
#include <QStatusBar>
#include <QWindow>
#include <algorithm>
#include <chrono>

#include "main/forms/emblem.h"
#include "widgets/form_room.h"
#include "widgets/form_texts.h"
#include "widgets/letters.h"
#include "widgets/one_line.h"
#include "widgets/shades.h"

namespace tavrel {
namespace {

using std::chrono::milliseconds;

// A window that is never painted (it starts minimised) must measure all the same.
constexpr milliseconds kPaintLimit{400};

// The count of exchanges changes with nearly each tick, faster than anybody reads it.
constexpr milliseconds kStateEvery{500};

constexpr QSize kLeastSheet{240, 120};
constexpr int kFewestRows = 4;     // no window is lower
constexpr int kRoomForNames = 40;  // beside the least width

QString CaptionOf(const MenuEntry& entry, Language language) {
  const bool is_german = language == Language::kGerman && !entry.German.empty();
  const QString caption = QtText(is_german ? entry.German : entry.Caption);
  return Letters::Marked(caption, QChar::fromLatin1(is_german ? entry.GermanLetter : entry.Letter));
}

QKeySequence KeyOf(const MenuEntry& entry) {
  if (entry.Control == "MnuExit") {
    return QKeySequence(Qt::CTRL | Qt::Key_Q);
  }
  switch (entry.Action) {
    case MenuAction::kHelp:
      return QKeySequence::HelpContents;
    case MenuAction::kSettings:
      return QKeySequence(Qt::CTRL | Qt::Key_Comma);
    default:
      return {};
  }
}

// The mark of a pass over the rows: a small disc that keeps its place while it is hidden.
class IndicatorMark : public QWidget {
 public:
  explicit IndicatorMark(QWidget* parent) : QWidget(parent) {
    setObjectName("Indicator");
    setAccessibleName("reading the instruments");
    setFixedSize(kSide + 8, kSide);
    QSizePolicy keeps_its_place = sizePolicy();
    keeps_its_place.setRetainSizeWhenHidden(true);
    setSizePolicy(keeps_its_place);
    hide();
  }

 protected:
  void paintEvent(QPaintEvent* /*event*/) override {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(palette().color(QPalette::Highlight));
    painter.drawEllipse(1, 1, kSide - 2, kSide - 2);
  }

 private:
  static constexpr int kSide = 12;
};

}  // namespace

Tavrel::Tavrel(const Parts& parts, int expected_rows) : parts_(parts) {
  setObjectName("Tavrel");
  // The sheet is read while another program has the keyboard.
  setAttribute(Qt::WA_AlwaysShowToolTips);
  MakeMenu();
  table_ = new SheetTable;
  scroll_ = new ScrollingPart(table_, kLeastSheet, this);
  setCentralWidget(scroll_);
  MakeStatusLine();
  ConnectSheet();
  WatchFront();
  timer_main_.setObjectName("Timer_Main");
  timer_main_.setTimerType(Qt::PreciseTimer);
  connect(&timer_main_, &QTimer::timeout, this, &Tavrel::RunTick);
  first_display_.setSingleShot(true);
  connect(&first_display_, &QTimer::timeout, this, &Tavrel::FirstDisplay);
  const QSize sheet = table_->SizeWith(std::clamp(expected_rows, kFewestRows, kSlots));
  table_height_ = sheet.height();
  resize(sheet.width() + kRoomForNames,
         sheet.height() + menuBar()->sizeHint().height() + statusBar()->height());
  UpdateWidgets();
}

void Tavrel::MakeMenu() {
  QMenu* below = nullptr;
  for (const MenuEntry& entry : kMainMenu) {
    if (entry.Action == MenuAction::kHeading) {
      below = menuBar()->addMenu(CaptionOf(entry, language_));
      below->menuAction()->setObjectName(QtText(entry.Control));
      continue;
    }
    QAction* action = MakeEntry(entry);
    const bool in_bar =
        entry.Control == "MnuHelp" || entry.Control == "MnuKeys" || entry.Control == "MnuExit";
    if (in_bar || below == nullptr) {
      menuBar()->addAction(action);
    } else {
      below->addAction(action);
    }
  }
}

QAction* Tavrel::MakeEntry(const MenuEntry& entry) {
  auto* action = new QAction(CaptionOf(entry, language_), this);
  action->setObjectName(QtText(entry.Control));
  action->setEnabled(parts_.commands.IsEnabled(entry));
  action->setShortcut(KeyOf(entry));
  connect(action, &QAction::triggered, this, [this, &entry] {
    parts_.commands.Choose(entry);
    AfterEvent();
  });
  return action;
}

void Tavrel::MakeStatusLine() {
  statusBar()->setSizeGripEnabled(false);
  lbl_state_ = new OneLine<QLabel>(this);
  lbl_state_->setObjectName("lbl_State");
  lbl_state_->setIndent(10);
  statusBar()->addWidget(lbl_state_, 1);
  lbl_info_ = new QLabel(this);
  lbl_info_->setObjectName("lbl_Info");
  lbl_info_->setTextFormat(Qt::PlainText);
  lbl_info_->setIndent(10);
  lbl_info_->hide();
  statusBar()->addPermanentWidget(lbl_info_);
  indicator_ = new IndicatorMark(this);
  statusBar()->addPermanentWidget(indicator_);
  statusBar()->setFixedHeight(fontMetrics().height() + 14);
}

void Tavrel::ConnectSheet() {
  connect(table_, &SheetTable::NumberClicked, this, [this](int row) {
    parts_.sheet.lb_TavNo_Click(row);
    AfterEvent();
  });
  connect(table_, &SheetTable::NameEdited, this, [this](int row, const QString& text) {
    parts_.sheet.tx_Des_Change(row, text.toStdString());
    AfterEvent();
  });
  connect(table_, &SheetTable::WorkClicked, this, [this](int row) {
    parts_.sheet.cmd_Work_Click(row);
    AfterEvent();
  });
  connect(table_, &SheetTable::OpenClicked, this, [this] {
    parts_.sheet.cmd_Open_Click();
    AfterEvent();
  });
  const auto* again = new QShortcut(Qt::Key_F5, this);
  connect(again, &QShortcut::activated, this, [this] { parts_.sheet.RefreshNow(); });
}

// Only another window of the program takes the form from the front; another program does not, and
// neither does a menu or a list that opens out of the form.
void Tavrel::WatchFront() {
  connect(qApp, &QGuiApplication::focusWindowChanged, this, [this](const QWindow* now) {
    const bool in_front = now == nullptr || now == windowHandle() || now->type() == Qt::Popup;
    if (!in_front && isVisible()) {
      parts_.sheet.LeaveFront();
      AfterEvent();
    }
  });
}

void Tavrel::ShowState(const QString& state) {
  if (lbl_state_->text() != state) {
    lbl_state_->setText(state);
    lbl_state_->setToolTip(state);
    lbl_state_->setAccessibleName(state);
  }
}

// Entries that have a caption of their own in each language follow it.
void Tavrel::ShowLanguage(Language language) {
  if (language == language_) {
    return;
  }
  language_ = language;
  for (const MenuEntry& entry : kMainMenu) {
    auto* action = findChild<QAction*>(QtText(entry.Control));
    if (!entry.German.empty() && action != nullptr) {
      action->setText(CaptionOf(entry, language_));
    }
  }
}

void Tavrel::UpdateWidgets() {
  const SheetValues& now = parts_.sheet.Values();
  ShowState(QtText(now.lbl_State));
  ShowLanguage(now.TipLanguage);
  if (now.Caption != caption_) {
    caption_ = now.Caption;
    setWindowTitle(QtText(caption_));
  }
  if (now.lbl_Info != info_) {
    info_ = now.lbl_Info;
    lbl_info_->setText(QtText(info_));
    lbl_info_->setVisible(!info_.empty());
  }
  indicator_->setVisible(now.Indicator);
  table_->UpdateWidgets(now);
  GrowToRows();
}

// More rows than the window was made for: it grows, as far as the screen goes.
void Tavrel::GrowToRows() {
  const SheetValues& now = parts_.sheet.Values();
  const auto rows = std::count_if(now.Rows.begin() + 1, now.Rows.end(),
                                  [](const SheetRow& row) { return row.Sheet; });
  const int needed = table_->SizeWith(static_cast<int>(rows)).height();
  if (needed <= table_height_) {
    return;
  }
  table_height_ = needed;
  const int missing = needed - scroll_->viewport()->height();
  if (missing > 0 && !isMaximized() && !isFullScreen()) {
    const int room = screen()->availableGeometry().bottom() - frameGeometry().bottom();
    resize(width(), height() + std::clamp(missing, 0, std::max(room, 0)));
    came_with_ = size();
  }
}

bool Tavrel::HasUsersSize() const {
  return came_with_.isValid() && !isMaximized() && !isFullScreen() && size() != came_with_;
}

void Tavrel::PlaceAt(int top) {
  const QRect room = screen()->availableGeometry();
  resize(size().boundedTo(RoomFor(*this)));
  move(room.left() + (room.width() - frameGeometry().width()) / 2, top);
  KeepOnScreen(*this);
}

void Tavrel::showEvent(QShowEvent* event) {
  QMainWindow::showEvent(event);
  if (!timer_main_.isActive()) {
    timer_main_.start(milliseconds(kTickMilliseconds));
    first_display_.start(kPaintLimit);
  }
}

// The first display may take a while on the line: the user sees the form before it begins.
void Tavrel::paintEvent(QPaintEvent* event) {
  QMainWindow::paintEvent(event);
  if (first_display_.isActive() && first_display_.interval() != 0) {
    first_display_.start(milliseconds(0));
  }
}

void Tavrel::FirstDisplay() {
  resize(size().boundedTo(RoomFor(*this)));  // the frame around it is known now
  KeepOnScreen(*this);
  parts_.start_up.MainFormShow();
  parts_.sheet.RefreshState();
  AfterEvent();
  table_->FocusFirst();
  came_with_ = size();
}

void Tavrel::RunTick() {
  parts_.cycle.Tick();
  if (state_due_.hasExpired()) {
    state_due_ = QDeadlineTimer(kStateEvery);
    parts_.sheet.RefreshState();
  }
  AfterEvent();
}

void Tavrel::closeEvent(QCloseEvent* event) {
  parts_.commands.Close();
  event->setAccepted(parts_.commands.HasEnded());
  AfterEvent();
}

void Tavrel::AfterEvent() {
  UpdateWidgets();
  if (parts_.commands.HasEnded()) {
    timer_main_.stop();
    QCoreApplication::exit(0);
  }
}

}  // namespace tavrel
