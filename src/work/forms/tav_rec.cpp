#include "work/forms/tav_rec.h"

#include <QGridLayout>
#include <QHBoxLayout>
#include <QPushButton>
#include <QVBoxLayout>

#include "widgets/list_search.h"
#include "widgets/muted_label.h"
#include "widgets/selecting_edit.h"
#include "widgets/spoken.h"

namespace tavrel {
namespace {

constexpr int kNumberCharacters = 12;
constexpr const char* kSamplingTime = "sampling time";

}  // namespace

TavRec::TavRec(RecordingSettings& settings)
    : ModalForm(settings, "TavRec", settings.Values().Caption), settings_(settings) {
  QWidget* face = settings.Values().RecNewMode ? MakeNewFace() : MakeSettingsFace();
  QVBoxLayout* column = MakeFixedColumn(kWideMargin);
  column->addWidget(face);
  column->addLayout(MakeOkAndCancel([this] { settings_.CmdOK_Click(); }));
}

QWidget* TavRec::MakeNewFace() {
  auto* face = new QWidget(this);
  face->setObjectName("frNew");
  cbo_sampl_ = new QComboBox(face);
  cbo_sampl_->setObjectName("Cbo_Sampl");
  cbo_sampl_->setEditable(true);
  cbo_sampl_->setInsertPolicy(QComboBox::NoInsert);
  cbo_sampl_->setCompleter(nullptr);
  cbo_sampl_->lineEdit()->setAccessibleName(kSamplingTime);
  for (const std::string& item : settings_.Values().SamplItems) {
    cbo_sampl_->addItem(QtText(item));
  }
  cbo_sampl_->setEditText(QtText(settings_.Values().Cbo_Sampl));
  connect(cbo_sampl_, &QComboBox::editTextChanged, this, [this](const QString& text) {
    settings_.Cbo_Sampl_Change(text.toStdString());
    AfterEvent();
  });
  lbl_max_ = MakeHours("Lbl_max");
  lbl_auto_ = MakeHours("Lbl_Auto_0");
  cbo_sampl_->setToolTip(QtText(settings_.SamplingRange()));
  auto* grid = new QGridLayout(face);
  grid->setContentsMargins(0, 0, 0, 0);
  AddLine(*grid, kSamplingTime, cbo_sampl_, "s");
  AddLine(*grid, "maximum length of file", lbl_max_, "h");
  AddLine(*grid, "Tavrel operates independent for", lbl_auto_, "h");
  auto* afterwards = new QLabel(QtText(kOffAfterNewFile.In(settings_.TextLanguage())), face);
  afterwards->setObjectName("Lbl_Afterwards");
  grid->addWidget(afterwards, grid->rowCount(), 0, 1, 2);
  cbo_sampl_->setFocus();
  cbo_sampl_->lineEdit()->selectAll();
  return face;
}

QWidget* TavRec::MakeSettingsFace() {
  auto* face = new QWidget(this);
  face->setObjectName("frSett");
  txt_stop_ = new SelectingEdit(face);
  txt_stop_->setObjectName("Txt_Stop");
  txt_stop_->setText(QtText(settings_.Values().Txt_Stop));
  txt_stop_->setToolTip(QtText(settings_.StopRange()));
  connect(txt_stop_, &QLineEdit::textChanged, this, [this](const QString& text) {
    settings_.Txt_Stop_Change(text.toStdString());
    AfterEvent();
  });
  cbo_func_ = new QComboBox(face);
  SearchBehindBlanks(*cbo_func_);
  cbo_func_->setObjectName("Cbo_Func");
  for (const std::string_view item : kEndActionItems) {
    cbo_func_->addItem(QtText(item));
  }
  cbo_func_->setCurrentIndex(settings_.Values().Cbo_Func);
  connect(cbo_func_, &QComboBox::currentIndexChanged, this, [this](int index) {
    settings_.Cbo_Func_Click(index);
    AfterEvent();
  });
  lbl_auto_ = MakeHours("Lbl_Auto_1");
  auto* grid = new QGridLayout(face);
  grid->setContentsMargins(0, 0, 0, 0);
  AddLine(*grid, "Stop acquisition after", txt_stop_, "h");
  AddLine(*grid, "and", cbo_func_, "");
  AddLine(*grid, "Tavrel operates independent for", lbl_auto_, "h");
  txt_stop_->setFocus();
  txt_stop_->selectAll();
  return face;
}

QLabel* TavRec::MakeHours(const char* name) {
  auto* label = new QLabel(this);
  label->setObjectName(name);
  label->setTextFormat(Qt::PlainText);
  label->setIndent(8);
  return label;
}

void TavRec::AddLine(QGridLayout& grid, const char* text, QWidget* control, const char* unit) {
  const int row = grid.rowCount();
  grid.setHorizontalSpacing(kWideMargin);
  grid.setVerticalSpacing(10);
  auto* label = new MutedLabel(text, this);
  label->setBuddy(control);
  grid.addWidget(label, row, 0);
  if (auto* reading = qobject_cast<QLabel*>(control)) {
    SpeakReading(*reading, text, unit);
  } else {
    control->setAccessibleName(text);
  }
  if (*unit == '\0') {
    grid.addWidget(control, row, 1);
    return;
  }
  control->setFixedWidth(fontMetrics().averageCharWidth() * kNumberCharacters);
  auto* value = new QHBoxLayout;
  value->setSpacing(kWideMargin / 2);
  value->addWidget(control);
  value->addWidget(new MutedLabel(unit, this));
  value->addStretch(1);
  grid.addLayout(value, row, 1);
}

// Texts that the user edits are in the widgets already.
void TavRec::UpdateWidgets() {
  const RecordingSettingsValues& now = settings_.Values();
  lbl_auto_->setText(QtText(now.Lbl_Auto));
  if (lbl_max_ != nullptr) {
    lbl_max_->setText(QtText(now.Lbl_max));
  }
}

}  // namespace tavrel
