#include "service/forms/service_form.h"

#include <QHBoxLayout>

namespace tavrel {

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

void ServiceForm::UpdateWidgets() {
  com_icon_->setVisible(service_screen_.ComIcon());
  ShowText(*trigger_, service_screen_.IsLit() ? "c" : "");
}

}  // namespace tavrel
