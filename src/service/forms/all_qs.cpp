#include "service/forms/all_qs.h"

#include <QGridLayout>
#include <QHBoxLayout>
#include <QPushButton>
#include <QVBoxLayout>

#include "widgets/muted_label.h"
#include "widgets/selecting_edit.h"

namespace tavrel {
namespace {

constexpr int kSetup = 1;
constexpr int kCheck = 2;
constexpr int kDateCharacters = 12;

void KeepPlace(QWidget& widget) {
  QSizePolicy keeps_its_place = widget.sizePolicy();
  keeps_its_place.setRetainSizeWhenHidden(true);
  widget.setSizePolicy(keeps_its_place);
}

}  // namespace

AllQs::AllQs(QualityData& quality, SteppedScreens& stepped)
    : ServiceForm(quality, stepped, "ALL_QS"), data_(quality) {
  QVBoxLayout* column = MakeFixedColumn(kWideMargin);
  column->addLayout(MakeHead());
  column->addLayout(MakeBoxes());
  lbl_state_ = new MutedLabel("", this);
  lbl_state_->setObjectName("lbl_State");
  lbl_state_->setMinimumHeight(fontMetrics().height());
  cmd_update_ = MakeButton("Cmd_Update", "update", [this] { Update(); });
  cmd_update_->setDefault(true);
  QBoxLayout* foot = MakeFoot();
  foot->addWidget(lbl_state_, 1);
  foot->addWidget(cmd_update_);
  column->addLayout(foot);
  ShowTips(kQualityTips, data_.TipLanguage());
}

// "Op_hours" stays empty: the instrument does not count them.
QLayout* AllQs::MakeHead() {
  auto* object = new QLabel("Measurement and Control System", this);
  object->setObjectName("Lb_Object");
  auto* type = new QLabel("TAVREL", this);
  type->setObjectName("Lb_Type");
  QFont bold = type->font();
  bold.setBold(true);
  type->setFont(bold);
  auto* hours = new QLabel(this);
  hours->setObjectName("Op_hours");
  auto* head = new QHBoxLayout;
  head->setSpacing(kWideMargin);
  head->addWidget(type);
  head->addWidget(object);
  head->addWidget(hours, 1);
  return head;
}

QLineEdit* AllQs::MakeEdit(const char* name, const QString& spoken, int characters,
                           Changed changed) {
  auto* edit = new SelectingEdit(this);
  edit->setObjectName(name);
  edit->setAccessibleName(spoken);
  edit->setFixedWidth(fontMetrics().horizontalAdvance(QString(characters, 'W')) + kNarrowMargin);
  connect(edit, &QLineEdit::textEdited, this,
          [this, changed = std::move(changed)](const QString& text) {
            changed(text.toStdString());
            AfterEvent();
          });
  return edit;
}

QLabel* AllQs::MakeCaption(const char* text, QLineEdit* buddy) {
  auto* caption = new MutedLabel(text, this);
  caption->setBuddy(buddy);
  return caption;
}

QGridLayout* AllQs::MakeBoxes() {
  text_serial_ = MakeEdit("Text_Serial", "serial no", QualityData::kSerialLength + 1,
                          [this](const std::string& text) { data_.Text_Serial_Change(text); });
  text_unit_ = MakeEdit("Text_Unit", "unit", QualityData::kUnitLength + 1,
                        [this](const std::string& text) { data_.Text_Unit_Change(text); });
  auto* grid = new QGridLayout;
  grid->setHorizontalSpacing(kNarrowMargin);
  grid->setVerticalSpacing(kNarrowMargin);
  grid->addWidget(MakeCaption("serial no:", text_serial_), 0, 0);
  grid->addWidget(text_serial_, 0, 1);
  grid->addWidget(MakeCaption("unit", text_unit_), 0, 2);
  grid->addWidget(text_unit_, 0, 3);
  AddSignature(*grid, kSetup, "first setup:");
  AddSignature(*grid, kCheck, "checked:");
  cmd_today_ = MakeButton("Cmd_Today", "now", [this] { data_.Cmd_Today_Click(); });
  grid->addWidget(cmd_today_, kCheck, 4);
  check_row_ << cmd_today_;
  for (QWidget* widget : check_row_) {
    KeepPlace(*widget);
  }
  return grid;
}

// The row of that number: a date and who it was.
void AllQs::AddSignature(QGridLayout& grid, int index, const char* caption) {
  const QString what = QString(caption).chopped(1);
  Signature& signature = index == kCheck ? check_ : setup_;
  signature.text_date =
      MakeEdit(index == kCheck ? "Text_Date_2" : "Text_Date_1", what, kDateCharacters,
               [this, index](const std::string& text) { data_.Text_Date_Change(index, text); });
  signature.text_name = MakeEdit(
      index == kCheck ? "Text_Name_2" : "Text_Name_1", what + " by", QualityData::kNameLength + 1,
      [this, index](const std::string& text) { data_.Text_Name_Change(index, text); });
  const QList<QWidget*> row = {MakeCaption(caption, signature.text_date), signature.text_date,
                               MakeCaption("by", signature.text_name), signature.text_name};
  for (qsizetype place = 0; place < row.size(); ++place) {
    grid.addWidget(row.at(place), index, static_cast<int>(place));
  }
  check_row_ = index == kCheck ? row : check_row_;
}

void AllQs::Update() {
  const std::string fault = data_.Cmd_Update_Click();
  auto* box = findChild<QLineEdit*>(QtText(fault));
  if (!fault.empty() && box != nullptr) {
    box->setFocus();
    box->selectAll();
  }
}

void AllQs::ShowEditable(bool is_editable, bool is_update_next) {
  const bool begins = is_editable && !text_serial_->isEnabled();
  for (QWidget* widget :
       std::initializer_list<QWidget*>{text_serial_, text_unit_, setup_.text_date, setup_.text_name,
                                       check_.text_date, check_.text_name, cmd_today_}) {
    widget->setEnabled(is_editable);
  }
  if (begins && is_update_next) {
    cmd_update_->setFocus();
  } else if (begins) {
    text_serial_->setFocus();
  }
}

void AllQs::UpdateWidgets() {
  ServiceForm::UpdateWidgets();
  const QualityValues& now = data_.Values();
  ShowText(*text_serial_, now.Text_Serial);
  ShowText(*text_unit_, now.Text_Unit);
  ShowText(*setup_.text_date, now.setup.Text_Date);
  ShowText(*setup_.text_name, now.setup.Text_Name);
  ShowText(*check_.text_date, now.check.Text_Date);
  ShowText(*check_.text_name, now.check.Text_Name);
  for (QWidget* widget : check_row_) {
    widget->setVisible(now.IsCheckShown);
  }
  cmd_update_->setEnabled(now.Cmd_Update);
  ShowEditable(now.IsEditable, now.IsUpdateNext);
  ShowText(*lbl_state_, now.lbl_State);
}

}  // namespace tavrel
