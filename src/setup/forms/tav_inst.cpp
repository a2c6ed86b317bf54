#include "setup/forms/tav_inst.h"

#include <QApplication>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QKeyEvent>
#include <QPushButton>
#include <QScrollBar>
#include <QVBoxLayout>
#include <algorithm>
#include <chrono>

#include "setup/installation_tips.h"
#include "widgets/muted_label.h"
#include "widgets/shades.h"

namespace tavrel {
namespace {

constexpr int kApparatus = 0;  // columns of the grid
constexpr int kExtension = 1;
constexpr int kFirstInput = 2;
constexpr int kNumber = kFirstInput + kInputs;
constexpr int kSheetColumns = kNumber + 1;
constexpr int kApparatusWidth = 20;  // characters
constexpr int kExtensionWidth = 8;
constexpr int kCellWidth = 5;          // at least
constexpr int kEffectLines = 7;        // one for each kind of effect
constexpr int kFewestEffectLines = 2;  // on a small screen
constexpr std::chrono::seconds kRefreshInterval{1};

constexpr BothLanguages kWhatOkDoes{"what OK will do", "was OK tun wird"};
constexpr BothLanguages kRowWord{"row ", "Zeile "};
constexpr BothLanguages kInputWord{", input ", ", Eingang "};
constexpr BothLanguages kNumberWord{", number of the instrument: ", ", Nummer des Gerätes: "};
constexpr BothLanguages kApparatusWord{", apparatus", ", Apparatur"};
constexpr BothLanguages kExtensionWord{", extension of the files", ", Endung der Dateien"};

bool IsInputColumn(int column) {
  return column >= kFirstInput && column < kNumber;
}

int InputOf(int column) {
  return column - kFirstInput + 1;
}

std::string InputName(int input) {
  return {"0123456789ABCDEF"[input]};
}

// The middle of a column in the scale of the grid.
double SheetX(int column) {
  if (IsInputColumn(column)) {
    return kInputsLeft + (InputOf(column) - 0.5) * kInputWidth;
  }
  return column == kNumber ? (kNumberLeft + kSheetWidth) / 2 : kApparatusLeft;
}

// The name of a file that a row waits for stands in a box that is locked, and has to be read.
void SetLockedInk(QWidget& box) {
  const QColor ink = MutedOf(QApplication::palette());
  QPalette palette = box.palette();
  if (palette.color(QPalette::Disabled, QPalette::Text) != ink) {
    palette.setColor(QPalette::Disabled, QPalette::Text, ink);
    box.setPalette(palette);
  }
}

std::string RowText(Language language, int row) {
  return std::string(kRowWord.In(language)) + std::to_string(row);
}

}  // namespace

TavInst::TavInst(Installation& installation)
    : ModalForm(installation, "TavInst", kInstallationCaption), installation_(installation) {
  MakeGrid();
  MakeHeads();
  MakeInputPopup();
  MakeNumberPopup();
  Arrange();
  ShowTips(kInstallationTips, installation_.TipLanguage());
  refresh_.callOnTimeout([this] {
    installation_.Refresh();
    AfterEvent();
  });
  refresh_.start(kRefreshInterval);
  sheet_->setFocus();
  sheet_->setCurrentCell(0, kFirstInput);
}

void TavInst::MakeGrid() {
  sheet_ = new EditGrid("Sheet", kSlots, kSheetColumns, this);
  sheet_->setAccessibleName("tests");
  QStringList heads = {"apparatus", "ext."};
  for (int input = 1; input <= kInputs; ++input) {
    heads << QtText(InputName(input));
  }
  sheet_->setHorizontalHeaderLabels(heads << "Tavrel");
  const int character = fontMetrics().averageCharWidth();
  const int head = fontMetrics().horizontalAdvance(kControllersHead);
  const int cell = std::max(character * kCellWidth, head / kControllers + 2);
  for (int column = 0; column < kSheetColumns; ++column) {
    sheet_->setColumnWidth(column, cell);
  }
  sheet_->setColumnWidth(kApparatus, character * kApparatusWidth);
  sheet_->setColumnWidth(kExtension, character * kExtensionWidth);
  sheet_->setColumnWidth(kNumber, character * kExtensionWidth);
  for (int row = 1; row <= kSlots; ++row) {
    AddRow(row);
  }
  connect(sheet_, &EditGrid::Opened, this, [this](int row, int column) {
    installation_.Sheet_Click(SheetX(column), row + 0.5);
    AfterEvent();
  });
  connect(sheet_, &EditGrid::Typed, this, &TavInst::TypeOnCell);
  connect(sheet_, &EditGrid::EditEntered, this, [this] {
    installation_.Test_GotFocus();
    AfterEvent();
  });
}

void TavInst::AddRow(int row) {
  const Language language = installation_.TipLanguage();
  const QString number = QString::number(row);
  CellEdit* name =
      sheet_->AddEdit(row - 1, kApparatus, "Test_Des_" + number,
                      QtText(RowText(language, row) + std::string(kApparatusWord.In(language))));
  name->setMaxLength(kApparatusCharacters);
  connect(name, &QLineEdit::textEdited, this, [this, row](const QString& text) {
    installation_.Test_Des_Change(row, text.toStdString());
    AfterEvent();
  });
  CellEdit* extension =
      sheet_->AddEdit(row - 1, kExtension, "Test_Ext_" + number,
                      QtText(RowText(language, row) + std::string(kExtensionWord.In(language))));
  extension->setMaxLength(kExtensionCharacters);
  connect(extension, &QLineEdit::textEdited, this, [this, row](const QString& text) {
    installation_.Test_Ext_Change(row, text.toStdString());
    AfterEvent();
  });
}

// Two heads above the inputs: only the first four can be controllers.
void TavInst::MakeHeads() {
  heads_ = new QWidget(this);
  const auto add = [this](const char* name, const char* text) {
    auto* head = new MutedLabel(text, heads_);
    head->setObjectName(name);
    head->setTextFormat(Qt::PlainText);
    head->setAlignment(Qt::AlignCenter);
    return head;
  };
  QLabel* controllers = add("head_controllers", kControllersHead);
  QLabel* inputs = add("head_inputs", kInputsHead);
  const int height = fontMetrics().height() + 4;
  const int left = sheet_->frameWidth() + sheet_->verticalHeader()->sizeHint().width() +
                   sheet_->columnWidth(kApparatus) + sheet_->columnWidth(kExtension);
  const int cell = sheet_->columnWidth(kFirstInput);
  controllers->setGeometry(left, 0, cell * kControllers, height);
  inputs->setGeometry(left + cell * kControllers, 0, cell * (kInputs - kControllers), height);
  heads_->setFixedHeight(height);
  // On a small screen the grid scrolls, and its heads with it.
  QScrollBar* bar = sheet_->horizontalScrollBar();
  connect(bar, &QScrollBar::valueChanged, this, [=](int value) {
    controllers->move(left - value, 0);
    inputs->move(left + cell * kControllers - value, 0);
  });
}

QFrame* TavInst::MakePopup(const char* name, const char* spoken) {
  auto* popup = new QFrame(this);
  popup->setObjectName(name);
  popup->setAccessibleName(spoken);
  popup->setFrameStyle(QFrame::Box | QFrame::Plain);
  popup->setAutoFillBackground(true);
  popup->setBackgroundRole(QPalette::Base);
  popup->hide();
  return popup;
}

void TavInst::MakeInputPopup() {
  const Language language = installation_.TipLanguage();
  pic_input_ = MakePopup("picInput", "what the input is");
  auto* column = new QVBoxLayout(pic_input_);
  column->setContentsMargins(6, 6, 6, 6);
  column->setSpacing(2);
  for (const int index : {1, 2, 3, 0}) {
    const std::string name = "cmd_Input_" + std::to_string(index);
    const std::string caption(kInputButtons[index].In(language));
    column->addWidget(MakeButton(name.c_str(), caption.c_str(),
                                 [this, index] { installation_.cmd_Input_Click(index); }));
  }
}

void TavInst::MakeNumberPopup() {
  const Language language = installation_.TipLanguage();
  pic_tav_no_ = MakePopup("picTavNo", "number of the instrument");
  auto* line = new QHBoxLayout(pic_tav_no_);
  line->setContentsMargins(6, 6, 6, 6);
  line->setSpacing(2);
  for (int index = 1; index <= kInets + 1; ++index) {
    const int number = index % (kInets + 1);
    const std::string name = "cmd_TavNo_" + std::to_string(number);
    const std::string caption =
        number == 0 ? std::string(kClearButton.In(language)) : std::to_string(number);
    QPushButton* button = MakeButton(name.c_str(), caption.c_str(),
                                     [this, number] { installation_.cmd_TavNo_Click(number); });
    button->setFixedWidth(fontMetrics().averageCharWidth() * (number == 0 ? 11 : 5));
    line->addWidget(button);
  }
}

void TavInst::Arrange() {
  lbl_effect_ = new QPlainTextEdit(this);
  lbl_effect_->setObjectName("lbl_Effect");
  const QString what = QtText(kWhatOkDoes.In(installation_.TipLanguage()));
  lbl_effect_->setAccessibleName(what);
  lbl_effect_->setPlaceholderText(what);
  lbl_effect_->setReadOnly(true);
  lbl_effect_->setTabChangesFocus(true);
  lbl_effect_->setMaximumHeight(fontMetrics().lineSpacing() * kEffectLines + 16);
  lbl_effect_->setMinimumHeight(fontMetrics().lineSpacing() * kFewestEffectLines + 16);
  QPushButton* ok = MakeOk([this] { installation_.CmdOK_Click(); });
  QSizePolicy keeps_its_place = ok->sizePolicy();
  keeps_its_place.setRetainSizeWhenHidden(true);
  ok->setSizePolicy(keeps_its_place);
  cmd_ok_ = ok;
  auto* below = new QHBoxLayout;
  below->setSpacing(kNarrowMargin);
  below->addWidget(lbl_effect_, 1);
  below->addWidget(ok, 0, Qt::AlignBottom);
  below->addWidget(MakeCancel(), 0, Qt::AlignBottom);
  auto* table = new QVBoxLayout;
  table->setSpacing(0);
  table->addWidget(heads_);
  table->addWidget(sheet_, 1);
  QVBoxLayout* column = MakeFixedColumn(kNarrowMargin);
  column->addLayout(table, 1);
  column->addLayout(below);
}

// Escape closes a pop-up before it closes the form.
void TavInst::keyPressEvent(QKeyEvent* event) {
  if (event->key() == Qt::Key_Escape) {
    installation_.Escape();
    AfterEvent();
    return;
  }
  ModalForm::keyPressEvent(event);
}

void TavInst::TypeOnCell(int row, int column, const QString& text) {
  if (IsInputColumn(column)) {
    const int code =
        text.isEmpty() ? 0 : static_cast<int>(QString("0123-CRM").indexOf(text.toUpper()));
    if (code >= 0 && code != 4) {
      installation_.PutRole(row + 1, InputOf(column),
                            static_cast<Role>(code > 4 ? code - 4 : code));
    }
  } else if (column == kNumber) {
    bool is_number = true;
    const int number = text.isEmpty() ? 0 : text.toInt(&is_number);
    installation_.PutNumber(row + 1, is_number ? number : -1);
  }
  AfterEvent();
}

void TavInst::UpdateWidgets() {
  for (int row = 1; row <= kSlots; ++row) {
    ShowRow(row);
  }
  const InstallationValues& now = installation_.Values();
  QString effect;
  for (const std::string& line : now.lbl_Effect) {
    effect += (effect.isEmpty() ? "" : "\n") + QtText(line);
  }
  if (lbl_effect_->toPlainText() != effect) {
    lbl_effect_->setPlainText(effect);
  }
  cmd_ok_->setVisible(now.CmdOK);
  ShowPopups();
}

void TavInst::ShowRow(int row) {
  const InstallationRow& now = installation_.Values().Rows[row];
  const Language language = installation_.TipLanguage();
  for (int column = kFirstInput; column < kSheetColumns; ++column) {
    const bool is_input = IsInputColumn(column);
    const InstallationCell& cell = is_input ? now.Inputs[InputOf(column)] : now.Number;
    std::string spoken = RowText(language, row);
    if (is_input) {
      spoken.append(kInputWord.In(language)).append(InputName(InputOf(column))).append(": ");
    } else {
      spoken.append(kNumberWord.In(language));
    }
    spoken += now.IsEditable ? cell.Spoken : now.WhyNot;
    sheet_->ShowCell(row - 1, column, {cell.Text, cell.Background, spoken, now.WhyNot});
  }
  for (const int column : {kApparatus, kExtension}) {
    auto* edit = static_cast<CellEdit*>(sheet_->cellWidget(row - 1, column));
    edit->ShowText(column == kApparatus ? now.Test_Des : now.Test_Ext);
    edit->setEnabled(now.IsEditable);
    SetLockedInk(*edit);
    edit->setToolTip(QtText(now.WhyNot));
  }
}

void TavInst::ShowPopups() {
  const InstallationValues& now = installation_.Values();
  findChild<QPushButton*>("cmd_Input_1")->setVisible(now.cmd_Input_1);
  ShowPopup(*pic_input_, now.Popup == InstallationPopup::kInput, kFirstInput + now.PopupInput - 1);
  ShowPopup(*pic_tav_no_, now.Popup == InstallationPopup::kNumber, kNumber);
}

// Below its cell, or where there is room. The keyboard goes to its first button, and back to the
// grid when it closes.
void TavInst::ShowPopup(QFrame& popup, bool is_shown, int column) {
  const bool had_focus = popup.isAncestorOf(focusWidget());
  const bool was_shown = !popup.isHidden();
  popup.setVisible(is_shown);
  if (!is_shown) {
    if (was_shown && had_focus) {
      sheet_->setFocus();
    }
    return;
  }
  popup.adjustSize();
  const int row = installation_.Values().PopupRow - 1;
  const QRect cell = sheet_->visualRect(sheet_->model()->index(row, column));
  const QPoint below = sheet_->viewport()->mapTo(this, cell.bottomLeft());
  const QPoint above = sheet_->viewport()->mapTo(this, cell.topLeft());
  const bool fits = below.y() + popup.height() <= height();
  const int x = std::clamp(below.x(), 0, std::max(width() - popup.width(), 0));
  popup.move(x, fits ? below.y() + 1 : above.y() - popup.height());
  popup.raise();
  if (!had_focus) {
    for (auto* button : popup.findChildren<QPushButton*>()) {
      if (button->isVisibleTo(&popup)) {
        button->setFocus(Qt::TabFocusReason);
        break;
      }
    }
  }
}

}  // namespace tavrel
