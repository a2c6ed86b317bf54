#include "main/forms/tavsett.h"

#include <QGridLayout>
#include <QLabel>
#include <QMenuBar>
#include <QPushButton>
#include <QSignalBlocker>
#include <QVBoxLayout>

#include "base/tool_tips.h"
#include "main/settings_lists.h"
#include "widgets/fresh_list.h"
#include "widgets/list_search.h"
#include "widgets/muted_label.h"

namespace tavrel {
namespace {

constexpr const char* kDirectory = "data directory";
constexpr const char* kFont = "report font";

constexpr int kControlCharacters = 46;  // the longest path and the longest item fit
constexpr int kGapOfSections = 14;
constexpr int kTextMargin = 4;  // texts begin where those of the lists do

void ShowIndex(QComboBox& list, int index) {
  const QSignalBlocker quiet(list);
  list.setCurrentIndex(index);
}

}  // namespace

TavSett::TavSett(SettingsDialog& dialog)
    : ModalForm(dialog, "TAVSETT", " Settings"), dialog_(dialog) {
  MakeControls();
  Arrange();
  MakeMenu();
  txt_plant_->setFocus();
}

// In the order in which the Tab key visits them.
void TavSett::MakeControls() {
  txt_plant_ = MakeText("Txt_Plant", &SettingsDialog::Txt_Plant_Change);
  txt_lab_ = MakeText("Txt_Lab", &SettingsDialog::Txt_Lab_Change);
  cbo_help_ = MakeList("cboHelp", QtItems(kHelpItems), &SettingsDialog::cboHelp_Click);
  MakePorts();
  cbo_mode_ = MakeList("cboMode", QtItems(kModeItems), &SettingsDialog::cboMode_Click);
  cbo_dia_ = MakeList("cboDia", QtItems(kDiaItems), &SettingsDialog::cboDia_Click);
  cmd_path_ = MakeButton("cmdPath", "", [this] { dialog_.cmdPath_Click(); });
  cmd_font_ = MakeButton("CmdFont", "", [this] { dialog_.CmdFont_Click(); });
  cbo_width_ = MakeList("CboWidth", QtItems(kWidthItems), &SettingsDialog::CboWidth_Click);
  for (QPushButton* value : {cmd_path_, cmd_font_}) {
    value->setStyleSheet("text-align: left; padding: 3px 8px;");
  }
  cmd_ok_ = MakeOk([this] { dialog_.CmdOK_Click(); });
}

void TavSett::Arrange() {
  auto* grid = new QGridLayout;
  grid->setHorizontalSpacing(kWideMargin);
  grid->setVerticalSpacing(8);
  grid->setColumnMinimumWidth(1, fontMetrics().averageCharWidth() * kControlCharacters);
  AddHeading(*grid, "User");
  AddLine(*grid, "company", txt_plant_);
  AddLine(*grid, "user", txt_lab_);
  AddLine(*grid, "help language", cbo_help_);
  AddHeading(*grid, "Instruments");
  AddLine(*grid, "serial port", cbo_com_);
  AddLine(*grid, "interface", cbo_mode_);
  AddLine(*grid, "diagnostic", cbo_dia_);
  AddHeading(*grid, "Data and reports");
  AddLine(*grid, kDirectory, cmd_path_);
  AddLine(*grid, kFont, cmd_font_);
  AddLine(*grid, "line width", cbo_width_);
  QVBoxLayout* column = MakeFixedColumn(kWideMargin);
  column->setContentsMargins(kWideMargin, kGapOfSections, kWideMargin, kWideMargin);
  column->addLayout(grid);
  auto* foot = new QHBoxLayout;
  foot->addStretch(1);
  foot->addWidget(cmd_ok_);
  foot->addWidget(MakeCancel());
  column->addLayout(foot);
}

void TavSett::MakeMenu() {
  auto* bar = new QMenuBar(this);
  QAction* help = bar->addAction("Help   ");
  help->setObjectName("MnuHelp");
  help->setShortcut(QKeySequence::HelpContents);
  connect(help, &QAction::triggered, this, [this] {
    dialog_.MnuHelp_Click();
    AfterEvent();
  });
  layout()->setMenuBar(bar);
}

void TavSett::AddHeading(QGridLayout& grid, const char* text) {
  const int row = grid.rowCount();
  if (row > 1) {
    grid.setRowMinimumHeight(row, kGapOfSections);
  }
  auto* heading = new QLabel(text, this);
  QFont font = heading->font();
  font.setBold(true);
  heading->setFont(font);
  grid.addWidget(heading, row + 1, 0, 1, 2);
}

void TavSett::AddLine(QGridLayout& grid, const char* text, QWidget* control) {
  const int row = grid.rowCount();
  auto* label = new MutedLabel(text, this);
  label->setBuddy(control);
  control->setAccessibleName(text);
  grid.addWidget(label, row, 0);
  grid.addWidget(control, row, 1);
}

QComboBox* TavSett::MakeList(const char* name, const QStringList& items, TakeIndex take) {
  auto* list = new QComboBox(this);
  FillList(list, name, items, take);
  return list;
}

void TavSett::FillList(QComboBox* list, const char* name, const QStringList& items,
                       TakeIndex take) {
  list->setObjectName(name);
  SearchBehindBlanks(*list);
  list->addItems(items);
  connect(list, &QComboBox::currentIndexChanged, this, [this, take](int index) {
    (dialog_.*take)(index);
    AfterEvent();
  });
}

// As wide as the others: what is behind a port may have a long name.
void TavSett::MakePorts() {
  auto* list = new FreshList(this);
  list->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
  FillList(list, "cboCom", QtItems(PortItems()), &SettingsDialog::cboCom_Click);
  connect(list, &FreshList::Unfolds, this, [this] {
    dialog_.cboCom_DropDown();
    AfterEvent();
  });
  cbo_com_ = list;
}

void TavSett::ShowPorts() {
  const std::vector<std::string>& items = dialog_.Values().PortItems;
  for (std::size_t index = 0; index < items.size(); ++index) {
    cbo_com_->setItemText(static_cast<int>(index), QtText(items[index]));
  }
}

SelectingEdit* TavSett::MakeText(const char* name, TakeText take) {
  auto* edit = new SelectingEdit(this);
  edit->setObjectName(name);
  edit->setTextMargins(kTextMargin, 0, kTextMargin, 0);
  connect(edit, &QLineEdit::textChanged, this, [this, take](const QString& text) {
    (dialog_.*take)(text.toStdString());
    AfterEvent();
  });
  return edit;
}

// A button with what was chosen by it.
void TavSett::ShowChoice(QPushButton& button, const char* what, std::string_view chosen) {
  button.setText(QtCaption(chosen));
  button.setAccessibleName(QString("%1: %2").arg(what, QtText(chosen)));
}

void TavSett::UpdateWidgets() {
  const SettingsControls& now = dialog_.Values();
  ShowPorts();
  ShowIndex(*cbo_com_, now.cboCom);
  ShowIndex(*cbo_help_, now.cboHelp);
  ShowIndex(*cbo_mode_, now.cboMode);
  ShowIndex(*cbo_dia_, now.cboDia);
  ShowIndex(*cbo_width_, now.CboWidth);
  ShowText(*txt_plant_, now.Txt_Plant);
  ShowText(*txt_lab_, now.Txt_Lab);
  ShowChoice(*cmd_font_, kFont, now.CmdFont);
  ShowChoice(*cmd_path_, kDirectory, now.cmdPath);
  ShowTipsAndDevice();
}

void TavSett::ShowTipsAndDevice() {
  const SettingsControls& now = dialog_.Values();
  ShowTips(kSettingsTips, now.TipLanguage);
  if (!now.DeviceTip.empty()) {
    cbo_com_->setToolTip(cbo_com_->toolTip() + "\n" + QtText(now.DeviceTip));
  }
}

}  // namespace tavrel
