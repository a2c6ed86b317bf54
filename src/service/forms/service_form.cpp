#include "service/forms/service_form.h"

#include <QHBoxLayout>

namespace tavrel {
namespace {

constexpr const char* kSpoken = "spoken";

}  // namespace

ServiceForm::ServiceForm(ServiceScreen& screen, SteppedScreens& stepped, const char* name)
    : ModalForm(screen, name, screen.Caption()),
      service_screen_(screen),
      com_icon_(new ConnectionSign(this)),
      trigger_(new QLabel(this)),
      turn_(stepped, screen.Number(), [this] {
        service_screen_.Step();
        AfterEvent();
      }) {
  trigger_->setObjectName("Trigger");
  trigger_->setFixedWidth(fontMetrics().averageCharWidth() * 2);
  ShowTips(kServiceTips, screen.TipLanguage());
  com_icon_->setAccessibleName(com_icon_->toolTip().trimmed());
}

QBoxLayout* ServiceForm::MakeFoot() {
  auto* foot = new QHBoxLayout;
  foot->addWidget(trigger_);
  foot->addWidget(com_icon_);
  return foot;
}

QLabel* ServiceForm::MakeValue(const QString& name, const QString& spoken, const QString& widest) {
  auto* value = new QLabel(this);
  value->setObjectName(name);
  value->setTextFormat(Qt::PlainText);
  value->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
  value->setMinimumWidth(fontMetrics().horizontalAdvance(widest));
  value->setProperty(kSpoken, spoken);
  return value;
}

void ServiceForm::ShowValue(QLabel& label, std::string_view utf8) {
  ShowText(label, utf8);
  label.setAccessibleName(label.property(kSpoken).toString() + " " + label.text());
}

void ServiceForm::ShowIfAny(QLabel& label, std::string_view utf8) {
  QSizePolicy keeps_its_place = label.sizePolicy();
  keeps_its_place.setRetainSizeWhenHidden(true);
  label.setSizePolicy(keeps_its_place);
  ShowValue(label, utf8);
  label.setVisible(!utf8.empty());
}

void ServiceForm::UpdateWidgets() {
  setWindowTitle(QtText(service_screen_.Caption()));
  com_icon_->setVisible(service_screen_.ComIcon());
  ShowText(*trigger_, service_screen_.IsLit() ? "c" : "");
}

}  // namespace tavrel
