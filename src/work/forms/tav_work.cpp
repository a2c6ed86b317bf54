#include "work/forms/tav_work.h"

#include <QGroupBox>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QVBoxLayout>
#include <algorithm>

#include "widgets/form_room.h"
#include "widgets/muted_label.h"
#include "widgets/spoken.h"
#include "widgets/unit_label.h"
#include "work/forms/work_glyphs.h"
#include "work/work_texts.h"
#include "work/work_tips.h"

namespace tavrel {
namespace {

constexpr int kFieldGap = 8;
constexpr int kNarrowGap = 4;  // on a small screen
constexpr qreal kValueSize = 1.3;
constexpr int kValueCharacters = 8;
constexpr const char* kNoTitle = " ";  // keeps the place of one
constexpr QSize kLeastTable{300, 200};
constexpr int kRoomForAlarm = 24;  // behind the number of an instrument

ColourCell* MakeChip(QLabel* word, QWidget* parent) {
  auto* chip = new ColourCell(parent);
  auto* box = new QHBoxLayout(chip);
  box->setContentsMargins(10, 2, 10, 2);
  box->addWidget(word);
  word->setParent(chip);
  word->setTextFormat(Qt::PlainText);
  return chip;
}

}  // namespace

TavWork::TavWork(Worksheet& worksheet)
    : ModalForm(worksheet, "TavWork", ""), worksheet_(worksheet) {
  // Keys belong to the form itself until the user goes to a control.
  setFocusPolicy(Qt::ClickFocus);
  MakeHead();
  MakeTable();
  MakeRecording();
  MakeController();
  MakeProgram();
  MakeExits();
  Arrange();
}

void TavWork::MakeHead() {
  tavc_no_ = new QLabel;
  tavc_no_->setObjectName("TavcNo");
  tavc_no_->setFont(Sized(tavc_no_->font(), kValueSize));
  tavc_cell_ = MakeChip(tavc_no_, this);
  tavc_cell_->setObjectName("TavcCell");
  tavc_cell_->layout()->setContentsMargins(10, 2, kRoomForAlarm, 2);
  tavc_cell_->SetAlarmGlyph(DrawWarningGlyph);
  tav_file_ = new MutedLabel("", this);
  tav_file_->setObjectName("TavFile");
}

void TavWork::MakeTable() {
  sheet_ = new WorkTable(this);
  connect(sheet_, &WorkTable::ProdEdited, this, [this](int input, const QString& text) {
    worksheet_.Prod_Change(input, text.toStdString());
    AfterEvent();
  });
  connect(sheet_, &WorkTable::CommentsEdited, this, [this](int input, const QString& text) {
    worksheet_.Comments_Change(input, text.toStdString());
    AfterEvent();
  });
  connect(sheet_, &WorkTable::ColorClicked, this, [this](int input) {
    worksheet_.Color_Click(input);
    AfterEvent();
  });
}

TavWork::Reading TavWork::MakeReading(const char* name, const char* words) {
  Reading reading{new QLabel(this), new UnitLabel(words, this)};
  reading.value->setObjectName(name);
  reading.value->setTextFormat(Qt::PlainText);
  reading.value->setFont(Sized(reading.value->font(), kValueSize));
  reading.value->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
  reading.value->setMinimumWidth(QFontMetrics(reading.value->font()).averageCharWidth() *
                                 kValueCharacters);
  reading.words->setObjectName(QString(name) + "_words");
  Speak(reading);
  return reading;
}

// The value with what stands behind it.
void TavWork::Speak(const Reading& reading) {
  const QString words = reading.words->Words();
  const QString unit = reading.words->Unit();
  SpeakReading(*reading.value, words.isEmpty() ? unit : words, words.isEmpty() ? "" : unit);
}

void TavWork::AddReading(QVBoxLayout& column, const Reading& reading, QWidget* behind) {
  auto* line = new QHBoxLayout;
  line->setSpacing(kFieldGap);
  line->addWidget(reading.value);
  line->addWidget(reading.words);
  line->addStretch(1);
  if (behind != nullptr) {
    line->addWidget(behind);
  }
  column.addLayout(line);
}

void TavWork::MakeRecording() {
  fr_recording_ = new QGroupBox("recording", this);
  fr_recording_->setObjectName("frRecording");
  cmd_rec_ = {MakeGlyphButton("cmd_Rec_1", "recording on", DrawRecordOnGlyph,
                              [this] { worksheet_.cmd_Rec_Click(1); }),
              MakeGlyphButton("cmd_Rec_2", "recording off", DrawRecordOffGlyph,
                              [this] { worksheet_.cmd_Rec_Click(2); })};
  rec_buttons_ = new QWidget(this);
  auto* line = new QHBoxLayout(rec_buttons_);
  line->setContentsMargins(0, 0, 0, 0);
  line->setSpacing(kFieldGap);
  line->addWidget(cmd_rec_[0]);
  line->addWidget(cmd_rec_[1]);
  line->addStretch(1);
  line->addWidget(MakeGlyphButton("cmd_New", "new file", DrawNewFileGlyph,
                                  [this] { worksheet_.cmd_New_Click(); }));
  line->addWidget(MakeGlyphButton("cmd_SetRec", "properties of recording", DrawSettingsGlyph,
                                  [this] { worksheet_.cmd_SetRec_Click(); }));
  rec_state_ = new QLabel;
  rec_state_->setObjectName("Lbl_RecState");
  rec_state_cell_ = MakeChip(rec_state_, this);
  rec_ = MakeReading("Lbl_rec", "min   recorded");
  sampl_ = MakeReading("Lbl_sampl", "s     sampling time");
  rec_buttons_->setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
  auto* column = new QVBoxLayout(fr_recording_);
  column->addWidget(rec_buttons_);
  AddReading(*column, rec_, rec_state_cell_);
  AddReading(*column, sampl_);
  ledger_ = new MutedLabel("", this);
  ledger_->setObjectName("Lbl_Ledger");
  ledger_->setTextFormat(Qt::PlainText);
  ledger_->setWordWrap(true);
  QSizePolicy as_wide_as_the_others = ledger_->sizePolicy();
  as_wide_as_the_others.setHorizontalPolicy(QSizePolicy::Ignored);
  ledger_->setSizePolicy(as_wide_as_the_others);
  column->addWidget(ledger_);
}

void TavWork::MakeController() {
  fr_controller_ = new QGroupBox("controller", this);
  fr_controller_->setObjectName("frController");
  cmd_ctrl_ = {MakeGlyphButton("cmd_Ctrl_0", "controller isothermal", DrawIsothermGlyph,
                               [this] { worksheet_.cmd_Ctrl_Click(0); }),
               MakeGlyphButton("cmd_Ctrl_1", "controller dynamic", DrawRampGlyph,
                               [this] { worksheet_.cmd_Ctrl_Click(1); }),
               MakeGlyphButton("cmd_Ctrl_2", "controller off", DrawPowerGlyph,
                               [this] { worksheet_.cmd_Ctrl_Click(2); })};
  cmd_prog_on_ = MakeGlyphButton("cmd_ProgOn", "program", DrawProgramGlyph,
                                 [this] { worksheet_.cmd_ProgOn_Click(); });
  cmd_set_ctrl_ = MakeGlyphButton("cmd_setCtrl", "properties of controller", DrawSettingsGlyph,
                                  [this] { worksheet_.cmd_setCtrl_Click(); });
  auto* line = new QHBoxLayout;
  line->setSpacing(kFieldGap);
  for (GlyphButton* button : cmd_ctrl_) {
    line->addWidget(button);
  }
  line->addWidget(cmd_prog_on_);
  line->addStretch(1);
  line->addWidget(cmd_set_ctrl_);
  setpoint_ = MakeReading("Lbl_setpoint", "°C     setpoint");
  auto* column = new QVBoxLayout(fr_controller_);
  column->addLayout(line);
  AddReading(*column, setpoint_);
}

void TavWork::MakeProgram() {
  fr_prog_ = new QGroupBox(kNoTitle, this);
  fr_prog_->setObjectName("frProg");
  QSizePolicy keeps_its_place = fr_prog_->sizePolicy();
  keeps_its_place.setRetainSizeWhenHidden(true);
  fr_prog_->setSizePolicy(keeps_its_place);
  cmd_prog_off_ = MakeGlyphButton("cmd_ProgOff", "end of program", DrawStopProgramGlyph,
                                  [this] { worksheet_.cmd_ProgOff_Click(); });
  step_ = MakeReading("Lbl_Step", "step");
  time_ = MakeReading("Lbl_Time", "min   until next step");
  auto* column = new QVBoxLayout(fr_prog_);
  AddReading(*column, step_, cmd_prog_off_);
  AddReading(*column, time_);
  prog_text_ = new QLabel(fr_prog_);
  prog_text_->setObjectName("ProgText");
  prog_text_->setTextFormat(Qt::PlainText);
  column->addWidget(prog_text_);
}

void TavWork::MakeExits() {
  cmd_coord_ = MakeGlyphButton("cmd_Coord", "coordinates", DrawCoordinatesGlyph,
                               [this] { worksheet_.cmd_Coord_Click(); });
  cmd_ok_ = MakeGlyphButton("CmdOK", "show the graph", DrawCurveGlyph,
                            [this] { worksheet_.CmdOK_Click(); });
  cmd_exit_ =
      MakeGlyphButton("cmdExit", "exit", DrawExitGlyph, [this] { worksheet_.cmdExit_Click(); });
}

void TavWork::Arrange() {
  auto* head = new QHBoxLayout;
  head->setSpacing(kNarrowMargin);
  head->addWidget(tavc_cell_);
  head->addWidget(tav_file_);
  head->addStretch(1);
  auto* exits = new QHBoxLayout;
  exits->setSpacing(kFieldGap);
  exits->addWidget(cmd_coord_);
  exits->addWidget(cmd_ok_);
  exits->addStretch(1);
  exits->addWidget(cmd_exit_);
  auto* side = new QVBoxLayout;
  side->setSpacing(kNarrowMargin);
  side->addLayout(head);
  side->addWidget(fr_recording_);
  side->addWidget(fr_controller_);
  side->addWidget(fr_prog_);
  side->addStretch(1);
  side->addLayout(exits);
  auto* all = new QHBoxLayout(this);
  all->setContentsMargins(kNarrowMargin, kNarrowMargin, kNarrowMargin, kNarrowMargin);
  all->setSpacing(kNarrowMargin);
  auto* left = new QVBoxLayout;
  left->addWidget(new ScrollingPart(sheet_, kLeastTable, this), 1);
  all->addLayout(left, 1);
  all->addLayout(side);
  if (sizeHint().height() > RoomFor(*this).height()) {
    Tighten(*left, *side);
  }
}

// On a small screen a program that runs takes its room from the table, which scrolls, so that the
// form does without a bar.
void TavWork::Tighten(QVBoxLayout& left, QVBoxLayout& side) {
  side.removeWidget(fr_prog_);
  left.addWidget(fr_prog_);
  left.setSpacing(kNarrowGap);
  QSizePolicy goes_away = fr_prog_->sizePolicy();
  goes_away.setRetainSizeWhenHidden(false);
  fr_prog_->setSizePolicy(goes_away);
  side.setSpacing(kNarrowGap);
  layout()->setContentsMargins(kFieldGap, kFieldGap, kFieldGap, kFieldGap);
}

void TavWork::ShowRefresh() {
  if (isVisible()) {
    AfterEvent();
  }
}

void TavWork::UpdateWidgets() {
  const WorksheetValues& now = worksheet_.Values();
  if (windowTitle() != QtText(now.Caption)) {
    setWindowTitle(QtText(now.Caption));
  }
  ShowHead(now);
  sheet_->UpdateWidgets(now);
  ShowRecording(now);
  ShowController(now);
  ShowProgram(now);
  cmd_coord_->setEnabled(now.cmd_CoordEnabled);
  cmd_ok_->setEnabled(now.CmdOKEnabled);
}

void TavWork::ShowHead(const WorksheetValues& now) {
  ShowText(*tavc_no_, now.TavcNo);
  ShowText(*tav_file_, now.TavFile);
  const Colour answering = now.OfSlot ? kYellow : kGrey;
  tavc_cell_->SetColour(now.NoAnswer ? kOrange : answering);
  const QString silent = now.NoAnswer ? QtText(work_text::kNoAnswer.In(now.TipLanguage)) : "";
  tavc_no_->setAccessibleDescription(silent);
  tavc_no_->setToolTip(silent.isEmpty() ? "" : " " + silent + " ");
}

void TavWork::ShowRecording(const WorksheetValues& now) {
  rec_buttons_->setVisible(now.OfSlot);
  cmd_rec_[0]->SetLatched(now.RecOnDown);
  cmd_rec_[1]->SetLatched(now.RecOffDown);
  ShowText(*rec_state_, now.RecState);
  rec_state_cell_->setVisible(!now.RecState.empty());
  rec_state_cell_->SetColour(now.RecState == "end" ? kYellow : kOrange);
  ShowText(*rec_.value, now.Lbl_rec);
  ShowText(*rec_.words, now.RecUnit);
  Speak(rec_);
  ShowText(*sampl_.value, now.Lbl_sampl);
  const bool has_both = !now.LedgerText.empty() && !now.BufferText.empty();
  ShowText(*ledger_, now.LedgerText + (has_both ? "\n" : "") + now.BufferText);
  KeepRoomForLedger();
}

// It may get longer while the form is shown, which grows with it then.
void TavWork::KeepRoomForLedger() {
  if (isVisible()) {
    const int wanted = ledger_->heightForWidth(ledger_->width());
    ledger_->setMinimumHeight(std::max(ledger_->minimumHeight(), wanted));
  }
}

void TavWork::ShowController(const WorksheetValues& now) {
  fr_controller_->setVisible(now.OfSlot);
  for (std::size_t index = 0; index < cmd_ctrl_.size(); ++index) {
    cmd_ctrl_.at(index)->SetLatched(static_cast<int>(now.CtrlDown) == static_cast<int>(index));
  }
  cmd_prog_on_->SetLatched(now.ProgDown);
  cmd_set_ctrl_->setEnabled(now.cmd_setCtrlEnabled);
  ShowText(*setpoint_.value, now.Lbl_setpoint);
}

void TavWork::ShowProgram(const WorksheetValues& now) {
  if (!now.frProg && cmd_prog_off_->hasFocus()) {
    setFocus();
  }
  fr_prog_->setVisible(now.frProg);
  const QString title = now.frProgCaption.empty() ? kNoTitle : QtCaption(now.frProgCaption);
  if (fr_prog_->title() != title) {
    fr_prog_->setTitle(title);
  }
  ShowText(*step_.value, now.Lbl_Step);
  ShowText(*time_.value, now.Lbl_Time);
  ShowText(*prog_text_, now.ProgText);
  if (now.ProgOffFocusCalls != focus_calls_) {
    focus_calls_ = now.ProgOffFocusCalls;
    cmd_prog_off_->setFocus();
  }
}

// The form is shown again for another slot: it begins as a new one would.
void TavWork::showEvent(QShowEvent* event) {
  ModalForm::showEvent(event);
  if (!event->spontaneous()) {
    ShowTips(kWorksheetTips, worksheet_.Values().TipLanguage);
    setFocus();
  }
}

void TavWork::keyPressEvent(QKeyEvent* event) {
  const bool enter = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
  if (enter && !event->isAutoRepeat()) {
    worksheet_.CmdOK_Click();
    AfterEvent();
    return;
  }
  if (event->key() == Qt::Key_F5) {
    worksheet_.RefreshNow();
    return;
  }
  ModalForm::keyPressEvent(event);
}

}  // namespace tavrel
